#include "interaction/RayMath.h"

#include <QtTest>

#include <cmath>

using namespace Torvik::View3d;

namespace {

RayMath::Eye lookingNorthAndDown()
{
    QMatrix4x4 projection;
    projection.perspective(40.0F, 1.5F, 0.5F, 1000.0F);
    RayMath::Eye eye;
    eye.position = QVector3D(3.0F, 20.0F, -30.0F);
    eye.view = QVector3D(0.0F, -20.0F, 30.0F);
    const QVector3D left = QVector3D::crossProduct(QVector3D(0.0F, 1.0F, 0.0F), eye.view.normalized());
    eye.up = QVector3D::crossProduct(eye.view, left).normalized();
    eye.nearPlane = 0.5F;
    eye.retina = RayMath::retinaLimits(projection, 0.5F);
    return eye;
}

float tiltBelowHorizon(const QVector3D& view)
{
    return qRadiansToDegrees(std::asin(-view.normalized().y()));
}

} // namespace

class tst_RayMath : public QObject {
    Q_OBJECT

private slots:
    void aSymmetricFrustumHasOppositeLimitsWithLeftAndTopPositive();
    void anOffCentreFrustumGivesItsOwnEdges();
    void aLineMeetsThePlane_data();
    void aLineMeetsThePlane();
    void theLimitOfParallelDependsOnTheLengthOfTheDirection();
    void theRotationHasLeftUpAndViewAsColumns();
    void aRayHitsThePixelThatItCameFrom();
    void aPixelIsExactFarAway_data();
    void aPixelIsExactFarAway();
    void aPointBehindTheEyeIsMirrored();
    void aPointBesideTheEyeCountsAsTheScenesOrigin();
    void theRayIsAimedAtTheMiddleOfThePixel();
    void theRayIsNotNormalised();
    void aTiltGoesBackByItsPixels();
    void aTiltBeyondALimitEndsOnTheLimit_data();
    void aTiltBeyondALimitEndsOnTheLimit();
    void aViewStraightDownCountsAsNinetyDegrees();
    void aZoomMovesByTwoPercentOfTheDistancePerPixel();
    void aZoomThatReachesALimitIsDropped_data();
    void aZoomThatReachesALimitIsDropped();
    void headingsDifferByTheAngleSeenFromTheCentre();
    void aLevelPositionKeepsDistanceAndHeading();
    void aPositionStraightAboveTheCentreHasAFixedAnswer();
    void axisAndAngleOfARotation();
    void axisAndAngleOfNoRotationAreZero();
    void anUnnormalisedQuaternionGivesAUnitAxis();
    void sevenDecimalsStay();
};

void tst_RayMath::aSymmetricFrustumHasOppositeLimitsWithLeftAndTopPositive()
{
    QMatrix4x4 projection;
    projection.perspective(90.0F, 2.0F, 0.1F, 100.0F);

    const RayMath::RetinaLimits limits = RayMath::retinaLimits(projection, 0.1F);

    // tan(45 degrees) = 1, so the near plane's half height is the near distance and its half width twice that.
    QVERIFY(std::abs(limits.left - 0.2F) < 1e-6F);
    QVERIFY(std::abs(limits.right + 0.2F) < 1e-6F);
    QVERIFY(std::abs(limits.top - 0.1F) < 1e-6F);
    QVERIFY(std::abs(limits.bottom + 0.1F) < 1e-6F);
}

void tst_RayMath::anOffCentreFrustumGivesItsOwnEdges()
{
    QMatrix4x4 projection;
    projection.frustum(-1.0F, 3.0F, -2.0F, 5.0F, 2.0F, 100.0F);

    const RayMath::RetinaLimits limits = RayMath::retinaLimits(projection, 2.0F);

    // The axis points left: an edge at x = -1 (left) lies at +1 on it.
    QVERIFY(std::abs(limits.left - 1.0F) < 1e-5F);
    QVERIFY(std::abs(limits.right + 3.0F) < 1e-5F);
    QVERIFY(std::abs(limits.top - 5.0F) < 1e-5F);
    QVERIFY(std::abs(limits.bottom + 2.0F) < 1e-5F);
}

