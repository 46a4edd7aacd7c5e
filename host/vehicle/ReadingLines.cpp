#include "host/vehicle/ReadingLines.h"

#include <QStringList>

#include <cmath>
#include <utility>

namespace Torvik::Vehicle {

namespace {

constexpr int longestLine = 1000;
/** Metres; no cable and no sensor reaches further. */
constexpr double farthest = 1e6;
constexpr int withoutSensor = 2;
constexpr int withSensor = 5;

const char* const columns[withSensor] = {"time", "counter", "x", "y", "z"};

QString shown(const QByteArray& text)
{
    constexpr int mostShown = 40;
    const QString all = QString::fromUtf8(text.left(mostShown));
    return text.size() > mostShown ? all + QStringLiteral("...") : all;
}

bool isHeader(const QList<QByteArray>& fields)
{
    for (int i = 0; i < fields.size(); ++i) {
        if (fields[i].toLower() != columns[i])
            return false;
    }
    return true;
}

QList<QByteArray> fieldsOf(const QByteArray& line)
{
    const bool semicolons = line.contains(';');
    QList<QByteArray> fields = line.split(semicolons ? ';' : ',');
    for (QByteArray& field : fields) {
        field = field.trimmed();
        if (semicolons)
            field.replace(',', '.');
    }
    // The columns of the sensor may be there and empty.
    while (fields.size() > withoutSensor && fields.size() <= withSensor && fields.last().isEmpty())
        fields.removeLast();
    return fields;
}

} // namespace

QString toText(const LineProblem& problem)
{
    return QStringLiteral("line %1: %2").arg(problem.line).arg(problem.text);
}

ReadLine readLine(const QByteArray& line)
{
    const QByteArray trimmed = line.trimmed();
    if (trimmed.isEmpty())
        return {};
    const QList<QByteArray> fields = fieldsOf(trimmed);
    if (fields.size() != withoutSensor && fields.size() != withSensor)
        return {std::nullopt, QStringLiteral("2 or 5 values make a reading, not %1").arg(fields.size())};
    if (isHeader(fields))
        return {};

    double values[withSensor] = {};
    for (int i = 0; i < fields.size(); ++i) {
        bool isNumber = false;
        values[i] = fields[i].toDouble(&isNumber);
        if (!isNumber || !std::isfinite(values[i]))
            return {std::nullopt,
                    QStringLiteral("the %1 \"%2\" is no number").arg(QLatin1String(columns[i]), shown(fields[i]))};
        if (i > 0 && std::abs(values[i]) > farthest)
            return {std::nullopt,
                    QStringLiteral("the %1 %2 is out of reach").arg(QLatin1String(columns[i]), shown(fields[i]))};
    }
    Reading reading {values[0], values[1], std::nullopt};
    if (fields.size() == withSensor)
        reading.sensor = SensorPlace {values[2], values[3], values[4]};
    return {reading, {}};
}

ReadingLines::ReadingLines(OnReading onReading, OnProblem onProblem)
    : m_onReading(std::move(onReading))
    , m_onProblem(std::move(onProblem))
{
}

void ReadingLines::feed(const QByteArray& bytes)
{
    int begin = 0;
    while (begin < bytes.size()) {
        const int lineBreak = bytes.indexOf('\n', begin);
        const int end = lineBreak < 0 ? bytes.size() : lineBreak;
        if (m_pending.size() + end - begin > longestLine)
            m_tooLong = true;
        else if (!m_tooLong)
            m_pending.append(bytes.constData() + begin, end - begin);
        if (lineBreak < 0)
            return;
        endLine();
        begin = lineBreak + 1;
    }
}

void ReadingLines::finish()
{
    if (!m_pending.isEmpty() || m_tooLong)
        endLine();
}

void ReadingLines::endLine()
{
    static const QByteArray byteOrderMark("\xEF\xBB\xBF");
    ++m_line;
    QByteArray line = std::exchange(m_pending, {});
    if (std::exchange(m_tooLong, false)) {
        m_onProblem({m_line, QStringLiteral("longer than %1 bytes").arg(longestLine)});
        return;
    }
    if (m_line == 1 && line.startsWith(byteOrderMark))
        line.remove(0, byteOrderMark.size());
    const ReadLine read = readLine(line);
    if (read.reading)
        m_onReading(*read.reading);
    else if (!read.error.isEmpty())
        m_onProblem({m_line, read.error});
}

} // namespace Torvik::Vehicle
