#include "interaction/TouchInput.h"

#include "interaction/CustomPicker.h"
#include "interaction/ObjectPicker.h"
#include "interaction/TouchControl.h"
#include "scene/Renderable.h"

#include <Qt3DInput/QMouseDevice>
#include <Qt3DInput/QMouseHandler>
#include <Qt3DLogic/QFrameAction>
#include <Qt3DRender/QPickEvent>

namespace Torvik::View3d {

namespace {

Renderable* renderableAbove(Qt3DCore::QEntity* entity)
{
    while (entity && !qobject_cast<Renderable*>(entity))
        entity = entity->parentEntity();
    return qobject_cast<Renderable*>(entity);
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
    addComponent(m_mouseHandler);
    addComponent(m_frameAction);
}

void TouchInput::onPressed(Qt3DRender::QPickEvent* pick)
{
    Renderable* const renderable = renderableAbove(pick->entity());
    if (!renderable || !renderable->isPickable())
        return;
    auto* const control = qobject_cast<TouchControl*>(renderable->touchControl());
    if (!control)
        return;
    m_pressed = control->customPicker();
    m_pressed->press(pick);
}

void TouchInput::onReleased()
{
    if (m_pressed)
        m_pressed->released();
    m_pressed = nullptr;
}

} // namespace Torvik::View3d
