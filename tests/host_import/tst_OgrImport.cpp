#include "ImportFixtures.h"

#include "host/import/InterlisColumns.h"
#include "host/import/OgrReader.h"

#include <QtTest>

#include <cmath>

using namespace Torvik::Import;
using ImportFixtures::Imported;
using ImportFixtures::own;
using Kx::Test::realFile;

namespace {

struct Read : Imported {
    QString crs;
};

Read ogr(const QString& source, const QByteArray& mappingText, const QString& crs = {})
{
    Read result;
    QString error;
    const std::optional<OgrMapping> mapping = OgrMapping::parse(mappingText, &error);
    if (!mapping) {
        result.ok = false;
        result.report.fail({}, error);
        return result;
    }
    OgrReader reader(result.model, result.report, *mapping, crs);
    result.ok = reader.read(source);
    if (!result.ok)
        return result;
    result.crs = settleCoordinates(result.model, reader.crs(), result.report).label();
    result.project = NetworkAssembler(result.model, result.report, mapping->tolerance).assemble();
    return result;
}

QByteArray content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QVector<Point> pointsOf(const QString& wkt)
{
    QVector<Point> points;
    for (const QString& vertex : wkt.mid(wkt.indexOf('(') + 1).chopped(1).split(',')) {
        const QStringList ordinates = vertex.split(' ');
        points.append({ordinates.value(0).toDouble(), ordinates.value(1).toDouble(), ordinates.value(2).toDouble()});
    }
    return points;
}

} // namespace

class tst_OgrImport : public QObject {
    Q_OBJECT

private slots:
    void mistakesInAMappingAreNamed_data();
    void mistakesInAMappingAreNamed();
    void endsAreMatchedToNodesByPosition();
    void endsBeyondTheToleranceStayOpen();
    void columnsBecomeDepthsAndSizes();
    void partsOfALineAreJoined();
    void whatIsNotTakenIsNamedWithItsFeature();
    void degreesBecomeMetres();
    void aWantedSystemIsReached();
    void missingLayersAndColumnsAreNamed_data();
    void missingLayersAndColumnsAreNamed();
    void aFileThatIsNoVectorSourceIsRefused();
    void interlisColumnsOfLaterObjectsAreSeen();
    void heightsSpreadAlongTheNetwork();
    void arcsBecomeChords();
    void otherXmlHasNoInterlisColumns();
    void theRealGeoPackageHasItsCounts();
    void theRealInterlisTransferHasItsCounts();
};

void tst_OgrImport::mistakesInAMappingAreNamed_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error");
    QTest::newRow("no JSON") << QByteArray("{\n \"nodes\": \n") << QStringLiteral("line ");
    QTest::newRow("an array") << QByteArray("[]") << QStringLiteral("one JSON object");
    QTest::newRow("nothing") << QByteArray("{}") << QStringLiteral("neither");
    QTest::newRow("unknown part") << QByteArray("{\"edges\": {}}") << QStringLiteral("unknown name \"edges\"");
    QTest::newRow("no key") << QByteArray("{\"nodes\": {\"layer\": \"a\"}}") << QStringLiteral("\"key\" is missing");
    QTest::newRow("unknown column") << QByteArray("{\"nodes\": {\"key\": \"a\", \"hight\": \"b\"}}")
                                    << QStringLiteral("unknown name \"hight\"; known are cover");
    QTest::newRow("unknown kind") << QByteArray("{\"nodes\": {\"key\": \"a\", \"kinds\": {\"x\": \"tower\"}}}")
                                  << QStringLiteral("unknown kind \"tower\"");
    QTest::newRow("half a look-up") << QByteArray("{\"nodes\": {\"key\": \"a\", \"cover\": {\"column\": \"b\"}}}")
                                    << QStringLiteral("\"cover\" must be");
    QTest::newRow("unit") << QByteArray("{\"pipes\": {\"key\": \"a\", \"sizeUnit\": \"yard\"}}")
                          << QStringLiteral("\"sizeUnit\" is one of");
    QTest::newRow("tolerance") << QByteArray("{\"tolerance\": -1}") << QStringLiteral("positive");
    QTest::newRow("height") << QByteArray("{\"nodes\": {\"key\": \"a\", \"height\": \"roof\"}}")
                            << QStringLiteral("\"cover\" or \"invert\"");
}

