#include "host/drawing/Drawing.h"

#include <algorithm>
#include <cmath>

namespace Torvik::DXF {

namespace {

/** Beyond ten times the way to the moon in millimetres. */
constexpr double farthest = 1e13;
/** A figure is cut at the height of each corner, so the work grows by the square of their number. */
constexpr std::size_t mostCorners = 1000;

struct Edge {
    double x0 = 0.0;
    double y0 = 0.0;
    double x1 = 0.0;
    double y1 = 0.0; ///< above y0

    double xAt(double y) const { return x0 + (x1 - x0) * ((y - y0) / (y1 - y0)); }
};

struct Cut {
    double below = 0.0;
    double above = 0.0;
};

std::vector<Edge> edgesOf(const std::vector<DrawingCourse>& rings)
{
    std::vector<Edge> edges;
    for (const DrawingCourse& ring : rings) {
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const DrawingPoint& a = ring[i];
            const DrawingPoint& b = ring[(i + 1) % ring.size()];
            if (!isUsable(a) || !isUsable(b) || a.y == b.y)
                continue;
            edges.push_back(a.y < b.y ? Edge {a.x, a.y, b.x, b.y} : Edge {b.x, b.y, a.x, a.y});
        }
    }
    return edges;
}

std::vector<double> heightsOf(const std::vector<Edge>& edges)
{
    std::vector<double> heights;
    heights.reserve(edges.size() * 2);
    for (const Edge& edge : edges) {
        heights.push_back(edge.y0);
        heights.push_back(edge.y1);
    }
    std::sort(heights.begin(), heights.end());
    heights.erase(std::unique(heights.begin(), heights.end()), heights.end());
    return heights;
}

void addTrapeze(Drawing& drawing, const Cut& left, const Cut& right, double below, double above, double z,
                DrawingColour colour)
{
    const DrawingPoint a {left.below, below, z};
    const DrawingPoint b {right.below, below, z};
    const DrawingPoint c {right.above, above, z};
    const DrawingPoint d {left.above, above, z};
    const auto corner = [&](const DrawingPoint& point) { drawing.fills.push_back({point, colour}); };
    if (right.below > left.below) {
        corner(a), corner(b), corner(c);
    }
    if (right.above > left.above) {
        corner(a), corner(c), corner(d);
    }
}

} // namespace

bool isUsable(const DrawingPoint& point)
{
    // A comparison with what is no number is false.
    return std::abs(point.x) < farthest && std::abs(point.y) < farthest && std::abs(point.z) < farthest;
}

void addCourse(Drawing& drawing, const DrawingCourse& course, DrawingColour colour)
{
    for (std::size_t i = 1; i < course.size(); ++i) {
        const DrawingPoint& a = course[i - 1];
        const DrawingPoint& b = course[i];
        if (!isUsable(a) || !isUsable(b) || (a.x == b.x && a.y == b.y && a.z == b.z))
            continue;
        drawing.lines.push_back({a, colour});
        drawing.lines.push_back({b, colour});
    }
}

void addFill(Drawing& drawing, const std::vector<DrawingCourse>& rings, DrawingColour colour)
{
    const std::vector<Edge> edges = edgesOf(rings);
    if (edges.size() < 2)
        return;
    if (edges.size() > mostCorners) {
        for (const DrawingCourse& ring : rings)
            addCourse(drawing, ring, colour);
        return;
    }
    const auto first = std::find_if(rings.begin(), rings.end(), [](const auto& ring) { return !ring.empty(); });
    const double z = isUsable(first->front()) ? first->front().z : 0.0;
    const std::vector<double> heights = heightsOf(edges);
    std::vector<Cut> cuts;
    for (std::size_t i = 1; i < heights.size(); ++i) {
        const double below = heights[i - 1];
        const double above = heights[i];
        cuts.clear();
        for (const Edge& edge : edges) {
            if (edge.y0 <= below && edge.y1 >= above)
                cuts.push_back({edge.xAt(below), edge.xAt(above)});
        }
        std::sort(cuts.begin(), cuts.end(),
                  [](const Cut& a, const Cut& b) { return a.below + a.above < b.below + b.above; });
        for (std::size_t k = 1; k < cuts.size(); k += 2)
            addTrapeze(drawing, cuts[k - 1], cuts[k], below, above, z, colour);
    }
}

void addPoint(Drawing& drawing, const DrawingPoint& point, DrawingColour colour)
{
    if (isUsable(point))
        drawing.points.push_back({point, colour});
}

} // namespace Torvik::DXF
