#pragma once

#include "host/vehicle/Reading.h"

#include <QString>
#include <QVector>

/** A vehicle's run as it would have been along a known course. Pure, any thread. */
namespace Torvik::Vehicle {

/** The corners of a pipe's stored shape (INS_Shape_WKT) in the direction of the inspection, from its begin; of several
 *  lines the first. Empty when the text holds no line.
 *  @param scale  metres on the ground of one unit of the shape's system */
QVector<SensorPlace> courseOfShape(const QString& wkt, double scale = 1.0);

/** Sum of the straight lengths, in metres. */
double lengthOf(const QVector<SensorPlace>& course);

struct RunOptions {
    /** Metres of cable from one reading to the next. */
    double step = 0.25;
    /** Metres a second. */
    double speed = 0.15;
    /** Metres by which the sensor is at most off the course, in any direction. The counter is exact. */
    double noise = 0;
    /** The same seed gives the same noise, on every machine. */
    unsigned seed = 1;
};

/** Readings from the course's begin to its end, all with a sensor's place. Empty for a course without length. */
QVector<Reading> runAlong(const QVector<SensorPlace>& course, const RunOptions& options);

} // namespace Torvik::Vehicle
