#include "network/OutletMath.h"

#include <QtTest>

#include <cmath>

using namespace Torvik::View3d;

class tst_OutletMath : public QObject {
    Q_OBJECT

private slots:
    void aPipeWithoutASizeIsOfThreeHundredMillimetres();
    void radius_data();
    void radius();
    void depthBelowNode_data();
    void depthBelowNode();
    void anOffsetShiftsInTheHorizontalOnly();
    void aPipeWithoutADirectionIsNotShifted();
    void theOutletLiesBelowTheNodeAndAgainstTheOffset();
    void endNodePosition_data();
    void endNodePosition();
    void directionShows_data();
    void directionShows();
    void northRotation_data();
    void northRotation();
    void turningBringsTheEndIntoTheTargetsDirection_data();
    void turningBringsTheEndIntoTheTargetsDirection();
    void turningKeepsTheStart();
};

void tst_OutletMath::aPipeWithoutASizeIsOfThreeHundredMillimetres()
{
    QCOMPARE(OutletMath::effectiveDiameter(0.0), 300.0);
    QCOMPARE(OutletMath::effectiveDiameter(1e-13), 300.0);
    QCOMPARE(OutletMath::effectiveDiameter(-1e-13), 300.0);
    QCOMPARE(OutletMath::effectiveDiameter(250.0), 250.0);
    QCOMPARE(OutletMath::effectiveDiameter(1e-11), 1e-11);
}

void tst_OutletMath::radius_data()
{
    QTest::addColumn<double>("diameterMm");
    QTest::addColumn<float>("radius");
    QTest::newRow("300 mm") << 300.0 << 0.15F;
    QTest::newRow("1000 mm") << 1000.0 << 0.5F;
    QTest::newRow("100 mm is the smallest that shows its size") << 100.0 << 0.05F;
    QTest::newRow("50 mm") << 50.0 << 0.05F;
    QTest::newRow("40 mm") << 40.0 << 0.05F;
    QTest::newRow("none") << 0.0 << 0.05F;
}

void tst_OutletMath::radius()
{
    QFETCH(double, diameterMm);
    QTEST(OutletMath::pipeRadius(diameterMm), "radius");
}

void tst_OutletMath::depthBelowNode_data()
{
    QTest::addColumn<float>("recorded");
    QTest::addColumn<float>("nodeDepth");
    QTest::addColumn<float>("depth");
    QTest::newRow("half the node's depth without a record") << 0.0F << 3.0F << 1.5F;
    QTest::newRow("the record") << 2.0F << 3.0F << 2.0F;
    QTest::newRow("deeper than the node") << 4.0F << 3.0F << 4.0F;
    QTest::newRow("a negative record counts") << -0.5F << 3.0F << -0.5F;
    QTest::newRow("noise doesn't count") << 1e-5F << 3.0F << 1.5F;
    QTest::newRow("just above noise") << 2e-5F << 3.0F << 2e-5F;
}

void tst_OutletMath::depthBelowNode()
{
    QFETCH(float, recorded);
    QFETCH(float, nodeDepth);
    QTEST(OutletMath::depthBelowNode(recorded, nodeDepth), "depth");
}

void tst_OutletMath::anOffsetShiftsInTheHorizontalOnly()
{
    const QVector3D offset = OutletMath::outletOffset({3.0F, 0.0F, 4.0F}, 0.5F);

    QCOMPARE(offset, QVector3D(0.3F, 0.0F, 0.4F));
    // The unit vector is taken in space, so a steep pipe is shifted less.
    const QVector3D steep = OutletMath::outletOffset({0.0F, 4.0F, 3.0F}, 1.0F);
    QCOMPARE(steep, QVector3D(0.0F, 0.0F, 0.6F));
}

void tst_OutletMath::aPipeWithoutADirectionIsNotShifted()
{
    QCOMPARE(OutletMath::outletOffset({}, 0.5F), QVector3D());
}

void tst_OutletMath::theOutletLiesBelowTheNodeAndAgainstTheOffset()
{
    QCOMPARE(OutletMath::outletPosition({10.0F, 2.0F, 20.0F}, 1.5F, {0.5F, 0.0F, -0.25F}),
             QVector3D(9.5F, 0.5F, 20.25F));
}

