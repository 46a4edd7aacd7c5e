#pragma once

#include "scene/KxView3dExport.h"

#include <QMatrix4x4>
#include <QQuaternion>
#include <QVector3D>

/** How a plan is turned, scaled and moved so that a line on it comes to lie on a line of the scene. Scene coordinates;
 *  nothing is said of lines without a length. Pure functions. */
namespace Torvik::View3d::PlanAlignment {

/** About `center`. */
KXVIEW3D_EXPORT QMatrix4x4 rotationAround(const QVector3D& center, float angleDeg, const QVector3D& axis);

/** The turn about a1 after which the line from a1 to a2 has the direction of that from b1 to b2. */
KXVIEW3D_EXPORT QMatrix4x4 rotationFromFourPoints(const QVector3D& a1, const QVector3D& a2, const QVector3D& b1,
                                                  const QVector3D& b2);

/** The turn from one direction to another. Lines on the ground are turned on the ground, also right about. */
KXVIEW3D_EXPORT QQuaternion turn(const QVector3D& from, const QVector3D& to);

/** How many times as long b1-b2 is as a1-a2. */
KXVIEW3D_EXPORT float stretch(const QVector3D& a1, const QVector3D& a2, const QVector3D& b1, const QVector3D& b2);

/** The end of a line that begins at a1, goes towards a2 and is `length` metres long. */
KXVIEW3D_EXPORT QVector3D endAtLength(const QVector3D& a1, const QVector3D& a2, float length);

/** The move that brings what was at `from` to `to`, once the plan has been scaled about its origin. */
KXVIEW3D_EXPORT QVector3D moveAfterScaling(const QVector3D& from, const QVector3D& to, float factor,
                                           const QVector3D& origin);

} // namespace Torvik::View3d::PlanAlignment
