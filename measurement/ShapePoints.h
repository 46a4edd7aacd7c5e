#pragma once

#include <QVector3D>
#include <QVector>

namespace Torvik::View3d {

/** Something with a shape. */
class ShapePoints {
public:
    virtual ~ShapePoints() = default;

    /** Polylines of points in scene coordinates. */
    virtual QVector<QVector<QVector3D>> getShapePoints() const = 0;
};

} // namespace Torvik::View3d
