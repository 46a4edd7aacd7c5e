#include "PipeFixture.h"

#include <QtTest>

using namespace Torvik::View3d;
using namespace Kx::Test;

namespace {

/** Along +z: 4 m, 3 m and 3 m. */
const QVector<QVector3D> straight {QVector3D(), QVector3D(0, 0, 4), QVector3D(0, 0, 7), QVector3D(0, 0, 10)};

void startAt(Pipe* pipe, float distance)
{
    pipe->startSensorMeasurement(Vector3D<double>(0.0, 0.0, static_cast<double>(distance)), QVector3D(), distance);
}

} // namespace

class tst_PipeMeasuredPoints : public QObject {
    Q_OBJECT

private slots:
    void withoutAStartNothingHappens();
    void anEmptyChainGivesNothing();
    void behindTheEndThePipeGrows();
    void behindTheEndWhatLayBeforeTheEndGoes();
    void fromASingleSegmentTheBeginIsTold();
    void aPointInALaterSegmentReplacesTheStretch();
    void aPointInTheNextSegmentsBeginReplacesNothingOfIt();
    void aPointInTheSameSegmentReplacesItsHead();
    void aPointInTheFirstSegmentKeepsThePredecessorThatGoes();
    void theNextPointInTheSameSegmentReplacesTheMeasuredOne();
    void behindTheEndOfAChainMeasuredFromItsBeginAllButTheFirstGoes();
    void aLongChainIsCutWhereTheSumOfItsLengthsSays();
    void aPointBeforeTheLastMeasuredChangesNothing();
    void aRunOfPointsLaysThePipeAnew();
    void startingBehindTheEndCountsAsTheLastSegment();
    void measuredSegmentsTakeThePipesRadius();
};

void tst_PipeMeasuredPoints::withoutAStartNothingHappens()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    const MeasuredLog log(pipe);

    QVERIFY(!pipe->addPoint(QVector3D(0, 0, 20), 20.0F));
    QVERIFY(!pipe->addPoint(QVector3D(0, 0, 2), 2.0F));

    QCOMPARE(pipe->segmentCount(), 3);
    QVERIFY(log.entries.isEmpty());
}

void tst_PipeMeasuredPoints::anEmptyChainGivesNothing()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    startAt(pipe, 0.0F);
    pipe->delAllPoints();
    const MeasuredLog log(pipe);

    QVERIFY(!pipe->addPoint(QVector3D(0, 0, 20), 20.0F));
    QVERIFY(log.entries.isEmpty());
}

void tst_PipeMeasuredPoints::behindTheEndThePipeGrows()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    startAt(pipe, 8.0F);
    const MeasuredLog log(pipe);

    EntitySegment* first = pipe->addPoint(QVector3D(0, 0, 12), 12.0F);
    EntitySegment* second = pipe->addPoint(QVector3D(1, 0, 14), 14.5F);

    QCOMPARE(pipe->segments().mid(3), QVector<EntitySegment*>({first, second}));
    QVERIFY(isConnected(*pipe));
    QCOMPARE(log.entries, QStringList({"added (0,0,12) 3 0", "added (1,0,14) 4 0"}));
}

void tst_PipeMeasuredPoints::behindTheEndWhatLayBeforeTheEndGoes()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    startAt(pipe, 5.0F);
    QPointer<EntitySegment> overtaken = pipe->lastSegment();
    const MeasuredLog log(pipe);

    const EntitySegment* added = pipe->addPoint(QVector3D(1, 0, 11), 11.0F);

    QCOMPARE(log.entries, QStringList({"removed 2 3 0", "added (1,0,11) 2 0"}));
    QCOMPARE(pipe->segmentCount(), 3);
    QCOMPARE(pipe->lastSegment(), added);
    QVERIFY(near(added->beginPoint(), QVector3D(0, 0, 7)));
    QVERIFY(isConnected(*pipe));
    QVERIFY(overtaken);
    deleteLatered();
    QVERIFY(!overtaken);
}

void tst_PipeMeasuredPoints::fromASingleSegmentTheBeginIsTold()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, {QVector3D(3, 0, 0)}, 0.15F);
    startAt(pipe, 0.0F);
    const MeasuredLog log(pipe);

    pipe->addPoint(QVector3D(3, 0, 2), 2.0F);

    QCOMPARE(log.entries, QStringList({"added (3,0,0) 0 0", "added (3,0,2) 1 0"}));
    QCOMPARE(pipe->segmentCount(), 2);
}

