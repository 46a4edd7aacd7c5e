#include "host/vehicle/Course.h"
#include "host/vehicle/Recording.h"

#include <QtTest>

#include <cmath>

using namespace Torvik::Vehicle;

namespace {

double apart(const SensorPlace& a, const SensorPlace& b)
{
    return std::hypot(b.x - a.x, b.y - a.y, b.z - a.z);
}

/** 3 m east, then 4 m north. */
const QVector<SensorPlace> bent {{0, 0, 0}, {3, 0, 0}, {3, 4, 0}};

} // namespace

class tst_Course : public QObject {
    Q_OBJECT

private slots:
    void aShapeBecomesACourseFromItsBegin();
    void aShapeInspectedDownstreamIsStoredFromItsEnd();
    void theScaleStretchesTheCourse();
    void whatIsNoLineHasNoCourse_data();
    void whatIsNoLineHasNoCourse();
    void aRunReadsAtEveryStepAndAtTheEnd();
    void aRunWhoseStepsFitEndsOnce();
    void aBendIsWalkedAround();
    void cornersThatCoincideAreOne();
    void noiseStaysWithinItsRadius();
    void theSameSeedGivesTheSameNoise();
    void aCourseWithoutLengthGivesNoRun();
};

void tst_Course::aShapeBecomesACourseFromItsBegin()
{
    const auto course = courseOfShape("LINESTRING ZM(400000 5600000 97 192,400003 5600000 97 0,400003 5600004 96.5 0)");

    QCOMPARE(course.size(), 3);
    QVERIFY(course[0] == (SensorPlace {0, 0, 0}));
    QVERIFY(course[2] == (SensorPlace {3, 4, -0.5}));
}

void tst_Course::aShapeInspectedDownstreamIsStoredFromItsEnd()
{
    const auto course = courseOfShape("LINESTRING ZM(400003 5600004 96 320,400000 5600000 97 0)");

    QCOMPARE(course.size(), 2);
    QVERIFY(course[1] == (SensorPlace {3, 4, -1}));
}

void tst_Course::theScaleStretchesTheCourse()
{
    const auto course = courseOfShape("LINESTRING ZM(10 10 0 192,16 10 2 0)", 0.5);

    QVERIFY(course[1] == (SensorPlace {3, 0, 1}));
}

void tst_Course::whatIsNoLineHasNoCourse_data()
{
    QTest::addColumn<QString>("wkt");
    for (const char* wkt : {"", "EMPTY", "nonsense", "POINT ZM(1 2 3 16)", "LINESTRING ZM(1 2 3 16)"})
        QTest::newRow(wkt) << QString(wkt);
}

void tst_Course::whatIsNoLineHasNoCourse()
{
    QFETCH(QString, wkt);

    QVERIFY(courseOfShape(wkt).isEmpty());
}

void tst_Course::aRunReadsAtEveryStepAndAtTheEnd()
{
    const auto run = runAlong({{0, 0, 0}, {1, 0, 0}}, {0.3, 0.5, 0, 1});

    QCOMPARE(run.size(), 5);
    QCOMPARE(run[0].seconds, 0.0);
    QCOMPARE(run[0].counter, 0.0);
    QCOMPARE(run[3].counter, 0.9);
    QCOMPARE(run[3].seconds, 1.8);
    QCOMPARE(run[3].sensor->x, 0.9);
    QCOMPARE(run[4].counter, 1.0);
    QCOMPARE(run[4].seconds, 2.0);
    QVERIFY(*run[4].sensor == (SensorPlace {1, 0, 0}));
}

void tst_Course::aRunWhoseStepsFitEndsOnce()
{
    const auto run = runAlong({{0, 0, 0}, {1, 0, 0}}, {0.1, 0.1, 0, 1});

    QCOMPARE(run.size(), 11);
    QCOMPARE(run.last().counter, 1.0);
    QVERIFY(run[9].counter < 0.95);
}

void tst_Course::aBendIsWalkedAround()
{
    const auto run = runAlong(bent, {1, 1, 0, 1});

    QCOMPARE(run.size(), 8);
    QVERIFY(apart(*run[3].sensor, {3, 0, 0}) < 1e-9);
    QVERIFY(apart(*run[5].sensor, {3, 2, 0}) < 1e-9);
    QVERIFY(apart(*run[7].sensor, {3, 4, 0}) < 1e-9);
}

void tst_Course::cornersThatCoincideAreOne()
{
    const auto run = runAlong({{0, 0, 0}, {0, 0, 0}, {2, 0, 0}, {2, 0, 0}}, {1, 1, 0, 1});

    QCOMPARE(run.size(), 3);
    QVERIFY(apart(*run[0].sensor, {0, 0, 0}) < 1e-9);
    QVERIFY(apart(*run[1].sensor, {1, 0, 0}) < 1e-9);
    QVERIFY(apart(*run[2].sensor, {2, 0, 0}) < 1e-9);
}

void tst_Course::noiseStaysWithinItsRadius()
{
    constexpr double radius = 0.02;
    const auto exact = runAlong(bent, {0.01, 1, 0, 7});
    const auto noisy = runAlong(bent, {0.01, 1, radius, 7});

    QCOMPARE(noisy.size(), exact.size());
    double farthest = 0;
    double sumX = 0;
    for (int i = 0; i < exact.size(); ++i) {
        farthest = std::max(farthest, apart(*noisy[i].sensor, *exact[i].sensor));
        sumX += noisy[i].sensor->x - exact[i].sensor->x;
        QCOMPARE(noisy[i].counter, exact[i].counter);
    }
    QVERIFY(farthest <= radius);
    QVERIFY(farthest > radius * 0.9);
    // Of 700 draws the mean is off by a third of a millimetre; five times that is no chance.
    QVERIFY(std::abs(sumX / exact.size()) < 0.0017);
}

void tst_Course::theSameSeedGivesTheSameNoise()
{
    const auto run = [](unsigned seed) { return writeRecording(runAlong(bent, {0.5, 1, 0.02, seed})); };

    QCOMPARE(run(42), run(42));
    QVERIFY(run(42) != run(43));
}

void tst_Course::aCourseWithoutLengthGivesNoRun()
{
    QVERIFY(runAlong({}, {}).isEmpty());
    QVERIFY(runAlong({{0, 0, 0}}, {}).isEmpty());
    QVERIFY(runAlong({{1, 0, 0}, {1, 0, 0}}, {}).isEmpty());
}

QTEST_APPLESS_MAIN(tst_Course)
#include "tst_Course.moc"
