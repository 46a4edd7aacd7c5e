#include "network/ChainLengths.h"
#include "network/ChainMath.h"
#include "network/PointSegment.h"

#include <QtTest>

#include <random>

using namespace Torvik::View3d;

Q_DECLARE_METATYPE(QVector<float>)

class tst_PipeChain : public QObject {
    Q_OBJECT

private slots:
    void aSegmentByDefaultIsAllZero();
    void aSegmentsLengthIsRoundedToCentimetres_data();
    void aSegmentsLengthIsRoundedToCentimetres();
    void aSegmentWithoutLengthHasNoDirection();
    void aDistanceFindsItsSegment_data();
    void aDistanceFindsItsSegment();
    void keptLengthsSayWhatTheListOfThemSays_data();
    void keptLengthsSayWhatTheListOfThemSays();
    void keptLengthsFollowEveryChange();
    void aDistanceTellsWhatABendThereDoes_data();
    void aDistanceTellsWhatABendThereDoes();
    void aDistanceAsFarOffAsTheToleranceHitsTheJoint();
    void onlyStraightUpAndDownIsVertical_data();
    void onlyStraightUpAndDownIsVertical();
    void aSegmentThatIsNotVerticalTakesTheWorldsUp();
    void aVerticalSegmentCarriesTheFrameBeforeItOn();
    void theInverseUndoesThePivot();
    void thePivotCarriesForwardAlongTheFirstSegment();
};

void tst_PipeChain::aSegmentByDefaultIsAllZero()
{
    const PointSegment segment;

    QCOMPARE(segment.beginPoint(), QVector3D());
    QCOMPARE(segment.endPoint(), QVector3D());
    QCOMPARE(segment.upDirection(), QVector3D());
    QCOMPARE(segment.distance(), 0.0F);
}

void tst_PipeChain::aSegmentsLengthIsRoundedToCentimetres_data()
{
    QTest::addColumn<float>("length");
    QTest::addColumn<float>("rounded");

    QTest::newRow("4 mm") << 0.004F << 0.0F;
    QTest::newRow("6 mm") << 0.006F << 0.01F;
    QTest::newRow("1.234") << 1.234F << 1.23F;
    QTest::newRow("1.236") << 1.236F << 1.24F;
    QTest::newRow("a half, exact in binary, goes away from zero") << 2.125F << 2.13F;
}

void tst_PipeChain::aSegmentsLengthIsRoundedToCentimetres()
{
    QFETCH(float, length);
    QFETCH(float, rounded);

    QCOMPARE(PointSegment(QVector3D(), QVector3D(length, 0, 0), QVector3D()).distance(), rounded);
}

void tst_PipeChain::aSegmentWithoutLengthHasNoDirection()
{
    QCOMPARE(PointSegment(QVector3D(1, 2, 3), QVector3D(1, 2, 3), QVector3D(0, 1, 0)).direction(), QVector3D());
    QCOMPARE(PointSegment(QVector3D(1, 2, 3), QVector3D(1, 2, 8), QVector3D(0, 1, 0)).direction(), QVector3D(0, 0, 1));
}

void tst_PipeChain::aDistanceFindsItsSegment_data()
{
    QTest::addColumn<QVector<float>>("lengths");
    QTest::addColumn<float>("distance");
    QTest::addColumn<int>("index");
    QTest::addColumn<float>("inner");

    const QVector<float> chain {2.0F, 3.0F, 1.0F};
    QTest::newRow("begin") << chain << 0.0F << 0 << 0.0F;
    QTest::newRow("first segment") << chain << 1.5F << 0 << 1.5F;
    QTest::newRow("on a joint: the segment behind it") << chain << 2.0F << 1 << 0.0F;
    QTest::newRow("second segment") << chain << 4.5F << 1 << 2.5F;
    QTest::newRow("exactly the end") << chain << 6.0F << -1 << 0.0F;
    QTest::newRow("behind the end") << chain << 7.5F << -1 << 1.5F;
    QTest::newRow("before the begin") << chain << -1.0F << 0 << -1.0F;
    QTest::newRow("no chain") << QVector<float>() << 1.0F << -1 << 1.0F;
    QTest::newRow("a segment without length holds nothing") << QVector<float> {0.0F, 1.0F} << 0.0F << 1 << 0.0F;
}

void tst_PipeChain::aDistanceFindsItsSegment()
{
    QFETCH(QVector<float>, lengths);
    QFETCH(float, distance);
    QFETCH(int, index);
    QFETCH(float, inner);

    const ChainMath::Place place = ChainMath::placeAtDistance(lengths, distance);

    QCOMPARE(place.index, index);
    QCOMPARE(place.inner, inner);
}

