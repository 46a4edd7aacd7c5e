#include "PipeFixture.h"

#include "network/StrokeMath.h"

#include <Qt3DCore/QTransform>
#include <QtTest>

using namespace Torvik::View3d;
using namespace Kx::Test;

namespace {

constexpr float radius = 0.15F;

/** From the origin along +z, every `step` metres. */
QVector<QVector3D> straight(int segments, float step = 0.01F)
{
    QVector<QVector3D> points;
    for (int i = 0; i <= segments; ++i)
        points.append(QVector3D(0, 0, step * static_cast<float>(i)));
    return points;
}

CylinderSegment* segmentAt(const Pipe& pipe, int index)
{
    return qobject_cast<CylinderSegment*>(pipe.segments().value(index));
}

int drawnSegments(const Pipe& pipe)
{
    int count = 0;
    for (int i = 0; i < pipe.segmentCount(); ++i)
        count += segmentAt(pipe, i)->isDrawn() ? 1 : 0;
    return count;
}

/** Begin and end of a drawn cylinder, in the frame of the chain. */
QVector3D drawnPoint(const CylinderSegment& segment, float end)
{
    return segment.transform()->matrix() * segment.cylinderTransform()->matrix() * QVector3D(0, end, 0);
}

/** Every segment is covered by the cylinder of the drawn one before it, and the cylinders join. */
bool isDrawnWhole(const Pipe& pipe)
{
    QVector3D reached = pipe.firstPoint();
    for (int i = 0; i < pipe.segmentCount(); ++i) {
        const CylinderSegment* segment = segmentAt(pipe, i);
        if (!segment->isDrawn())
            continue;
        if (!near(drawnPoint(*segment, -0.5F), reached) || !near(segment->beginPoint(), reached))
            return false;
        reached = drawnPoint(*segment, 0.5F);
    }
    return near(reached, pipe.lastPoint());
}

} // namespace

class tst_PipeStrokes : public QObject {
    Q_OBJECT

private slots:
    void piecesInALineLookStraight_data();
    void piecesInALineLookStraight();
    void aCourseOfCentimetresTakesFewNodes();
    void aMeasuredRunTakesFewNodes();
    void longSegmentsAreDrawnByThemselves();
    void aBendBeginsAnotherStroke();
    void theChainIsTheSameAsWithoutStrokes();
    void theEndOfAChainIsDrawnByItself();
    void aSegmentThatChangesGivesAllTheirDrawingBack();
    void aBendInsideAStrokeIsDrawnWhereItIs();
    void removedSegmentsAreDrawnNoMore();
    void measuringAnewInsideACourseOfCentimetresKeepsItWhole();
    void aColourReachesAllAndKeepsThemTogether();
    void oneSegmentCanHaveAColourOfItsOwn();
    void aRadiusReachesAllAndKeepsThemTogether();
    void aSegmentThatHoldsSomethingKeepsItsPlace();
    void aFirstSegmentThatDiesLeavesTheOthers();
};

void tst_PipeStrokes::piecesInALineLookStraight_data()
{
    QTest::addColumn<QVector<QVector3D>>("points");
    QTest::addColumn<bool>("expected");

    QTest::newRow("nothing") << QVector<QVector3D>() << false;
    QTest::newRow("one piece") << straight(1) << true;
    QTest::newRow("ten of a centimetre") << straight(10) << true;
    QTest::newRow("ten of five centimetres") << straight(10, 0.05F) << true;
    QTest::newRow("longer than a stroke") << straight(11, 0.05F) << false;
    QTest::newRow("long pieces") << straight(2, 0.06F) << false;
    QTest::newRow("as many as a stroke takes") << straight(64, 0.005F) << true;
    QTest::newRow("one too many") << straight(65, 0.005F) << false;
    QTest::newRow("4 mm aside") << QVector<QVector3D> {{}, {0.004F, 0, 0.02F}, {0, 0, 0.04F}} << true;
    QTest::newRow("6 mm aside") << QVector<QVector3D> {{}, {0.006F, 0, 0.02F}, {0, 0, 0.04F}} << false;
    QTest::newRow("forth and back") << QVector<QVector3D> {{}, {0, 0, 0.04F}, {0, 0, 0.01F}} << false;
    QTest::newRow("back and further") << QVector<QVector3D> {{}, {0, 0, 0.04F}, {0, 0, 0.02F}, {0, 0, 0.06F}} << true;
    QTest::newRow("without length") << QVector<QVector3D> {{}, {}, {}} << true;
}

void tst_PipeStrokes::piecesInALineLookStraight()
{
    QFETCH(QVector<QVector3D>, points);
    QFETCH(bool, expected);

    QCOMPARE(StrokeMath::looksStraight(points), expected);
}

