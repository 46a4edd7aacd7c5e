#include "domain/EntitiesManager.h"

#include "domain/boundary/ColumnNames.h"
#include "geo/CApplicationSettingsLastAddress.h"
#include "geo/GdalGeoProjector.h"
#include "plans/IBackgroundPlan.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <Qt3DRender/QCamera>

/** What only a host asks for: nodes that wait, and a place for a new one. Third part of EntitiesManager's source. */
namespace Torvik::View3d {

using namespace Torvik::Database;

void EntitiesManager::postponeNodeInsertion(const CDomainObjectPointer& node)
{
    m_postponedNodes.insert(node->id());
    if (m_postponedNodes.size() == 1)
        m_postponedConnection = connect(&m_reader, &DomainReader::sectionInspectionInserted, this,
                                        &EntitiesManager::onPostponedNodeInsertion);
}

void EntitiesManager::onPostponedNodeInsertion(const CDomainObjectPointer& sectionInspectionQmlObj)
{
    const auto pipe = sectionInspectionQmlObj->parentObject().toStrongRef();
    if (!pipe)
        return;
    const QString from = pipe->readValue(SECTION_FROMNODE_REF_COLUMN).toString();
    const QString to = pipe->readValue(SECTION_TONODE_REF_COLUMN).toString();
    auto waiting = m_postponedNodes.find(from);
    if (waiting == m_postponedNodes.end())
        waiting = m_postponedNodes.find(to);
    if (waiting == m_postponedNodes.end())
        return;
    const QString id = *waiting;
    const auto parent = pipe->parentObject().toStrongRef();
    const auto node = parent ? parent->findChildObjectById(NodeObjectType, id) : CDomainObjectPointer();
    m_postponedNodes.erase(id);
    if (m_postponedNodes.empty())
        disconnect(m_postponedConnection);
    if (node)
        onNodeInsertedByDomainObj(node);
}

QVector3D EntitiesManager::calculatePositionForNodeAndResetGeoProjectorIfFirst()
{
    const auto* const camera = SceneRoot::camera();
    const QVector3D seen = camera ? camera->viewCenter() : QVector3D();
    const QStringList last = CApplicationSettingsLastAddress::instance().loadLatAndLongPosition();
    bool north = false;
    bool east = false;
    const double latitude = last.value(0).toDouble(&north);
    const double longitude = last.value(1).toDouble(&east);
    return north && east ? getLastPositionAndResetGeoProjectorIfFirstNode(latitude, longitude) : seen;
}

QVector3D EntitiesManager::getLastPositionAndResetGeoProjectorIfFirstNode(double latitude, double longitude)
{
    GdalGeoProjector& projector = *GdalGeoProjector::instance();
    const QVector3D position = projector.sceneCoordsFromGeoCoords(latitude, longitude);
    // What has been laid already would move on earth with the origin.
    if (m_root.sceneHasNodesWithPosition() || m_root.sceneHasVirtualNodesWithPosition() ||
        SceneEntities::instance().getBackgroundPlan())
        return position;
    projector.deinit();
    m_root.safeGeoProjectorInitFromMap(latitude, longitude, 0.0);
    return {};
}

} // namespace Torvik::View3d
