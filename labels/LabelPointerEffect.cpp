#include "labels/LabelPointerEffect.h"

#include "labels/ForwardTechniques.h"

namespace Torvik::View3d {

LabelPointerEffect::LabelPointerEffect(Qt3DCore::QNode* parent)
    : Qt3DRender::QEffect(parent)
{
    using Filter = Qt3DRender::QGraphicsApiFilter;
    ForwardTechniques::add(this, QLatin1String("labelpointer"),
                           {{Filter::OpenGL, Filter::CoreProfile, 3, 1}, {Filter::OpenGLES, Filter::NoProfile, 2, 0}});
}

} // namespace Torvik::View3d
