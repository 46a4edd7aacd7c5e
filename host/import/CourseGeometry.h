#pragma once

#include "host/import/NetworkModel.h"

/** Mathematics of pipe courses, and their WKT. Pure functions; metres of the source's coordinate system. */
namespace Torvik::Import::Course {

/** Length along the course in plan; heights do not count. */
double planLength(const QVector<Point>& course);
/** Length along the course in space; a missing height counts as level with its neighbour. */
double length(const QVector<Point>& course);
double planDistance(const Point& a, const Point& b);

/** Gives points without a height the height interpolated by run length (in plan) between the nearest points that have
 * one; beyond the first and last such point the height stays level. Without any height nothing changes. */
void fillHeights(QVector<Point>& course);

/** Part of the course from its first point up to `distance` along it in space; the whole course if it is shorter. */
QVector<Point> firstPart(const QVector<Point>& course, double distance);

/** Points of the shorter arc around `centre` from `from` to `to`, without `from`, so that no chord is further than 2 cm
 * from the arc. Heights are interpolated. A centre that is not equally far from both ends (1 percent) gives `to` alone.
 */
QVector<Point> arcPoints(const Point& from, const Point& to, const Point& centre);

/** Joins polylines, each in any direction, to one course: the first decides the direction when it meets the second with
 * its last point. False when they do not meet within `tolerance`. */
bool joinLines(const QVector<QVector<Point>>& lines, double tolerance, QVector<Point>& course);

/** Drops points that lie on their predecessor (in space). */
QVector<Point> withoutRepeats(const QVector<Point>& course);

QVector<Point> reversed(const QVector<Point>& course);

/** All digits that are needed to read the same number again, never an exponent. */
QString number(double value);
/** a - b, rounded to the tenth of a micrometre: heights have few digits, and so has their difference. */
double difference(double a, double b);
/** "POINT ZM(x y z m)"; a missing height is written as 0. */
QString pointWkt(const Point& point, int flags);
/** "LINESTRING ZM(...)" with the flags as m of the first point and 0 for the others; empty for fewer than two points.
 */
QString lineWkt(const QVector<Point>& course, int flags);

} // namespace Torvik::Import::Course
