#pragma once

#include <QMatrix4x4>
#include <QPointF>
#include <QQuaternion>
#include <QSizeF>
#include <QVector3D>

#include <optional>

/** Rays, planes and the retina of a camera, as values: no camera object, no state.
 *  Frame: the scene (y up, metres); screen positions are pixels from the upper left corner; angles are degrees. */
namespace Torvik::View3d::RayMath {

/** Where the edges of the picture lie on the near plane. The horizontal axis points to the left of the view, so that
 *  for a symmetric frustum `left` is positive and `right` negative. Metres. */
struct RetinaLimits {
    float left = 0.0F;
    float right = 0.0F;
    float top = 0.0F;
    float bottom = 0.0F;
};

/** What the rays of a picture need to know of its camera. `up` and `view` need not be unit length. */
struct Eye {
    QVector3D position;
    QVector3D up;
    QVector3D view;
    float nearPlane = 0.0F;
    RetinaLimits retina;
};

/** An axis and a turn about it; both zero for a quaternion that turns nothing. */
struct AxisAngle {
    QVector3D axis;
    float angleDeg = 0.0F;
};

RetinaLimits retinaLimits(const QMatrix4x4& projection, float nearPlane);

/** Where a line through `source` meets a plane, also behind the source. Nothing when the dot product of direction and
 *  normal is at most 1e-5; neither is normalised, so that a short direction counts as parallel sooner. */
std::optional<QVector3D> linePlaneIntersection(const QVector3D& source, const QVector3D& direction,
                                               const QVector3D& pointOnPlane, const QVector3D& planeNormal);

/** Columns: cross(up, view), up, view, all of the normalised vectors, and (0,0,0,1). */
QMatrix4x4 retinaToWorldRotation(const QVector3D& up, const QVector3D& view);

/** Direction from the eye through the middle of a pixel; as long as the way to the near plane, not normalised. */
QVector3D screenRay(const Eye& eye, float x, float y, const QSizeF& screen);

/** Pixel of a scene point: the inverse of `screenRay`. A point behind the eye is mirrored through it. */
QPointF screenPoint(const Eye& eye, const QVector3D& point, const QSizeF& screen);

/** Degrees by which a camera turns about its view centre for a finger's way of `delta` pixels, such that its tilt below
 *  the horizon ends inside the limits, exactly on one if the way goes beyond it. */
float tiltStep(const QVector3D& viewVector, double delta, float minAngleDeg, float maxAngleDeg);

/** Shift of the camera along its view for a finger's way from `lastY` to `y`. Nothing when the distance to the view
 *  centre would leave the open interval from `minDist` to `maxDist`: the whole step is dropped. */
std::optional<QVector3D> zoomShift(const QVector3D& viewVector, double y, double lastY, double minDist, double maxDist);

/** Heading of `to` minus heading of `from`, both as seen from `center`, counted from +x towards +z; not wrapped, so
 *  between -360 and 360. */
float headingDifference(const QVector3D& center, const QVector3D& from, const QVector3D& to);

/** The camera's position turned about `center` into the horizontal plane through it, at the same distance; (0,0,200)
 *  for a camera straight above or below the centre, or in it. */
QVector3D levelPosition(const QVector3D& position, const QVector3D& center);

AxisAngle axisAndAngle(const QQuaternion& q);

/** Rounded to seven decimals. */
float roundedToSevenDecimals(double value);

} // namespace Torvik::View3d::RayMath
