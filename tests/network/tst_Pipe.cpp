#include "PipeFixture.h"

#include "common/LogCapture.h"
#include "network/ChainMath.h"

#include <Qt3DCore/QTransform>

#include <QtTest>

#include <memory>

using namespace Torvik::View3d;
using namespace Kx::Test;

namespace {

const QVector<QVector3D> bent {QVector3D(10, 2, 5), QVector3D(14, 2, 5), QVector3D(14, 2, 8), QVector3D(14, 1, 8)};

QVector3D translation(const QMatrix4x4& matrix)
{
    return matrix.column(3).toVector3D();
}

} // namespace

class tst_Pipe : public QObject {
    Q_OBJECT

private slots:
    void withoutPointsItIsAStubOfOneCentimetre();
    void aSinglePointGivesTheStubThere();
    void pointsBecomeAConnectedChain();
    void aSegmentBeginsAtTheRoundedEndOfTheOneBefore();
    void aChainWithoutSegmentsHasNoEnds();
    void parentTimesOwnIsTheIdentity();
    void aPlainParentGetsOneTransform();
    void aRenderableParentMovesToTheFirstPointAndKeepsItsSource();
    void withoutAParentTheErrorIsLogged();
    void worldMatrixFollowsTheParent();
    void shapePointsAreSceneCoordinates();
    void newPointsReplaceTheChain();
    void itsLengthFollowsEachSegment();
    void noPointsReplaceNothing();
    void removedSegmentsLeaveTheSceneATurnLater();
    void aPointStraightOnIsOneMetreFurther();
    void aPointBehindTheEndMakesASegment();
    void deletingOnePointDoesNothing();
    void theRadiusReachesEverySegment();
    void aRadiusWithinTheToleranceChangesNothing();
    void aColourReachesEverySegmentThatThereIs();
    void appearanceTellsWhatIsSeen();
    void aDistanceOnAJointBelongsToTheSegmentBehind();
    void aBendHitsAJointWithinACentimetre();
    void theFrameAtADistanceLiesOnThePipe();
    void theFrameAtTheLengthIsTheEnd();
    void theFrameMovesWithTheParent();
    void theFrameOfAnEmptyChainIsTheIdentityWithAnError();
    void orZeroGivesTheIdentityAtAndBehindTheEnd();
    void removingTheFirstSegmentIsAnError();
    void aRemovedSegmentLeavesItsLengthToTheOneBefore();
    void translatingTheChainKeepsItConnected();
};

void tst_Pipe::withoutPointsItIsAStubOfOneCentimetre()
{
    Qt3DCore::QEntity parent;
    const Pipe* pipe = Pipe::create(&parent, {}, 0.15F);

    QCOMPARE(Pipe::initialSegmentLength(), 0.01F);
    QCOMPARE(pipe->segmentCount(), 1);
    QCOMPARE(pipe->length(), 0.01F);
    QCOMPARE(pipe->radius(), 0.15F);
    QCOMPARE(pipe->firstPoint(), QVector3D());
    QVERIFY(near(pipe->lastPoint(), QVector3D(0, 0, 0.01F)));
    QCOMPARE(Pipe(&parent).radius(), 0.25F);
}

void tst_Pipe::aSinglePointGivesTheStubThere()
{
    Qt3DCore::QEntity parent;
    const Pipe* pipe = Pipe::create(&parent, {QVector3D(7, 8, 9)}, 0.15F);

    QCOMPARE(pipe->segmentCount(), 1);
    QCOMPARE(pipe->length(), 0.01F);
    QCOMPARE(pipe->firstPoint(), QVector3D(7, 8, 9));
    QVERIFY(near(pipe->lastPoint(), QVector3D(7, 8, 9.01F)));
}