void tst_OgrImport::mistakesInAMappingAreNamed()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, error);
    QString actual;

    const bool isMapping = OgrMapping::parse(text, &actual).has_value();

    QVERIFY(!isMapping);
    QVERIFY2(actual.contains(error), qPrintable(actual));
}

void tst_OgrImport::endsAreMatchedToNodesByPosition()
{
    const Read net = ogr(own("net.geojson"), content(own("net_positions.json")));

    QVERIFY2(net.ok, qPrintable(net.report.errorText()));
    QCOMPARE(net.crs, QStringLiteral("EPSG:25832"));
    QCOMPARE(net.pipe("P1")->fromNodeId, net.node("N1")->id);
    QCOMPARE(net.pipe("P1")->toNodeId, net.node("N2")->id);
    QCOMPARE(net.node("N3")->type, QStringLiteral("BLD"));
}

void tst_OgrImport::endsBeyondTheToleranceStayOpen()
{
    const Read net = ogr(own("net.geojson"), content(own("net_positions.json")));

    QCOMPARE(net.pipe("P3")->fromNodeId, net.node("N3")->id);
    QVERIFY(net.pipe("P3")->toNodeId.isEmpty());
    QCOMPARE(net.problems("P3", "no downstream node"), 1);

    const QByteArray tight = content(own("net_positions.json")).replace("\"tolerance\": 0.5", "\"tolerance\": 0.05");
    const Read strict = ogr(own("net.geojson"), tight);

    QVERIFY(strict.pipe("P1")->fromNodeId.isEmpty());
}

void tst_OgrImport::columnsBecomeDepthsAndSizes()
{
    const Read net = ogr(own("net.geojson"), content(own("net_positions.json")));

    QCOMPARE(net.node("N1")->shapeWkt, QStringLiteral("POINT ZM(565000.5 5932000.25 12.5 16)"));
    QCOMPARE(*net.node("N1")->depthToInvert, 2.5);
    QCOMPARE(*net.node("N2")->size1, 1200.0);
    QCOMPARE(*net.pipe("P1")->size1, 300.0);
    QCOMPARE(*net.pipe("P1")->fromNodeDepth, 2.4);
    QCOMPARE(*net.pipe("P1")->toNodeDepth, 2.4);
    // It begins 10 cm beside its node, so its shape is marked as placed: 4 in the flags 64 + 256 + 4.
    QCOMPARE(net.inspections("P1").value(0).shapeWkt,
             QStringLiteral("LINESTRING ZM(565040.4 5932000.25 9.6 324,565000.6 5932000.25 10.1 0)"));
    // Without heights of its own it runs from invert to invert.
    QCOMPARE(*net.pipe("P2")->fromNodeDepth, 2.5);
    QCOMPARE(*net.pipe("P2")->toNodeDepth, 2.0);
}

void tst_OgrImport::partsOfALineAreJoined()
{
    const Read net = ogr(own("net.geojson"), content(own("net_positions.json")));

    const QVector<Point> course = pointsOf(net.pipe("P2")->shapeWkt);

    QCOMPARE(course.size(), 3);
    QCOMPARE(course[1].x, 565050.5);
    QCOMPARE(course[2].y, 5932030.25);
}

void tst_OgrImport::whatIsNotTakenIsNamedWithItsFeature()
{
    const Read net = ogr(own("net.geojson"), content(own("net_positions.json")));

    QVERIFY(net.report.isBalanced());
    QCOMPARE(net.report.count(Kinds::Nodes).read, 5);
    QCOMPARE(net.report.count(Kinds::Nodes).taken, 3);
    QCOMPARE(net.report.count(Kinds::Nodes).reasons.value("no key"), 1);
    QCOMPARE(net.problems("N5", "no geometry"), 1);
    QCOMPARE(net.problems("P4", "no geometry"), 1);
    QCOMPARE(net.problems("P5", "do not meet"), 1);
    QCOMPARE(net.problems("P3", "diameter is not a number: \"wide\""), 1);
    bool isNamed = false;
    for (const auto& problem : net.report.problems())
        isNamed =
            isNamed || (problem.key == QLatin1String("P4") && problem.source.feature == QLatin1String("net feature 9"));
    QVERIFY(isNamed);
}