void tst_PipeMeasuredPoints::aPointInALaterSegmentReplacesTheStretch()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    startAt(pipe, 2.0F);
    EntitySegment* anchor = pipe->firstSegment();
    const MeasuredLog log(pipe);

    const EntitySegment* measured = pipe->addPoint(QVector3D(1, 0, 8), 8.0F);

    // The last segment is cut at 8 m: its rest of 2 m stays, what lies between goes, the measured one comes.
    QCOMPARE(log.entries, QStringList({"added (1,0,8) 3 1", "removed 1 3 1", "added (1,0,8) 1 1"}));
    QCOMPARE(pipe->segmentCount(), 3);
    QCOMPARE(pipe->firstSegment(), anchor);
    QCOMPARE(pipe->segments()[1], measured);
    QCOMPARE(measured->prevSegment(), anchor);
    QVERIFY(near(measured->beginPoint(), QVector3D(0, 0, 4)));
    // sqrt(1 + 16) is rounded to 4.12.
    QCOMPARE(measured->length(), 4.12F);
    const EntitySegment* rest = pipe->lastSegment();
    QCOMPARE(rest->prevSegment(), measured);
    QVERIFY(near(rest->beginPoint(), QVector3D(0, 0, 8)));
    QVERIFY(near(rest->endPoint(), QVector3D(0, 0, 10)));
}

void tst_PipeMeasuredPoints::aPointInTheNextSegmentsBeginReplacesNothingOfIt()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    startAt(pipe, 2.0F);
    const QPointer<EntitySegment> replaced = pipe->segments()[1];
    const MeasuredLog log(pipe);

    // On the joint: the distance belongs to the second segment, of which nothing has passed yet.
    pipe->addPoint(QVector3D(0, 0, 5), 4.0F);

    QCOMPARE(log.entries, QStringList({"added (0,0,5) 2 1", "removed 1 2 1", "added (0,0,5) 1 1"}));
    QCOMPARE(lengths(*pipe), QVector<float>({4.0F, 1.0F, 3.0F, 3.0F}));
    QCOMPARE(pipe->segments()[3]->prevSegment(), pipe->segments()[2]);
    QVERIFY(replaced);
    deleteLatered();
    QVERIFY(!replaced);
}

void tst_PipeMeasuredPoints::aPointInTheSameSegmentReplacesItsHead()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    startAt(pipe, 5.0F);
    EntitySegment* anchor = pipe->firstSegment();
    EntitySegment* last = pipe->lastSegment();
    const QPointer<EntitySegment> gone = pipe->segments()[1];
    const MeasuredLog log(pipe);

    const EntitySegment* measured = pipe->addPoint(QVector3D(0, 1, 6), 6.0F);

    QCOMPARE(log.entries, QStringList({"added (0,1,6) 2 1", "removed 1 2 1", "added (0,1,6) 1 1"}));
    QCOMPARE(pipe->segmentCount(), 4);
    QCOMPARE(pipe->segments()[1], measured);
    QCOMPARE(measured->prevSegment(), anchor);
    QVERIFY(near(measured->beginPoint(), QVector3D(0, 0, 4)));
    const EntitySegment* rest = pipe->segments()[2];
    QCOMPARE(rest->length(), 1.0F);
    QCOMPARE(rest->prevSegment(), measured);
    QCOMPARE(pipe->segments()[3], last);
    QCOMPARE(last->prevSegment(), rest);
    deleteLatered();
    QVERIFY(!gone);
}

void tst_PipeMeasuredPoints::aPointInTheFirstSegmentKeepsThePredecessorThatGoes()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    startAt(pipe, 1.0F);
    EntitySegment* gone = pipe->firstSegment();
    const MeasuredLog log(pipe);

    const EntitySegment* measured = pipe->addPoint(QVector3D(1, 0, 2), 2.0F);

    QCOMPARE(log.entries, QStringList({"added (1,0,2) 1 1", "removed 0 1 1", "added (1,0,2) 0 1"}));
    QCOMPARE(pipe->firstSegment(), measured);
    QVERIFY(near(measured->beginPoint(), QVector3D()));
    QCOMPARE(measured->prevSegment(), gone);
    QCOMPARE(pipe->segments()[1]->prevSegment(), measured);
    QCOMPARE(pipe->segments()[1]->length(), 2.0F);

    deleteLatered();
    QVERIFY(!measured->prevSegment());
    QCOMPARE(measured->parentRotation(), QQuaternion());
}

