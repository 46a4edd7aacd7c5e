#include "labels/GridEffect.h"

#include "labels/ForwardTechniques.h"

namespace Torvik::View3d {

GridEffect::GridEffect(Qt3DCore::QNode* parent)
    : Qt3DRender::QEffect(parent)
{
    using Qt3DRender::QGraphicsApiFilter;
    ForwardTechniques::add(this, QLatin1String("grid"),
                           {{QGraphicsApiFilter::OpenGL, QGraphicsApiFilter::NoProfile, 2, 1},
                            {QGraphicsApiFilter::OpenGLES, QGraphicsApiFilter::NoProfile, 2, 0}});
}

} // namespace Torvik::View3d
