#pragma once

#include "benchmarks/LiveScene.h"

#include <QTemporaryDir>
#include <QVector3D>

namespace Torvik::View3d {
class Section;
}

namespace Torvik::Bench {

/** A pipe that is being inspected: its inspection is active, the crawler stands in it, and it begins as a stub that
 *  grows. */
class LivePipe {
public:
    struct Options {
        double lengthM = 100.0; ///< as far as the observations reach
        int observations = 0;   ///< connections included
        int laterals = 0;       ///< each at a connection of its own
    };

    LivePipe(Stage::Kind kind, const Options& options);

    const Stage& stage() const { return m_scene.stage(); }
    View3d::Section& section() const { return *m_section; }
    QString databaseFile() const;
    /** Real time goes on, and the inspection's measurement is open. */
    void startMeasuring() const;
    /** One reading, as a host gives it: the counter, then the sensor at a place in the pipe's frame, y up. */
    static void read(const QVector3D& place, double counter);
    /** Rows that the inspection's measurement has in the database. */
    int storedPoints() const;
    /** Points of the line that is stored with it. */
    int pointsOfStoredLine() const;
    /** Points of the pipe's course as the project holds it. */
    int pointsOfStoredCourse() const;

private:
    QString textOf(const QString& statement) const;

    QTemporaryDir m_dir;
    LiveScene m_scene;
    QSharedPointer<Database::CProjectObject> m_project;
    View3d::Section* m_section = nullptr;
};

} // namespace Torvik::Bench
