#pragma once

#include "host/app/CameraPose.h"

#include <QMarginsF>
#include <QRectF>
#include <QSizeF>
#include <QVector>

namespace Torvik::Viewer {

struct SceneSnapshot;

/** A ball of the scene that is to be seen whole, with the pixels around its centre that its name takes. */
struct FramedPoint {
    QVector3D point;
    float radius = 0;
    QMarginsF name;
};

/** What names look like at present. */
struct NameLook {
    bool visible = true;
    /** Names of manholes have several lines. */
    bool fullInfo = false;
};

/** Everything that boundsOf() the snapshot takes in, point by point. */
QVector<FramedPoint> framedPointsOf(const SceneSnapshot& snapshot, const NameLook& look);

/** The largest part of an area free of controls, for something that is `aspect` times as wide as high. */
QRectF clearPart(const QRectF& area, const QVector<QRectF>& controls, double aspect);

/** Width by height of the picture of the points. */
double aspectOf(const QVector<FramedPoint>& points, const CameraPose& direction);

/** The pose in this direction of view that brings all points, and their names, into the part `clear` of the screen, as
 *  large as they can be there; never nearer than `closest`. The point looked at stays on the height of their middle, as
 *  far as the direction allows that. The pose given, if there are no points. */
CameraPose framedPose(const QVector<FramedPoint>& points, const CameraPose& direction, const QSizeF& screen,
                      const QRectF& clear, double closest);

/** Pixel of a scene point on a screen of this size, seen through the view's lens. */
QPointF pixelOf(const CameraPose& pose, const QVector3D& point, const QSizeF& screen);

} // namespace Torvik::Viewer
