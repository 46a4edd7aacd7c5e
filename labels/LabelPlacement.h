#pragma once

#include "interaction/RayMath.h"

#include <QPointF>
#include <QQuaternion>
#include <QRectF>
#include <QSizeF>
#include <QVector3D>

#include <optional>

/** Where a label stands: arithmetic in a plane two metres before the camera, in which it keeps its size in pixels
 * however far away its object is.
 *
 *  "Local" vectors are in the camera's axes, x to the left, y up, z along the view, metres, with the camera at 0; only
 *  the way from the camera to an object is ever taken from scene coordinates, so that a camera 100 km away costs no
 *  digits. Screen positions are pixels from the upper left corner, whole numbers at the middle of a pixel. */
namespace Torvik::View3d::LabelPlacement {

constexpr float planeDistance = 2.0F;
/** Rows by which a label that nobody has moved stands above its object. */
constexpr float rowsAbove = 2.12F;
/** Width of the pointer, as part of the height of one line. */
constexpr float pointerWidth = 0.056F;

struct View {
    QVector3D eye;
    QVector3D left;
    QVector3D up;
    QVector3D forward;
    RayMath::RetinaLimits edges; ///< of the picture, on the label plane
    QSizeF screen;
};

View viewOf(const RayMath::Eye& eye, const QSizeF& screen);
/** Size of a screen pixel in the label plane. */
float metresPerPixel(const View& view);

/** The point of the label plane in line with a scene point; nothing for one behind the camera. */
std::optional<QVector3D> onPlane(const View& view, const QVector3D& scenePoint);
QVector3D localOf(const View& view, const QPointF& pixel);
QPointF pixelOf(const View& view, const QVector3D& local);
QVector3D sceneVector(const View& view, const QVector3D& local);

/** A label's height on the screen in pixels; three rows for several lines. */
float heightInPixels(float rowPixels, float lineHeight, bool multiline);

struct Placed {
    QPointF corner;   ///< upper left, on the screen
    QVector3D center; ///< local
    QVector3D offset; ///< local, from the centre to the anchor
};

/** Upper left corner of a label that stands centred above its object. `aspect` is the text's width by its height; the
 *  rows are those of one line, whatever the label's height. */
QPointF cornerAbove(const QPointF& anchor, float aspect, float rowPixels, float rows);
/** `anchor` lies in the label plane, `size` is in metres there. */
Placed placedAt(const View& view, const QVector3D& anchor, const QPointF& corner, const QSizeF& size);
Placed placedByOffset(const View& view, const QVector3D& anchor, const QVector3D& offset, const QSizeF& size);

/** Turns an upright picture in the x-z plane, z down, towards the viewer. */
QQuaternion facing(const View& view);
/** Turn of a strip along z that lies parallel to the screen and runs along `local`. */
QQuaternion facingAlong(const View& view, const QVector3D& local);

/** The same picture from another depth: a factor on local vectors and sizes. */
float scaleAtDepth(float depth);

/** The part of the screen that a label covers, in pixels from edge to edge. */
QRectF coverage(const QPointF& corner, const QSizeF& pixels);

} // namespace Torvik::View3d::LabelPlacement
