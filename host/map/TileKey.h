#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace Torvik::Map {

/** Finest level that a street map is cut into anywhere. */
constexpr int finestLevel = 24;

/** One tile of a street map: at level z the world is 2^z tiles wide and high, counted from the north-west. */
struct TileKey {
    int z = 0;
    int x = 0;
    int y = 0;

    /** Inside the world. */
    bool isValid() const { return z >= 0 && z <= finestLevel && x >= 0 && y >= 0 && x < (1 << z) && y < (1 << z); }
    /** The tile of the next coarser level that this one is a quarter of. */
    TileKey parent() const { return {z - 1, x / 2, y / 2}; }
};

inline bool operator==(const TileKey& a, const TileKey& b)
{
    return a.z == b.z && a.x == b.x && a.y == b.y;
}

/** The key in the last three parts of a path, "/any/z/x/y.png"; nothing for anything else. */
std::optional<TileKey> tileKeyOfPath(const QString& path);

/** The part of an ancestor's picture that stands for the tile, enlarged to a whole one, as PNG. The key itself gives
 *  the picture as it is; empty for what is no picture, and for a tile that is no descendant. */
QByteArray cutOut(const QByteArray& ancestorPicture, const TileKey& ancestor, const TileKey& tile);

} // namespace Torvik::Map
