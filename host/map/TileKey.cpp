#include "host/map/TileKey.h"

#include <QBuffer>
#include <QImage>
#include <QRegularExpression>

#include <algorithm>

namespace Torvik::Map {

namespace {
/** Pixels of a tile's edge. */
constexpr int tileEdge = 256;

/** A tile of what may be less than a pixel: each of its own pixels is looked up, since a picture enlarged before it is
 *  cut would be as large as the world at the tile's level. */
QImage enlarged(const QImage& picture, const QRectF& part)
{
    const auto source = [](double begin, double length, int pixel, int last) {
        return std::clamp(static_cast<int>(begin + length * (pixel + 0.5) / tileEdge), 0, last);
    };
    QImage tile(tileEdge, tileEdge, QImage::Format_ARGB32);
    for (int y = 0; y < tileEdge; ++y) {
        const int row = source(part.y(), part.height(), y, picture.height() - 1);
        const auto* const from = reinterpret_cast<const QRgb*>(picture.constScanLine(row));
        auto* const to = reinterpret_cast<QRgb*>(tile.scanLine(y));
        for (int x = 0; x < tileEdge; ++x)
            to[x] = from[source(part.x(), part.width(), x, picture.width() - 1)];
    }
    return tile;
}

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
    const QImage whole = QImage::fromData(ancestorPicture).convertToFormat(QImage::Format_ARGB32);
    if (whole.isNull())
        return {};
    const double parts = 1 << levels;
    const double width = whole.width() / parts;
    const double height = whole.height() / parts;
    const QRectF part((tile.x - (ancestor.x << levels)) * width, (tile.y - (ancestor.y << levels)) * height, width,
                      height);
    QBuffer png;
    png.open(QIODevice::WriteOnly);
    enlarged(whole, part).save(&png, "PNG");
    return png.data();
}

} // namespace Torvik::Map
