#include "ImportFixtures.h"

#include "domain/boundary/WktPoint.h"
#include "host/domain/ProjectStore.h"
#include "host/import/CoordinateSystem.h"
#include "host/import/CourseGeometry.h"
#include "host/import/Import.h"
#include "host/import/NodeIndex.h"
#include "host/import/SampleProject.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTextStream>
#include <QtTest>

using namespace Torvik::Import;
using namespace Torvik::Database;
using ImportFixtures::own;

namespace {

/** One call of the import, with what it said. */
struct Call {
    int status = -1;
    QString out;
    QString err;
};

Call run(const ImportOptions& options)
{
    Call call;
    QTextStream out(&call.out);
    QTextStream err(&call.err);
    call.status = runImport(options, out, err);
    return call;
}

ImportOptions from(const QString& source, const QString& project)
{
    ImportOptions options;
    options.source = source;
    options.project = project;
    return options;
}

} // namespace

class tst_Import : public QObject {
    Q_OBJECT

private slots:
    void aProjectHoldsWhatTheReportSays();
    void aReportIsWrittenAsJson();
    void aReportIsWrittenForAFailureToo();
    void failuresLeaveNothing_data();
    void failuresLeaveNothing();
    void anExistingProjectIsNotTouched();
    void anEmptyFolderIsTaken();
    void furtherFilesAddTheirInspections();
    void feetBecomeMetres_data();
    void feetBecomeMetres();
    void aNetworkElsewhereIsWarnedOf();
    void theSampleImportsWhole();
    void theSampleIsMadeOnlyOnce();
    void theSampleHasAnInspectionUnderWay();
    void theSampleShowsAllKindsOfFindings();
    void observationsAreWrittenIntoTheirColumns();
    void courseLengths();
    void missingHeightsFollowTheRun();
    void theFirstPartOfACourse();
    void arcsKeepToTheirCircle();
    void nodesAreFoundByPlace();
    void numbersKeepAllTheirDigits();
};

void tst_Import::aProjectHoldsWhatTheReportSays()
{
    QTemporaryDir dir;
    const QString folder = dir.filePath("p");

    const Call call = run(from(own("small_2017.xml"), folder));

    QCOMPARE(call.status, 0);
    QVERIFY(call.out.contains("nodes: 5 read, 5 taken, 0 left out"));
    const OpenedProject opened = ProjectStore::instance().open(folder);
    QVERIFY2(opened.project, qPrintable(opened.error));
    QCOMPARE(opened.project->nodeCount(), 5);
    QCOMPARE(opened.project->sectionCount(), 3);
    QCOMPARE(opened.project->lateralCount(), 1);
    QVERIFY(opened.project->is3dProject());
    QVERIFY(opened.project->projectionWKT().contains("\"25832\""));
    const auto section = opened.project->section(0);
    QCOMPARE(section->readValue("OBJ_Key").toString(), QStringLiteral("H1"));
    QCOMPARE(section->readValue("OBJ_FromNodeDepth").toDouble(), 2.3);
    QCOMPARE(section->readValue("OBJ_Size1").toDouble(), 300.0);
    QCOMPARE(section->inspectionCount(), 1);
    const auto inspection = section->inspection(0);
    QCOMPARE(inspection->inspectionDirection(), 1);
    QCOMPARE(inspection->startNode()->readValue("OBJ_Key").toString(), QStringLiteral("S1"));
    QCOMPARE(inspection->readValue("INS_Shape_WKT").toString(),
             QStringLiteral("LINESTRING ZM(565150.25 5932200.125 9.9 320,565100.25 5932200.125 10.2 0)"));
    QCOMPARE(opened.project->lateral(0)->readValue("OBJ_Section_REF").toString(), section->id());
    ProjectStore::instance().close(opened.project);
}

void tst_Import::aReportIsWrittenAsJson()
{
    QTemporaryDir dir;
    ImportOptions options = from(own("dirty_2017.xml"), dir.filePath("p"));
    options.report = dir.filePath("report.json");

    QCOMPARE(run(options).status, 0);

    QFile file(options.report);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QJsonObject report = QJsonDocument::fromJson(file.readAll()).object();
    QVERIFY(report.value("ok").toBool());
    const QJsonObject kinds = report.value("kinds").toObject();
    for (const QString& kind : kinds.keys()) {
        const QJsonObject count = kinds.value(kind).toObject();
        QCOMPARE(count.value("read").toInt(), count.value("taken").toInt() + count.value("leftOut").toInt());
        int reasons = 0;
        for (const QJsonValue& reason : count.value("reasons").toObject())
            reasons += reason.toInt();
        QCOMPARE(reasons, count.value("leftOut").toInt());
    }
    bool isNamed = false;
    for (const QJsonValue& value : report.value("problems").toArray()) {
        const QJsonObject problem = value.toObject();
        isNamed = isNamed || (problem.value("key") == QStringLiteral("LOST") && problem.value("line").toInt() == 35 &&
                              problem.value("severity") == QStringLiteral("leftOut"));
    }
    QVERIFY(isNamed);
}

