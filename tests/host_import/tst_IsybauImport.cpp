#include "ImportFixtures.h"

#include <QJsonArray>
#include <QtTest>

using namespace Torvik::Import;
using ImportFixtures::Imported;
using ImportFixtures::isybau;
using ImportFixtures::own;
using Kx::Test::realFile;

class tst_IsybauImport : public QObject {
    Q_OBJECT

private slots:
    void nodesOfAllKinds_data();
    void nodesOfAllKinds();
    void aPipeLiesAtItsCourseBelowItsNodes();
    void anInspectionWithTheFlowIsStoredFromItsEnd();
    void anInspectionAgainstTheFlowIsStoredAsWalked();
    void aPipeWithoutInspectionGetsOneWithTheFlow();
    void anInspectionUnderWayEndsWhereItStands();
    void findingsAreKeptAsTheyStand();
    void theInspectionOfANodeStaysWithTheNode();
    void aCourseOfSeveralEdgesIsJoinedAndTurned();
    void anArcIsDividedIntoChords();
    void aLateralKnowsItsSection();
    void dirtyObjectsAreNamedWithTheirLine();
    void whatIsReadIsTakenOrLeftOut_data();
    void whatIsReadIsTakenOrLeftOut();
    void brokenFilesGiveTheLine_data();
    void brokenFilesGiveTheLine();
    void namesOfCoordinateSystems_data();
    void namesOfCoordinateSystems();
    void theRealNetworkHasItsCounts();
    void theRealInspectionsHaveTheirCounts();
    void everyRealPipeKeepsItsOrdinates();
    void theRealGeometryFileNamesItsOutlier();
    void theRealModelNetworkHasItsCounts();
    void theRealTruncatedFileIsRefused();
};

void tst_IsybauImport::nodesOfAllKinds_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("2013") << QStringLiteral("small_2013.xml");
    QTest::newRow("2017") << QStringLiteral("small_2017.xml");
}

void tst_IsybauImport::nodesOfAllKinds()
{
    QFETCH(QString, file);

    const Imported net = isybau({own(file)});

    QVERIFY2(net.ok, qPrintable(net.report.errorText()));
    QCOMPARE(net.model.crs, QStringLiteral("EPSG:25832"));
    QCOMPARE(net.project.nodes.size(), 5);
    QCOMPARE(net.node("S1")->type, QStringLiteral("MH"));
    QCOMPARE(net.node("S1")->shapeWkt, QStringLiteral("POINT ZM(565100.25 5932200.125 12.5 16)"));
    QCOMPARE(*net.node("S1")->depthToInvert, 2.35);
    QCOMPARE(*net.node("S1")->size1, 1000.0);
    QCOMPARE(net.node("HA1")->type, QStringLiteral("CON"));
    QCOMPARE(net.node("HA1")->shapeWkt, QStringLiteral("POINT ZM(565120.5 5932230.75 10.9 16)"));
    QVERIFY(!net.node("HA1")->depthToInvert);
    QCOMPARE(net.node("PW1")->type, QStringLiteral("BLD"));
    // The name holds a letter outside ASCII: the declared encoding counts.
    QVERIFY(net.node(QStringLiteral("S\u00fcd2")));
}

void tst_IsybauImport::aPipeLiesAtItsCourseBelowItsNodes()
{
    const Imported net = isybau({own("small_2017.xml")});

    const PipeRow* pipe = net.pipe("H1");

    QCOMPARE(pipe->kind, PipeKind::Section);
    QCOMPARE(pipe->fromNodeId, net.node("S1")->id);
    QCOMPARE(pipe->toNodeId, net.node(QStringLiteral("S\u00fcd2"))->id);
    QCOMPARE(*pipe->fromNodeDepth, 2.3);
    QCOMPARE(*pipe->toNodeDepth, 2.1);
    QCOMPARE(*pipe->size1, 300.0);
    QCOMPARE(*pipe->size2, 200.0);
    QCOMPARE(pipe->profile, QStringLiteral("EGG"));
    QCOMPARE(*pipe->length, 50.12);
}

