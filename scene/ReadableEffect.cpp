#include "scene/ReadableEffect.h"

#include <Qt3DExtras/QGoochMaterial>
#include <Qt3DRender/QFilterKey>
#include <Qt3DRender/QGraphicsApiFilter>
#include <Qt3DRender/QParameter>
#include <Qt3DRender/QRenderPass>
#include <Qt3DRender/QShaderProgram>
#include <Qt3DRender/QTechnique>

#include <QUrl>
#include <QVector3D>

#include <cmath>

namespace Torvik::View3d::Readable {

using Qt3DRender::QGraphicsApiFilter;

namespace {

/** Where the scene's lamp hangs. */
const QVector3D lampPosition(0.0F, 50.0F, 0.0F);

constexpr double halfDegreeInRadians = 0.0087266462599716478846; // pi / 360

struct Dialect {
    QGraphicsApiFilter::Api api;
    QGraphicsApiFilter::OpenGLProfile profile;
    int major;
    int minor;
    const char* folder;
};

constexpr Dialect dialects[] = {{QGraphicsApiFilter::OpenGL, QGraphicsApiFilter::CoreProfile, 3, 1, "gl3"},
                                {QGraphicsApiFilter::OpenGL, QGraphicsApiFilter::NoProfile, 2, 0, "es2"},
                                {QGraphicsApiFilter::OpenGLES, QGraphicsApiFilter::NoProfile, 2, 0, "es2"}};

QByteArray source(const Dialect& dialect, const char* ending)
{
    return Qt3DRender::QShaderProgram::loadSource(
        QUrl(QStringLiteral("qrc:/shaders/%1/readable.%2").arg(QLatin1String(dialect.folder), QLatin1String(ending))));
}

Qt3DRender::QTechnique* makeTechnique(const Dialect& dialect)
{
    auto* const program = new Qt3DRender::QShaderProgram;
    program->setVertexShaderCode(source(dialect, "vert"));
    program->setFragmentShaderCode(source(dialect, "frag"));
    auto* const pass = new Qt3DRender::QRenderPass;
    pass->setShaderProgram(program);

    auto* const technique = new Qt3DRender::QTechnique;
    auto* const filter = technique->graphicsApiFilter();
    filter->setApi(dialect.api);
    filter->setProfile(dialect.profile);
    filter->setMajorVersion(dialect.major);
    filter->setMinorVersion(dialect.minor);
    auto* const key = new Qt3DRender::QFilterKey;
    key->setName(QStringLiteral("renderingStyle"));
    key->setValue(QStringLiteral("forward"));
    technique->addFilterKey(key);
    technique->addRenderPass(pass);
    return technique;
}

} // namespace

Qt3DRender::QEffect* makeEffect(Qt3DCore::QNode* parent)
{
    auto* const effect = new Qt3DRender::QEffect(parent);
    effect->addParameter(new Qt3DRender::QParameter(QLatin1String(metresPerPixelParameter), 0.0F));
    effect->addParameter(new Qt3DRender::QParameter(QStringLiteral("lampPosition"), lampPosition));
    for (const Dialect& dialect : dialects)
        effect->addTechnique(makeTechnique(dialect));
    return effect;
}

void apply(Qt3DExtras::QGoochMaterial* material, Qt3DRender::QEffect* effect, float minimumPixels)
{
    if (material->effect() == effect)
        return;
    // The parameters behind the material's properties come along.
    const auto own = material->effect()->parameters();
    for (Qt3DRender::QParameter* parameter : own)
        material->addParameter(parameter);
    material->addParameter(new Qt3DRender::QParameter(QStringLiteral("minimumPixels"), minimumPixels));
    material->setEffect(effect);
}

float metresPerPixel(float distanceMetres, float fieldOfViewDeg, float heightPixels)
{
    if (heightPixels <= 0.0F)
        return 0.0F;
    const double halfHeight =
        static_cast<double>(distanceMetres) * std::tan(static_cast<double>(fieldOfViewDeg) * halfDegreeInRadians);
    return static_cast<float>(2.0 * halfHeight / static_cast<double>(heightPixels));
}

} // namespace Torvik::View3d::Readable
