#include "labels/GridEffect.h"

#include <Qt3DRender/QFilterKey>
#include <Qt3DRender/QGraphicsApiFilter>
#include <Qt3DRender/QRenderPass>
#include <Qt3DRender/QShaderProgram>
#include <Qt3DRender/QTechnique>

#include <QUrl>

namespace Torvik::View3d {

using Qt3DRender::QGraphicsApiFilter;
using Qt3DRender::QShaderProgram;

GridEffect::GridEffect(Qt3DCore::QNode* parent)
    : Qt3DRender::QEffect(parent)
{
    auto* const forward = new Qt3DRender::QFilterKey(this);
    forward->setName(QStringLiteral("renderingStyle"));
    forward->setValue(QStringLiteral("forward"));

    auto* const program = new QShaderProgram(this);
    program->setVertexShaderCode(QShaderProgram::loadSource(QUrl(QStringLiteral("qrc:/shaders/es2/grid.vert"))));
    program->setFragmentShaderCode(QShaderProgram::loadSource(QUrl(QStringLiteral("qrc:/shaders/es2/grid.frag"))));
    auto* const pass = new Qt3DRender::QRenderPass(this);
    pass->setShaderProgram(program);

    const auto add = [this, forward, pass](QGraphicsApiFilter::Api api, int major, int minor) {
        auto* const technique = new Qt3DRender::QTechnique(this);
        technique->graphicsApiFilter()->setApi(api);
        technique->graphicsApiFilter()->setProfile(QGraphicsApiFilter::NoProfile);
        technique->graphicsApiFilter()->setMajorVersion(major);
        technique->graphicsApiFilter()->setMinorVersion(minor);
        technique->addFilterKey(forward);
        technique->addRenderPass(pass);
        addTechnique(technique);
    };
    add(QGraphicsApiFilter::OpenGL, 2, 1);
    add(QGraphicsApiFilter::OpenGLES, 2, 0);
}

} // namespace Torvik::View3d