void tst_IsybauImport::anInspectionWithTheFlowIsStoredFromItsEnd()
{
    const Imported net = isybau({own("small_2017.xml")});

    const InspectionRow row = net.inspections("H1").value(0);

    QCOMPARE(row.direction, Direction::Downstream);
    QCOMPARE(row.startNodeId, net.node("S1")->id);
    QCOMPARE(row.shapeWkt, QStringLiteral("LINESTRING ZM(565150.25 5932200.125 9.9 320,565100.25 5932200.125 10.2 0)"));
    QCOMPARE(row.date, QStringLiteral("2024-05-06"));
    QCOMPARE(row.time, QStringLiteral("09:10:00"));
}

void tst_IsybauImport::anInspectionAgainstTheFlowIsStoredAsWalked()
{
    const Imported net = isybau({own("small_2017.xml")});

    const InspectionRow row = net.inspections("H2").value(0);

    QCOMPARE(row.direction, Direction::Upstream);
    QCOMPARE(row.startNodeId, net.node("PW1")->id);
    QCOMPARE(row.endNodeId, net.node(QStringLiteral("S\u00fcd2"))->id);
    QVERIFY(row.shapeWkt.startsWith("LINESTRING ZM(565150.25 5932150.125 9.5 192,"));
    QVERIFY(row.shapeWkt.endsWith("565150.25 5932200.125 9.9 0)"));
}

void tst_IsybauImport::aPipeWithoutInspectionGetsOneWithTheFlow()
{
    const Imported net = isybau({own("small_2017.xml")});

    const auto rows = net.inspections("L1");

    QCOMPARE(rows.size(), 1);
    QCOMPARE(rows[0].direction, Direction::Downstream);
    QCOMPARE(rows[0].startNodeId, net.node("HA1")->id);
    QVERIFY(rows[0].date.isEmpty());
    QCOMPARE(net.report.count(Kinds::Inspections).made, 1);
}

void tst_IsybauImport::anInspectionUnderWayEndsWhereItStands()
{
    const Imported net = isybau({own("small_2017.xml")});

    const InspectionRow row = net.inspections("H3").value(0);

    // 20 m long and level, walked for 5 m with the flow.
    QCOMPARE(row.shapeWkt, QStringLiteral("LINESTRING ZM(565155.25 5932200.125 10 320,565150.25 5932200.125 10 0)"));
    QVERIFY(net.pipe("H3")->shapeWkt.contains("565170.25"));
}

void tst_IsybauImport::findingsAreKeptAsTheyStand()
{
    const Imported net = isybau({own("small_2017.xml")});

    const QString inspection = net.inspections("H1").value(0).id;

    QVector<QJsonObject> findings;
    for (const ObservationRow& row : net.project.observations) {
        if (row.inspectionId == inspection)
            findings.append(row.finding.attributes.value("isybau").toObject());
    }
    QCOMPARE(findings.size(), 3);
    QCOMPARE(findings[1].value("InspektionsKode").toString(), QStringLiteral("BCA"));
    QCOMPARE(findings[1].value("Station").toString(), QStringLiteral("12.30"));
    const QJsonObject all = net.inspections("H1").value(0).attributes.value("isybau").toObject();
    QCOMPARE(all.value("Auftrag").toObject().value("Kodiersystem").toString(), QStringLiteral("10"));
    QVERIFY(!all.value("Rohrleitung").toObject().contains("Inspektionsdaten"));
}

void tst_IsybauImport::theInspectionOfANodeStaysWithTheNode()
{
    const Imported net = isybau({own("small_2017.xml")});

    QCOMPARE(net.node("S1")->attributes.value("nodeInspections").toArray().size(), 1);
    QCOMPARE(net.report.count(Kinds::NodeInspections).taken, 1);
    QCOMPARE(net.report.count(Kinds::NodeObservations).taken, 2);
}

