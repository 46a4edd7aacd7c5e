#include "interaction/ManualScene.h"
#include "interaction/Utils3d.h"
#include "scene/GlobalNav.h"

#include <QSignalSpy>
#include <QTest>
#include <Qt3DInput/QLogicalDevice>
#include <Qt3DInput/QMouseHandler>

using namespace Torvik::View3d;

namespace {

/** Of the picture of a camera that sees 3 degrees. */
const double kPictureHeightPerMetre = 2.0 * std::tan(qDegreesToRadians(1.5));

/** Taps the ground some 100 m beyond the origin and gives its z. */
float grabAhead(ManualScene& scene)
{
    scene.look({0, 200, -100}, {0, 0, 100}, {0, 1, 0});
    scene.press(300, 200);
    scene.release(300, 200);
    scene.frame();
    return Utils3d::pointScreenToWorldGround(300, 200, scene.camera, kWidth, kHeight).z();
}

} // namespace

/** What a drag does to the camera or the map; for taps and properties see tst_CameraController. */
class tst_CameraDrag : public QObject {
    Q_OBJECT

private slots:
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

    void aMovementAfterTheReleaseMovesNothing()
    {
        ManualScene scene;
        scene.press(300, 200);
        scene.frame();
        scene.release(300, 200);
        scene.frame();
        const QVector3D before = scene.camera->position();

        scene.move(400, 300);
        scene.frame();

        QCOMPARE(scene.camera->position(), before);
    }

    void aModeCountsFromTheNextFrameOn()
    {
        ManualScene scene;
        scene.controller->setMode(CameraController::None);
        scene.press(300, 200);
        scene.frame();
        const QVector3D before = scene.camera->position();

        scene.controller->setMode(CameraController::Zoom);
        scene.move(300, 210);
        scene.frame();
        const QVector3D zoomed = scene.camera->position();
        QVERIFY(near(zoomed, before * 0.8F, 0.01F));

        scene.controller->setMode(CameraController::None);
        scene.move(300, 220);
        scene.frame();
        QCOMPARE(scene.camera->position(), zoomed);
    }

    void aZoomBeyondALimitIsDropped()
    {
        ManualScene scene;
        scene.controller->setMode(CameraController::Zoom);
        scene.controller->setMinDist(250.0);
        scene.controller->setMaxDist(300.0);
        const QVector3D before = scene.camera->position();
        scene.press(300, 200);
        scene.frame();

        // From 282.8 m to 226 and, the other way, to 339 m.
        scene.move(300, 210);
        scene.frame();
        QCOMPARE(scene.camera->position(), before);
        scene.move(300, 200);
        scene.frame();
        QCOMPARE(scene.camera->position(), before);
        scene.move(300, 197);
        scene.frame();
        QVERIFY(near(scene.camera->position(), before * 1.06F, 0.01F));
    }

    void aTranslationKeepsTheGrabbedPointUnderTheFinger_data()
    {
        QTest::addColumn<int>("view");
        QTest::newRow("3d") << int(CameraController::View3d);
        QTest::newRow("top") << int(CameraController::View2dTop);
        QTest::newRow("undefined") << int(CameraController::ViewUndefined);
    }

    void aTranslationKeepsTheGrabbedPointUnderTheFinger()
    {
        QFETCH(int, view);
        ManualScene scene;
        scene.controller->setViewType(static_cast<CameraController::ViewTypes>(view));
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

        const double expected = 300.0 * kPictureHeightPerMetre * 60.0 / kHeight;
        QVERIFY(std::abs(static_cast<double>(scene.camera->position().y()) - expected) < 0.01);
        QVERIFY(std::abs(static_cast<double>(scene.camera->viewCenter().y()) - expected) < 0.01);
    }

    void theFrontViewMovesAtTheDepthOfTheLastGrabbedPoint()
    {
        ManualScene scene;
        const float depth = grabAhead(scene);
        scene.look({0, 0, -300}, {0, 0, 0}, {0, 1, 0});
        scene.controller->setViewType(CameraController::View2dFront);

        scene.press(300, 200);
        scene.frame();
        scene.move(300, 260);
        scene.frame();

        const double expected = (300.0 + static_cast<double>(depth)) * kPictureHeightPerMetre * 60.0 / kHeight;
        QVERIFY(std::abs(static_cast<double>(scene.camera->position().y()) - expected) < 0.01);
    }

