#include "geo/GeoTestSystems.h"
#include "geo/Projection.h"

#include <QTemporaryFile>
#include <QtTest>

#include <cmath>
#include <limits>
#include <stdexcept>

namespace Projection = Torvik::View3d::Projection;

namespace {

QString failureOf(double longitude, double latitude, const QString& wkt)
{
    try {
        Projection::projectedFromGeographic({longitude, latitude, 0}, wkt);
    } catch (const std::runtime_error& error) {
        return QString::fromUtf8(error.what());
    }
    return {};
}

} // namespace

class tst_Projection : public QObject {
    Q_OBJECT

private slots:
    void thePrefixIsRemovedOnceAndOnlyAtTheStart_data();
    void thePrefixIsRemovedOnceAndOnlyAtTheStart();
    void theCodeComesFromTheProjectedSystemFirst();
    void theCodeOfAGeographicSystemCountsOtherwise();
    void whatHasNoCodeGivesMinusOne_data();
    void whatHasNoCodeGivesMinusOne();
    void pseudoMercatorIsToldByItsNames_data();
    void pseudoMercatorIsToldByItsNames();
    void definitionsComeInSeveralForms_data();
    void definitionsComeInSeveralForms();
    void placesComeWhereTheFormulasPutThem_data();
    void placesComeWhereTheFormulasPutThem();
    void aDatumShiftAgreesWithTheCommandLineTool();
    void thereAndBackStaysWithinAMillimetre_data();
    void thereAndBackStaysWithinAMillimetre();
    void anUnknownSystemCannotBeTransformedTo();
    void aFileIsNoDefinition();
    void aSystemNamedByItsCodeConvertsAsItsTextDoes();
    void aPlaceOutsideTheWorldFails();
    void mercatorMetresShrinkWithTheLatitude();
};

void tst_Projection::thePrefixIsRemovedOnceAndOnlyAtTheStart_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << "PROJCS[]"
                           << "PROJCS[]";
    QTest::newRow("prefixed") << "WKT:PROJCS[]"
                              << "PROJCS[]";
    QTest::newRow("prefix alone") << "WKT:"
                                  << "";
    QTest::newRow("three characters") << "WKT"
                                      << "WKT";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("twice") << "WKT:WKT:A"
                           << "WKT:A";
    QTest::newRow("lower case") << "wkt:A"
                                << "wkt:A";
    QTest::newRow("inside") << "A WKT:"
                            << "A WKT:";
}

void tst_Projection::thePrefixIsRemovedOnceAndOnlyAtTheStart()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);

    QCOMPARE(Projection::withoutPrefix(text), expected);
}

void tst_Projection::theCodeComesFromTheProjectedSystemFirst()
{
    QCOMPARE(Projection::epsgCodeFromWkt(wktOf(25832)), 25832);
    QCOMPARE(Projection::epsgCodeFromWkt("WKT:" + wktOf(31467)), 31467);
    QCOMPARE(Projection::epsgCodeFromWkt(wktOf(3857)), 3857);
}

void tst_Projection::theCodeOfAGeographicSystemCountsOtherwise()
{
    QString projectedWithoutCode = wktOf(25832);
    projectedWithoutCode.remove(",AUTHORITY[\"EPSG\",\"25832\"]");

    QCOMPARE(Projection::epsgCodeFromWkt(wktOf(4326)), 4326);
    QCOMPARE(Projection::epsgCodeFromWkt(projectedWithoutCode), 4258);
}

void tst_Projection::whatHasNoCodeGivesMinusOne_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << "";
    QTest::newRow("unknown") << "WKT:UNKNOWN";
    QTest::newRow("a code, but no WKT") << "EPSG:25832";
    QTest::newRow("broken WKT") << "PROJCS[\"half a system\",";
    QTest::newRow("no authority")
        << "LOCAL_CS[\"building site\",LOCAL_DATUM[\"own\",0],UNIT[\"metre\",1],AXIS[\"E\",EAST],AXIS[\"N\",NORTH]]";
}

void tst_Projection::whatHasNoCodeGivesMinusOne()
{
    QFETCH(QString, text);

    QCOMPARE(Projection::epsgCodeFromWkt(text), -1);
}

