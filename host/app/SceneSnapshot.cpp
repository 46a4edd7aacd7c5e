#include "host/app/SceneSnapshot.h"

#include <QJsonArray>
#include <QVector4D>

#include <algorithm>
#include <tuple>

namespace Torvik::Viewer {

namespace {

/** A pipe whose course is not known yet is a stub of one centimetre. */

QJsonArray toJson(const View3d::Vector3D<double>& v)
{
    return {v.x(), v.y(), v.z()};
}

QJsonArray toJson(const QVector3D& v)
{
    return {double(v.x()), double(v.y()), double(v.z())};
}

QJsonArray toJson(const Polyline& points)
{
    QJsonArray array;
    for (const QVector3D& point : points)
        array.append(toJson(point));
    return array;
}

QJsonArray projected(const Polyline& points, const SceneSnapshot& snapshot)
{
    QJsonArray array;
    for (const QVector3D& point : points)
        array.append(toJson(projectedFromScene(point, snapshot)));
    return array;
}

QJsonObject toJson(const SceneSnapshot::Node& node)
{
    return {{QStringLiteral("key"), node.key},
            {QStringLiteral("guid"), node.guid},
            {QStringLiteral("type"), node.type},
            {QStringLiteral("position"), toJson(node.position)},
            {QStringLiteral("flags"), node.flags},
            {QStringLiteral("depth"), double(node.depth)},
            {QStringLiteral("radius"), double(node.radius)},
            {QStringLiteral("seaLevel"), double(node.seaLevel)},
            {QStringLiteral("visible"), node.visible},
            {QStringLiteral("virtual"), node.isVirtual}};
}

QJsonObject toJson(const SceneSnapshot::Section& section, const SceneSnapshot& snapshot)
{
    QJsonObject object {{QStringLiteral("key"), section.key},
                        {QStringLiteral("guid"), section.guid},
                        {QStringLiteral("section"), section.sectionId},
                        {QStringLiteral("lateral"), section.lateral},
                        {QStringLiteral("startNode"), section.startNode},
                        {QStringLiteral("endNode"), section.endNode},
                        {QStringLiteral("direction"), section.direction},
                        {QStringLiteral("flags"), section.flags},
                        {QStringLiteral("radius"), double(section.radius)},
                        {QStringLiteral("points"), toJson(section.points)},
                        {QStringLiteral("projectedPoints"), projected(section.points, snapshot)},
                        {QStringLiteral("length"), section.length}};
    if (!section.secondPoints.isEmpty()) {
        object.insert(QStringLiteral("secondPoints"), toJson(section.secondPoints));
        object.insert(QStringLiteral("secondProjectedPoints"), projected(section.secondPoints, snapshot));
    }
    return object;
}

QJsonObject toJson(const SceneSnapshot::Observation& observation)
{
    return {{QStringLiteral("id"), observation.id},
            {QStringLiteral("code"), observation.code},
            {QStringLiteral("kind"), observation.kind},
            {QStringLiteral("section"), observation.section},
            {QStringLiteral("inspection"), observation.inspection},
            {QStringLiteral("distance"), observation.distance},
            {QStringLiteral("position"), toJson(observation.position)},
            {QStringLiteral("clock"), observation.clock},
            {QStringLiteral("bendClock"), observation.bendClock},
            {QStringLiteral("angle"), observation.angle},
            {QStringLiteral("lateral"), observation.lateral}};
}

QJsonObject toJson(const SceneSnapshot::Connection& connection)
{
    return {{QStringLiteral("lateral"), connection.lateral},
            {QStringLiteral("observation"), connection.observation},
            {QStringLiteral("section"), connection.section},
            {QStringLiteral("point"), toJson(connection.point)}};
}

QJsonArray toJson(const QMatrix4x4& matrix)
{
    QJsonArray rows;
    for (int i = 0; i < 4; ++i) {
        const QVector4D row = matrix.row(i);
        rows.append(QJsonArray {double(row.x()), double(row.y()), double(row.z()), double(row.w())});
    }
    return rows;
}

QJsonArray toJson(const QVector<SceneSnapshot::Plan>& plans)
{
    QJsonArray array;
    for (const SceneSnapshot::Plan& plan : plans) {
        QJsonObject object {{QStringLiteral("kind"), plan.kind},
                            {QStringLiteral("file"), plan.file},
                            {QStringLiteral("matrix"), toJson(plan.matrix)},
                            {QStringLiteral("anchor"), toJson(plan.anchor)},
                            {QStringLiteral("elevation"), double(plan.elevation)},
                            {QStringLiteral("locked"), plan.locked},
                            {QStringLiteral("visible"), plan.visible},
                            {QStringLiteral("toConfirm"), plan.toConfirm}};
        if (plan.floor >= 0)
            object.insert(QStringLiteral("floor"), plan.floor);
        array.append(object);
    }
    return array;
}

QJsonObject toJson(const SceneSnapshot::Floors& floors)
{
    QJsonArray heights;
    for (const double height : floors.heights)
        heights.append(height);
    return {{QStringLiteral("shown"), floors.shown}, {QStringLiteral("heights"), heights}};
}

bool comesBefore(const SceneSnapshot::Observation& a, const SceneSnapshot::Observation& b)
{
    return std::tie(a.section, a.inspection, a.distance, a.id) < std::tie(b.section, b.inspection, b.distance, b.id);
}

bool comesBefore(const SceneSnapshot::Connection& a, const SceneSnapshot::Connection& b)
{
    return std::tie(a.lateral, a.observation) < std::tie(b.lateral, b.observation);
}

template <typename Object>
QJsonArray toSortedJson(QVector<Object> objects)
{
    std::sort(objects.begin(), objects.end(), [](const Object& a, const Object& b) { return comesBefore(a, b); });
    QJsonArray array;
    for (const Object& object : objects)
        array.append(toJson(object));
    return array;
}

template <typename Object>
QVector<Object> sorted(QVector<Object> objects)
{
    std::sort(objects.begin(), objects.end(), [](const Object& a, const Object& b) {
        const int order = a.key.compare(b.key);
        return order != 0 ? order < 0 : a.guid < b.guid;
    });
    return objects;
}

} // namespace

View3d::Vector3D<double> projectedFromScene(const QVector3D& point, const SceneSnapshot& snapshot)
{
    const View3d::Vector3D<double> cartesian = (View3d::Vector3D<double>(point) + snapshot.origin) / snapshot.scale;
    return {-cartesian.x(), cartesian.z(), cartesian.y()};
}

QJsonObject toJson(const SceneSnapshot& snapshot)
{
    QJsonArray nodes;
    for (const SceneSnapshot::Node& node : sorted(snapshot.nodes))
        nodes.append(toJson(node));
    QJsonArray sections;
    for (const SceneSnapshot::Section& section : sorted(snapshot.sections))
        sections.append(toJson(section, snapshot));
    const QJsonObject projector {{QStringLiteral("origin"), toJson(snapshot.origin)},
                                 {QStringLiteral("scale"), snapshot.scale},
                                 {QStringLiteral("projection"), snapshot.projection}};
    return {{QStringLiteral("projector"), projector},
            {QStringLiteral("nodes"), nodes},
            {QStringLiteral("sections"), sections},
            {QStringLiteral("observations"), toSortedJson(snapshot.observations)},
            {QStringLiteral("connections"), toSortedJson(snapshot.connections)},
            {QStringLiteral("plans"), toJson(snapshot.plans)},
            {QStringLiteral("floors"), toJson(snapshot.floors)}};
}

Bounds boundsOf(const SceneSnapshot::Node& node)
{
    Bounds bounds;
    bounds.add(node.position, node.radius);
    bounds.add(node.position - QVector3D(0, node.depth, 0));
    return bounds;
}

Bounds boundsOf(const SceneSnapshot::Section& section)
{
    Bounds bounds;
    for (const QVector3D& point : section.points + section.secondPoints)
        bounds.add(point, section.radius);
    return bounds;
}

Bounds boundsOf(const SceneSnapshot& snapshot)
{
    Bounds bounds;
    const auto takeIn = [&bounds](const Bounds& part) {
        if (!part.isEmpty()) {
            bounds.add(part.lowest());
            bounds.add(part.highest());
        }
    };
    for (const SceneSnapshot::Node& node : snapshot.nodes) {
        if (node.visible)
            takeIn(boundsOf(node));
    }
    for (const SceneSnapshot::Section& section : snapshot.sections) {
        if (section.length > longestStub)
            takeIn(boundsOf(section));
    }
    return bounds;
}

} // namespace Torvik::Viewer