void tst_Pipe::pointsBecomeAConnectedChain()
{
    Qt3DCore::QEntity parent;
    const Pipe* pipe = Pipe::create(&parent, bent, 0.15F);

    QCOMPARE(lengths(*pipe), QVector<float>({4.0F, 3.0F, 1.0F}));
    QCOMPARE(pipe->length(), 8.0F);
    QVERIFY(isConnected(*pipe));
    QVERIFY(!pipe->firstSegment()->prevSegment());
    QCOMPARE(pipe->firstSegment(), pipe->segments()[0]);
    QCOMPARE(pipe->beforeLastSegment(), pipe->segments()[1]);
    QCOMPARE(pipe->lastSegment(), pipe->segments()[2]);
    QVERIFY(near(pipe->lastPoint(), bent.last()));
    for (const EntitySegment* segment : pipe->segments())
        QVERIFY(segment->parentEntity() == pipe);
}

void tst_Pipe::aSegmentBeginsAtTheRoundedEndOfTheOneBefore()
{
    Holder holder;
    const Pipe* pipe = Pipe::create(&holder, {QVector3D(), QVector3D(0, 0, 3.004F), QVector3D(2, 0, 3.004F)}, 0.15F);

    QVERIFY(near(pipe->segments()[1]->beginPoint(), QVector3D(0, 0, 3), 1e-6F));
    QVERIFY(isConnected(*pipe));
}

void tst_Pipe::aChainWithoutSegmentsHasNoEnds()
{
    Qt3DCore::QEntity parent;
    Pipe* pipe = Pipe::create(&parent, bent, 0.15F);

    pipe->delAllPoints();

    QCOMPARE(pipe->segmentCount(), 0);
    QCOMPARE(pipe->length(), 0.0F);
    QVERIFY(!pipe->firstSegment());
    QVERIFY(!pipe->lastSegment());
    QVERIFY(!pipe->beforeLastSegment());
    QCOMPARE(pipe->firstPoint(), QVector3D());
    QCOMPARE(pipe->lastPoint(), QVector3D());
    QVERIFY(pipe->getShapePoints().isEmpty());
    QVERIFY(!pipe->addPoint(QVector3D(1, 1, 1)));
    pipe->addPoint();
    QCOMPARE(pipe->segmentCount(), 0);
    QCOMPARE(pipe->getActionForNearestSegment(2.0F).action, 0);
}

void tst_Pipe::parentTimesOwnIsTheIdentity()
{
    Holder holder;
    const Pipe* pipe = Pipe::create(&holder, bent, 0.15F);

    const auto own = pipe->componentsOfType<Qt3DCore::QTransform>();
    QCOMPARE(own.size(), 1);
    QVERIFY(difference(holder.transform()->matrix() * own[0]->matrix(), QMatrix4x4()) < 1e-5F);
}

void tst_Pipe::aPlainParentGetsOneTransform()
{
    Qt3DCore::QEntity parent;
    Pipe* pipe = Pipe::create(&parent, bent, 0.15F);

    const auto transforms = parent.componentsOfType<Qt3DCore::QTransform>();
    QCOMPARE(transforms.size(), 1);
    QVERIFY(near(transforms[0]->translation(), bent.first()));
    QVERIFY(near(transforms[0]->rotation().rotatedVector(QVector3D(0, 0, 1)), QVector3D(1, 0, 0)));
    QVERIFY(difference(pipe->worldMatrix(), QMatrix4x4()) < 1e-5F);

    pipe->updatePoints({QVector3D(), QVector3D(0, 0, 2)});
    QCOMPARE(parent.componentsOfType<Qt3DCore::QTransform>().size(), 1);
    QVERIFY(near(parent.componentsOfType<Qt3DCore::QTransform>().value(0)->translation(), QVector3D()));
}

void tst_Pipe::aRenderableParentMovesToTheFirstPointAndKeepsItsSource()
{
    Holder holder;
    holder.setTransformFlags(TransformFlags::Manual);

    Pipe::create(&holder, bent, 0.15F);

    QVERIFY(near(holder.position(), bent.first()));
    QVERIFY(near(holder.rotation().rotatedVector(QVector3D(0, 0, 1)), QVector3D(1, 0, 0)));
    QCOMPARE(holder.transformFlags(), static_cast<int>(TransformFlags::Manual));
    QCOMPARE(holder.componentsOfType<Qt3DCore::QTransform>().size(), 1);
}

