#pragma once

#include "domain/boundary/CProjectObject.h"
#include "host/vehicle/Replay.h"
#include "host/vehicle/VehicleFeed.h"

#include <QObject>

namespace Torvik::Viewer {

/** A recording played once into an inspection of the project in the scene, up to the moment when all of it is stored.
 */
class ReplayRun : public QObject {
    Q_OBJECT

public:
    struct Wishes {
        QVector<Vehicle::Reading> readings;
        /** As Vehicle::Replay has it. */
        double speed = Vehicle::Replay::fastest;
        /** The pipe is drawn and stored as it is measured. */
        bool realTime = false;
    };

    /** What is there at the end. */
    struct Outcome {
        /** Metres. */
        double counter = 0;
        /** Of the inspection's latest measurement in the database. */
        qint64 points = 0;
        /** Of the inspection's stored shape, in metres. */
        double length = 0;
        /** Why the stored points could not be counted; empty when all went well. */
        QString error;
    };

    explicit ReplayRun(QObject* parent = nullptr);

    /** Makes the inspection the active one and starts. */
    void start(const QSharedPointer<Database::CPipeInspectionObject>& inspection, const Wishes& wishes);
    /** Before its end; finished() does not come any more. */
    void stop();
    /** Of the inspection. */
    QString pipeId() const;
    const Outcome& outcome() const { return m_outcome; }

signals:
    /** The recording is at its end and everything is stored. */
    void finished();

private:
    /** Waits in the event loop until all that is measured is stored, since a trouble is told from there. */
    void whenSettled(void (ReplayRun::*next)());
    void play();
    void onPlayed();
    void waitForCourse();
    void lookAtStore();

    QSharedPointer<Database::CPipeInspectionObject> m_inspection;
    Vehicle::VehicleFeed m_feed;
    Vehicle::Replay m_replay;
    Outcome m_outcome;
    bool m_stopped = false;
};

} // namespace Torvik::Viewer
