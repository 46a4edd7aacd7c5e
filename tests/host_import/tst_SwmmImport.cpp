#include "ImportFixtures.h"

#include "host/import/SwmmReader.h"

#include <QElapsedTimer>
#include <QtTest>

using namespace Torvik::Import;
using ImportFixtures::Imported;
using ImportFixtures::own;
using Kx::Test::realFile;

namespace {

Imported swmm(const QString& path)
{
    Imported result;
    QFile file(path);
    result.ok = file.open(QIODevice::ReadOnly) &&
                SwmmReader(result.model, result.report).read(file, QFileInfo(path).fileName());
    if (result.ok)
        result.project = NetworkAssembler(result.model, result.report).assemble();
    return result;
}

/** Third ordinate of a vertex in a WKT text. */
double heightAt(const QString& wkt, int vertex)
{
    const QString inner = wkt.mid(wkt.indexOf('(') + 1).chopped(1);
    return inner.split(',').value(vertex).split(' ').value(2).toDouble();
}

} // namespace

class tst_SwmmImport : public QObject {
    Q_OBJECT

private slots:
    void fieldsOfALine_data();
    void fieldsOfALine();
    void bothEncodingsAreUnderstood_data();
    void bothEncodingsAreUnderstood();
    void coverIsInvertAndDepth();
    void aNodeWithoutDepthReachesItsHighestPipe();
    void offsetsAreDepthsAboveTheInvert();
    void heightsOfVerticesFollowTheRun();
    void profilesBecomeMillimetres();
    void commentsBeforeAConduitStayWithIt();
    void whatIsNotTakenIsNamedWithItsLine();
    void elevationsAndFeetAreUnderstood();
    void theMapSaysTheUnitOfOrdinates_data();
    void theMapSaysTheUnitOfOrdinates();
    void aTextThatIsNoModelIsRefused();
    void realNetworksHaveTheirCounts_data();
    void realNetworksHaveTheirCounts();
    void theLargeNetworkTakesSeconds();
    void theRealFileWithoutCoordinatesIsTold();
};

void tst_SwmmImport::fieldsOfALine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("fields");
    QTest::newRow("blanks and tabs") << QStringLiteral(" a\t b  c ") << QStringList {"a", "b", "c"};
    QTest::newRow("quotes") << QStringLiteral("\"a b\" c") << QStringList {"a b", "c"};
    QTest::newRow("open quote") << QStringLiteral("a \"b c") << QStringList {"a", "b c"};
    QTest::newRow("comment") << QStringLiteral("a b;c d") << QStringList {"a", "b"};
    QTest::newRow("nothing") << QString() << QStringList();
}

void tst_SwmmImport::fieldsOfALine()
{
    QFETCH(QString, line);

    QTEST(SwmmFile::fieldsOf(line), "fields");
}

void tst_SwmmImport::bothEncodingsAreUnderstood_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("UTF-8") << QStringLiteral("small_si.inp");
    QTest::newRow("ISO 8859-1") << QStringLiteral("small_si_latin1.inp");
}

void tst_SwmmImport::bothEncodingsAreUnderstood()
{
    QFETCH(QString, file);
    QFile source(own(file));
    QVERIFY(source.open(QIODevice::ReadOnly));

    const SwmmFile swmmFile(source.readAll());

    QCOMPARE(swmmFile.titleLines(), QStringList {QStringLiteral("M\u00fchlenviertel")});
    QCOMPARE(swmmFile.rows("CONDUITS").size(), 8);
    QCOMPARE(swmmFile.rows("conduits").first().line, 29);
}

void tst_SwmmImport::coverIsInvertAndDepth()
{
    const Imported net = swmm(own("small_si.inp"));

    QCOMPARE(net.node("J1")->shapeWkt, QStringLiteral("POINT ZM(1000.125 5000.5 103 16)"));
    QCOMPARE(*net.node("J1")->depthToInvert, 2.5);
    QCOMPARE(net.node("POND")->shapeWkt, QStringLiteral("POINT ZM(1100 5000 101.5 16)"));
    QCOMPARE(net.node("OUT")->type, QStringLiteral("MH"));
}

void tst_SwmmImport::aNodeWithoutDepthReachesItsHighestPipe()
{
    const Imported net = swmm(own("small_si.inp"));

    // J3: the egg of 0.9 m lies on the invert. OUT: 0.5 m above the invert, 0.8 m high.
    QCOMPARE(*net.node("J3")->depthToInvert, 0.9);
    QCOMPARE(*net.node("OUT")->depthToInvert, 1.3);
    QCOMPARE(*net.node("DIV")->depthToInvert, 0.15);
}

