#include "labels/GridMath.h"

#include <cmath>
#include <initializer_list>
#include <iterator>

namespace Torvik::View3d::GridMath {

namespace {

QMap<float, float> table(std::initializer_list<float> sizes)
{
    QMap<float, float> scales;
    for (const float size : sizes)
        scales.insert(size, size);
    return scales;
}

} // namespace

const QMap<float, float>& scales(bool imperial)
{
    static const auto metres = table({2, 5, 10, 20, 50, 100, 200, 500, 1000, 2000, 5000});
    static const auto feet = table({3.048F, 6.096F, 15.24F, 30.48F, 60.96F, 152.4F, 304.8F, 609.6F, 1524, 3048, 6096});
    return imperial ? feet : metres;
}

float baseSquareSize(bool imperial)
{
    return imperial ? 1.27F : 1.0F;
}

double stepMetres(float squareSize)
{
    return static_cast<double>(squareSize) * 0.1;
}

float squareSizeForDistance(float distance, float current, float base, const QMap<float, float>& scales)
{
    const bool atBase = current == base;
    if (scales.isEmpty() || (!atBase && !scales.values().contains(current)))
        return current;
    const float key = atBase ? scales.firstKey() : scales.key(current);
    if (key == distance)
        return current;
    // The last key not above the distance, whichever way it lies from the current one.
    const auto above = scales.upperBound(distance);
    return above == scales.cbegin() ? base : std::prev(above).value();
}

QVector3D onLattice(const QVector3D& point, float squareSize)
{
    const double step = stepMetres(squareSize);
    const auto snapped = [step](float value) {
        return static_cast<float>(static_cast<double>(value) - std::fmod(static_cast<double>(value), step));
    };
    return {snapped(point.x()), point.y(), snapped(point.z())};
}

QVector<float> wireframe(unsigned linesPerDirection)
{
    constexpr float edge = meshSide / 2;
    QVector<float> floats;
    floats.reserve(static_cast<int>(linesPerDirection) * 4 * floatsPerVertex);
    const auto vertex = [&floats](float x, float y) { floats << x << y << 0 << 0 << 0 << 0; };
    for (unsigned line = 0; line < linesPerDirection; ++line) {
        const float at = -edge + static_cast<float>(line) * meshSide / static_cast<float>(linesPerDirection - 1);
        vertex(at, -edge);
        vertex(at, edge);
        vertex(-edge, at);
        vertex(edge, at);
    }
    return floats;
}

} // namespace Torvik::View3d::GridMath
