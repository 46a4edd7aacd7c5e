#include "labels/GridMath.h"

#include <QtTest>

using namespace Torvik::View3d;

class tst_GridMath : public QObject {
    Q_OBJECT

private slots:
    void eachSizeBeginsAtItsOwnDistance();
    void aSquareSuitsTheDistance_data();
    void aSquareSuitsTheDistance();
    void theWayThereDoesNotMatter();
    void aForeignSizeStays();
    void aPointGoesToTheCornerTowardsTheAxes_data();
    void aPointGoesToTheCornerTowardsTheAxes();
    void theLinesSpanTheMeshInBothDirections();
};

void tst_GridMath::eachSizeBeginsAtItsOwnDistance()
{
    const QList<float> metres {2, 5, 10, 20, 50, 100, 200, 500, 1000, 2000, 5000};
    const QList<float> feet {3.048F, 6.096F, 15.24F, 30.48F, 60.96F, 152.4F, 304.8F, 609.6F, 1524, 3048, 6096};

    QCOMPARE(GridMath::scales(false).keys(), metres);
    QCOMPARE(GridMath::scales(false).values(), metres);
    QCOMPARE(GridMath::scales(true).keys(), feet);
    QCOMPARE(GridMath::scales(true).values(), feet);
    QCOMPARE(GridMath::baseSquareSize(false), 1.0F);
    QCOMPARE(GridMath::baseSquareSize(true), 1.27F);
}

void tst_GridMath::aSquareSuitsTheDistance_data()
{
    QTest::addColumn<bool>("imperial");
    QTest::addColumn<float>("current");
    QTest::addColumn<float>("distance");
    QTest::addColumn<float>("size");

    QTest::newRow("away from the base") << false << 1.0F << 60.0F << 50.0F;
    QTest::newRow("back by one") << false << 50.0F << 49.0F << 20.0F;
    QTest::newRow("back to the base") << false << 50.0F << 1.0F << 1.0F;
    QTest::newRow("nothing to see") << false << 1.0F << 0.0F << 1.0F;
    QTest::newRow("between two sizes") << false << 50.0F << 99.0F << 50.0F;
    QTest::newRow("on the current size") << false << 50.0F << 50.0F << 50.0F;
    QTest::newRow("on a greater size") << false << 50.0F << 100.0F << 100.0F;
    QTest::newRow("on a smaller size") << false << 50.0F << 20.0F << 20.0F;
    QTest::newRow("at the base on the first size") << false << 1.0F << 2.0F << 1.0F;
    QTest::newRow("beyond the last size") << false << 1.0F << 1e6F << 5000.0F;
    QTest::newRow("feet: away from the base") << true << 1.27F << 60.0F << 30.48F;
    QTest::newRow("feet: back to the base") << true << 30.48F << 3.0F << 1.27F;
}

void tst_GridMath::aSquareSuitsTheDistance()
{
    QFETCH(bool, imperial);
    QFETCH(float, current);
    QFETCH(float, distance);
    QFETCH(float, size);

    QCOMPARE(GridMath::squareSizeForDistance(distance, current, GridMath::baseSquareSize(imperial),
                                             GridMath::scales(imperial)),
             size);
}

void tst_GridMath::theWayThereDoesNotMatter()
{
    const auto& scales = GridMath::scales(false);
    const auto sizes = scales.values();
    // None of the distances is a size itself: there the current one stays.
    for (const float distance : {0.5F, 3.0F, 7.0F, 49.0F, 51.0F, 333.0F, 4999.0F, 12345.0F}) {
        const float fromBase = GridMath::squareSizeForDistance(distance, 1.0F, 1.0F, scales);
        for (const float current : sizes)
            QCOMPARE(GridMath::squareSizeForDistance(distance, current, 1.0F, scales), fromBase);
    }
}

void tst_GridMath::aForeignSizeStays()
{
    QCOMPARE(GridMath::squareSizeForDistance(60, 7, 1, GridMath::scales(false)), 7.0F);
    QCOMPARE(GridMath::squareSizeForDistance(60, 1, 1, {}), 1.0F);
}

void tst_GridMath::aPointGoesToTheCornerTowardsTheAxes_data()
{
    QTest::addColumn<QVector3D>("point");
    QTest::addColumn<float>("size");
    QTest::addColumn<QVector3D>("corner");

    QTest::newRow("within the first squares") << QVector3D(0.25F, 0, 0) << 1.0F << QVector3D(0.2F, 0, 0);
    QTest::newRow("the height stays") << QVector3D(0, 12.34F, 0) << 1.0F << QVector3D(0, 12.34F, 0);
    QTest::newRow("behind the axes") << QVector3D(-7, 0, -12) << 50.0F << QVector3D(-5, 0, -10);
    QTest::newRow("far away") << QVector3D(12345, -3, 6789) << 100.0F << QVector3D(12340, -3, 6780);
    QTest::newRow("feet") << QVector3D(1, 0, 2) << 3.048F << QVector3D(0.9144F, 0, 1.8288F);
}

void tst_GridMath::aPointGoesToTheCornerTowardsTheAxes()
{
    QFETCH(QVector3D, point);
    QFETCH(float, size);
    QFETCH(QVector3D, corner);

    const QVector3D found = GridMath::onLattice(point, size);

    // A float of five digits before the point has no more than three behind it.
    QVERIFY((found - corner).length() < 1e-3F);
}

void tst_GridMath::theLinesSpanTheMeshInBothDirections()
{
    const QVector<float> mesh = GridMath::wireframe(3);

    QCOMPARE(mesh.size(), 3 * 4 * 6);
    const QVector<QVector3D> expected {
        {-0.05F, -0.05F, 0}, {-0.05F, 0.05F, 0}, {-0.05F, -0.05F, 0}, {0.05F, -0.05F, 0}, //
        {0, -0.05F, 0},      {0, 0.05F, 0},      {-0.05F, 0, 0},      {0.05F, 0, 0},      //
        {0.05F, -0.05F, 0},  {0.05F, 0.05F, 0},  {-0.05F, 0.05F, 0},  {0.05F, 0.05F, 0}};
    for (int vertex = 0; vertex < expected.size(); ++vertex) {
        const float* const at = mesh.constData() + vertex * GridMath::floatsPerVertex;
        QVERIFY2((QVector3D(at[0], at[1], at[2]) - expected.at(vertex)).length() < 1e-6F,
                 qPrintable(QString::number(vertex)));
        QCOMPARE(QVector3D(at[3], at[4], at[5]), QVector3D());
    }
}

QTEST_APPLESS_MAIN(tst_GridMath)
#include "tst_GridMath.moc"
