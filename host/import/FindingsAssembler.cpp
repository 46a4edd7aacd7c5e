#include "host/import/FindingsAssembler.h"

#include "host/domain/ObservationCodes.h"
#include "host/import/CourseGeometry.h"
#include "host/import/LateralJoins.h"

#include <algorithm>
#include <cmath>

namespace Torvik::Import {

namespace Codes = Database::ObservationCodes;

namespace {

/** A finding this far behind the end of its pipe is no matter of rounding. */
constexpr double BeyondToleranceM = 0.5;
/** One that somebody has written by hand may be this far behind it. */
constexpr double RoundingToleranceM = 0.01;

unsigned kindOf(const FindingData& finding)
{
    return Codes::flags(finding.code, finding.ch1, finding.ch2);
}

bool isConnection(const FindingData& finding)
{
    const unsigned kind = kindOf(finding);
    return (kind & Codes::connection) && !(kind & Codes::bend);
}

/** No survey knows the direction of a lateral's first piece better than that. */
double toTenths(double degrees)
{
    return std::round(degrees * 10.0) / 10.0;
}

} // namespace

FindingsAssembler::FindingsAssembler(const QVector<Pipe>& pipes, ImportReport& report)
    : m_pipes(pipes)
    , m_report(report)
{
    for (int i = 0; i < pipes.size(); ++i) {
        QHash<QString, int>& byKey = m_pipeByKey[int(pipes[i].kind)];
        if (!byKey.contains(pipes[i].key))
            byKey.insert(pipes[i].key, i);
        if (pipes[i].kind != PipeKind::Lateral)
            continue;
        if (!pipes[i].sectionId.isEmpty())
            m_lateralsOf.insert(pipes[i].sectionId, i);
        if (!pipes[i].course.isEmpty()) {
            for (const Point& end : {pipes[i].course.first(), pipes[i].course.last()})
                m_lateralEnds.append({end.x, end.y, i});
        }
    }
    std::sort(m_lateralEnds.begin(), m_lateralEnds.end(),
              [](const LateralEnd& a, const LateralEnd& b) { return a.x < b.x; });
}

int FindingsAssembler::addInspection(const Inspection& inspection)
{
    m_inspections.append(inspection);
    m_rows.append(QVector<ObservationRow> {});
    return m_inspections.size() - 1;
}

double FindingsAssembler::knownLength(int inspection) const
{
    const Inspection& walked = m_inspections[inspection];
    const Pipe& pipe = m_pipes[walked.pipe];
    return std::max({Course::length(pipe.course), pipe.length.value_or(0.0), walked.inspectedLength.value_or(0.0)});
}

void FindingsAssembler::take(int inspection, const FindingData& finding)
{
    const Pipe& pipe = m_pipes[m_inspections[inspection].pipe];
    const double length = knownLength(inspection);
    if (length > 0.0 && finding.distance > length + BeyondToleranceM)
        m_report.warn(Kinds::Observations, pipe.key, finding.source,
                      QStringLiteral("%1 at %2 m lies beyond the pipe, which is %3 m long")
                          .arg(finding.code)
                          .arg(finding.distance)
                          .arg(length));
    m_rows[inspection].append({{}, m_inspections[inspection].id, {}, finding});
    m_report.taken(Kinds::Observations);
}

void FindingsAssembler::addExisting(int inspection, const ObservationRow& row)
{
    m_rows[inspection].append(row);
    if (!row.lateralId.isEmpty())
        m_claimed.insert(row.lateralId);
}

int FindingsAssembler::pipeByKey(const QString& key) const
{
    return m_pipeByKey[int(PipeKind::Section)].value(key, m_pipeByKey[int(PipeKind::Lateral)].value(key, -1));
}

int FindingsAssembler::latestInspection(int pipe) const
{
    int latest = -1;
    for (int i = 0; i < m_inspections.size(); ++i) {
        if (m_inspections[i].pipe == pipe && (latest < 0 || m_inspections[i].when >= m_inspections[latest].when))
            latest = i;
    }
    return latest;
}

/** Why a record does not fit the network; nothing when it does. */
std::optional<QString> FindingsAssembler::refusal(const FindingRecord& record, int pipe, int inspection) const
{
    if (pipe < 0)
        return QStringLiteral("unknown pipe");
    if (inspection < 0)
        return QStringLiteral("the pipe has no inspection");
    const double length = knownLength(inspection);
    if (length > 0.0 && record.finding.distance > length + RoundingToleranceM)
        return QStringLiteral("beyond the end of the pipe");
    if (record.finding.lateralKey.isEmpty())
        return std::nullopt;
    const int lateral = m_pipeByKey[int(PipeKind::Lateral)].value(record.finding.lateralKey, -1);
    if (lateral < 0)
        return QStringLiteral("unknown lateral");
    if (lateral == pipe)
        return QStringLiteral("a lateral cannot join itself");
    if (!isConnection(record.finding))
        return QStringLiteral("the code is none of a connection, but a lateral is named");
    if (m_claimed.contains(m_pipes[lateral].id))
        return QStringLiteral("the lateral has its connection already");
    return std::nullopt;
}

void FindingsAssembler::take(const FindingRecord& record)
{
    const FindingData& finding = record.finding;
    const int pipe = pipeByKey(record.pipeKey);
    const int inspection = pipe < 0 ? -1 : latestInspection(pipe);
    const std::optional<QString> reason = refusal(record, pipe, inspection);
    if (reason) {
        QString detail = *reason;
        if (pipe < 0)
            detail += QStringLiteral(": \"%1\"").arg(record.pipeKey);
        else if (*reason == QLatin1String("beyond the end of the pipe"))
            detail += QStringLiteral(": %1 m of %2 m").arg(finding.distance).arg(knownLength(inspection));
        else if (!finding.lateralKey.isEmpty())
            detail += QStringLiteral(": \"%1\"").arg(finding.lateralKey);
        m_report.leaveOut(Kinds::Observations, record.pipeKey, finding.source, detail, *reason);
        return;
    }
    if ((kindOf(finding) & Codes::bend) && !(finding.bendClock && finding.angle))
        m_report.warn(Kinds::Observations, record.pipeKey, finding.source,
                      QStringLiteral("a bend needs clock and angle; it turns nothing"));
    ObservationRow row {{}, m_inspections[inspection].id, {}, finding};
    if (!finding.lateralKey.isEmpty()) {
        row.lateralId = m_pipes[m_pipeByKey[int(PipeKind::Lateral)].value(finding.lateralKey)].id;
        m_claimed.insert(row.lateralId);
    }
    m_rows[inspection].append(row);
    m_report.taken(Kinds::Observations);
}

std::optional<FindingsAssembler::Joint> FindingsAssembler::jointOf(const Pipe& lateral, const Pipe& pipe,
                                                                   const QVector<Point>& walked,
                                                                   Direction direction) const
{
    const bool isSaid = lateral.sectionId == pipe.id;
    if (lateral.id == pipe.id || (!lateral.sectionId.isEmpty() && !isSaid))
        return std::nullopt;
    // A lateral that ends at a manhole of the pipe joins the manhole.
    const auto endsAtNode = [&](const QString& node) {
        return !isSaid && !node.isEmpty() && (node == pipe.fromNodeId || node == pipe.toNodeId);
    };
    Joint joint;
    for (const bool isDownstreamEnd : {true, false}) {
        if (lateral.course.size() < 2 || walked.size() < 2 ||
            endsAtNode(isDownstreamEnd ? lateral.toNodeId : lateral.fromNodeId))
            continue;
        const int last = lateral.course.size() - 1;
        const Point& end = lateral.course[isDownstreamEnd ? last : 0];
        const Point& next = lateral.course[isDownstreamEnd ? last - 1 : 1];
        const Course::Foot foot = Course::footOf(walked, end);
        if (foot.offset > OffsetToleranceM)
            continue;
        joint.distance = foot.along;
        if (lateral.isSurveyed && pipe.isSurveyed)
            joint.branch = Course::branchOf(Course::frameAt(walked, foot.along), Course::between(end, next));
        return joint;
    }
    if (!isSaid || !lateral.joinDistance)
        return std::nullopt;
    const double length = walked.isEmpty() ? pipe.length.value_or(0.0) : Course::length(walked);
    joint.distance = direction == Direction::Upstream ? *lateral.joinDistance : length - *lateral.joinDistance;
    return joint;
}

/** Laterals that may join: those with an end in the box around the course, and those that are said to. */
QVector<int> FindingsAssembler::lateralsNear(const QVector<Point>& course, const QString& pipeId) const
{
    QVector<int> laterals = m_lateralsOf.values(pipeId).toVector();
    if (!course.isEmpty()) {
        const auto byX = [](const Point& a, const Point& b) { return a.x < b.x; };
        const auto byY = [](const Point& a, const Point& b) { return a.y < b.y; };
        const auto [west, east] = std::minmax_element(course.cbegin(), course.cend(), byX);
        const auto [south, north] = std::minmax_element(course.cbegin(), course.cend(), byY);
        auto end = std::lower_bound(m_lateralEnds.cbegin(), m_lateralEnds.cend(), west->x - OffsetToleranceM,
                                    [](const LateralEnd& lateral, double x) { return lateral.x < x; });
        for (; end != m_lateralEnds.cend() && end->x <= east->x + OffsetToleranceM; ++end) {
            if (end->y >= south->y - OffsetToleranceM && end->y <= north->y + OffsetToleranceM)
                laterals.append(end->lateral);
        }
    }
    std::sort(laterals.begin(), laterals.end());
    laterals.erase(std::unique(laterals.begin(), laterals.end()), laterals.end());
    return laterals;
}

QVector<FindingsAssembler::Joint> FindingsAssembler::jointsOf(const Inspection& inspection) const
{
    const Pipe& pipe = m_pipes[inspection.pipe];
    const QVector<Point> walked =
        inspection.direction == Direction::Upstream ? Course::reversed(pipe.course) : pipe.course;
    QVector<Joint> joints;
    for (const int i : lateralsNear(walked, pipe.id)) {
        if (m_claimed.contains(m_pipes[i].id))
            continue;
        std::optional<Joint> joint = jointOf(m_pipes[i], pipe, walked, inspection.direction);
        if (!joint)
            continue;
        joint->lateral = i;
        joints.append(*joint);
    }
    return joints;
}

void FindingsAssembler::connect(int inspection)
{
    QVector<int> rows;
    QVector<LateralJoins::Connection> connections;
    for (int i = 0; i < m_rows[inspection].size(); ++i) {
        const ObservationRow& row = m_rows[inspection][i];
        if (!row.id.isEmpty() || !isConnection(row.finding) || !row.lateralId.isEmpty())
            continue;
        rows.append(i);
        connections.append({row.finding.distance, row.finding.clock1});
    }
    if (rows.isEmpty())
        return;
    const QVector<Joint> joints = jointsOf(m_inspections[inspection]);
    QVector<LateralJoins::Join> joins;
    for (const Joint& joint : joints)
        joins.append({joint.distance, joint.branch ? std::optional<int>(joint.branch->clock) : std::nullopt});
    const QVector<int> joinOf = LateralJoins::match(connections, joins, StationToleranceM);
    for (int i = 0; i < rows.size(); ++i) {
        if (joinOf[i] < 0)
            continue;
        const Joint& joint = joints[joinOf[i]];
        ObservationRow& row = m_rows[inspection][rows[i]];
        row.lateralId = m_pipes[joint.lateral].id;
        m_claimed.insert(row.lateralId);
        if (joint.branch && !row.finding.clock1)
            row.finding.clock1 = joint.branch->clock;
        if (joint.branch && !row.finding.angle)
            row.finding.angle = toTenths(joint.branch->angleDeg);
    }
}

void FindingsAssembler::connectLaterals()
{
    for (int i = 0; i < m_inspections.size(); ++i)
        connect(i);
}

QVector<ObservationRow> FindingsAssembler::rows() const
{
    QVector<ObservationRow> all;
    for (const QVector<ObservationRow>& rows : m_rows) {
        for (const ObservationRow& row : rows) {
            if (row.id.isEmpty())
                all.append(row);
        }
    }
    return all;
}

bool FindingsAssembler::hasNewBends(int inspection) const
{
    return bends(inspection).size() > bends(inspection, Which::Existing).size();
}

QVector<Course::Bend> FindingsAssembler::bends(int inspection, Which which) const
{
    QVector<Course::Bend> found;
    for (const ObservationRow& row : m_rows[inspection]) {
        const FindingData& finding = row.finding;
        if (which == Which::Existing && row.id.isEmpty())
            continue;
        if ((kindOf(finding) & Codes::bend) && finding.bendClock && finding.angle)
            found.append({finding.distance, double(*finding.bendClock), *finding.angle});
    }
    return found;
}

} // namespace Torvik::Import
