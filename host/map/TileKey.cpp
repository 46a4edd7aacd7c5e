#include "host/map/TileKey.h"

#include <QBuffer>
#include <QImage>
#include <QRegularExpression>

#include <algorithm>

namespace Torvik::Map {

namespace {
/** Pixels of a tile's edge. */
constexpr int tileEdge = 256;
} // namespace

std::optional<TileKey> tileKeyOfPath(const QString& path)
{
    static const QRegularExpression form(QStringLiteral("/(\\d{1,2})/(\\d{1,8})/(\\d{1,8})(\\.[a-z]+)?$"));
    const auto match = form.match(path);
    if (!match.hasMatch())
        return std::nullopt;
    const TileKey key {match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt()};
    return key.isValid() ? std::optional<TileKey>(key) : std::nullopt;
}

QByteArray cutOut(const QByteArray& ancestorPicture, const TileKey& ancestor, const TileKey& tile)
{
    if (ancestor == tile)
        return ancestorPicture;
    const int levels = tile.z - ancestor.z;
    if (levels < 0 || tile.x >> levels != ancestor.x || tile.y >> levels != ancestor.y)
        return {};
    const QImage whole = QImage::fromData(ancestorPicture);
    if (whole.isNull())
        return {};
    const double parts = 1 << levels;
    const QRectF part((tile.x - (ancestor.x << levels)) * whole.width() / parts,
                      (tile.y - (ancestor.y << levels)) * whole.height() / parts, whole.width() / parts,
                      whole.height() / parts);
    // Whole pixels around the part, so that the enlargement loses nothing of it; then the part exactly.
    const QRect around = part.toAlignedRect().intersected(whole.rect());
    const double times = tileEdge / part.width();
    const QImage large = whole.copy(around).scaled(std::max(1, qRound(around.width() * times)),
                                                   std::max(1, qRound(around.height() * times)));
    const QPoint corner(qRound((part.x() - around.x()) * times), qRound((part.y() - around.y()) * times));
    QBuffer png;
    png.open(QIODevice::WriteOnly);
    large.copy(QRect(corner, QSize(tileEdge, tileEdge))).save(&png, "PNG");
    return png.data();
}

} // namespace Torvik::Map
