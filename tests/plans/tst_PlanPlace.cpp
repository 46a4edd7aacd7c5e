#include "plans/PlanPlace.h"
#include "plans/PlanXml.h"

#include <QtTest>

#include <cmath>

using namespace Torvik::View3d;

namespace {

const Vector3D<double> country(-500005.0, 0.0, 5600010.0);

double apart(const QVector3D& a, const QVector3D& b)
{
    return double((a - b).length());
}

} // namespace

/** Places whose origin is far away, in double precision. */
class tst_PlanPlace : public QObject {
    Q_OBJECT

private slots:
    void aShiftGoesThroughTurnAndScale()
    {
        QMatrix4x4 matrix;
        matrix.translate(7.0F, 3.0F, -4.0F);
        matrix.rotate(90.0F, 0.0F, 1.0F, 0.0F);
        matrix.scale(2.0F, 1.0F, 2.0F);

        // A quarter turn takes x to -z and z to x.
        const QMatrix4x4 shifted = PlanPlaces::shifted(matrix, {10.0, 5.0, 30.0});

        QVERIFY(apart(shifted.column(3).toVector3D(), {67.0F, 8.0F, -24.0F}) < 1e-4);
        QCOMPARE(shifted.column(0), matrix.column(0));
    }

    void aShiftByACountryAndBackIsExactWhereAFloatIsNot()
    {
        QMatrix4x4 far;
        far.translate(500005.0F, -3.0F, -5600010.0F);

        const QMatrix4x4 near = PlanPlaces::shifted(far, country + Vector3D<double>(0.125, 0.0, 0.375));

        QCOMPARE(near.column(3).toVector3D(), QVector3D(0.125F, -3.0F, 0.375F));
    }

    void anOriginLeadsBackToItsPlace_data()
    {
        QTest::addColumn<float>("turnDeg");
        QTest::addColumn<float>("scale");
        for (const float turn : {0.0F, 0.001F, 36.8699F, 90.0F, 123.456F, 180.0F, -77.7F})
            QTest::addRow("%g", double(turn)) << turn << 1.7F;
    }

    void anOriginLeadsBackToItsPlace()
    {
        QFETCH(float, turnDeg);
        QFETCH(float, scale);
        QMatrix4x4 matrix;
        matrix.translate(123.4F, -2.5F, 56.7F);
        matrix.rotate(turnDeg, 0.0F, 1.0F, 0.0F);
        matrix.scale(scale, 1.0F, scale);

        const PlanPlace origin = PlanPlaces::originOf(matrix, country);
        const QMatrix4x4 back = PlanPlaces::matrixAt(origin, country);

        for (const QVector3D& corner : {QVector3D(), QVector3D(500.0F, 0.0F, 0.0F), QVector3D(0.0F, 0.0F, -500.0F)})
            QVERIFY(apart(back.map(corner), matrix.map(corner)) < 2e-3);
        // Independently: the origin lies against the offset, turned and scaled.
        const double angle = std::remainder(double(turnDeg), 360.0) * 3.14159265358979323846 / 180.0;
        const double x = double(scale) * (country.x() * std::cos(angle) + country.z() * std::sin(angle));
        QVERIFY(std::abs(origin.position.x() - (123.4 - x)) < 5.0);
    }

    void theTurnIsWhatTheFileHoldsOfIt()
    {
        QMatrix4x4 matrix;
        matrix.rotate(123.456789F, 0.0F, 1.0F, 0.0F);

        const double turn = PlanPlaces::originOf(matrix, country).turnDeg;

        QCOMPARE(PlanXml::textFromTriple({{turn, 0.0, 0.0}}, PlanXml::angleDigits),
                 PlanXml::textFromTriple({{turn, 0.0, 0.0}}, 17));
        QVERIFY(std::abs(turn - 123.456789) < 1e-4);
    }
};

QTEST_APPLESS_MAIN(tst_PlanPlace)
#include "tst_PlanPlace.moc"
