#include "geo/FreshProjector.h"

#include "common/LogCapture.h"
#include "geo/GeoTestSystems.h"

#include <QtTest>

#include <cmath>

using Torvik::View3d::GdalGeoProjector;
using Torvik::View3d::GeoCoord;
using Torvik::View3d::GeoProjectorSettings;
namespace Projection = Torvik::View3d::Projection;
using Position = Torvik::View3d::Vector3D<double>;

namespace {

/** Names of the projector's signals, in the order of emission. */
class SignalOrder {
public:
    explicit SignalOrder(GdalGeoProjector& projector)
    {
        const auto note = [this, &projector](const char* name) {
            return [this, &projector, name] {
                order.append(QLatin1String(name));
                validThroughout = validThroughout && projector.initialized();
            };
        };
        QObject::connect(&projector, &GdalGeoProjector::initializedFromMap, &m_life, note("initializedFromMap"));
        QObject::connect(&projector, &GdalGeoProjector::geoLocationChanged, &m_life, note("geoLocationChanged"));
        QObject::connect(&projector, &GdalGeoProjector::mapResetRequest, &m_life, note("mapResetRequest"));
        QObject::connect(&projector, &GdalGeoProjector::sceneResetRequest, &m_life, note("sceneResetRequest"));
        QObject::connect(&projector, &GdalGeoProjector::locationWithinProjectionRegion, &m_life, [this](bool inRegion) {
            order.append(inRegion ? QStringLiteral("inside") : QStringLiteral("outside"));
        });
    }

    QStringList order;
    bool validThroughout = true;

private:
    QObject m_life; // ends the connections
};

QString regionOf(GdalGeoProjector& projector, double longitude, double latitude)
{
    SignalOrder signalOrder(projector);
    projector.validateCoordinatesAndSignal(GeoCoord(longitude, latitude, 0));
    return signalOrder.order.join(' ');
}

} // namespace

class tst_GdalGeoProjector : public QObject {
    Q_OBJECT

private slots:
    void thereIsOneForTheProcess();
    void aFreshProjectorIsNotTied();
    void theFirstPointBecomesTheOriginOfTheScene();
    void initAlwaysTiesAgain();
    void initTellsInThisOrder();
    void anUnknownSystemBecomesTheDefaultForTheCallerToo_data();
    void anUnknownSystemBecomesTheDefaultForTheCallerToo();
    void initKeepsTheCodeOfTheSystemBefore();
    void mercatorMetresBecomeGroundMetres();
    void reinitReadsTheLatitudeWithTheScaleInForce();
    void theMapTiesOnce();
    void theMapTellsInThisOrder();
    void theMapStartsWithPseudoMercator();
    void theMapUsesTheSystemThatIsSet();
    void aPlaceOutsideTheSystemsAreaIsTold();
    void aSystemOutsideTheListHoldsOnlyTheZeroPlace();
    void limitsOfAnAreaAreInside();
    void movingTheMapNowhereKeepsTheOrigin();
    void movingTheMapCarriesTheScene();
    void movingAMercatorMapChangesTheScale();
    void untyingKeepsTheSystem();
    void aBadSystemIsIgnored();
    void theSystemIsStoredWithoutPrefix();
    void thePrefixMakesNoDifference();
    void qmlReachesPropertiesAndOperations();
};

void tst_GdalGeoProjector::thereIsOneForTheProcess()
{
    QVERIFY(GdalGeoProjector::instance());
    QCOMPARE(GdalGeoProjector::instance(), GdalGeoProjector::instance());
}

void tst_GdalGeoProjector::aFreshProjectorIsNotTied()
{
    FreshProjector projector;

    QVERIFY(!projector.initialized());
    QCOMPARE(projector.scale(), 1.0);
    QVERIFY(projector.origin() == Position());
    QVERIFY(projector.projectionString().isEmpty());
    QVERIFY(!projector.isPseudoMercator());
    QCOMPARE(projector.latit(), 0.0);
    QCOMPARE(projector.longit(), 0.0);
    QVERIFY(!GdalGeoProjector::ProjectorState().valid());
    QVERIFY(GdalGeoProjector::ProjectorState({1, 2, 3}, 0.5).valid());
}

void tst_GdalGeoProjector::theFirstPointBecomesTheOriginOfTheScene()
{
    const FreshProjector projector(point(500000, 5500000, 120), wktOf(25832));

    QVERIFY(projector.initialized());
    QCOMPARE(projector.scale(), 1.0);
    QVERIFY(projector.origin() == Position(-500000, 120, 5500000));
    QCOMPARE(projector.getOriginY(), 120.0);
    QCOMPARE(projector.worldPosForWktString("POINT ZM(500000 5500000 120 0)"), QVector3D());
    // 3 m east, 7 m north, 2 m up.
    QCOMPARE(projector.worldPosForWktString("POINT ZM(500003 5500007 122 0)"), QVector3D(-3, 2, 7));
}

