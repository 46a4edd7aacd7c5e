#include "host/modules/GpsTrack.h"

#include <QDateTime>
#include <QStringList>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>
#include <optional>

namespace Torvik::Viewer {

namespace {

const QString noFix = QStringLiteral("No Fix");
const QString fix2d = QStringLiteral("2D Fix");
const QString fix3d = QStringLiteral("3D Fix");
const QString estimatedFix = QStringLiteral("Estimated Fix");

std::optional<double> number(const QString& text, double limit)
{
    bool known = false;
    const double value = text.trimmed().toDouble(&known);
    return known && std::isfinite(value) && std::abs(value) <= limit ? std::optional<double>(value) : std::nullopt;
}

QString statusOf(const QString& word)
{
    const QString wanted = word.trimmed().toLower();
    for (const QString& status : {noFix, fix2d, fix3d, estimatedFix}) {
        if (wanted == status.toLower() || wanted == status.section(QLatin1Char(' '), 0, 0).toLower()) {
            return status;
        }
    }
    return {};
}

std::optional<GpsFix> place(const QStringList& cells, int first)
{
    if (cells.size() < first + 2) {
        return std::nullopt;
    }
    const auto latitude = number(cells[first], 90.0);
    const auto longitude = number(cells[first + 1], 180.0);
    const QString status = cells.size() > first + 2 ? statusOf(cells[first + 2]) : fix3d;
    if (!latitude || !longitude || status.isEmpty()) {
        return std::nullopt;
    }
    return GpsFix {0.0, status, *latitude, *longitude};
}

/** The point that the reader stands at the begin of; its time in milliseconds since 1970, or none. */
std::optional<GpsFix> readPoint(QXmlStreamReader& xml, std::optional<qint64>& time)
{
    const auto latitude = number(xml.attributes().value(QLatin1String("lat")).toString(), 90.0);
    const auto longitude = number(xml.attributes().value(QLatin1String("lon")).toString(), 180.0);
    QString status = fix3d;
    while (xml.readNextStartElement()) {
        const QString name = xml.name().toString();
        const QString text = xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
        if (name == QLatin1String("fix"))
            status = text == QLatin1String("none") ? noFix : text == QLatin1String("2d") ? fix2d : fix3d;
        const QDateTime moment =
            name == QLatin1String("time") ? QDateTime::fromString(text, Qt::ISODateWithMs) : QDateTime();
        if (moment.isValid())
            time = moment.toMSecsSinceEpoch();
    }
    if (!latitude || !longitude)
        return std::nullopt;
    return GpsFix {0.0, status, *latitude, *longitude};
}

GpsTrack parseGpx(const QString& text)
{
    GpsTrack track;
    QXmlStreamReader xml(text);
    std::optional<qint64> start;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement() || xml.name() != QLatin1String("trkpt"))
            continue;
        const int line = int(xml.lineNumber());
        std::optional<qint64> time;
        auto fix = readPoint(xml, time);
        if (time && !start)
            start = time;
        const double last = track.duration();
        if (fix)
            fix->time = time ? double(*time - *start) / 1000.0 : track.fixes.isEmpty() ? 0.0 : last + 1.0;
        if (fix && fix->time >= last)
            track.fixes.append(*fix);
        else
            track.malformedLines.append(line);
    }
    if (xml.hasError())
        track.malformedLines.append(int(xml.lineNumber()));
    return track;
}

} // namespace

GpsTrack GpsTrack::parse(const QString& text)
{
    if (text.trimmed().startsWith(QLatin1Char('<')))
        return parseGpx(text);
    GpsTrack track;
    const QStringList lines = text.split(QLatin1Char('\n'));
    bool first = true;
    for (int i = 0; i < lines.size(); ++i) {
        const QString line = lines[i].trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#'))) {
            continue;
        }
        const QStringList cells = line.split(QLatin1Char(','));
        const auto time = number(cells[0], 1e9);
        auto fix = place(cells, 1);
        if (time && fix && (track.fixes.isEmpty() || *time >= track.fixes.last().time)) {
            fix->time = *time;
            track.fixes.append(*fix);
        } else if (!first || cells[0].isEmpty() || cells[0].at(0).isDigit()) {
            track.malformedLines.append(i + 1);
        }
        first = false;
    }
    return track;
}

const GpsFix& GpsTrack::at(double seconds) const
{
    const auto next = std::upper_bound(fixes.begin(), fixes.end(), seconds,
                                       [](double time, const GpsFix& fix) { return time < fix.time; });
    return next == fixes.begin() ? fixes.first() : *(next - 1);
}

GpsChoice GpsChoice::parse(const QString& text)
{
    if (text == QLatin1String("off")) {
        return {true, false, false, {0.0, noFix, 0.0, 0.0}};
    }
    if (text == QLatin1String("none")) {
        return {true, true, false, {0.0, noFix, 0.0, 0.0}};
    }
    if (text == QLatin1String("2d") || text == QLatin1String("3d")) {
        return {true, true, true, {0.0, text == QLatin1String("2d") ? fix2d : fix3d, 0.0, 0.0}};
    }
    const auto fix = place(text.split(QLatin1Char(',')), 0);
    return fix ? GpsChoice {true, true, false, *fix} : GpsChoice();
}

} // namespace Torvik::Viewer
