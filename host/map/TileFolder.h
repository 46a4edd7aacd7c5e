#pragma once

#include "host/map/TileKey.h"

namespace Torvik::Map {

/** Tiles on disk, FOLDER/Z/X/Y.png (or .jpg, .jpeg). A level that the folder does not hold is cut out of a coarser one.
 *  A value: it keeps the path only, so any thread may have its own. */
class TileFolder {
public:
    explicit TileFolder(const QString& path);

    /** Why the folder cannot serve, for the user; empty if it can. */
    QString problem() const;
    /** The tile's picture file; empty when neither it nor a coarser one is there. */
    QByteArray tile(const TileKey& key) const;

private:
    QByteArray file(const TileKey& key) const;

    QString m_path;
};

} // namespace Torvik::Map
