#include "measurement/PlacedSection.h"

#include "common/LogCapture.h"
#include "geo/GeoTestSystems.h"
#include "measurement/ShapeAccess.h"

#include <QtTest>

#include <memory>

using namespace Torvik::View3d;
using Shape = QVector<QVector<QVector3D>>;

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

QTEST_GUILESS_MAIN(tst_ShapeAccess)
#include "tst_ShapeAccess.moc"