void tst_OgrImport::degreesBecomeMetres()
{
    const QByteArray mapping = "{\"nodes\": {\"key\": \"name\", \"where\": \"OGR_GEOMETRY = 'POINT'\"}, "
                               "\"pipes\": {\"key\": \"name\", \"from\": \"from\", \"to\": \"to\", "
                               "\"where\": \"OGR_GEOMETRY = 'LINESTRING'\"}}";

    const Read net = ogr(own("degrees.geojson"), mapping);

    QVERIFY2(net.ok, qPrintable(net.report.errorText()));
    QCOMPARE(net.crs, QStringLiteral("EPSG:32632"));
    const QVector<Point> course = pointsOf(net.pipe("AB")->shapeWkt);
    // A thousandth of a degree of longitude at 53.5 N on the ellipsoid: 6378137 cos(lat) / sqrt(1 - e2 sin2(lat))
    // * 1.745e-5.
    const double latitude = 53.5 * M_PI / 180.0;
    const double radius = 6378137.0 / std::sqrt(1.0 - 0.00669437999 * std::pow(std::sin(latitude), 2));
    const double metres = radius * std::cos(latitude) * 0.001 * M_PI / 180.0;
    QVERIFY(qAbs(std::hypot(course[1].x - course[0].x, course[1].y - course[0].y) - metres) < 0.001 * metres);
    QCOMPARE(*net.pipe("AB")->fromNodeDepth, 2.0);
}

void tst_OgrImport::aWantedSystemIsReached()
{
    const QByteArray mapping = content(own("net_positions.json"));

    const Read net = ogr(own("net.geojson"), mapping, QStringLiteral("EPSG:4647"));

    QCOMPARE(net.crs, QStringLiteral("EPSG:4647"));
    const Point place = pointsOf(net.node("N1")->shapeWkt).value(0);
    QVERIFY(qAbs(place.x - 32565000.5) < 1e-3);
    QVERIFY(qAbs(place.y - 5932000.25) < 1e-3);
}

void tst_OgrImport::missingLayersAndColumnsAreNamed_data()
{
    QTest::addColumn<QByteArray>("mapping");
    QTest::addColumn<QString>("error");
    QTest::newRow("layer") << QByteArray("{\"nodes\": {\"layer\": \"nodes\", \"key\": \"name\"}}")
                           << QStringLiteral("no layer \"nodes\"; there are net");
    QTest::newRow("column") << QByteArray("{\"nodes\": {\"layer\": \"net\", \"key\": \"nom\"}}")
                            << QStringLiteral("no column \"nom\"; it has what, name");
    QTest::newRow("condition") << QByteArray(
                                      "{\"nodes\": {\"layer\": \"net\", \"key\": \"name\", \"where\": \"what ===\"}}")
                               << QStringLiteral("is not understood");
    QTest::newRow("system") << QByteArray("{\"crs\": \"EPSG:0\", \"nodes\": {\"layer\": \"net\", \"key\": \"name\"}}")
                            << QStringLiteral("unknown coordinate system \"EPSG:0\"");
}

void tst_OgrImport::missingLayersAndColumnsAreNamed()
{
    QFETCH(QByteArray, mapping);
    QFETCH(QString, error);

    const Read net = ogr(own("net.geojson"), mapping);

    QVERIFY(!net.ok);
    QVERIFY2(net.report.errorText().contains(error), qPrintable(net.report.errorText()));
}

void tst_OgrImport::aFileThatIsNoVectorSourceIsRefused()
{
    const Read net = ogr(own("no_model.inp"), "{\"nodes\": {\"key\": \"a\"}}");

    QVERIFY(!net.ok);
    QVERIFY(net.report.errorText().startsWith("no_model.inp: not a vector source"));
}

