#include "interaction/CameraController.h"
#include "interaction/CameraGesture.h"
#include "interaction/Utils3d.h"
#include "scene/GlobalNav.h"

#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>
#include <Qt3DCore/QAspectEngine>
#include <Qt3DInput/QInputAspect>
#include <Qt3DInput/QInputSettings>
#include <Qt3DLogic/QLogicAspect>
#include <Qt3DRender/QCamera>
#include <QtMath>

#include <cmath>

using namespace Torvik::View3d;

namespace {

constexpr double kWidth = 600.0;
constexpr double kHeight = 400.0;

/** A controller in a scene without window: events go in by hand, frames are stepped one by one. */
class ManualScene {
public:
    ManualScene()
        : root(new Qt3DCore::QEntity)
        , camera(new Qt3DRender::QCamera(root))
        , controller(new CameraController(root))
    {
        engine.setRunMode(Qt3DCore::QAspectEngine::Manual);
        engine.registerAspect(new Qt3DLogic::QLogicAspect);
        engine.registerAspect(new Qt3DInput::QInputAspect);
        auto* settings = new Qt3DInput::QInputSettings;
        settings->setEventSource(&eventSource);
        root->addComponent(settings);
        camera->lens()->setPerspectiveProjection(3.0F, static_cast<float>(kWidth / kHeight), 1.0F, 10000.0F);
        look({0, 200, -200}, {0, 0, 0}, {0, 1, 0});
        controller->setCamera(camera);
        controller->setSceneWidth(kWidth);
        controller->setSceneHeight(kHeight);
        controller->setMinDist(5.0);
        controller->setMaxDist(500000.0);
        controller->setViewType(CameraController::View3d);
        engine.setRootEntity(Qt3DCore::QEntityPtr(root));
        frame();
    }

    void look(QVector3D position, QVector3D center, QVector3D up)
    {
        camera->setPosition(position);
        camera->setViewCenter(center);
        camera->setUpVector(up);
    }
    /** Twice: the tick may come before the events of the same frame. */
    void frame()
    {
        engine.processFrame();
        engine.processFrame();
    }
    void send(QEvent::Type type, int x, int y)
    {
        const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, QPointF(x, y), button, held, Qt::NoModifier);
        QCoreApplication::sendEvent(&eventSource, &event);
    }
    void press(int x, int y) { send(QEvent::MouseButtonPress, x, y); }
    void move(int x, int y) { send(QEvent::MouseMove, x, y); }
    void release(int x, int y) { send(QEvent::MouseButtonRelease, x, y); }

    double tiltDeg() const
    {
        const QVector3D v = camera->viewVector();
        return qRadiansToDegrees(-std::atan2(static_cast<double>(v.y()),
                                             std::hypot(static_cast<double>(v.x()), static_cast<double>(v.z()))));
    }

    QObject eventSource;
    Qt3DCore::QAspectEngine engine;
    Qt3DCore::QEntity* root;
    Qt3DRender::QCamera* camera;
    CameraController* controller;
};

bool near(QVector3D a, QVector3D b, float tolerance)
{
    return (a - b).length() <= tolerance;
}

} // namespace

class tst_CameraController : public QObject {
    Q_OBJECT

private slots:
    void startsInTopViewTranslating()
    {
        CameraController controller;

        QCOMPARE(controller.mode(), CameraController::Translate);
        QCOMPARE(controller.controlPlanes(), CameraController::All);
        QCOMPARE(controller.viewType(), CameraController::View2dTop);
        QVERIFY(!controller.camera());
        QVERIFY(!controller.scene());
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
        QSignalSpy maxima(&controller, &CameraController::maxDistChanged);
        QSignalSpy minima(&controller, &CameraController::minDistChanged);

        for (int round = 0; round < 2; ++round) {
            controller.setCamera(&camera);
            controller.setMode(CameraController::Zoom);
            controller.setControlPlanes(CameraController::Map);
            controller.setViewType(CameraController::View2dFront);
            controller.setScene(&scene);
            controller.setMaxDist(500000.0);
            controller.setMinDist(5.0 + round * 1e-13);
        }

        for (const QSignalSpy* spy : {&cameras, &modes, &planes, &views, &scenes, &maxima, &minima}) {
            QCOMPARE(spy->count(), 1);
        }
        QCOMPARE(controller.minDist(), 5.0);
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
    }

