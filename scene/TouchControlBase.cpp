#include "scene/TouchControlBase.h"

#include "scene/Renderable.h"

namespace Torvik::View3d {

TouchControlBase::TouchControlBase(Renderable* parent)
    : Qt3DCore::QEntity(parent)
{
}

} // namespace Torvik::View3d
