#include "common/SceneTest.h"
#include "labels/GridEffect.h"

#include <QMatrix4x4>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QSet>
#include <Qt3DRender/QFilterKey>
#include <Qt3DRender/QGraphicsApiFilter>
#include <Qt3DRender/QMaterial>
#include <Qt3DRender/QRenderPass>
#include <Qt3DRender/QShaderProgram>
#include <Qt3DRender/QTechnique>
#include <QtTest>

#include <array>

using namespace Torvik::View3d;
using Qt3DRender::QGraphicsApiFilter;

class tst_GridEffect : public QObject {
    Q_OBJECT

private slots:
    void bothTechniquesShareOnePass();
    void itsLinesLieAHundredPixelsApart();
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

void tst_GridEffect::itsLinesLieAHundredPixelsApart()
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

    constexpr int side = 220;
    QOpenGLFramebufferObject target(side, side);
    QVERIFY(target.bind() && program.bind());
    auto* const gl = context.functions();
    gl->glViewport(0, 0, side, side);
    program.setUniformValue("mvp", QMatrix4x4());
    program.setUniformValue("modelMatrix", QMatrix4x4());
    const std::array<float, 12> corners {-1, -1, 0, 1, -1, 0, -1, 1, 0, 1, 1, 0};
    program.enableAttributeArray("vertexPosition");
    program.setAttributeArray("vertexPosition", corners.data(), 3);
    gl->glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    QImage picture(side, side, QImage::Format_RGBA8888);
    gl->glReadPixels(0, 0, side, side, GL_RGBA, GL_UNSIGNED_BYTE, picture.bits());

    const auto at = [&picture](int x, int y) { return QColor::fromRgba(picture.pixel(x, y)); };
    for (const int line : {0, 100, 200}) {
        QVERIFY2(at(line, 50).alphaF() > 0.5, qPrintable(QString::number(line)));
        QVERIFY2(at(50, line).alphaF() > 0.5, qPrintable(QString::number(line)));
    }
    QCOMPARE(at(100, 50).rgb(), QColor(Qt::white).rgb());
    for (const QPoint square : {QPoint(50, 50), QPoint(150, 50), QPoint(10, 190), QPoint(110, 90)})
        QCOMPARE(at(square.x(), square.y()).alpha(), 0);
}

KX_SCENE_TEST_MAIN(tst_GridEffect)
#include "tst_GridEffect.moc"
