#include "host/import/CourseGeometry.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace Torvik::Import::Course {

namespace {

constexpr double ChordErrorM = 0.02;
constexpr double MaxChords = 720.0;
constexpr double Pi = 3.14159265358979323846;

double spaceDistance(const Point& a, const Point& b)
{
    const double dz = a.z && b.z ? *b.z - *a.z : 0.0;
    return std::hypot(planDistance(a, b), dz);
}

Point between(const Point& a, const Point& b, double t)
{
    Point result {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t, std::nullopt};
    if (a.z && b.z)
        result.z = *a.z + (*b.z - *a.z) * t;
    else
        result.z = a.z ? a.z : b.z;
    return result;
}

/** Appends `line` to `course` if one of its ends lies at the course's end. */
bool appendLine(QVector<Point>& course, QVector<Point> line, double tolerance)
{
    if (planDistance(course.last(), line.first()) > tolerance) {
        if (planDistance(course.last(), line.last()) > tolerance)
            return false;
        line = reversed(line);
    }
    course += line.mid(1);
    return true;
}

} // namespace

double planDistance(const Point& a, const Point& b)
{
    return std::hypot(b.x - a.x, b.y - a.y);
}

double planLength(const QVector<Point>& course)
{
    double sum = 0.0;
    for (int i = 1; i < course.size(); ++i)
        sum += planDistance(course[i - 1], course[i]);
    return sum;
}

double length(const QVector<Point>& course)
{
    double sum = 0.0;
    for (int i = 1; i < course.size(); ++i)
        sum += spaceDistance(course[i - 1], course[i]);
    return sum;
}

void fillHeights(QVector<Point>& course)
{
    QVector<double> run(course.size(), 0.0);
    for (int i = 1; i < course.size(); ++i)
        run[i] = run[i - 1] + planDistance(course[i - 1], course[i]);
    int before = -1;
    for (int i = 0; i < course.size(); ++i) {
        if (course[i].z) {
            before = i;
            continue;
        }
        int after = i + 1;
        while (after < course.size() && !course[after].z)
            ++after;
        const bool hasAfter = after < course.size();
        if (before >= 0 && hasAfter) {
            const double span = run[after] - run[before];
            const double t = span > 0.0 ? (run[i] - run[before]) / span : 0.0;
            course[i].z = *course[before].z + (*course[after].z - *course[before].z) * t;
        } else if (before >= 0) {
            course[i].z = course[before].z;
        } else if (hasAfter) {
            course[i].z = course[after].z;
        }
        if (course[i].z)
            before = i;
    }
}

QVector<Point> firstPart(const QVector<Point>& course, double distance)
{
    QVector<Point> part;
    double sum = 0.0;
    for (int i = 0; i < course.size(); ++i) {
        if (i > 0) {
            const double step = spaceDistance(course[i - 1], course[i]);
            if (sum + step > distance && step > 0.0) {
                part.append(between(course[i - 1], course[i], (distance - sum) / step));
                return part;
            }
            sum += step;
        }
        part.append(course[i]);
    }
    return part;
}

QVector<Point> arcPoints(const Point& from, const Point& to, const Point& centre)
{
    const double radius = planDistance(centre, from);
    const double other = planDistance(centre, to);
    if (radius <= ChordErrorM || std::abs(radius - other) > 0.01 * radius)
        return {to};
    const double start = std::atan2(from.y - centre.y, from.x - centre.x);
    double sweep = std::atan2(to.y - centre.y, to.x - centre.x) - start;
    if (sweep > Pi)
        sweep -= 2.0 * Pi;
    else if (sweep < -Pi)
        sweep += 2.0 * Pi;
    const double step = 2.0 * std::acos(1.0 - ChordErrorM / radius);
    // The step of a huge circle is lost in rounding; no arc needs more chords than this.
    const double wanted = step > 0.0 ? std::ceil(std::abs(sweep) / step) : MaxChords;
    const int count = int(std::clamp(wanted, 1.0, MaxChords));
    QVector<Point> points;
    for (int i = 1; i < count; ++i) {
        const double t = double(i) / count;
        Point point = between(from, to, t);
        const double r = radius + (other - radius) * t;
        point.x = centre.x + r * std::cos(start + sweep * t);
        point.y = centre.y + r * std::sin(start + sweep * t);
        points.append(point);
    }
    points.append(to);
    return points;
}

bool joinLines(const QVector<QVector<Point>>& lines, double tolerance, QVector<Point>& course)
{
    course.clear();
    QVector<QVector<Point>> rest;
    for (const QVector<Point>& line : lines) {
        if (line.size() >= 2)
            rest.append(line);
    }
    if (rest.isEmpty())
        return false;
    course = rest.takeFirst();
    bool mayTurn = true;
    while (!rest.isEmpty()) {
        const auto meets = [&](const QVector<Point>& line) { return appendLine(course, line, tolerance); };
        auto next = std::find_if(rest.begin(), rest.end(), meets);
        if (next == rest.end() && mayTurn) {
            course = reversed(course);
            mayTurn = false;
            continue;
        }
        if (next == rest.end())
            return false;
        rest.erase(next);
    }
    return true;
}

QVector<Point> withoutRepeats(const QVector<Point>& course)
{
    QVector<Point> result;
    for (const Point& point : course) {
        if (result.isEmpty() || spaceDistance(result.last(), point) > 1e-6)
            result.append(point);
    }
    return result;
}

QVector<Point> reversed(const QVector<Point>& course)
{
    QVector<Point> result = course;
    std::reverse(result.begin(), result.end());
    return result;
}

QString number(double value)
{
    return QString::number(value, 'f', QLocale::FloatingPointShortest);
}

double difference(double a, double b)
{
    return std::round((a - b) * 1e7) / 1e7;
}

QString pointWkt(const Point& point, int flags)
{
    return QStringLiteral("POINT ZM(") + number(point.x) + QLatin1Char(' ') + number(point.y) + QLatin1Char(' ') +
           number(point.z.value_or(0.0)) + QLatin1Char(' ') + QString::number(flags) + QLatin1Char(')');
}

QString lineWkt(const QVector<Point>& course, int flags)
{
    if (course.size() < 2)
        return {};
    QString text = QStringLiteral("LINESTRING ZM(");
    for (int i = 0; i < course.size(); ++i) {
        if (i > 0)
            text += QLatin1Char(',');
        text += number(course[i].x) + QLatin1Char(' ') + number(course[i].y) + QLatin1Char(' ') +
                number(course[i].z.value_or(0.0)) + QLatin1Char(' ') + QString::number(i == 0 ? flags : 0);
    }
    return text + QLatin1Char(')');
}

} // namespace Torvik::Import::Course
