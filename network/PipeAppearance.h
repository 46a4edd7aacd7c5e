#pragma once

#include <QColor>
#include <QVector3D>
#include <QVector>

namespace Torvik::View3d {

/** What a pipe looks like, apart from how it is drawn. */
struct PipeAppearance {
    QVector<QVector3D> points; ///< scene coordinates: begin of the first segment, then every segment's end
    QVector<QColor> colors;    ///< one a segment; whether a pipe is selected shows in them
    float radius = 0.0F;       ///< metres
};

} // namespace Torvik::View3d
