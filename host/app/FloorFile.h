#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector3D>
#include <QVector>

#include <optional>

namespace Torvik::Viewer {

/** Where a floor's plan lies on the earth. Its height is that of its floor. */
struct FloorPlace {
    /** Of the point that the plan's matrix moves, in metres of the project's coordinate system. */
    double east = 0.0;
    double north = 0.0;
    /** Degrees about the vertical. */
    double turnDeg = 0.0;
    /** Along the plan's own axes, y upward. */
    QVector3D scale {1.0F, 1.0F, 1.0F};
};

struct FloorPlan {
    /** Name among the project's documents. */
    QString file;
    /** Missing when it could not be read. */
    std::optional<FloorPlace> place;
};

struct Floors {
    /** One for each floor, in metres above the one below; empty when nobody has told. */
    QVector<double> heights;
    /** By the floor's index. */
    QMap<int, FloorPlan> plans;
};

/** floors.json, which keeps the plans of a building's floors in a project. A project's path ends in a separator. No
 *  state; any thread. */
namespace FloorFile {

constexpr int floorCount = 4;
/** Larger than any in earnest; more is refused unread. */
constexpr qint64 largestFile = 1024 * 1024;

struct Reading {
    /** What could be read. */
    Floors floors;
    /** What could not, for the user. */
    QStringList problems;
};

QString path(const QString& project);
QByteArray write(const Floors& floors);
/** @param path  for the texts */
Reading read(const QByteArray& bytes, const QString& path);

/** Nothing, and no problem, without a file. */
Reading load(const QString& project);
/** Writes the file whole or leaves the one before as it is.
 *  @param keepBefore  that one could not be read whole: it is kept beside it as floors.json.damaged
 *  @returns why it could not be written, empty when it was */
QString save(const Floors& floors, const QString& project, bool keepBefore);

} // namespace FloorFile

} // namespace Torvik::Viewer
