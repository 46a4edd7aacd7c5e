#include "interaction/CameraGesture.h"

#include <QTest>

using namespace Torvik::View3d;
using namespace Torvik::View3d::CameraGesture;

Q_DECLARE_METATYPE(Torvik::View3d::CameraController::ViewTypes)

class tst_CameraGesture : public QObject {
    Q_OBJECT

private slots:
    void aPressIsShortBelowFiveHundredMilliseconds()
    {
        QVERIFY(isShort(499));
        QVERIFY(!isShort(500));
    }

    void fortyPixelsAwayIsStillInPlace()
    {
        QVERIFY(isInPlace({100.0, 100.0}, {140.0, 100.0}));
        QVERIFY(isInPlace({100.0, 100.0}, {124.0, 132.0}));
        QVERIFY(!isInPlace({100.0, 100.0}, {100.0, 59.0}));
        QVERIFY(!isInPlace({100.0, 100.0}, {129.0, 129.0}));
    }

    void movesFollowModeAndView_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<int>("planes");
        QTest::addColumn<int>("view");
        QTest::addColumn<QString>("moves");
        const auto row = [](const char* name, int mode, int planes, int view, const char* moves) {
            QTest::newRow(name) << mode << planes << view << QString::fromLatin1(moves);
        };
        using C = CameraController;
        row("nothing", C::None, C::All, C::View3d, "");
        row("translate in 3D", C::Translate, C::All, C::View3d, "ground");
        row("translate in top view", C::Translate, C::All, C::View2dTop, "ground");
        row("translate while riding along", C::Translate, C::All, C::ViewUndefined, "ground");
        row("translate in front view", C::Translate, C::All, C::View2dFront, "view");
        row("translate the map", C::Translate, C::Map, C::View2dTop, "map");
        row("translate the map in front view", C::Translate, C::Map, C::View2dFront, "map");
        row("rotate in 3D", C::Rotate, C::All, C::View3d, "tilt rotate");
        row("rotate in top view", C::Rotate, C::All, C::View2dTop, "rotate");
        row("rotate in front view", C::Rotate, C::Map, C::View2dFront, "rotate");
        row("rotate while riding along", C::Rotate, C::All, C::ViewUndefined, "rotate");
        row("tilt in 3D", C::Tilt, C::All, C::View3d, "tilt");
        row("tilt in top view", C::Tilt, C::All, C::View2dTop, "");
        row("tilt while riding along", C::Tilt, C::All, C::ViewUndefined, "");
        row("zoom in front view", C::Zoom, C::All, C::View2dFront, "zoom");
        row("zoom over the map", C::Zoom, C::Map, C::View3d, "zoom");
    }

    void movesFollowModeAndView()
    {
        QFETCH(int, mode);
        QFETCH(int, planes);
        QFETCH(int, view);
        QFETCH(QString, moves);

        const Moves found = movesOf(static_cast<CameraController::ControlModes>(mode),
                                    static_cast<CameraController::ControlPlanes>(planes),
                                    static_cast<CameraController::ViewTypes>(view));

        QStringList names;
        if (found.translateOnGround)
            names << "ground";
        if (found.translateInView)
            names << "view";
        if (found.translateMap)
            names << "map";
        if (found.tilt)
            names << "tilt";
        if (found.rotate)
            names << "rotate";
        if (found.zoom)
            names << "zoom";
        QCOMPARE(names.join(' '), moves);
    }

    void aPixelToTheRightTurnsByAFifthOfADegreeAgainstTheFinger()
    {
        QCOMPARE(rotationDeg(110.0, 100.0), -2.0F);
        QCOMPARE(rotationDeg(95.0, 100.0), 1.0F);
    }

    void outsideTheFrontViewThePointLiesOnTheGround()
    {
        QVector3D point;
        findPoint(CameraController::View3d, {0, 10, 0}, {0, -1, 1}, {0, -1, 1}, {5, 5, 5}, point);

        QCOMPARE(point, QVector3D(0, 0, 10));
    }

    void aRayAlongTheGroundMeetsThePlaneThroughTheGrabbedPoint()
    {
        QVector3D point;
        findPoint(CameraController::View3d, {0, 10, 0}, {0, 0, 1}, {0, 0, 2}, {3, 4, 20}, point);

        QCOMPARE(point, QVector3D(0, 10, 20));
    }

    void inTheFrontViewThePointLiesOnThePlaneThroughTheGrabbedPoint()
    {
        QVector3D point;
        findPoint(CameraController::View2dFront, {0, 2, -10}, {1, -1, 5}, {0, 0, 1}, {0, 0, 5}, point);

        QCOMPARE(point, QVector3D(3, -1, 5));
    }

    void aRayThatMeetsNothingLeavesTheTarget()
    {
        QVector3D point(7, 8, 9);
        findPoint(CameraController::View2dFront, {0, 2, 0}, {1, 0, 0}, {0, 0, 1}, {0, 0, 5}, point);

        QCOMPARE(point, QVector3D(7, 8, 9));
    }
};

QTEST_GUILESS_MAIN(tst_CameraGesture)
#include "tst_CameraGesture.moc"
