#include "measurement/PlacedSection.h"

#include "common/LogCapture.h"
#include "measurement/ShapeAccess.h"

#include <QtTest>

#include <memory>

using namespace Torvik::View3d;
using Torvik::Database::ProjectStore;
using Shape = QVector<QVector<QVector3D>>;

/** When and how a changed shape is written into the project. */
class tst_ShapeWriting : public QObject {
    Q_OBJECT

private slots:
    void aBurstOfChangesIsWrittenOnceWithTheLast();
    void everyChangeStartsTheWaitAnew();
    void anUnchangedShapeIsNotWritten();
    void theStoredShapeDoesNotReplaceThePendingOne();
    void whatIsLeftForLaterIsWrittenAsItIsThen();
    void aShapeThatIsBackWhenLaterComesIsNotWritten();
    void whatIsLeftForLaterIsWrittenIfItsObjectGoes();
    void aShapeAfterAClearingWins();
    void clearingLeavesNothing();
    void withoutPositionNothingIsStored_data();
    void withoutPositionNothingIsStored();
    void anObservationNeedsNoPosition();
    void theFirstPointCarriesSourceAndDirection_data();
    void theFirstPointCarriesSourceAndDirection();
    void whatWasReadIsWrittenAgainAsItStood_data();
    void whatWasReadIsWrittenAgainAsItStood();
    void theMirrorIsWrittenToo();
    void severalPolylinesAreStoredTogether();
    void emptyPolylinesAreLeftOut();
    void anObjectThatDiesTakesItsChangesAlong();
    void everyInstanceWaitsForItself();
    void aRecordThatIsDeletedMeanwhileDoesNoHarm();
    void aProjectThatIsClosedMeanwhileDoesNoHarm();
};

void tst_ShapeWriting::aBurstOfChangesIsWrittenOnceWithTheLast()
{
    const ShapeProject project;
    tieScene();
    WriteListener listener;
    ShapeAccess access;
    const auto section = placedSection();
    QElapsedTimer sinceLast;

    for (int i = 1; i <= 20; ++i) {
        section->shape = {{{0, 0, 0}, {0, 0, float(i)}}};
        sinceLast.start();
        access.writePoints(section.get());
    }

    QVERIFY(project.record("i1")->readValue(shapeColumn).toString().isEmpty());
    QVERIFY(waitForWrite(listener, 1));
    QVERIFY2(sinceLast.elapsed() >= 690, qPrintable(QString::number(sinceLast.elapsed())));
    QCOMPARE(listener.writes.size(), 1);
    QCOMPARE(listener.countOf("i1", 5000), 1);
    QCOMPARE(listener.writes.first().key, shapeColumn);
    QCOMPARE(project.inspectionShapeInFile().toString(),
             QStringLiteral("LINESTRING ZM(500000 5500000 100 132,500000 5500020 100 0)"));
}

void tst_ShapeWriting::everyChangeStartsTheWaitAnew()
{
    const ShapeProject project;
    tieScene();
    WriteListener listener;
    ShapeAccess access;
    const auto section = placedSection();
    QElapsedTimer sinceFirst;
    sinceFirst.start();
    access.writePoints(section.get());

    QTimer::singleShot(400, section.get(), [&] {
        section->shape = {{{0, 0, 0}, {0, 0, 9}}};
        access.writePoints(section.get());
    });

    QVERIFY(waitForWrite(listener, 1));
    QVERIFY2(sinceFirst.elapsed() >= 1090, qPrintable(QString::number(sinceFirst.elapsed())));
    QCOMPARE(listener.writes.size(), 1);
    QVERIFY(project.inspectionShapeInFile().toString().contains("5500009"));
}

void tst_ShapeWriting::anUnchangedShapeIsNotWritten()
{
    ShapeProject project;
    tieScene();
    WriteListener listener;
    ShapeAccess access;
    const auto section = placedSection();
    access.writePoints(section.get());
    QVERIFY(waitForWrite(listener, 1));

    access.writePoints(section.get());

    // A write that waited in spite of that would undo this one.
    project.store("i1", shapeColumn, threePoints);
    ShapeAccess later;
    ShapedObject node("node", "n1");
    node.setTransformFlags(4);
    node.shape = {{{1, 0, 0}}};
    later.writePoints(&node);
    QVERIFY(QTest::qWaitFor([&] { return listener.countOf("n1", 5000) == 1; }, 3000));
    QCOMPARE(listener.countOf("i1", 5000), 1);
    QCOMPARE(project.inspectionShapeInFile().toString(), threePoints);
}