void tst_Import::aReportIsWrittenForAFailureToo()
{
    QTemporaryDir dir;
    ImportOptions options = from(own("cut_off.xml"), dir.filePath("p"));
    options.report = dir.filePath("report.json");

    QCOMPARE(run(options).status, 1);

    QFile file(options.report);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QJsonObject report = QJsonDocument::fromJson(file.readAll()).object();
    QVERIFY(!report.value("ok").toBool());
    QVERIFY(report.value("error").toString().contains("cut_off.xml:8: not well-formed"));
}

void tst_Import::failuresLeaveNothing_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("crs");
    QTest::addColumn<QString>("error");
    QTest::newRow("cut off") << own("cut_off.xml") << QString() << QStringLiteral("cut_off.xml:8: not well-formed");
    QTest::newRow("other XML") << own("other.xml") << QString() << QStringLiteral("not ISYBAU XML");
    QTest::newRow("no model") << own("no_model.inp") << QString() << QStringLiteral("no SWMM input");
    QTest::newRow("nothing in it") << own("nothing.xml") << QString() << QStringLiteral("nothing to import");
    QTest::newRow("no file") << own("not_there.xml") << QString() << QStringLiteral("no such file");
    QTest::newRow("no mapping") << own("net.geojson") << QString() << QStringLiteral("needs --mapping");
    QTest::newRow("no such system") << own("small_2017.xml") << QStringLiteral("EPSG:1") << QStringLiteral("EPSG:1");
}

void tst_Import::failuresLeaveNothing()
{
    QFETCH(QString, source);
    QFETCH(QString, crs);
    QFETCH(QString, error);
    QTemporaryDir dir;
    ImportOptions options = from(source, dir.filePath("p"));
    options.crs = crs;

    const Call call = run(options);

    QCOMPARE(call.status, 1);
    QVERIFY2(call.err.contains("error: ") && call.err.contains(error), qPrintable(call.err));
    QVERIFY(QDir(dir.path()).isEmpty());
}

void tst_Import::anExistingProjectIsNotTouched()
{
    QTemporaryDir dir;
    const QString folder = dir.filePath("p");
    QCOMPARE(run(from(own("small_2017.xml"), folder)).status, 0);
    QFile database(ProjectStore::databaseFile(folder));
    QVERIFY(database.open(QIODevice::ReadOnly));
    const QByteArray before = database.readAll();

    const Call call = run(from(own("dirty_2017.xml"), folder));

    QCOMPARE(call.status, 1);
    QVERIFY(call.err.contains("nothing is overwritten"));
    database.seek(0);
    QCOMPARE(database.readAll(), before);
}

void tst_Import::anEmptyFolderIsTaken()
{
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir("p"));

    QCOMPARE(run(from(own("small_2017.xml"), dir.filePath("p"))).status, 0);
}

void tst_Import::furtherFilesAddTheirInspections()
{
    QTemporaryDir dir;
    ImportOptions options = from(own("network_only.xml"), dir.filePath("p"));
    options.with << own("inspections_only.xml");

    const Call call = run(options);

    QCOMPARE(call.status, 0);
    QVERIFY2(call.out.contains("inspections: 3 read, 3 taken, 0 left out, 1 made"), qPrintable(call.out));
}

void tst_Import::feetBecomeMetres_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("crs");
    QTest::addColumn<double>("easting");
    const double surveyFoot = 1200.0 / 3937.0;
    QTest::newRow("feet, no system") << own("us_elevation.inp") << QString() << 1200 * 0.3048;
    QTest::newRow("feet, system in metres") << own("us_elevation.inp") << QStringLiteral("EPSG:26915") << 1200 * 0.3048;
    QTest::newRow("feet, system in feet")
        << own("us_elevation.inp") << QStringLiteral("EPSG:2236") << 1200 * surveyFoot;
    QTest::newRow("metres, system in metres") << own("us_metre_map.inp") << QStringLiteral("EPSG:26915") << 1200.0;
    QTest::newRow("metres, system in feet") << own("us_metre_map.inp") << QStringLiteral("EPSG:2236") << 1200.0;
}

