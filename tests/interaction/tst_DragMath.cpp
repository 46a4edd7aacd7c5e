#include "interaction/DragMath.h"

#include <QtTest>

using namespace Torvik::View3d;

/** What a finger's way does to an object. */
class tst_DragMath : public QObject {
    Q_OBJECT

private slots:
    void theGroundIsThePlaneWhileTheHeightIsLocked()
    {
        QCOMPARE(DragMath::planeNormal({1, 0, 1}, {1, -2, 3}), QVector3D(0, 1, 0));
    }

    void thePlaneFacesTheViewerWhileTheHeightIsFree()
    {
        QCOMPARE(DragMath::planeNormal({0, 1, 0}, {1, -2, 3}), QVector3D(1, -2, 3));
    }

    void lockedAxesTakeNoPartInADrag()
    {
        QCOMPARE(DragMath::constrained({3, 4, 5}, {1, 0, 1}, {}), QVector3D(3, 0, 5));
        QCOMPARE(DragMath::constrained({3, 4, 5}, {0, 1, 0}, {}), QVector3D(0, 4, 0));
    }

    void aControlAxisTakesItsShareWhateverIsLocked()
    {
        QCOMPARE(DragMath::constrained({3, 4, 5}, {1, 0, 1}, {0, 1, 0}), QVector3D(0, 4, 0));
        const float share = std::sqrt(0.5F);
        const QVector3D way = DragMath::constrained({2, 9, 0}, {0, 0, 0}, {share, 0, share});
        QVERIFY((way - QVector3D(1, 0, 1)).length() < 1e-5F);
    }

    void aQuarterOfATurnIsNinetyDegrees()
    {
        // From +z to +x is the sense in which rotationY grows.
        QCOMPARE(DragMath::turn({5, 1, 5}, {5, 1, 9}, {7, 1, 5}), 90.0F);
        QCOMPARE(DragMath::turn({5, 1, 5}, {7, 1, 5}, {5, 1, 9}), -90.0F);
    }

    void theDistanceFromTheCentreDoesNotTurn() { QCOMPARE(DragMath::turn({}, {1, 0, 1}, {8, 0, 8}), 0.0F); }

    void theRingKeepsItsSizeOnTheScreen()
    {
        QCOMPARE(DragMath::ringRadius(80.0F), 10.0F);
        QCOMPARE(DragMath::ringRadius(20.0F), 2.5F);
        QCOMPARE(DragMath::ringRadius(3.0F), 2.5F);
    }

    void handlesGrowWithTheDistance()
    {
        QCOMPARE(DragMath::handleScale(70.0F), 2.0F);
        QCOMPARE(DragMath::handleScale(10.0F), 1.0F);
    }
};

QTEST_APPLESS_MAIN(tst_DragMath)
#include "tst_DragMath.moc"
