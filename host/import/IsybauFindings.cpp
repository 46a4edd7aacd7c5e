#include "host/import/IsybauFindings.h"

#include "host/domain/ObservationCodes.h"

#include <QHash>

#include <algorithm>

namespace Torvik::Import {

namespace Codes = Database::ObservationCodes;

namespace {

constexpr int HoursOnTheDial = 12;

/** What a direction letter of a bend says: -1 left or down, 1 right or up, 0 nothing. */
int sense(const QString& letter, char negative, char positive)
{
    if (letter == QLatin1Char(negative))
        return -1;
    return letter == QLatin1Char(positive) ? 1 : 0;
}

/** The middle of a clock range, clockwise from one hour to the other. */
int middleHour(int from, int to)
{
    const int span = (to - from + HoursOnTheDial) % HoursOnTheDial;
    return (from + span / 2 - 1) % HoursOnTheDial + 1;
}

} // namespace

IsybauFindings::IsybauFindings(ImportReport& report, const QString& fileName, const QString& pipeKey)
    : m_report(report)
    , m_fileName(fileName)
    , m_pipeKey(pipeKey)
{
}

void IsybauFindings::warn(const SourceRef& source, const QString& reason)
{
    m_report.warn(Kinds::Observations, m_pipeKey, source, reason);
}

std::optional<double> IsybauFindings::number(const XmlElement& element, const QString& name)
{
    const XmlElement* child = element.child(name);
    if (!child || child->text.isEmpty())
        return std::nullopt;
    bool ok = false;
    const double value = QString(child->text).replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&ok);
    if (ok && qIsFinite(value))
        return value;
    warn({m_fileName, child->line, {}}, QStringLiteral("%1 is not a number: \"%2\"").arg(name, child->text));
    return std::nullopt;
}

/** "00" stands for "no second position" in the format, so it is no hour. */
std::optional<int> IsybauFindings::hour(const XmlElement& element, const QString& name)
{
    const XmlElement* child = element.child(name);
    if (!child || child->text.isEmpty())
        return std::nullopt;
    bool ok = false;
    const int value = child->text.toInt(&ok);
    if (ok && value >= 1 && value <= HoursOnTheDial)
        return value;
    if (!ok || value != 0)
        warn({m_fileName, child->line, {}},
             QStringLiteral("%1 is no hour of the clock: \"%2\"").arg(name, child->text));
    return std::nullopt;
}

std::optional<int> IsybauFindings::bendClock(const QString& sideways, const QString& upDown, std::optional<int> from,
                                             std::optional<int> to)
{
    const int aside = sense(sideways, 'A', 'B');
    const int rise = sense(upDown, 'B', 'A');
    if (aside != 0 && rise == 0)
        return aside < 0 ? 9 : 3;
    if (aside == 0 && rise != 0)
        return rise < 0 ? 6 : 12;
    if (aside == 0)
        return from && to ? std::optional<int>(middleHour(*from, *to)) : from;
    // Both ways at once: one of the two hours between; without a clock position the one nearer to level.
    const int level = aside > 0 ? (rise > 0 ? 2 : 4) : (rise > 0 ? 10 : 8);
    const int steep = aside > 0 ? (rise > 0 ? 1 : 5) : (rise > 0 ? 11 : 7);
    return from == steep ? steep : level;
}

void IsybauFindings::readBend(FindingData& finding)
{
    finding.bendClock = bendClock(finding.ch1, finding.ch2, finding.clock1, finding.clock2);
    finding.angle = finding.q1;
    if (!finding.bendClock)
        warn(finding.source, QStringLiteral("a bend that does not say whereto; it turns nothing"));
    if (!finding.angle)
        warn(finding.source, QStringLiteral("a bend without an angle; it turns nothing"));
}