void tst_Pipe::withoutAParentTheErrorIsLogged()
{
    const LogCapture log;
    const std::unique_ptr<Pipe> pipe(Pipe::create(nullptr, bent, 0.15F));

    QCOMPARE(log.count(1, "View3d::Pipe", "Object is not Renderable type"), 1);
    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(pipe->worldMatrix(), QMatrix4x4());
    QCOMPARE(pipe->segmentCount(), 3);
}

void tst_Pipe::worldMatrixFollowsTheParent()
{
    Holder holder;
    const Pipe* pipe = Pipe::create(&holder, bent, 0.15F);
    QVERIFY(difference(pipe->worldMatrix(), QMatrix4x4()) < 1e-5F);

    holder.setPosition(bent.first() + QVector3D(1, 2, 3), 0);

    QVERIFY(near(pipe->worldMatrix() * bent.last(), bent.last() + QVector3D(1, 2, 3)));
    // What is drawn: parent, own and segment transforms one after another.
    const QMatrix4x4 drawn = holder.transform()->matrix() *
                             pipe->componentsOfType<Qt3DCore::QTransform>().value(0)->matrix() *
                             pipe->segments()[1]->transform()->matrix();
    QVERIFY(near(drawn * QVector3D(0, 0, 3), bent[2] + QVector3D(1, 2, 3)));
}

void tst_Pipe::shapePointsAreSceneCoordinates()
{
    Holder holder;
    const Pipe* pipe = Pipe::create(&holder, bent, 0.15F);

    QCOMPARE(pipe->getShapePoints().size(), 4);
    for (int i = 0; i < 4; ++i)
        QVERIFY(near(pipe->getShapePoints()[i], bent[i]));

    // A half turn of the holder about the vertical through its first point.
    holder.setRotation(QQuaternion::fromAxisAndAngle(0, 1, 0, 180.0F) * holder.rotation(), 0);
    QVERIFY(near(pipe->getShapePoints()[0], bent[0]));
    QVERIFY(near(pipe->getShapePoints()[1], QVector3D(6, 2, 5)));
    QVERIFY(near(pipe->getShapePoints()[3], QVector3D(6, 1, 2)));
    QVERIFY(near(pipe->lastPoint(), bent.last()));
}

void tst_Pipe::itsLengthFollowsEachSegment()
{
    QVector<QVector3D> points;
    for (int i = 0; i <= 300; ++i)
        points.append({0.0F, 0.0F, float(i)});
    Holder holder;
    Pipe* const pipe = Pipe::create(&holder, points, 0.2F);
    QCOMPARE(pipe->length(), 300.0F);
    float inner = 250.25F;
    QCOMPARE(pipe->findSegmentIdxByDistance(inner), 250);
    QCOMPARE(inner, 0.25F);

    pipe->segments()[7]->setLength(3.0F);
    QCOMPARE(pipe->length(), 302.0F);
    pipe->splitSegment(200, 0.25F);
    QCOMPARE(pipe->length(), 302.0F);
    pipe->segments()[201]->setLength(0.5F);
    QCOMPARE(pipe->length(), 301.75F);
    pipe->removeSegment(8);
    pipe->lastSegment()->setLength(2.0F);
    QCOMPARE(pipe->length(), 302.75F);
    pipe->modifySegmentsRotation(QQuaternion::fromAxisAndAngle(0.0F, 1.0F, 0.0F, 10.0F), 400.0F);
    QCOMPARE(pipe->length(), 302.76F);
    inner = 5.5F;
    QCOMPARE(pipe->findSegmentIdxByDistance(inner), 5);
    inner = 252.5F;
    QCOMPARE(lengths(*pipe).size(), pipe->segmentCount());
    QCOMPARE(pipe->findSegmentIdxByDistance(inner), ChainMath::placeAtDistance(lengths(*pipe), 252.5F).index);
    QCOMPARE(inner, ChainMath::placeAtDistance(lengths(*pipe), 252.5F).inner);

    EntitySegment* const gone = pipe->lastSegment();
    pipe->updatePoints({{0, 0, 0}, {0, 0, 2}});
    gone->setLength(50.0F);
    QCOMPARE(pipe->length(), 2.0F);
}

