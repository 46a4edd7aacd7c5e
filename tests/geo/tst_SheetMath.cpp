#include "geo/SheetMath.h"

#include <QtTest>

#include <cmath>

using namespace Torvik::View3d;
using SheetMath::Ground;
using SheetMath::Lens;
using SheetMath::Place;
using SheetMath::Sheet;

namespace {

const Sheet sheet {{600, 400}, 17, 0};

Lens straightDown(double distance)
{
    return {{0, float(distance), 0}, {0, 0, 0}, {0, 0, 1}, 3, {800, 600}};
}

double metresPerPixel(double distance, double fieldOfView, double height)
{
    return 2 * distance * std::tan(qDegreesToRadians(fieldOfView) / 2) / height;
}

} // namespace

/** The projective transform that lays a flat map on the ground. */
class tst_SheetMath : public QObject {
    Q_OBJECT

private slots:
    void theWorldIsASquare()
    {
        QCOMPARE(SheetMath::worldFromPlace({0, 0}), QPointF(0.5, 0.5));
        QCOMPARE(SheetMath::worldFromPlace({-180, 0}).x(), 0.0);
        // Latitude at which street maps end.
        QVERIFY(std::abs(SheetMath::worldFromPlace({90, 85.0511287798}).y()) < 1e-9);
        QCOMPARE(SheetMath::worldFromPlace({90, 0}).x(), 0.75);
    }

    void fromStraightAboveTheSheetIsScaledAndCentred()
    {
        const Ground ground = SheetMath::sphericalGround({0, 0}, 47.68);
        const double scale = SheetMath::equator * std::cos(qDegreesToRadians(47.68)) / 256 / std::exp2(17) /
                             metresPerPixel(1000, 3, 600);

        const auto t = SheetMath::screenFromSheet(sheet, ground, straightDown(1000));

        QVERIFY(t);
        QVERIFY((t->map(QPointF(300, 200)) - QPointF(400, 300)).manhattanLength() < 1e-9);
        QVERIFY((t->map(QPointF(400, 200)) - QPointF(400 + 100 * scale, 300)).manhattanLength() < 1e-6);
        QVERIFY((t->map(QPointF(300, 100)) - QPointF(400, 300 - 100 * scale)).manhattanLength() < 1e-6);
    }

    void theSheetsBearingDoesNotMoveThePlacesOnIt()
    {
        // With the camera turned as the map is, the map lies upright on the screen.
        Lens lens = straightDown(1000);
        lens.up = QVector3D(float(-std::sin(qDegreesToRadians(30.0))), 0, float(std::cos(qDegreesToRadians(30.0))));
        Sheet turned = sheet;
        turned.bearingDeg = 30;
        const Ground ground = SheetMath::sphericalGround({0, 0}, 47.68);

        const auto t = SheetMath::screenFromSheet(turned, ground, lens);

        QVERIFY(t);
        const QPointF right = t->map(QPointF(400, 200)) - t->map(QPointF(300, 200));
        QVERIFY(right.x() > 50);
        // The up vector is a float.
        QVERIFY(std::abs(right.y()) < 1e-4);
    }

    void aTiltedCameraSeesTheFarEdgeNarrower()
    {
        Lens lens = straightDown(0);
        lens.position = QVector3D(0, 1000, -1000);
        lens.up = QVector3D(0, 1, 0);
        const Ground ground = SheetMath::sphericalGround({0, 0}, 47.68);

        const auto t = SheetMath::screenFromSheet(sheet, ground, lens);

        QVERIFY(t);
        const double farEdge = t->map(QPointF(600, 0)).x() - t->map(QPointF(0, 0)).x();
        const double nearEdge = t->map(QPointF(600, 400)).x() - t->map(QPointF(0, 400)).x();
        QVERIFY(farEdge < nearEdge);
        QVERIFY(t->map(QPointF(300, 0)).y() < 300);
        // Every pixel against the ray of the camera through the same ground.
        const double k = 300 / std::tan(qDegreesToRadians(1.5));
        const double perPixel = SheetMath::equator * std::cos(qDegreesToRadians(47.68)) / 256 / std::exp2(17);
        for (const QPointF& p : {QPointF(0, 0), QPointF(600, 400), QPointF(123, 321)}) {
            const double east = (p.x() - 300) * perPixel;
            const double north = (200 - p.y()) * perPixel;
            const double depth = (1000 + 1000 + north) / std::sqrt(2.0);
            const double up = (north + 1000 - 1000) / std::sqrt(2.0);
            const QPointF expected(400 + k * east / depth, 300 - k * up / depth);
            QVERIFY((t->map(p) - expected).manhattanLength() < 1e-6);
        }
    }

    void aGridWhoseNorthIsAnotherTurnsTheSheet()
    {
        // A system whose north lies 2 degrees east of true north: going +z for a metre goes a little eastward.
        const double c = std::cos(qDegreesToRadians(2.0));
        const double s = std::sin(qDegreesToRadians(2.0));
        const double metre = 360 / SheetMath::equator;
        const auto at = [&](double x, double z) {
            const double east = -x * c + z * s;
            const double north = x * s + z * c;
            return Place {10 + east * metre, north * metre};
        };

        const auto ground = SheetMath::measuredGround({5, 6}, at(100, 0), at(-100, 0), at(0, 100), at(0, -100), 100);

        QVERIFY(ground);
        QCOMPARE(ground->middle, QPointF(5, 6));
        const QPointF east = ground->east / SheetMath::equator;
        const QPointF south = ground->south / SheetMath::equator;
        QVERIFY((east - QPointF(-c, s)).manhattanLength() < 1e-6);
        QVERIFY((south - QPointF(-s, -c)).manhattanLength() < 1e-6);
    }

