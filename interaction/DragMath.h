#pragma once

#include <QVector3D>

/** How a finger's way becomes an object's, as values. Frame: the scene (y up, metres); angles are degrees. */
namespace Torvik::View3d::DragMath {

/** Normal of the plane on which an object is dragged: the ground's, or with the vertical free the view's, so that the
 *  object moves in a plane facing the viewer. `axisLock` holds 1 for a free axis and 0 for a locked one. */
QVector3D planeNormal(const QVector3D& axisLock, const QVector3D& viewVector);

/** What is left of a way: its projection on the control axis if there is one (a unit vector), whatever is locked; else
 *  its free ordinates. */
QVector3D constrained(const QVector3D& way, const QVector3D& axisLock, const QVector3D& controlAxis);

/** Angle about the vertical, positive as QTransform::rotationY, by which the way from `centre` to `to` is turned
 * against that to `from`. */
float turn(const QVector3D& centre, const QVector3D& from, const QVector3D& to);

/** Radius of the ring by which an object is turned: of the same size on the screen at any distance from the view's
 *  centre, and not below 2.5. Distances are those of a 20 degree lens. */
float ringRadius(float viewDistance);

/** Factor by which handles grow with the distance, so that a finger finds them; not below 1. */
float handleScale(float viewDistance);

} // namespace Torvik::View3d::DragMath