void tst_GdalGeoProjector::initAlwaysTiesAgain()
{
    FreshProjector projector(point(500000, 5500000, 120), wktOf(25832));
    QString wkt = wktOf(25833);

    projector.init(point(400000, 5800000, 30), wkt);

    QVERIFY(projector.origin() == Position(-400000, 30, 5800000));
    QCOMPARE(projector.projectionString(), wktOf(25833));
}

void tst_GdalGeoProjector::initTellsInThisOrder()
{
    FreshProjector projector;
    SignalOrder signalOrder(projector);
    QString wkt = wktOf(25832);

    projector.init(point(500000, 5500000, 0), wkt);

    QCOMPARE(signalOrder.order, (QStringList {"geoLocationChanged", "mapResetRequest", "sceneResetRequest"}));
    QVERIFY(signalOrder.validThroughout);
    QCOMPARE(wkt, wktOf(25832));
}

void tst_GdalGeoProjector::anUnknownSystemBecomesTheDefaultForTheCallerToo_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << "";
    QTest::newRow("unknown") << "WKT:UNKNOWN";
}

void tst_GdalGeoProjector::anUnknownSystemBecomesTheDefaultForTheCallerToo()
{
    QFETCH(QString, text);
    FreshProjector projector;

    projector.init(point(890555.9263, 6446275.8410, 0), text);

    QCOMPARE(text, GeoProjectorSettings::getDefaultPseudoMercatorWKT());
    QCOMPARE(projector.projectionString(), text);
    QVERIFY(projector.isPseudoMercator());
    QVERIFY(near(projector.scale(), std::cos(Projection::radians(50.0)), 1e-9));
}

void tst_GdalGeoProjector::initKeepsTheCodeOfTheSystemBefore()
{
    FreshProjector projector;
    projector.setProjectionSystem(wktOf(25833));
    QString wkt = wktOf(25832);

    projector.init(point(500000, 5500000, 0), wkt);

    // Judged by the limits of 25833.
    QCOMPARE(regionOf(projector, 13.0, 50.0), QStringLiteral("inside"));
    QCOMPARE(regionOf(projector, 9.0, 50.0), QStringLiteral("outside"));
}

void tst_GdalGeoProjector::mercatorMetresBecomeGroundMetres()
{
    const FreshProjector projector(point(1000000, mercatorNorthing(60.0), 40), wktOf(3857));

    QVERIFY(near(projector.scale(), 0.5, 1e-9));
    const QString away = point(1000100, mercatorNorthing(60.0), 40).toWktString();
    const QVector3D scene = projector.worldPosForWktString(away);
    QVERIFY2(near(double(scene.x()), -50.0, 0.001) && scene.y() == 0.0F && near(double(scene.z()), 0, 0.001),
             qPrintable(QString("%1 %2 %3").arg(double(scene.x())).arg(double(scene.y())).arg(double(scene.z()))));
    // Heights are scaled like everything else.
    QVERIFY(near(projector.getOriginY(), 20.0, 1e-6));
}

void tst_GdalGeoProjector::reinitReadsTheLatitudeWithTheScaleInForce()
{
    const double northing = mercatorNorthing(60.0);
    FreshProjector projector(point(0, northing, 0), wktOf(3857));
    const double scaleInForce = projector.scale();
    QString wkt = wktOf(3857);

    projector.init(point(0, northing, 0), wkt);

    const double latitude = 2 * std::atan(std::exp(northing / scaleInForce / earthRadius)) - M_PI / 2;
    QVERIFY(near(projector.scale(), std::cos(latitude), 1e-9));
    projector.deinit();
    projector.init(point(0, northing, 0), wkt);
    QVERIFY(near(projector.scale(), 0.5, 1e-9));
}

void tst_GdalGeoProjector::theMapTiesOnce()
{
    FreshProjector projector;
    projector.initFromMap(50.0, 8.0, 0.0);
    const Position origin = projector.origin();
    SignalOrder signalOrder(projector);

    projector.initFromMap(51.0, 9.0, 0.0);

    QVERIFY(projector.origin() == origin);
    QVERIFY(signalOrder.order.isEmpty());
    projector.deinit();
    QVERIFY(!projector.initialized());
    projector.initFromMap(51.0, 9.0, 0.0);
    QVERIFY(projector.initialized());
    QVERIFY(projector.origin() != origin);
    QCOMPARE(signalOrder.order.size(), 5);
}

