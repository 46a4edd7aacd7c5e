#include "geo/GdalGeoProjector.h"

#include "domain/boundary/CLogger.h"
#include "geo/Projection.h"
#include "interaction/Utils3d.h"
#include "scene/Fuzzy.h"

#include <cmath>

namespace Torvik::View3d {

GdalGeoProjector::ProjectorState::ProjectorState(const Vector3D<double>& origin, double scale)
    : m_origin(origin)
    , m_scale(scale)
    , m_valid(true)
{
}

GdalGeoProjector::GdalGeoProjector(QObject* parent)
    : QObject(parent)
{
}

GdalGeoProjector* GdalGeoProjector::instance()
{
    static GdalGeoProjector projector;
    return &projector;
}

bool GdalGeoProjector::initialized() const
{
    return m_state.valid();
}

double GdalGeoProjector::latit() const
{
    return getLatitude({});
}

double GdalGeoProjector::longit() const
{
    return getLongitude({});
}

QString GdalGeoProjector::projectionString() const
{
    return m_state.valid() ? m_projection : QString();
}

Vector3D<double> GdalGeoProjector::origin() const
{
    return m_state.origin();
}

double GdalGeoProjector::scale() const
{
    return m_state.scale();
}

double GdalGeoProjector::getOriginY() const
{
    return m_state.origin().y();
}

bool GdalGeoProjector::isPseudoMercator() const
{
    return Projection::isPseudoMercator(m_projection);
}

void GdalGeoProjector::init(const Database::WktPoint& point, QString& projection)
{
    if (projection.isEmpty() || projection == QLatin1String("WKT:UNKNOWN")) {
        projection = GeoProjectorSettings::getDefaultPseudoMercatorWKT();
        useSystem(projection);
    } else {
        m_projection = projection;
    }

    double scale = 1.0;
    // The latitude is read with the tie still in force, its scale included.
    if (m_mercatorScaling && Projection::isPseudoMercator(projection))
        scale = Projection::mercatorScale(geoCoords(Vector3D<double>(point, 1.0)).lat());

    m_state = ProjectorState(Vector3D<double>(point, scale), scale);
    emit geoLocationChanged();
    emit mapResetRequest();
    emit sceneResetRequest();
}

void GdalGeoProjector::initFromMap(double latit, double longit, double alitid)
{
    if (m_state.valid())
        return;
    if (m_projection.isEmpty())
        useSystem(GeoProjectorSettings::getValidPseudoMercatorWKT());

    const double latitude = Projection::radians(latit);
    const Vector3D<double> centre = cartesianCoords(Projection::radians(longit), latitude, alitid);
    const double scale = m_mercatorScaling && isPseudoMercator() ? Projection::mercatorScale(latitude) : 1.0;

    m_state = ProjectorState(centre * scale, scale);
    // The scene is completed on the first of these, so it stands before those that ask it to follow.
    emit initializedFromMap();
    emit geoLocationChanged();
    emit mapResetRequest();
    emit sceneResetRequest();
    validateCoordinatesAndSignal(GeoCoord(longit, latit, 0.0));
}

void GdalGeoProjector::updateByMapTranslation(double startLatit, double startLongit, double endLatit, double endLongit)
{
    const auto cartesian = [this](double latit, double longit) {
        return cartesianCoords(Projection::radians(longit), Projection::radians(latit), 0.0);
    };
    const double oldScale = m_state.scale();
    const double newScale =
        m_mercatorScaling && isPseudoMercator() ? Projection::mercatorScale(Projection::radians(endLatit)) : 1.0;

    const Vector3D<double> offset = cartesian(startLatit, startLongit) * oldScale - m_state.origin();
    const Vector3D<double> newOrigin = cartesian(endLatit, endLongit) * newScale - offset;

    m_state = ProjectorState(newOrigin, newScale);
    emit geoLocationChanged();
}

void GdalGeoProjector::deinit()
{
    m_state = ProjectorState();
}

void GdalGeoProjector::setProjectionSystem(const QString& text)
{
    const QString definition = Projection::withoutPrefix(text);
    if (Projection::isDefinition(definition))
        useSystem(definition);
}

void GdalGeoProjector::useSystem(const QString& wkt)
{
    m_projection = wkt;
    m_epsgCode = Projection::epsgCodeFromWkt(wkt);
}

QString GdalGeoProjector::wktStringForWorldPos(QVector3D pos, int transformFlags) const
{
    return (m_state.origin() + Vector3D<double>(pos)).toWKTPoint(m_state.scale(), transformFlags).toWktString();
}

QVector3D GdalGeoProjector::worldPosForWktString(const QString& wkt) const
{
    return (Vector3D<double>(Database::WktPoint(wkt), m_state.scale()) - m_state.origin()).toQVector3D();
}

void GdalGeoProjector::convertToWktPoints(const QVector<QVector3D>& points, QVector<Database::WktPoint>& out) const
{
    out.reserve(out.size() + points.size());
    for (const QVector3D& point : points)
        out.append((m_state.origin() + Vector3D<double>(point)).toWKTPoint(m_state.scale(), 0));
}

Vector3D<double> GdalGeoProjector::convGpsTo3d(const GeoCoord& gps) const
{
    // The altitude goes through the same factor; the height that comes of it is not used.
    const Projection::Geographic place {Projection::degrees(gps.lon()), Projection::degrees(gps.lat()),
                                        Projection::degrees(gps.alt())};
    const Projection::Projected projected = Projection::projectedFromGeographic(place, m_projection);
    return {-projected.easting, gps.alt(), projected.northing};
}

GeoCoord GdalGeoProjector::conv3dToGps(const Vector3D<double>& position) const
{
    const Vector3D<double> cartesian = descale(position);
    const Projection::Geographic place =
        Projection::geographicFromProjected({-cartesian.x(), cartesian.z(), cartesian.y()}, m_projection);
    return {Projection::radians(place.longitude), Projection::radians(place.latitude), position.y()};
}

Vector3D<double> GdalGeoProjector::cartesianCoords(double lon, double lat, double alt) const
{
    try {
        return convGpsTo3d(GeoCoord(lon, lat, alt));
    } catch (...) {
        return {};
    }
}

GeoCoord GdalGeoProjector::geoCoords(const Vector3D<double>& position) const
{
    try {
        return conv3dToGps(position);
    } catch (...) {
        return {};
    }
}

Vector3D<double> GdalGeoProjector::descale(const Vector3D<double>& position) const
{
    return position / m_state.scale();
}

QVector3D GdalGeoProjector::sceneCoordsFromGeoCoords(double latit, double longit) const
{
    const Vector3D<double> cartesian = cartesianCoords(Projection::radians(longit), Projection::radians(latit), 0.0);
    return (cartesian * m_state.scale() - m_state.origin()).toQVector3D();
}

QVector3D GdalGeoProjector::geoCoordsDegFromPointOnGround(double x, double y, double z, QVector3D rayDir) const
{
    Vector3D<double> point(x, y, z);
    if (!Fuzzy::isNull(y)) {
        QVector3D ground;
        if (Utils3d::rayPlaneIntersection(point.toQVector3D(), rayDir.normalized(), ground, QVector3D(0, 0, 0),
                                          QVector3D(0, 1, 0)))
            point = Vector3D<double>(ground);
        else
            Logging::CLogger::logMessage(Logging::LogTrace, QStringLiteral("Torvik::GeoProjector"),
                                         QStringLiteral("Intersection for point on ground geo cordinates failed."));
    }

    const Vector3D<double> world = m_state.origin() + point;
    if (world == Vector3D<double>())
        return {};
    const GeoCoord place = geoCoords(world);
    return {float(Projection::degrees(place.lon())), float(Projection::degrees(place.lat())), float(place.alt())};
}

double GdalGeoProjector::getLatitude(const QVector3D& pos) const
{
    return Projection::degrees(geoCoords(m_state.origin() + Vector3D<double>(pos)).lat());
}

double GdalGeoProjector::getLongitude(const QVector3D& pos) const
{
    return Projection::degrees(geoCoords(m_state.origin() + Vector3D<double>(pos)).lon());
}

bool GdalGeoProjector::validateCoordinates(double lon, double lat, const EpsgBounds& bounds) const
{
    return bounds.contains(lon, lat);
}

void GdalGeoProjector::validateCoordinatesAndSignal(const GeoCoord& coord)
{
    bool inRegion = true;
    if (!isPseudoMercator() && m_epsgCode != -1)
        inRegion = validateCoordinates(coord.lon(), coord.lat(), m_epsgAreas.getBoundsByEpsgCode(m_epsgCode));
    emit locationWithinProjectionRegion(inRegion);
}

} // namespace Torvik::View3d
