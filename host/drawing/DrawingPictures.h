#pragma once

#include "host/drawing/Drawing.h"

#include <QByteArray>
#include <QVector>

namespace Torvik::DXF {

/** A square of the drawing's plane, in its own coordinates. */
struct DrawingRegion {
    double left = 0.0;
    double bottom = 0.0;
    double side = 0.0;

    bool contains(double x, double y) const { return x >= left && x < left + side && y >= bottom && y < bottom + side; }
};

/** A part of a picture of the drawing: what it looks like when a pixel of the screen shows more of it than one of
 * these. */
struct DrawingPicture {
    int level = 0; ///< 0 is the coarsest, one picture of the whole region; each further level has twice the pixels
    int side = 0;  ///< pixels along each edge
    DrawingRegion region;
    QByteArray pixels; ///< red, green, blue, opacity; the colours already multiplied by the opacity; the top row first
};

/** Levels of pictures that a large drawing gets, and the pixels along an edge of the coarsest. */
constexpr int pictureLevels = 5;
constexpr int coarsestSide = 256;

/** The pictures of all levels, coarsest first. Many thousands of lines that share pixels cost as much to draw as many
 *  thousands that can be told apart; a picture costs the same whatever it shows. */
QVector<DrawingPicture> picturesOf(const Drawing& drawing, const DrawingRegion& region);

} // namespace Torvik::DXF
