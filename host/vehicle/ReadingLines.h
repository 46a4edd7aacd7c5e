#pragma once

#include "host/vehicle/Reading.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <functional>

namespace Torvik::Vehicle {

/** A line that is no reading, counted from 1, and why. */
struct LineProblem {
    int line = 0;
    QString text;
};

/** "line 3: ..." */
QString toText(const LineProblem& problem);

/** What one line holds: a reading, nothing (blank, or the header), or an error. */
struct ReadLine {
    std::optional<Reading> reading;
    QString error;
};

/** Reads one line without its line break: time, counter and, if there is a sensor, its x, y and z, apart by commas or
 *  semicolons. Between semicolons a number may have a decimal comma. Pure, any thread. */
ReadLine readLine(const QByteArray& line);

/** Makes readings of bytes as they come in, a line one reading; a line may come in pieces. A line that is none is
 *  reported and left out, and the next one counts again. */
class ReadingLines {
public:
    using OnReading = std::function<void(const Reading&)>;
    using OnProblem = std::function<void(const LineProblem&)>;

    ReadingLines(OnReading onReading, OnProblem onProblem);

    void feed(const QByteArray& bytes);
    /** No more comes: what has no line break yet is the last line. */
    void finish();
    /** The lines that have begun. */
    int lineCount() const { return m_line; }

private:
    void endLine();

    OnReading m_onReading;
    OnProblem m_onProblem;
    QByteArray m_pending;
    /** The pending line is longer than any reading; only its length counts from there on. */
    bool m_tooLong = false;
    int m_line = 0;
};

} // namespace Torvik::Vehicle