void tst_Pipe::newPointsReplaceTheChain()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, bent, 0.15F);

    pipe->updatePoints({QVector3D(0, 0, 1), QVector3D(0, 0, 6)});

    QCOMPARE(pipe->findChildren<EntitySegment*>().size(), 4);
    deleteLatered();
    QCOMPARE(pipe->findChildren<EntitySegment*>().size(), 1);
    QCOMPARE(lengths(*pipe), QVector<float>({5.0F}));
    QVERIFY(near(holder.position(), QVector3D(0, 0, 1)));
    QVERIFY(difference(pipe->worldMatrix(), QMatrix4x4()) < 1e-5F);
    QCOMPARE(static_cast<CylinderSegment*>(pipe->firstSegment())->radius(), 0.15F);
}

void tst_Pipe::noPointsReplaceNothing()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, bent, 0.15F);
    const auto before = pipe->segments();

    pipe->updatePoints({});

    QCOMPARE(pipe->segments(), before);
}

void tst_Pipe::removedSegmentsLeaveTheSceneATurnLater()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, bent, 0.15F);
    const QPointer<EntitySegment> segment = pipe->lastSegment();

    pipe->removeSegment(2);

    QCOMPARE(pipe->segmentCount(), 2);
    QVERIFY(segment);
    deleteLatered();
    QVERIFY(!segment);
}

void tst_Pipe::aPointStraightOnIsOneMetreFurther()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, bent, 0.15F);

    pipe->addPoint();

    QCOMPARE(lengths(*pipe), QVector<float>({4.0F, 3.0F, 1.0F, 1.0F}));
    QVERIFY(near(pipe->lastPoint(), bent.last() + QVector3D(0, -1, 0)));
    QVERIFY(isConnected(*pipe));
}

void tst_Pipe::aPointBehindTheEndMakesASegment()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, bent, 0.15F);
    MeasuredLog log(pipe);

    const EntitySegment* added = pipe->addPoint(bent.last() + QVector3D(0, 0, 2));

    QCOMPARE(added, pipe->lastSegment());
    QCOMPARE(added->length(), 2.0F);
    QCOMPARE(static_cast<const CylinderSegment*>(added)->radius(), 0.15F);
    QVERIFY(isConnected(*pipe));
    QVERIFY(log.entries.isEmpty());
}

void tst_Pipe::deletingOnePointDoesNothing()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, bent, 0.15F);

    QCOMPARE(pipe->delPoint(1), 0);
    QCOMPARE(pipe->segmentCount(), 3);
}

void tst_Pipe::theRadiusReachesEverySegment()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, bent, 0.15F);

    pipe->setRadius(0.5F);

    QCOMPARE(pipe->radius(), 0.5F);
    for (const EntitySegment* segment : pipe->segments())
        QCOMPARE(static_cast<const CylinderSegment*>(segment)->radius(), 0.5F);
}

void tst_Pipe::aRadiusWithinTheToleranceChangesNothing()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, bent, 0.15F);
    // One part in a hundred thousand is the limit, without a bias: 0.15 + 1e-6 is inside it, 0.15 + 3e-6 not.
    pipe->setRadius(0.15F + 1e-6F);
    QCOMPARE(pipe->radius(), 0.15F);
    QVERIFY(!(static_cast<CylinderSegment*>(pipe->lastSegment())->radius() > 0.15F));

    pipe->setRadius(0.15F + 3e-6F);
    QVERIFY(pipe->radius() > 0.15F);
    QVERIFY(static_cast<CylinderSegment*>(pipe->lastSegment())->radius() > 0.15F);
}

