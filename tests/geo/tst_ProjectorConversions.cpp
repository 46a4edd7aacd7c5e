#include "geo/FreshProjector.h"

#include "common/LogCapture.h"
#include "geo/GeoTestSystems.h"

#include <QtTest>

#include <stdexcept>

using Torvik::Database::WktPoint;
using Torvik::View3d::GdalGeoProjector;
using Torvik::View3d::GeoCoord;
namespace Projection = Torvik::View3d::Projection;
using Position = Torvik::View3d::Vector3D<double>;

/** Places of the scene, of the projection and on earth, there and back. */
class tst_ProjectorConversions : public QObject {
    Q_OBJECT

private slots:
    void sceneAndStoredPointsAgreeThereAndBack();
    void theStoredPointCarriesTheFlags();
    void convertedPointsAreAppended();
    void gpsGivesCartesianCoordinates();
    void cartesianCoordinatesGiveGps();
    void theAltitudeIsNeitherScaledNorTransformed();
    void conversionsThrowOrGiveZero();
    void aPlaceInDegreesLandsOnGroundLevel();
    void thePlaceOfAScenePoint();
    void thePlaceUnderAPointIsOnTheGround();
    void thePlaceUnderAPointFollowsTheRay();
    void aLevelRayKeepsThePointAndIsLogged();
    void theCartesianOriginHasNoPlace();
};

void tst_ProjectorConversions::sceneAndStoredPointsAgreeThereAndBack()
{
    const FreshProjector utm(point(518367.8473, 5402474.2290, 240), wktOf(25832));
    const FreshProjector mercator(point(1000000, mercatorNorthing(60.0), 40), wktOf(3857));
    const QVector<QVector3D> places {{0, 0, 0}, {-12.345F, 1.5F, 678.9F}, {250.125F, -3.75F, -4000.5F}};

    for (const QVector3D& place : places) {
        // Scene coordinates are floats: at 4 km their step is 0.25 mm.
        QVERIFY((utm.worldPosForWktString(utm.wktStringForWorldPos(place)) - place).length() < 0.0005F);
        QVERIFY((mercator.worldPosForWktString(mercator.wktStringForWorldPos(place)) - place).length() < 0.0005F);
    }
}

void tst_ProjectorConversions::theStoredPointCarriesTheFlags()
{
    const FreshProjector projector(point(500000, 5500000, 120), wktOf(25832));

    QCOMPARE(projector.wktStringForWorldPos({-3, 2, 7}), QStringLiteral("POINT ZM(500003 5500007 122 0)"));
    QCOMPARE(projector.wktStringForWorldPos({-3, 2, 7}, 36), QStringLiteral("POINT ZM(500003 5500007 122 36)"));
}

void tst_ProjectorConversions::convertedPointsAreAppended()
{
    const FreshProjector projector(point(500000, 5500000, 120), wktOf(25832));
    QVector<WktPoint> points {WktPoint("1", "2", "3", "4")};

    projector.convertToWktPoints({{0, 0, 0}, {-3, 2, 7}}, points);

    QCOMPARE(points.size(), 3);
    QCOMPARE(points.at(0).toWktString(), QStringLiteral("POINT ZM(1 2 3 4)"));
    QCOMPARE(points.at(1).toWktString(), QStringLiteral("POINT ZM(500000 5500000 120 0)"));
    QCOMPARE(points.at(2).toWktString(), QStringLiteral("POINT ZM(500003 5500007 122 0)"));
    projector.convertToWktPoints({}, points);
    QCOMPARE(points.size(), 3);
}

void tst_ProjectorConversions::gpsGivesCartesianCoordinates()
{
    const FreshProjector projector(point(518367.8473, 5402474.2290, 240), wktOf(25832));

    // Krueger's series, computed apart from GDAL.
    const Position position =
        projector.convGpsTo3d(GeoCoord(Projection::radians(6.96), Projection::radians(50.94), 55.5));

    QVERIFY(near(position, Position(-356675.6853, 55.5, 5645134.2868), 0.001));
    QVERIFY(projector.cartesianCoords(Projection::radians(6.96), Projection::radians(50.94), 55.5) == position);
}

void tst_ProjectorConversions::cartesianCoordinatesGiveGps()
{
    const FreshProjector projector(point(518367.8473, 5402474.2290, 240), wktOf(25832));

    const GeoCoord gps = projector.conv3dToGps({-356675.6853, 55.5, 5645134.2868});

    // 1e-8 degrees are about a millimetre.
    QVERIFY(near(Projection::degrees(gps.lon()), 6.96, 1e-8));
    QVERIFY(near(Projection::degrees(gps.lat()), 50.94, 1e-8));
    QCOMPARE(gps.alt(), 55.5);
    QVERIFY(near(projector.convGpsTo3d(gps), Position(-356675.6853, 55.5, 5645134.2868), 0.001));
}

void tst_ProjectorConversions::theAltitudeIsNeitherScaledNorTransformed()
{
    const FreshProjector projector(point(1113194.9079, mercatorNorthing(60.0), 0), wktOf(3857));

    const GeoCoord gps = projector.geoCoords({-556597.4540, 30.0, 4199868.9449});

    QVERIFY(near(Projection::degrees(gps.lon()), 10.0, 1e-8));
    QVERIFY(near(Projection::degrees(gps.lat()), 60.0, 1e-8));
    QCOMPARE(gps.alt(), 30.0);
    QVERIFY(near(projector.descale({1, 2, 3}), Position(2, 4, 6), 1e-8));
}

