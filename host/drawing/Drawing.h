#pragma once

#include <QtGlobal>

#include <vector>

namespace Torvik::DXF {

/** A place in the drawing's own coordinates and unit. */
struct DrawingPoint {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

/** Red in the lowest byte, then green, blue and opacity: the order in which a graphics card reads the bytes. */
using DrawingColour = quint32;

constexpr DrawingColour colourOf(unsigned red, unsigned green, unsigned blue, unsigned opacity = 255)
{
    return red | green << 8U | blue << 16U | opacity << 24U;
}

struct DrawingVertex {
    DrawingPoint at;
    DrawingColour colour = 0;
};

/** What a drawing shows, in three lists, whatever entities it was made of. */
struct Drawing {
    std::vector<DrawingVertex> lines;  ///< two a segment
    std::vector<DrawingVertex> fills;  ///< three a triangle
    std::vector<DrawingVertex> points; ///< one each

    std::size_t vertexCount() const { return lines.size() + fills.size() + points.size(); }
};

/** More than this is no plan for a touch device: some 200 MB for the graphics card. */
constexpr std::size_t mostVertices = 12000000;

using DrawingCourse = std::vector<DrawingPoint>;

/** A segment between each two points; those with a coordinate that is no number, or that no earthly drawing has, are
 *  left out, as are segments without a length. */
void addCourse(Drawing& drawing, const DrawingCourse& course, DrawingColour colour);
/** Fills what lies inside an odd number of the rings, each closed by itself, as flat as its first point. A figure of so
 *  many corners that filling it would hold up the rest is drawn by its rings. */
void addFill(Drawing& drawing, const std::vector<DrawingCourse>& rings, DrawingColour colour);
void addPoint(Drawing& drawing, const DrawingPoint& point, DrawingColour colour);

bool isUsable(const DrawingPoint& point);

} // namespace Torvik::DXF