void tst_ShapeWriting::theStoredShapeDoesNotReplaceThePendingOne()
{
    ShapeProject project;
    tieScene();
    WriteListener listener;
    ShapeAccess access;
    const auto section = placedSection();
    access.writePoints(section.get());
    QVERIFY(waitForWrite(listener, 1));
    const Shape stored = section->shape;

    section->shape = {{{0, 0, 0}, {0, 0, 9}}};
    access.writePoints(section.get());
    section->shape = stored;
    access.writePoints(section.get());

    QVERIFY(waitForWrite(listener, 2));
    QVERIFY(project.inspectionShapeInFile().toString().contains("5500009"));
}

void tst_ShapeWriting::whatIsLeftForLaterIsWrittenAsItIsThen()
{
    ShapeProject project;
    tieScene();
    WriteListener listener;
    ShapeAccess access;
    const auto section = placedSection();

    access.writePointsLater(section.get());
    section->shape = {{{0, 0, 0}, {0, 0, 9}}};

    QVERIFY(waitForWrite(listener, 1));
    QVERIFY(project.inspectionShapeInFile().toString().contains("5500009"));
    access.writePointsLater(nullptr);
}

void tst_ShapeWriting::aShapeThatIsBackWhenLaterComesIsNotWritten()
{
    ShapeProject project;
    tieScene();
    WriteListener listener;
    ShapeAccess access;
    const auto section = placedSection();
    access.writePoints(section.get());
    QVERIFY(waitForWrite(listener, 1));
    const int written = listener.writes.size();
    const Shape stored = section->shape;

    section->shape = {{{0, 0, 0}, {0, 0, 9}}};
    access.writePointsLater(section.get());
    section->shape = stored;
    access.writePointsLater(section.get());

    // A write that began to wait behind it is done, so this one has had its turn.
    ShapeAccess other;
    ShapedObject node("node", "n1");
    node.setTransformFlags(4);
    node.shape = {{{1, 0, 0}}};
    other.writePoints(&node);
    QVERIFY(QTest::qWaitFor([&] { return listener.countOf("n1", 5000) == 1; }, 3000));
    QCOMPARE(listener.countOf("i1", 5000), 1);
    QCOMPARE(listener.writes.size(), written + 1);
}

void tst_ShapeWriting::whatIsLeftForLaterIsWrittenIfItsObjectGoes()
{
    ShapeProject project;
    tieScene();
    WriteListener listener;
    ShapeAccess access;
    auto section = placedSection();
    section->shape = {{{0, 0, 0}, {0, 0, 9}}};
    access.writePointsLater(section.get());
    ShapedObject stranger("node", "n1");

    access.takeLeave(&stranger);
    access.takeLeave(section.get());
    section.reset();

    QVERIFY(waitForWrite(listener, 1));
    QVERIFY(project.inspectionShapeInFile().toString().contains("5500009"));
}

void tst_ShapeWriting::aShapeAfterAClearingWins()
{
    ShapeProject project;
    tieScene();
    project.store("i1", shapeColumn, threePoints);
    WriteListener listener;
    ShapeAccess access;
    const auto section = placedSection();

    access.clearPoints(section.get());
    access.writePoints(section.get());

    QVERIFY(waitForWrite(listener, 1));
    QCOMPARE(project.inspectionShapeInFile().toString(),
             QStringLiteral("LINESTRING ZM(500000 5500000 100 132,500003 5500007 102 0)"));
    QCOMPARE(listener.countOf("i1", 5000), 1);
}

void tst_ShapeWriting::clearingLeavesNothing()
{
    ShapeProject project;
    project.store("i1", shapeColumn, threePoints);
    WriteListener listener;
    ShapeAccess access;
    ShapedSection section;

    access.clearPoints(&section);

    QCOMPARE(project.inspectionShapeInFile().toString(), threePoints);
    QVERIFY(waitForWrite(listener, 1));
    QVERIFY(project.inspectionShapeInFile().isNull());
    QCOMPARE(project.inFile("SELECT COUNT(*) FROM SECINSP WHERE INS_Shape_WKT IS NULL").toInt(), 1);
    QVERIFY(access.readPoints(&section).isEmpty());
}

void tst_ShapeWriting::withoutPositionNothingIsStored_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("id");
    QTest::newRow("section") << "section"
                             << "i1";
    QTest::newRow("node") << "node"
                          << "n1";
}

