#include "labels/OnTopEffect.h"

#include <Qt3DRender/QFilterKey>
#include <Qt3DRender/QGraphicsApiFilter>
#include <Qt3DRender/QRenderPass>
#include <Qt3DRender/QShaderProgram>
#include <Qt3DRender/QTechnique>

#include <QUrl>

using Qt3DRender::QGraphicsApiFilter;
using Qt3DRender::QShaderProgram;

OnTopEffect::OnTopEffect(Qt3DCore::QNode* parent)
    : Qt3DRender::QEffect(parent)
{
    auto* const forward = new Qt3DRender::QFilterKey(this);
    forward->setName(QStringLiteral("renderingStyle"));
    forward->setValue(QStringLiteral("forward"));

    auto* const program = new QShaderProgram(this);
    const auto source = [](const char* name) {
        return QShaderProgram::loadSource(QUrl(QStringLiteral("qrc:/shaders/es2/") + QLatin1String(name)));
    };
    program->setVertexShaderCode(source("ontopmaterial.vert"));
    program->setFragmentShaderCode(source("ontopmaterial.frag"));
    auto* const pass = new Qt3DRender::QRenderPass(this);
    pass->setShaderProgram(program);

    for (const auto api : {QGraphicsApiFilter::OpenGL, QGraphicsApiFilter::OpenGLES}) {
        auto* const technique = new Qt3DRender::QTechnique(this);
        technique->graphicsApiFilter()->setApi(api);
        technique->graphicsApiFilter()->setProfile(QGraphicsApiFilter::CoreProfile);
        technique->addFilterKey(forward);
        technique->addRenderPass(pass);
        addTechnique(technique);
    }
}
