#pragma once

#include "domain/boundary/WktPoint.h"

#include <QLocale>
#include <QMetaType>
#include <QVector3D>

namespace Torvik::View3d {

/** Position in double precision, in the cartesian frame: x westward, y upward, z northward.
 *  A stored point (E, N, H) has the cartesian form (-E, H, N). */
template <typename T>
class Vector3D {
public:
    Vector3D() = default;
    Vector3D(T x, T y, T z)
        : m_x(x)
        , m_y(y)
        , m_z(z)
    {
    }
    explicit Vector3D(const QVector3D& v)
        : m_x(v.x())
        , m_y(v.y())
        , m_z(v.z())
    {
    }
    /** The cartesian form of a stored point, times `scale`. An ordinate that is no number counts as 0. */
    Vector3D(const Database::WktPoint& point, T scale)
        : m_x(-T(point.x().toDouble()) * scale)
        , m_y(T(point.z().toDouble()) * scale)
        , m_z(T(point.y().toDouble()) * scale)
    {
    }
    Vector3D(const Vector3D& other, T scale)
        : m_x(other.m_x * scale)
        , m_y(other.m_y * scale)
        , m_z(other.m_z * scale)
    {
    }

    T x() const { return m_x; }
    T y() const { return m_y; }
    T z() const { return m_z; }

    Vector3D operator+(const Vector3D& o) const { return {m_x + o.m_x, m_y + o.m_y, m_z + o.m_z}; }
    Vector3D operator-(const Vector3D& o) const { return {m_x - o.m_x, m_y - o.m_y, m_z - o.m_z}; }
    Vector3D operator*(double factor) const { return {T(m_x * factor), T(m_y * factor), T(m_z * factor)}; }
    Vector3D operator/(double divisor) const { return {T(m_x / divisor), T(m_y / divisor), T(m_z / divisor)}; }
    bool operator==(const Vector3D& o) const { return m_x == o.m_x && m_y == o.m_y && m_z == o.m_z; }
    bool operator!=(const Vector3D& o) const { return !(*this == o); }

    QVector3D toQVector3D() const { return {float(m_x), float(m_y), float(m_z)}; }

    /** The stored form: divided by `scale`, with `measurementType` as the m value. Shortest text that reads back as
     *  the same number. */
    Database::WktPoint toWKTPoint(double scale, int measurementType) const
    {
        return {text(-m_x / scale), text(m_z / scale), text(m_y / scale), QString::number(measurementType)};
    }

private:
    static QString text(double value)
    {
        return QString::number(value == 0.0 ? 0.0 : value, 'f', QLocale::FloatingPointShortest);
    }

    T m_x = 0;
    T m_y = 0;
    T m_z = 0;
};

} // namespace Torvik::View3d

Q_DECLARE_METATYPE(Torvik::View3d::Vector3D<double>)
