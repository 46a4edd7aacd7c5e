#include "common/SceneTest.h"
#include "labels/GridEffect.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLShaderProgram>
#include <QSet>
#include <Qt3DRender/QFilterKey>
#include <Qt3DRender/QGraphicsApiFilter>
#include <Qt3DRender/QMaterial>
#include <Qt3DRender/QRenderPass>
#include <Qt3DRender/QShaderProgram>
#include <Qt3DRender/QTechnique>
#include <QtTest>

using namespace Torvik::View3d;
using Qt3DRender::QGraphicsApiFilter;

class tst_GridEffect : public QObject {
    Q_OBJECT

private slots:
    void bothTechniquesShareOnePass();
    void theShadersCompile();
};

void tst_GridEffect::bothTechniquesShareOnePass()
{
    const GridEffect effect;

    const auto techniques = effect.techniques();
    QCOMPARE(techniques.size(), 2);
    const auto* const desktop = techniques.first()->graphicsApiFilter();
    QCOMPARE(desktop->api(), QGraphicsApiFilter::OpenGL);
    QCOMPARE(desktop->majorVersion() * 10 + desktop->minorVersion(), 21);
    const auto* const mobile = techniques.last()->graphicsApiFilter();
    QCOMPARE(mobile->api(), QGraphicsApiFilter::OpenGLES);
    QCOMPARE(mobile->majorVersion() * 10 + mobile->minorVersion(), 20);
    for (const auto* const technique : techniques) {
        QCOMPARE(technique->graphicsApiFilter()->profile(), QGraphicsApiFilter::NoProfile);
        QCOMPARE(technique->filterKeys().size(), 1);
        QCOMPARE(technique->filterKeys().first()->name(), QString("renderingStyle"));
        QCOMPARE(technique->filterKeys().first()->value().toString(), QString("forward"));
        QCOMPARE(technique->renderPasses(), techniques.first()->renderPasses());
        QCOMPARE(technique->renderPasses().size(), 1);
    }
}

void tst_GridEffect::theShadersCompile()
{
    const GridEffect effect;
    const auto* const code = effect.techniques().first()->renderPasses().first()->shaderProgram();
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    QVERIFY(context.create() && context.makeCurrent(&surface));

    QOpenGLShaderProgram program;
    QVERIFY2(program.addShaderFromSourceCode(QOpenGLShader::Vertex, code->vertexShaderCode()),
             qPrintable(program.log()));
    QVERIFY2(program.addShaderFromSourceCode(QOpenGLShader::Fragment, code->fragmentShaderCode()),
             qPrintable(program.log()));
    QVERIFY2(program.link(), qPrintable(program.log()));
}

KX_SCENE_TEST_MAIN(tst_GridEffect)
#include "tst_GridEffect.moc"
