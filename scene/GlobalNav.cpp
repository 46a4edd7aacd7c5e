#include "scene/GlobalNav.h"

#include "scene/Fuzzy.h"

namespace Torvik::View3d {

namespace {

constexpr float kFree = 1.0F;
constexpr float kLocked = 0.0F;

} // namespace

GlobalNav* GlobalNav::instance()
{
    static GlobalNav globalNav;
    return &globalNav;
}

void GlobalNav::registerCameraController(CameraController* controller)
{
    m_cameraController = controller;
    connect(controller, &CameraController::shortTap, this, &GlobalNav::shortTap);
    connect(controller, &CameraController::viewTypeChanged, this, &GlobalNav::setViewType);
}

void GlobalNav::setActiveObjectTransformControl(bool active)
{
    if (!m_cameraController) {
        return;
    }
    if (active) {
        m_cameraController->abandonGesture();
    }
    m_cameraController->setEnabled(!active);
}

bool GlobalNav::axisX() const
{
    return Fuzzy::equal(m_axisLock.x(), kFree);
}

bool GlobalNav::axisY() const
{
    return Fuzzy::equal(m_axisLock.y(), kFree);
}

bool GlobalNav::axisZ() const
{
    return Fuzzy::equal(m_axisLock.z(), kFree);
}

bool GlobalNav::setAxis(int axis, bool free)
{
    const float component = free ? kFree : kLocked;
    if (Fuzzy::equal(m_axisLock[axis], component)) {
        return false;
    }
    m_axisLock[axis] = component;
    return true;
}

void GlobalNav::setAxisX(bool free)
{
    if (setAxis(0, free)) {
        emit axisXChanged(free);
        emit axisLockChanged(axisLock());
    }
}

void GlobalNav::setAxisY(bool free)
{
    if (setAxis(1, free)) {
        emit axisYChanged(free);
        emit axisLockChanged(axisLock());
    }
}

void GlobalNav::setAxisZ(bool free)
{
    if (setAxis(2, free)) {
        emit axisZChanged(free);
        emit axisLockChanged(axisLock());
    }
}

void GlobalNav::setObjectsMovingDisabled(bool disabled)
{
    if (m_objectsMovingDisabled == disabled) {
        return;
    }
    m_objectsMovingDisabled = disabled;
    emit objectsMovingDisabledChanged();
}

void GlobalNav::setTranslateMode(bool translate)
{
    if (m_translateMode == translate) {
        return;
    }
    m_translateMode = translate;
    emit translateModeChanged(translate);
}

void GlobalNav::setRealTimeEnabled(bool enabled)
{
    if (m_realTimeEnabled == enabled) {
        return;
    }
    m_realTimeEnabled = enabled;
    ++m_realTimeSwitches;
    emit realTimeEnabledChanged(enabled);
}

void GlobalNav::setPipeProximityPos(QPointF position)
{
    if (m_pipeProximityPos == position) {
        return;
    }
    m_pipeProximityPos = position;
    emit pipeProximityPosChanged(position);
}

void GlobalNav::setObsVisible(bool visible)
{
    if (m_obsVisible == visible) {
        return;
    }
    m_obsVisible = visible;
    emit obsVisibleChanged(visible);
}

void GlobalNav::setLabelsVisible(bool visible)
{
    if (m_labelsVisible == visible) {
        return;
    }
    m_labelsVisible = visible;
    emit labelsVisibleChanged(visible);
}

void GlobalNav::setCameraFollow(bool follow)
{
    if (m_cameraFollow == follow) {
        return;
    }
    m_cameraFollow = follow;
    emit cameraFollowChanged(follow);
}

void GlobalNav::setViewType(CameraController::ViewTypes viewType)
{
    if (m_viewType == viewType) {
        return;
    }
    m_viewType = viewType;
    emit viewTypeChanged(viewType);
}

void GlobalNav::setConnectionMode(bool connectionMode)
{
    if (m_connectionMode == connectionMode) {
        return;
    }
    m_connectionMode = connectionMode;
    emit connectionModeChanged(connectionMode);
}

} // namespace Torvik::View3d