void tst_GdalGeoProjector::theMapTellsInThisOrder()
{
    FreshProjector projector;
    SignalOrder signalOrder(projector);

    projector.initFromMap(50.0, 8.0, 0.0);

    QCOMPARE(signalOrder.order, (QStringList {"initializedFromMap", "geoLocationChanged", "mapResetRequest",
                                              "sceneResetRequest", "inside"}));
    QVERIFY(signalOrder.validThroughout);
}

void tst_GdalGeoProjector::theMapStartsWithPseudoMercator()
{
    FreshProjector projector;

    projector.initFromMap(60.0, 10.0, 40.0);

    QCOMPARE(projector.projectionString(), GeoProjectorSettings::getValidPseudoMercatorWKT());
    QCOMPARE(projector.scale(), 0.5);
    // (10 E, 60 N) is (1113194.9079, 8399737.8898); the altitude is scaled with the rest.
    QVERIFY(near(projector.origin(), Position(-556597.45395, 20.0, 4199868.9449), 0.001));
    QVERIFY(near(projector.latit(), 60.0, 1e-9));
    QVERIFY(near(projector.longit(), 10.0, 1e-9));
}

void tst_GdalGeoProjector::theMapUsesTheSystemThatIsSet()
{
    FreshProjector projector;
    projector.setProjectionSystem(wktOf(25832));

    projector.initFromMap(48.775, 9.25, 240.0);

    QCOMPARE(projector.projectionString(), wktOf(25832));
    QCOMPARE(projector.scale(), 1.0);
    QVERIFY(near(projector.origin(), Position(-518367.8473, 240.0, 5402474.2290), 0.001));
}

void tst_GdalGeoProjector::aPlaceOutsideTheSystemsAreaIsTold()
{
    FreshProjector outside;
    outside.setProjectionSystem(wktOf(25832));
    SignalOrder signalOrder(outside);
    outside.initFromMap(52.52, 13.405, 0.0);
    QCOMPARE(signalOrder.order.last(), QStringLiteral("outside"));

    FreshProjector mercator;
    mercator.setProjectionSystem(wktOf(3857));
    QCOMPARE(regionOf(mercator, 179.0, -80.0), QStringLiteral("inside"));

    FreshProjector unknown;
    QCOMPARE(regionOf(unknown, 179.0, -80.0), QStringLiteral("inside"));
}

void tst_GdalGeoProjector::aSystemOutsideTheListHoldsOnlyTheZeroPlace()
{
    FreshProjector projector;
    projector.setProjectionSystem(wktOf(21781));

    QCOMPARE(regionOf(projector, 8.0, 47.0), QStringLiteral("outside"));
    QCOMPARE(regionOf(projector, 0.0, 0.0), QStringLiteral("inside"));
}

void tst_GdalGeoProjector::limitsOfAnAreaAreInside()
{
    const FreshProjector projector;
    const EpsgBounds bounds(1, "area", {}, 6.0, 38.0, 12.0, 84.0, {});

    QVERIFY(projector.validateCoordinates(6.0, 38.0, bounds));
    QVERIFY(projector.validateCoordinates(12.0, 84.0, bounds));
    QVERIFY(!projector.validateCoordinates(5.999999, 50.0, bounds));
    QVERIFY(!projector.validateCoordinates(12.000001, 50.0, bounds));
    QVERIFY(!projector.validateCoordinates(8.0, 37.999999, bounds));
    QVERIFY(!projector.validateCoordinates(8.0, 84.000001, bounds));
}

void tst_GdalGeoProjector::movingTheMapNowhereKeepsTheOrigin()
{
    FreshProjector projector(point(518367.8473, 5402474.2290, 240), wktOf(25832));
    const Position origin = projector.origin();
    SignalOrder signalOrder(projector);

    projector.updateByMapTranslation(48.7, 9.2, 48.7, 9.2);

    // Two subtractions of numbers of seven digits before the point.
    QVERIFY(near(projector.origin(), origin, 1e-8));
    QCOMPARE(signalOrder.order, (QStringList {"geoLocationChanged"}));
}

void tst_GdalGeoProjector::movingTheMapCarriesTheScene()
{
    FreshProjector projector(point(518367.8473, 5402474.2290, 240), wktOf(25832));
    const QVector3D before = projector.sceneCoordsFromGeoCoords(48.776, 9.251);

    projector.updateByMapTranslation(48.776, 9.251, 48.9, 9.4);

    const QVector3D after = projector.sceneCoordsFromGeoCoords(48.9, 9.4);
    QVERIFY((after - before).length() < 0.001F);
    QVERIFY(near(projector.getOriginY(), 240.0, 1e-9));
    QVERIFY(near(projector.getLatitude(before), 48.9, 1e-8));
    QVERIFY(near(projector.getLongitude(before), 9.4, 1e-8));
}

