#include "scene/GlobalNav.h"

#include "interaction/Utils3d.h"
#include "network/Crawler.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <Qt3DCore/QTransform>

/** The lateral that the crawler has come to, as the screen sees it. Third part of GlobalNav's source. */
namespace Torvik::View3d {

void GlobalNav::unsetProximityConn()
{
    if (m_proximityTransform)
        disconnect(m_proximityTransform, &Qt3DCore::QTransform::translationChanged, this,
                   &GlobalNav::calculateProximityScreenPos);
    // Also when the transform has died: its own connection is gone then, the camera's isn't.
    if (m_proximityCamera)
        disconnect(m_proximityCamera, &Qt3DRender::QCamera::positionChanged, this,
                   &GlobalNav::calculateProximityScreenPos);
}

void GlobalNav::onLateralInProximity(const QString& /*lateralId*/, Qt3DCore::QTransform* entity)
{
    unsetProximityConn();
    m_proximityTransform = entity;
    m_proximityCamera = SceneRoot::camera();
    if (entity)
        connect(entity, &Qt3DCore::QTransform::translationChanged, this, &GlobalNav::calculateProximityScreenPos);
    if (m_proximityCamera)
        connect(m_proximityCamera, &Qt3DRender::QCamera::positionChanged, this,
                &GlobalNav::calculateProximityScreenPos);
    calculateProximityScreenPos(QVector3D());
}

void GlobalNav::onLateralNotInProximity()
{
    unsetProximityConn();
    m_proximityTransform = nullptr;
    emit lateralNotInProximity();
}

void GlobalNav::calculateProximityScreenPos(QVector3D /*translation*/)
{
    const SceneRoot* const root = SceneRoot::instance();
    const Crawler* const crawler = SceneEntities::instance().getCrawler();
    if (!m_proximityTransform || !root || !crawler)
        return;
    // The announcement stands where the crawler is; the lateral's transform only tells when to look again.
    setPipeProximityPos(Utils3d::pointWorldToScreen(m_proximityCamera, crawler->position(),
                                                    static_cast<float>(root->sceneWidth()),
                                                    static_cast<float>(root->sceneHeight())));
}

} // namespace Torvik::View3d
