#include "host/vehicle/Course.h"

#include "host/domain/WktShapeReader.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace Torvik::Vehicle {

namespace {

/** Bit of a shape's flags: inspected downstream, so stored from its far end. */
constexpr int inspectedDownstream = 256;
/** Metres; what is left of the course behind the last step is no step of its own. */
constexpr double nothingLeft = 1e-6;

double distance(const SensorPlace& a, const SensorPlace& b)
{
    return std::hypot(b.x - a.x, b.y - a.y, b.z - a.z);
}

SensorPlace between(const SensorPlace& a, const SensorPlace& b, double part)
{
    return {a.x + (b.x - a.x) * part, a.y + (b.y - a.y) * part, a.z + (b.z - a.z) * part};
}

/** The standard library's distributions differ from one to the next; the engine's numbers do not. */
class Noise {
public:
    Noise(double radius, unsigned seed)
        : m_radius(radius)
        , m_engine(seed)
    {
    }

    /** Within a ball around `place`. */
    SensorPlace disturbed(const SensorPlace& place)
    {
        SensorPlace off;
        do {
            off = {number(), number(), number()};
        } while (off.x * off.x + off.y * off.y + off.z * off.z > 1);
        return {place.x + off.x * m_radius, place.y + off.y * m_radius, place.z + off.z * m_radius};
    }

private:
    /** -1 to 1. */
    double number() { return 2.0 * m_engine() / std::mt19937::max() - 1.0; }

    double m_radius;
    std::mt19937 m_engine;
};

/** Walks forward along a course. */
class Walk {
public:
    explicit Walk(const QVector<SensorPlace>& course)
        : m_course(course)
    {
    }

    SensorPlace at(double along)
    {
        while (m_corner + 2 < m_course.size() && along > m_passed + lengthHere()) {
            m_passed += lengthHere();
            ++m_corner;
        }
        const double length = lengthHere();
        const double part = length > 0 ? (along - m_passed) / length : 0;
        return between(m_course[m_corner], m_course[m_corner + 1], std::clamp(part, 0.0, 1.0));
    }

private:
    double lengthHere() const { return distance(m_course[m_corner], m_course[m_corner + 1]); }

    const QVector<SensorPlace>& m_course;
    int m_corner = 0;
    double m_passed = 0;
};

} // namespace

QVector<SensorPlace> courseOfShape(const QString& wkt, double scale)
{
    const QVector<QString> parts = Database::WktShapeReader::parts(wkt);
    QVector<Database::WktPoint> points;
    for (const QString& part : parts) {
        points = Database::WktShapeReader::read(part).points;
        if (points.size() >= 2)
            break;
    }
    if (points.size() < 2)
        return {};
    if (int(points.first().m().toDouble()) & inspectedDownstream)
        std::reverse(points.begin(), points.end());

    const Database::WktPoint& begin = points.constFirst();
    QVector<SensorPlace> course;
    course.reserve(points.size());
    for (const Database::WktPoint& point : points) {
        course << SensorPlace {(point.x().toDouble() - begin.x().toDouble()) * scale,
                               (point.y().toDouble() - begin.y().toDouble()) * scale,
                               (point.z().toDouble() - begin.z().toDouble()) * scale};
    }
    return course;
}

double lengthOf(const QVector<SensorPlace>& course)
{
    double length = 0;
    for (int i = 1; i < course.size(); ++i)
        length += distance(course[i - 1], course[i]);
    return length;
}

QVector<Reading> runAlong(const QVector<SensorPlace>& course, const RunOptions& options)
{
    const double length = lengthOf(course);
    if (!(length > 0) || !(options.step > 0) || !(options.speed > 0))
        return {};
    Walk walk(course);
    Noise noise(options.noise, options.seed);
    QVector<Reading> readings;
    const auto read = [&](double along) {
        readings << Reading {along / options.speed, along, noise.disturbed(walk.at(along))};
    };
    const auto steps = qint64(std::floor((length - nothingLeft) / options.step));
    for (qint64 i = 0; i <= steps; ++i)
        read(double(i) * options.step);
    read(length);
    return readings;
}

} // namespace Torvik::Vehicle
