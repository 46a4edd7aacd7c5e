#include "common/PlainScene.h"
#include "common/SceneTest.h"
#include "plans/BackgroundImage.h"
#include "scene/SceneRoot.h"

#include <QImage>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickView>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace Torvik::View3d;

namespace {

/** Looks straight down, north up: through the lens of 3 degrees 157 m show. */
const QByteArray sceneQml = Kx::Test::plainSceneQml(3, 3000);

constexpr int side = 300;

QSurfaceFormat format(QSurfaceFormat::RenderableType type, int major, int minor, bool core = false)
{
    QSurfaceFormat wish;
    wish.setDepthBufferSize(24);
    wish.setStencilBufferSize(8);
    wish.setRenderableType(type);
    wish.setVersion(major, minor);
    if (core)
        wish.setProfile(QSurfaceFormat::CoreProfile);
    return wish;
}

/** Four colours, each in its corner. */
QImage corners(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const bool right = x >= size.width() / 2;
            const bool low = y >= size.height() / 2;
            image.setPixelColor(x, y, low ? (right ? Qt::yellow : Qt::blue) : (right ? Qt::green : Qt::red));
        }
    }
    return image;
}

bool same(const QColor& a, const QColor& b)
{
    return qAbs(a.red() - b.red()) + qAbs(a.green() - b.green()) + qAbs(a.blue() - b.blue()) < 12;
}

} // namespace

/** A picture is seen as it was taken: its top north, its right-hand side east. */
class tst_PicturePixels : public QObject {
    Q_OBJECT

private slots:
    void aPictureLiesNorthUp_data()
    {
        QTest::addColumn<QSurfaceFormat>("surface");
        QTest::addColumn<QSize>("pixels");
        const auto gl = QSurfaceFormat::OpenGL;
        QTest::newRow("small") << format(gl, 2, 0) << QSize(64, 64);
        QTest::newRow("odd sides") << format(gl, 2, 0) << QSize(63, 61);
        QTest::newRow("large, without levels of detail") << format(gl, 2, 0) << QSize(4048, 4048);
        QTest::newRow("core profile") << format(gl, 3, 3, true) << QSize(64, 64);
        QTest::newRow("OpenGL ES 2") << format(QSurfaceFormat::OpenGLES, 2, 0) << QSize(64, 64);
    }

    void aPictureLiesNorthUp()
    {
        QFETCH(QSurfaceFormat, surface);
        QFETCH(QSize, pixels);
        const QString path = m_folder.filePath(QStringLiteral("corners.png"));
        QVERIFY(corners(pixels).save(path, "PNG", 90));
        QQuickView view;
        view.setFormat(surface);
        view.setResizeMode(QQuickView::SizeRootObjectToView);
        view.resize(side, side);
        QQmlComponent component(view.engine());
        component.setData(sceneQml, {});
        auto* const item = qobject_cast<QQuickItem*>(component.create());
        QVERIFY2(item, qPrintable(component.errorString()));
        auto* const world = item->property("sceneRoot").value<Qt3DCore::QEntity*>();
        view.setContent({}, &component, item);
        auto* const root = new SceneRoot;
        root->setCamera(nullptr);
        root->setParent(world);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));

        auto* const plan = new BackgroundImage(path, root);
        QSignalSpy finished(plan, &IBackgroundPlan::backgroundLoadingFinished);
        plan->load();
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000);

        // The picture is 100 m of the 157 m wide.
        const int in = side / 2 - side / 5;
        const int out = side / 2 + side / 5;
        QTRY_VERIFY_WITH_TIMEOUT(same(view.grabWindow().pixelColor(in, in), Qt::red), 20000);
        const QImage seen = view.grabWindow();
        QVERIFY(same(seen.pixelColor(out, in), Qt::green));
        QVERIFY(same(seen.pixelColor(in, out), Qt::blue));
        QVERIFY(same(seen.pixelColor(out, out), Qt::yellow));
        QVERIFY(same(seen.pixelColor(side / 20, side / 20), Qt::black));
    }

private:
    QTemporaryDir m_folder;
};

KX_SCENE_TEST_MAIN(tst_PicturePixels)
#include "tst_PicturePixels.moc"