void tst_IsybauImport::aCourseOfSeveralEdgesIsJoinedAndTurned()
{
    const Imported net = isybau({own("small_2017.xml")});

    // In the file the edges run against the flow, and the second one the other way round.
    QCOMPARE(net.pipe("L1")->shapeWkt, QStringLiteral("LINESTRING ZM(565120.5 5932230.75 10.9 16,565120.5 5932210.125 "
                                                      "10.7 0,565125.25 5932200.125 10.6 0)"));
    QCOMPARE(net.problems("L1", "turned"), 1);
}

void tst_IsybauImport::anArcIsDividedIntoChords()
{
    const Imported net = isybau({own("small_2017.xml")});

    const QString shape = net.pipe("H2")->shapeWkt;

    // Half a circle of radius 25 round (565150.25, 5932175.125); every vertex lies on it.
    QVERIFY(shape.count(QLatin1Char(',')) > 10);
    const QStringList points = shape.mid(shape.indexOf('(') + 1).split(',');
    for (const QString& point : points) {
        const QStringList ordinates = point.split(' ');
        const double radius = std::hypot(ordinates[0].toDouble() - 565150.25, ordinates[1].toDouble() - 5932175.125);
        QVERIFY2(qAbs(radius - 25.0) < 1e-6, qPrintable(point));
    }
}

void tst_IsybauImport::aLateralKnowsItsSection()
{
    const Imported net = isybau({own("small_2017.xml")});

    QCOMPARE(net.pipe("L1")->kind, PipeKind::Lateral);
    QCOMPARE(net.pipe("L1")->sectionId, net.pipe("H1")->id);
}

void tst_IsybauImport::dirtyObjectsAreNamedWithTheirLine()
{
    const Imported net = isybau({own("dirty_2017.xml")});

    QVERIFY(net.ok);
    QCOMPARE(net.problems("A", "stands in line 6 already"), 1);
    QCOMPARE(net.problems("NOWHERE", "taken without a position"), 1);
    QCOMPARE(net.problems("NAN", "is not a number"), 1);
    QCOMPARE(net.problems("LOST", "unknown downstream node \"GONE\""), 1);
    QVERIFY(!net.pipe("LOST"));
    // It has a course, so it is taken without its end.
    QCOMPARE(net.problems("HALF", "taken by its course"), 1);
    QVERIFY(net.pipe("HALF"));
    QVERIFY(net.pipe("HALF")->toNodeId.isEmpty());
    QCOMPARE(net.problems("POINT", "zero length"), 1);
    QVERIFY(!net.pipe("POINT"));
    QCOMPARE(net.problems("UNSEEN", "unknown section"), 1);
    QCOMPARE(net.problems("TOWER", "far from all other heights"), 1);
    QCOMPARE(net.lineOfProblem("LOST"), 35);
    QCOMPARE(net.report.count(Kinds::Observations).leftOut, 1);
}

void tst_IsybauImport::whatIsReadIsTakenOrLeftOut_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("2013") << own("small_2013.xml");
    QTest::newRow("2017") << own("small_2017.xml");
    QTest::newRow("dirty") << own("dirty_2017.xml");
    for (const char* name :
         {"networks/ISYBAU_XML-2013-Stammdaten.xml", "networks/ISYBAU_XML-2013_Modellnetz_Einzelregen.xml",
          "inspections/ISYBAU_XML-2013-Zustandsdaten_DIN_EN_13508-2_AH_Abwasser.xml"}) {
        if (!realFile(name).isEmpty())
            QTest::newRow(name) << realFile(name);
    }
}

