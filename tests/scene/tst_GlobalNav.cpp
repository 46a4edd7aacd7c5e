#include "scene/GlobalNav.h"

#include "domain/boundary/AppState.h"
#include "domain/boundary/BaseServices.h"
#include "network/NodeInformationToggle.h"
#include "scene/SceneRoot.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QSignalSpy>
#include <QTest>
#include <Qt3DRender/QCamera>
#include <Qt3DRender/QCameraLens>

#include <limits>

using namespace Torvik::View3d;

class tst_GlobalNav : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("KxView3dTests"));
        qRegisterMetaType<CameraController::ViewTypes>();
    }

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

    void anAxisTellsItsOwnChangeAndThenTheLock_data()
    {
        QTest::addColumn<QByteArray>("axis");
        QTest::addColumn<QVector3D>("other");
        QTest::addColumn<QVector3D>("before");
        QTest::newRow("x") << QByteArray("axisX") << QVector3D(0, 0, 1) << QVector3D(1, 0, 1);
        QTest::newRow("y") << QByteArray("axisY") << QVector3D(1, 1, 1) << QVector3D(1, 0, 1);
        QTest::newRow("z") << QByteArray("axisZ") << QVector3D(1, 0, 0) << QVector3D(1, 0, 1);
    }

    void anAxisTellsItsOwnChangeAndThenTheLock()
    {
        QFETCH(QByteArray, axis);
        QFETCH(QVector3D, other);
        QFETCH(QVector3D, before);
        GlobalNav* nav = GlobalNav::instance();
        QVariantList told;
        QObject listener;
        const auto own = [&](bool free) { told << free; };
        connect(nav, &GlobalNav::axisXChanged, &listener, own);
        connect(nav, &GlobalNav::axisYChanged, &listener, own);
        connect(nav, &GlobalNav::axisZChanged, &listener, own);
        connect(nav, &GlobalNav::axisLockChanged, &listener, [&](QVector3D lock) { told << lock; });
        const bool free = nav->property(axis.constData()).toBool();

        nav->setProperty(axis.constData(), !free);
        nav->setProperty(axis.constData(), !free);
        QCOMPARE(nav->property(axis.constData()).toBool(), !free);
        QCOMPARE(nav->axisLock(), other);
        nav->setProperty(axis.constData(), free);

        QCOMPARE(told, QVariantList({!free, other, free, before}));
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

        // An enumeration is written as a number and read as itself.
        const auto plain = [&](const QVariant& value) { return prop.isEnumType() ? QVariant(value.toInt()) : value; };
        QCOMPARE(changes.count(), 1);
        QCOMPARE(plain(prop.read(nav)), changed);
        if (property == "objectsMovingDisabled") {
            QVERIFY(changes[0].isEmpty());
        } else {
            QCOMPARE(changes[0].size(), 1);
            QCOMPARE(plain(changes[0][0]), changed);
        }
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
        nav->setPipeProximityPos({1e-11, 100.0});
        QCOMPARE(changes.count(), 1);
        nav->setPipeProximityPos({});
    }

    void qmlReachesTheNavigation_data()
    {
        QTest::addColumn<QByteArray>("signature");
        for (const char* signature :
             {"goToCurrentSection()", "goToUpstreamNode()", "goToDownstreamNode()", "cameraGoTo(QVector3D,float)",
              "cameraGoTo(QVector3D)", "resetLabelsPositions()", "setLabelLineHeight(float)", "entityMoved()",
              "shortTap(Qt3DInput::QMouseEvent*)", "axisLockChanged(QVector3D)", "lateralNotInProximity()",
              "lateralInProximity(Torvik::QmlWrapper::CQmlDomainObject,Qt3DCore::QTransform*)"}) {
            QTest::newRow(signature) << QByteArray(signature);
        }
    }

    void qmlReachesTheNavigation()
    {
        QFETCH(QByteArray, signature);

        QVERIFY(GlobalNav::staticMetaObject.indexOfMethod(signature.constData()) >= 0);
    }

    void qmlReadsTheViewTypeAsANumber()
    {
        GlobalNav* nav = GlobalNav::instance();
        nav->setViewType(CameraController::View2dTop);
        QQmlEngine engine;
        engine.rootContext()->setContextProperty("GlobalNav", nav);
        QQmlExpression number(engine.rootContext(), nullptr, "GlobalNav.viewType + GlobalNav.minStartOSMTileDist");

        QCOMPARE(number.evaluate().toDouble(), 351.0);
        const QMetaObject* meta = nav->metaObject();
        QVERIFY(meta->property(meta->indexOfProperty("minStartOSMTileDist")).isConstant());
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

        for (const float noHeight : {0.0F, -1.0F, std::numeric_limits<float>::quiet_NaN()})
            GlobalNav::instance()->setLabelLineHeight(noHeight);
        QCOMPARE(settings.getDefaultLabelLineHeight(), 25.0F);
        settings.setDefaultLabelLineHeight(-1.0F); // by another hand
        QCOMPARE(settings.getDefaultLabelLineHeight(), 10.0F);
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
        Qt3DRender::QCamera sphere;
        for (Qt3DRender::QCamera* camera : {&near, &far, &sphere}) {
            lookFrom(camera, {0, 200, -200});
        }

        root.setCamera(&near);
        GlobalNav::instance()->cameraGoTo({50, -3, 80}, 10.0F);
        root.setCamera(&far);
        QVERIFY(QMetaObject::invokeMethod(GlobalNav::instance(), "cameraGoTo", Q_ARG(QVector3D, QVector3D(50, -3, 80)),
                                          Q_ARG(float, 1000.0F)));
        sphere.viewSphere({50, -3, 80}, 15.0F);

        QCOMPARE(near.position(), far.position());
        QCOMPARE(near.viewCenter(), far.viewCenter());
        QCOMPARE(near.position(), sphere.position());
        // The direction of 45 degrees meets the ground 3 m before the point.
        QVERIFY((near.viewCenter() - QVector3D(50, 0, 77)).length() < 0.01F);
        root.setCamera(nullptr);
    }

    void aLevelLookKeepsTheCentreOfTheSphere()
    {
        SceneRoot root;
        Qt3DRender::QCamera camera;
        lookFrom(&camera, {0, 0, -200});
        root.setCamera(&camera);

        GlobalNav::instance()->cameraGoTo({50, -3, 80});

        QVERIFY((camera.viewCenter() - QVector3D(50, -3, 80)).length() < 0.01F);
        root.setCamera(nullptr);
    }

    void aLookUpFromBelowIsCentredOnTheGroundAboveIt()
    {
        SceneRoot root;
        Qt3DRender::QCamera camera;
        Qt3DRender::QCamera sphere;
        for (Qt3DRender::QCamera* each : {&camera, &sphere}) {
            lookFrom(each, {0, -200, -200});
        }
        root.setCamera(&camera);

        GlobalNav::instance()->cameraGoTo({50, -3, 80});
        sphere.viewSphere({50, -3, 80}, 15.0F);

        QCOMPARE(camera.position(), sphere.position());
        QVERIFY((camera.viewCenter() - QVector3D(50, 0, 83)).length() < 0.01F);
        root.setCamera(nullptr);
    }

private:
    static void lookFrom(Qt3DRender::QCamera* camera, const QVector3D& position)
    {
        camera->lens()->setPerspectiveProjection(3.0F, 1.5F, 1.0F, 10000.0F);
        camera->setPosition(position);
        camera->setViewCenter({});
    }
};

QTEST_MAIN(tst_GlobalNav)
#include "tst_GlobalNav.moc"
