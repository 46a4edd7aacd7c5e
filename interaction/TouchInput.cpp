#include "interaction/TouchInput.h"

#include "interaction/AxisControlArrows.h"
#include "interaction/CustomPicker.h"
#include "interaction/RotationRing.h"
#include "interaction/TouchControl.h"
#include "labels/ImageLabel.h"
#include "labels/LabelBoard.h"
#include "network/Observation.h"
#include "network/Section.h"
#include "scene/Renderable.h"

#include <Qt3DInput/QMouseDevice>
#include <Qt3DInput/QMouseEvent>
#include <Qt3DInput/QMouseHandler>
#include <Qt3DLogic/QFrameAction>
#include <Qt3DRender/QPickEvent>

namespace Torvik::View3d {

namespace {

bool isGrabbable(const Renderable* renderable)
{
    return renderable->touchControl() != nullptr;
}

TouchControl* controlOf(Renderable* renderable)
{
    return renderable && renderable->isPickable() ? qobject_cast<TouchControl*>(renderable->touchControl()) : nullptr;
}

} // namespace

TouchInput::TouchInput(Qt3DCore::QEntity* root)
    : Qt3DCore::QEntity(root)
    , m_picker(new ObjectPicker(root))
    , m_mouseDevice(new Qt3DInput::QMouseDevice(this))
    , m_mouseHandler(new Qt3DInput::QMouseHandler(this))
    , m_frameAction(new Qt3DLogic::QFrameAction(this))
{
    m_picker->setHoverEnabled(false);
    m_picker->setDragEnabled(true);
    connect(m_picker, &ObjectPicker::pressed, this, &TouchInput::onPressed);
    connect(m_picker, &ObjectPicker::released, this, &TouchInput::onReleased);
    root->addComponent(m_picker);
    m_mouseHandler->setSourceDevice(m_mouseDevice);
    connect(m_mouseHandler, &Qt3DInput::QMouseHandler::pressed, this, &TouchInput::onMousePressed);
    connect(m_mouseHandler, &Qt3DInput::QMouseHandler::released, this, &TouchInput::onReleased);
    addComponent(m_mouseHandler);
    addComponent(m_frameAction);
}

void TouchInput::onMousePressed(Qt3DInput::QMouseEvent* mouse)
{
    // Comes before the picker's word of the same press.
    m_cancelled = false;
    m_hit = nullptr;
    m_hitLabel = false;
    // Labels are drawn over everything: what lies behind one is not pressed.
    const QPointF position(mouse->x(), mouse->y());
    ImageLabel* const label = LabelBoard::instance().labelAt(position);
    if (!label)
        return;
    // A release that was never told.
    onReleased();
    m_hitLabel = true;
    Qt3DRender::QPickEvent pick(position, {}, {}, 0.0F);
    pressObject(label, &pick);
}

bool TouchInput::hitLabel() const
{
    return m_hitLabel;
}

void TouchInput::onPressed(Qt3DRender::QPickEvent* pick)
{
    if (m_cancelled || m_hitLabel)
        return;
    // A release that was never told.
    onReleased();
    for (auto* entity = pick->entity(); entity; entity = entity->parentEntity()) {
        if (auto* const arrows = qobject_cast<AxisControlArrows*>(entity)) {
            m_pressed = arrows->renderable()->touchControl();
            return pressHandle(arrows->picker(), pick);
        }
        if (auto* const ring = qobject_cast<RotationRing*>(entity)) {
            m_pressed = ring->parentEntity();
            return pressHandle(ring->picker(), pick);
        }
        if (auto* const renderable = qobject_cast<Renderable*>(entity); renderable && isGrabbable(renderable))
            return pressObject(renderable, pick);
        // A stub at a joint is part of the pipe.
        if (const auto* const observation = qobject_cast<Observation*>(entity))
            return pressObject(observation->section(), pick);
    }
}

void TouchInput::pressHandle(ObjectPicker* handle, Qt3DRender::QPickEvent* pick)
{
    if (!handle->isEnabled())
        return;
    m_pressedHandle = handle;
    emit handle->pressed(pick);
}

void TouchInput::pressObject(Renderable* renderable, Qt3DRender::QPickEvent* pick)
{
    TouchControl* const control = controlOf(renderable);
    m_hit = control ? renderable : nullptr;
    m_pressed = control;
    if (control)
        control->customPicker()->press(pick);
}

TouchControl* TouchInput::pressed() const
{
    return qobject_cast<TouchControl*>(m_pressed);
}

void TouchInput::onReleased()
{
    if (m_pressedHandle)
        emit m_pressedHandle->released(nullptr);
    m_pressedHandle = nullptr;
    if (TouchControl* const control = pressed()) {
        control->customPicker()->released();
        // In a slow frame the handler tells of the release before the picker tells of the press.
        control->finishGesture();
    }
    m_pressed = nullptr;
}

Renderable* TouchInput::hit() const
{
    return qobject_cast<Renderable*>(m_hit);
}

void TouchInput::cancel()
{
    m_cancelled = true;
    onReleased();
}

} // namespace Torvik::View3d
