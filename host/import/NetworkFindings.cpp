// The third part of the assembler: findings of inspections, and the courses that follow from them.
#include "host/import/CourseGeometry.h"
#include "host/import/FindingsAssembler.h"
#include "host/import/NetworkAssembler.h"

namespace Torvik::Import {

void NetworkAssembler::takeFindings()
{
    QVector<FindingsAssembler::Pipe> pipes;
    for (int i = 0; i < m_pipes.size(); ++i) {
        const PipeRow& row = m_project.pipes[i];
        pipes.append({row.id, row.key, row.kind, row.fromNodeId, row.toNodeId, row.sectionId, m_pipes[i].joinDistance,
                      m_pipes[i].course, m_isSurveyed[i], row.length});
    }
    FindingsAssembler findings(pipes, m_report);
    for (int i = 0; i < m_project.inspections.size(); ++i) {
        const InspectionRow& row = m_project.inspections[i];
        findings.addInspection(
            {row.id, m_inspected[i].pipe, row.direction, row.inspectedLength, row.date + QLatin1Char(' ') + row.time});
        if (!m_inspected[i].data)
            continue;
        for (const FindingData& finding : m_inspected[i].data->findings)
            findings.take(i, finding);
    }
    findings.connectLaterals();
    if (!m_records.isEmpty()) {
        for (const FindingRecord& record : m_records)
            findings.take(record);
        findings.connectLaterals();
    }
    m_project.observations = findings.rows();
    for (ObservationRow& row : m_project.observations)
        row.id = freshId(QStringLiteral("observation"), row.inspectionId);
    for (int i = 0; i < m_project.inspections.size(); ++i)
        bendCourse(i, findings.bends(i));
}

/** Where an inspection of that pipe begins: at its course, else at its node. */
std::optional<Point> NetworkAssembler::startOf(int pipe, Direction direction, int startNode) const
{
    const bool isFrom = direction == Direction::Downstream;
    const PipeData& data = m_pipes[pipe];
    if (!data.course.isEmpty())
        return isFrom ? data.course.first() : data.course.last();
    if (startNode < 0 || !m_nodes[startNode].position)
        return std::nullopt;
    PipeData alone = data;
    alone.course = {*m_nodes[startNode].position, *m_nodes[startNode].position};
    for (Point& point : alone.course)
        point.z.reset();
    setEndHeights(alone, m_ends[pipe]);
    const Point start = isFrom ? alone.course.first() : alone.course.last();
    return Point {start.x, start.y, start.z ? start.z : heightOf(startNode)};
}

/** A stored shape has its bends in it, as the view takes it for what the inspection has seen. A surveyed course has
 * them anyway; one that is only the line between its nodes gets them here. */
void NetworkAssembler::bendCourse(int inspection, const QVector<Course::Bend>& bends)
{
    const Inspected& inspected = m_inspected[inspection];
    if (bends.isEmpty() || m_isSurveyed[inspected.pipe])
        return;
    InspectionRow& row = m_project.inspections[inspection];
    const PipeData& pipe = m_pipes[inspected.pipe];
    const std::optional<Point> start = startOf(inspected.pipe, row.direction, inspected.startNode);
    const double length =
        row.inspectedLength.value_or(pipe.length.value_or(pipe.course.isEmpty() ? 0.0 : Course::length(pipe.course)));
    if (!start || length <= 0.0) {
        m_report.warn(Kinds::Inspections, pipe.key, inspected.data ? inspected.data->source : pipe.source,
                      QStringLiteral("has bends, but no start or length from which its course could follow"));
        return;
    }
    Course::Vector heading;
    if (!pipe.course.isEmpty())
        heading = row.direction == Direction::Downstream ? Course::between(pipe.course.first(), pipe.course.last())
                                                         : Course::between(pipe.course.last(), pipe.course.first());
    const QVector<Point> walked = Course::bentCourse(*start, heading, length, bends);
    const QVector<Point> stored = row.direction == Direction::Downstream ? Course::reversed(walked) : walked;
    row.shapeWkt = Course::lineWkt(stored, shapeFlags(row.direction, inspected.startNode, *start));
}

} // namespace Torvik::Import
