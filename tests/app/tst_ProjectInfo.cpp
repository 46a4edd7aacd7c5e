#include "common/TestProject.h"
#include "host/app/ProjectInfo.h"
#include "host/app/ProjectLists.h"

#include <QJsonDocument>
#include <QtTest>

using namespace Torvik::Viewer;
using Kx::Test::TestProject;

namespace {

const QString utm32 = QStringLiteral(
    R"(PROJCS["ETRS89 / UTM zone 32N",GEOGCS["ETRS89",DATUM["European_Terrestrial_Reference_System_1989",SPHEROID["GRS 1980",6378137,298.257222101]],PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]],PROJECTION["Transverse_Mercator"],PARAMETER["latitude_of_origin",0],PARAMETER["central_meridian",9],PARAMETER["scale_factor",0.9996],PARAMETER["false_easting",500000],PARAMETER["false_northing",0],UNIT["metre",1],AUTHORITY["EPSG","25832"]])");

/** Two manholes, a building, a section with two inspections, a lateral with one. */
void fill(TestProject& project)
{
    const auto a =
        project.addNode("S1", "POINT ZM(1000 2000 30 16)", {{"OBJ_Type", "MH"}, {"OBJ_DepthToInvert", 2.25}});
    const auto b = project.addNode("S2", "POINT ZM(1050 2010 29.5 16)", {{"OBJ_Type", "MH"}});
    project.addNode("House", {}, {{"OBJ_Type", "BLD"}});
    const auto section = project.addSection("H1", a, b, {{"OBJ_Size1", 300}, {"OBJ_Length", 51.04}});
    project.addInspection(section, "LINESTRING ZM(1000 2000 28 16,990 2040 27 16,1050 2010 27.5 16)");
    project.addInspection(section, {}, 2);
    project.addInspection(project.addLateral("L1", section, {{"OBJ_Size1", 150}}), {}, 0);
}

ListedObject lineOf(const QVector<ListedObject>& lines, const QString& key)
{
    for (const ListedObject& line : lines) {
        if (line.key == key)
            return line;
    }
    return {};
}

} // namespace

class tst_ProjectInfo : public QObject {
    Q_OBJECT

private slots:
    void everythingIsCounted();
    void theExtentHoldsNodesAndCourses();
    void anEmptyProjectHasNoExtentAndNoSystem();
    void theSystemIsToldByItsCode_data();
    void theSystemIsToldByItsCode();
    void jsonHasEveryKey();
    void nodesAreListedWithKindAndDepth();
    void pipesAreListedWithSizeLengthAndEnds();
    void inspectionsAreListedUnderTheirPipe();
};

void tst_ProjectInfo::everythingIsCounted()
{
    TestProject project;
    fill(project);

    const ProjectInfo info = collectInfo(*project.project());

    QCOMPARE(info.nodes, 3);
    QCOMPARE(info.sections, 1);
    QCOMPARE(info.laterals, 1);
    QCOMPARE(info.inspections, 3);
    QCOMPARE(info.observations, 0);
    QCOMPARE(info.nodeTypes, (QMap<QString, int> {{"MH", 2}, {"BLD", 1}}));
}

void tst_ProjectInfo::theExtentHoldsNodesAndCourses()
{
    TestProject project;
    fill(project);

    const auto extent = collectInfo(*project.project()).extent;

    QVERIFY(extent);
    QCOMPARE(extent->minX, 990.0);
    QCOMPARE(extent->maxX, 1050.0);
    QCOMPARE(extent->minY, 2000.0);
    QCOMPARE(extent->maxY, 2040.0);
    QCOMPARE(extent->minZ, 27.0);
    QCOMPARE(extent->maxZ, 30.0);
}

