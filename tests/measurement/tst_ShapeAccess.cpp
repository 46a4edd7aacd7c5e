#include "measurement/ShapeProject.h"

#include "common/LogCapture.h"
#include "geo/GeoTestSystems.h"
#include "measurement/ShapeAccess.h"

#include <QtTest>

#include <memory>

using namespace Torvik::View3d;
using Torvik::Database::ProjectStore;
using Torvik::Database::WktPoint;
using Shape = QVector<QVector<QVector3D>>;

namespace {

const QString shapeColumn = QStringLiteral("INS_Shape_WKT");
/** Ends where the scene begins: (0,0,0), then 10 m north and 5 m east, 1 m down. */
const QString threePoints =
    QStringLiteral("LINESTRING ZM(500000 5500000 100 132,500000 5500010 100 0,500005 5500010 99 0)");

void tieScene()
{
    QString wkt = wktOf(25832);
    GdalGeoProjector::instance()->init(WktPoint("500000", "5500000", "100", "0"), wkt);
}

/** A section with a position and a shape of two points, in a scene that is tied. */
std::unique_ptr<ShapedSection> placedSection()
{
    auto section = std::make_unique<ShapedSection>();
    section->setTransformFlags(4);
    section->setInspectionUpstream();
    section->shape = {{{0, 0, 0}, {-3, 2, 7}}};
    return section;
}

bool waitForWrite(const WriteListener& listener, int count)
{
    return QTest::qWaitFor([&] { return listener.writes.size() >= count; }, 3000);
}

} // namespace

class tst_ShapeAccess : public QObject {
    Q_OBJECT

private slots:
    void nothingHappensWithoutAnObject();
    void nothingHappensWithoutARecord_data();
    void nothingHappensWithoutARecord();
    void nothingHappensWithoutAProject();
    void everyTypeIsReadFromItsColumn_data();
    void everyTypeIsReadFromItsColumn();
    void aBlankColumnIsNoShape();
    void theFirstShapeTiesTheSceneAndIsRemembered();
    void aTiedSceneStaysTied();
    void aSectionInspectedDownstreamTiesAtItsFarEnd();
    void aSectionGetsItsFlagsAndDirectionBack_data();
    void aSectionGetsItsFlagsAndDirectionBack();
    void aNodeIgnoresTheStoredFlags();
    void anEmptyStoredPolylineStaysEmpty();
    void aTextThatIsNoShapeIsAnEmptyPolyline();
    void severalShapesMakeSeveralPolylines();
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

void tst_ShapeAccess::nothingHappensWithoutAnObject()
{
    const ShapeProject project;
    QVERIFY2(project.project, qPrintable(project.error));
    ShapeAccess access;

    QVERIFY(access.readPoints(nullptr).isEmpty());
    access.writePoints(nullptr);
    access.clearPoints(nullptr);
}

void tst_ShapeAccess::nothingHappensWithoutARecord_data()
{
    QTest::addColumn<QString>("id");
    QTest::newRow("empty id") << "";
    QTest::newRow("unknown id") << "nobody";
    QTest::newRow("the project itself") << "PROJECT";
}

void tst_ShapeAccess::nothingHappensWithoutARecord()
{
    QFETCH(QString, id);
    const ShapeProject project;
    tieScene();
    WriteListener listener;
    ShapeAccess access;
    const auto section = placedSection();
    section->domainObjectId = id == QLatin1String("PROJECT") ? project.project->id() : id;

    QVERIFY(access.readPoints(section.get()).isEmpty());
    access.writePoints(section.get());
    access.clearPoints(section.get());

    // A write that is really due comes after it, had there been one.
    section->domainObjectId = QStringLiteral("i1");
    access.writePoints(section.get());
    QVERIFY(waitForWrite(listener, 1));
    QCOMPARE(listener.writes.size(), 1);
    QCOMPARE(listener.writes.first().objectId, QStringLiteral("i1"));
}

void tst_ShapeAccess::nothingHappensWithoutAProject()
{
    ShapeProject project;
    project.store("i1", shapeColumn, threePoints);
    tieScene();
    ShapeAccess access;
    const auto section = placedSection();

    Torvik::AppState::instance().setActiveProject(project.record("s1"));
    QVERIFY(access.readPoints(section.get()).isEmpty());
    Torvik::AppState::instance().setActiveProject({});
    QVERIFY(access.readPoints(section.get()).isEmpty());
    access.writePoints(section.get());
    access.clearPoints(section.get());

    Torvik::AppState::instance().setActiveProject(project.project);
    QCOMPARE(access.readPoints(section.get()).size(), 1);
}

void tst_ShapeAccess::everyTypeIsReadFromItsColumn_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("column");
    QTest::newRow("node") << "n1"
                          << "OBJ_Shape_WKT";
    QTest::newRow("section") << "s1"
                             << "OBJ_Shape_WKT";
    QTest::newRow("lateral") << "l1"
                             << "OBJ_Shape_WKT";
    QTest::newRow("inspection") << "i1"
                                << "INS_Shape_WKT";
    QTest::newRow("observation") << "o1"
                                 << "OBS_Shape_WKT";
}

