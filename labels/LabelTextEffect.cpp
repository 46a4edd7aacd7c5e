#include "labels/LabelTextEffect.h"

#include "labels/ForwardTechniques.h"

namespace Torvik::View3d {

LabelTextEffect::LabelTextEffect(Qt3DCore::QNode* parent)
    : Qt3DRender::QEffect(parent)
{
    using Filter = Qt3DRender::QGraphicsApiFilter;
    ForwardTechniques::add(this, QLatin1String("labeltext"),
                           {{Filter::OpenGL, Filter::CoreProfile, 3, 1}, {Filter::OpenGLES, Filter::NoProfile, 2, 0}});
}

} // namespace Torvik::View3d
