#include "plans/PlanAlignment.h"

#include <cmath>

namespace Torvik::View3d::PlanAlignment {

namespace {

/** Of a unit axis; what is left of it after rounding. */
constexpr float tiltOfRounding = 1e-3F;

bool isLevel(const QVector3D& direction)
{
    return qFuzzyIsNull(direction.y());
}

} // namespace

QMatrix4x4 rotationAround(const QVector3D& center, float angleDeg, const QVector3D& axis)
{
    QMatrix4x4 matrix;
    matrix.translate(center);
    matrix.rotate(angleDeg, axis);
    matrix.translate(-center);
    return matrix;
}

QQuaternion turn(const QVector3D& from, const QVector3D& to)
{
    const QQuaternion shortest = QQuaternion::rotationTo(from, to);
    // Right about, every axis across will do, and one on the ground would lay the plan on its face.
    const bool halfTurn = std::abs(shortest.scalar()) < tiltOfRounding;
    const bool tilts = std::abs(shortest.x()) > tiltOfRounding || std::abs(shortest.z()) > tiltOfRounding;
    if (halfTurn && tilts && isLevel(from) && isLevel(to))
        return QQuaternion::fromAxisAndAngle(0.0F, 1.0F, 0.0F, 180.0F);
    return shortest;
}

QMatrix4x4 rotationFromFourPoints(const QVector3D& a1, const QVector3D& a2, const QVector3D& b1, const QVector3D& b2)
{
    QVector3D axis;
    float angleDeg = 0.0F;
    turn(a2 - a1, b2 - b1).getAxisAndAngle(&axis, &angleDeg);
    return rotationAround(a1, angleDeg, axis);
}

float stretch(const QVector3D& a1, const QVector3D& a2, const QVector3D& b1, const QVector3D& b2)
{
    return (b2 - b1).length() / (a2 - a1).length();
}

QVector3D endAtLength(const QVector3D& a1, const QVector3D& a2, float length)
{
    return a1 + (a2 - a1).normalized() * length;
}

QVector3D moveAfterScaling(const QVector3D& from, const QVector3D& to, float factor, const QVector3D& origin)
{
    return to - (factor * from + (1.0F - factor) * origin);
}

} // namespace Torvik::View3d::PlanAlignment
