#include "measurement/InspectionCommands.h"

#include "measurement/InspectionDir.h"
#include "measurement/InspectionMath.h"
#include "network/EntitySegment.h"
#include "network/Pipe.h"
#include "scene/FlaggedTransform.h"
#include "scene/Renderable.h"

#include <QtTest>

#include <cmath>

using namespace Torvik::View3d;

namespace {

class Holder : public Renderable {
public:
    Holder()
        : Renderable(nullptr)
    {
    }
    QString renderableType() const override { return QStringLiteral("holder"); }
};

/** Two segments along +z, 4 m and 2 m, and the commands upon them. */
struct Run {
    explicit Run(const QVector<QVector3D>& points = {QVector3D(), QVector3D(0, 0, 4), QVector3D(0, 0, 6)})
        : pipe(Pipe::create(&holder, points, 0.15F))
        , commands(pipe, &holder)
    {
    }

    Holder holder;
    Pipe* pipe;
    InspectionCommands commands;
};

bool near(const QVector3D& a, const QVector3D& b, float tolerance = 1e-4F)
{
    return (a - b).length() <= tolerance;
}

QVector3D forward(const QQuaternion& rotation)
{
    return rotation.rotatedVector(QVector3D(0, 0, 1));
}

} // namespace

class tst_InspectionCommands : public QObject {
    Q_OBJECT

private slots:
    void aBendTurnsTowardsItsHour_data();
    void aBendTurnsTowardsItsHour();
    void aBendOfNothingIsTheIdentity();
    void inclinationIsTheRise_data();
    void inclinationIsTheRise();
    void theDistanceIsRoundedToCentimetres();
    void aDistanceBehindTheEndStretchesTheLastSegment();
    void thePipeIsStretchedToTheRoundedDistance();
    void withoutExtensionThePipeStays();
    void aDistanceInsideStretchesNothing();
    void theCrawlerLooksACentimetreAhead();
    void pointsAreTakenInRealTimeOnly();
    void aBendIsAddedChangedAndRemoved();
    void directionLeadsFromTheFirstSegmentsEndToThePosition();
    void inclinationIsThatOfTheFirstSegment();
    void aTargetInclinationIsTakenByTheFirstSegment_data();
    void aTargetInclinationIsTakenByTheFirstSegment();
    void aTargetInclinationKeepsTheHeadingAndStatesItsSource();
    void anUnknownDirectionCountsAsUpstream();
    void directionsAreStoredAsFlags();
};

void tst_InspectionCommands::aBendTurnsTowardsItsHour_data()
{
    QTest::addColumn<float>("angle");
    QTest::addColumn<float>("clock");
    QTest::addColumn<QVector3D>("direction");

    // Deflected by a from +z towards the hour h: (-sin(a) sin(30 h), sin(a) cos(30 h), cos(a)).
    const auto half = static_cast<float>(std::sqrt(0.5));
    const auto root3 = static_cast<float>(std::sqrt(3.0));
    QTest::newRow("12 is up") << 45.0F << 12.0F << QVector3D(0, half, half);
    QTest::newRow("0 is 12") << 45.0F << 0.0F << QVector3D(0, half, half);
    QTest::newRow("3 is -x") << 45.0F << 3.0F << QVector3D(-half, 0, half);
    QTest::newRow("6 is down") << 45.0F << 6.0F << QVector3D(0, -half, half);
    QTest::newRow("9 is +x") << 45.0F << 9.0F << QVector3D(half, 0, half);
    QTest::newRow("90 degrees to 3") << 90.0F << 3.0F << QVector3D(-1, 0, 0);
    QTest::newRow("30 degrees to 2") << 30.0F << 2.0F << QVector3D(-root3 / 4, 0.25F, root3 / 2);
    QTest::newRow("a negative angle goes the other way") << -45.0F << 3.0F << QVector3D(half, 0, half);
    QTest::newRow("straight up") << 90.0F << 12.0F << QVector3D(0, 1, 0);
}

void tst_InspectionCommands::aBendTurnsTowardsItsHour()
{
    QFETCH(float, angle);
    QFETCH(float, clock);
    QFETCH(QVector3D, direction);

    const QQuaternion rotation = InspectionMath::rotationFromClockAndAngle(angle, clock);

    QVERIFY(near(forward(rotation), direction, 1e-5F));
    Run run;
    QCOMPARE(run.commands.rotationFromClockAndAngle(angle, clock), rotation);
}

void tst_InspectionCommands::aBendOfNothingIsTheIdentity()
{
    const QQuaternion rotation = InspectionMath::rotationFromClockAndAngle(0.0F, 7.0F);

    QVERIFY(near(forward(rotation), QVector3D(0, 0, 1)));
    QVERIFY(near(rotation.rotatedVector(QVector3D(0, 1, 0)), QVector3D(0, 1, 0)));
}

