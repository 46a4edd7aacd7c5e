#include "measurement/InspectionMath.h"

#include "interaction/RayMath.h"

#include <QMatrix4x4>

namespace Torvik::View3d::InspectionMath {

namespace {

constexpr float degreesPerHour = 30.0F;
const QVector3D forward(0.0F, 0.0F, 1.0F);
const QVector3D up(0.0F, 1.0F, 0.0F);
/** At twelve o'clock a pipe turns about this axis. */
const QVector3D bendAxis(-1.0F, 0.0F, 0.0F);

QVector3D level(const QVector3D& vector)
{
    return QVector3D(vector.x(), 0.0F, vector.z());
}

QVector3D tiltAxis(const QVector3D& back)
{
    return QVector3D::crossProduct(-up, back).normalized();
}

} // namespace

QQuaternion rotationFromClockAndAngle(float angleDeg, float clock)
{
    QMatrix4x4 bend;
    bend.rotate(angleDeg, bendAxis);
    QMatrix4x4 dial;
    dial.rotate(clock * degreesPerHour, forward);
    return QQuaternion::fromDirection(dial * (bend * forward), up);
}

float inclination(const QVector3D& way)
{
    const RayMath::AxisAngle turn = RayMath::axisAndAngle(QQuaternion::rotationTo(level(way), way));
    const bool against = QVector3D::dotProduct(turn.axis, tiltAxis(-way)) >= 0.0F;
    return against ? -turn.angleDeg : turn.angleDeg;
}

QQuaternion rotationToInclination(const QVector3D& back, float angleDeg)
{
    const QQuaternion tilt = QQuaternion::fromAxisAndAngle(tiltAxis(back), angleDeg);
    return QQuaternion::rotationTo(back, tilt.rotatedVector(level(back)));
}

} // namespace Torvik::View3d::InspectionMath