void tst_ShapeWriting::withoutPositionNothingIsStored()
{
    QFETCH(QString, type);
    QFETCH(QString, id);
    const ShapeProject project;
    tieScene();
    WriteListener listener;
    ShapeAccess access;
    ShapedObject object(type, id);
    object.shape = {{{1, 2, 3}}};

    access.writePoints(&object);

    // The next change is the only one that arrives.
    ShapedObject observation("observation", "o1");
    observation.shape = {{{1, 2, 3}}};
    access.writePoints(&observation);
    QVERIFY(waitForWrite(listener, 1));
    QCOMPARE(listener.writes.size(), 1);
    QCOMPARE(listener.writes.first().objectId, QStringLiteral("o1"));
}

void tst_ShapeWriting::anObservationNeedsNoPosition()
{
    const ShapeProject project;
    tieScene();
    WriteListener listener;
    ShapeAccess access;
    ShapedObject observation("observation", "o1");
    observation.shape = {{{-3, 2, 7}}};

    access.writePoints(&observation);

    QVERIFY(waitForWrite(listener, 1));
    QCOMPARE(project.inFile("SELECT OBS_Shape_WKT FROM SECOBS").toString(),
             QStringLiteral("POINT ZM(500003 5500007 102 0)"));
}

void tst_ShapeWriting::theFirstPointCarriesSourceAndDirection_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("direction");
    QTest::addColumn<QString>("text");
    QTest::newRow("upstream") << 0 << 128 << "LINESTRING ZM(500000 5500000 100 132,500003 5500007 102 0)";
    QTest::newRow("downstream") << 0 << 256 << "LINESTRING ZM(500003 5500007 102 260,500000 5500000 100 0)";
    QTest::newRow("unknown") << 0 << 0 << "LINESTRING ZM(500000 5500000 100 4,500003 5500007 102 0)";
    QTest::newRow("first upstream, now downstream")
        << 128 << 256 << "LINESTRING ZM(500003 5500007 102 132,500000 5500000 100 0)";
    QTest::newRow("first downstream, now upstream")
        << 256 << 128 << "LINESTRING ZM(500000 5500000 100 260,500003 5500007 102 0)";
}

void tst_ShapeWriting::theFirstPointCarriesSourceAndDirection()
{
    QFETCH(int, first);
    QFETCH(int, direction);
    QFETCH(QString, text);
    const ShapeProject project;
    tieScene();
    WriteListener listener;
    ShapeAccess access;
    const auto section = placedSection();
    section->setFirstInspectionDirFlag(InspectionDir::InspDirFlags(first));
    section->setInspectionDir(InspectionDir::InspDirFlags(direction));

    access.writePoints(section.get());

    QVERIFY(waitForWrite(listener, 1));
    QCOMPARE(project.inspectionShapeInFile().toString(), text);
}

void tst_ShapeWriting::whatWasReadIsWrittenAgainAsItStood_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("upstream") << "LINESTRING ZM(500000 5500000 100 132,500000 5500010 100 0,500005 5500010 99 0)";
    QTest::newRow("downstream") << "LINESTRING ZM(500000 5500000 100 260,500000 5500010 100 0,500005 5500010 99 0)";
    QTest::newRow("several, downstream")
        << "GEOMETRYCOLLECTION ZM(LINESTRING ZM(500000 5500000 100 260,500001 5500000 100 0),"
           "LINESTRING ZM(500002 5500000 100 260,500003 5500000 100 0))";
}

void tst_ShapeWriting::whatWasReadIsWrittenAgainAsItStood()
{
    QFETCH(QString, text);
    ShapeProject project;
    tieScene();
    project.store("i1", shapeColumn, text);
    WriteListener listener;
    ShapeAccess access;
    ShapedSection section;
    section.shape = access.readPoints(&section);

    // Away from what is stored, so that the text is really made anew.
    project.store("i1", shapeColumn, "LINESTRING ZM(1 2 3 4,5 6 7 8)");
    QVERIFY(waitForWrite(listener, 1));
    access.writePoints(&section);

    QVERIFY(waitForWrite(listener, 2));
    QCOMPARE(project.inspectionShapeInFile().toString(), text);
}

void tst_ShapeWriting::theMirrorIsWrittenToo()
{
    const ShapeProject project;
    tieScene();
    WriteListener listener;
    ShapeAccess access;
    const auto section = placedSection();
    section->domainObjectId = QStringLiteral("s1");
    section->inspectionObjectId = QStringLiteral("i1");

    access.writePoints(section.get());

    QVERIFY(waitForWrite(listener, 2));
    QCOMPARE(listener.countOf("s1", 5000), 1);
    QCOMPARE(listener.countOf("i1", 5000), 1);
    const QString text = QStringLiteral("LINESTRING ZM(500000 5500000 100 132,500003 5500007 102 0)");
    QCOMPARE(project.inspectionShapeInFile().toString(), text);
    QCOMPARE(project.inFile("SELECT OBJ_Shape_WKT FROM SECTION WHERE OBJ_PK = 's1'").toString(), text);
}

