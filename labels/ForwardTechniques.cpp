#include "labels/ForwardTechniques.h"

#include <Qt3DRender/QFilterKey>
#include <Qt3DRender/QRenderPass>
#include <Qt3DRender/QShaderProgram>
#include <Qt3DRender/QTechnique>

#include <QUrl>

namespace Torvik::View3d::ForwardTechniques {

using Qt3DRender::QShaderProgram;

namespace {

QByteArray source(QLatin1String shader, const char* ending)
{
    return QShaderProgram::loadSource(
        QUrl(QStringLiteral("qrc:/shaders/es2/%1.%2").arg(shader, QLatin1String(ending))));
}

} // namespace

void add(Qt3DRender::QEffect* effect, QLatin1String shader, std::initializer_list<Api> apis)
{
    auto* const forward = new Qt3DRender::QFilterKey(effect);
    forward->setName(QStringLiteral("renderingStyle"));
    forward->setValue(QStringLiteral("forward"));

    auto* const program = new QShaderProgram(effect);
    program->setVertexShaderCode(source(shader, "vert"));
    program->setFragmentShaderCode(source(shader, "frag"));
    auto* const pass = new Qt3DRender::QRenderPass(effect);
    pass->setShaderProgram(program);

    for (const Api& api : apis) {
        auto* const technique = new Qt3DRender::QTechnique(effect);
        auto* const filter = technique->graphicsApiFilter();
        filter->setApi(api.api);
        filter->setProfile(api.profile);
        filter->setMajorVersion(api.major);
        filter->setMinorVersion(api.minor);
        technique->addFilterKey(forward);
        technique->addRenderPass(pass);
        effect->addTechnique(technique);
    }
}

} // namespace Torvik::View3d::ForwardTechniques