void tst_RayMath::aLineMeetsThePlane_data()
{
    QTest::addColumn<QVector3D>("source");
    QTest::addColumn<QVector3D>("direction");
    QTest::addColumn<QVector3D>("onPlane");
    QTest::addColumn<QVector3D>("normal");
    QTest::addColumn<bool>("meets");
    QTest::addColumn<QVector3D>("point");

    const QVector3D up(0.0F, 1.0F, 0.0F);
    QTest::newRow("ground") << QVector3D(1, 10, 2) << QVector3D(1, -2, 0) << QVector3D() << up << true
                            << QVector3D(6, 0, 2);
    QTest::newRow("behind the source") << QVector3D(1, 10, 2) << QVector3D(-1, 2, 0) << QVector3D() << up << true
                                       << QVector3D(6, 0, 2);
    QTest::newRow("horizontal") << QVector3D(1, 10, 2) << QVector3D(1, 0, 0) << QVector3D() << up << false
                                << QVector3D();
    QTest::newRow("inside the plane") << QVector3D(1, 0, 2) << QVector3D(1, 0, 0) << QVector3D() << up << false
                                      << QVector3D();
    QTest::newRow("long normal, shifted plane") << QVector3D(0, 0, 0) << QVector3D(1, 1, 0) << QVector3D(4, 9, 9)
                                                << QVector3D(10, 0, 0) << true << QVector3D(4, 4, 0);
    QTest::newRow("no direction") << QVector3D(1, 10, 2) << QVector3D() << QVector3D() << up << false << QVector3D();
}

void tst_RayMath::aLineMeetsThePlane()
{
    QFETCH(QVector3D, source);
    QFETCH(QVector3D, direction);
    QFETCH(QVector3D, onPlane);
    QFETCH(QVector3D, normal);
    QFETCH(bool, meets);
    QFETCH(QVector3D, point);

    const auto hit = RayMath::linePlaneIntersection(source, direction, onPlane, normal);

    QCOMPARE(hit.has_value(), meets);
    if (meets)
        QCOMPARE(*hit, point);
}

void tst_RayMath::theLimitOfParallelDependsOnTheLengthOfTheDirection()
{
    const QVector3D source(0.0F, 1.0F, 0.0F);
    const QVector3D up(0.0F, 1.0F, 0.0F);

    QVERIFY(!RayMath::linePlaneIntersection(source, QVector3D(0.0F, -1e-5F, 0.0F), QVector3D(), up));
    QVERIFY(RayMath::linePlaneIntersection(source, QVector3D(0.0F, -2e-5F, 0.0F), QVector3D(), up));
}

void tst_RayMath::theRotationHasLeftUpAndViewAsColumns()
{
    const QMatrix4x4 rotation = RayMath::retinaToWorldRotation(QVector3D(0, 5, 0), QVector3D(0, 0, 3));

    QCOMPARE(rotation.column(0), QVector4D(1, 0, 0, 0));
    QCOMPARE(rotation.column(1), QVector4D(0, 1, 0, 0));
    QCOMPARE(rotation.column(2), QVector4D(0, 0, 1, 0));
    QCOMPARE(rotation.column(3), QVector4D(0, 0, 0, 1));
    // With up +y and the view along +z, the left of the view is +x.
    QCOMPARE(QMatrix4x4(rotation).map(QVector3D(2, 0, 0)), QVector3D(2, 0, 0));
}

void tst_RayMath::aRayHitsThePixelThatItCameFrom()
{
    const RayMath::Eye eye = lookingNorthAndDown();
    const QSizeF screen(600, 400);

    for (const QPointF pixel : {QPointF(0, 0), QPointF(599, 399), QPointF(300, 200), QPointF(17, 391)}) {
        const QVector3D ray =
            RayMath::screenRay(eye, static_cast<float>(pixel.x()), static_cast<float>(pixel.y()), screen);
        const auto ground = RayMath::linePlaneIntersection(eye.position, ray, QVector3D(), QVector3D(0.0F, 1.0F, 0.0F));
        QVERIFY(ground);

        const QPointF back = RayMath::screenPoint(eye, *ground, screen);

        // Floats of some tens of metres against pixels of a few centimetres.
        QVERIFY2(std::abs(back.x() - pixel.x()) < 0.02, qPrintable(QString::number(back.x())));
        QVERIFY2(std::abs(back.y() - pixel.y()) < 0.02, qPrintable(QString::number(back.y())));
    }
}