void tst_IsybauImport::whatIsReadIsTakenOrLeftOut()
{
    QFETCH(QString, path);

    const Imported net = isybau({path});

    QVERIFY(net.report.isBalanced());
    int sections = 0;
    for (const PipeRow& pipe : net.project.pipes)
        sections += pipe.kind == PipeKind::Section ? 1 : 0;
    QCOMPARE(net.report.count(Kinds::Nodes).taken, net.project.nodes.size());
    QCOMPARE(net.report.count(Kinds::Sections).taken, sections);
    QCOMPARE(net.report.count(Kinds::Laterals).taken, net.project.pipes.size() - sections);
    QCOMPARE(net.report.count(Kinds::Inspections).taken + net.report.count(Kinds::Inspections).made,
             net.project.inspections.size());
}

void tst_IsybauImport::brokenFilesGiveTheLine_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("error");
    QTest::newRow("cut off") << QStringLiteral("cut_off.xml") << QStringLiteral("cut_off.xml:8: not well-formed XML");
    QTest::newRow("other XML") << QStringLiteral("other.xml") << QStringLiteral("other.xml:2: not ISYBAU XML");
    QTest::newRow("no XML") << QStringLiteral("no_xml.xml") << QStringLiteral("no_xml.xml:1: not well-formed XML");
    QTest::newRow("empty") << QStringLiteral("empty.xml") << QStringLiteral("empty.xml:1: not well-formed XML");
}

void tst_IsybauImport::brokenFilesGiveTheLine()
{
    QFETCH(QString, file);
    QFETCH(QString, error);

    const Imported net = isybau({own(file)});

    QVERIFY(!net.ok);
    QVERIFY(net.report.failed());
    QVERIFY2(net.report.errorText().startsWith(error), qPrintable(net.report.errorText()));
}

void tst_IsybauImport::namesOfCoordinateSystems_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("easting");
    QTest::addColumn<QString>("epsg");
    QTest::newRow("zone in front") << QStringLiteral("ETRS89_UTM32") << 32570396.3 << QStringLiteral("EPSG:4647");
    QTest::newRow("no zone in front") << QStringLiteral("ETRS89_UTM32") << 570396.3 << QStringLiteral("EPSG:25832");
    QTest::newRow("zone 33") << QStringLiteral("ETRS89_UTM33") << 33390000.0 << QStringLiteral("EPSG:5650");
    QTest::newRow("Gauss-Krueger") << QStringLiteral("DE_DHDN_3GK2") << 2564361.0 << QStringLiteral("EPSG:31466");
    QTest::newRow("Gauss-Krueger 5") << QStringLiteral("DE_DHDN_3GK5") << 5400000.0 << QStringLiteral("EPSG:31469");
    QTest::newRow("unknown") << QStringLiteral("MARS_3") << 1.0 << QString();
}

void tst_IsybauImport::namesOfCoordinateSystems()
{
    QFETCH(QString, name);
    QFETCH(double, easting);

    QTEST(IsybauReader::epsgOf(name, easting), "epsg");
}

#define NEEDS_REAL(variable, name)                                                                                     \
    const QString variable = realFile(QStringLiteral(name));                                                           \
    if (variable.isEmpty())                                                                                            \
    QSKIP("the folder of real data is not there")

void tst_IsybauImport::theRealNetworkHasItsCounts()
{
    NEEDS_REAL(path, "networks/ISYBAU_XML-2013-Stammdaten.xml");

    const Imported net = isybau({path});

    QHash<QString, int> types;
    for (const NodeRow& node : net.project.nodes)
        ++types[node.type];
    QCOMPARE(types.value("MH"), 116);
    QCOMPARE(types.value("CON"), 24);
    QCOMPARE(types.value("BLD"), 25);
    QCOMPARE(net.report.count(Kinds::Sections).taken, 135);
    QCOMPARE(net.report.count(Kinds::Laterals).taken, 14);
    QCOMPARE(net.report.count(Kinds::Inspections).made, 149);
    QCOMPARE(net.model.crs, QStringLiteral("EPSG:4647"));
    for (const PipeRow& pipe : net.project.pipes) {
        QVERIFY2(!pipe.fromNodeId.isEmpty() && !pipe.toNodeId.isEmpty(), qPrintable(pipe.key));
        QVERIFY(*pipe.size1 >= 100.0 && *pipe.size1 <= 700.0);
    }
}