void tst_Projection::pseudoMercatorIsToldByItsNames_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("expected");
    QTest::newRow("of GDAL") << "PROJCS[\"WGS 84 / Pseudo-Mercator\"]" << true;
    QTest::newRow("with underscores") << "WKT:PROJCS[\"WGS_84_Pseudo_Mercator\"]" << true;
    QTest::newRow("of Esri") << "PROJCS[\"WGS_1984_Web_Mercator_Auxiliary_Sphere\"]" << true;
    QTest::newRow("other case") << "PROJCS[\"WGS 84 / pseudo-mercator\"]" << false;
    QTest::newRow("another Mercator") << "PROJCS[\"WGS 84 / World Mercator\"]" << false;
    QTest::newRow("empty") << "" << false;
}

void tst_Projection::pseudoMercatorIsToldByItsNames()
{
    QFETCH(QString, text);
    QFETCH(bool, expected);

    QCOMPARE(Projection::isPseudoMercator(text), expected);
}

void tst_Projection::definitionsComeInSeveralForms_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("expected");
    QTest::newRow("WKT") << wktOf(25832) << true;
    QTest::newRow("code") << "EPSG:25832" << true;
    QTest::newRow("PROJ") << "+proj=utm +zone=32 +datum=WGS84" << true;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("nonsense") << "no system at all" << false;
    QTest::newRow("unknown code") << "EPSG:999999" << false;
}

void tst_Projection::definitionsComeInSeveralForms()
{
    QFETCH(QString, text);
    QFETCH(bool, expected);

    QCOMPARE(Projection::isDefinition(text), expected);
}

void tst_Projection::placesComeWhereTheFormulasPutThem_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("easting");
    QTest::addColumn<double>("northing");
    // Computed apart from GDAL: UTM by Krueger's series in the third flattening up to its fifth power (GRS 80, scale
    // 0.9996, false easting 500000), Pseudo-Mercator by R*lambda and R*ln(tan(pi/4+phi/2)), R = 6378137.
    QTest::newRow("zone 32, west of its meridian") << 25832 << 8.0 << 50.0 << 428333.5525 << 5539109.8152;
    QTest::newRow("zone 32, near its meridian") << 25832 << 9.25 << 48.775 << 518367.8473 << 5402474.2290;
    QTest::newRow("zone 32, north") << 25832 << 10.0 << 60.0 << 555776.2668 << 6651832.7353;
    QTest::newRow("zone 33") << 25833 << 13.405 << 52.52 << 391779.2593 << 5820072.1591;
    QTest::newRow("zone 31") << 25831 << 5.5 << 51.2 << 674656.8880 << 5675036.4777;
    QTest::newRow("Pseudo-Mercator") << 3857 << 8.0 << 50.0 << 890555.9263 << 6446275.8410;
    QTest::newRow("Pseudo-Mercator, south west") << 3857 << -58.38 << -34.6 << -6498831.8725 << -4109654.7336;
}

void tst_Projection::placesComeWhereTheFormulasPutThem()
{
    QFETCH(int, code);
    QFETCH(double, longitude);
    QFETCH(double, latitude);
    QFETCH(double, easting);
    QFETCH(double, northing);

    const auto place = Projection::projectedFromGeographic({longitude, latitude, 100.0}, wktOf(code));
    const auto prefixed = Projection::projectedFromGeographic({longitude, latitude, 100.0}, "WKT:" + wktOf(code));

    QVERIFY2(std::hypot(place.easting - easting, place.northing - northing) < 0.001,
             qPrintable(QString("%1 %2").arg(place.easting, 0, 'f', 4).arg(place.northing, 0, 'f', 4)));
    QCOMPARE(prefixed.easting, place.easting);
    QCOMPARE(prefixed.northing, place.northing);
}