void tst_ProjectInfo::anEmptyProjectHasNoExtentAndNoSystem()
{
    TestProject project;

    const ProjectInfo info = collectInfo(*project.project());

    QVERIFY(!info.extent);
    QVERIFY(info.crs.isEmpty());
    QVERIFY(toJson(info).value("extent").isNull());
    QVERIFY(toJson(info).value("crs").isNull());
    QVERIFY(toText(info).contains("none"));
}

void tst_ProjectInfo::theSystemIsToldByItsCode_data()
{
    QTest::addColumn<QString>("wkt");
    QTest::addColumn<QString>("name");
    QTest::newRow("with a code") << utm32 << "EPSG:25832";
    QTest::newRow("with a prefix") << "WKT:" + utm32 << "EPSG:25832";
    QTest::newRow("without a code") << R"(LOCAL_CS["site grid",UNIT["metre",1]])"
                                    << "site grid";
    QTest::newRow("unknown") << "WKT:UNKNOWN"
                             << "";
    QTest::newRow("none") << ""
                          << "";
}

void tst_ProjectInfo::theSystemIsToldByItsCode()
{
    QFETCH(QString, wkt);
    QFETCH(QString, name);

    QCOMPARE(crsName(wkt), name);
}

void tst_ProjectInfo::jsonHasEveryKey()
{
    TestProject project(utm32);
    fill(project);

    const QJsonObject json = toJson(collectInfo(*project.project()));

    QCOMPARE(json.value("nodes").toInt(), 3);
    QCOMPARE(json.value("sections").toInt(), 1);
    QCOMPARE(json.value("laterals").toInt(), 1);
    QCOMPARE(json.value("inspections").toInt(), 3);
    QCOMPARE(json.value("observations").toInt(-1), 0);
    QCOMPARE(json.value("nodeTypes").toObject().value("MH").toInt(), 2);
    QCOMPARE(json.value("crs").toString(), QString("EPSG:25832"));
    QCOMPARE(json.value("extent").toObject().value("maxZ").toDouble(), 30.0);
}

void tst_ProjectInfo::nodesAreListedWithKindAndDepth()
{
    TestProject project;
    fill(project);

    const auto lines = ProjectLists::nodes(*project.project());

    QCOMPARE(lines.size(), 3);
    QCOMPARE(lineOf(lines, "S1").detail, QString("manhole, 2.25 m deep"));
    QCOMPARE(lineOf(lines, "S2").detail, QString("manhole"));
    QCOMPARE(lineOf(lines, "House").detail, QString("building, no position"));
    QCOMPARE(lineOf(lines, "House").kind, QString("node"));
}

void tst_ProjectInfo::pipesAreListedWithSizeLengthAndEnds()
{
    TestProject project;
    fill(project);

    const auto lines = ProjectLists::pipes(*project.project());

    QCOMPARE(lines.size(), 2);
    QCOMPARE(lineOf(lines, "H1").detail, QString::fromUtf8("DN 300, 51.0 m, S1 \u2192 S2"));
    QCOMPARE(lineOf(lines, "H1").kind, QString("section"));
    QCOMPARE(lineOf(lines, "L1").detail, QString("lateral, DN 150"));
    QCOMPARE(lineOf(lines, "L1").kind, QString("lateral"));
}

void tst_ProjectInfo::inspectionsAreListedUnderTheirPipe()
{
    TestProject project;
    fill(project);

    const auto lines = ProjectLists::inspections(*project.project());

    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines[0].key, QString("H1"));
    QCOMPARE(lines[0].detail, QString("downstream from S1, 0 observations"));
    QCOMPARE(lines[1].detail, QString("upstream from S2, 0 observations"));
    QCOMPARE(lines[2].key, QString("L1"));
    QCOMPARE(lines[2].detail, QString("0 observations"));
}

int main(int argc, char* argv[])
{
    // The details are in the language of the machine; the test expects one of them.
    QLocale::setDefault(QLocale::c());
    QCoreApplication application(argc, argv);
    tst_ProjectInfo test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_ProjectInfo.moc"
