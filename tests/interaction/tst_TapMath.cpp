#include "interaction/TapMath.h"

#include <QtTest>

#include <limits>

using namespace Torvik::View3d;

/** What lies near a finger. */
class tst_TapMath : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // From 100 m above, 90 degrees high: two pixels a metre on the ground.
        QMatrix4x4 projection;
        projection.perspective(90.0F, 2.0F, 1.0F, 1000.0F);
        QMatrix4x4 camera;
        camera.lookAt({0, 100, 0}, {0, 0, 0}, {0, 0, 1});
        m_view = {projection * camera, QSizeF(800, 400)};
    }

    void pixelsAreCountedFromTheTubesEdge()
    {
        const TapMath::Tube tube {{{-50, 0, 0}, {50, 0, 0}}, 5.0F};
        QVERIFY(near(TapMath::distanceTo(tube, {400, 170}, m_view), 20.0));
        QCOMPARE(TapMath::distanceTo(tube, {420, 195}, m_view), 0.0);
        // Beyond its end.
        QVERIFY(near(TapMath::distanceTo(tube, {530, 200}, m_view), 20.0));
    }

    void everyPieceOfTheCourseCounts()
    {
        const TapMath::Tube tube {{{0, 0, 0}, {0, 0, 50}, {-50, 0, 50}}, 0.0F};
        QVERIFY(near(TapMath::distanceTo(tube, {450, 110}, m_view), 10.0));
    }

    void aPointIsACourse() { QVERIFY(near(TapMath::distanceTo({{{0, 0, 0}}, 2.0F}, {410, 200}, m_view), 6.0)); }

    void whatLiesBehindTheViewerIsNotNear()
    {
        const double infinity = std::numeric_limits<double>::infinity();
        QCOMPARE(TapMath::distanceTo({{{0, 150, 0}}, 2.0F}, {400, 200}, m_view), infinity);
        QCOMPARE(TapMath::distanceTo({}, {400, 200}, m_view), infinity);
    }

private:
    static bool near(double a, double b) { return std::abs(a - b) < 0.05; }

    TapMath::View m_view;
};

QTEST_APPLESS_MAIN(tst_TapMath)
#include "tst_TapMath.moc"