void tst_ShapeWriting::severalPolylinesAreStoredTogether()
{
    const ShapeProject project;
    tieScene();
    WriteListener listener;
    ShapeAccess access;
    const auto section = placedSection();
    section->shape = {{{0, 0, 0}, {0, 0, 1}}, {}, {{0, 0, 2}, {0, 0, 3}}};

    access.writePoints(section.get());

    QVERIFY(waitForWrite(listener, 1));
    QCOMPARE(project.inspectionShapeInFile().toString(),
             QStringLiteral("GEOMETRYCOLLECTION ZM(LINESTRING ZM(500000 5500000 100 132,500000 5500001 100 0),"
                            "LINESTRING ZM(500000 5500002 100 132,500000 5500003 100 0))"));
}

void tst_ShapeWriting::emptyPolylinesAreLeftOut()
{
    ShapeProject project;
    tieScene();
    project.store("i1", shapeColumn, threePoints);
    WriteListener listener;
    ShapeAccess access;
    const auto section = placedSection();
    section->shape = {{}, {}};

    access.writePoints(section.get());

    QVERIFY(waitForWrite(listener, 1));
    QVERIFY(project.inspectionShapeInFile().toString().isEmpty());
}

void tst_ShapeWriting::anObjectThatDiesTakesItsChangesAlong()
{
    const ShapeProject project;
    tieScene();
    WriteListener listener;
    const auto section = placedSection();
    auto dying = std::make_unique<ShapeAccess>();
    ShapeAccess staying;
    ShapedObject observation("observation", "o1");
    observation.shape = {{{1, 2, 3}}};

    dying->writePoints(section.get());
    staying.writePoints(&observation);
    dying.reset();

    QVERIFY(waitForWrite(listener, 1));
    QCOMPARE(listener.writes.size(), 1);
    QCOMPARE(listener.writes.first().objectId, QStringLiteral("o1"));
    QVERIFY(project.inspectionShapeInFile().isNull());
}

void tst_ShapeWriting::everyInstanceWaitsForItself()
{
    const ShapeProject project;
    tieScene();
    WriteListener listener;
    const auto section = placedSection();
    ShapeAccess early;
    ShapeAccess late;
    ShapedObject observation("observation", "o1");
    observation.shape = {{{1, 2, 3}}};
    early.writePoints(section.get());

    QTimer::singleShot(400, &observation, [&] { late.writePoints(&observation); });

    QVERIFY(waitForWrite(listener, 1));
    QCOMPARE(listener.writes.size(), 1);
    QCOMPARE(listener.writes.first().objectId, QStringLiteral("i1"));
    QVERIFY(waitForWrite(listener, 2));
    QCOMPARE(listener.writes.last().objectId, QStringLiteral("o1"));
}

void tst_ShapeWriting::aRecordThatIsDeletedMeanwhileDoesNoHarm()
{
    const ShapeProject project;
    tieScene();
    ShapeAccess access;
    ShapedObject node("node", "n1");
    node.setTransformFlags(4);
    node.shape = {{{1, 2, 3}}};
    access.writePoints(&node);

    QVERIFY(ProjectStore::instance().deleteObject(project.record("n1")).error.isEmpty());

    WriteListener listener;
    ShapedObject observation("observation", "o1");
    observation.shape = {{{1, 2, 3}}};
    access.writePoints(&observation);
    QVERIFY(waitForWrite(listener, 1));
    QVERIFY(!project.inFile("SELECT OBJ_PK FROM NODE WHERE OBJ_PK = 'n1'").isValid());
}

void tst_ShapeWriting::aProjectThatIsClosedMeanwhileDoesNoHarm()
{
    ShapeProject project;
    tieScene();
    ShapeAccess access;
    const auto section = placedSection();
    access.writePoints(section.get());

    ProjectStore::instance().close(project.project);
    project.project.reset();
    // A wait that begins now ends after the pending one.
    bool passed = false;
    Debounce later(700, [&] { passed = true; });
    later.start();
    Kx::Test::LogCapture log;

    QVERIFY(QTest::qWaitFor([&] { return passed; }, 3000));
    QVERIFY(project.inspectionShapeInFile().isNull());
    QVERIFY(log.lines().isEmpty());
}

QTEST_GUILESS_MAIN(tst_ShapeWriting)
#include "tst_ShapeWriting.moc"
