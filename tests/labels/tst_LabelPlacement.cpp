#include "labels/LabelPlacement.h"
#include "labels/LabelRoom.h"

#include <QMatrix4x4>
#include <QtTest>

#include <cmath>

using namespace Torvik::View3d;
namespace Placement = Torvik::View3d::LabelPlacement;

namespace {

const QSizeF screen(1000.0, 700.0);
constexpr float lensDeg = 3.0F;

/** A camera of 3 degrees, as the view's. */
Placement::View lookingAt(QVector3D centre, QVector3D back, QVector3D up, float distance, float nearPlane)
{
    QMatrix4x4 projection;
    projection.perspective(lensDeg, static_cast<float>(screen.width() / screen.height()), nearPlane, distance * 2);
    RayMath::Eye eye;
    eye.position = centre + back.normalized() * distance;
    eye.view = centre - eye.position;
    eye.up = up;
    eye.nearPlane = nearPlane;
    eye.retina = RayMath::retinaLimits(projection, nearPlane);
    return Placement::viewOf(eye, screen);
}

double distance(QPointF a, QPointF b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

} // namespace

class tst_LabelPlacement : public QObject {
    Q_OBJECT

private slots:
    void aPointInTheMiddleIsInTheMiddleOfTheScreen_data();
    void aPointInTheMiddleIsInTheMiddleOfTheScreen();
    void pixelsAndThePlaneGoThereAndBack();
    void theNearPlaneChangesNothing();
    void whatLiesBehindTheCameraHasNoPlace();
    void aRowHasAsManyPixelsAtAnyDistance_data();
    void aRowHasAsManyPixelsAtAnyDistance();
    void aLabelStandsCentredAboveItsObject();
    void anOffsetIsKeptInPixels();
    void placedAtAndByOffsetAgree();
    void thePictureStandsUprightAndFacesTheViewer();
    void thePointerLiesParallelToTheScreen();
    void severalLinesAreThreeRowsHigh();

