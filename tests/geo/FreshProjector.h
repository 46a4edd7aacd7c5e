#pragma once

#include "domain/boundary/WktPoint.h"
#include "geo/GdalGeoProjector.h"
#include "geo/Projection.h"

#include <cmath>

constexpr double earthRadius = 6378137.0;

/** A projector that nobody has used before. */
class FreshProjector : public Torvik::View3d::GdalGeoProjector {
public:
    FreshProjector() = default;
    FreshProjector(const Torvik::Database::WktPoint& point, const QString& wkt)
    {
        QString projection = wkt;
        init(point, projection);
    }
};

inline bool near(double a, double b, double tolerance)
{
    return std::abs(a - b) <= tolerance;
}

inline bool near(const Torvik::View3d::Vector3D<double>& a, const Torvik::View3d::Vector3D<double>& b, double tolerance)
{
    return near(a.x(), b.x(), tolerance) && near(a.y(), b.y(), tolerance) && near(a.z(), b.z(), tolerance);
}

inline Torvik::Database::WktPoint point(double easting, double northing, double height)
{
    return {QString::number(easting, 'f', 4), QString::number(northing, 'f', 4), QString::number(height, 'f', 4), "0"};
}

inline double mercatorNorthing(double latitudeDeg)
{
    return earthRadius * std::log(std::tan(M_PI / 4 + Torvik::View3d::Projection::radians(latitudeDeg) / 2));
}