void tst_ShapeAccess::everyTypeIsReadFromItsColumn()
{
    QFETCH(QString, id);
    QFETCH(QString, column);
    ShapeProject project;
    tieScene();
    project.store(id, column, "POINT ZM(500003 5500007 102 8)");
    ShapeAccess access;
    ShapedObject object("observation", id);

    QCOMPARE(access.readPoints(&object), (Shape {{{-3, 2, 7}}}));

    WriteListener listener;
    object.setTransformFlags(4);
    object.shape = {{{0, 0, 0}}};
    access.writePoints(&object);
    QVERIFY(waitForWrite(listener, 1));
    QCOMPARE(listener.writes.first().key, column);
    QCOMPARE(listener.writes.first().origin, 5000);
    QCOMPARE(project.record(id)->readValue(column).toString(), QStringLiteral("POINT ZM(500000 5500000 100 4)"));
}

void tst_ShapeAccess::aBlankColumnIsNoShape()
{
    ShapeProject project;
    ShapeAccess access;
    ShapedSection section;
    section.setTransformFlags(8);

    QVERIFY(access.readPoints(&section).isEmpty());
    project.store("i1", shapeColumn, "  \t ");
    QVERIFY(access.readPoints(&section).isEmpty());

    QCOMPARE(section.transformFlags(), 8);
    QVERIFY(section.inspectionDirUnknown());
    QVERIFY(!GdalGeoProjector::instance()->initialized());
}

void tst_ShapeAccess::theFirstShapeTiesTheSceneAndIsRemembered()
{
    ShapeProject project;
    project.project->setProjectionWKT("WKT:UNKNOWN");
    project.store("n1", "OBJ_Shape_WKT", "POINT ZM(890555.9263 6446275.8410 100 8)");
    WriteListener listener;
    ShapeAccess access;
    ShapedObject node("node", "n1");

    const Shape shape = access.readPoints(&node);

    QCOMPARE(shape, (Shape {{{0, 0, 0}}}));
    QVERIFY(GdalGeoProjector::instance()->initialized());
    QCOMPARE(project.project->projectionWKT(), GeoProjectorSettings::getDefaultPseudoMercatorWKT());
    // At once, without waiting for the batch.
    QCOMPARE(project.inFile("SELECT PRJ_ProjectionWKT FROM PROJECT").toString(), project.project->projectionWKT());
    QVERIFY(waitForWrite(listener, 1));
    QCOMPARE(listener.countOf(project.project->id(), -1), 1);
}