void tst_Import::feetBecomeMetres()
{
    QFETCH(QString, source);
    QFETCH(QString, crs);
    QFETCH(double, easting);
    QTemporaryDir dir;
    ImportOptions options = from(source, dir.filePath("p"));
    options.crs = crs;

    QCOMPARE(run(options).status, 0);

    const OpenedProject opened = ProjectStore::instance().open(options.project);
    QVERIFY2(opened.project, qPrintable(opened.error));
    const WktPoint point(opened.project->node(1)->readValue("OBJ_Shape_WKT").toString());
    QVERIFY2(qAbs(point.x().toDouble() - easting) < 1e-6, qPrintable(point.x()));
    QVERIFY(qAbs(point.z().toDouble() - 103 * 0.3048) < 1e-9);
    const auto system = CoordinateSystem::fromText(opened.project->projectionWKT(), nullptr);
    QVERIFY(system);
    QCOMPARE(system->metresPerUnit(), 1.0);
    ProjectStore::instance().close(opened.project);
}

void tst_Import::aNetworkElsewhereIsWarnedOf()
{
    QTemporaryDir dir;
    ImportOptions options = from(own("small_2017.xml"), dir.filePath("p"));
    options.crs = QStringLiteral("EPSG:4647");

    const Call call = run(options);

    QCOMPARE(call.status, 0);
    QVERIFY(call.err.contains("outside the area of use of EPSG:4647"));
}

void tst_Import::theSampleImportsWhole()
{
    QTemporaryDir dir;
    ImportReport report;

    QVERIFY(importProject(from(sampleSource(), dir.filePath("p")), report));

    QVERIFY(report.problems().isEmpty());
    const int pipes = report.count(Kinds::Sections).taken + report.count(Kinds::Laterals).taken;
    QVERIFY(pipes >= 60 && pipes <= 100);
    QVERIFY(report.count(Kinds::Laterals).taken > 0);
    for (const QString& kind : report.kinds())
        QCOMPARE(report.count(kind).leftOut, 0);
    const OpenedProject opened = ProjectStore::instance().open(dir.filePath("p"));
    QVERIFY2(opened.project, qPrintable(opened.error));
    int buildings = 0;
    for (int i = 0; i < opened.project->nodeCount(); ++i) {
        const auto node = opened.project->node(i);
        buildings += node->readValue("OBJ_Type").toString() == QLatin1String("BLD") ? 1 : 0;
        if (node->readValue("OBJ_Type").toString() != QLatin1String("MH"))
            continue;
        const double depth = node->readValue("OBJ_DepthToInvert").toDouble();
        QVERIFY2(depth >= 1.5 && depth <= 5.0, qPrintable(node->readValue("OBJ_Key").toString()));
    }
    QCOMPARE(buildings, 2);
    int bends = 0;
    for (int i = 0; i < opened.project->sectionCount(); ++i) {
        const auto section = opened.project->section(i);
        QVERIFY(section->readValue("OBJ_FromNodeLevel").toDouble() > section->readValue("OBJ_ToNodeLevel").toDouble());
        bends += section->readValue("OBJ_Shape_WKT").toString().count(',') > 1 ? 1 : 0;
    }
    QVERIFY(bends >= 4);
    ProjectStore::instance().close(opened.project);
}

void tst_Import::theSampleIsMadeOnlyOnce()
{
    QTemporaryDir dir;
    QString error;

    const QString first = ensureSampleProject(dir.filePath("deep/below"), &error);
    QVERIFY2(!first.isEmpty(), qPrintable(error));
    const QDateTime made = QFileInfo(first).lastModified();
    const QString second = ensureSampleProject(dir.filePath("deep/below"), &error);

    QCOMPARE(second, first);
    QCOMPARE(QFileInfo(second).lastModified(), made);
    QVERIFY(ensureSampleProject(QStringLiteral("/proc/nowhere"), &error).isEmpty());
    QVERIFY(!error.isEmpty());
}

