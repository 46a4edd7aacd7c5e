// The second half of the assembler: rows out of what was settled before.
#include "host/import/CourseGeometry.h"
#include "host/import/NetworkAssembler.h"

#include <QJsonArray>

#include <cmath>

namespace Torvik::Import {

namespace {

/** Bits of the flags word in a stored shape: where a position comes from, and the direction of an inspection. */
constexpr int ObservationsFlag = 1;
constexpr int ManualFlag = 4;
constexpr int GisFlag = 16;
constexpr int PipeShapeFlag = 64;
constexpr int UpstreamFlag = 128;
constexpr int DownstreamFlag = 256;

/** The view reads a depth below 1e-5 as "not given"; a pipe at the very height of its node gets this one. */
constexpr double LeastDepthM = 1e-4;
constexpr double OwnPlaceM = 0.01;

QString typeOf(NodeKind kind)
{
    switch (kind) {
    case NodeKind::Connection:
        return QStringLiteral("CON");
    case NodeKind::Building:
        return QStringLiteral("BLD");
    case NodeKind::Manhole:
        break;
    }
    return QStringLiteral("MH");
}

void appendRecord(QJsonObject& attributes, const AttachedRecord& record)
{
    QJsonArray list = attributes.value(record.reportKind).toArray();
    list.append(record.attributes);
    attributes.insert(record.reportKind, list);
}

} // namespace

/** Height of the node's point: the cover, but for a connection the pipe. */
std::optional<double> NetworkAssembler::heightOf(int index) const
{
    const NodeData& node = m_nodes[index];
    const std::optional<double> atPipe = node.position && node.position->z ? node.position->z : node.invert;
    if (node.kind == NodeKind::Connection && atPipe)
        return atPipe;
    if (node.cover)
        return node.cover;
    if (node.invert && node.depth)
        return *node.invert + *node.depth;
    return node.invert ? node.invert : atPipe;
}

void NetworkAssembler::writeNodes()
{
    for (int i = 0; i < m_nodes.size(); ++i) {
        const NodeData& node = m_nodes[i];
        NodeRow row;
        row.id = m_nodeIds[i];
        row.key = node.key;
        row.type = typeOf(node.kind);
        const std::optional<double> height = heightOf(i);
        if (node.position)
            row.shapeWkt = Course::pointWkt({node.position->x, node.position->y, height}, GisFlag);
        if (node.kind != NodeKind::Connection) {
            if (node.cover && node.invert && *node.cover != *node.invert)
                row.depthToInvert = Course::difference(*node.cover, *node.invert);
            else if (node.depth)
                row.depthToInvert = node.depth;
        }
        row.coverLevel = node.cover;
        row.invertLevel = node.invert;
        row.details = node.details;
        row.size1 = node.diameterMm;
        row.attributes = node.attributes;
        m_project.nodes.append(row);
    }
}

std::optional<double> NetworkAssembler::depthAt(int node, const std::optional<double>& height,
                                                const std::optional<double>& stated) const
{
    if (node < 0)
        return std::nullopt;
    const std::optional<double> top = heightOf(node);
    std::optional<double> depth = stated;
    if (top && height)
        depth = Course::difference(*top, *height);
    if (depth && std::abs(*depth) < LeastDepthM)
        depth = LeastDepthM;
    return depth;
}

void NetworkAssembler::writePipes()
{
    for (int i = 0; i < m_pipes.size(); ++i) {
        const PipeData& pipe = m_pipes[i];
        PipeRow row;
        row.id = freshId(Kinds::ofPipe(pipe.kind), pipe.key);
        row.key = pipe.key;
        row.kind = pipe.kind;
        if (m_ends[i].from >= 0)
            row.fromNodeId = m_nodeIds[m_ends[i].from];
        if (m_ends[i].to >= 0)
            row.toNodeId = m_nodeIds[m_ends[i].to];
        const bool hasCourse = !pipe.course.isEmpty();
        row.shapeWkt = Course::lineWkt(pipe.course, m_isSurveyed[i] ? GisFlag : ObservationsFlag);
        row.fromNodeDepth =
            depthAt(m_ends[i].from, hasCourse ? pipe.course.first().z : pipe.fromInvert, pipe.fromDepth);
        row.toNodeDepth = depthAt(m_ends[i].to, hasCourse ? pipe.course.last().z : pipe.toInvert, pipe.toDepth);
        row.fromLevel = hasCourse ? pipe.course.first().z : pipe.fromInvert;
        row.toLevel = hasCourse ? pipe.course.last().z : pipe.toInvert;
        row.details = pipe.details;
        row.size1 = pipe.heightMm;
        row.size2 = pipe.widthMm;
        row.profile = pipe.profile;
        row.length = pipe.length;
        if (!row.length && hasCourse)
            row.length = Course::length(pipe.course);
        row.offset = pipe.offset;
        row.attributes = pipe.attributes;
        m_project.pipes.append(row);
    }
    for (int i = 0; i < m_pipes.size(); ++i) {
        if (m_pipes[i].sectionKey.isEmpty())
            continue;
        const int section = m_pipeByKey[int(PipeKind::Section)].value(m_pipes[i].sectionKey, -1);
        if (section >= 0)
            m_project.pipes[i].sectionId = m_project.pipes[section].id;
        else
            m_report.warn(Kinds::Laterals, m_pipes[i].key, m_pipes[i].source,
                          QStringLiteral("joins the unknown section \"%1\"").arg(m_pipes[i].sectionKey));
    }
    m_inspectionCount.fill(0, m_pipes.size());
}

/** The view puts a pipe to the point of its start node. Where the course begins elsewhere (at the wall of a building),
 * the shape is marked as placed, which keeps it where the source has it. */
int NetworkAssembler::shapeFlags(Direction direction, int startNode, const Point& start) const
{
    const int flags = PipeShapeFlag | (direction == Direction::Downstream ? DownstreamFlag : UpstreamFlag);
    if (startNode < 0 || !m_nodes[startNode].position)
        return flags | ManualFlag;
    const NodeData& node = m_nodes[startNode];
    const std::optional<double> height = heightOf(startNode);
    const bool isElsewhere = Course::planDistance(start, *node.position) > OwnPlaceM;
    const bool isAtOtherHeight =
        node.kind == NodeKind::Connection && height && start.z && std::abs(*height - *start.z) > OwnPlaceM;
    return isElsewhere || isAtOtherHeight ? flags | ManualFlag : flags;
}

void NetworkAssembler::addInspection(const InspectionData* data, int pipe, Direction direction, int startNode,
                                     int endNode)
{
    const PipeData& source = m_pipes[pipe];
    InspectionRow row;
    row.id = freshId(QStringLiteral("inspection/") + Kinds::ofPipe(source.kind), source.key);
    row.pipeId = m_project.pipes[pipe].id;
    row.direction = direction;
    if (startNode >= 0)
        row.startNodeId = m_nodeIds[startNode];
    if (endNode >= 0)
        row.endNodeId = m_nodeIds[endNode];
    if (!source.course.isEmpty()) {
        QVector<Point> walked = direction == Direction::Downstream ? source.course : Course::reversed(source.course);
        if (data && data->underWay && data->inspectedLength)
            walked = Course::firstPart(walked, *data->inspectedLength);
        // Stored from the downstream end to the upstream one, however it was walked.
        const QVector<Point> stored = direction == Direction::Downstream ? Course::reversed(walked) : walked;
        row.shapeWkt = Course::lineWkt(stored, shapeFlags(direction, startNode, walked.first()));
    }
    if (data) {
        row.attributes = data->attributes;
        row.date = data->date;
        row.time = data->time;
        row.inspector = data->inspector;
        row.remarks = data->remarks;
        row.inspectedLength = data->inspectedLength;
    }
    ++m_inspectionCount[pipe];
    m_project.inspections.append(row);
    m_inspected.append({pipe, startNode, data});
}

void NetworkAssembler::takeInspections()
{
    for (const InspectionData& data : m_model.inspections) {
        const int pipe = m_pipeByKey[int(data.pipeKind)].value(data.pipeKey, -1);
        if (pipe < 0) {
            const QString group =
                QStringLiteral("unknown %1")
                    .arg(data.pipeKind == PipeKind::Section ? QStringLiteral("section") : QStringLiteral("lateral"));
            m_report.leaveOut(Kinds::Inspections, data.pipeKey, data.source,
                              QStringLiteral("%1 \"%2\"").arg(group, data.pipeKey), group);
            for (const FindingData& finding : data.findings)
                m_report.leaveOut(Kinds::Observations, data.pipeKey, finding.source,
                                  QStringLiteral("its inspection is left out"));
            continue;
        }
        takeInspection(data, pipe);
        m_report.taken(Kinds::Inspections);
    }
}

void NetworkAssembler::takeInspection(const InspectionData& data, int pipe)
{
    Ends ends = m_ends[pipe];
    Direction direction = data.direction;
    const auto warn = [&](const QString& reason) {
        m_report.warn(Kinds::Inspections, data.pipeKey, data.source, reason);
    };
    if (direction == Direction::Unknown) {
        warn(QStringLiteral("no direction; taken as downstream"));
        direction = Direction::Downstream;
    }
    const bool isTurned = !data.fromKey.isEmpty() && data.fromKey != data.toKey &&
                          data.fromKey == m_pipes[pipe].toKey && data.toKey == m_pipes[pipe].fromKey;
    if (isTurned) {
        warn(QStringLiteral("its upstream and downstream node are those of the pipe turned round"));
        direction = direction == Direction::Downstream ? Direction::Upstream : Direction::Downstream;
    } else {
        for (const bool isFrom : {true, false}) {
            const QString& named = isFrom ? data.fromKey : data.toKey;
            const QString& known = isFrom ? m_pipes[pipe].fromKey : m_pipes[pipe].toKey;
            if (!named.isEmpty() && named != known)
                warn(QStringLiteral("names the node \"%1\" where the pipe has \"%2\"; the pipe's is taken")
                         .arg(named, known));
        }
    }
    if (direction == Direction::Downstream)
        addInspection(&data, pipe, direction, ends.from, ends.to);
    else
        addInspection(&data, pipe, direction, ends.to, ends.from);
}

void NetworkAssembler::makeMissingInspections()
{
    for (int i = 0; i < m_pipes.size(); ++i) {
        if (m_inspectionCount[i] > 0)
            continue;
        if (m_ends[i].from < 0 && m_ends[i].to >= 0)
            addInspection(nullptr, i, Direction::Upstream, m_ends[i].to, m_ends[i].from);
        else
            addInspection(nullptr, i, Direction::Downstream, m_ends[i].from, m_ends[i].to);
        m_report.made(Kinds::Inspections);
    }
}

void NetworkAssembler::takeRecords()
{
    for (const AttachedRecord& record : m_model.attached) {
        const int owner = record.toPipe ? m_pipeByKey[int(record.pipeKind)].value(record.key, -1)
                                        : m_index.find(record.key, record.nodeKind);
        if (owner < 0) {
            const QString reason = record.toPipe ? QStringLiteral("unknown pipe") : QStringLiteral("unknown node");
            m_report.leaveOut(record.reportKind, record.key, record.source, reason);
            for (int i = 0; i < record.observations; ++i)
                m_report.leaveOut(Kinds::NodeObservations, record.key, record.source,
                                  QStringLiteral("its inspection is left out"));
            continue;
        }
        appendRecord(record.toPipe ? m_project.pipes[owner].attributes : m_project.nodes[owner].attributes, record);
        m_report.taken(record.reportKind);
        if (record.observations > 0)
            m_report.taken(Kinds::NodeObservations, record.observations);
    }
}

} // namespace Torvik::Import
