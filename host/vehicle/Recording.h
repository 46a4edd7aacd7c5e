#pragma once

#include "host/vehicle/Reading.h"
#include "host/vehicle/ReadingLines.h"

#include <QByteArray>
#include <QVector>

/** Recordings of a vehicle's run as CSV. Pure, any thread. */
namespace Torvik::Vehicle {

struct Recording {
    /** In the order of time. */
    QVector<Reading> readings;
    /** What could not be taken. */
    QVector<LineProblem> problems;
};

/** Reads a file's content. A line whose time lies before that of the line before counts as malformed too. */
Recording parseRecording(const QByteArray& bytes);

/** A header and one line a reading: times in milliseconds' precision, lengths in tenths of a millimetre. The columns of
 *  the sensor are there if any reading has one. */
QByteArray writeRecording(const QVector<Reading>& readings);

} // namespace Torvik::Vehicle