    void roomIsGivenOnce();
    void aTouchedCornerIsNoHeap();
    void offTheScreenThereIsNoRoom();
    void whatIsOccupiedIsTaken();
};

void tst_LabelPlacement::aPointInTheMiddleIsInTheMiddleOfTheScreen_data()
{
    QTest::addColumn<QVector3D>("back");
    QTest::addColumn<QVector3D>("up");
    QTest::addColumn<float>("viewed");

    for (const float viewed : {50.0F, 350.0F, 2000.0F, 100000.0F}) {
        const QString at = QString::number(static_cast<double>(viewed));
        QTest::newRow(qPrintable("top " + at)) << QVector3D(0, 1, 0) << QVector3D(0, 0, 1) << viewed;
        QTest::newRow(qPrintable("front " + at)) << QVector3D(0, 0, -1) << QVector3D(0, 1, 0) << viewed;
        QTest::newRow(qPrintable("3d " + at)) << QVector3D(0, 1, -1) << QVector3D(0, 1, 1) << viewed;
        QTest::newRow(qPrintable("an up that is not across the view " + at))
            << QVector3D(0, 1, -1) << QVector3D(0, 1, 0) << viewed;
    }
}

void tst_LabelPlacement::aPointInTheMiddleIsInTheMiddleOfTheScreen()
{
    QFETCH(QVector3D, back);
    QFETCH(QVector3D, up);
    QFETCH(float, viewed);
    const QVector3D centre(1234.5F, 3.25F, -987.5F);
    const auto view = lookingAt(centre, back, up, viewed, 1.0F);

    const auto anchor = Placement::onPlane(view, centre);

    QVERIFY(anchor);
    // The camera's place has 7 digits: a hundredth of a pixel at most distances, a tenth close by.
    QVERIFY(distance(Placement::pixelOf(view, *anchor), QPointF(499.5, 349.5)) < 0.15);
}

void tst_LabelPlacement::pixelsAndThePlaneGoThereAndBack()
{
    const auto view = lookingAt({0, 0, 0}, {0, 1, -1}, {0, 1, 1}, 350.0F, 1.0F);

    for (const QPointF pixel : {QPointF(0, 0), QPointF(999, 699), QPointF(17.25, 530.5), QPointF(-400, 900)})
        QVERIFY(distance(Placement::pixelOf(view, Placement::localOf(view, pixel)), pixel) < 0.001);
}

void tst_LabelPlacement::theNearPlaneChangesNothing()
{
    const QVector3D point(3.0F, 0.0F, 2.0F);
    const auto usual = lookingAt({0, 0, 0}, {0, 1, 0}, {0, 0, 1}, 100000.0F, 1.0F);
    const auto narrow = lookingAt({0, 0, 0}, {0, 1, 0}, {0, 0, 1}, 100000.0F, 50000.0F);

    QVERIFY(distance(Placement::pixelOf(usual, *Placement::onPlane(usual, point)),
                     Placement::pixelOf(narrow, *Placement::onPlane(narrow, point))) < 0.01);
    QVERIFY(std::abs(Placement::metresPerPixel(usual) / Placement::metresPerPixel(narrow) - 1.0F) < 1e-5F);
}

void tst_LabelPlacement::whatLiesBehindTheCameraHasNoPlace()
{
    const auto view = lookingAt({0, 0, 0}, {0, 1, 0}, {0, 0, 1}, 50.0F, 1.0F);

    QVERIFY(!Placement::onPlane(view, {0.0F, 51.0F, 0.0F}));
    QVERIFY(!Placement::onPlane(view, {0.0F, 50.0F, 0.0F}));
    QVERIFY(Placement::onPlane(view, {0.0F, 49.0F, 0.0F}));
}

void tst_LabelPlacement::aRowHasAsManyPixelsAtAnyDistance_data()
{
    QTest::addColumn<float>("viewed");
    for (const float viewed : {50.0F, 350.0F, 2000.0F, 100000.0F})
        QTest::newRow(qPrintable(QString::number(static_cast<double>(viewed)))) << viewed;
}

void tst_LabelPlacement::aRowHasAsManyPixelsAtAnyDistance()
{
    QFETCH(float, viewed);
    const auto view = lookingAt({0, 0, 0}, {0, 1, 0}, {0, 0, 1}, viewed, 1.0F);
    const double metres = 24.0 * static_cast<double>(Placement::metresPerPixel(view));

    const auto placed = Placement::placedAt(view, {0, 0, 2}, {100.0, 200.0}, {4 * metres, metres});
    const QVector3D lower = placed.center - QVector3D(0.0F, static_cast<float>(metres / 2), 0.0F);

    QVERIFY(std::abs(Placement::pixelOf(view, lower).y() - 224.0) < 0.01);
    // And by the lens itself: the picture is 2 * 2 m * tan(1.5 deg) high in the label plane.
    QVERIFY(std::abs(metres - 24.0 / 700.0 * 4.0 * std::tan(1.5 * M_PI / 180.0)) < 1e-6);
}

void tst_LabelPlacement::aLabelStandsCentredAboveItsObject()
{
    const QPointF corner = Placement::cornerAbove({300.0, 400.0}, 5.0F, 24.0F, Placement::rowsAbove);

    QVERIFY(distance(corner, {300.0 - 60.0, 400.0 - 2.12 * 24.0}) < 1e-4);
    QCOMPARE(Placement::coverage({10.0, 20.0}, {120.0, 24.0}), QRectF(10.5, 20.5, 120.0, 24.0));
}

void tst_LabelPlacement::anOffsetIsKeptInPixels()
{
    const auto close = lookingAt({0, 0, 0}, {0, 1, 0}, {0, 0, 1}, 50.0F, 1.0F);
    const auto far = lookingAt({0, 0, 0}, {0, 1, 0}, {0, 0, 1}, 90000.0F, 40000.0F);
    const QVector3D object(0.5F, 0.0F, 0.5F);
    const double metres = static_cast<double>(Placement::metresPerPixel(close));
    const QSizeF size(100 * metres, 24 * metres);

    const auto anchor = *Placement::onPlane(close, object);
    const QPointF before = Placement::pixelOf(close, anchor);
    const auto moved = Placement::placedAt(close, anchor, before + QPointF(60.0, -80.0), size);
    const auto farAnchor = *Placement::onPlane(far, object);
    const auto again = Placement::placedByOffset(far, farAnchor, moved.offset, size);

    QVERIFY(distance(again.corner - Placement::pixelOf(far, farAnchor), {60.0, -80.0}) < 0.05);
}

void tst_LabelPlacement::placedAtAndByOffsetAgree()
{
    const auto view = lookingAt({0, 0, 0}, {0, 1, -1}, {0, 1, 1}, 350.0F, 1.0F);
    const QSizeF size(0.02, 0.005);
    const QVector3D anchor(0.01F, -0.02F, 2.0F);

    const auto at = Placement::placedAt(view, anchor, {123.0, 456.0}, size);
    const auto by = Placement::placedByOffset(view, anchor, at.offset, size);

    QVERIFY(distance(by.corner, {123.0, 456.0}) < 0.001);
    QVERIFY((by.center - at.center).length() < 1e-7F);
    QVERIFY((at.center + at.offset - anchor).length() < 1e-7F);
}

void tst_LabelPlacement::thePictureStandsUprightAndFacesTheViewer()
{
    const auto view = lookingAt({0, 0, 0}, {0, 1, -1}, {0, 1, 1}, 350.0F, 1.0F);
    const QQuaternion facing = Placement::facing(view);

    QVERIFY((facing.rotatedVector({1, 0, 0}) + view.left).length() < 1e-5F);
    QVERIFY((facing.rotatedVector({0, 1, 0}) + view.forward).length() < 1e-5F);
    QVERIFY((facing.rotatedVector({0, 0, 1}) + view.up).length() < 1e-5F);
}

void tst_LabelPlacement::thePointerLiesParallelToTheScreen()
{
    const auto view = lookingAt({0, 0, 0}, {0, 0, -1}, {0, 1, 0}, 350.0F, 1.0F);
    const QVector3D down(0.003F, -0.02F, 0.0F);
    const QQuaternion turn = Placement::facingAlong(view, down);

    QVERIFY((turn.rotatedVector({0, 0, 1}) - Placement::sceneVector(view, down).normalized()).length() < 1e-5F);
    QVERIFY((turn.rotatedVector({0, 1, 0}) + view.forward).length() < 1e-5F);
}

void tst_LabelPlacement::severalLinesAreThreeRowsHigh()
{
    QCOMPARE(Placement::heightInPixels(24.0F, 1.0F, false), 24.0F);
    QCOMPARE(Placement::heightInPixels(24.0F, 0.5F, true), 36.0F);
}

void tst_LabelPlacement::roomIsGivenOnce()
{
    LabelRoom room(screen);

    QVERIFY(room.take({100, 100, 80, 24}));
    QVERIFY(!room.take({110, 104, 80, 24}));
    QVERIFY(room.take({300, 100, 80, 24}));
    QVERIFY(!room.take({100, 100, 80, 24}));
}

void tst_LabelPlacement::aTouchedCornerIsNoHeap()
{
    LabelRoom room(screen);

    QVERIFY(room.take({100, 100, 80, 24}));
    QVERIFY(room.take({176, 120, 80, 24}));
}

void tst_LabelPlacement::offTheScreenThereIsNoRoom()
{
    LabelRoom room(screen);

    QVERIFY(!room.isOnScreen({-200, 10, 80, 24}));
    QVERIFY(!room.take({-200, 10, 80, 24}));
    QVERIFY(!room.take({1001, 10, 80, 24}));
    QVERIFY(!room.take({10, 10, 0, 0}));
    QVERIFY(room.take({-40, 690, 80, 24}));
    QVERIFY(room.take({-1e7, 300, 2e7, 24}));
}

void tst_LabelPlacement::whatIsOccupiedIsTaken()
{
    LabelRoom room(screen);
    room.occupy({100, 100, 80, 24});
    room.occupy({105, 100, 80, 24});
    room.occupy({-500, -500, 80, 24});

    QVERIFY(!room.take({100, 100, 80, 24}));
}

QTEST_APPLESS_MAIN(tst_LabelPlacement)
#include "tst_LabelPlacement.moc"