void tst_PipeStrokes::aCourseOfCentimetresTakesFewNodes()
{
    Holder holder;
    const Pipe* pipe = Pipe::create(&holder, straight(1000), radius);

    QCOMPARE(pipe->segmentCount(), 1000);
    // Twenty strokes of half a metre, and the last segment by itself; sums of floats may end a stroke earlier.
    QVERIFY2(drawnSegments(*pipe) <= 22, qPrintable(QString::number(drawnSegments(*pipe))));
    QVERIFY(pipe->findChildren<Qt3DCore::QNode*>().size() < 1000 + 22 * 6);
    QVERIFY(isDrawnWhole(*pipe));
}

void tst_PipeStrokes::aMeasuredRunTakesFewNodes()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, {QVector3D()}, radius);
    pipe->startSensorMeasurement(Vector3D<double>(0.0, 0.0, 0.01), QVector3D(), 0.01F);

    for (int i = 2; i <= 500; ++i) {
        const float way = 0.01F * static_cast<float>(i);
        QVERIFY(pipe->addPoint(QVector3D(0, 0, way), way + 1.0F));
    }

    QCOMPARE(pipe->segmentCount(), 500);
    QVERIFY2(drawnSegments(*pipe) <= 12, qPrintable(QString::number(drawnSegments(*pipe))));
    QVERIFY(isConnected(*pipe));
    QVERIFY(isDrawnWhole(*pipe));
}

void tst_PipeStrokes::longSegmentsAreDrawnByThemselves()
{
    Holder holder;
    const Pipe* pipe = Pipe::create(&holder, straight(30, 0.1F), radius);

    QCOMPARE(drawnSegments(*pipe), 30);
}

void tst_PipeStrokes::aBendBeginsAnotherStroke()
{
    QVector<QVector3D> points = straight(10);
    for (int i = 1; i <= 10; ++i)
        points.append(QVector3D(0.01F * static_cast<float>(i), 0, 0.1F));
    Holder holder;

    const Pipe* pipe = Pipe::create(&holder, points, radius);

    QVERIFY(segmentAt(*pipe, 10)->isDrawn() || segmentAt(*pipe, 11)->isDrawn());
    for (const CylinderSegment* segment : pipe->findChildren<CylinderSegment*>()) {
        if (segment->isDrawn())
            QVERIFY(StrokeMath::distanceFromPiece(drawnPoint(*segment, 0.5F), {0, 0, 0}, {0, 0, 0.1F}) < 0.011F ||
                    near(drawnPoint(*segment, 0.5F).z(), 0.1F, 0.006F));
    }
}

void tst_PipeStrokes::theChainIsTheSameAsWithoutStrokes()
{
    Holder together;
    Holder alone;
    Pipe* pipe = Pipe::create(&together, straight(100), radius);
    Pipe* other = Pipe::create(&alone, straight(100), radius);
    for (EntitySegment* segment : other->segments())
        qobject_cast<CylinderSegment*>(segment)->drawAlone();

    QCOMPARE(drawnSegments(*other), 100);
    QVERIFY(drawnSegments(*pipe) < 10);
    QCOMPARE(pipe->getShapePoints(), other->getShapePoints());
    QCOMPARE(pipe->appearance().colors, other->appearance().colors);
    QCOMPARE(pipe->length(), other->length());
    for (const float distance : {0.0F, 0.005F, 0.3F, 0.777F, 1.0F, 2.0F}) {
        QVERIFY(difference(pipe->getTransformMatrixAtDistance(distance),
                           other->getTransformMatrixAtDistance(distance)) < 1e-6F);
        QCOMPARE(pipe->getActionForNearestSegment(distance).index, other->getActionForNearestSegment(distance).index);
    }
}

void tst_PipeStrokes::theEndOfAChainIsDrawnByItself()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight(20), radius);

    QVERIFY(segmentAt(*pipe, 19)->isDrawn());
    pipe->lastSegment()->setLength(0.5F);

    QVERIFY(drawnSegments(*pipe) == 2);
    QVERIFY(isDrawnWhole(*pipe));
}

void tst_PipeStrokes::aSegmentThatChangesGivesAllTheirDrawingBack()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight(20), radius);
    QVERIFY(!segmentAt(*pipe, 7)->isDrawn());

    pipe->segments()[7]->setLength(0.02F);
    pipe->recalcChainFromIdx(8);

    QCOMPARE(drawnSegments(*pipe), 20);
    QVERIFY(isConnected(*pipe));
    QVERIFY(isDrawnWhole(*pipe));
    for (int i = 0; i < 20; ++i) {
        // Two entities, three transforms, and the ball; the first has none.
        QCOMPARE(segmentAt(*pipe, i)->findChildren<Qt3DCore::QNode*>().size(), i == 0 ? 3 : 5);
        QCOMPARE(segmentAt(*pipe, i)->radius(), radius);
    }
}