void tst_OutletMath::endNodePosition_data()
{
    QTest::addColumn<QVector3D>("stored");
    QTest::addColumn<QVector3D>("expected");
    // The pipe ends at (1, -2, 3) with the node 1.5 above it; the stored point stands at (7, 8, 9) in the scene.
    QTest::newRow("nothing stored") << QVector3D() << QVector3D(1.0F, -0.5F, 3.0F);
    QTest::newRow("all stored") << QVector3D(-100.0F, 50.0F, 200.0F) << QVector3D(7.0F, 8.0F, 9.0F);
    QTest::newRow("only a height") << QVector3D(0.0F, 50.0F, 0.0F) << QVector3D(1.0F, 8.0F, 3.0F);
    QTest::newRow("only a place") << QVector3D(-100.0F, 0.0F, 200.0F) << QVector3D(7.0F, -0.5F, 9.0F);
    QTest::newRow("only an easting") << QVector3D(-100.0F, 0.0F, 0.0F) << QVector3D(1.0F, -0.5F, 3.0F);
    QTest::newRow("only a northing") << QVector3D(0.0F, 0.0F, 200.0F) << QVector3D(1.0F, -0.5F, 3.0F);
    QTest::newRow("a height that is no number") << QVector3D(-100.0F, qQNaN(), 200.0F) << QVector3D(7.0F, -0.5F, 9.0F);
    QTest::newRow("an easting that is no number") << QVector3D(qQNaN(), 50.0F, 200.0F) << QVector3D(1.0F, 8.0F, 3.0F);
    QTest::newRow("noise") << QVector3D(1e-5F, 1e-5F, 1e-5F) << QVector3D(1.0F, -0.5F, 3.0F);
}

void tst_OutletMath::endNodePosition()
{
    QFETCH(QVector3D, stored);
    QTEST(OutletMath::endNodePosition({1.0F, -2.0F, 3.0F}, 1.5F, stored, {7.0F, 8.0F, 9.0F}), "expected");
}

void tst_OutletMath::directionShows_data()
{
    QTest::addColumn<float>("length");
    QTest::addColumn<bool>("tooShort");
    QTest::newRow("stub") << 0.01F << true;
    QTest::newRow("0.09") << 0.09F << true;
    QTest::newRow("0.1") << 0.1F << false;
    QTest::newRow("1") << 1.0F << false;
}

void tst_OutletMath::directionShows()
{
    QFETCH(float, length);
    QTEST(OutletMath::tooShortToShowDirection(length), "tooShort");
}

void tst_OutletMath::northRotation_data()
{
    QTest::addColumn<QVector3D>("way");
    QTest::addColumn<float>("angleDeg");
    QTest::newRow("north") << QVector3D(0.0F, 0.0F, 2.0F) << 0.0F;
    QTest::newRow("east") << QVector3D(-2.0F, 0.0F, 0.0F) << 90.0F;
    QTest::newRow("west") << QVector3D(2.0F, 0.0F, 0.0F) << -90.0F;
    QTest::newRow("north-east") << QVector3D(-1.0F, 0.0F, 1.0F) << 45.0F;
    QTest::newRow("the way up doesn't count") << QVector3D(-1.0F, 5.0F, 1.0F) << 45.0F;
}

void tst_OutletMath::northRotation()
{
    QFETCH(QVector3D, way);
    QFETCH(float, angleDeg);
    const QVector3D start(5.0F, 6.0F, 7.0F);

    const float result = OutletMath::northRotation(start, start + way);

    // A quarter of a milliradian: the quaternion's float rounding.
    QVERIFY2(std::abs(result - angleDeg) < 0.015F, qPrintable(QString::number(double(result))));
}

void tst_OutletMath::turningBringsTheEndIntoTheTargetsDirection_data()
{
    QTest::addColumn<QVector3D>("target");
    QTest::newRow("to the left") << QVector3D(20.0F, 0.0F, 3.0F);
    QTest::newRow("to the right and higher") << QVector3D(-20.0F, 8.0F, -3.0F);
    QTest::newRow("behind") << QVector3D(1.5F, 0.0F, -40.0F);
}

void tst_OutletMath::turningBringsTheEndIntoTheTargetsDirection()
{
    QFETCH(QVector3D, target);
    const QVector3D start(1.0F, -1.0F, 3.0F);
    const QVector3D end(2.0F, -2.0F, 13.0F);

    const QVector3D turned = OutletMath::turnTowardsPoint(start, end, target) * end;

    const QVector2D seen = QVector2D(turned.x() - start.x(), turned.z() - start.z()).normalized();
    const QVector2D wanted = QVector2D(target.x() - start.x(), target.z() - start.z()).normalized();
    QVERIFY((seen - wanted).length() < 1e-4F);
    QVERIFY(std::abs(turned.y() - end.y()) < 1e-4F);
    QVERIFY(std::abs((turned - start).length() - (end - start).length()) < 1e-4F);
}

void tst_OutletMath::turningKeepsTheStart()
{
    const QVector3D start(1.0F, -1.0F, 3.0F);

    const QVector3D turned = OutletMath::turnTowardsPoint(start, {2.0F, -2.0F, 13.0F}, {9.0F, 0.0F, 3.0F}) * start;

    QVERIFY((turned - start).length() < 1e-5F);
}

QTEST_APPLESS_MAIN(tst_OutletMath)
#include "tst_OutletMath.moc"