void tst_InspectionCommands::inclinationIsTheRise_data()
{
    QTest::addColumn<QVector3D>("way");
    QTest::addColumn<float>("degrees");

    QTest::newRow("rising by 45 degrees") << QVector3D(0, 3, 3) << 45.0F;
    QTest::newRow("falling by 45 degrees") << QVector3D(0, -3, 3) << -45.0F;
    QTest::newRow("rising by 30 degrees along -x") << QVector3D(-static_cast<float>(std::sqrt(3.0)), 1, 0) << 30.0F;
    QTest::newRow("falling by a little, obliquely") << QVector3D(30, -1, -40) << -1.14576F;
    QTest::newRow("level") << QVector3D(5, 0, 5) << 0.0F;
    QTest::newRow("vertical") << QVector3D(0, -5, 0) << 0.0F;
}

void tst_InspectionCommands::inclinationIsTheRise()
{
    QFETCH(QVector3D, way);
    QFETCH(float, degrees);

    const float rise = InspectionMath::inclination(way);

    // A quaternion of floats near the identity holds its angle to some hundredths of a degree.
    QVERIFY2(std::abs(rise - degrees) < 0.02F, qPrintable(QString::number(static_cast<double>(rise))));
}

void tst_InspectionCommands::theDistanceIsRoundedToCentimetres()
{
    Run run;
    QCOMPARE(run.commands.currDist(), 0.0F);

    // As a float 1.005 is 1.00499999523, a little below the half.
    run.commands.setDistance(1.005F, false);
    QCOMPARE(run.commands.currDist(), 1.0F);

    run.commands.setDistance(1.125F, false);
    QCOMPARE(run.commands.currDist(), 1.13F);
}

void tst_InspectionCommands::aDistanceBehindTheEndStretchesTheLastSegment()
{
    Run run;

    run.commands.setDistance(7.5F, true);

    QVERIFY(std::abs(run.pipe->lastSegment()->length() - 3.5F) < 1e-6F);
    QVERIFY(std::abs(run.commands.totalDistance() - 7.5F) < 1e-6F);
    QVERIFY(near(run.pipe->lastPoint(), QVector3D(0, 0, 7.5F)));
    QCOMPARE(run.pipe->segmentCount(), 2);

    run.commands.setDistance(7.5F, true);
    QVERIFY(std::abs(run.commands.totalDistance() - 7.5F) < 1e-6F);
}

void tst_InspectionCommands::thePipeIsStretchedToTheRoundedDistance()
{
    Run run;

    run.commands.setDistance(7.504F, true);

    QVERIFY(near(run.pipe->lastPoint(), QVector3D(0, 0, 7.5F)));
}

void tst_InspectionCommands::withoutExtensionThePipeStays()
{
    Run run;

    run.commands.setDistance(7.5F, false);

    QCOMPARE(run.commands.currDist(), 7.5F);
    QCOMPARE(run.commands.totalDistance(), 6.0F);
}

void tst_InspectionCommands::aDistanceInsideStretchesNothing()
{
    Run run;

    run.commands.setDistance(3.0F, true);
    run.commands.setDistance(6.0F, true);

    QCOMPARE(run.commands.totalDistance(), 6.0F);

    run.pipe->delAllPoints();
    run.commands.setDistance(3.0F, true);
    QCOMPARE(run.commands.totalDistance(), 0.0F);
}

void tst_InspectionCommands::theCrawlerLooksACentimetreAhead()
{
    Run run;
    QVERIFY(near(run.commands.crawlerTransformMatrix().column(3).toVector3D(), QVector3D(0, 0, 0.01F)));

    run.commands.setDistance(5.0F, false);
    QVERIFY(near(run.commands.crawlerTransformMatrix().column(3).toVector3D(), QVector3D(0, 0, 5.01F)));

    run.commands.setDistance(6.0F, false);
    QVERIFY(near(run.commands.crawlerTransformMatrix().column(3).toVector3D(), QVector3D(0, 0, 6)));
}

void tst_InspectionCommands::pointsAreTakenInRealTimeOnly()
{
    Run run;
    run.pipe->startSensorMeasurement(Vector3D<double>(), QVector3D(), 0.0F);

    QVERIFY(!run.commands.realTime);
    run.commands.addPoint(QVector3D(0, 0, 8), 8.0F);
    QCOMPARE(run.commands.totalDistance(), 6.0F);

    run.commands.realTime = true;
    run.commands.addPoint(QVector3D(0, 0, 8), 8.0F);
    QVERIFY(near(run.pipe->lastPoint(), QVector3D(0, 0, 8)));
}

void tst_InspectionCommands::aBendIsAddedChangedAndRemoved()
{
    Run run;

    run.commands.addBend(3.0F, 90.0F, 4.0F);
    QVERIFY(near(run.pipe->lastPoint(), QVector3D(-2, 0, 4)));

    run.commands.modifyBend(9.0F, 90.0F, 4.0F);
    QVERIFY(near(run.pipe->lastPoint(), QVector3D(2, 0, 4)));

    run.commands.removeBend(4.0F);
    QCOMPARE(run.pipe->segmentCount(), 1);
    QVERIFY(near(run.pipe->lastPoint(), QVector3D(0, 0, 6)));

    run.commands.bendPipe(12.0F, 30.0F, 2.0F);
    QCOMPARE(run.pipe->segmentCount(), 2);
    QVERIFY(run.pipe->lastPoint().y() > 1.9F);
}

