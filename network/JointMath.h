#pragma once

#include <QMatrix4x4>
#include <QQuaternion>
#include <QVector3D>

/** How a lateral joins a pipe, as values. Frame: the pipe's at the joint, +z forward and +y up; metres and degrees. */
namespace Torvik::View3d::JointMath {

/** Turns +z to where the joint points.
 *  @param clock       hour at which the joint leaves the pipe, 12 is +y, 3 is -x; 30 degrees an hour
 *  @param jointAngle  from the way back to the pipe's start: 90 stands at right angles, 180 lies along the pipe */
QQuaternion jointRotation(int clock, float jointAngle);

/** Radius of the stub that shows a joint of a diameter in millimetres: a centimetre less than the lateral's pipe would
 *  have, at least 0.04. */
float stubRadius(float diameterMm);
/** Radius of the sphere at the joint, 16 % wider than the stub, so that it hides its end. */
float sphereRadius(float diameterMm);
/** What a sphere has to a stub of this radius. */
float sphereAround(float radius);

/** A pipe's last segment, as it must be to reach a point. */
struct Reach {
    QQuaternion rotation; ///< against the segment before
    float length = 0.0F;
};

/** The segment that runs straight from `begin` to `target`.
 *  @param begin, target    in the scene
 *  @param worldRotation    from the chain to the scene
 *  @param parentRotation   of the segment before, in the chain */
Reach reach(const QVector3D& begin, const QVector3D& target, const QQuaternion& worldRotation,
            const QQuaternion& parentRotation);

/** Length that takes a segment from `begin` abreast of a point at its end's own height: the projection on its
 *  direction, negative for a point behind its begin. False for a segment too short to have a direction. */
bool lengthAbreastOf(const QVector3D& begin, const QVector3D& end, const QVector3D& target, float& length);

/** Turn of a pipe relative to the joint at which it begins. */
QQuaternion offsetFromJoint(const QMatrix4x4& joint, const QMatrix4x4& pipe);

} // namespace Torvik::View3d::JointMath
