#pragma once

#include <QString>

/** Coordinate systems and the way between them and WGS 84, as functions without a state. A system is a WKT text, which
 *  may carry the prefix "WKT:". GDAL objects live within a call only. Nothing is printed to the console by GDAL. */
namespace Torvik::View3d::Projection {

/** A place in a projected system: metres of the system. */
struct Projected {
    double easting = 0;
    double northing = 0;
    double height = 0;
};

/** A place in WGS 84: degrees, and metres above the ellipsoid. */
struct Geographic {
    double longitude = 0;
    double latitude = 0;
    double height = 0;
};

double radians(double degrees);
double degrees(double radians);

/** The text as GDAL takes it: without the prefix "WKT:" of texts longer than three characters. */
QString withoutPrefix(const QString& wkt);

/** The code of the projected system, else of the geographic one; -1 for an unknown authority and for what is no WKT. */
int epsgCodeFromWkt(const QString& wkt);

/** True when the text bears one of the names of the Pseudo-Mercator system. Case counts. */
bool isPseudoMercator(const QString& wkt);

/** True when GDAL understands the text as a definition of a system, be it WKT, "EPSG:25832" or another form. */
bool isDefinition(const QString& text);

/** Metres on the ground for a metre of a Mercator system at that latitude (radians). */
double mercatorScale(double latitude);

/** The place in the system. Throws std::runtime_error, "Failed to create coordinate transformation." when GDAL finds no
 *  way between the systems or does not know the one given, "Coordinate transformation failed." when it cannot go it. */
Projected projectedFromGeographic(const Geographic& place, const QString& wkt);

/** The reverse, with the same errors. */
Geographic geographicFromProjected(const Projected& place, const QString& wkt);

} // namespace Torvik::View3d::Projection