void tst_RayMath::aPixelIsExactFarAway_data()
{
    QTest::addColumn<QVector3D>("centre");
    QTest::addColumn<float>("distance");
    QTest::newRow("at the origin, near") << QVector3D(0, 0, 0) << 50.0F;
    QTest::newRow("at the origin, from 2 km") << QVector3D(0, 0, 0) << 2000.0F;
    QTest::newRow("at the origin, from 50 km") << QVector3D(0, 0, 0) << 50000.0F;
    QTest::newRow("a city's other end") << QVector3D(6666, -3, -8888) << 400.0F;
    QTest::newRow("a city's other end, from 9 km") << QVector3D(-9000, 20, 7000) << 9000.0F;
}

void tst_RayMath::aPixelIsExactFarAway()
{
    QFETCH(QVector3D, centre);
    QFETCH(float, distance);
    // Straight down through a lens of 3 degrees, 800 by 600 pixels.
    const double tangent = std::tan(1.5 * M_PI / 180.0);
    const auto half = static_cast<float>(tangent);
    RayMath::Eye eye;
    eye.position = centre + QVector3D(0, distance, 0);
    eye.up = QVector3D(0, 0, 1);
    eye.view = QVector3D(0, -distance, 0);
    eye.nearPlane = 1.0F;
    QMatrix4x4 lens;
    lens.perspective(3.0F, 800.0F / 600.0F, 1.0F, 10000.0F);
    eye.retina = RayMath::retinaLimits(lens, 1.0F);

    // A quarter of the picture's height to the right and a quarter up; x grows to the left.
    const float quarter = std::round(0.5F * half * distance);
    const QPointF pixel = RayMath::screenPoint(eye, centre + QVector3D(-quarter, 0, quarter), QSizeF(800, 600));

    const double pixels = 300.0 * static_cast<double>(quarter) / (static_cast<double>(distance) * tangent);
    QVERIFY2(std::abs(pixel.x() - (399.5 + pixels)) < 0.1, qPrintable(QString::number(pixel.x())));
    QVERIFY2(std::abs(pixel.y() - (299.5 - pixels)) < 0.1, qPrintable(QString::number(pixel.y())));
}

void tst_RayMath::aPointBehindTheEyeIsMirrored()
{
    const RayMath::Eye eye = lookingNorthAndDown();
    const QSizeF screen(600, 400);
    const QVector3D ray = RayMath::screenRay(eye, 17.0F, 391.0F, screen);

    const QPointF ahead = RayMath::screenPoint(eye, eye.position + 40.0F * ray, screen);
    const QPointF behind = RayMath::screenPoint(eye, eye.position - 40.0F * ray, screen);

    QVERIFY((ahead - QPointF(17, 391)).manhattanLength() < 0.02);
    QVERIFY((behind - ahead).manhattanLength() < 0.04);
}

void tst_RayMath::aPointBesideTheEyeCountsAsTheScenesOrigin()
{
    RayMath::Eye eye = lookingNorthAndDown();
    eye.position = QVector3D(0, 5, -30);
    eye.view = QVector3D(0, 0, 30);
    eye.up = QVector3D(0, 1, 0);
    const QSizeF screen(600, 400);

    const QPointF pixel = RayMath::screenPoint(eye, eye.position + QVector3D(7, 0, 0), screen);

    // Seen from the eye the origin lies 5 m below the axis; a metre there is counted as one on the near plane.
    const auto bottomward = static_cast<double>(-5.0F - eye.retina.top);
    const auto height = static_cast<double>(eye.retina.bottom - eye.retina.top);
    QVERIFY(std::abs(pixel.x() - 299.5) < 1e-3);
    QVERIFY(std::abs(pixel.y() - (bottomward * 400.0 / height - 0.5)) < 1e-2);
}

void tst_RayMath::theRayIsAimedAtTheMiddleOfThePixel()
{
    const RayMath::Eye eye = lookingNorthAndDown();

    // The middle of an odd-sized picture is the middle of its middle pixel.
    const QVector3D ray = RayMath::screenRay(eye, 100.0F, 50.0F, QSizeF(201, 101)).normalized();

    QVERIFY((ray - eye.view.normalized()).length() < 1e-6F);
}