void tst_ShapeAccess::aTiedSceneStaysTied()
{
    ShapeProject project;
    tieScene();
    project.store("n1", "OBJ_Shape_WKT", "POINT ZM(500100 5500200 100 8)");
    ShapeAccess access;
    ShapedObject node("node", "n1");

    QCOMPARE(access.readPoints(&node), (Shape {{{-100, 0, 200}}}));

    QVERIFY(GdalGeoProjector::instance()->origin() == Vector3D<double>(-500000, 100, 5500000));
    QVERIFY(project.project->projectionWKT().isEmpty());
}

void tst_ShapeAccess::aSectionInspectedDownstreamTiesAtItsFarEnd()
{
    ShapeProject project;
    project.project->setProjectionWKT(wktOf(25832));
    project.store("i1", shapeColumn, "LINESTRING ZM(500000 5500000 100 260,500000 5500010 100 0,500005 5500010 99 0)");
    ShapeAccess access;
    ShapedSection section;

    const Shape shape = access.readPoints(&section);

    QCOMPARE(shape, (Shape {{{0, 0, 0}, {5, 1, 0}, {5, 1, -10}}}));
    QVERIFY(GdalGeoProjector::instance()->origin() == Vector3D<double>(-500005, 99, 5500010));
    QCOMPARE(project.project->projectionWKT(), wktOf(25832));
}

void tst_ShapeAccess::aSectionGetsItsFlagsAndDirectionBack_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("directionBefore");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("direction");
    QTest::addColumn<int>("flags");
    QTest::addColumn<bool>("reversed");
    QTest::newRow("nothing known") << "0" << 0 << 0 << 128 << 0 << false;
    QTest::newRow("no word") << "" << 0 << 0 << 128 << 0 << false;
    QTest::newRow("stored upstream") << "132" << 0 << 128 << 128 << 4 << false;
    QTest::newRow("stored downstream") << "260" << 0 << 256 << 256 << 4 << true;
    QTest::newRow("known direction stays") << "132" << 256 << 128 << 256 << 4 << true;
    QTest::newRow("known direction, other stored") << "260" << 128 << 256 << 128 << 4 << false;
    QTest::newRow("bits beyond are dropped") << "1028" << 0 << 0 << 128 << 4 << false;
    QTest::newRow("decimals are cut off") << "127.9" << 0 << 0 << 128 << 127 << false;
}

void tst_ShapeAccess::aSectionGetsItsFlagsAndDirectionBack()
{
    QFETCH(QString, word);
    QFETCH(int, directionBefore);
    QFETCH(int, first);
    QFETCH(int, direction);
    QFETCH(int, flags);
    QFETCH(bool, reversed);
    ShapeProject project;
    tieScene();
    project.store("i1", shapeColumn,
                  QStringLiteral("LINESTRING ZM(500000 5500000 100 %1,500000 5500010 100)").arg(word));
    ShapeAccess access;
    ShapedSection section;
    section.setInspectionDir(InspectionDir::InspDirFlags(directionBefore));

    const Shape shape = access.readPoints(&section);

    QCOMPARE(section.firstInspectionDirFlag(), first);
    QCOMPARE(section.inspectionDirection(), direction);
    QCOMPARE(section.transformFlags(), flags);
    QCOMPARE(shape, reversed ? (Shape {{{0, 0, 10}, {0, 0, 0}}}) : (Shape {{{0, 0, 0}, {0, 0, 10}}}));
}

void tst_ShapeAccess::aNodeIgnoresTheStoredFlags()
{
    ShapeProject project;
    tieScene();
    project.store("n1", "OBJ_Shape_WKT", "POINT ZM(500000 5500000 100 8)");
    ShapeAccess access;
    ShapedObject node("node", "n1");

    QCOMPARE(access.readPoints(&node).size(), 1);

    QCOMPARE(node.transformFlags(), 0);
}

void tst_ShapeAccess::anEmptyStoredPolylineStaysEmpty()
{
    ShapeProject project;
    project.store("i1", shapeColumn, "LINESTRING ZM EMPTY");
    ShapeAccess access;
    ShapedSection section;

    QCOMPARE(access.readPoints(&section), (Shape {{}}));

    QVERIFY(!GdalGeoProjector::instance()->initialized());
    QVERIFY(section.inspectionDirUnknown());
}

