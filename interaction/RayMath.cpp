#include "interaction/RayMath.h"

#include "scene/Fuzzy.h"

#include <algorithm>
#include <cmath>

namespace Torvik::View3d::RayMath {

namespace {

constexpr float parallelLimit = 1e-5F;
constexpr double degreesPerPixel = 0.2;
constexpr double zoomPerPixel = 0.1 * 0.2;
constexpr double degreesPerRadian = 57.2957795;
const QVector3D positionWithoutHeading(0.0F, 0.0F, 200.0F);

double degrees(double radians)
{
    return radians * 180.0 / M_PI;
}

double heading(const QVector3D& direction)
{
    return std::atan2(static_cast<double>(direction.z()), static_cast<double>(direction.x()));
}

/** The half aims at the middle of the pixel. */
float retinaOrdinate(float pixel, double extent, float first, float last)
{
    return static_cast<float>(static_cast<double>(last - first) * (static_cast<double>(pixel) + 0.5) / extent) + first;
}

double pixelOrdinate(float ordinate, double extent, float first, float last)
{
    return static_cast<double>(ordinate - first) * extent / static_cast<double>(last - first) - 0.5;
}

} // namespace

RetinaLimits retinaLimits(const QMatrix4x4& projection, float nearPlane)
{
    const float width = projection(0, 0);
    const float height = projection(1, 1);
    const float shiftX = projection(0, 2);
    const float shiftY = projection(1, 2);
    RetinaLimits limits;
    limits.left = -(nearPlane * (shiftX - 1.0F)) / width;
    limits.right = -(nearPlane * (shiftX + 1.0F)) / width;
    limits.top = (shiftY + 1.0F) * nearPlane / height;
    limits.bottom = (shiftY - 1.0F) * nearPlane / height;
    return limits;
}

std::optional<QVector3D> linePlaneIntersection(const QVector3D& source, const QVector3D& direction,
                                               const QVector3D& pointOnPlane, const QVector3D& planeNormal)
{
    const float slope = QVector3D::dotProduct(planeNormal, direction);
    if (!(std::abs(slope) > parallelLimit))
        return std::nullopt;
    const float t = QVector3D::dotProduct(pointOnPlane - source, planeNormal) / slope;
    return source + t * direction;
}

QMatrix4x4 retinaToWorldRotation(const QVector3D& up, const QVector3D& view)
{
    const QVector3D y = up.normalized();
    const QVector3D z = view.normalized();
    const QVector3D x = QVector3D::crossProduct(y, z);
    // The constructor from sixteen values marks the matrix as general, which keeps its inverse exact for any vectors.
    return QMatrix4x4(x.x(), y.x(), z.x(), 0.0F, //
                      x.y(), y.y(), z.y(), 0.0F, //
                      x.z(), y.z(), z.z(), 0.0F, //
                      0.0F, 0.0F, 0.0F, 1.0F);
}

QVector3D screenRay(const Eye& eye, float x, float y, const QSizeF& screen)
{
    const QVector3D onRetina(retinaOrdinate(x, screen.width(), eye.retina.left, eye.retina.right),
                             retinaOrdinate(y, screen.height(), eye.retina.top, eye.retina.bottom), eye.nearPlane);
    return retinaToWorldRotation(eye.up, eye.view) * onRetina;
}

QPointF screenPoint(const Eye& eye, const QVector3D& point, const QSizeF& screen)
{
    // Seen from the eye and starting there: on the near plane a pixel is a tenth of a millimetre, which floats lose
    // among places that are kilometres away.
    const QVector3D nearCenter = eye.view.normalized() * eye.nearPlane;
    const QVector3D hit =
        linePlaneIntersection(QVector3D(), point - eye.position, nearCenter, -eye.view).value_or(-eye.position);
    const QVector3D onRetina = retinaToWorldRotation(eye.up, eye.view).inverted() * hit;
    return QPointF(pixelOrdinate(onRetina.x(), screen.width(), eye.retina.left, eye.retina.right),
                   pixelOrdinate(onRetina.y(), screen.height(), eye.retina.top, eye.retina.bottom));
}

float tiltStep(const QVector3D& viewVector, double delta, float minAngleDeg, float maxAngleDeg)
{
    const double x = static_cast<double>(viewVector.x());
    const double z = static_cast<double>(viewVector.z());
    const double elevation = std::atan(static_cast<double>(viewVector.y()) / std::sqrt(x * x + z * z));
    const double step = delta * degreesPerPixel;
    const auto target = static_cast<float>(step - degrees(elevation));
    float correction = 0.0F;
    if (target < minAngleDeg)
        correction = minAngleDeg - target;
    else if (target > maxAngleDeg)
        correction = maxAngleDeg - target;
    return static_cast<float>(step + static_cast<double>(correction));
}

std::optional<QVector3D> zoomShift(const QVector3D& viewVector, double y, double lastY, double minDist, double maxDist)
{
    const auto length = static_cast<double>(viewVector.length());
    const double step = (y - lastY) * zoomPerPixel * length;
    const double newLength = length - step;
    if (newLength <= minDist || !(newLength < maxDist))
        return std::nullopt;
    return viewVector.normalized() * static_cast<float>(step);
}

float headingDifference(const QVector3D& center, const QVector3D& from, const QVector3D& to)
{
    return static_cast<float>(degrees(heading((to - center).normalized()) - heading((from - center).normalized())));
}

QVector3D levelPosition(const QVector3D& position, const QVector3D& center)
{
    const QVector3D offset = position - center;
    const QVector3D flat = offset * QVector3D(1.0F, 0.0F, 1.0F);
    if (!(offset.length() > 0.0F) || !(flat.length() > 0.0F))
        return positionWithoutHeading;
    return QQuaternion::rotationTo(offset.normalized(), flat.normalized()).rotatedVector(offset) + center;
}

AxisAngle axisAndAngle(const QQuaternion& q)
{
    const auto x = static_cast<double>(q.x());
    const auto y = static_cast<double>(q.y());
    const auto z = static_cast<double>(q.z());
    const double squares = x * x + y * y + z * z;
    if (Fuzzy::isNull(squares))
        return {};
    AxisAngle result;
    result.axis = q.vector();
    if (!Fuzzy::isNull(squares - 1.0))
        result.axis /= static_cast<float>(std::sqrt(squares));
    // A rounding error above one would make the angle not a number.
    const double scalar = std::clamp(static_cast<double>(q.scalar()), -1.0, 1.0);
    result.angleDeg = static_cast<float>(2.0 * std::acos(scalar) * degreesPerRadian);
    return result;
}

float roundedToSevenDecimals(double value)
{
    return static_cast<float>(std::round(value * 1e7) / 1e7);
}

} // namespace Torvik::View3d::RayMath
