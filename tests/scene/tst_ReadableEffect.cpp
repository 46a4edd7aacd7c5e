#include "common/PlainScene.h"
#include "common/SceneTest.h"
#include "scene/ReadableEffect.h"
#include "scene/SharedComponents.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <Qt3DCore/QEntity>
#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QCylinderMesh>
#include <Qt3DExtras/QGoochMaterial>
#include <Qt3DExtras/QSphereMesh>
#include <Qt3DRender/QParameter>
#include <QtTest>

using namespace Torvik::View3d;

namespace {

/** Looks straight down from 2,000 m; at 3 degrees a picture of 400 px is 104.7 m high: a pixel shows 0.26 m. */
const QByteArray sceneQml = Kx::Test::plainSceneQml(3, 2000);

constexpr int side = 400;

/** Columns of the picture, among those between the two, that hold a lit pixel. */
int litColumns(const QImage& picture, int from, int to)
{
    int lit = 0;
    for (int x = from; x < to; ++x) {
        for (int y = 0; y < picture.height(); ++y) {
            if (qGreen(picture.pixel(x, y)) > 40) {
                ++lit;
                break;
            }
        }
    }
    return lit;
}

int litPixels(const QImage& picture)
{
    int lit = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            lit += qGreen(picture.pixel(x, y)) > 40 ? 1 : 0;
    }
    return lit;
}

} // namespace

class tst_ReadableEffect : public QObject {
    Q_OBJECT

private slots:
    void aPixelShowsWhatTheLensAndTheDistanceSay()
    {
        QCOMPARE(Readable::metresPerPixel(100.0F, 90.0F, 200.0F), 1.0F);
        QVERIFY(qAbs(Readable::metresPerPixel(2000.0F, 3.0F, 400.0F) - 0.26186F) < 1e-4F);
        QCOMPARE(Readable::metresPerPixel(100.0F, 90.0F, 0.0F), 0.0F);
    }

    void aMaterialKeepsItsProperties()
    {
        Qt3DCore::QNode home;
        Qt3DRender::QEffect* const effect = Readable::makeEffect(&home);
        Qt3DExtras::QGoochMaterial material;
        material.setWarm(QColor(Qt::red));

        Readable::apply(&material, effect, 5.0F);
        Readable::apply(&material, effect, 5.0F);
        material.setWarm(QColor(Qt::blue));

        QCOMPARE(material.effect(), effect);
        QVariant warm;
        int minimums = 0;
        const auto parameters = material.parameters();
        for (const Qt3DRender::QParameter* parameter : parameters) {
            if (parameter->name() == QLatin1String("kyellow"))
                warm = parameter->value();
            minimums += parameter->name() == QLatin1String("minimumPixels") ? 1 : 0;
        }
        QCOMPARE(warm.value<QColor>(), QColor(Qt::blue));
        QCOMPARE(minimums, 1);
        // Its parameters go with the material's first effect, not with ours.
        QCOMPARE(effect->techniques().size(), 3);
    }

    void aThinTubeIsAnUnbrokenLineFromFarAway()
    {
        showScene();
        auto& shared = SharedComponents::instance();
        auto* const tube = new Qt3DCore::QEntity(m_root);
        auto* const place = new Qt3DCore::QTransform(tube);
        // 60 m along x, a little askew, as pipes lie; 0.1 m wide.
        place->setRotation(QQuaternion::fromAxisAndAngle(0, 1, 0, 7) * QQuaternion::fromAxisAndAngle(0, 0, 1, 90));
        place->setScale3D(QVector3D(0.05F, 60.0F, 0.05F));
        tube->addComponent(place);
        tube->addComponent(shared.unitCylinder());
        tube->addComponent(shared.goochMaterial(QColor(0, 230, 0)));

        shared.setMetresPerPixel(0.0F);
        const int from = side / 2 - 100;
        const int to = side / 2 + 100;
        QTRY_VERIFY(litPixels(m_view.grabWindow()) > 0);
        QTest::qWait(100);
        const int columnsAsItIs = litColumns(m_view.grabWindow(), from, to);
        QVERIFY2(columnsAsItIs < to - from, "without the effect the line is broken");

        shared.setMetresPerPixel(Readable::metresPerPixel(2000.0F, 3.0F, side));
        QTRY_COMPARE(litColumns(m_view.grabWindow(), from, to), to - from);
        delete tube;
        QTRY_COMPARE(litPixels(m_view.grabWindow()), 0);
    }

    void aBallIsSeenFromFarAwayAndTrueToItsSizeFromNear()
    {
        showScene();
        auto& shared = SharedComponents::instance();
        auto* const ball = new Qt3DCore::QEntity(m_root);
        auto* const place = new Qt3DCore::QTransform(ball);
        place->setScale(0.05F);
        ball->addComponent(place);
        ball->addComponent(shared.unitSphere());
        auto* const material = new Qt3DExtras::QGoochMaterial(ball);
        material->setWarm(QColor(0, 255, 0));
        material->setCool(QColor(0, 255, 0));
        Readable::apply(material, shared.readableEffect(), 5.0F);
        ball->addComponent(material);
        shared.setMetresPerPixel(Readable::metresPerPixel(2000.0F, 3.0F, side));

        QTRY_VERIFY(litPixels(m_view.grabWindow()) >= 14);
        QVERIFY(litPixels(m_view.grabWindow()) <= 30);

        // A ball of 20 px is not changed by a minimum of 5.
        place->setScale(10.0F * 0.26186F);
        const int wide = side / 2 + 40;
        QTRY_VERIFY(litColumns(m_view.grabWindow(), side / 2 - 40, wide) >= 18);
        QVERIFY(litColumns(m_view.grabWindow(), side / 2 - 40, wide) <= 21);
        delete ball;
    }

private:
    void showScene()
    {
        if (m_root)
            return;
        QQmlComponent component(m_view.engine());
        component.setData(sceneQml, QUrl());
        QVERIFY2(component.isReady(), qPrintable(component.errorString()));
        auto* const item = qobject_cast<QQuickItem*>(component.create());
        QVERIFY(item);
        m_view.setContent(QUrl(), nullptr, item);
        m_view.setResizeMode(QQuickView::SizeRootObjectToView);
        m_view.resize(side, side);
        m_root = item->property("sceneRoot").value<Qt3DCore::QEntity*>();
        SharedComponents::instance().setHome(m_root);
        m_view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&m_view));
    }

    QQuickView m_view;
    Qt3DCore::QEntity* m_root = nullptr;
};

KX_SCENE_TEST_MAIN(tst_ReadableEffect)
#include "tst_ReadableEffect.moc"