void tst_SwmmImport::offsetsAreDepthsAboveTheInvert()
{
    const Imported net = swmm(own("small_si.inp"));

    const QString shape = net.inspections("C1").value(0).shapeWkt;

    // Stored from the lower end: 99.25 + 0.2, then 100.5 + 0.1.
    QCOMPARE(shape, QStringLiteral("LINESTRING ZM(1050.125 5000.5 99.45 320,1000.125 5000.5 100.6 0)"));
    QCOMPARE(*net.pipe("C1")->fromNodeDepth, 2.4);
    QCOMPARE(*net.pipe("C1")->toNodeDepth, 2.05);
}

void tst_SwmmImport::heightsOfVerticesFollowTheRun()
{
    const Imported net = swmm(own("small_si.inp"));

    const QString course = net.pipe("C2")->shapeWkt;

    // 20, 60 and 20 m of run from 99.25 down to 98.
    QVERIFY(qAbs(heightAt(course, 1) - (99.25 - 1.25 * 0.2)) < 1e-9);
    QVERIFY(qAbs(heightAt(course, 2) - (99.25 - 1.25 * 0.8)) < 1e-9);
    QCOMPARE(heightAt(course, 3), 98.0);
}

void tst_SwmmImport::profilesBecomeMillimetres()
{
    const Imported net = swmm(own("small_si.inp"));

    QCOMPARE(*net.pipe("C1")->size1, 300.0);
    QCOMPARE(*net.pipe("C2")->size1, 900.0);
    QCOMPARE(*net.pipe("C2")->size2, 600.0);
    QCOMPARE(net.pipe("C2")->profile, QStringLiteral("EGG"));
    QCOMPARE(*net.pipe("C3")->size2, 1200.0);
    QCOMPARE(net.pipe("C3")->attributes.value("barrels").toInt(), 2);
    QCOMPARE(*net.pipe("C4")->size1, 150.0);
    QVERIFY(!net.pipe("C4")->size2);
    QVERIFY(!net.pipe("C7")->size1);
    QCOMPARE(net.problems("C7", "no size"), 1);
}

void tst_SwmmImport::commentsBeforeAConduitStayWithIt()
{
    const Imported net = swmm(own("small_si.inp"));

    QCOMPARE(net.pipe("C1")->attributes.value("description").toString(), QStringLiteral("300 mm concrete\nbuilt 1979"));
    QVERIFY(!net.pipe("C2")->attributes.contains("description"));
}

void tst_SwmmImport::whatIsNotTakenIsNamedWithItsLine()
{
    const Imported net = swmm(own("small_si.inp"));

    QVERIFY(net.report.isBalanced());
    QCOMPARE(net.report.count(Kinds::Nodes).read, 8);
    QCOMPARE(net.report.count(Kinds::Nodes).leftOut, 1);
    QCOMPARE(net.problems("J1", "stands in line 11 already"), 1);
    QCOMPARE(net.report.count(Kinds::Sections).read, 8);
    QCOMPARE(net.report.count(Kinds::Sections).taken, 5);
    QCOMPARE(net.problems("C5", "unknown downstream node \"GONE\""), 1);
    QCOMPARE(net.lineOfProblem("C5"), 33);
    QCOMPARE(net.problems("C6", "without two nodes"), 1);
    QCOMPARE(net.problems("C1", "stands in line 29 already"), 1);
    QCOMPARE(net.problems("NOBODY", "unknown node"), 1);
    QCOMPARE(net.problems("LOST", "without a position"), 1);
    // Its end has no place, so it has no course; it is in the project all the same.
    QVERIFY(net.pipe("C7")->shapeWkt.isEmpty());
    for (const char* kind : {"pumps", "weirs", "outlets"}) {
        QCOMPARE(net.report.count(kind).read, 1);
        QCOMPARE(net.report.count(kind).leftOut, 1);
    }
}

void tst_SwmmImport::elevationsAndFeetAreUnderstood()
{
    const Imported net = swmm(own("us_elevation.inp"));

    QCOMPARE(*net.node("A")->depthToInvert, 3.048);
    QCOMPARE(*net.pipe("AB")->size1, 457.2);
    QVERIFY(qAbs(heightAt(net.pipe("AB")->shapeWkt, 0) - 101 * 0.3048) < 1e-9);
    QVERIFY(qAbs(heightAt(net.pipe("AB")->shapeWkt, 1) - 95 * 0.3048) < 1e-9);
    QVERIFY(qAbs(heightAt(net.pipe("BC")->shapeWkt, 0) - 96 * 0.3048) < 1e-9);
    QVERIFY(qAbs(*net.node("C")->depthToInvert - 2 * 0.3048) < 1e-6);
    QVERIFY(qAbs(*net.pipe("AB")->length - 60.96) < 1e-9);
}