void tst_RayMath::theRayIsNotNormalised()
{
    const RayMath::Eye eye = lookingNorthAndDown();

    const QVector3D ray = RayMath::screenRay(eye, 100.0F, 50.0F, QSizeF(201, 101));

    QVERIFY(std::abs(ray.length() - 0.5F) < 1e-6F);
}

void tst_RayMath::aTiltGoesBackByItsPixels()
{
    const QVector3D halfDown(0.0F, -1.0F, 1.0F);

    QVERIFY(std::abs(RayMath::tiltStep(halfDown, 10.0, 10.1F, 89.5F) - 2.0F) < 1e-5F);
    QVERIFY(std::abs(RayMath::tiltStep(halfDown, -10.0, 10.1F, 89.5F) + 2.0F) < 1e-5F);
}

void tst_RayMath::aTiltBeyondALimitEndsOnTheLimit_data()
{
    QTest::addColumn<double>("delta");
    QTest::addColumn<float>("limit");

    QTest::newRow("too steep") << 1000.0 << 89.5F;
    QTest::newRow("too flat") << -1000.0 << 10.1F;
}

void tst_RayMath::aTiltBeyondALimitEndsOnTheLimit()
{
    QFETCH(double, delta);
    QFETCH(float, limit);
    const QVector3D view(2.0F, -1.0F, 1.0F);

    const float step = RayMath::tiltStep(view, delta, 10.1F, 89.5F);

    QVERIFY(std::abs(tiltBelowHorizon(view) + step - limit) < 1e-4F);
}

void tst_RayMath::aViewStraightDownCountsAsNinetyDegrees()
{
    QVERIFY(std::abs(RayMath::tiltStep(QVector3D(0.0F, -7.0F, 0.0F), 0.0, 10.1F, 89.5F) + 0.5F) < 1e-4F);
    // A view upwards comes down to the flattest one, without a finger's way.
    QVERIFY(std::abs(RayMath::tiltStep(QVector3D(0.0F, 1.0F, 1.0F), 0.0, 10.1F, 89.5F) - 55.1F) < 1e-4F);
}

void tst_RayMath::aZoomMovesByTwoPercentOfTheDistancePerPixel()
{
    const auto shift = RayMath::zoomShift(QVector3D(0.0F, 0.0F, 50.0F), 110.0, 100.0, 1.0, 1000.0);

    QVERIFY(shift);
    QVERIFY((*shift - QVector3D(0.0F, 0.0F, 10.0F)).length() < 1e-4F);
}

void tst_RayMath::aZoomThatReachesALimitIsDropped_data()
{
    QTest::addColumn<double>("minDist");
    QTest::addColumn<double>("maxDist");
    QTest::addColumn<double>("way");
    QTest::addColumn<bool>("moves");

    // The distance is 50, and a pixel is one metre.
    QTest::newRow("reaches the least distance exactly") << 40.0 << 1000.0 << 10.0 << false;
    QTest::newRow("stops just before the least distance") << 39.0 << 1000.0 << 10.0 << true;
    QTest::newRow("passes the least distance") << 45.0 << 1000.0 << 10.0 << false;
    QTest::newRow("reaches the greatest distance exactly") << 1.0 << 60.0 << -10.0 << false;
    QTest::newRow("stops just before the greatest distance") << 1.0 << 61.0 << -10.0 << true;
}

void tst_RayMath::aZoomThatReachesALimitIsDropped()
{
    QFETCH(double, minDist);
    QFETCH(double, maxDist);
    QFETCH(double, way);
    QFETCH(bool, moves);

    QCOMPARE(RayMath::zoomShift(QVector3D(0.0F, -30.0F, 40.0F), way, 0.0, minDist, maxDist).has_value(), moves);
}

