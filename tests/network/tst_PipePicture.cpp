#include "PipeFixture.h"
#include "common/PlainScene.h"
#include "common/SceneTest.h"

#include "scene/SharedComponents.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QtTest>

using namespace Torvik::View3d;
using namespace Kx::Test;

namespace {

/** Looks straight down at the scene's origin from 50 m: with 10 degrees a picture is 8.7 m high and wide. +z is up in
 * the picture, so +x points to the left. */
const QByteArray sceneQml = Kx::Test::plainSceneQml(10, 50, 100);

constexpr int side = 400;

bool isGreen(const QColor& color)
{
    return color.green() > 40 && color.green() > 2 * color.red() && color.green() > 2 * color.blue();
}

bool isRed(const QColor& color)
{
    return color.red() > 40 && color.red() > 2 * color.green() && color.red() > 2 * color.blue();
}

bool isBlack(const QColor& color)
{
    return color.red() + color.green() + color.blue() < 15;
}

/** Pixels that clearly look different. */
int differing(const QImage& a, const QImage& b)
{
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QColor one = a.pixelColor(x, y);
            const QColor other = b.pixelColor(x, y);
            count += std::abs(one.red() - other.red()) + std::abs(one.green() - other.green()) +
                                 std::abs(one.blue() - other.blue()) >
                             30
                         ? 1
                         : 0;
        }
    }
    return count;
}

} // namespace

class tst_PipePicture : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void aPipeIsSeenWhereItsPointsSay();
    void aColourIsSeen();
    void aTurnedHolderTurnsThePicture();
    void aPipeOfCentimetresLooksLikeOneOfMetres();
    void aRemovedPipeIsNoLongerSeen();

private:
    /** Where a point of the ground lies in the picture. */
    QColor colorAt(float x, float z) const;

    QQuickView m_view;
    Holder* m_holder = nullptr;
    Pipe* m_pipe = nullptr;
};

QColor tst_PipePicture::colorAt(float x, float z) const
{
    const float metresPerPixel = 2.0F * 50.0F * std::tan(qDegreesToRadians(5.0F)) / side;
    const auto column = static_cast<int>(side / 2.0F - x / metresPerPixel);
    const auto row = static_cast<int>(side / 2.0F - z / metresPerPixel);
    return const_cast<QQuickView&>(m_view).grabWindow().pixelColor(column, row);
}

void tst_PipePicture::initTestCase()
{
    qputenv("QT3D_SCENE3D_STOP_RENDER_HIDDEN", "1");
    QQmlComponent component(m_view.engine());
    component.setData(sceneQml, QUrl());
    QVERIFY2(component.isReady(), qPrintable(component.errorString()));
    auto* item = qobject_cast<QQuickItem*>(component.create());
    QVERIFY(item);
    m_view.setContent(QUrl(), nullptr, item);
    m_view.setResizeMode(QQuickView::SizeRootObjectToView);
    m_view.resize(side, side);
    auto* root = item->property("sceneRoot").value<Qt3DCore::QEntity*>();
    QVERIFY(root);
    SharedComponents::instance().setHome(root);
    m_holder = new Holder;
    m_holder->setParent(root);
    m_pipe = Pipe::create(m_holder, {QVector3D(), QVector3D(0, 0, 3), QVector3D(-3, 0, 3)}, 0.3F);
    m_view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&m_view));
}

void tst_PipePicture::aPipeIsSeenWhereItsPointsSay()
{
    QTRY_VERIFY(isGreen(colorAt(0, 1.5F)));
    QVERIFY(isGreen(colorAt(-1.5F, 3)));
    // The ball rounds the bend's outer side; beyond it, and beside the pipe, there is nothing.
    QVERIFY(isGreen(colorAt(0.15F, 3.15F)));
    QVERIFY(isBlack(colorAt(0.28F, 3.28F)));
    QVERIFY(isBlack(colorAt(0.45F, 1.5F)));
    QVERIFY(isBlack(colorAt(0, -0.2F)));
    QVERIFY(isBlack(colorAt(-3.2F, 3)));
}

void tst_PipePicture::aColourIsSeen()
{
    m_pipe->setColor(QColor(255, 40, 40));

    QTRY_VERIFY(isRed(colorAt(0, 1.5F)));
    QTRY_VERIFY(isRed(colorAt(-1.5F, 3)));
    QTRY_VERIFY(isRed(colorAt(0.15F, 3.15F)));
}

void tst_PipePicture::aTurnedHolderTurnsThePicture()
{
    m_holder->setRotation(QQuaternion::fromAxisAndAngle(0, 1, 0, 180.0F), 0);

    QTRY_VERIFY(isRed(colorAt(0, -1.5F)));
    QTRY_VERIFY(isRed(colorAt(1.5F, -3)));
    QTRY_VERIFY(isBlack(colorAt(0, 1.5F)));
}

void tst_PipePicture::aPipeOfCentimetresLooksLikeOneOfMetres()
{
    m_holder->setRotation(QQuaternion(), 0);
    m_pipe->updatePoints({QVector3D(), QVector3D(0, 0, 3), QVector3D(-3, 0, 3)});
    m_pipe->setColor(QColor(255, 40, 40));
    QTRY_VERIFY(isRed(colorAt(0, 1.5F)));
    QTRY_VERIFY(isRed(colorAt(-1.5F, 3)));
    const QImage ofMetres = m_view.grabWindow();

    QVector<QVector3D> points;
    for (int i = 0; i <= 300; ++i)
        points.append(QVector3D(0, 0, 0.01F * float(i)));
    for (int i = 1; i <= 300; ++i)
        points.append(QVector3D(-0.01F * float(i), 0, 3));
    m_pipe->updatePoints(points);
    QTRY_VERIFY(isGreen(colorAt(0, 1.5F)));
    m_pipe->setColor(QColor(255, 40, 40));

    // Edges are not smoothed, so they may lie a pixel aside: a contour of some 800 pixels.
    QTRY_VERIFY(differing(ofMetres, m_view.grabWindow()) < 400);
    m_holder->setRotation(QQuaternion::fromAxisAndAngle(0, 1, 0, 180.0F), 0);
}

void tst_PipePicture::aRemovedPipeIsNoLongerSeen()
{
    m_pipe->deleteLater();

    QTRY_VERIFY(isBlack(colorAt(0, -1.5F)));
    QVERIFY(isBlack(colorAt(1.5F, -3)));
}

KX_SCENE_TEST_MAIN(tst_PipePicture)

#include "tst_PipePicture.moc"