void tst_IsybauImport::theRealInspectionsHaveTheirCounts()
{
    NEEDS_REAL(network, "networks/ISYBAU_XML-2013-Stammdaten.xml");
    NEEDS_REAL(inspections, "inspections/ISYBAU_XML-2013-Zustandsdaten_DIN_EN_13508-2_AH_Abwasser.xml");

    const Imported net = isybau({network, inspections});

    QCOMPARE(net.report.count(Kinds::Inspections).read, 133);
    QCOMPARE(net.report.count(Kinds::Inspections).taken, 133);
    QCOMPARE(net.report.count(Kinds::NodeInspections).taken, 115);
    QCOMPARE(net.report.count(Kinds::Observations).taken, 861);
    QCOMPARE(net.report.count(Kinds::NodeObservations).taken, 804 + 2);
    QCOMPARE(net.report.count(Kinds::Inspections).made, 149 - 132);
    QCOMPARE(net.inspections("120005").size(), 2);
    int upstream = 0;
    for (const InspectionRow& row : net.project.inspections)
        upstream += row.direction == Direction::Upstream ? 1 : 0;
    QCOMPARE(upstream, 67);
}

void tst_IsybauImport::everyRealPipeKeepsItsOrdinates()
{
    NEEDS_REAL(path, "networks/ISYBAU_XML-2013-Stammdaten.xml");

    const Imported net = isybau({path});

    QCOMPARE(net.inspections("119001").value(0).shapeWkt,
             QStringLiteral("LINESTRING ZM(32570429.698 5827988.279 37.44 320,32570396.421 5827963.079 37.59 0)"));
    QCOMPARE(net.node("119001")->shapeWkt, QStringLiteral("POINT ZM(32570396.421 5827963.079 38.48 16)"));
    QCOMPARE(*net.pipe("119001")->fromNodeDepth, 0.89);
    QCOMPARE(*net.pipe("119001")->toNodeDepth, 1.02);
}

void tst_IsybauImport::theRealGeometryFileNamesItsOutlier()
{
    NEEDS_REAL(path, "networks/ISYBAU_XML-2013-Stammdaten_Geometrie_BFR251.xml");

    const Imported net = isybau({path});

    QCOMPARE(net.report.count(Kinds::Nodes).taken, 38);
    QCOMPARE(net.report.count(Kinds::Sections).taken, 5);
    QCOMPARE(net.report.count(Kinds::Laterals).taken, 2);
    QCOMPARE(net.problems("119001", "555 m lies far"), 1);
}

void tst_IsybauImport::theRealModelNetworkHasItsCounts()
{
    NEEDS_REAL(path, "networks/ISYBAU_XML-2013_Modellnetz_Einzelregen.xml");

    const Imported net = isybau({path});

    QCOMPARE(net.report.count(Kinds::Nodes).taken, 85);
    QCOMPARE(net.report.count(Kinds::Sections).taken, 81);
    int unplaced = 0;
    for (const NodeRow& node : net.project.nodes)
        unplaced += node.shapeWkt.isEmpty() ? 1 : 0;
    QCOMPARE(unplaced, 2);
}

void tst_IsybauImport::theRealTruncatedFileIsRefused()
{
    NEEDS_REAL(path, "networks/broken_Stammdaten_ISY_truncated.xml");

    const Imported net = isybau({path});

    QVERIFY(!net.ok);
    QVERIFY2(net.report.errorText().startsWith("broken_Stammdaten_ISY_truncated.xml:8293: not well-formed"),
             qPrintable(net.report.errorText()));
}

QTEST_APPLESS_MAIN(tst_IsybauImport)
#include "tst_IsybauImport.moc"
