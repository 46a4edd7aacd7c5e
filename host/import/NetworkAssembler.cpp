#include "host/import/NetworkAssembler.h"

#include "host/import/CourseGeometry.h"
#include "host/import/HeightCheck.h"

#include <QMap>
#include <QUuid>

#include <algorithm>
#include <cmath>

namespace Torvik::Import {

namespace {

/** A pipe shorter than this has no direction. */
constexpr double ZeroLengthM = 1e-6;
/** Farther than this from its pipe's course a node counts as elsewhere. */
constexpr double OwnPlaceM = 0.01;

const char* endName(bool isFrom)
{
    return isFrom ? "upstream" : "downstream";
}

} // namespace

NetworkAssembler::NetworkAssembler(const NetworkModel& model, ImportReport& report, double toleranceM)
    : m_model(model)
    , m_report(report)
    , m_tolerance(toleranceM)
{
}

AssembledProject NetworkAssembler::assemble()
{
    takeNodes();
    takePipes();
    settleHeights();
    HeightCheck::warn(m_nodes, m_pipes, m_report);
    writeNodes();
    writePipes();
    takeInspections();
    makeMissingInspections();
    takeFindings();
    takeRecords();
    return m_project;
}

QString NetworkAssembler::freshId(const QString& kind, const QString& key)
{
    static const QUuid space(QStringLiteral("{6f2f9c7e-6a0c-4b52-9a57-0b6f4a2c8d11}"));
    const QString name = kind + QLatin1Char('/') + key;
    const int number = ++m_ids[name];
    return QUuid::createUuidV5(space, QStringLiteral("%1/%2").arg(name).arg(number)).toString(QUuid::WithoutBraces);
}

void NetworkAssembler::takeNodes()
{
    for (const NodeData& node : m_model.nodes) {
        const int index = m_nodes.size();
        if (!m_index.insert(node, index)) {
            const SourceRef& first = m_nodes[m_index.firstLike(node)].source;
            m_report.leaveOut(Kinds::Nodes, node.key, node.source,
                              first.line > 0
                                  ? QStringLiteral("a node of this key stands in line %1 already").arg(first.line)
                                  : QStringLiteral("a node of this key was read already (%1)").arg(first.feature),
                              QStringLiteral("key used twice"));
            continue;
        }
        m_nodes.append(node);
        m_nodeIds.append(freshId(QStringLiteral("node"), node.key));
        m_report.taken(Kinds::Nodes);
    }
    m_index.buildGrid(m_nodes, m_tolerance);
}

void NetworkAssembler::takePipes()
{
    for (const PipeData& pipe : m_model.pipes)
        takePipe(pipe);
    for (int i = 0; i < m_nodes.size(); ++i) {
        if (!m_nodes[i].position)
            m_report.warn(Kinds::Nodes, m_nodes[i].key, m_nodes[i].source,
                          QStringLiteral("no coordinates, and no pipe's course ends here; taken without a position"));
    }
}

int NetworkAssembler::resolveEnd(const PipeData& pipe, bool isFrom)
{
    const QString& key = isFrom ? pipe.fromKey : pipe.toKey;
    if (!key.isEmpty())
        return m_index.find(key, isFrom ? pipe.fromKind : pipe.toKind);
    if (pipe.course.isEmpty())
        return -1;
    return m_index.nearest(isFrom ? pipe.course.first() : pipe.course.last(), m_tolerance);
}

NetworkAssembler::Ends NetworkAssembler::resolveEnds(PipeData& pipe)
{
    const Ends ends {resolveEnd(pipe, true), resolveEnd(pipe, false)};
    if (pipe.course.size() < 2 || ends.from < 0 || ends.to < 0 || !m_nodes[ends.from].position ||
        !m_nodes[ends.to].position)
        return ends;
    const Point& from = *m_nodes[ends.from].position;
    const Point& to = *m_nodes[ends.to].position;
    const double asGiven =
        Course::planDistance(from, pipe.course.first()) + Course::planDistance(to, pipe.course.last());
    const double turned =
        Course::planDistance(from, pipe.course.last()) + Course::planDistance(to, pipe.course.first());
    if (turned + OwnPlaceM < asGiven) {
        pipe.course = Course::reversed(pipe.course);
        m_report.warn(Kinds::ofPipe(pipe.kind), pipe.key, pipe.source,
                      QStringLiteral("the course runs from the downstream node to the upstream one; it was turned"));
    }
    return ends;
}

void NetworkAssembler::setEndHeights(PipeData& pipe, const Ends& ends) const
{
    const auto heightAt = [&](int node, const std::optional<double>& invert,
                              const std::optional<double>& depth) -> std::optional<double> {
        if (invert)
            return invert;
        if (node < 0)
            return std::nullopt;
        if (depth && m_nodes[node].cover)
            return *m_nodes[node].cover - *depth;
        if (m_nodes[node].invert)
            return m_nodes[node].invert;
        return m_nodes[node].position ? m_nodes[node].position->z : std::nullopt;
    };
    if (!pipe.course.first().z)
        pipe.course.first().z = heightAt(ends.from, pipe.fromInvert, pipe.fromDepth);
    if (!pipe.course.last().z)
        pipe.course.last().z = heightAt(ends.to, pipe.toInvert, pipe.toDepth);
}

void NetworkAssembler::completeCourse(PipeData& pipe, const Ends& ends)
{
    if (pipe.course.size() < 2) {
        pipe.course.clear();
        if (ends.from < 0 || ends.to < 0 || !m_nodes[ends.from].position || !m_nodes[ends.to].position)
            return;
        for (const int node : {ends.from, ends.to})
            pipe.course.append({m_nodes[node].position->x, m_nodes[node].position->y, std::nullopt});
    }
    setEndHeights(pipe, ends);
    Course::fillHeights(pipe.course);
}

void NetworkAssembler::placeNodesAtCourse(const PipeData& pipe, const Ends& ends)
{
    const auto place = [&](int index, const Point& point) {
        if (index < 0 || m_nodes[index].position)
            return;
        NodeData& node = m_nodes[index];
        node.position = point;
        if (!node.cover && point.z && node.depth)
            node.cover = *point.z + *node.depth;
        m_report.warn(Kinds::Nodes, node.key, node.source,
                      QStringLiteral("no coordinates; placed at the end of pipe %1").arg(pipe.key));
    };
    place(ends.from, pipe.course.first());
    place(ends.to, pipe.course.last());
}

bool NetworkAssembler::levelNodesAtPipes()
{
    QMap<int, double> lowest;
    for (int i = 0; i < m_pipes.size(); ++i) {
        const QVector<Point>& course = m_pipes[i].course;
        if (course.isEmpty() || !course.first().z)
            continue;
        for (const auto& end :
             {qMakePair(m_ends[i].from, *course.first().z), qMakePair(m_ends[i].to, *course.last().z)}) {
            if (end.first >= 0 && !heightOf(end.first))
                lowest[end.first] = std::min(lowest.value(end.first, end.second), end.second);
        }
    }
    for (auto it = lowest.cbegin(); it != lowest.cend(); ++it) {
        NodeData& node = m_nodes[it.key()];
        node.invert = *it;
        m_report.warn(Kinds::Nodes, node.key, node.source, QStringLiteral("no height; it lies at its lowest pipe"));
    }
    return !lowest.isEmpty();
}

bool NetworkAssembler::levelPipesAtNodes()
{
    bool isChanged = false;
    for (int i = 0; i < m_pipes.size(); ++i) {
        PipeData& pipe = m_pipes[i];
        if (pipe.course.isEmpty() || pipe.course.first().z)
            continue;
        setEndHeights(pipe, m_ends[i]);
        Course::fillHeights(pipe.course);
        isChanged = isChanged || pipe.course.first().z;
    }
    return isChanged;
}

void NetworkAssembler::settleHeights()
{
    bool isChanged = true;
    while (isChanged) {
        isChanged = levelNodesAtPipes();
        isChanged = levelPipesAtNodes() || isChanged;
    }
    // What hangs on nothing that has a height must not lie thousands of metres below the rest.
    const std::optional<double> typical = HeightCheck::typicalHeight(m_nodes, m_pipes);
    const QString reason =
        typical ? QStringLiteral("no height, nor have its neighbours; it lies at the median, %1 m").arg(*typical)
                : QStringLiteral("no height; it lies at 0");
    for (int i = 0; i < m_nodes.size(); ++i) {
        if (!m_nodes[i].position || heightOf(i))
            continue;
        m_nodes[i].invert = typical.value_or(0.0);
        m_report.warn(Kinds::Nodes, m_nodes[i].key, m_nodes[i].source, reason);
    }
    for (PipeData& pipe : m_pipes) {
        if (pipe.course.isEmpty() || pipe.course.first().z)
            continue;
        for (Point& point : pipe.course)
            point.z = typical.value_or(0.0);
        m_report.warn(Kinds::ofPipe(pipe.kind), pipe.key, pipe.source, reason);
    }
}

void NetworkAssembler::takePipe(PipeData pipe)
{
    const QString kind = Kinds::ofPipe(pipe.kind);
    QHash<QString, int>& byKey = m_pipeByKey[int(pipe.kind)];
    const auto first = byKey.constFind(pipe.key);
    if (first != byKey.cend()) {
        const SourceRef& source = m_pipes[*first].source;
        m_report.leaveOut(kind, pipe.key, pipe.source,
                          source.line > 0
                              ? QStringLiteral("a pipe of this key stands in line %1 already").arg(source.line)
                              : QStringLiteral("a pipe of this key was read already (%1)").arg(source.feature),
                          QStringLiteral("key used twice"));
        return;
    }
    const bool hasOwnCourse = pipe.course.size() >= 2;
    const Ends ends = resolveEnds(pipe);
    for (const bool isFrom : {true, false}) {
        if ((isFrom ? ends.from : ends.to) >= 0)
            continue;
        const QString& key = isFrom ? pipe.fromKey : pipe.toKey;
        const QString group =
            QString::fromLatin1(key.isEmpty() ? "no %1 node" : "unknown %1 node").arg(QLatin1String(endName(isFrom)));
        const QString reason = key.isEmpty() ? group : QStringLiteral("%1 \"%2\"").arg(group, key);
        if (!hasOwnCourse) {
            m_report.leaveOut(kind, pipe.key, pipe.source, reason, group);
            return;
        }
        m_report.warn(kind, pipe.key, pipe.source, reason + QStringLiteral("; the pipe is taken by its course"));
    }
    completeCourse(pipe, ends);
    if (!pipe.course.isEmpty() && Course::length(pipe.course) < ZeroLengthM) {
        m_report.leaveOut(kind, pipe.key, pipe.source, QStringLiteral("zero length: both ends are in the same place"));
        return;
    }
    if (pipe.course.isEmpty())
        m_report.warn(kind, pipe.key, pipe.source,
                      QStringLiteral("no course, as a node has no coordinates; taken without"));
    else
        placeNodesAtCourse(pipe, ends);
    byKey.insert(pipe.key, m_pipes.size());
    m_pipes.append(pipe);
    m_ends.append(ends);
    m_isSurveyed.append(hasOwnCourse);
    m_report.taken(kind);
}

} // namespace Torvik::Import