void tst_PipeStrokes::aBendInsideAStrokeIsDrawnWhereItIs()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight(100), radius);

    pipe->modifySegmentsRotation(QQuaternion::fromAxisAndAngle(0, 1, 0, 90.0F), 0.25F);

    QCOMPARE(pipe->length(), 1.0F);
    QVERIFY(isConnected(*pipe));
    QVERIFY(isDrawnWhole(*pipe));
    QVERIFY(near(pipe->lastPoint(), QVector3D(0.75F, 0, 0.25F), 0.001F));
}

void tst_PipeStrokes::removedSegmentsAreDrawnNoMore()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight(100, 0.04F), radius);

    pipe->removeSegment(30);
    QVERIFY(isDrawnWhole(*pipe));
    QVERIFY(isConnected(*pipe));

    pipe->removeSegment(pipe->segmentCount() - 1);
    QVERIFY(isDrawnWhole(*pipe));

    pipe->splitSegment(70, 0.02F);
    QVERIFY(isDrawnWhole(*pipe));

    pipe->delAllPoints();
    deleteLatered();
    QVERIFY(pipe->findChildren<EntitySegment*>().isEmpty());
}

void tst_PipeStrokes::measuringAnewInsideACourseOfCentimetresKeepsItWhole()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight(100, 0.04F), radius);
    pipe->startSensorMeasurement(Vector3D<double>(0.0, 0.0, 0.3), QVector3D(), 0.3F);

    for (int i = 31; i < 300; ++i) {
        const float way = 0.01F * static_cast<float>(i);
        pipe->addPoint(QVector3D(0, 0, way), way);
        QVERIFY2(isDrawnWhole(*pipe), qPrintable(QString::number(i)));
    }

    // Behind the place of the measurement up to a stroke's length is taken apart.
    QVERIFY2(drawnSegments(*pipe) < 40, qPrintable(QString::number(drawnSegments(*pipe))));
    deleteLatered();
    QCOMPARE(pipe->findChildren<EntitySegment*>().size(), pipe->segmentCount());
}

void tst_PipeStrokes::aColourReachesAllAndKeepsThemTogether()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight(20), radius);
    const int drawn = drawnSegments(*pipe);

    pipe->setColor(QColor(60, 60, 255));

    QCOMPARE(drawnSegments(*pipe), drawn);
    QCOMPARE(pipe->appearance().colors, QVector<QColor>(20, QColor(60, 60, 255)));
    segmentAt(*pipe, 5)->drawAlone();
    QCOMPARE(pipe->appearance().colors, QVector<QColor>(20, QColor(60, 60, 255)));
}

void tst_PipeStrokes::oneSegmentCanHaveAColourOfItsOwn()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight(20), radius);

    segmentAt(*pipe, 5)->setColor(QColor(60, 60, 255));

    QVERIFY(segmentAt(*pipe, 5)->isDrawn());
    QCOMPARE(pipe->appearance().colors.count(QColor(60, 60, 255)), 1);
    QVERIFY(isDrawnWhole(*pipe));
}

void tst_PipeStrokes::aRadiusReachesAllAndKeepsThemTogether()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight(20), radius);
    const int drawn = drawnSegments(*pipe);

    pipe->setRadius(0.4F);

    QCOMPARE(drawnSegments(*pipe), drawn);
    for (int i = 0; i < 20; ++i)
        QCOMPARE(segmentAt(*pipe, i)->radius(), 0.4F);
    QVERIFY(near(segmentAt(*pipe, 0)->cylinderTransform()->scale3D().x(), 0.4F));
    QVERIFY(isDrawnWhole(*pipe));
}

void tst_PipeStrokes::aSegmentThatHoldsSomethingKeepsItsPlace()
{
    Holder holder;
    Pipe* pipe = Pipe::create(&holder, straight(20), radius);
    new Qt3DCore::QEntity(pipe->lastSegment());

    for (int i = 21; i < 30; ++i)
        pipe->addPoint(QVector3D(0, 0, 0.01F * static_cast<float>(i)));

    QVERIFY(segmentAt(*pipe, 19)->isDrawn());
    QVERIFY(isDrawnWhole(*pipe));
}

void tst_PipeStrokes::aFirstSegmentThatDiesLeavesTheOthers()
{
    Qt3DCore::QEntity parent;
    auto* first = new CylinderSegment(&parent, nullptr, QVector3D(), QVector3D(0, 0, 0.02F));
    auto* second = new CylinderSegment(&parent, first, QVector3D(0, 0, 0.02F), QVector3D(0, 0, 0.04F));
    QVERIFY(second->letPreviousDraw());
    QVERIFY(!second->isDrawn());

    delete first;
    second->drawAlone();
    second->draw();

    QVERIFY(second->isDrawn());
    QVERIFY(near(drawnPoint(*second, -0.5F), QVector3D(0, 0, 0.02F)));
    delete second;
}

QTEST_GUILESS_MAIN(tst_PipeStrokes)

#include "tst_PipeStrokes.moc"
