#include "PipeFixture.h"

#include "common/LogCapture.h"

#include <QtTest>

using namespace Torvik::View3d;
using namespace Kx::Test;

namespace {

/** From forward (+z) to the left, which is +x when looking along +z with +y up. */
const QQuaternion toTheLeft = QQuaternion::fromDirection(QVector3D(1, 0, 0), QVector3D(0, 1, 0));
const QQuaternion toTheRight = QQuaternion::fromDirection(QVector3D(-1, 0, 0), QVector3D(0, 1, 0));

/** Along +z: 4 m, 3 m and 1 m. */
const QVector<QVector3D> straight {QVector3D(), QVector3D(0, 0, 4), QVector3D(0, 0, 7), QVector3D(0, 0, 8)};

} // namespace

class tst_PipeBends : public QObject {
    Q_OBJECT

private slots:
    void aBendInsideASegmentSplitsItAndTurnsTheRest();
    void aBendTakesItsDistanceRounded();
    void aBendNearAJointTurnsTheNextSegment_data();
    void aBendNearAJointTurnsTheNextSegment();
    void aBendInsideAChainThatIsPutAtItsEndTurnsTheWhole();
    void aBendIsChangedAtTheSameDistance();
    void aBendAtTheEndAddsAStub_data();
    void aBendAtTheEndAddsAStub();
    void aBendInAnEmptyChainGivesNothing();
    void aNewSegmentTakesThePipesRadius();
    void aSplitLinksTheFollowerToTheNewSegment();
    void theCutOffPieceCountsTheTurnOfTheWholeTwice();
    void removingABendAtTheEndTakesTheLastSegment_data();
    void removingABendAtTheEndTakesTheLastSegment();
    void theEndIsMetInSpiteOfRounding();
    void removingABendBehindTheChainAsIfInsideChangesNothing();
    void removingABendInsideAlwaysTakesTheSecondSegment_data();
    void removingABendInsideAlwaysTakesTheSecondSegment();
    void removingTheOnlyBendStraightensThePipe();
    void removingFromASingleSegmentChangesNothing();
    void removingFromAnEmptyChainDoesNothing();
    void bendsEmitNoMeasuredPoints();
};

void tst_PipeBends::aBendInsideASegmentSplitsItAndTurnsTheRest()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);

    const EntitySegment* bend = pipe->modifySegmentsRotation(toTheLeft, 5.0F);

    QCOMPARE(lengths(*pipe), QVector<float>({4.0F, 1.0F, 2.0F, 1.0F}));
    QCOMPARE(bend, pipe->segments()[2]);
    QVERIFY(isConnected(*pipe));
    QVERIFY(near(pipe->segments()[1]->endPoint(), QVector3D(0, 0, 5)));
    QVERIFY(near(bend->endPoint(), QVector3D(2, 0, 5)));
    QVERIFY(near(pipe->lastPoint(), QVector3D(3, 0, 5)));
    QCOMPARE(pipe->length(), 8.0F);
}

void tst_PipeBends::aBendTakesItsDistanceRounded()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);

    pipe->modifySegmentsRotation(toTheLeft, 1.234F);

    QCOMPARE(pipe->firstSegment()->length(), 1.23F);
    QCOMPARE(pipe->segments()[1]->length(), 2.77F);
}

void tst_PipeBends::aBendNearAJointTurnsTheNextSegment_data()
{
    QTest::addColumn<float>("distance");

    QTest::newRow("on the joint") << 4.0F;
    QTest::newRow("1 cm before it") << 3.99F;
    QTest::newRow("4 mm before it") << 3.996F;
    QTest::newRow("4 mm behind it") << 4.004F;
}

void tst_PipeBends::aBendNearAJointTurnsTheNextSegment()
{
    QFETCH(float, distance);
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    const auto before = pipe->segments();

    const EntitySegment* bend = pipe->modifySegmentsRotation(toTheLeft, distance);

    QCOMPARE(pipe->segments(), before);
    QCOMPARE(bend, before[1]);
    QVERIFY(isConnected(*pipe));
    QVERIFY(near(pipe->segments()[1]->endPoint(), QVector3D(3, 0, 4)));
    QVERIFY(near(pipe->lastPoint(), QVector3D(4, 0, 4)));
}

