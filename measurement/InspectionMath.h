#pragma once

#include <QQuaternion>
#include <QVector3D>

/** Bends and inclinations as values. Angles are degrees; y is up. */
namespace Torvik::View3d::InspectionMath {

/** Rotation of a pipe's course by a bend, in the frame of the segment before it (+z forward, +y up).
 *  @param angleDeg  deflection from straight on; 0 gives the identity
 *  @param clock     hour towards which the pipe turns, 12 is +y, 3 is -x; 30 degrees an hour */
QQuaternion rotationFromClockAndAngle(float angleDeg, float clock);

/** Degrees by which a way rises, between -90 and 90. A level way gives 0, and so does a vertical one, which has no
 *  level direction to compare with. */
float inclination(const QVector3D& way);

/** The turn that takes a way, seen from its end (`back` leads from there to the begin), to an inclination: it rises by
 *  `angleDeg` as seen from the end, so that along the way it falls by as much. */
QQuaternion rotationToInclination(const QVector3D& back, float angleDeg);

} // namespace Torvik::View3d::InspectionMath
