#include "host/app/FramedView.h"

#include "host/app/SceneSnapshot.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Torvik::Viewer {

namespace {

/** Of the edge, and of the controls, in pixels. */
constexpr double gap = 6;
/** The pose settles within few rounds; the lens is so narrow that only names and depth disturb it. */
constexpr int rounds = 12;
/** In pixels: a name stands above its object, so high, and its letters are so wide. */
constexpr double nameAbove = 51;
constexpr double letter = 13.5;
constexpr double linesBelow = 24;
constexpr int lettersOfFullInfo = 14;
/** Steeper than this the view can slide along the ground. */
constexpr float slideable = 0.2F;

QMarginsF nameOf(const QString& text, const NameLook& look, bool severalLines)
{
    if (!look.visible || text.isEmpty())
        return {};
    const int letters = severalLines ? std::max(text.size(), lettersOfFullInfo) : text.size();
    return {letters * letter / 2, nameAbove, letters * letter / 2, severalLines ? linesBelow : 0};
}

/** The camera's axes, which stay while it moves. */
struct Axes {
    explicit Axes(const CameraPose& pose)
        : back((pose.position - pose.center).normalized())
        , up((pose.up - back * QVector3D::dotProduct(pose.up, back)).normalized())
        , right(QVector3D::crossProduct(up, back))
    {
    }
    QVector3D back;
    QVector3D up;
    QVector3D right;
};

/** Where the points are seen, their names included, and how much of that the names at its edges are. */
struct Seen {
    QRectF rect;
    QSizeF names;
};

Seen seen(const QVector<FramedPoint>& points, const CameraPose& pose, const Axes& axes, const QSizeF& screen)
{
    const double perUnit = screen.height() / 2 / tangentOfHalfLens();
    constexpr double far = std::numeric_limits<double>::max();
    double edges[4] = {far, far, -far, -far};
    double names[4] = {0, 0, 0, 0};
    for (const FramedPoint& framed : points) {
        const QVector3D way = framed.point - pose.position;
        const double depth = std::max(1e-3, -double(QVector3D::dotProduct(way, axes.back)));
        const double x = double(QVector3D::dotProduct(way, axes.right)) / depth * perUnit;
        const double y = -double(QVector3D::dotProduct(way, axes.up)) / depth * perUnit;
        const double r = double(framed.radius) / depth * perUnit;
        const double reach[4] = {x - std::max(r, framed.name.left()), y - std::max(r, framed.name.top()),
                                 x + std::max(r, framed.name.right()), y + std::max(r, framed.name.bottom())};
        const double taken[4] = {framed.name.left(), framed.name.top(), framed.name.right(), framed.name.bottom()};
        for (int side = 0; side < 4; ++side) {
            if (side < 2 ? reach[side] < edges[side] : reach[side] > edges[side]) {
                edges[side] = reach[side];
                names[side] = taken[side];
            }
        }
    }
    const QPointF middle(screen.width() / 2, screen.height() / 2);
    return {QRectF(QPointF(edges[0], edges[1]), QPointF(edges[2], edges[3])).translated(middle),
            {names[0] + names[2], names[1] + names[3]}};
}

/** By how much a picture may grow along one side; what names take of it keeps its size. */
double growth(double room, double size, double names)
{
    const double objects = std::max(size - names, 1e-6);
    return room > 2 * names ? (room - names) / objects : room / std::max(size, 1e-6);
}

/** Keeps the point looked at on its height, without a change of the picture. */
QVector3D onHeight(const QVector3D& center, float height, const Axes& axes)
{
    if (std::abs(axes.back.y()) < slideable)
        return center;
    return center + axes.back * ((height - center.y()) / axes.back.y());
}

} // namespace

QVector<FramedPoint> framedPointsOf(const SceneSnapshot& snapshot, const NameLook& look)
{
    QVector<FramedPoint> points;
    for (const SceneSnapshot::Node& node : snapshot.nodes) {
        if (!node.visible)
            continue;
        points.append({node.position, node.radius, nameOf(node.key, look, look.fullInfo)});
        points.append({node.position - QVector3D(0, node.depth, 0), 0, {}});
    }
    for (const SceneSnapshot::Section& section : snapshot.sections) {
        if (boundsOf(section).isEmpty() || section.length <= longestStub)
            continue;
        const QMarginsF name = nameOf(section.key, look, false);
        for (const QVector3D& point : section.points + section.secondPoints)
            points.append({point, section.radius, name});
    }
    return points;
}

