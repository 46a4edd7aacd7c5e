#pragma once

#include <QString>

namespace Torvik::View3d {

/** A geographic coordinate. Radians or degrees, as the operation that takes it says; the altitude in metres. */
class GeoCoord {
public:
    GeoCoord() = default;
    GeoCoord(double lon, double lat, double alt)
        : m_lon(lon)
        , m_lat(lat)
        , m_alt(alt)
    {
    }

    double lon() const { return m_lon; }
    double lat() const { return m_lat; }
    double alt() const { return m_alt; }

private:
    double m_lon = 0;
    double m_lat = 0;
    double m_alt = 0;
};

class GeoProjectorSettings {
public:
    /** WKT of the system that a project without one gets: WGS 84 / Pseudo-Mercator, EPSG 3857. */
    static QString getDefaultPseudoMercatorWKT();
    /** WKT of the system that the map starts with; the same one. */
    static QString getValidPseudoMercatorWKT();
};

} // namespace Torvik::View3d