void tst_RayMath::headingsDifferByTheAngleSeenFromTheCentre()
{
    const QVector3D centre(10.0F, 5.0F, 10.0F);

    const float turn = RayMath::headingDifference(centre, centre + QVector3D(2, 0, 0), centre + QVector3D(0, 0, 3));

    QVERIFY(std::abs(turn - 90.0F) < 1e-4F);

    // Heights do not count, and a turn across the back is not wrapped.
    const float slanting =
        RayMath::headingDifference(centre, centre + QVector3D(2, -4, 0), centre + QVector3D(0, 7, 3));
    QVERIFY(std::abs(slanting - 90.0F) < 1e-4F);
    const float across =
        RayMath::headingDifference(centre, centre + QVector3D(-1, 0, 1), centre + QVector3D(-1, 0, -1));
    QVERIFY(std::abs(across + 270.0F) < 1e-3F);
}

void tst_RayMath::aLevelPositionKeepsDistanceAndHeading()
{
    const QVector3D centre(10.0F, 5.0F, 10.0F);

    const QVector3D level = RayMath::levelPosition(centre + QVector3D(3, 12, 4), centre);

    // |(3,12,4)| = 13, its heading is (0.6, 0.8).
    QVERIFY((level - centre - QVector3D(7.8F, 0.0F, 10.4F)).length() < 1e-4F);
    const QVector3D fromBelow = RayMath::levelPosition(centre + QVector3D(3, -12, 4), centre);
    QVERIFY((fromBelow - level).length() < 1e-4F);
}

void tst_RayMath::aPositionStraightAboveTheCentreHasAFixedAnswer()
{
    const QVector3D fixed(0.0F, 0.0F, 200.0F);

    QCOMPARE(RayMath::levelPosition(QVector3D(4, 90, 6), QVector3D(4, 1, 6)), fixed);
    QCOMPARE(RayMath::levelPosition(QVector3D(4, 1, 6), QVector3D(4, 1, 6)), fixed);
}

void tst_RayMath::axisAndAngleOfARotation()
{
    const QVector3D axis = QVector3D(1.0F, 2.0F, -2.0F) / 3.0F;

    const RayMath::AxisAngle turn = RayMath::axisAndAngle(QQuaternion::fromAxisAndAngle(axis, 70.0F));

    QVERIFY((turn.axis - axis).length() < 1e-6F);
    QVERIFY(std::abs(turn.angleDeg - 70.0F) < 1e-4F);
}

void tst_RayMath::axisAndAngleOfNoRotationAreZero()
{
    const RayMath::AxisAngle turn = RayMath::axisAndAngle(QQuaternion());

    QCOMPARE(turn.axis, QVector3D());
    QCOMPARE(turn.angleDeg, 0.0F);

    // The limit is 1e-12 of the squares' sum.
    QCOMPARE(RayMath::axisAndAngle(QQuaternion(1, 5e-7F, 0, 0)).axis, QVector3D());
    QVERIFY((RayMath::axisAndAngle(QQuaternion(1, 2e-6F, 0, 0)).axis - QVector3D(1, 0, 0)).length() < 1e-6F);
}

void tst_RayMath::anUnnormalisedQuaternionGivesAUnitAxis()
{
    // A scalar slightly above one, as left by a chain of products, must not make the angle not a number.
    const RayMath::AxisAngle turn = RayMath::axisAndAngle(QQuaternion(1.0000001F, 0.0F, 0.001F, 0.0F));

    QVERIFY((turn.axis - QVector3D(0.0F, 1.0F, 0.0F)).length() < 1e-6F);
    QCOMPARE(turn.angleDeg, 0.0F);

    const RayMath::AxisAngle large = RayMath::axisAndAngle(QQuaternion(0.5F, 0.0F, 3.0F, 0.0F));
    QVERIFY((large.axis - QVector3D(0.0F, 1.0F, 0.0F)).length() < 1e-6F);
    QVERIFY(std::abs(large.angleDeg - 120.0F) < 1e-3F);
}

void tst_RayMath::sevenDecimalsStay()
{
    QCOMPARE(RayMath::roundedToSevenDecimals(0.12345674), 0.1234567F);
    QCOMPARE(RayMath::roundedToSevenDecimals(0.00000004), 0.0F);
    QCOMPARE(RayMath::roundedToSevenDecimals(-0.00000006), -1e-7F);
}

QTEST_APPLESS_MAIN(tst_RayMath)

#include "tst_RayMath.moc"