void tst_PipeBends::aBendInsideAChainThatIsPutAtItsEndTurnsTheWhole()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);

    QCOMPARE(pipe->addRotationInsideChain(toTheLeft, 8.0F), pipe->firstSegment());

    QCOMPARE(lengths(*pipe), QVector<float>({4.0F, 3.0F, 1.0F}));
    QVERIFY(isConnected(*pipe));
    QVERIFY(near(pipe->lastPoint(), QVector3D(8, 0, 0)));
}

void tst_PipeBends::aBendIsChangedAtTheSameDistance()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);

    const EntitySegment* bend = pipe->modifySegmentsRotation(toTheLeft, 5.0F);
    QCOMPARE(pipe->modifySegmentsRotation(toTheRight, 5.0F), bend);

    QCOMPARE(lengths(*pipe), QVector<float>({4.0F, 1.0F, 2.0F, 1.0F}));
    QVERIFY(near(pipe->lastPoint(), QVector3D(-3, 0, 5)));
}

void tst_PipeBends::aBendAtTheEndAddsAStub_data()
{
    QTest::addColumn<float>("distance");

    QTest::newRow("at the end") << 8.0F;
    QTest::newRow("4 mm before the end") << 7.996F;
    QTest::newRow("far behind it") << 30.0F;
}

void tst_PipeBends::aBendAtTheEndAddsAStub()
{
    QFETCH(float, distance);
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);

    const EntitySegment* stub = pipe->modifySegmentsRotation(toTheLeft, distance);

    QCOMPARE(stub, pipe->lastSegment());
    QCOMPARE(lengths(*pipe), QVector<float>({4.0F, 3.0F, 1.0F, 0.01F}));
    QVERIFY(isConnected(*pipe));
    QVERIFY(near(stub->endPoint(), QVector3D(0.01F, 0, 8)));
}

void tst_PipeBends::aBendInAnEmptyChainGivesNothing()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    pipe->delAllPoints();

    QVERIFY(!pipe->modifySegmentsRotation(toTheLeft, 1.0F));
    QVERIFY(!pipe->addRotationAtChainEnd(toTheLeft));
    QVERIFY(!pipe->addRotationInsideChain(toTheLeft, 1.0F));
    QCOMPARE(pipe->segmentCount(), 0);
}

void tst_PipeBends::aNewSegmentTakesThePipesRadius()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);

    QCOMPARE(static_cast<CylinderSegment*>(pipe->modifySegmentsRotation(toTheLeft, 5.0F))->radius(), 0.15F);
    QCOMPARE(static_cast<CylinderSegment*>(pipe->modifySegmentsRotation(toTheLeft, 50.0F))->radius(), 0.15F);
}

void tst_PipeBends::aSplitLinksTheFollowerToTheNewSegment()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);

    EntitySegment* rest = pipe->splitSegment(0, 1.5F);

    QCOMPARE(pipe->segments()[1], rest);
    QCOMPARE(rest->prevSegment(), pipe->segments()[0]);
    QCOMPARE(pipe->segments()[2]->prevSegment(), rest);
    QCOMPARE(lengths(*pipe), QVector<float>({1.5F, 2.5F, 3.0F, 1.0F}));
}

void tst_PipeBends::theCutOffPieceCountsTheTurnOfTheWholeTwice()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, {QVector3D(), QVector3D(4, 0, 0)}, 0.15F);

    // Its absolute turn is set as the one against its predecessor; a bend sets the real one at once.
    QVERIFY(near(pipe->splitSegment(0, 1.5F)->direction(), QVector3D(0, 0, -1)));
}

void tst_PipeBends::removingABendAtTheEndTakesTheLastSegment_data()
{
    QTest::addColumn<float>("distance");

    QTest::newRow("at the end") << 8.0F;
    QTest::newRow("rounded to the end") << 7.996F;
    QTest::newRow("behind it") << 9.0F;
}