QRectF clearPart(const QRectF& area, const QVector<QRectF>& controls, double aspect)
{
    QVector<double> xs {area.left() + gap, area.right() - gap};
    QVector<double> ys {area.top() + gap, area.bottom() - gap};
    for (const QRectF& control : controls) {
        xs << control.left() - gap << control.right() + gap;
        ys << control.top() - gap << control.bottom() + gap;
    }
    const auto sortedWithin = [](QVector<double> values, double low, double high) {
        values.erase(std::remove_if(values.begin(), values.end(), [&](double v) { return v < low || v > high; }),
                     values.end());
        std::sort(values.begin(), values.end());
        return values;
    };
    xs = sortedWithin(xs, area.left() + gap, area.right() - gap);
    ys = sortedWithin(ys, area.top() + gap, area.bottom() - gap);
    const auto isFree = [&controls](const QRectF& part) {
        return std::none_of(controls.begin(), controls.end(),
                            [&part](const QRectF& control) { return control.intersects(part); });
    };
    QRectF best = area;
    double largest = 0;
    for (int left = 0; left < xs.size(); ++left) {
        for (int right = left + 1; right < xs.size(); ++right) {
            for (int top = 0; top < ys.size(); ++top) {
                for (int bottom = top + 1; bottom < ys.size(); ++bottom) {
                    const QRectF part(QPointF(xs[left], ys[top]), QPointF(xs[right], ys[bottom]));
                    const double size = std::min(part.width() / std::max(aspect, 1e-3), part.height());
                    if (size > largest && isFree(part)) {
                        largest = size;
                        best = part;
                    }
                }
            }
        }
    }
    return best;
}

double aspectOf(const QVector<FramedPoint>& points, const CameraPose& direction)
{
    if (points.isEmpty())
        return 1;
    const QSizeF screen(1000, 1000);
    Bounds bounds;
    for (const FramedPoint& framed : points)
        bounds.add(framed.point, framed.radius);
    const CameraPose pose = movedPose(direction, bounds.center(), distanceToFit(bounds, direction, 1));
    const QRectF rect = seen(points, pose, Axes(pose), screen).rect;
    return rect.height() > 0 ? rect.width() / rect.height() : 1;
}

CameraPose framedPose(const QVector<FramedPoint>& points, const CameraPose& direction, const QSizeF& screen,
                      const QRectF& clear, double closest)
{
    if (points.isEmpty() || screen.isEmpty() || clear.isEmpty())
        return direction;
    Bounds bounds;
    for (const FramedPoint& framed : points)
        bounds.add(framed.point, framed.radius);
    const Axes axes(direction);
    const float height = bounds.center().y();
    double distance = std::max(closest, distanceToFit(bounds, direction, screen.width() / screen.height()));
    CameraPose pose = movedPose(direction, bounds.center(), distance);
    for (int round = 0; round < rounds; ++round) {
        const Seen now = seen(points, pose, axes, screen);
        const double factor = std::min(growth(clear.width(), now.rect.width(), now.names.width()),
                                       growth(clear.height(), now.rect.height(), now.names.height()));
        const double metresPerPixel = 2 * distance * tangentOfHalfLens() / screen.height();
        const QPointF off = now.rect.center() - clear.center();
        // The last rounds only move, so that nothing they find is changed behind them.
        if (round < rounds - 2)
            distance = std::max(closest, distance / factor);
        const QVector3D moved =
            pose.center + axes.right * float(off.x() * metresPerPixel) - axes.up * float(off.y() * metresPerPixel);
        pose = movedPose(direction, onHeight(moved, height, axes), distance);
    }
    return pose;
}

QPointF pixelOf(const CameraPose& pose, const QVector3D& point, const QSizeF& screen)
{
    return seen({{point, 0, {}}}, pose, Axes(pose), screen).rect.topLeft();
}

} // namespace Torvik::Viewer
