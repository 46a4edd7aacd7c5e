#include "host/import/CourseFrame.h"

#include <algorithm>
#include <cmath>

namespace Torvik::Import::Course {

namespace {

constexpr double Pi = 3.14159265358979323846;
constexpr double DegreesPerHour = 30.0;
/** A unit vector less than this off the plumb line in east and north counts as plumb, as it does in the view. */
constexpr double PlumbTolerance = 0.01;

double radians(double degrees)
{
    return degrees * Pi / 180.0;
}

double dot(const Vector& a, const Vector& b)
{
    return a.east * b.east + a.north * b.north + a.up * b.up;
}

Vector cross(const Vector& a, const Vector& b)
{
    return {a.north * b.up - a.up * b.north, a.up * b.east - a.east * b.up, a.east * b.north - a.north * b.east};
}

Vector scaled(const Vector& a, double factor)
{
    return {a.east * factor, a.north * factor, a.up * factor};
}

Vector sum(const Vector& a, const Vector& b)
{
    return {a.east + b.east, a.north + b.north, a.up + b.up};
}

double lengthOf(const Vector& a)
{
    return std::sqrt(dot(a, a));
}

/** The frame along `forward` with that three o'clock, which must be at a right angle to it. */
Frame frameWith(const Vector& forward, const Vector& right)
{
    return {forward, cross(right, forward), right};
}

bool isPlumb(const Vector& direction)
{
    return std::abs(direction.east) < PlumbTolerance && std::abs(direction.north) < PlumbTolerance;
}

Vector unit(const Vector& a)
{
    return scaled(a, 1.0 / lengthOf(a));
}

/** `aside` is what three o'clock shall be near to where the direction is plumb. */
Frame upright(const Vector& forward, const Vector& aside)
{
    if (!isPlumb(forward))
        return frameWith(forward, unit(cross(forward, {0.0, 0.0, 1.0})));
    const double along = dot(aside, forward);
    return frameWith(forward, unit(sum(aside, scaled(forward, -along))));
}

Point moved(const Point& from, const Vector& way)
{
    Point to {from.x + way.east, from.y + way.north, std::nullopt};
    if (from.z)
        to.z = *from.z + way.up;
    return to;
}

} // namespace

Vector between(const Point& from, const Point& to)
{
    return {to.x - from.x, to.y - from.y, from.z && to.z ? *to.z - *from.z : 0.0};
}

Frame frameOf(const Vector& direction)
{
    const double size = lengthOf(direction);
    return upright(size > 0.0 ? scaled(direction, 1.0 / size) : Vector {0.0, 1.0, 0.0}, {0.0, 1.0, 0.0});
}

Frame turned(const Frame& frame, double clock, double angleDeg)
{
    const double angle = radians(angleDeg);
    const double dial = radians(clock * DegreesPerHour);
    const Vector aside = sum(scaled(frame.up, std::cos(dial)), scaled(frame.right, std::sin(dial)));
    return upright(sum(scaled(frame.forward, std::cos(angle)), scaled(aside, std::sin(angle))), frame.right);
}

Foot footOf(const QVector<Point>& course, const Point& point)
{
    Foot nearest {0.0, course.isEmpty() ? 0.0 : std::hypot(point.x - course.first().x, point.y - course.first().y)};
    double run = 0.0;
    for (int i = 1; i < course.size(); ++i) {
        const Vector piece = between(course[i - 1], course[i]);
        const double plan = piece.east * piece.east + piece.north * piece.north;
        const double dx = point.x - course[i - 1].x;
        const double dy = point.y - course[i - 1].y;
        const double t = plan > 0.0 ? std::clamp((dx * piece.east + dy * piece.north) / plan, 0.0, 1.0) : 0.0;
        const double offset = std::hypot(dx - piece.east * t, dy - piece.north * t);
        if (offset < nearest.offset)
            nearest = {run + lengthOf(piece) * t, offset};
        run += lengthOf(piece);
    }
    return nearest;
}

Frame frameAt(const QVector<Point>& course, double distance)
{
    double run = 0.0;
    Vector piece;
    for (int i = 1; i < course.size(); ++i) {
        const Vector next = between(course[i - 1], course[i]);
        if (lengthOf(next) <= 0.0)
            continue;
        piece = next;
        run += lengthOf(piece);
        if (run > distance)
            break;
    }
    return frameOf(piece);
}

Branch branchOf(const Frame& pipe, const Vector& branch)
{
    const double size = lengthOf(branch);
    if (size <= 0.0)
        return {};
    const double back = std::clamp(-dot(branch, pipe.forward) / size, -1.0, 1.0);
    const double dial = std::atan2(dot(branch, pipe.right), dot(branch, pipe.up));
    const int hour = (int(std::lround(dial * 180.0 / Pi / DegreesPerHour)) + 12) % 12;
    return {hour == 0 ? 12 : hour, std::acos(back) * 180.0 / Pi};
}

QVector<Point> bentCourse(const Point& start, const Vector& heading, double length, QVector<Bend> bends)
{
    std::stable_sort(bends.begin(), bends.end(), [](const Bend& a, const Bend& b) { return a.distance < b.distance; });
    QVector<Point> course {start};
    Frame frame = frameOf(heading);
    double walked = 0.0;
    for (const Bend& bend : qAsConst(bends)) {
        if (bend.distance >= length)
            break;
        if (bend.distance > walked) {
            course.append(moved(course.last(), scaled(frame.forward, bend.distance - walked)));
            walked = bend.distance;
        }
        frame = turned(frame, bend.clock, bend.angleDeg);
    }
    if (length > walked)
        course.append(moved(course.last(), scaled(frame.forward, length - walked)));
    return course;
}

} // namespace Torvik::Import::Course