void tst_GdalGeoProjector::movingAMercatorMapChangesTheScale()
{
    FreshProjector projector;
    projector.initFromMap(60.0, 10.0, 0.0);

    projector.updateByMapTranslation(60.0, 10.0, 50.0, 8.0);

    QCOMPARE(projector.scale(), std::cos(Projection::radians(50.0)));
    QVERIFY(near(projector.latit(), 50.0, 1e-8));
    QVERIFY(near(projector.longit(), 8.0, 1e-8));
}

void tst_GdalGeoProjector::untyingKeepsTheSystem()
{
    FreshProjector projector(point(518367.8473, 5402474.2290, 240), wktOf(25832));
    SignalOrder signalOrder(projector);

    projector.deinit();
    projector.deinit();

    QVERIFY(!projector.initialized());
    QVERIFY(projector.origin() == Position());
    QCOMPARE(projector.scale(), 1.0);
    QVERIFY(projector.projectionString().isEmpty());
    QVERIFY(signalOrder.order.isEmpty());
    projector.initFromMap(48.775, 9.25, 0.0);
    QCOMPARE(projector.projectionString(), wktOf(25832));
}

void tst_GdalGeoProjector::aBadSystemIsIgnored()
{
    FreshProjector projector;
    projector.setProjectionSystem(wktOf(25833));

    projector.setProjectionSystem("no system at all");
    projector.setProjectionSystem("");
    projector.setProjectionSystem("WKT:");

    projector.initFromMap(52.52, 13.405, 0.0);
    QCOMPARE(projector.projectionString(), wktOf(25833));
    QCOMPARE(regionOf(projector, 9.0, 50.0), QStringLiteral("outside"));
}

void tst_GdalGeoProjector::theSystemIsStoredWithoutPrefix()
{
    FreshProjector projector;

    projector.setProjectionSystem("WKT:" + wktOf(25832));

    projector.initFromMap(48.775, 9.25, 0.0);
    QCOMPARE(projector.projectionString(), wktOf(25832));
}

void tst_GdalGeoProjector::thePrefixMakesNoDifference()
{
    const FreshProjector plain(point(518367.8473, 5402474.2290, 240), wktOf(25832));
    const FreshProjector prefixed(point(518367.8473, 5402474.2290, 240), "WKT:" + wktOf(25832));

    const GeoCoord gps(Projection::radians(9.3), Projection::radians(48.8), 10.0);
    QVERIFY(plain.convGpsTo3d(gps) == prefixed.convGpsTo3d(gps));
    QCOMPARE(plain.latit(), prefixed.latit());
    QCOMPARE(plain.longit(), prefixed.longit());
    QVERIFY(prefixed.projectionString().startsWith("WKT:"));
}

void tst_GdalGeoProjector::qmlReachesPropertiesAndOperations()
{
    FreshProjector projector;
    QSignalSpy tied(&projector, &GdalGeoProjector::initializedFromMap);
    const QMetaObject* meta = projector.metaObject();

    QVERIFY(QMetaObject::invokeMethod(&projector, "initFromMap", Q_ARG(double, 50.0), Q_ARG(double, 8.0),
                                      Q_ARG(double, 0.0)));

    QCOMPARE(tied.count(), 1);
    QVERIFY(projector.property("initialized").toBool());
    QVERIFY(near(projector.property("latit").toDouble(), 50.0, 1e-8));
    QVERIFY(near(projector.property("longit").toDouble(), 8.0, 1e-8));
    QCOMPARE(meta->property(meta->indexOfProperty("initialized")).notifySignal().name(),
             QByteArray("initializedFromMap"));
    QVERIFY(meta->property(meta->indexOfProperty("latit")).isConstant());
    for (const char* operation :
         {"deinit()", "wktStringForWorldPos(QVector3D)", "wktStringForWorldPos(QVector3D,int)",
          "worldPosForWktString(QString)", "updateByMapTranslation(double,double,double,double)",
          "geoCoordsDegFromPointOnGround(double,double,double)",
          "geoCoordsDegFromPointOnGround(double,double,double,QVector3D)", "sceneCoordsFromGeoCoords(double,double)",
          "initialized()", "getOriginY()"})
        QVERIFY2(meta->indexOfMethod(operation) >= 0, operation);
}

QTEST_APPLESS_MAIN(tst_GdalGeoProjector)
#include "tst_GdalGeoProjector.moc"
