#include "interaction/TouchControl.h"

#include "interaction/CustomPicker.h"
#include "interaction/DragMath.h"
#include "interaction/TouchInput.h"
#include "interaction/Utils3d.h"
#include "scene/GlobalNav.h"
#include "scene/Renderable.h"
#include "scene/SceneRoot.h"

#include <QGuiApplication>
#include <QStyleHints>
#include <Qt3DInput/QMouseEvent>
#include <Qt3DInput/QMouseHandler>
#include <Qt3DLogic/QFrameAction>
#include <Qt3DRender/QCamera>
#include <Qt3DRender/QPickEvent>

#include <utility>

/** What a finger does between press and release: the second part of TouchControl's source. */
namespace Torvik::View3d {

namespace {

QPoint rounded(const QPointF& position)
{
    return {qRound(position.x()), qRound(position.y())};
}

QPoint positionOf(const Qt3DInput::QMouseEvent* mouse)
{
    return {mouse->x(), mouse->y()};
}

const QVector3D up(0.0F, 1.0F, 0.0F);

} // namespace

QVector3D TouchControl::renderableWorldPos() const
{
    return m_renderable->transform()->translation();
}

bool TouchControl::objectDragAllowed() const
{
    return m_renderable->renderableType() == QLatin1String("node") || !m_axisArrows.isEmpty() || isLabel();
}

QVector3D TouchControl::dragPlaneNormal() const
{
    const auto* const camera = SceneRoot::camera();
    return DragMath::planeNormal(m_axisLock, camera ? camera->viewVector() : up);
}

std::optional<QVector3D> TouchControl::pointUnder(const QPointF& position, const QVector3D& planeNormal) const
{
    const SceneRoot* const root = SceneRoot::instance();
    Qt3DRender::QCamera* const camera = SceneRoot::camera();
    if (!root || !camera)
        return {};
    const QVector3D ray =
        Utils3d::cameraToScreenRay(static_cast<float>(position.x()), static_cast<float>(position.y()), camera,
                                   static_cast<float>(root->sceneWidth()), static_cast<float>(root->sceneHeight()));
    QVector3D point;
    if (!Utils3d::rayPlaneIntersection(camera->position(), ray, point, renderableWorldPos(), planeNormal))
        return {};
    return point;
}

void TouchControl::startGesture(PointerSlot moved, Finish finish)
{
    stopGesture();
    m_finish = finish;
    if (!m_input)
        return;
    m_gesture = {
        connect(m_input->mouseHandler(), &Qt3DInput::QMouseHandler::positionChanged, this, moved),
        connect(m_input->frameAction(), &Qt3DLogic::QFrameAction::triggered, this, &TouchControl::frameTriggered),
    };
}

void TouchControl::stopGesture()
{
    for (const auto& connection : qAsConst(m_gesture))
        disconnect(connection);
    m_gesture.clear();
}

void TouchControl::onPressedObject(Qt3DRender::QPickEvent* pick)
{
    if (isLabel()) {
        GlobalNav::instance()->setCameraFollow(false);
        setMode(ScreenTranslation);
    }
    if (!m_allowed)
        return;
    const bool second = m_doubleTapTimer.isActive();
    if (second)
        m_renderable->doubleTapped();
    else
        m_doubleTapTimer.start();
    if (objectDragAllowed())
        takeCamera();
    m_customPicker->disablePick();
    // What the second tap has put back stays there.
    if (second && isLabel())
        return;
    if (m_mode == ScreenTranslation)
        m_screenPoint = pick->position();
    m_dragged = false;
    const auto point = pointUnder(rounded(pick->position()), dragPlaneNormal());
    if (!point)
        return;
    m_lastPoint = *point;
    startGesture(&TouchControl::movedXZ, &TouchControl::finishTranslation);
}

void TouchControl::movedXZ(Qt3DInput::QMouseEvent* mouse)
{
    m_mouse = positionOf(mouse);
    m_moved = true;
}

void TouchControl::frameTriggered(float /*dt*/)
{
    if (!m_moved)
        return;
    if (m_mode == ScreenTranslation) {
        // A finger never stands quite still.
        m_dragged = m_dragged || (m_mouse - m_screenPoint).manhattanLength() >=
                                     static_cast<qreal>(QGuiApplication::styleHints()->startDragDistance());
        if (!m_dragged)
            return;
        moveParent(QVector3D(m_mouse - m_screenPoint), TransformFlags::Manual);
        m_screenPoint = m_mouse;
        return;
    }
    const auto point = pointUnder(m_mouse, dragPlaneNormal());
    if (!point)
        return;
    moveParent(DragMath::constrained(*point - m_lastPoint, m_axisLock, m_controlAxis), TransformFlags::Manual);
    m_lastPoint = *point;
}

void TouchControl::moveParent(QVector3D vector, TransformFlags::Flags flags)
{
    m_renderable->move(vector, flags);
}

void TouchControl::moveParent(QVector3D vector)
{
    moveParent(vector, TransformFlags::Manual);
}

void TouchControl::takeCamera()
{
    GlobalNav::instance()->setActiveObjectTransformControl(true);
    m_holdsCamera = true;
}

void TouchControl::giveCameraBack()
{
    // Remembered, not asked anew: what allowed the drag may have gone meanwhile.
    if (std::exchange(m_holdsCamera, false))
        GlobalNav::instance()->setActiveObjectTransformControl(false);
}

void TouchControl::finishGesture()
{
    if (!m_gesture.isEmpty()) {
        (this->*m_finish)();
    } else if (m_holdsCamera) {
        // A press whose ray met no plane began no drag.
        m_customPicker->enablePick();
        giveCameraBack();
    }
}

void TouchControl::finishTranslation()
{
    giveCameraBack();
    m_moved = false;
    m_customPicker->enablePick();
    stopGesture();
}

void TouchControl::torusPicked(Qt3DRender::QPickEvent* pick)
{
    if (!m_allowed)
        return;
    const auto point = pointUnder(rounded(pick->position()), up);
    if (!point)
        return;
    m_lastPoint = *point;
    startGesture(&TouchControl::rotated, &TouchControl::finishRotation);
}

void TouchControl::rotated(Qt3DInput::QMouseEvent* mouse)
{
    if (objectDragAllowed())
        takeCamera();
    const auto point = pointUnder(positionOf(mouse), up);
    if (!point)
        return;
    rotateAroundY(DragMath::turn(renderableWorldPos(), m_lastPoint, *point));
    m_lastPoint = *point;
}

void TouchControl::rotateAroundY(float angle)
{
    FlaggedTransform* const transform = m_renderable->transform();
    transform->setRotationY(transform->rotationY() + angle, TransformFlags::Manual);
}

void TouchControl::finishRotation()
{
    m_customPicker->enablePick();
    stopGesture();
    giveCameraBack();
}

} // namespace Torvik::View3d