    void placesWithoutAnAreaGiveNoGround()
    {
        QVERIFY(!SheetMath::measuredGround({0, 0}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, 100));
        QVERIFY(!SheetMath::measuredGround({0, 0}, {1, 1}, {0, 0}, {1, 1}, {0, 0}, 100));
    }

    void aLatitudeStretchesTheGround()
    {
        const Ground here = SheetMath::sphericalGround({1, 2}, 10);

        const Ground there = SheetMath::atLatitude(here, 10, 60);

        QVERIFY((there.east - SheetMath::sphericalGround({1, 2}, 60).east).manhattanLength() < 1e-6);
        QCOMPARE(there.middle, here.middle);
    }

    void theSheetCoversTheScreen_data()
    {
        QTest::addColumn<double>("tilt");
        QTest::addColumn<double>("zoom");
        for (const double tilt : {0.0, 30.0, 60.0, 80.0}) {
            for (const double zoom : {15.0, 17.0, 19.0})
                QTest::addRow("tilt %g, level %g", tilt, zoom) << tilt << zoom;
        }
    }
    void theSheetCoversTheScreen()
    {
        QFETCH(double, tilt);
        QFETCH(double, zoom);
        const double t = qDegreesToRadians(tilt);
        Lens lens = straightDown(0);
        lens.position = QVector3D(0, float(3000 * std::cos(t)), float(-3000 * std::sin(t)));
        lens.up = QVector3D(0, float(std::sin(t)), float(std::cos(t)));
        Sheet covering = sheet;
        covering.zoomLevel = zoom;
        const Ground ground = SheetMath::sphericalGround({3, 4}, 47.68);

        covering.size = SheetMath::coveringSize(covering, ground, lens, {16384, 16384});

        const auto back = SheetMath::screenFromSheet(covering, ground, lens)->inverted();
        for (const QPointF& corner : {QPointF(0, 0), QPointF(800, 0), QPointF(0, 600), QPointF(800, 600)})
            QVERIFY(QRectF(QPointF(), covering.size).contains(back.map(corner)));
        QCOMPARE(std::fmod(covering.size.width(), 64), 0.0);
    }

    void aSheetThatWouldReachTheHorizonHasItsLargestSize()
    {
        Lens lens = straightDown(0);
        lens.position = QVector3D(0, 10, -1000);
        lens.up = QVector3D(0, 1, 0);

        const QSizeF size =
            SheetMath::coveringSize(sheet, SheetMath::sphericalGround({0, 0}, 47.68), lens, {4096, 4096});

        QCOMPARE(size, QSizeF(4096, 4096));
    }

    void withoutALensThereIsNoPlaceForTheSheet()
    {
        const Ground ground = SheetMath::sphericalGround({0, 0}, 47.68);
        Lens none = straightDown(1000);
        none.screen = {};
        QVERIFY(!SheetMath::screenFromSheet(sheet, ground, none));
        Lens nowhere = straightDown(0);
        QVERIFY(!SheetMath::screenFromSheet(sheet, ground, nowhere));
        Lens alongUp = straightDown(1000);
        alongUp.up = QVector3D(0, 1, 0);
        QVERIFY(!SheetMath::screenFromSheet(sheet, ground, alongUp));
        Lens away = straightDown(1000);
        away.viewCenter = QVector3D(0, 2000, 0);
        QVERIFY(!SheetMath::screenFromSheet(sheet, ground, away));
        QVERIFY(SheetMath::coveringSize(sheet, ground, away, {4096, 4096}).isEmpty());
    }

    void theItemsMatrixMapsLikeTheTransform()
    {
        const QTransform t(1.5, 0.2, 0.0004, -0.1, 1.1, -0.0003, 40, 50, 1);

        const QVector3D mapped = SheetMath::itemMatrix(t) * QVector3D(300, 200, 0);

        const QPointF expected = t.map(QPointF(300, 200));
        QVERIFY(std::abs(double(mapped.x()) - expected.x()) < 1e-3);
        QVERIFY(std::abs(double(mapped.y()) - expected.y()) < 1e-3);
        // What stands out of the map's plane is drawn in it: the order of painting alone decides what hides what.
        const QVector4D deep = SheetMath::itemMatrix(t) * QVector4D(300, 200, 5, 1);
        QCOMPARE(deep.z(), 0.0F);
        QCOMPARE(deep.toVector3DAffine().toVector2D(), mapped.toVector2D());
    }

    void theMiddleOfTheScreenLiesOnTheGround()
    {
        Lens lens = straightDown(0);
        lens.position = QVector3D(10, 100, 0);
        lens.viewCenter = QVector3D(10, 50, 50);

        QCOMPARE(SheetMath::groundInTheMiddle(lens).value(), QPointF(10, 100));
        lens.viewCenter = QVector3D(10, 100, 50);
        QVERIFY(!SheetMath::groundInTheMiddle(lens));
        lens.viewCenter = QVector3D(10, 150, 50);
        QVERIFY(!SheetMath::groundInTheMiddle(lens));
    }
};

QTEST_GUILESS_MAIN(tst_SheetMath)
#include "tst_SheetMath.moc"