void tst_Import::theSampleHasAnInspectionUnderWay()
{
    const ImportFixtures::Imported net = ImportFixtures::isybau({sampleSource()});

    const InspectionRow row = net.inspections("MB5").value(0);

    QVector<WktPoint> points;
    QString prefix;
    ShapeWKTHelper::wktStringToWktPoints(row.shapeWkt, points, prefix);
    QVector<Point> shape;
    for (const WktPoint& point : points)
        shape.append({point.x().toDouble(), point.y().toDouble(), point.z().toDouble()});
    QVERIFY(qAbs(Course::length(shape) - 17.4) < 1e-6);
    QVERIFY(*net.pipe("MB5")->length > 40.0);
}

void tst_Import::theSampleShowsAllKindsOfFindings()
{
    const ImportFixtures::Imported net = ImportFixtures::isybau({sampleSource()});

    QHash<QString, int> codes;
    int connected = 0;
    for (const ObservationRow& row : net.project.observations) {
        ++codes[row.finding.code];
        connected += row.lateralId.isEmpty() ? 0 : 1;
        QVERIFY(row.finding.code != QLatin1String("BCC") || (row.finding.bendClock && row.finding.angle));
    }
    QCOMPARE(codes.value("BCC"), 5);
    QCOMPARE(codes.value("BCA"), 4);
    QCOMPARE(connected, 4);
    QCOMPARE(codes.value("BCE"), 4);
    QCOMPARE(codes.value("BDC"), 1);
    // Three bends: the way out, and back to the other manhole.
    const QString shape = net.inspections("QW2").value(0).shapeWkt;
    QCOMPARE(shape.count(QLatin1Char(',')), 4);
    QCOMPARE(net.inspections("TA6").value(0).shapeWkt.count(QLatin1Char(',')), 3);
}

void tst_Import::observationsAreWrittenIntoTheirColumns()
{
    QTemporaryDir dir;

    QCOMPARE(run(from(own("findings_2017.xml"), dir.filePath("p"))).status, 0);

    const OpenedProject opened = ProjectStore::instance().open(dir.filePath("p"));
    QVERIFY2(opened.project, qPrintable(opened.error));
    const auto inspection = opened.project->section(0)->inspection(0);
    QCOMPARE(inspection->observationCount(), 8);
    const auto value = [&](int index, const char* column) {
        return inspection->observation(index)->readValue(QLatin1String(column));
    };
    QCOMPARE(value(1, "OBS_Code").toString(), QStringLiteral("BAB"));
    QCOMPARE(value(1, "OBS_Ch1").toString(), QStringLiteral("B"));
    QCOMPARE(value(1, "OBS_Ch2").toString(), QStringLiteral("A"));
    QCOMPARE(value(1, "OBS_Distance").toDouble(), 3.5);
    QCOMPARE(value(1, "OBS_DistanceEnd").toDouble(), 6.25);
    QCOMPARE(value(1, "OBS_Continuous").toString(), QStringLiteral("A1"));
    QCOMPARE(value(1, "OBS_Q1_Value").toDouble(), 1.5);
    QCOMPARE(value(1, "OBS_Q2_Value").toDouble(), 7.0);
    QCOMPARE(value(1, "OBS_ClockPos1").toInt(), 2);
    QCOMPARE(value(1, "OBS_ClockPos2").toInt(), 5);
    QCOMPARE(value(1, "OBS_AtJoint").toInt(), 1);
    QCOMPARE(value(1, "OBS_Photo").toString(), QStringLiteral("p1.jpg"));
    QCOMPARE(value(1, "OBS_VideoTime").toString(), QStringLiteral("01020304"));
    QCOMPARE(value(1, "OBS_Remarks").toString(), QStringLiteral("Riss"));
    QVERIFY(value(1, "OBS_Attributes").toString().contains("\"Station\":\"3,50\""));
    QVERIFY(value(1, "OBS_BendClkH").isNull());
    QCOMPARE(value(3, "OBS_LateralSection_REF").toString(), opened.project->lateral(0)->id());
    QCOMPARE(value(3, "OBS_ClockPos1").toInt(), 3);
    QCOMPARE(value(3, "OBS_JointAngle").toDouble(), 90.0);
    QCOMPARE(value(6, "OBS_BendClkH").toInt(), 9);
    QCOMPARE(value(6, "OBS_JointAngle").toDouble(), 30.0);
    const auto kind = [&](int index) {
        return inspection->observation(index).staticCast<CPipeObservationObject>()->codeTypeFlags();
    };
    QCOMPARE(kind(1), 0U);
    QCOMPARE(kind(3), 0x8U);
    QCOMPARE(kind(6), 0x400U);
    QCOMPARE(kind(7), 0x4U);
    ProjectStore::instance().close(opened.project);
}

