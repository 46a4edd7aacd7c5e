#include "geo/Projection.h"

#include <QtMath>

#include <cpl_error.h>
#include <ogr_spatialref.h>

#include <cmath>
#include <memory>
#include <stdexcept>

namespace Torvik::View3d::Projection {

namespace {

struct DestroyTransformation {
    void operator()(OGRCoordinateTransformation* transformation) const
    {
        OCTDestroyCoordinateTransformation(OGRCoordinateTransformation::ToHandle(transformation));
    }
};
using Transformation = std::unique_ptr<OGRCoordinateTransformation, DestroyTransformation>;

struct Ordinates {
    double x;
    double y;
    double z;
};

bool import(OGRSpatialReference& system, const QString& wkt)
{
    return system.importFromWkt(withoutPrefix(wkt).toUtf8().constData()) == OGRERR_NONE;
}

/** A definition in any of GDAL's forms, but never a file or an address: the text comes out of a project. */
bool importDefinition(OGRSpatialReference& system, const QString& text)
{
    return system.SetFromUserInput(text.toUtf8().constData(),
                                   OGRSpatialReference::SET_FROM_USER_INPUT_LIMITATIONS_get()) == OGRERR_NONE;
}

OGRSpatialReference wgs84()
{
    OGRSpatialReference system;
    // GDAL carries this one itself, so that a missing table of systems does no harm here.
    if (system.importFromEPSG(4326) != OGRERR_NONE)
        system.SetWellKnownGeogCS("WGS84");
    system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return system;
}

OGRSpatialReference systemOf(const QString& wkt)
{
    OGRSpatialReference system;
    // A project may name its system by a code, "EPSG:25832".
    if (!import(system, wkt) && !importDefinition(system, withoutPrefix(wkt)))
        throw std::runtime_error("Failed to create coordinate transformation.");
    system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return system;
}

Ordinates transformed(Ordinates place, const OGRSpatialReference& source, const OGRSpatialReference& target)
{
    const Transformation transformation(OGRCreateCoordinateTransformation(&source, &target));
    if (!transformation)
        throw std::runtime_error("Failed to create coordinate transformation.");
    if (!transformation->Transform(1, &place.x, &place.y, &place.z))
        throw std::runtime_error("Coordinate transformation failed.");
    return place;
}

} // namespace

double radians(double degrees)
{
    return degrees * M_PI / 180.0;
}

double degrees(double radians)
{
    return radians * 180.0 / M_PI;
}

QString withoutPrefix(const QString& wkt)
{
    return wkt.startsWith(QLatin1String("WKT:")) ? wkt.mid(4) : wkt;
}

int epsgCodeFromWkt(const QString& wkt)
{
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    OGRSpatialReference system;
    if (!import(system, wkt))
        return -1;

    const char* code = system.GetAuthorityCode("PROJCS");
    if (!code)
        code = system.GetAuthorityCode("GEOGCS");
    return code ? QString::fromLatin1(code).toInt() : -1;
}

bool isPseudoMercator(const QString& wkt)
{
    return wkt.contains(QLatin1String("WGS_84_Pseudo_Mercator")) || wkt.contains(QLatin1String("Pseudo-Mercator")) ||
           wkt.contains(QLatin1String("WGS_1984_Web_Mercator_Auxiliary_Sphere"));
}

bool isDefinition(const QString& text)
{
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    OGRSpatialReference system;
    return importDefinition(system, text);
}

double mercatorScale(double latitude)
{
    return std::cos(latitude);
}

Projected projectedFromGeographic(const Geographic& place, const QString& wkt)
{
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    const Ordinates result = transformed({place.longitude, place.latitude, place.height}, wgs84(), systemOf(wkt));
    return {result.x, result.y, result.z};
}

Geographic geographicFromProjected(const Projected& place, const QString& wkt)
{
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    const Ordinates result = transformed({place.easting, place.northing, place.height}, systemOf(wkt), wgs84());
    return {result.x, result.y, result.z};
}

} // namespace Torvik::View3d::Projection