void tst_ShapeAccess::aTextThatIsNoShapeIsAnEmptyPolyline()
{
    ShapeProject project;
    project.store("i1", shapeColumn, "somewhere near the church");
    ShapeAccess access;
    ShapedSection section;

    QCOMPARE(access.readPoints(&section), (Shape {{}}));
    QVERIFY(!GdalGeoProjector::instance()->initialized());
}

void tst_ShapeAccess::severalShapesMakeSeveralPolylines()
{
    ShapeProject project;
    tieScene();
    project.store("i1", shapeColumn,
                  "GEOMETRYCOLLECTION ZM(LINESTRING ZM(500000 5500000 100 260,500001 5500000 100 0),"
                  "LINESTRING ZM(500002 5500000 100 260,500003 5500000 100 0))");
    ShapeAccess access;
    ShapedSection section;

    QCOMPARE(access.readPoints(&section), (Shape {{{-1, 0, 0}, {0, 0, 0}}, {{-3, 0, 0}, {-2, 0, 0}}}));
}

void tst_ShapeAccess::aBurstOfChangesIsWrittenOnceWithTheLast()
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

void tst_ShapeAccess::everyChangeStartsTheWaitAnew()
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

void tst_ShapeAccess::anUnchangedShapeIsNotWritten()
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

void tst_ShapeAccess::theStoredShapeDoesNotReplaceThePendingOne()
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

void tst_ShapeAccess::whatIsLeftForLaterIsWrittenAsItIsThen()
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

void tst_ShapeAccess::aShapeThatIsBackWhenLaterComesIsNotWritten()
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

void tst_ShapeAccess::whatIsLeftForLaterIsWrittenIfItsObjectGoes()
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

void tst_ShapeAccess::aShapeAfterAClearingWins()
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

void tst_ShapeAccess::clearingLeavesNothing()
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

void tst_ShapeAccess::withoutPositionNothingIsStored_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("id");
    QTest::newRow("section") << "section"
                             << "i1";
    QTest::newRow("node") << "node"
                          << "n1";
}

void tst_ShapeAccess::withoutPositionNothingIsStored()
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

void tst_ShapeAccess::anObservationNeedsNoPosition()
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

void tst_ShapeAccess::theFirstPointCarriesSourceAndDirection_data()
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

void tst_ShapeAccess::theFirstPointCarriesSourceAndDirection()
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

void tst_ShapeAccess::whatWasReadIsWrittenAgainAsItStood_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("upstream") << "LINESTRING ZM(500000 5500000 100 132,500000 5500010 100 0,500005 5500010 99 0)";
    QTest::newRow("downstream") << "LINESTRING ZM(500000 5500000 100 260,500000 5500010 100 0,500005 5500010 99 0)";
    QTest::newRow("several, downstream")
        << "GEOMETRYCOLLECTION ZM(LINESTRING ZM(500000 5500000 100 260,500001 5500000 100 0),"
           "LINESTRING ZM(500002 5500000 100 260,500003 5500000 100 0))";
}

void tst_ShapeAccess::whatWasReadIsWrittenAgainAsItStood()
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

void tst_ShapeAccess::theMirrorIsWrittenToo()
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

void tst_ShapeAccess::severalPolylinesAreStoredTogether()
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

void tst_ShapeAccess::emptyPolylinesAreLeftOut()
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

void tst_ShapeAccess::anObjectThatDiesTakesItsChangesAlong()
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

void tst_ShapeAccess::everyInstanceWaitsForItself()
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

void tst_ShapeAccess::aRecordThatIsDeletedMeanwhileDoesNoHarm()
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

void tst_ShapeAccess::aProjectThatIsClosedMeanwhileDoesNoHarm()
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

QTEST_GUILESS_MAIN(tst_ShapeAccess)
#include "tst_ShapeAccess.moc"
