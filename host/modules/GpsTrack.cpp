#include "host/modules/GpsTrack.h"

#include <QStringList>

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

} // namespace

GpsTrack GpsTrack::parse(const QString& text)
{
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
        } else if (!first || cells[0].at(0).isDigit()) {
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
        return {true, false, {0.0, noFix, 0.0, 0.0}};
    }
    if (text == QLatin1String("none")) {
        return {true, true, {0.0, noFix, 0.0, 0.0}};
    }
    const auto fix = place(text.split(QLatin1Char(',')), 0);
    return fix ? GpsChoice {true, true, *fix} : GpsChoice();
}

} // namespace Torvik::Viewer
