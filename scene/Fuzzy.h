#pragma once

#include <QVector3D>
#include <QtGlobal>

#include <algorithm>
#include <cmath>

/** The equalities that setters use to tell a change from noise. Unbiased: |a - b| * 100000 (1e12 for doubles) is not
 *  above the smaller absolute value, so 0 equals nothing but 0. Biased: the same test on a + 1 and b + 1. */
namespace Torvik::View3d::Fuzzy {

inline bool equal(float a, float b)
{
    return std::abs(a - b) * 100000.0F <= std::min(std::abs(a), std::abs(b));
}

inline bool equal(double a, double b)
{
    return std::abs(a - b) * 1000000000000.0 <= std::min(std::abs(a), std::abs(b));
}

inline bool equalBiased(float a, float b)
{
    return equal(a + 1.0F, b + 1.0F);
}

inline bool equalBiased(double a, double b)
{
    return equal(a + 1.0, b + 1.0);
}

/** Every ordinate equal, without bias. */
inline bool equal(const QVector3D& a, const QVector3D& b)
{
    return equal(a.x(), b.x()) && equal(a.y(), b.y()) && equal(a.z(), b.z());
}

/** |value| at most 1e-5. */
inline bool isNull(float value)
{
    return std::abs(value) <= 1e-5F;
}

/** |value| at most 1e-12. */
inline bool isNull(double value)
{
    return std::abs(value) <= 1e-12;
}

} // namespace Torvik::View3d::Fuzzy
