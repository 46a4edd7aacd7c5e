#pragma once

#include "host/import/NetworkModel.h"

#include <QHash>

namespace Torvik::Import {

/** Finds nodes by key and by place. Holds indices into the list of nodes that it was given. */
class NodeIndex {
public:
    /** False if there is a node of this key and kind already; firstLike() then gives that one. */
    bool insert(const NodeData& node, int index);
    int firstLike(const NodeData& node) const;

    /** The node of that key; of the kind if one is given and several kinds share the key. -1 when there is none. */
    int find(const QString& key, std::optional<NodeKind> kind) const;

    /** The node nearest to the place within the tolerance, in plan; -1 when there is none. */
    int nearest(const Point& place, double tolerance) const;
    /** Cells of `cellSize` metres for nearest(); at least the greatest tolerance that is asked for. */
    void buildGrid(const QVector<NodeData>& nodes, double cellSize);

private:
    using Cell = QPair<qint64, qint64>;
    Cell cellOf(double x, double y) const;

    QHash<QString, QVector<QPair<NodeKind, int>>> m_byKey;
    QHash<Cell, QVector<QPair<int, Point>>> m_grid;
    double m_cellSize = 1.0;
};

} // namespace Torvik::Import