void tst_OgrImport::interlisColumnsOfLaterObjectsAreSeen()
{
    const Read net = ogr(own("transfer.xtf"), content(own("transfer.json")));

    QVERIFY2(net.ok, qPrintable(net.report.errorText()));
    QCOMPARE(net.crs, QStringLiteral("EPSG:2056"));
    QCOMPARE(net.project.nodes.size(), 2);
    QCOMPARE(net.node("K2")->shapeWkt, QStringLiteral("POINT ZM(2600020 1200000 412.5 16)"));
    QCOMPARE(*net.node("K2")->depthToInvert, 2.5);
    // The first objects of their classes have neither level, and get none from the others.
    QVERIFY(!net.node("K1")->coverLevel);
    QCOMPARE(net.pipe("P1")->fromNodeId, net.node("K1")->id);
}

void tst_OgrImport::heightsSpreadAlongTheNetwork()
{
    const Read net = ogr(own("transfer.xtf"), content(own("transfer.json")));

    // Only K2 has a height, an invert of 410: the pipe lies level there, and K1 at its end.
    QCOMPARE(net.node("K1")->shapeWkt, QStringLiteral("POINT ZM(2600000 1200000 410 16)"));
    QCOMPARE(net.problems("K1", "lies at its lowest pipe"), 1);
    QCOMPARE(*net.pipe("P1")->toNodeDepth, 2.5);
    QCOMPARE(*net.pipe("P1")->fromNodeDepth, 0.0001);
}

void tst_OgrImport::arcsBecomeChords()
{
    const Read net = ogr(own("transfer.xtf"), content(own("transfer.json")));

    const QVector<Point> course = pointsOf(net.pipe("P1")->shapeWkt);

    QVERIFY(course.size() > 20);
    for (const Point& point : course)
        QVERIFY(qAbs(std::hypot(point.x - 2600010.0, point.y - 1200000.0) - 10.0) < 1e-6);
}

void tst_OgrImport::otherXmlHasNoInterlisColumns()
{
    QVERIFY(InterlisColumns::withAllColumns("<kml/>").isEmpty());
    QVERIFY(InterlisColumns::withAllColumns("no XML").isEmpty());
    QVERIFY(InterlisColumns::withAllColumns("<TRANSFER><DATASECTION><a><b TID='1'>").isEmpty());
}

void tst_OgrImport::theRealGeoPackageHasItsCounts()
{
    const QString path = realFile(QStringLiteral("networks/derived_isybau2013_network_epsg25832.gpkg"));
    if (path.isEmpty())
        QSKIP("the folder of real data is not there");

    const Read net = ogr(path, content(QStringLiteral(KX_SOURCE_DIR "/docs/mappings/geopackage-nodes-pipes.json")));

    QVERIFY2(net.ok, qPrintable(net.report.errorText()));
    QCOMPARE(net.crs, QStringLiteral("EPSG:25832"));
    QCOMPARE(net.report.count(Kinds::Nodes).taken, 165);
    QCOMPARE(net.report.count(Kinds::Sections).taken, 135);
    QCOMPARE(net.report.count(Kinds::Laterals).taken, 14);
    QCOMPARE(*net.pipe("119001")->fromNodeDepth, 0.89);
}

void tst_OgrImport::theRealInterlisTransferHasItsCounts()
{
    const QString path = realFile(QStringLiteral("networks/test-dataset-DSS.xtf"));
    if (path.isEmpty())
        QSKIP("the folder of real data is not there");

    const Read net = ogr(path, content(QStringLiteral(KX_SOURCE_DIR "/docs/mappings/interlis-vsa-dss.json")));

    QVERIFY2(net.ok, qPrintable(net.report.errorText()));
    QCOMPARE(net.report.count(Kinds::Nodes).taken, 88);
    QCOMPARE(net.report.count(Kinds::Sections).taken, 102);
    QCOMPARE(pointsOf(net.pipe("1.003-1.002")->shapeWkt).first().z.value_or(0.0), 1915.05);
}

QTEST_APPLESS_MAIN(tst_OgrImport)
#include "tst_OgrImport.moc"