void tst_ProjectorConversions::conversionsThrowOrGiveZero()
{
    const auto messageOf = [](const auto& conversion) {
        try {
            conversion();
        } catch (const std::runtime_error& error) {
            return QString::fromUtf8(error.what());
        }
        return QString();
    };
    const FreshProjector none;
    const FreshProjector utm(point(518367.8473, 5402474.2290, 240), wktOf(25832));
    const GeoCoord nowhere(0.0, 100.0, 0.0);

    QCOMPARE(messageOf([&] { none.convGpsTo3d(GeoCoord(0.1, 0.8, 0)); }),
             QStringLiteral("Failed to create coordinate transformation."));
    QCOMPARE(messageOf([&] {
                 none.conv3dToGps({1, 2, 3});
             }),
             QStringLiteral("Failed to create coordinate transformation."));
    QCOMPARE(messageOf([&] { utm.convGpsTo3d(nowhere); }), QStringLiteral("Coordinate transformation failed."));
    QVERIFY(utm.cartesianCoords(0.0, 100.0, 5.0) == Position());
    const GeoCoord zero = none.geoCoords({1, 2, 3});
    QVERIFY(zero.lon() == 0.0 && zero.lat() == 0.0 && zero.alt() == 0.0);
}

void tst_ProjectorConversions::aPlaceInDegreesLandsOnGroundLevel()
{
    const FreshProjector projector(point(518367.8473, 5402474.2290, 240), wktOf(25832));

    const QVector3D same = projector.sceneCoordsFromGeoCoords(48.775, 9.25);

    // Altitude 0 lies 240 m below a scene whose first point is that high.
    QVERIFY((same - QVector3D(0, -240, 0)).length() < 0.001F);
    // gdaltransform -s_srs EPSG:4326 -t_srs EPSG:25832: "8.6821 50.1109" is 477269.5084 5551009.5748.
    const QVector3D away = projector.sceneCoordsFromGeoCoords(50.1109, 8.6821);
    // Floats of six digits before the point step by 1.6 cm.
    QVERIFY((away - QVector3D(41098.3389F, -240.0F, 148535.3458F)).length() < 0.02F);
}

void tst_ProjectorConversions::thePlaceOfAScenePoint()
{
    const FreshProjector projector(point(518367.8473, 5402474.2290, 240), wktOf(25832));

    QVERIFY(near(projector.getLatitude({0, 0, 0}), 48.775, 1e-8));
    QVERIFY(near(projector.getLongitude({0, 0, 0}), 9.25, 1e-8));
    QVERIFY(projector.getLatitude({0, 0, 100}) > 48.7758);
    QVERIFY(projector.getLongitude({-100, 0, 0}) > 9.251);
}

void tst_ProjectorConversions::thePlaceUnderAPointIsOnTheGround()
{
    const FreshProjector projector(point(518367.8473, 5402474.2290, 240), wktOf(25832));

    const QVector3D onGround = projector.geoCoordsDegFromPointOnGround(0, 0, 0);
    const QVector3D above = projector.geoCoordsDegFromPointOnGround(0, 15, 0);

    QCOMPARE(onGround, QVector3D(9.25F, 48.775F, 240.0F));
    QCOMPARE(above, onGround);
}

void tst_ProjectorConversions::thePlaceUnderAPointFollowsTheRay()
{
    const FreshProjector projector(point(518367.8473, 5402474.2290, 240), wktOf(25832));

    // 1000 m up, looking down at 45 degrees to the north, or away from the ground on the same line.
    const QVector3D down = projector.geoCoordsDegFromPointOnGround(0, 1000, 0, {0, -5, 5});
    const QVector3D up = projector.geoCoordsDegFromPointOnGround(0, 1000, 0, {0, 5, -5});

    QCOMPARE(down, projector.geoCoordsDegFromPointOnGround(0, 0, 1000));
    QCOMPARE(up, down);
    QVERIFY(down.y() > 48.78F);
}

void tst_ProjectorConversions::aLevelRayKeepsThePointAndIsLogged()
{
    const FreshProjector projector(point(518367.8473, 5402474.2290, 240), wktOf(25832));
    const Kx::Test::LogCapture log;
    const QString message = QStringLiteral("Intersection for point on ground geo cordinates failed.");

    const QVector3D place = projector.geoCoordsDegFromPointOnGround(0, 15, 0, {1, 0, 0});

    QCOMPARE(place, QVector3D(9.25F, 48.775F, 255.0F));
    QCOMPARE(log.count(4, "Torvik::GeoProjector", message), 1);
    projector.geoCoordsDegFromPointOnGround(0, 0, 0, {1, 0, 0});
    projector.geoCoordsDegFromPointOnGround(0, 1e-12, 0, {1, 0, 0});
    QCOMPARE(log.count(4, "Torvik::GeoProjector", message), 1);
}

void tst_ProjectorConversions::theCartesianOriginHasNoPlace()
{
    // The corner of this system's square lies south of the equator and has a latitude and longitude of its own.
    const FreshProjector projector(point(100, 200, 0), wktOf(25832));

    QCOMPARE(projector.geoCoordsDegFromPointOnGround(100, 0, -200), QVector3D());
    QVERIFY(projector.geoCoordsDegFromPointOnGround(100, 0, -100).x() > 4.0F);
}

QTEST_APPLESS_MAIN(tst_ProjectorConversions)
#include "tst_ProjectorConversions.moc"
