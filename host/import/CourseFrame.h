#pragma once

#include "host/import/NetworkModel.h"

/** Directions along a pipe's course, as somebody sees them who looks along it. Pure functions; metres, heights upward.
 */
namespace Torvik::Import::Course {

struct Vector {
    double east = 0.0;
    double north = 0.0;
    double up = 0.0;
};

/** Right-angled and of unit length: where the pipe leads, where twelve o'clock is, where three o'clock is. */
struct Frame {
    Vector forward;
    Vector up;
    Vector right;
};

struct Bend {
    double distance = 0.0; ///< from the start
    double clock = 12.0;   ///< hour towards which the pipe turns
    double angleDeg = 0.0; ///< deflection from straight on
};

/** The frame whose twelve o'clock is as high as it can be. A plumb direction, which has no such hour, has three o'clock
 * in the north. */
Frame frameOf(const Vector& direction);
/** The frame behind a bend, upright again; where the pipe becomes plumb, three o'clock stays where it was before. The
 * view keeps its chains like this. */
Frame turned(const Frame& frame, double clock, double angleDeg);

/** Where a point lies beside a course: how far along the course (in space), and how far off it in plan. */
struct Foot {
    double along = 0.0;
    double offset = 0.0;
};
Foot footOf(const QVector<Point>& course, const Point& point);

/** Frame of the piece of the course that holds the distance; the last piece beyond its end. Two points at least. */
Frame frameAt(const QVector<Point>& course, double distance);

/** From a point of a pipe's axis out along a branch: the hour on the wall of the pipe (1 to 12), and the degrees
 * between the branch and the way back to the pipe's start. */
struct Branch {
    int clock = 12;
    double angleDeg = 90.0;
};
Branch branchOf(const Frame& pipe, const Vector& branch);

Vector between(const Point& from, const Point& to);

/** The course of a pipe of which only its bends are known: straight on from `start` along `heading`, turned at each
 * bend, `length` metres in all. Bends at the same distance add up in their order, bends at the start turn the heading,
 * bends at the end or beyond turn nothing. */
QVector<Point> bentCourse(const Point& start, const Vector& heading, double length, QVector<Bend> bends);

} // namespace Torvik::Import::Course
