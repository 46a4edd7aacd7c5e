#include "interaction/CustomPicker.h"

#include "scene/Renderable.h"

namespace Torvik::View3d {

CustomPicker::CustomPicker(Renderable* parent)
    : Qt3DCore::QEntity(parent)
    , m_renderable(parent)
{
}

void CustomPicker::press(Qt3DRender::QPickEvent* pick)
{
    m_containsMouse = true;
    if (m_pickEnabled)
        emit pressed(pick);
}

void CustomPicker::disablePick()
{
    m_pickEnabled = false;
}

void CustomPicker::enablePick()
{
    m_pickEnabled = true;
}

void CustomPicker::released()
{
    m_containsMouse = false;
}

} // namespace Torvik::View3d