    void theCameraMovesOnTheFrameAndNotInTheEvent()
    {
        ManualScene scene;
        scene.controller->setMode(CameraController::Zoom);
        scene.press(300, 200);
        scene.frame();
        const QVector3D before = scene.camera->position();

        scene.move(300, 210);
        QCOMPARE(scene.camera->position(), before);
        scene.frame();

        // 10 pixels of 2 % of the distance.
        QVERIFY(near(scene.camera->position(), before * 0.8F, 0.01F));
    }

    void aTranslationKeepsTheGrabbedPointUnderTheFinger()
    {
        ManualScene scene;
        const QVector3D grabbed = Utils3d::pointScreenToWorldGround(200, 150, scene.camera, kWidth, kHeight);

        scene.press(200, 150);
        scene.frame();
        scene.move(350, 260);
        scene.frame();

        const QVector3D under = Utils3d::pointScreenToWorldGround(350, 260, scene.camera, kWidth, kHeight);
        // A pixel is 4 cm on the ground here; floats of some hundred metres keep 0.03 mm.
        QVERIFY(near(under, grabbed, 0.005F));
        QCOMPARE(scene.camera->position().y(), 200.0F);
        QCOMPARE(scene.camera->viewCenter().y(), 0.0F);
    }

    void inTheFrontViewATranslationAlsoMovesVertically()
    {
        ManualScene scene;
        scene.look({0, 0, -300}, {0, 0, 0}, {0, 1, 0});
        scene.controller->setViewType(CameraController::View2dFront);

        scene.press(300, 200);
        scene.frame();
        scene.move(300, 260);
        scene.frame();

        // 60 of 400 pixels of a picture that is 2 * 300 m * tan(1.5 degrees) high.
        const double expected = 2.0 * 300.0 * std::tan(qDegreesToRadians(1.5)) * 60.0 / 400.0;
        QVERIFY(std::abs(static_cast<double>(scene.camera->position().y()) - expected) < 0.01);
        QVERIFY(std::abs(static_cast<double>(scene.camera->viewCenter().y()) - expected) < 0.01);
    }

    void overTheMapTheCameraStaysAndEachFrameTellsItsOwnMovement()
    {
        ManualScene scene;
        scene.controller->setControlPlanes(CameraController::Map);
        QSignalSpy moved(scene.controller, &CameraController::mapTranslation);
        QSignalSpy finished(scene.controller, &CameraController::mapTranslationFinished);
        const QVector3D before = scene.camera->position();
        const auto ground = [&](float x) {
            return Utils3d::pointScreenToWorldGround(x, 200, scene.camera, kWidth, kHeight);
        };

        scene.press(300, 200);
        scene.frame();
        moved.clear();
        scene.move(320, 200);
        scene.frame();
        scene.move(330, 200);
        scene.frame();
        scene.release(330, 200);
        scene.frame();

        QCOMPARE(scene.camera->position(), before);
        QVector<QVector3D> ways;
        for (const QList<QVariant>& arguments : qAsConst(moved)) {
            if (!arguments[0].value<QVector3D>().isNull()) {
                ways << arguments[0].value<QVector3D>();
            }
        }
        QCOMPARE(ways.size(), 2);
        QVERIFY(near(ways[0], ground(300) - ground(320), 0.001F));
        QVERIFY(near(ways[1], ground(320) - ground(330), 0.001F));
        QCOMPARE(finished.count(), 1);
    }

    void aMapChosenDuringTheGestureDoesNotFinish()
    {
        ManualScene scene;
        QSignalSpy finished(scene.controller, &CameraController::mapTranslationFinished);

        scene.press(300, 200);
        scene.frame();
        scene.controller->setControlPlanes(CameraController::Map);
        scene.release(300, 200);
        scene.frame();

        QCOMPARE(finished.count(), 0);
    }

    void rotatingInThreeDTurnsAndTilts()
    {
        ManualScene scene;
        scene.controller->setMode(CameraController::Rotate);
        scene.press(300, 200);
        scene.frame();

        scene.move(350, 225);
        scene.frame();

        QVERIFY(std::abs(scene.tiltDeg() - 50.0) < 0.01);
        const QVector3D flat = scene.camera->viewVector() * QVector3D(1, 0, 1);
        const double turned =
            qRadiansToDegrees(std::atan2(static_cast<double>(flat.x()), static_cast<double>(flat.z())));
        QVERIFY2(std::abs(std::abs(turned) - 10.0) < 0.01, qPrintable(QString::number(turned)));
    }

