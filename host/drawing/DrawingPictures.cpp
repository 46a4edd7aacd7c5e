#include "host/drawing/DrawingPictures.h"

#include <algorithm>
#include <cmath>

namespace Torvik::DXF {

namespace {

constexpr int finest = coarsestSide << (pictureLevels - 1);
/** Larger pictures come in parts of this many pixels along each edge, of which only those in view are drawn. */
constexpr int largestPart = 1024;

unsigned opacityOf(DrawingColour pixel)
{
    return pixel >> 24U;
}

/** A square of pixels, the top row first. */
class Canvas {
public:
    explicit Canvas(int side)
        : m_side(side)
        , m_pixels(std::size_t(side) * std::size_t(side), 0)
    {
    }

    int side() const { return m_side; }
    const DrawingColour* row(int y) const { return m_pixels.data() + std::size_t(y) * std::size_t(m_side); }

    void set(int x, int y, DrawingColour colour)
    {
        if (x >= 0 && y >= 0 && x < m_side && y < m_side)
            m_pixels[std::size_t(y) * std::size_t(m_side) + std::size_t(x)] = over(colour, at(x, y));
    }
    void put(int x, int y, DrawingColour pixel)
    {
        m_pixels[std::size_t(y) * std::size_t(m_side) + std::size_t(x)] = pixel;
    }
    DrawingColour at(int x, int y) const { return row(y)[x]; }

private:
    /** The colour lies on what is there; the result is multiplied by its opacity. */
    static DrawingColour over(DrawingColour colour, DrawingColour below)
    {
        const unsigned opacity = opacityOf(colour);
        if (opacity == 255)
            return colour;
        const auto mix = [=](unsigned shift) {
            const unsigned upper = shift == 24U ? 255U : colour >> shift & 255U;
            return (upper * opacity + (below >> shift & 255U) * (255U - opacity)) / 255U << shift;
        };
        return mix(0) | mix(8) | mix(16) | mix(24);
    }

    int m_side;
    std::vector<DrawingColour> m_pixels;
};

struct Place {
    double x = 0.0;
    double y = 0.0;
};

/** From the drawing to pixels, y downwards. */
struct Scale {
    DrawingRegion region;
    double pixelsPerUnit = 1.0;

