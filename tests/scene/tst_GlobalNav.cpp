#include "scene/GlobalNav.h"

#include "domain/boundary/AppState.h"
#include "domain/boundary/BaseServices.h"
#include "network/NodeInformationToggle.h"
#include "scene/SceneRoot.h"

#include <QSignalSpy>
#include <QTest>
#include <Qt3DRender/QCamera>
#include <Qt3DRender/QCameraLens>

using namespace Torvik::View3d;

class tst_GlobalNav : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QCoreApplication::setOrganizationName(QStringLiteral("KxView3dTests")); }

    void startsInTopViewWithTheVerticalLocked()
    {
        const GlobalNav* nav = GlobalNav::instance();

        QCOMPARE(nav->viewType(), CameraController::View2dTop);
        QCOMPARE(nav->axisLock(), QVector3D(1, 0, 1));
        QVERIFY(nav->axisX());
        QVERIFY(!nav->axisY());
        QVERIFY(nav->axisZ());
        QVERIFY(nav->translateMode());
        QVERIFY(!nav->realTimeEnabled());
        QVERIFY(nav->objectsMovingDisabled());
        QVERIFY(nav->labelsVisible());
        QVERIFY(nav->obsVisible());
        QVERIFY(!nav->manholeFullInfoVisible());
        QVERIFY(!nav->cameraFollow());
        QVERIFY(!nav->connectionMode());
        QCOMPARE(nav->pipeProximityPos(), QPointF());
        QCOMPARE(nav->minStartOSMTileDist(), 350.0F);
    }

    void anAxisTellsItsOwnChangeAndThenTheLock()
    {
        GlobalNav* nav = GlobalNav::instance();
        QStringList order;
        const auto own =
            connect(nav, &GlobalNav::axisYChanged, this, [&](bool free) { order << (free ? "y free" : "y locked"); });
        const auto lock = connect(nav, &GlobalNav::axisLockChanged, this,
                                  [&](QVector3D v) { order << QString::number(static_cast<double>(v.y())); });

        nav->setAxisY(true);
        nav->setAxisY(true);
        nav->setAxisY(false);

        QCOMPARE(order, QStringList({"y free", "1", "y locked", "0"}));
        disconnect(own);
        disconnect(lock);
    }

    void settingAnAxisToItsValueEmitsNothing()
    {
        GlobalNav* nav = GlobalNav::instance();
        QSignalSpy x(nav, &GlobalNav::axisXChanged);
        QSignalSpy z(nav, &GlobalNav::axisZChanged);
        QSignalSpy lock(nav, &GlobalNav::axisLockChanged);

        nav->setAxisX(true);
        nav->setAxisZ(true);

        QCOMPARE(x.count() + z.count() + lock.count(), 0);
    }

    void modesEmitOnAChangeOnly_data()
    {
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<QVariant>("other");
        for (const char* name :
             {"axisX", "axisY", "axisZ", "objectsMovingDisabled", "translateMode", "realTimeEnabled", "obsVisible",
              "labelsVisible", "manholeFullInfoVisible", "cameraFollow", "connectionMode"}) {
            QTest::newRow(name) << QByteArray(name) << QVariant();
        }
        QTest::newRow("pipeProximityPos") << QByteArray("pipeProximityPos") << QVariant(QPointF(3, 4));
        QTest::newRow("viewType") << QByteArray("viewType") << QVariant(0);
    }

    void modesEmitOnAChangeOnly()
    {
        QFETCH(QByteArray, property);
        QFETCH(QVariant, other);
        GlobalNav* nav = GlobalNav::instance();
        const QMetaObject* meta = nav->metaObject();
        const QMetaProperty prop = meta->property(meta->indexOfProperty(property.constData()));
        QSignalSpy changes(nav, QByteArray("2" + prop.notifySignal().methodSignature()).constData());
        const QVariant before = prop.read(nav);
        const QVariant changed = other.isValid() ? other : QVariant(!before.toBool());

        QVERIFY(prop.write(nav, changed));
        QVERIFY(prop.write(nav, changed));

        QCOMPARE(changes.count(), 1);
        QCOMPARE(prop.read(nav).toString(), prop.isEnumType() ? prop.read(nav).toString() : changed.toString());
        QVERIFY(prop.write(nav, before));
        QCOMPARE(changes.count(), 2);
    }

    void screenPositionsThatDifferByNoiseAreTheSame()
    {
        GlobalNav* nav = GlobalNav::instance();
        nav->setPipeProximityPos({0.0, 100.0});
        QSignalSpy changes(nav, &GlobalNav::pipeProximityPosChanged);

        nav->setPipeProximityPos({1e-13, 100.0 + 1e-11});
        QCOMPARE(changes.count(), 0);
        nav->setPipeProximityPos({1e-3, 100.0});
        QCOMPARE(changes.count(), 1);
        nav->setPipeProximityPos({});
    }

    void transformControlWithoutAControllerDoesNothing()
    {
        GlobalNav::instance()->setActiveObjectTransformControl(true);
        GlobalNav::instance()->setActiveObjectTransformControl(false);
    }

    void aRegisteredControllerGivesItsGesturesAwayAndMayDie()
    {
        GlobalNav* nav = GlobalNav::instance();
        {
            CameraController controller;
            nav->registerCameraController(&controller);

            nav->setActiveObjectTransformControl(true);
            QVERIFY(!controller.isEnabled());
            nav->setActiveObjectTransformControl(false);
            QVERIFY(controller.isEnabled());
            controller.setViewType(CameraController::View3d);
            QCOMPARE(nav->viewType(), CameraController::View3d);
        }

        nav->setActiveObjectTransformControl(true);
        nav->setViewType(CameraController::View2dTop);
    }

    void fullInformationReachesTheNodesToggle()
    {
        GlobalNav::instance()->setManholeFullInfoVisible(true);
        QVERIFY(NodeInformationToggle::m_manholeFullInfoVisible);
        GlobalNav::instance()->setManholeFullInfoVisible(false);
        QVERIFY(!NodeInformationToggle::m_manholeFullInfoVisible);
    }

    void aLineHeightIsStoredAndDividedByTen()
    {
        auto& settings = Torvik::Base::CApplicationSettings::instance();
        const float before = settings.getDefaultLabelLineHeight();

        GlobalNav::instance()->setLabelLineHeight(25.0F);

        QCOMPARE(settings.getDefaultLabelLineHeight(), 25.0F);
        QCOMPARE(NodeInformationToggle::m_labelLineHeight, 2.5F);
        GlobalNav::instance()->setLabelLineHeight(before);
    }

    void withoutAnActiveInspectionThereIsNowhereToGo()
    {
        GlobalNav* nav = GlobalNav::instance();
        SceneRoot root;
        Qt3DRender::QCamera camera;
        camera.setPosition({0, 100, 0});
        root.setCamera(&camera);

        nav->goToCurrentSection();
        nav->goToUpstreamNode();
        nav->goToDownstreamNode();

        QVERIFY(!nav->hasUpstreamNode());
        QVERIFY(!nav->hasDownstreamNode());
        QCOMPARE(camera.position(), QVector3D(0, 100, 0));
        root.setCamera(nullptr);
    }

    void goingToAPointIgnoresTheDistanceAndCentresOnTheGround()
    {
        SceneRoot root;
        Qt3DRender::QCamera near;
        Qt3DRender::QCamera far;
        for (Qt3DRender::QCamera* camera : {&near, &far}) {
            camera->lens()->setPerspectiveProjection(3.0F, 1.5F, 1.0F, 10000.0F);
            camera->setPosition({0, 200, -200});
            camera->setViewCenter({});
        }

        root.setCamera(&near);
        GlobalNav::instance()->cameraGoTo({50, -3, 80}, 10.0F);
        root.setCamera(&far);
        GlobalNav::instance()->cameraGoTo({50, -3, 80}, 1000.0F);

        QCOMPARE(near.position(), far.position());
        QCOMPARE(near.viewCenter(), far.viewCenter());
        // The direction of 45 degrees meets the ground 3 m before the point.
        QVERIFY((near.viewCenter() - QVector3D(50, 0, 77)).length() < 0.01F);
        root.setCamera(nullptr);
    }

    void aLevelLookKeepsTheCentreOfTheSphere()
    {
        SceneRoot root;
        Qt3DRender::QCamera camera;
        camera.lens()->setPerspectiveProjection(3.0F, 1.5F, 1.0F, 10000.0F);
        camera.setPosition({0, 0, -200});
        camera.setViewCenter({});
        root.setCamera(&camera);

        GlobalNav::instance()->cameraGoTo({50, -3, 80});

        QVERIFY((camera.viewCenter() - QVector3D(50, -3, 80)).length() < 0.01F);
        root.setCamera(nullptr);
    }
};

QTEST_MAIN(tst_GlobalNav)
#include "tst_GlobalNav.moc"
