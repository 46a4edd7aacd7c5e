#pragma once

#include "host/import/NetworkModel.h"

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QStringList>

namespace Torvik::Import {

/** Where the value of a property stands in a vector source: a column of the feature, or a column of another layer whose
 * key equals a column of the feature. */
struct MappedColumn {
    QString column;
    QString lookupLayer; ///< empty for a plain column
    QString lookupKey;
    QString lookupValue;

    bool isLookup() const { return !lookupLayer.isEmpty(); }
};

/** One layer of nodes or pipes, and which column holds what. */
struct MappedLayer {
    QString layer; ///< may be empty if the source has only one
    QString where; ///< condition in OGR SQL, may be empty
    QHash<QString, MappedColumn> columns;
    QString kindColumn;
    QMap<QString, QString> kinds; ///< value of the column -> "manhole", "connection", "building", "section", "lateral"
    QString defaultKind;
    QString height = QStringLiteral("cover"); ///< what z of a node's geometry is: "cover" or "invert"
    double sizeFactor = 1.0;                  ///< from the source's unit of sizes to millimetres
};

/** A mapping file: JSON that tells how a vector source is read. docs/import.md describes it. */
struct OgrMapping {
    double tolerance = 0.5;
    QString crs;
    QVector<MappedLayer> nodes;
    QVector<MappedLayer> pipes;

    /** None for text that is not such a file; the error says what is wrong, unknown names included. */
    static std::optional<OgrMapping> parse(const QByteArray& json, QString* error);

    static QStringList nodeColumns();
    static QStringList pipeColumns();
};

} // namespace Torvik::Import