std::optional<FindingData> IsybauFindings::readOne(const XmlElement& element)
{
    FindingData finding;
    finding.source = {m_fileName, element.line, {}};
    finding.code = element.value(QStringLiteral("InspektionsKode"));
    const QString station = element.value(QStringLiteral("Station"));
    const auto leaveOut = [&](const QString& reason, const QString& group) {
        m_report.leaveOut(Kinds::Observations, m_pipeKey, finding.source, reason, group);
        return std::nullopt;
    };
    if (finding.code.isEmpty())
        return leaveOut(QStringLiteral("no InspektionsKode"), {});
    bool ok = false;
    finding.distance = QString(station).replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&ok);
    if (!ok || !qIsFinite(finding.distance))
        return leaveOut(QStringLiteral("%1: Station is no number: \"%2\"").arg(finding.code, station),
                        QStringLiteral("Station is no number"));
    if (finding.distance < 0.0)
        return leaveOut(QStringLiteral("%1: Station %2 lies before the start").arg(finding.code, station),
                        QStringLiteral("Station lies before the start"));
    finding.ch1 = element.value(QStringLiteral("Charakterisierung1"));
    finding.ch2 = element.value(QStringLiteral("Charakterisierung2"));
    finding.q1 = number(element, QStringLiteral("Quantifizierung1Numerisch"));
    finding.q2 = number(element, QStringLiteral("Quantifizierung2Numerisch"));
    finding.clock1 = hour(element, QStringLiteral("PositionVon"));
    finding.clock2 = hour(element, QStringLiteral("PositionBis"));
    finding.isAtJoint = element.value(QStringLiteral("Verbindung")) == QLatin1String("1");
    const QString range = element.value(QStringLiteral("Streckenschaden"));
    if (!range.isEmpty())
        finding.range = range + element.value(QStringLiteral("StreckenschadenLfdNr"));
    finding.photo = element.value(QStringLiteral("Fotodatei"));
    finding.videoTime = element.value(QStringLiteral("Timecode"));
    finding.remarks = element.value(QStringLiteral("Kommentar"));
    finding.attributes.insert(QStringLiteral("isybau"), element.toJson());
    if (Codes::flags(finding.code, finding.ch1, finding.ch2) & Codes::bend)
        readBend(finding);
    return finding;
}

bool IsybauFindings::turnStations(QVector<FindingData>& findings)
{
    std::optional<double> start;
    std::optional<double> end;
    for (const FindingData& finding : qAsConst(findings)) {
        if (finding.code.startsWith(QLatin1String("BCD")))
            start = start.value_or(finding.distance);
        else if (Codes::flags(finding.code, finding.ch1, finding.ch2) & Codes::endOfInspection)
            end = finding.distance;
    }
    if (!start || !end || *start <= *end)
        return false;
    for (FindingData& finding : findings)
        finding.distance = std::max(0.0, *start - finding.distance);
    return true;
}

/** A range begins with a finding marked A and a number and ends with one of the same code marked B and that number. */
void IsybauFindings::closeRanges(QVector<FindingData>& findings)
{
    QHash<QString, int> open;
    for (int i = 0; i < findings.size(); ++i) {
        const QString& range = findings[i].range;
        const QString name = range.mid(1) + QLatin1Char('/') + findings[i].code;
        if (range.startsWith(QLatin1Char('A'))) {
            open.insert(name, i);
        } else if (range.startsWith(QLatin1Char('B'))) {
            const int first = open.contains(name) ? open.take(name) : -1;
            if (first >= 0)
                findings[first].distanceEnd = findings[i].distance;
            else
                warn(findings[i].source,
                     QStringLiteral("%1: the range %2 ends without a beginning").arg(findings[i].code, range));
        }
    }
    for (const int first : qAsConst(open))
        warn(findings[first].source,
             QStringLiteral("%1: the range %2 has no end").arg(findings[first].code, findings[first].range));
}

QVector<FindingData> IsybauFindings::read(const QVector<const XmlElement*>& elements)
{
    QVector<FindingData> findings;
    for (const XmlElement* element : elements) {
        const std::optional<FindingData> finding = readOne(*element);
        if (finding)
            findings.append(*finding);
    }
    if (turnStations(findings))
        warn(findings.first().source,
             QStringLiteral("the stations are counted from the other end; they are turned to count from the start"));
    closeRanges(findings);
    return findings;
}

} // namespace Torvik::Import
