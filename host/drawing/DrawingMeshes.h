#pragma once

#include "host/drawing/Drawing.h"
#include "host/drawing/DrawingPictures.h"

#include <QByteArray>
#include <QVector3D>
#include <QVector>

#include <optional>

namespace Torvik::DXF {

/** Vertices as a graphics card takes them, of one kind: one draw call. */
struct DrawingMesh {
    enum Kind { Fills, Lines, Points };

    struct Vertex {
        float x, y, z;
        DrawingColour colour;
    };

    Kind kind = Lines;
    bool always = true;  ///< also drawn where pictures stand for the drawing
    QByteArray vertices; ///< of type Vertex
    int count = 0;
    QVector3D smallest;
    QVector3D largest;
};

/** A drawing in the scene's axes: (x, y, z) is (-x, z, y). */
struct DrawingMeshes {
    QVector<DrawingMesh> meshes; ///< in the order in which they are drawn
    /** Of a large drawing. They stand for all meshes but those that are always drawn. */
    QVector<DrawingPicture> pictures;
    /** What has been taken off the coordinates so that their fractions survive in single precision: a place in the
     * midst of the drawing, on whole units. Without a value nothing was. */
    std::optional<QVector3D> cropOffset;
    /** What has been taken off the heights besides: drawn at 560 m above the sea throughout, a plan still lies flat on
     *  the level that it is given. */
    double baseHeight = 0.0;
};

/** From so many segments on a drawing gets pictures, and its lines lie in squares, of which only those are drawn that
 *  are in view. */
constexpr std::size_t manySegments = 15000;
/** Squares along each side. */
constexpr int squaresASide = 6;

/** Vertices of one mesh at most. */
constexpr int mostOfMesh = 1 << 20;

DrawingMeshes meshesOf(const Drawing& drawing);

/** Metres of a unit by its number in the file ($INSUNITS); without a value for none, and for what is no length. */
std::optional<double> metresPerUnit(int unitCode);

} // namespace Torvik::DXF
