#include "plans/PlanPlace.h"

#include "plans/PlanXml.h"

#include <QtMath>

#include <cmath>

namespace Torvik::View3d::PlanPlaces {

namespace {

using Offset = Vector3D<double>;

/** `offset` turned and scaled as the matrix does. */
Offset mapped(const QMatrix4x4& matrix, const Offset& offset)
{
    const auto row = [&](int i) {
        return double(matrix(i, 0)) * offset.x() + double(matrix(i, 1)) * offset.y() +
               double(matrix(i, 2)) * offset.z();
    };
    return {row(0), row(1), row(2)};
}

Offset turned(const PlanPlace& place, const Offset& offset)
{
    const double x = offset.x() * double(place.scale.x());
    const double z = offset.z() * double(place.scale.z());
    const double angle = qDegreesToRadians(place.turnDeg);
    return {x * std::cos(angle) + z * std::sin(angle), offset.y() * double(place.scale.y()),
            z * std::cos(angle) - x * std::sin(angle)};
}

Offset translationOf(const QMatrix4x4& matrix)
{
    return Offset(matrix.column(3).toVector3D());
}

/** As it is read back. */
double asStored(double degrees)
{
    return QString::number(degrees, 'g', PlanXml::angleDigits).toDouble();
}

} // namespace

QMatrix4x4 shifted(const QMatrix4x4& matrix, const Offset& offset)
{
    QMatrix4x4 result = matrix;
    const Offset place = translationOf(matrix) + mapped(matrix, offset);
    result.setColumn(3, QVector4D(place.toQVector3D(), 1.0F));
    return result;
}

PlanPlace originOf(const QMatrix4x4& matrix, const Offset& offset)
{
    PlanPlace place;
    place.scale = {matrix.column(0).toVector3D().length(), matrix.column(1).toVector3D().length(),
                   matrix.column(2).toVector3D().length()};
    place.turnDeg = asStored(qRadiansToDegrees(std::atan2(-double(matrix(2, 0)), double(matrix(0, 0)))));
    place.position = translationOf(matrix) - turned(place, offset);
    return place;
}

QMatrix4x4 matrixAt(const PlanPlace& place, const Offset& offset)
{
    const Offset at = place.position + turned(place, offset);
    QMatrix4x4 matrix;
    matrix.translate(at.toQVector3D());
    matrix.rotate(float(place.turnDeg), 0.0F, 1.0F, 0.0F);
    matrix.scale(place.scale);
    return matrix;
}

} // namespace Torvik::View3d::PlanPlaces