void tst_Pipe::aColourReachesEverySegmentThatThereIs()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, bent, 0.15F);

    pipe->setColor(QColor(60, 60, 255));
    pipe->addPoint();

    const auto colors = pipe->appearance().colors;
    QCOMPARE(colors.size(), 4);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(colors[i], QColor(60, 60, 255));
    QCOMPARE(colors[3], QColor::fromRgbF(0, 0.9, 0, 1));
}

void tst_Pipe::appearanceTellsWhatIsSeen()
{
    Holder holder;
    const Pipe* pipe = Pipe::create(&holder, bent, 0.15F);
    holder.setPosition(bent.first() + QVector3D(1, 2, 3), 0);

    const PipeAppearance look = pipe->appearance();

    QCOMPARE(look.radius, 0.15F);
    QCOMPARE(look.points, pipe->getShapePoints());
    QVERIFY(near(look.points.last(), bent.last() + QVector3D(1, 2, 3)));
}

void tst_Pipe::aDistanceOnAJointBelongsToTheSegmentBehind()
{
    Holder holder;
    const Pipe* pipe = Pipe::create(&holder, bent, 0.15F);

    float distance = 4.0F;
    QCOMPARE(pipe->findSegmentIdxByDistance(distance), 1);
    QCOMPARE(distance, 0.0F);

    distance = 9.5F;
    QCOMPARE(pipe->findSegmentIdxByDistance(distance), -1);
    QCOMPARE(distance, 1.5F);

    const SegmentAction action = pipe->getActionForNearestSegment(4.0F);
    QCOMPARE(action.action, static_cast<int>(SegmentAction::UseNextSegment));
    QCOMPARE(action.index, 0);
}

void tst_Pipe::aBendHitsAJointWithinACentimetre()
{
    Holder holder;
    const Pipe* pipe = Pipe::create(&holder, bent, 0.15F);
    const auto at = [pipe](float distance) {
        const SegmentAction action = pipe->getActionForNearestSegment(distance);
        return qMakePair(int(action.action), action.index);
    };

    QCOMPARE(at(3.995F), qMakePair(int(SegmentAction::UseNextSegment), 0));
    QCOMPARE(at(3.98F), qMakePair(int(SegmentAction::SplitSegment), 0));
    QCOMPARE(at(4.02F), qMakePair(int(SegmentAction::SplitSegment), 1));
    QCOMPARE(at(7.995F), qMakePair(int(SegmentAction::AddAtChainEnd), -1));
}

void tst_Pipe::theFrameAtADistanceLiesOnThePipe()
{
    Holder holder;
    const Pipe* pipe = Pipe::create(&holder, bent, 0.15F);

    const QMatrix4x4 frame = pipe->getTransformMatrixAtDistance(5.5F);

    QVERIFY(near(translation(frame), QVector3D(14, 2, 6.5F)));
    QVERIFY(near(frame.mapVector(QVector3D(0, 0, 1)), QVector3D(0, 0, 1)));
    QVERIFY(near(frame.mapVector(QVector3D(0, 1, 0)), QVector3D(0, 1, 0)));
    QVERIFY(difference(frame, pipe->getTransformMatrixAtDistanceOrZero(5.5F)) < 1e-6F);
    QVERIFY(near(translation(pipe->getTransformMatrixAtDistance(0.0F)), bent.first()));
    QVERIFY(near(translation(pipe->getTransformMatrixAtDistance(-1.0F)), QVector3D(9, 2, 5)));
}

void tst_Pipe::theFrameAtTheLengthIsTheEnd()
{
    Holder holder;
    const Pipe* pipe = Pipe::create(&holder, bent, 0.15F);
    const LogCapture log;

    QVERIFY(near(translation(pipe->getTransformMatrixAtDistance(8.0F)), bent.last()));
    QVERIFY(near(translation(pipe->getTransformMatrixAtDistance(80.0F)), bent.last()));
    QVERIFY(near(pipe->getTransformMatrixAtDistance(8.0F).mapVector(QVector3D(0, 0, 1)), QVector3D(0, -1, 0)));
    QVERIFY(log.lines().isEmpty());
}

