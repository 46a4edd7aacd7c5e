#include "host/import/NodeIndex.h"

#include "host/import/CourseGeometry.h"

#include <algorithm>
#include <cmath>

namespace Torvik::Import {

bool NodeIndex::insert(const NodeData& node, int index)
{
    if (firstLike(node) >= 0)
        return false;
    m_byKey[node.key].append({node.kind, index});
    return true;
}

int NodeIndex::firstLike(const NodeData& node) const
{
    for (const auto& entry : m_byKey.value(node.key)) {
        if (entry.first == node.kind)
            return entry.second;
    }
    return -1;
}

int NodeIndex::find(const QString& key, std::optional<NodeKind> kind) const
{
    const auto entries = m_byKey.constFind(key);
    if (entries == m_byKey.cend())
        return -1;
    for (const auto& entry : *entries) {
        if (kind && entry.first == *kind)
            return entry.second;
    }
    return entries->first().second;
}

NodeIndex::Cell NodeIndex::cellOf(double x, double y) const
{
    // Beyond any place on earth, and still a number that an integer can hold.
    static constexpr double Limit = 1e15;
    const auto cell = [this](double ordinate) {
        return qint64(std::floor(std::clamp(ordinate / m_cellSize, -Limit, Limit)));
    };
    return {cell(x), cell(y)};
}

void NodeIndex::buildGrid(const QVector<NodeData>& nodes, double cellSize)
{
    m_cellSize = cellSize > 0.0 ? cellSize : 1.0;
    m_grid.clear();
    for (const auto& entries : qAsConst(m_byKey)) {
        for (const auto& entry : entries) {
            const std::optional<Point>& place = nodes[entry.second].position;
            if (place)
                m_grid[cellOf(place->x, place->y)].append({entry.second, *place});
        }
    }
}

int NodeIndex::nearest(const Point& place, double tolerance) const
{
    int best = -1;
    double bestDistance = tolerance;
    const Cell centre = cellOf(place.x, place.y);
    for (qint64 column = centre.first - 1; column <= centre.first + 1; ++column) {
        for (qint64 row = centre.second - 1; row <= centre.second + 1; ++row) {
            for (const auto& entry : m_grid.value({column, row})) {
                const double distance = Course::planDistance(place, entry.second);
                const bool isNearer = best < 0 ? distance <= bestDistance : distance < bestDistance;
                // Of several at the same place the first of the source wins, whatever the order of the cells.
                if (isNearer || (distance == bestDistance && entry.first < best)) {
                    best = entry.first;
                    bestDistance = distance;
                }
            }
        }
    }
    return best;
}

} // namespace Torvik::Import