void tst_Projection::aDatumShiftAgreesWithTheCommandLineTool()
{
    // echo "8.6821 50.1109 0" | gdaltransform -s_srs EPSG:4326 -t_srs EPSG:31467 gave 3477335.330 5552790.871 without
    // the BeTA2007 grid. Which shift is taken depends on the grids installed; they differ by less than 3 m.
    const auto place = Projection::projectedFromGeographic({8.6821, 50.1109, 0}, wktOf(31467));

    QVERIFY(std::hypot(place.easting - 3477335.330, place.northing - 5552790.871) < 3.0);
}

// The systems that the product offers.
void tst_Projection::thereAndBackStaysWithinAMillimetre_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<double>("easting");
    QTest::addColumn<double>("northing");
    QTest::newRow("UTM 32") << 25832 << 477269.5084 << 5551009.5748;
    QTest::newRow("UTM 33") << 25833 << 391779.2593 << 5820072.1591;
    QTest::newRow("Gauss-Krueger 2") << 31466 << 2567519.4872 << 5645410.8670;
    QTest::newRow("Gauss-Krueger 3") << 31467 << 3477335.3297 << 5552790.8711;
    QTest::newRow("Gauss-Krueger 4") << 31468 << 4468995.3212 << 5333091.1052;
    QTest::newRow("Pseudo-Mercator") << 3857 << 966486.9510 << 6465503.9650;
}

void tst_Projection::thereAndBackStaysWithinAMillimetre()
{
    QFETCH(int, code);
    QFETCH(double, easting);
    QFETCH(double, northing);
    const QString wkt = wktOf(code);

    const auto geographic = Projection::geographicFromProjected({easting, northing, 0}, wkt);
    const auto back = Projection::projectedFromGeographic(geographic, wkt);

    QVERIFY(geographic.longitude > 5.0 && geographic.longitude < 14.0);
    QVERIFY(geographic.latitude > 46.0 && geographic.latitude < 54.0);
    QVERIFY2(std::hypot(back.easting - easting, back.northing - northing) < 0.001,
             qPrintable(QString("%1 %2").arg(back.easting, 0, 'f', 4).arg(back.northing, 0, 'f', 4)));
}

void tst_Projection::anUnknownSystemCannotBeTransformedTo()
{
    const QString expected = QStringLiteral("Failed to create coordinate transformation.");

    QCOMPARE(failureOf(8.0, 50.0, ""), expected);
    QCOMPARE(failureOf(8.0, 50.0, "WKT:"), expected);
    QCOMPARE(failureOf(8.0, 50.0, "PROJCS[\"broken"), expected);
    QVERIFY_EXCEPTION_THROWN(Projection::geographicFromProjected({0, 0, 0}, ""), std::runtime_error);
}

void tst_Projection::aFileIsNoDefinition()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(wktOf(25832).toUtf8());
    file.close();

    QVERIFY(!Projection::isDefinition(file.fileName()));
    QCOMPARE(failureOf(8.0, 50.0, file.fileName()), QStringLiteral("Failed to create coordinate transformation."));
}

void tst_Projection::aSystemNamedByItsCodeConvertsAsItsTextDoes()
{
    const auto byText = Projection::projectedFromGeographic({8.0, 50.0, 0}, wktOf(25832));
    const auto byCode = Projection::projectedFromGeographic({8.0, 50.0, 0}, "EPSG:25832");

    QCOMPARE(byCode.easting, byText.easting);
    QCOMPARE(byCode.northing, byText.northing);
}

void tst_Projection::aPlaceOutsideTheWorldFails()
{
    QCOMPARE(failureOf(8.0, 5000.0, wktOf(25832)), QStringLiteral("Coordinate transformation failed."));
    QCOMPARE(failureOf(std::numeric_limits<double>::infinity(), 50.0, wktOf(25832)),
             QStringLiteral("Coordinate transformation failed."));
}

void tst_Projection::mercatorMetresShrinkWithTheLatitude()
{
    QCOMPARE(Projection::mercatorScale(0.0), 1.0);
    QCOMPARE(Projection::mercatorScale(Projection::radians(60.0)), 0.5);
    QCOMPARE(Projection::mercatorScale(Projection::radians(-60.0)), 0.5);
    QCOMPARE(Projection::degrees(Projection::radians(123.4)), 123.4);
}

QTEST_APPLESS_MAIN(tst_Projection)
#include "tst_Projection.moc"