void tst_PipeMeasuredPoints::theNextPointInTheSameSegmentReplacesTheMeasuredOne()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    startAt(pipe, 5.0F);
    EntitySegment* anchor = pipe->firstSegment();
    // Of sqrt(5), so that the next distance lies in it.
    pipe->addPoint(QVector3D(0, 1, 6), 6.0F);
    const MeasuredLog log(pipe);

    const EntitySegment* measured = pipe->addPoint(QVector3D(0, 0, 5.5F), 5.5F);

    QCOMPARE(log.entries, QStringList({"added (0,0,5.5) 2 1", "removed 1 2 1", "added (0,0,5.5) 1 1"}));
    QCOMPARE(pipe->segments()[1], measured);
    QCOMPARE(measured->prevSegment(), anchor);
    QCOMPARE(measured->length(), 1.5F);
}

void tst_PipeMeasuredPoints::behindTheEndOfAChainMeasuredFromItsBeginAllButTheFirstGoes()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    startAt(pipe, 2.0F);
    const MeasuredLog log(pipe);

    pipe->addPoint(QVector3D(0, 0, 20), 20.0F);

    QCOMPARE(log.entries, QStringList({"removed 1 3 0", "added (0,0,0) 0 0", "added (0,0,20) 1 0"}));
    QCOMPARE(lengths(*pipe), QVector<float>({4.0F, 16.0F}));
}

void tst_PipeMeasuredPoints::aLongChainIsCutWhereTheSumOfItsLengthsSays()
{
    Holder holder;
    QVector<QVector3D> toAndFro;
    for (int i = 0; i <= 61; ++i)
        toAndFro.append(QVector3D(0, 0, i % 2 == 0 ? 0.0F : 1.11F));
    Pipe* pipe = Pipe::create(&holder, toAndFro, 0.15F);
    startAt(pipe, 0.0F);
    const QVector3D begin = pipe->lastSegment()->beginPoint();
    float before = 0.0F;
    for (int i = 0; i < 60; ++i)
        before += 1.11F;

    pipe->addPoint(QVector3D(5, 0, 0), 67.16F);

    // Taking the lengths off the distance one by one would cut 5 micrometres beside it.
    QCOMPARE(pipe->segmentCount(), 3);
    QVERIFY(near(pipe->lastSegment()->beginPoint().z() - begin.z(), 67.16F - before, 1e-6F));
}

void tst_PipeMeasuredPoints::aPointBeforeTheLastMeasuredChangesNothing()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    startAt(pipe, 8.0F);
    const auto before = pipe->segments();
    const MeasuredLog log(pipe);

    QVERIFY(!pipe->addPoint(QVector3D(5, 5, 5), 3.0F));

    QCOMPARE(pipe->segments(), before);
    QCOMPARE(lengths(*pipe), QVector<float>({4.0F, 3.0F, 3.0F}));
    QVERIFY(log.entries.isEmpty());
}

void tst_PipeMeasuredPoints::aRunOfPointsLaysThePipeAnew()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, {QVector3D(), QVector3D(0, 0, 10)}, 0.15F);
    startAt(pipe, 0.0F);

    pipe->addPoint(QVector3D(0, 0, 2), 2.0F);
    pipe->addPoint(QVector3D(0, 0, 4), 4.0F);
    pipe->addPoint(QVector3D(0, 0, 6), 6.0F);

    // Each point begins a segment of its own, since a joint belongs to the segment behind it.
    QCOMPARE(lengths(*pipe), QVector<float>({2.0F, 2.0F, 2.0F, 4.0F}));
    QVERIFY(isConnected(*pipe));
    QVERIFY(near(pipe->lastPoint(), QVector3D(0, 0, 10)));
}

void tst_PipeMeasuredPoints::startingBehindTheEndCountsAsTheLastSegment()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    startAt(pipe, 99.0F);
    const MeasuredLog log(pipe);

    QVERIFY(!pipe->addPoint(QVector3D(0, 0, 6), 6.0F));
    pipe->addPoint(QVector3D(0, 0, 9), 9.0F);

    QCOMPARE(log.entries, QStringList({"added (0,0,9) 3 1", "removed 2 3 1", "added (0,0,9) 2 1"}));
}

void tst_PipeMeasuredPoints::measuredSegmentsTakeThePipesRadius()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    startAt(pipe, 2.0F);

    const auto radiiAreThePipes = [pipe] {
        for (const EntitySegment* segment : pipe->segments())
            if (static_cast<const CylinderSegment*>(segment)->radius() != 0.15F)
                return false;
        return true;
    };

    // The first point leaves a rest behind it, which the second one removes.
    pipe->addPoint(QVector3D(0, 0, 6), 6.0F);
    QVERIFY(radiiAreThePipes());
    pipe->addPoint(QVector3D(0, 0, 12), 12.0F);
    QVERIFY(radiiAreThePipes());
}

QTEST_GUILESS_MAIN(tst_PipeMeasuredPoints)

#include "tst_PipeMeasuredPoints.moc"
