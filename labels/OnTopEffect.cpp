#include "labels/OnTopEffect.h"

#include "labels/ForwardTechniques.h"

OnTopEffect::OnTopEffect(Qt3DCore::QNode* parent)
    : Qt3DRender::QEffect(parent)
{
    using Qt3DRender::QGraphicsApiFilter;
    Torvik::View3d::ForwardTechniques::add(this, QLatin1String("ontopmaterial"),
                                           {{QGraphicsApiFilter::OpenGL, QGraphicsApiFilter::CoreProfile},
                                            {QGraphicsApiFilter::OpenGLES, QGraphicsApiFilter::CoreProfile}});
}