    void rotatingInOtherViewsOnlyTurnsAboutTheVertical_data()
    {
        QTest::addColumn<int>("view");
        QTest::newRow("top") << int(CameraController::View2dTop);
        QTest::newRow("undefined") << int(CameraController::ViewUndefined);
    }

    void rotatingInOtherViewsOnlyTurnsAboutTheVertical()
    {
        QFETCH(int, view);
        ManualScene scene;
        scene.controller->setViewType(static_cast<CameraController::ViewTypes>(view));
        scene.controller->setMode(CameraController::Rotate);
        scene.press(300, 200);
        scene.frame();

        scene.move(350, 260);
        scene.frame();

        QVERIFY(std::abs(scene.tiltDeg() - 45.0) < 0.01);
        QVERIFY(std::abs(scene.camera->position().y() - 200.0F) < 0.01F);
        QVERIFY(std::abs(scene.camera->position().x()) > 30.0F);
    }

    void tiltingInTopViewDoesNothing()
    {
        ManualScene scene;
        scene.controller->setViewType(CameraController::View2dTop);
        scene.controller->setMode(CameraController::Tilt);
        const QVector3D before = scene.camera->position();
        scene.press(300, 200);
        scene.frame();

        scene.move(350, 300);
        scene.frame();

        QCOMPARE(scene.camera->position(), before);
    }

    void aTiltBeyondTheLimitEndsOnIt()
    {
        ManualScene scene;
        scene.controller->setMode(CameraController::Tilt);
        scene.press(300, 20);
        scene.frame();

        scene.move(300, 390);
        scene.frame();

        QVERIFY(std::abs(scene.tiltDeg() - 89.5) < 0.05);
    }

    void withoutAModeTheCameraStays()
    {
        ManualScene scene;
        scene.controller->setMode(CameraController::None);
        const QVector3D before = scene.camera->position();
        scene.press(300, 200);
        scene.frame();

        scene.move(350, 300);
        scene.frame();

        QCOMPARE(scene.camera->position(), before);
    }

    void aShortTapIsToldBeforeTheTranslationFinishes()
    {
        ManualScene scene;
        QStringList order;
        connect(scene.controller, &CameraController::mousePress, this,
                [&](QPointF p) { order << QStringLiteral("press %1,%2").arg(p.x()).arg(p.y()); });
        connect(scene.controller, &CameraController::shortTap, this, [&] { order << "tap"; });
        connect(scene.controller, &CameraController::translationFinished, this, [&] { order << "finished"; });

        scene.press(300, 200);
        scene.release(340, 200);
        scene.frame();

        QCOMPARE(order, QStringList({"press 300,200", "tap", "finished"}));
    }

    void aReleaseFortyOnePixelsAwayIsNoTap()
    {
        ManualScene scene;
        QSignalSpy taps(scene.controller, &CameraController::shortTap);

        scene.press(300, 200);
        scene.release(341, 200);
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
        QMouseEvent press(QEvent::MouseButtonPress, {100, 100}, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QMouseEvent release(QEvent::MouseButtonRelease, {130, 100}, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        QMouseEvent farRelease(QEvent::MouseButtonRelease, {190, 100}, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        Qt3DInput::QMouseEvent press3d(press);
        Qt3DInput::QMouseEvent release3d(release);
        Qt3DInput::QMouseEvent farRelease3d(farRelease);

        QVERIFY(first.shortTapInPlace(&press3d, true));

        QVERIFY(second.shortTapInPlace(&release3d, false));
        QVERIFY(!second.shortTapInPlace(&farRelease3d, false));
    }

    void aReleaseWithoutAPressIsNoTap()
    {
        ManualScene scene;
        QSignalSpy taps(scene.controller, &CameraController::shortTap);

        scene.release(300, 200);
        scene.frame();

        QCOMPARE(taps.count(), 0);
    }

    void aDisabledControllerRestsAndTakesTheGestureUpAgain()
    {
        ManualScene scene;
        scene.controller->setMode(CameraController::Zoom);
        scene.press(300, 200);
        scene.frame();
        const QVector3D before = scene.camera->position();

        scene.controller->setEnabled(false);
        scene.frame();
        scene.move(300, 210);
        scene.frame();
        QCOMPARE(scene.camera->position(), before);

        scene.controller->setEnabled(true);
        scene.frame();
        scene.move(300, 210);
        scene.frame();
        scene.frame();
        QVERIFY(near(scene.camera->position(), before * 0.8F, 0.01F));
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