void tst_Import::courseLengths()
{
    const QVector<Point> course {{0, 0, 0.0}, {3, 4, 0.0}, {3, 4, 12.0}};

    QCOMPARE(Course::planLength(course), 5.0);
    QCOMPARE(Course::length(course), 17.0);
    QCOMPARE(Course::length({}), 0.0);
}

void tst_Import::missingHeightsFollowTheRun()
{
    QVector<Point> course {
        {0, 0, std::nullopt}, {10, 0, 5.0}, {20, 0, std::nullopt}, {50, 0, 1.0}, {60, 0, std::nullopt}};

    Course::fillHeights(course);

    QCOMPARE(*course[0].z, 5.0);
    QCOMPARE(*course[2].z, 4.0);
    QCOMPARE(*course[4].z, 1.0);
    QVector<Point> flat {{0, 0, std::nullopt}, {1, 0, std::nullopt}};
    Course::fillHeights(flat);
    QVERIFY(!flat[0].z);
}

void tst_Import::theFirstPartOfACourse()
{
    const QVector<Point> course {{0, 0, 0.0}, {10, 0, 0.0}, {10, 10, 10.0}};

    const QVector<Point> part = Course::firstPart(course, 10.0 + std::sqrt(50.0));

    QCOMPARE(part.size(), 3);
    QVERIFY(qAbs(part[2].y - 5.0) < 1e-12 && qAbs(*part[2].z - 5.0) < 1e-12);
    QCOMPARE(Course::firstPart(course, 1000.0).size(), 3);
    QCOMPARE(Course::firstPart(course, 0.0).size(), 2);
}

void tst_Import::arcsKeepToTheirCircle()
{
    const QVector<Point> quarter = Course::arcPoints({10, 0, 5.0}, {0, 10, 4.0}, {0, 0, std::nullopt});

    QVERIFY(quarter.size() > 5);
    QCOMPARE(*quarter.last().z, 4.0);
    Point before {10, 0, 5.0};
    for (const Point& point : quarter) {
        QVERIFY(point.x >= -1e-9 && point.y >= -1e-9);
        QVERIFY(std::hypot((before.x + point.x) / 2, (before.y + point.y) / 2) > 10.0 - 0.0201);
        before = point;
    }
    // A centre that is no centre, and a circle too large for its chords to be told from it.
    QCOMPARE(Course::arcPoints({10, 0, 5.0}, {0, 20, 4.0}, {0, 0, std::nullopt}).size(), 1);
    QVERIFY(Course::arcPoints({1e30, 0, 5.0}, {0, 1e30, 4.0}, {0, 0, std::nullopt}).size() <= 720);
}

void tst_Import::nodesAreFoundByPlace()
{
    QVector<NodeData> nodes(4);
    const QVector<Point> places {{0.9, 0.0, {}}, {1.2, 0.0, {}}, {1.2, 0.0, {}}, {1e300, 0.0, {}}};
    NodeIndex index;
    for (int i = 0; i < nodes.size(); ++i) {
        nodes[i].key = QString::number(i);
        nodes[i].position = places[i];
        QVERIFY(index.insert(nodes[i], i));
    }
    index.buildGrid(nodes, 0.5);

    QCOMPARE(index.nearest({1.0, 0.0, {}}, 0.5), 0);
    QCOMPARE(index.nearest({1.1, 0.0, {}}, 0.5), 1);
    QCOMPARE(index.nearest({1.7, 0.0, {}}, 0.5), 1);
    QCOMPARE(index.nearest({1.71, 0.0, {}}, 0.5), -1);
    QVERIFY(!index.insert(nodes[2], 9));
    QCOMPARE(index.find("2", NodeKind::Building), 2);
    QCOMPARE(index.find("9", std::nullopt), -1);
}

void tst_Import::numbersKeepAllTheirDigits()
{
    QCOMPARE(Course::number(32570396.311), QStringLiteral("32570396.311"));
    QCOMPARE(Course::number(0.1 + 0.2), QStringLiteral("0.30000000000000004"));
    QCOMPARE(Course::number(-1e-7), QStringLiteral("-0.0000001"));
    QCOMPARE(Course::number(5827963.0), QStringLiteral("5827963"));
    QCOMPARE(Course::pointWkt({1, 2, std::nullopt}, 16), QStringLiteral("POINT ZM(1 2 0 16)"));
    QVERIFY(Course::lineWkt({{1, 2, 3.0}}, 64).isEmpty());
}

QTEST_GUILESS_MAIN(tst_Import)
#include "tst_Import.moc"
