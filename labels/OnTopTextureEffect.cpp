#include "labels/OnTopTextureEffect.h"

#include "labels/ForwardTechniques.h"

namespace Torvik::View3d {

OnTopTextureEffect::OnTopTextureEffect(Qt3DCore::QNode* parent)
    : Qt3DRender::QEffect(parent)
{
    using Qt3DRender::QGraphicsApiFilter;
    ForwardTechniques::add(this, QLatin1String("ontopunlittexture"),
                           {{QGraphicsApiFilter::OpenGL, QGraphicsApiFilter::CoreProfile, 3, 1},
                            {QGraphicsApiFilter::OpenGLES, QGraphicsApiFilter::NoProfile, 2, 0}});
}

} // namespace Torvik::View3d
