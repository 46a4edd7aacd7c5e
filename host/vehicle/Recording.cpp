#include "host/vehicle/Recording.h"

#include <algorithm>

namespace Torvik::Vehicle {

namespace {

QByteArray seconds(double value)
{
    return QByteArray::number(value, 'f', 3);
}

QByteArray metres(double value)
{
    return ',' + QByteArray::number(value, 'f', 4);
}

} // namespace

Recording parseRecording(const QByteArray& bytes)
{
    Recording recording;
    const auto onProblem = [&recording](const LineProblem& problem) { recording.problems << problem; };
    ReadingLines* lines = nullptr;
    const auto onReading = [&](const Reading& reading) {
        if (!recording.readings.isEmpty() && reading.seconds < recording.readings.last().seconds)
            onProblem({lines->lineCount(), QStringLiteral("the time lies before that of the line before")});
        else
            recording.readings << reading;
    };
    ReadingLines reader(onReading, onProblem);
    lines = &reader;
    reader.feed(bytes);
    reader.finish();
    return recording;
}

QByteArray writeRecording(const QVector<Reading>& readings)
{
    const bool sensor = std::any_of(readings.cbegin(), readings.cend(),
                                    [](const Reading& reading) { return reading.sensor.has_value(); });
    QByteArray text = sensor ? "time,counter,x,y,z\n" : "time,counter\n";
    for (const Reading& reading : readings) {
        text += seconds(reading.seconds) + metres(reading.counter);
        if (reading.sensor)
            text += metres(reading.sensor->x) + metres(reading.sensor->y) + metres(reading.sensor->z);
        text += '\n';
    }
    return text;
}

} // namespace Torvik::Vehicle