    Place operator()(const DrawingPoint& point) const
    {
        return {(point.x - region.left) * pixelsPerUnit, (region.bottom + region.side - point.y) * pixelsPerUnit};
    }
};

/** Shortens from..to to what lies between 0 and the side; false if nothing does. */
bool clip(Place& from, Place& to, double side)
{
    double begin = 0.0;
    double end = 1.0;
    const Place way {to.x - from.x, to.y - from.y};
    const auto keep = [&](double step, double room) {
        if (step == 0.0)
            return room >= 0.0;
        const double at = room / step;
        (step < 0.0 ? begin : end) = step < 0.0 ? std::max(begin, at) : std::min(end, at);
        return begin <= end;
    };
    if (!keep(-way.x, from.x) || !keep(way.x, side - from.x) || !keep(-way.y, from.y) || !keep(way.y, side - from.y))
        return false;
    const Place start = from;
    from = {start.x + begin * way.x, start.y + begin * way.y};
    to = {start.x + end * way.x, start.y + end * way.y};
    return true;
}

void drawLine(Canvas& canvas, Place from, Place to, DrawingColour colour)
{
    if (!clip(from, to, canvas.side()))
        return;
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const int steps = int(std::max(std::abs(dx), std::abs(dy))) + 1;
    for (int i = 0; i <= steps; ++i)
        canvas.set(int(from.x + dx * i / steps), int(from.y + dy * i / steps), colour);
}

void drawTriangle(Canvas& canvas, Place a, Place b, Place c, DrawingColour colour)
{
    double area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    if (area == 0.0)
        return;
    if (area < 0.0)
        std::swap(b, c);
    const double side = canvas.side();
    const auto pixel = [side](double value) { return int(std::min(std::max(value, 0.0), side)); };
    const auto left = [](const Place& from, const Place& to, double x, double y) {
        const double turn = (to.x - from.x) * (y - from.y) - (to.y - from.y) * (x - from.x);
        // A pixel on the edge of two triangles belongs to one of them.
        return turn > 0.0 || (turn == 0.0 && (to.y < from.y || (to.y == from.y && to.x > from.x)));
    };
    for (int y = pixel(std::min({a.y, b.y, c.y})); y < pixel(std::max({a.y, b.y, c.y}) + 1.0); ++y) {
        for (int x = pixel(std::min({a.x, b.x, c.x})); x < pixel(std::max({a.x, b.x, c.x}) + 1.0); ++x) {
            if (left(a, b, x + 0.5, y + 0.5) && left(b, c, x + 0.5, y + 0.5) && left(c, a, x + 0.5, y + 0.5))
                canvas.set(x, y, colour);
        }
    }
}

Canvas paint(const Drawing& drawing, const DrawingRegion& region)
{
    Canvas canvas(finest);
    const Scale scale {region, finest / region.side};
    for (std::size_t i = 0; i + 2 < drawing.fills.size(); i += 3) {
        drawTriangle(canvas, scale(drawing.fills[i].at), scale(drawing.fills[i + 1].at), scale(drawing.fills[i + 2].at),
                     drawing.fills[i].colour);
    }
    for (std::size_t i = 0; i + 1 < drawing.lines.size(); i += 2)
        drawLine(canvas, scale(drawing.lines[i].at), scale(drawing.lines[i + 1].at), drawing.lines[i].colour);
    for (const DrawingVertex& point : drawing.points) {
        const Place place = scale(point.at);
        if (!region.contains(point.at.x, point.at.y))
            continue;
        for (int dy = -1; dy <= 1; ++dy) {
            for (int dx = -1; dx <= 1; ++dx)
                canvas.set(int(place.x) + dx, int(place.y) + dy, point.colour);
        }
    }
    return canvas;
}

/** Half the pixels each way: of four the least transparent, so that thin lines don't fade. */
Canvas halved(const Canvas& whole)
{
    Canvas half(whole.side() / 2);
    for (int y = 0; y < half.side(); ++y) {
        const DrawingColour* const upper = whole.row(2 * y);
        const DrawingColour* const lower = whole.row(2 * y + 1);
        for (int x = 0; x < half.side(); ++x) {
            const DrawingColour four[] = {upper[2 * x], upper[2 * x + 1], lower[2 * x], lower[2 * x + 1]};
            const DrawingColour most = *std::max_element(
                four, four + 4, [](DrawingColour a, DrawingColour b) { return opacityOf(a) < opacityOf(b); });
            half.put(x, y, most);
        }
    }
    return half;
}

DrawingPicture cut(const Canvas& canvas, int level, int column, int row, const DrawingRegion& whole)
{
    const int side = std::min(canvas.side(), largestPart);
    DrawingPicture picture;
    picture.level = level;
    picture.side = side;
    const double part = whole.side * side / canvas.side();
    picture.region = {whole.left + column * part, whole.bottom + whole.side - (row + 1) * part, part};
    picture.pixels.reserve(side * side * int(sizeof(DrawingColour)));
    for (int y = 0; y < side; ++y)
        picture.pixels.append(reinterpret_cast<const char*>(canvas.row(row * side + y) + column * side),
                              side * int(sizeof(DrawingColour)));
    return picture;
}

} // namespace

QVector<DrawingPicture> picturesOf(const Drawing& drawing, const DrawingRegion& region)
{
    QVector<DrawingPicture> pictures;
    if (!(region.side > 0.0))
        return pictures;
    Canvas canvas = paint(drawing, region);
    for (int level = pictureLevels - 1; level >= 0; --level) {
        const int parts = std::max(1, canvas.side() / largestPart);
        for (int i = 0; i < parts * parts; ++i)
            pictures.prepend(cut(canvas, level, i % parts, i / parts, region));
        if (level > 0)
            canvas = halved(canvas);
    }
    return pictures;
}

} // namespace Torvik::DXF