namespace {

ChainLengths keep(const QVector<float>& lengths)
{
    ChainLengths kept;
    for (const float length : lengths)
        kept.append(length);
    return kept;
}

bool same(float a, float b)
{
    return a <= b && b <= a;
}

/** Everything that can be asked of both, at distances apart by `step`. */
bool saysTheSame(const ChainLengths& kept, const QVector<float>& lengths, float step)
{
    const float whole = ChainMath::totalLength(lengths);
    if (kept.count() != lengths.size() || !same(kept.total(), whole))
        return false;
    for (int i = 0; i <= lengths.size(); ++i) {
        if (!same(kept.before(i), ChainMath::totalLength(lengths.mid(0, i))))
            return false;
    }
    for (float distance = -step; distance <= whole + step; distance += step) {
        const auto expected = ChainMath::placeAtDistance(lengths, distance);
        const auto found = kept.placeAtDistance(distance);
        if (found.index != expected.index || !same(found.inner, expected.inner))
            return false;
    }
    return true;
}

} // namespace

void tst_PipeChain::keptLengthsSayWhatTheListOfThemSays_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<float>("unit");
    QTest::newRow("none") << 0 << 0.01F;
    QTest::newRow("one") << 1 << 0.01F;
    QTest::newRow("one block, in centimetres") << ChainLengths::blockSize << 0.01F;
    // Of lengths that floats add without rounding, so that the order of adding doesn't matter.
    QTest::newRow("one more") << ChainLengths::blockSize + 1 << 0.25F;
    QTest::newRow("two blocks") << 2 * ChainLengths::blockSize << 0.25F;
    QTest::newRow("many") << 7 * ChainLengths::blockSize + 31 << 0.25F;
}

void tst_PipeChain::keptLengthsSayWhatTheListOfThemSays()
{
    QFETCH(int, count);
    QFETCH(float, unit);
    QVector<float> lengths;
    for (int i = 0; i < count; ++i)
        lengths.append(unit * float(i * 7 % 5)); // some of them have none

    QVERIFY(saysTheSame(keep(lengths), lengths, unit / 2.0F));
}

void tst_PipeChain::keptLengthsFollowEveryChange()
{
    std::mt19937 random(1);
    const auto below = [&random](int bound) { return int(random() % unsigned(bound)); };
    QVector<float> lengths(3 * ChainLengths::blockSize, 0.5F);
    ChainLengths kept = keep(lengths);

    for (int change = 0; change < 400; ++change) {
        const float length = 0.25F * float(below(5));
        const int place = below(lengths.size());
        switch (below(5)) {
        case 0:
            lengths.append(length);
            kept.append(length);
            break;
        case 1:
            lengths.insert(place, length);
            kept.insert(place, length);
            break;
        case 2:
        case 3:
            lengths[place] = length;
            kept.set(place, length);
            break;
        default:
            lengths.remove(place);
            kept.remove(place);
        }
        QVERIFY2(saysTheSame(kept, lengths, 7.125F), qPrintable(QStringLiteral("change %1").arg(change)));
    }
}

void tst_PipeChain::aDistanceTellsWhatABendThereDoes_data()
{
    QTest::addColumn<QVector<float>>("lengths");
    QTest::addColumn<float>("distance");
    QTest::addColumn<int>("action");
    QTest::addColumn<int>("index");
    QTest::addColumn<float>("remaining");

    const QVector<float> chain {2.0F, 3.0F, 1.0F};
    QTest::newRow("inside the first") << chain << 0.5F << 2 << 0 << 0.5F;
    QTest::newRow("inside the second") << chain << 4.0F << 2 << 1 << 2.0F;
    QTest::newRow("on a joint: the segment before it") << chain << 2.0F << 1 << 0 << 2.0F;
    QTest::newRow("just before a joint") << chain << 1.995F << 1 << 0 << 1.995F;
    QTest::newRow("just behind a joint") << chain << 2.005F << 1 << 0 << 2.005F;
    QTest::newRow("further before a joint") << chain << 1.98F << 2 << 0 << 1.98F;
    QTest::newRow("second joint") << chain << 5.0F << 1 << 1 << 3.0F;
    QTest::newRow("just before the end") << chain << 5.995F << 0 << -1 << 0.995F;
    QTest::newRow("at the end") << chain << 6.0F << 0 << -1 << 1.0F;
    QTest::newRow("just behind the end") << chain << 6.005F << 0 << -1 << 1.005F;
    QTest::newRow("behind the end: what is left") << chain << 8.0F << 0 << -1 << 2.0F;
    QTest::newRow("no chain") << QVector<float>() << 3.0F << 0 << -1 << 3.0F;
    QTest::newRow("begin") << chain << 0.0F << 2 << 0 << 0.0F;
}

