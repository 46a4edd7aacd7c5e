#include "interaction/CameraGesture.h"
#include "interaction/ManualScene.h"
#include "interaction/Utils3d.h"
#include "scene/GlobalNav.h"

#include <QMetaEnum>
#include <QSignalSpy>
#include <QTest>
#include <Qt3DInput/QAction>
#include <Qt3DInput/QActionInput>
#include <Qt3DInput/QLogicalDevice>
#include <Qt3DInput/QMouseDevice>
#include <Qt3DInput/QMouseHandler>
#include <Qt3DLogic/QFrameAction>

using namespace Torvik::View3d;

class tst_CameraController : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // By the names that the signals give them.
        qRegisterMetaType<CameraController::ControlModes>("ControlModes");
        qRegisterMetaType<CameraController::ControlPlanes>("ControlPlanes");
        qRegisterMetaType<CameraController::ViewTypes>();
    }

    /** Comes first: afterwards the process has a press position. */
    void withoutAnyPressATapLiesInTheCorner()
    {
        CameraController controller;

        QVERIFY(controller.shortTapInPlace(Touch(40, 0), false));
        QVERIFY(!controller.shortTapInPlace(Touch(41, 0), false));
    }

    void startsInTopViewTranslating()
    {
        CameraController controller;

        QCOMPARE(controller.mode(), CameraController::Translate);
        QCOMPARE(controller.controlPlanes(), CameraController::All);
        QCOMPARE(controller.viewType(), CameraController::View2dTop);
        QVERIFY(!controller.camera());
        QVERIFY(!controller.scene());
    }

    void numbersThatQmlKnowsStay()
    {
        const auto values = [](const char* name) {
            const QMetaObject& meta = CameraController::staticMetaObject;
            const QMetaEnum metaEnum = meta.enumerator(meta.indexOfEnumerator(name));
            QStringList all;
            for (int i = 0; i < metaEnum.keyCount(); ++i) {
                all << QStringLiteral("%1=%2").arg(metaEnum.key(i)).arg(metaEnum.value(i));
            }
            return all.join(' ');
        };

        QCOMPARE(values("ControlModes"), QStringLiteral("None=0 Translate=1 Rotate=2 Tilt=3 Zoom=4"));
        QCOMPARE(values("ViewTypes"), QStringLiteral("View3d=0 View2dTop=1 View2dFront=2 ViewUndefined=3"));
        QCOMPARE(values("ControlPlanes"), QStringLiteral("All=0 Map=1"));
    }

    void signalsAndSlotsStandInOrder()
    {
        const QMetaObject& meta = CameraController::staticMetaObject;
        QStringList signalNames;
        QStringList slotNames;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            (meta.method(i).methodType() == QMetaMethod::Signal ? signalNames : slotNames) << meta.method(i).name();
        }

        QCOMPARE(signalNames,
                 QStringList({"cameraChanged", "modeChanged", "controlPlanesChanged", "maxDistChanged",
                              "minDistChanged", "sceneChanged", "sceneWidthChanged", "sceneHeightChanged",
                              "sceneXChanged", "sceneYChanged", "mousePress", "mapTranslation",
                              "mapTranslationFinished", "translationFinished", "shortTap", "viewTypeChanged"}));
        slotNames.sort();
        QCOMPARE(slotNames, QStringList({"_onPressed", "_onReleased", "abandonGesture", "scene", "setCamera",
                                         "setControlPlanes", "setMaxDist", "setMinDist", "setMode", "setScene",
                                         "setSceneHeight", "setSceneWidth", "setViewType"}));
    }

    void theLeftButtonIsWiredToTheMouse()
    {
        CameraController controller;
        auto* const mouse = controller.findChild<Qt3DInput::QMouseDevice*>();
        auto* const handler = controller.findChild<Qt3DInput::QMouseHandler*>();
        auto* const logical = controller.findChild<Qt3DInput::QLogicalDevice*>();
        auto* const input = controller.findChild<Qt3DInput::QActionInput*>();

        QCOMPARE(handler->sourceDevice(), mouse);
        QCOMPARE(input->buttons(), QVector<int>({1}));
        QCOMPARE(input->sourceDevice(), mouse);
        QCOMPARE(logical->actions().size(), 1);
        QCOMPARE(logical->actions().first()->inputs(), QVector<Qt3DInput::QAbstractActionInput*>({input}));
        QCOMPARE(controller.components(),
                 Qt3DCore::QComponentVector({handler, logical, controller.findChild<Qt3DLogic::QFrameAction*>()}));
    }

    void settersEmitOnAChangeOnly()
    {
        CameraController controller;
        Qt3DRender::QCamera camera;
        QObject scene;
        QSignalSpy cameras(&controller, &CameraController::cameraChanged);
        QSignalSpy modes(&controller, &CameraController::modeChanged);
        QSignalSpy planes(&controller, &CameraController::controlPlanesChanged);
        QSignalSpy views(&controller, &CameraController::viewTypeChanged);
        QSignalSpy scenes(&controller, &CameraController::sceneChanged);

        for (int round = 0; round < 2; ++round) {
            controller.setCamera(&camera);
            controller.setMode(CameraController::Zoom);
            controller.setControlPlanes(CameraController::Map);
            controller.setViewType(CameraController::View2dFront);
            controller.setScene(&scene);
        }

        for (const QSignalSpy* spy : {&cameras, &modes, &planes, &views, &scenes}) {
            QCOMPARE(spy->count(), 1);
        }
        QCOMPARE(cameras[0][0].value<Qt3DRender::QCamera*>(), &camera);
        QCOMPARE(modes[0][0].toInt(), int(CameraController::Zoom));
        QCOMPARE(planes[0][0].toInt(), int(CameraController::Map));
        QCOMPARE(views[0][0].toInt(), int(CameraController::View2dFront));
        QCOMPARE(scenes[0][0].value<QObject*>(), &scene);
        QCOMPARE(controller.camera(), &camera);
        QCOMPARE(controller.mode(), CameraController::Zoom);
        QCOMPARE(controller.controlPlanes(), CameraController::Map);
        QCOMPARE(controller.viewType(), CameraController::View2dFront);
        QCOMPARE(controller.scene(), &scene);
    }

    void aDistanceChangesBeyondTheNoiseOfDoubles_data()
    {
        QTest::addColumn<QByteArray>("property");
        QTest::newRow("least") << QByteArray("minDist");
        QTest::newRow("greatest") << QByteArray("maxDist");
    }

    void aDistanceChangesBeyondTheNoiseOfDoubles()
    {
        QFETCH(QByteArray, property);
        CameraController controller;
        QSignalSpy changes(&controller, QByteArray("2" + property + "Changed(double)").constData());
        // Not QCOMPARE: it takes doubles for equal that differ by the noise that is looked for.
        const auto is = [&](double value) { return controller.property(property.constData()).toDouble() == value; };

        controller.setProperty(property.constData(), 5.0);
        QVERIFY(is(5.0));
        controller.setProperty(property.constData(), 5.0 + 1e-13);
        QVERIFY(is(5.0));
        QCOMPARE(changes.count(), 1);
        controller.setProperty(property.constData(), 5.0 + 1e-10);
        QVERIFY(is(5.0 + 1e-10));
        QCOMPARE(changes.count(), 2);
        QVERIFY(changes[1][0].toDouble() == 5.0 + 1e-10);
    }

    void sizesEmitAtEveryCall()
    {
        CameraController controller;
        QSignalSpy widths(&controller, &CameraController::sceneWidthChanged);
        QSignalSpy heights(&controller, &CameraController::sceneHeightChanged);

        for (int round = 0; round < 2; ++round) {
            controller.setSceneWidth(600.0);
            controller.setSceneHeight(400.0);
        }

        QCOMPARE(widths.count(), 2);
        QCOMPARE(heights.count(), 2);
        QCOMPARE(widths[1][0].toDouble(), 600.0);
        QCOMPARE(heights[1][0].toDouble(), 400.0);
    }

    void aShortTapIsToldBeforeTheTranslationFinishes_data()
    {
        QTest::addColumn<int>("planes");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("all") << int(CameraController::All) << QStringList({"press 300,200", "tap", "finished"});
        QTest::newRow("map") << int(CameraController::Map)
                             << QStringList({"press 300,200", "tap", "map finished", "finished"});
    }

    void aShortTapIsToldBeforeTheTranslationFinishes()
    {
        QFETCH(int, planes);
        QFETCH(QStringList, expected);
        ManualScene scene;
        scene.controller->setControlPlanes(static_cast<CameraController::ControlPlanes>(planes));
        QStringList order;
        connect(scene.controller, &CameraController::mousePress, this,
                [&](QPointF p) { order << QStringLiteral("press %1,%2").arg(p.x()).arg(p.y()); });
        connect(scene.controller, &CameraController::shortTap, this, [&] { order << "tap"; });
        connect(scene.controller, &CameraController::mapTranslationFinished, this, [&] { order << "map finished"; });
        connect(scene.controller, &CameraController::translationFinished, this, [&] { order << "finished"; });

        scene.press(300, 200);
        scene.release(340, 200);
        scene.frame();

        QCOMPARE(order, expected);
    }

    void theModeAtTheReleaseFinishesATranslation()
    {
        ManualScene scene;
        QSignalSpy finished(scene.controller, &CameraController::translationFinished);
        const auto gesture = [&](CameraController::ControlModes atPress, CameraController::ControlModes atRelease) {
            scene.controller->setMode(atPress);
            scene.press(300, 200);
            scene.frame();
            scene.controller->setMode(atRelease);
            scene.release(300, 200);
            scene.frame();
            return finished.count();
        };

        QCOMPARE(gesture(CameraController::Zoom, CameraController::Zoom), 0);
        QCOMPARE(gesture(CameraController::Translate, CameraController::Zoom), 0);
        QCOMPARE(gesture(CameraController::Zoom, CameraController::Translate), 1);
    }

    void aReleaseFortyOnePixelsAwayIsNoTap()
    {
        ManualScene scene;
        QSignalSpy taps(scene.controller, &CameraController::shortTap);

        scene.press(300, 200);
        scene.release(341, 200);
        scene.frame();
        QCOMPARE(taps.count(), 0);

        // The press is used up: a release that comes back to its place has none of its own.
        scene.release(300, 200);
        scene.frame();
        QCOMPARE(taps.count(), 0);
    }

    void aLongPressIsNoTap()
    {
        ManualScene scene;
        QSignalSpy taps(scene.controller, &CameraController::shortTap);

        scene.press(300, 200);
        scene.frame();
        QTest::qWait(static_cast<int>(CameraGesture::kShortTapLimitMs) + 5);
        scene.release(300, 200);
        scene.frame();

        QCOMPARE(taps.count(), 0);
    }

    void thePressPositionIsSharedByAllControllers()
    {
        CameraController first;
        CameraController second;

        QVERIFY(first.shortTapInPlace(Touch(100, 100), true));

        QVERIFY(second.shortTapInPlace(Touch(130, 100), false));
        QVERIFY(!second.shortTapInPlace(Touch(190, 100), false));
    }

    void aReleaseWithoutAPressIsNoTap()
    {
        ManualScene scene;
        QSignalSpy taps(scene.controller, &CameraController::shortTap);

        scene.release(300, 200);
        scene.frame();

        QCOMPARE(taps.count(), 0);
    }

    void aControllerInTheMakingIsNotKnownToTheNavigation()
    {
        GlobalNav* nav = GlobalNav::instance();
        nav->setViewType(CameraController::View2dTop);
        ManualScene scene;
        QSignalSpy taps(nav, &GlobalNav::shortTap);

        scene.controller->classBegin();
        scene.controller->setViewType(CameraController::View2dFront);
        scene.press(300, 200);
        scene.release(300, 200);
        scene.frame();
        nav->setActiveObjectTransformControl(true);

        QCOMPARE(nav->viewType(), CameraController::View2dTop);
        QCOMPARE(taps.count(), 0);
        QVERIFY(scene.controller->isEnabled());
        nav->setActiveObjectTransformControl(false);
    }

    void aCompletedControllerIsKnownToTheNavigation()
    {
        ManualScene scene;
        GlobalNav* nav = GlobalNav::instance();
        nav->setViewType(CameraController::View3d);
        QSignalSpy taps(nav, &GlobalNav::shortTap);

        scene.controller->componentComplete();
        scene.controller->setViewType(CameraController::View2dFront);
        scene.press(300, 200);
        scene.release(300, 200);
        scene.frame();

        QCOMPARE(nav->viewType(), CameraController::View2dFront);
        QCOMPARE(taps.count(), 1);
        nav->setActiveObjectTransformControl(true);
        QVERIFY(!scene.controller->isEnabled());
        nav->setActiveObjectTransformControl(false);
        QVERIFY(scene.controller->isEnabled());
    }
};

QTEST_MAIN(tst_CameraController)
#include "tst_CameraController.moc"