void tst_PipeBends::removingABendAtTheEndTakesTheLastSegment()
{
    QFETCH(float, distance);
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);

    pipe->removeSegmentsRotation(distance);

    QCOMPARE(lengths(*pipe), QVector<float>({4.0F, 4.0F}));
}

void tst_PipeBends::theEndIsMetInSpiteOfRounding()
{
    Holder holder;
    QVector<QVector3D> course;
    for (int i = 0; i <= 10; ++i)
        course.append(QVector3D(0, 0, 0.1F * static_cast<float>(i)));
    Pipe* pipe = Pipe::create(&holder, course, 0.15F);
    QVERIFY(pipe->length() > 1.0F);

    pipe->removeSegmentsRotation(1.0F);

    QCOMPARE(pipe->segmentCount(), 9);
    QCOMPARE(lengths(*pipe).first(), 0.1F);
    QCOMPARE(lengths(*pipe).last(), 0.2F);
}

void tst_PipeBends::removingABendBehindTheChainAsIfInsideChangesNothing()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    const auto before = pipe->segments();

    pipe->removeRotationInsideChain(9.0F);

    QCOMPARE(pipe->segments(), before);
}

void tst_PipeBends::removingABendInsideAlwaysTakesTheSecondSegment_data()
{
    QTest::addColumn<float>("distance");

    QTest::newRow("near the begin") << 0.5F;
    QTest::newRow("at the first bend") << 4.0F;
    QTest::newRow("at the second bend") << 7.0F;
}

void tst_PipeBends::removingABendInsideAlwaysTakesTheSecondSegment()
{
    QFETCH(float, distance);
    Holder holder;
    Pipe* pipe =
        Pipe::create(&holder, {QVector3D(), QVector3D(0, 0, 4), QVector3D(3, 0, 4), QVector3D(3, 0, 5)}, 0.15F);
    EntitySegment* last = pipe->lastSegment();

    pipe->removeSegmentsRotation(distance);

    QCOMPARE(lengths(*pipe), QVector<float>({7.0F, 1.0F}));
    QCOMPARE(pipe->lastSegment(), last);
    QVERIFY(isConnected(*pipe));
    // The last segment turned right against its predecessor and does so still.
    QVERIFY(near(pipe->lastPoint(), QVector3D(-1, 0, 7)));
}

void tst_PipeBends::removingTheOnlyBendStraightensThePipe()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, {QVector3D(), QVector3D(0, 0, 8)}, 0.15F);
    pipe->modifySegmentsRotation(toTheLeft, 3.0F);

    pipe->removeSegmentsRotation(3.0F);

    QCOMPARE(lengths(*pipe), QVector<float>({8.0F}));
    QVERIFY(near(pipe->lastPoint(), QVector3D(0, 0, 8)));
}

void tst_PipeBends::removingFromASingleSegmentChangesNothing()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, {QVector3D(), QVector3D(0, 0, 8)}, 0.15F);
    const LogCapture log;

    pipe->removeSegmentsRotation(8.0F);
    QCOMPARE(log.count(1, "View3d::Pipe", "Trying to remove first segment in chain"), 1);

    pipe->removeSegmentsRotation(3.0F);
    QCOMPARE(lengths(*pipe), QVector<float>({8.0F}));
    QCOMPARE(log.lines().size(), 1);
}

void tst_PipeBends::removingFromAnEmptyChainDoesNothing()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    pipe->delAllPoints();
    const LogCapture log;

    pipe->removeSegmentsRotation(3.0F);

    QVERIFY(log.lines().isEmpty());
}

void tst_PipeBends::bendsEmitNoMeasuredPoints()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight, 0.15F);
    const MeasuredLog log(pipe);

    pipe->modifySegmentsRotation(toTheLeft, 5.0F);
    pipe->modifySegmentsRotation(toTheLeft, 50.0F);
    pipe->removeSegmentsRotation(50.0F);
    pipe->removeSegmentsRotation(1.0F);
    pipe->updatePoints(straight);

    QVERIFY(log.entries.isEmpty());
}

QTEST_GUILESS_MAIN(tst_PipeBends)

#include "tst_PipeBends.moc"