    void alongTheHorizonTheDepthOfTheLastGrabbedPointCounts()
    {
        ManualScene scene;
        const float depth = grabAhead(scene);
        scene.look({0, 10, -300}, {0, 10, 0}, {0, 1, 0});
        // Of an odd number of rows the middle one looks along the ground.
        scene.controller->setSceneHeight(401.0);

        scene.press(300, 200);
        scene.frame();
        scene.move(360, 200);
        scene.frame();

        const double width = (300.0 + static_cast<double>(depth)) * kPictureHeightPerMetre * kWidth / kHeight;
        QVERIFY(near(scene.camera->position(), QVector3D(static_cast<float>(width * 60.0 / kWidth), 10, -300), 0.01F));
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
        scene.frame();
        QVERIFY(!moved.isEmpty());
        for (const QList<QVariant>& arguments : qAsConst(moved)) {
            QVERIFY(near(arguments[0].value<QVector3D>(), {}, 1e-6F));
        }
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

    void theMapFinishesWhenItIsChosenAtThePressAndAtTheRelease()
    {
        ManualScene scene;
        QSignalSpy finished(scene.controller, &CameraController::mapTranslationFinished);
        const auto gesture = [&](CameraController::ControlPlanes atPress, CameraController::ControlPlanes atRelease) {
            finished.clear();
            scene.controller->setControlPlanes(atPress);
            scene.press(300, 200);
            scene.frame();
            scene.controller->setControlPlanes(atRelease);
            scene.release(300, 200);
            scene.frame();
            return finished.count();
        };

        QCOMPARE(gesture(CameraController::All, CameraController::Map), 0);
        QCOMPARE(gesture(CameraController::Map, CameraController::Map), 1);
        QCOMPARE(gesture(CameraController::Map, CameraController::All), 0);
        // The unfinished one is made up for by the next release over the map, and only once.
        QCOMPARE(gesture(CameraController::All, CameraController::Map), 1);
        QCOMPARE(gesture(CameraController::All, CameraController::Map), 0);
    }

    void aPressIsToldWhenItsPointIsKnown()
    {
        ManualScene scene;
        scene.controller->setControlPlanes(CameraController::Map);
        const QVector3D grabbed = Utils3d::pointScreenToWorldGround(200, 150, scene.camera, kWidth, kHeight);
        QSignalSpy moved(scene.controller, &CameraController::mapTranslation);
        QVector<QVector3D> ways;
        connect(scene.controller, &CameraController::mousePress, this, [&](QPointF finger) {
            scene.controller->apply3dMovement(grabbed, finger.x(), finger.y());
            ways << moved.last()[0].value<QVector3D>();
        });

        scene.press(200, 150);
        scene.frame();

        QCOMPARE(ways.size(), 1);
        QVERIFY(near(ways.first(), {}, 1e-3F));
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
        QVERIFY2(std::abs(turned + 10.0) < 0.01, qPrintable(QString::number(turned)));
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

    void aTiltBeyondALimitEndsOnIt_data()
    {
        QTest::addColumn<int>("pressY");
        QTest::addColumn<int>("moveY");
        QTest::addColumn<double>("limitDeg");
        QTest::newRow("steep") << 20 << 390 << 89.5;
        QTest::newRow("flat") << 390 << 20 << 10.1;
    }

    void aTiltBeyondALimitEndsOnIt()
    {
        QFETCH(int, pressY);
        QFETCH(int, moveY);
        QFETCH(double, limitDeg);
        ManualScene scene;
        scene.controller->setMode(CameraController::Tilt);
        scene.press(300, pressY);
        scene.frame();

        scene.move(300, moveY);
        scene.frame();

        QVERIFY(std::abs(scene.tiltDeg() - limitDeg) < 0.05);
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

    void aGestureThatAnObjectTakesDoesNotComeBack()
    {
        ManualScene scene;
        scene.controller->setMode(CameraController::Zoom);
        scene.controller->componentComplete();
        scene.press(300, 200);
        scene.frame();
        const QVector3D before = scene.camera->position();

        GlobalNav::instance()->setActiveObjectTransformControl(true);
        scene.frame();
        GlobalNav::instance()->setActiveObjectTransformControl(false);
        scene.frame();
        scene.move(300, 210);
        scene.frame();
        QCOMPARE(scene.camera->position(), before);

        scene.press(300, 200);
        scene.frame();
        scene.move(300, 210);
        scene.frame();
        QVERIFY(near(scene.camera->position(), before * 0.8F, 0.01F));
    }

    void aDisabledControllersInputRests()
    {
        ManualScene scene;
        auto* const handler = scene.controller->findChild<Qt3DInput::QMouseHandler*>();
        auto* const logical = scene.controller->findChild<Qt3DInput::QLogicalDevice*>();

        scene.controller->setEnabled(false);
        QVERIFY(!handler->isEnabled());
        QVERIFY(!logical->isEnabled());
        scene.controller->setEnabled(true);
        QVERIFY(handler->isEnabled());
        QVERIFY(logical->isEnabled());
    }

    void aDisabledControllerMovesNothingWhateverItHasHeard()
    {
        ManualScene scene;
        scene.controller->setMode(CameraController::Zoom);
        const QVector3D before = scene.camera->position();
        scene.controller->setEnabled(false);

        scene.controller->_onPressed(Touch(300, 200));
        scene.controller->_onPositionChanged(Touch(300, 210));
        scene.controller->frameTriggered(0.0F);
        QCOMPARE(scene.camera->position(), before);

        scene.controller->setEnabled(true);
        scene.controller->frameTriggered(0.0F);
        QVERIFY(near(scene.camera->position(), before * 0.8F, 0.01F));
    }
};

QTEST_MAIN(tst_CameraDrag)
#include "tst_CameraDrag.moc"