void tst_Pipe::theFrameMovesWithTheParent()
{
    Holder holder;
    const Pipe* pipe = Pipe::create(&holder, bent, 0.15F);
    holder.setPosition(bent.first() + QVector3D(0, 10, 0), 0);

    QVERIFY(near(translation(pipe->getTransformMatrixAtDistance(5.5F)), QVector3D(14, 12, 6.5F)));
}

void tst_Pipe::theFrameOfAnEmptyChainIsTheIdentityWithAnError()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, bent, 0.15F);
    pipe->delAllPoints();
    const LogCapture log;

    QCOMPARE(pipe->getTransformMatrixAtDistance(1.0F), QMatrix4x4());
    QCOMPARE(log.count(1, "View3d::Pipe", "Pipe transform return identity matrix but should NOT"), 1);
    QCOMPARE(pipe->getTransformMatrixAtDistanceOrZero(-1.0F), QMatrix4x4());
    QCOMPARE(log.lines().size(), 1);
}

void tst_Pipe::orZeroGivesTheIdentityAtAndBehindTheEnd()
{
    Holder holder;
    const Pipe* pipe = Pipe::create(&holder, bent, 0.15F);
    const LogCapture log;

    QCOMPARE(pipe->getTransformMatrixAtDistanceOrZero(8.0F), QMatrix4x4());
    QCOMPARE(pipe->getTransformMatrixAtDistanceOrZero(9.0F), QMatrix4x4());
    // Within one part in a hundred thousand it is the end.
    QCOMPARE(pipe->getTransformMatrixAtDistanceOrZero(7.99998F), QMatrix4x4());
    QVERIFY(near(translation(pipe->getTransformMatrixAtDistanceOrZero(7.99F)), QVector3D(14, 1.01F, 8)));
    QVERIFY(log.lines().isEmpty());
}

void tst_Pipe::removingTheFirstSegmentIsAnError()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, bent, 0.15F);
    const LogCapture log;

    pipe->removeSegment(0);
    pipe->removeSegment(-1);

    QCOMPARE(log.count(1, "View3d::Pipe", "Trying to remove first segment in chain"), 2);
    QCOMPARE(pipe->segmentCount(), 3);

    pipe->removeSegment(17);
    QCOMPARE(pipe->segmentCount(), 3);
}

void tst_Pipe::aRemovedSegmentLeavesItsLengthToTheOneBefore()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, bent, 0.15F);
    EntitySegment* behind = pipe->lastSegment();

    pipe->removeSegment(1);

    QCOMPARE(lengths(*pipe), QVector<float>({7.0F, 1.0F}));
    QCOMPARE(behind->prevSegment(), pipe->firstSegment());
    QCOMPARE(pipe->length(), 8.0F);
}

void tst_Pipe::translatingTheChainKeepsItConnected()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, bent, 0.15F);

    pipe->translateAllSegments(QVector3D(1, 0, 0));
    QVERIFY(isConnected(*pipe));
    QVERIFY(near(pipe->firstPoint(), bent.first() + QVector3D(1, 0, 0)));
    QVERIFY(near(pipe->lastPoint(), bent.last() + QVector3D(1, 0, 0)));

    pipe->translateChainFromIdx(2, QVector3D(0, 0, 5));
    QVERIFY(isConnected(*pipe));
    QVERIFY(near(pipe->segments()[2]->beginPoint(), bent[2] + QVector3D(1, 0, 0)));
    // sqrt(1 + 25) rounded to 5.10
    QCOMPARE(pipe->lastSegment()->length(), 5.1F);
}

QTEST_GUILESS_MAIN(tst_Pipe)

#include "tst_Pipe.moc"