void tst_PipeChain::aDistanceTellsWhatABendThereDoes()
{
    QFETCH(QVector<float>, lengths);
    QFETCH(float, distance);
    QFETCH(int, action);
    QFETCH(int, index);
    QFETCH(float, remaining);

    const SegmentAction result = ChainMath::nearestSegmentAction(lengths, distance, 0.01F);

    QCOMPARE(result.action, action);
    QCOMPARE(result.index, index);
    // One rounding to float of a difference that was computed in double.
    QVERIFY(qAbs(result.remaining - remaining) < 1e-6F);
    QCOMPARE(result.distance, distance);
}

void tst_PipeChain::aDistanceAsFarOffAsTheToleranceHitsTheJoint()
{
    const SegmentAction before = ChainMath::nearestSegmentAction({2.0F, 3.0F}, 1.75F, 0.25F);
    QCOMPARE(before.action, static_cast<int>(SegmentAction::UseNextSegment));
    QCOMPARE(before.index, 0);

    const SegmentAction behind = ChainMath::nearestSegmentAction({2.0F, 3.0F}, 2.25F, 0.25F);
    QCOMPARE(behind.action, static_cast<int>(SegmentAction::UseNextSegment));
    QCOMPARE(behind.index, 0);
}

void tst_PipeChain::onlyStraightUpAndDownIsVertical_data()
{
    QTest::addColumn<QVector3D>("direction");
    QTest::addColumn<bool>("vertical");

    QTest::newRow("up") << QVector3D(0, 1, 0) << true;
    QTest::newRow("down") << QVector3D(0, -1, 0) << true;
    QTest::newRow("nearly up") << QVector3D(0.009F, 0.995F, -0.009F) << true;
    QTest::newRow("leaning along x") << QVector3D(0.011F, 0.9999F, 0) << false;
    QTest::newRow("leaning along z") << QVector3D(0, -0.9999F, -0.011F) << false;
    QTest::newRow("level") << QVector3D(0, 0, 1) << false;
    QTest::newRow("none") << QVector3D() << false;
}

void tst_PipeChain::onlyStraightUpAndDownIsVertical()
{
    QFETCH(QVector3D, direction);
    QFETCH(bool, vertical);

    QCOMPARE(ChainMath::isVertical(direction), vertical);
}

void tst_PipeChain::aSegmentThatIsNotVerticalTakesTheWorldsUp()
{
    const QVector3D worldUp(0.6F, 0.8F, 0.0F);

    QCOMPARE(ChainMath::upVector(QVector3D(0, 0, 1), ChainMath::Frame(), worldUp), worldUp);
}

void tst_PipeChain::aVerticalSegmentCarriesTheFrameBeforeItOn()
{
    const QVector3D worldUp(0, 1, 0);

    // After a level segment along +z with up +y, going down leaves +z as the new up.
    QCOMPARE(ChainMath::upVector(QVector3D(0, -1, 0), {QVector3D(0, 0, 1), QVector3D(0, 1, 0)}, worldUp),
             QVector3D(0, 0, 1));
    // Without a segment before: as after one along +x, whose side is +z.
    QCOMPARE(ChainMath::upVector(QVector3D(0, 1, 0), ChainMath::Frame(), worldUp), QVector3D(-1, 0, 0));
}

void tst_PipeChain::theInverseUndoesThePivot()
{
    const QVector3D begin(30.0F, -4.0F, 12.0F);
    const QQuaternion rotation = QQuaternion::fromDirection(QVector3D(1, -0.2F, 3), QVector3D(0, 1, 0));

    const QMatrix4x4 both = ChainMath::pivot(begin, rotation) * ChainMath::inversePivot(begin, rotation);

    for (const QVector3D& point : {QVector3D(), QVector3D(100, 5, -70)})
        QVERIFY((both * point - point).length() < 1e-4F);
}

void tst_PipeChain::thePivotCarriesForwardAlongTheFirstSegment()
{
    const QVector3D begin(3, 2, 1);
    const QQuaternion rotation = QQuaternion::fromDirection(QVector3D(1, 0, 0), QVector3D(0, 1, 0));

    QVERIFY((ChainMath::pivot(begin, rotation) * QVector3D(0, 0, 5) - QVector3D(8, 2, 1)).length() < 1e-5F);
}

QTEST_APPLESS_MAIN(tst_PipeChain)

#include "tst_PipeChain.moc"