void tst_SwmmImport::theMapSaysTheUnitOfOrdinates_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("unit");
    QTest::newRow("feet") << QStringLiteral("us_elevation.inp") << int(SwmmReader::OrdinateUnit::Feet);
    QTest::newRow("metres") << QStringLiteral("us_metre_map.inp") << int(SwmmReader::OrdinateUnit::Metres);
    QTest::newRow("not said") << QStringLiteral("small_si.inp") << int(SwmmReader::OrdinateUnit::NotSaid);
}

void tst_SwmmImport::theMapSaysTheUnitOfOrdinates()
{
    QFETCH(QString, file);
    QFile source(own(file));
    QVERIFY(source.open(QIODevice::ReadOnly));
    NetworkModel model;
    ImportReport report;
    SwmmReader reader(model, report);

    QVERIFY(reader.read(source, file));

    QTEST(int(reader.ordinateUnit()), "unit");
}

void tst_SwmmImport::aTextThatIsNoModelIsRefused()
{
    const Imported net = swmm(own("no_model.inp"));

    QVERIFY(!net.ok);
    QVERIFY(net.report.errorText().startsWith("no_model.inp: no SWMM input"));
}

void tst_SwmmImport::realNetworksHaveTheirCounts_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("nodes");
    QTest::addColumn<int>("conduits");
    QTest::addColumn<int>("pumps");
    QTest::addColumn<int>("others");
    QTest::newRow("tiny") << QStringLiteral("networks/tiny_bellinge.inp") << 16 << 15 << 0 << 0;
    QTest::newRow("state plane") << QStringLiteral("networks/small_state_plane.inp") << 45 << 44 << 0 << 0;
    QTest::newRow("ponds") << QStringLiteral("networks/small_kelowna_ponds.inp") << 77 << 69 << 0 << 5;
    QTest::newRow("mountain town") << QStringLiteral("networks/medium_bustarviejo.inp") << 1660 << 1629 << 2 << 8;
    QTest::newRow("egg profiles") << QStringLiteral("networks/medium_egg_profiles.inp") << 705 << 654 << 4 << 105;
    QTest::newRow("large") << QStringLiteral("networks/large_moreton_qld.inp") << 10174 << 10132 << 89 << 0;
}

void tst_SwmmImport::realNetworksHaveTheirCounts()
{
    QFETCH(QString, file);
    if (realFile(file).isEmpty())
        QSKIP("the folder of real data is not there");

    const Imported net = swmm(realFile(file));

    QVERIFY(net.report.isBalanced());
    QTEST(net.report.count(Kinds::Nodes).taken, "nodes");
    QTEST(net.report.count(Kinds::Sections).read, "conduits");
    QTEST(net.report.count("pumps").leftOut, "pumps");
    QTEST(net.report.count("orifices").leftOut + net.report.count("weirs").leftOut +
              net.report.count("outlets").leftOut,
          "others");
    for (const NodeRow& node : net.project.nodes)
        QVERIFY2(!node.shapeWkt.isEmpty(), qPrintable(node.key));
    const auto reasons = net.report.count(Kinds::Sections).reasons;
    for (auto it = reasons.cbegin(); it != reasons.cend(); ++it)
        qInfo("%s: %d", qPrintable(it.key()), it.value());
}

void tst_SwmmImport::theLargeNetworkTakesSeconds()
{
    const QString path = realFile(QStringLiteral("networks/large_moreton_qld.inp"));
    if (path.isEmpty())
        QSKIP("the folder of real data is not there");
    QElapsedTimer timer;
    timer.start();

    const Imported net = swmm(path);

    qInfo("%lld ms", timer.elapsed());
    // Far more than a slow machine needs, far less than anything quadratic.
    QVERIFY(timer.elapsed() < 20000);
}

void tst_SwmmImport::theRealFileWithoutCoordinatesIsTold()
{
    const QString path = realFile(QStringLiteral("networks/broken_nodes_without_coordinates.inp"));
    if (path.isEmpty())
        QSKIP("the folder of real data is not there");

    const Imported net = swmm(path);

    QCOMPARE(net.report.count(Kinds::Nodes).taken, 6);
    QCOMPARE(net.report.count(Kinds::Sections).leftOut, 3);
    QCOMPARE(net.problems("E143250", "without a position"), 1);
}

QTEST_APPLESS_MAIN(tst_SwmmImport)
#include "tst_SwmmImport.moc"
