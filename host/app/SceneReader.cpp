#include "host/app/SceneReader.h"

#include "domain/ObservationAdapter.h"
#include "domain/SectionAdapterBase.h"
#include "geo/GdalGeoProjector.h"
#include "host/app/PlanWork.h"
#include "network/Node.h"
#include "network/ObservationBend.h"
#include "network/ObservationConnection.h"
#include "network/ObservationEnd.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "plans/FloorNav.h"
#include "plans/IBackgroundPlan.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

namespace Torvik::Viewer::SceneReader {

namespace {

SceneSnapshot::Node read(View3d::Node& node)
{
    SceneSnapshot::Node values;
    values.key = node.name();
    values.guid = node.guid();
    values.type = node.nodeType();
    values.position = node.position();
    values.flags = node.transformFlags();
    values.depth = node.depth();
    values.radius = node.radius();
    values.seaLevel = node.seaLevel();
    values.visible = node.isVisible();
    values.isVirtual = node.isVirtual();
    return values;
}

QString directionOf(const View3d::Section& section)
{
    if (section.inspectionDirUnknown())
        return QStringLiteral("unknown");
    return section.inspectionDownstream() ? QStringLiteral("downstream") : QStringLiteral("upstream");
}

SceneSnapshot::Section read(View3d::Section& section)
{
    SceneSnapshot::Section values;
    values.guid = section.guid();
    if (View3d::SectionAdapterBase* props = section.getProps()) {
        values.key = props->name();
        values.sectionId = props->sectionId();
        values.lateral = props->isLateral();
    }
    values.startNode = section.startNode() ? section.startNode()->guid() : QString();
    values.endNode = section.endNode() ? section.endNode()->guid() : QString();
    values.direction = directionOf(section);
    values.flags = section.transformFlags();
    values.length = section.length();
    if (section.pipe()) {
        values.radius = section.pipe()->radius();
        values.points = section.pipe()->getShapePoints();
    }
    if (section.secondPipe())
        values.secondPoints = section.secondPipe()->getShapePoints();
    return values;
}

QString kindOf(const View3d::Observation* observation)
{
    if (qobject_cast<const View3d::ObservationBend*>(observation))
        return QStringLiteral("bend");
    if (qobject_cast<const View3d::ObservationConnection*>(observation))
        return QStringLiteral("connection");
    return qobject_cast<const View3d::ObservationEnd*>(observation) ? QStringLiteral("end") : QStringLiteral("plain");
}

QString codeOf(const View3d::Observation& observation)
{
    const auto record = observation.adapter() ? observation.adapter()->getDomainObject().toStrongRef() : nullptr;
    const auto observed = qSharedPointerDynamicCast<Database::CPipeObservationObject>(record);
    return observed ? observed->code() : QString();
}

QString pipeIdOf(const View3d::Section* section)
{
    return section && section->getProps() ? section->getProps()->sectionId() : QString();
}

SceneSnapshot::Observation read(View3d::Observation& observation)
{
    SceneSnapshot::Observation values;
    values.id = observation.guid();
    values.code = codeOf(observation);
    values.kind = kindOf(&observation);
    values.section = pipeIdOf(observation.section());
    values.inspection = observation.section() ? observation.section()->guid() : QString();
    values.distance = double(observation.getDistance());
    values.position = observation.position();
    values.clock = observation.getClock1();
    values.bendClock = observation.getBendClock();
    values.angle = double(observation.getJointAngle());
    values.lateral = observation.getLateralRef();
    return values;
}

SceneSnapshot::Connection read(const QString& lateral, View3d::ObservationConnection& connection)
{
    return {lateral, connection.guid(), pipeIdOf(connection.section()),
            connection.transformMatrix().column(3).toVector3D()};
}

void readObservations(SceneSnapshot& scene)
{
    auto& entities = View3d::SceneEntities::instance();
    for (View3d::Observation* observation : entities.getObservations()) {
        if (observation)
            scene.observations << read(*observation);
    }
    const auto& connections = entities.getLateralConnections();
    for (auto entry = connections.begin(); entry != connections.end(); ++entry) {
        if (entry.value())
            scene.connections << read(entry.key(), *entry.value());
    }
}

void read(View3d::IBackgroundPlan* plan, SceneSnapshot& scene, bool toConfirm, int floor)
{
    if (!plan)
        return;
    SceneSnapshot::Plan values;
    values.kind = plan->renderableType();
    values.file = plan->fullPath();
    values.matrix = plan->transformMatrix();
    values.anchor = plan->getAdditionalTranslationCorrect();
    values.elevation = plan->placement()->translation().y();
    values.locked = plan->followsCamera();
    values.visible = plan->isEnabled();
    values.toConfirm = toConfirm;
    values.floor = floor;
    scene.plans << values;
}

void readPlans(SceneSnapshot& scene)
{
    const auto& entities = View3d::SceneEntities::instance();
    read(entities.getBackgroundPlan(), scene, false, -1);
    read(entities.getBackgroundPlanToConfirm(), scene, true, -1);
    auto& floors = View3d::FloorNav::instance();
    scene.floors.shown = floors.getCurrentFloorIndex();
    const QVariantList heights = floors.floorValues();
    for (const QVariant& height : heights)
        scene.floors.heights << height.toDouble();
    for (int floor = 0; floor < PlanWork::floorCount; ++floor)
        read(floors.getFloorPlan(floor), scene, false, floor);
}

} // namespace

SceneSnapshot snapshot()
{
    SceneSnapshot scene;
    View3d::SceneRoot* root = View3d::SceneRoot::instance();
    if (!root)
        return scene;
    const View3d::GdalGeoProjector* projector = View3d::GdalGeoProjector::instance();
    scene.origin = projector->origin();
    scene.scale = projector->scale();
    scene.projection = projector->projectionString();
    for (QObject* child : root->children()) {
        if (auto* node = qobject_cast<View3d::Node*>(child))
            scene.nodes << read(*node);
        else if (auto* section = qobject_cast<View3d::Section*>(child))
            scene.sections << read(*section);
    }
    readObservations(scene);
    readPlans(scene);
    return scene;
}

Bounds boundsOfObject(const QString& id)
{
    auto& entities = View3d::SceneEntities::instance();
    if (View3d::Node* node = entities.getNodes().value(id))
        return boundsOf(read(*node));
    Bounds bounds;
    QList<View3d::Section*> sections = entities.getPipeEntities().getBySectionId(id);
    if (View3d::Section* inspected = entities.getPipeEntities().getByInspectionId(id))
        sections << inspected;
    for (View3d::Section* section : sections) {
        const Bounds part = boundsOf(read(*section));
        if (!part.isEmpty()) {
            bounds.add(part.lowest());
            bounds.add(part.highest());
        }
    }
    return bounds;
}

} // namespace Torvik::Viewer::SceneReader
