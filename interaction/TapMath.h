#pragma once

#include <QMatrix4x4>
#include <QPointF>
#include <QSizeF>
#include <QVector3D>
#include <QVector>

/** What lies near a finger on the screen, as values. Points are in the scene, positions pixels from the upper left
 *  corner. */
namespace Torvik::View3d::TapMath {

struct View {
    QMatrix4x4 viewProjection;
    QSizeF size;
};

/** A tube along a course, as it is drawn. */
struct Tube {
    QVector<QVector3D> course;
    float radius = 0.0F;
};

/** Pixels from the position to the tube's edge; 0 inside it, infinity for one that is not in front of the viewer. */
double distanceTo(const Tube& tube, const QPointF& position, const View& view);

} // namespace Torvik::View3d::TapMath
