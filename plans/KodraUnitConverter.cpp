#include "plans/KodraUnitConverter.h"

#include "geo/GdalGeoProjector.h"

namespace Torvik::View3d {

namespace {

float currentScale()
{
    const GdalGeoProjector* projector = GdalGeoProjector::instance();
    return projector->initialized() ? float(projector->scale()) : 1.0F;
}

} // namespace

QVector3D KodraUnitConverter::getRotationOrScaleInCoordinateSystem(const QVector3D& v, CoordinateSystem from,
                                                                   CoordinateSystem to) const
{
    return from == to ? v : QVector3D(v.x(), v.z(), v.y());
}

QVector3D KodraUnitConverter::getTranslationInCoordinateSystem(const QVector3D& v, CoordinateSystem from,
                                                               CoordinateSystem to) const
{
    if (from == to)
        return v;
    const float s = currentScale();
    return to == CoordinateSystem::Scene ? QVector3D(-v.x() * s, v.z(), v.y() * s)
                                         : QVector3D(-v.x() / s, v.z() / s, v.y());
}

Vector3D<double> KodraUnitConverter::getPlanReferencePointInCoordinateSystem(const Vector3D<double>& v,
                                                                             CoordinateSystem from,
                                                                             CoordinateSystem to) const
{
    if (from == to)
        return v;
    const double s = double(currentScale());
    return to == CoordinateSystem::Scene ? Vector3D<double>(-v.x() * s, v.z(), v.y() * s)
                                         : Vector3D<double>(-v.x() / s, v.z() / s, v.y());
}

} // namespace Torvik::View3d
