#include "scene/GlobalNav.h"

#include "domain/boundary/BaseServices.h"
#include "interaction/Utils3d.h"
#include "labels/LabelBoard.h"
#include "labels/LabelsPositionsLoader.h"
#include "network/Node.h"
#include "network/NodeInformationToggle.h"
#include "network/Section.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QMatrix4x4>

#include <cmath>

// What the navigation does to the scene's objects and camera; its modes stand in GlobalNav.cpp.
namespace Torvik::View3d {

namespace {

constexpr float kGoToRadiusM = 15.0F;
/** Settings hold a label's line ten times as high as the scene. */
constexpr float kLineHeightPerUnit = 10.0F;

Section* activeSection()
{
    return SceneEntities::instance().getActiveSectionEntity();
}

} // namespace

void GlobalNav::setManholeFullInfoVisible(bool visible)
{
    if (m_manholeFullInfoVisible == visible) {
        return;
    }
    m_manholeFullInfoVisible = visible;
    emit manholeFullInfoVisibleChanged(visible);
    NodeInformationToggle::m_manholeFullInfoVisible = visible;
    for (Node* const node : SceneEntities::instance().getNodes()) {
        if (!node) {
            continue;
        }
        const QString info = node->getFullManholeInfo();
        node->nameTag().setMultiline(visible);
        if (visible) {
            NodeInformationToggle::setFullInfoLabelParameters(node, info);
        } else {
            NodeInformationToggle::setShortInfoLabelParameters(node, info);
        }
    }
}

void GlobalNav::setLabelLineHeight(float lineHeight)
{
    // It is kept in the settings: no project would ever show a label again.
    if (!std::isfinite(lineHeight) || lineHeight <= 0.0F)
        return;
    Base::CApplicationSettings& settings = Base::CApplicationSettings::instance();
    settings.setDefaultLabelLineHeight(lineHeight);
    NodeInformationToggle::m_labelLineHeight = settings.getDefaultLabelLineHeight() / kLineHeightPerUnit;
    LabelBoard::instance().schedule();
}

void GlobalNav::resetLabelsPositions()
{
    LabelsPositionsLoader::instance().resetLabelsPositions();
}

bool GlobalNav::hasUpstreamNode() const
{
    const Section* section = activeSection();
    return section && section->hasUpstreamNode();
}

bool GlobalNav::hasDownstreamNode() const
{
    const Section* section = activeSection();
    return section && section->hasDownstreamNode();
}

void GlobalNav::goToCurrentSection()
{
    if (const Section* section = activeSection()) {
        cameraGoTo(section->crawlerTransformMatrix().column(3).toVector3D());
    }
}

// Of an inspection against the flow hasUpstreamNode() tells of the other node, so the one to go to may have been
// deleted.
void GlobalNav::goToUpstreamNode()
{
    const Node* node = hasUpstreamNode() ? activeSection()->upstreamNode() : nullptr;
    if (node) {
        cameraGoTo(node->position(), distanceAtWhichOSMapIsAlwaysLoaded);
    }
}

void GlobalNav::goToDownstreamNode()
{
    const Node* node = hasDownstreamNode() ? activeSection()->downstreamNode() : nullptr;
    if (node) {
        cameraGoTo(node->position(), distanceAtWhichOSMapIsAlwaysLoaded);
    }
}

void GlobalNav::cameraGoTo(QVector3D newViewCenter, float distToNewViewCenter)
{
    Q_UNUSED(distToNewViewCenter)
    Qt3DRender::QCamera* camera = SceneRoot::camera();
    if (!camera) {
        return;
    }
    camera->viewSphere(newViewCenter, kGoToRadiusM);
    QVector3D onGround;
    const QVector3D up(0.0F, 1.0F, 0.0F);
    if (Utils3d::rayPlaneIntersection(camera->position(), camera->viewVector().normalized(), onGround, QVector3D(),
                                      up)) {
        camera->setViewCenter(onGround);
    }
}

} // namespace Torvik::View3d