void tst_InspectionCommands::directionLeadsFromTheFirstSegmentsEndToThePosition()
{
    Run run({QVector3D(10, 1, 10), QVector3D(10, 1, 14), QVector3D(13, 1, 14)});

    QVERIFY(near(run.commands.direction(), QVector3D(0, 0, -4)));
    QVERIFY(std::abs(run.commands.inclination()) < 0.02F);

    run.holder.setPosition(QVector3D(0, 5, 0), 0);
    QVERIFY(near(run.commands.direction(), QVector3D(0, 0, -4)));
}

void tst_InspectionCommands::inclinationIsThatOfTheFirstSegment()
{
    Run run({QVector3D(), QVector3D(0, 0, 4), QVector3D(0, 3, 7)});

    QVERIFY(std::abs(run.commands.inclination()) < 0.02F);
}

void tst_InspectionCommands::aTargetInclinationIsTakenByTheFirstSegment_data()
{
    QTest::addColumn<QVector3D>("end");
    QTest::addColumn<float>("angle");

    QTest::newRow("level to falling") << QVector3D(0, 0, 4) << 20.0F;
    QTest::newRow("rising to falling") << QVector3D(3, 2, 4) << 20.0F;
    QTest::newRow("falling to level") << QVector3D(-3, -2, 4) << 0.0F;
    QTest::newRow("falling to rising") << QVector3D(-3, -2, -4) << -35.0F;
}

void tst_InspectionCommands::aTargetInclinationIsTakenByTheFirstSegment()
{
    QFETCH(QVector3D, end);
    QFETCH(float, angle);
    Run run({QVector3D(), end});

    run.commands.rotateToTargetInclination(angle, 0);

    // The fall from the begin to the first segment's end, against the plane.
    const QVector3D way = run.pipe->getShapePoints().last() - run.pipe->getShapePoints().first();
    const float fall = qRadiansToDegrees(std::asin(-way.normalized().y()));
    QVERIFY2(std::abs(fall - angle) < 0.02F, qPrintable(QString::number(static_cast<double>(fall))));
    QVERIFY(std::abs(run.commands.inclination() + angle) < 0.05F);
}

void tst_InspectionCommands::aTargetInclinationKeepsTheHeadingAndStatesItsSource()
{
    Run run({QVector3D(), QVector3D(3, 0, 4)});
    run.holder.setTransformFlags(TransformFlags::GPS);

    run.commands.rotateToTargetInclination(10.0F, 0);
    QCOMPARE(run.holder.transformFlags(), static_cast<int>(TransformFlags::GPS));
    const QVector3D way = run.pipe->getShapePoints().last();
    QVERIFY(std::abs(way.x() / way.z() - 0.75F) < 1e-4F);
    QVERIFY(near(run.holder.position(), QVector3D()));

    run.commands.rotateToTargetInclination(10.0F, TransformFlags::Manual);
    QCOMPARE(run.holder.transformFlags(), static_cast<int>(TransformFlags::Manual));
}

void tst_InspectionCommands::anUnknownDirectionCountsAsUpstream()
{
    InspectionDir direction;

    QVERIFY(direction.inspectionDirUnknown());
    QVERIFY(direction.inspectionUpstream());
    QVERIFY(!direction.inspectionDownstream());
    QCOMPARE(direction.firstInspectionDirFlag(), 0);

    direction.setInspectionDownstream();
    QVERIFY(!direction.inspectionUpstream());
    QVERIFY(direction.inspectionDownstream());
    QVERIFY(!direction.inspectionDirUnknown());

    direction.setInspectionUpstream();
    QVERIFY(direction.inspectionUpstream());
    QVERIFY(!direction.inspectionDownstream());
    QVERIFY(!direction.inspectionDirUnknown());
}

void tst_InspectionCommands::directionsAreStoredAsFlags()
{
    InspectionDir direction;

    direction.setInspectionDir(InspectionDir::Downstream);
    QCOMPARE(direction.inspectionDirection(), 256);
    direction.setInspectionUpstream();
    QCOMPARE(direction.inspectionDirection(), 128);
    direction.setInspectionDirUnknown();
    QCOMPARE(direction.inspectionDirection(), 0);
    direction.setFirstInspectionDirFlag(InspectionDir::Upstream);
    QCOMPARE(direction.firstInspectionDirFlag(), 128);
    QCOMPARE(direction.inspectionDirection(), 0);
    QCOMPARE(InspectionDir::allInspectionDirFlags(), 384);
    QCOMPARE(InspectionDir::allInspectionDirFlags() & TransformFlags::allTransformFlags(), 0);
}

QTEST_GUILESS_MAIN(tst_InspectionCommands)

#include "tst_InspectionCommands.moc"
