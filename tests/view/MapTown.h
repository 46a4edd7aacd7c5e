#pragma once

#include "host/map/TileKey.h"

#include <QBuffer>
#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace Kx::Test {

/** Degrees. */
struct Place {
    double longitude = 0;
    double latitude = 0;
};

/** Part of the world's width from the west, and of its height from the north, in Web Mercator. */
inline QPointF worldOf(const Place& place)
{
    return {(place.longitude + 180) / 360, (1 - std::asinh(std::tan(qDegreesToRadians(place.latitude))) / M_PI) / 2};
}

/** Tiles with marks at known places on earth: filled discs of one colour on white. A mark is as large on every level.
 */
class MarkedTiles {
public:
    MarkedTiles(const QVector<Place>& marks, double radius, double zoomLevel)
        : m_marks(marks)
        , m_radius(radius)
        , m_zoomLevel(zoomLevel)
    {
    }

    QByteArray operator()(const Torvik::Map::TileKey& key) const
    {
        QImage tile(256, 256, QImage::Format_RGB32);
        tile.fill(Qt::white);
        QPainter painter(&tile);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(255, 0, 255));
        const double world = 256.0 * std::exp2(key.z);
        const double radius = m_radius * std::exp2(key.z - m_zoomLevel);
        for (const Place& mark : m_marks) {
            const QPointF at = worldOf(mark) * world;
            painter.drawEllipse(at - QPointF(256.0 * key.x, 256.0 * key.y), radius, radius);
        }
        painter.end();
        QBuffer png;
        png.open(QIODevice::WriteOnly);
        tile.save(&png, "PNG");
        return png.data();
    }

    /** The tiles of these levels around a place, as a folder holds them. */
    void writeAround(const QString& folder, const Place& place, int from, int to, int reach) const
    {
        for (int z = from; z <= to; ++z) {
            const QPointF middle = worldOf(place) * std::exp2(z);
            for (int x = int(middle.x()) - reach; x <= int(middle.x()) + reach; ++x) {
                const QString column = QStringLiteral("%1/%2/%3").arg(folder).arg(z).arg(x);
                QDir().mkpath(column);
                for (int y = int(middle.y()) - reach; y <= int(middle.y()) + reach; ++y) {
                    QFile file(QStringLiteral("%1/%2.png").arg(column).arg(y));
                    if (file.open(QIODevice::WriteOnly))
                        file.write((*this)({z, x, y}));
                }
            }
        }
    }

private:
    QVector<Place> m_marks;
    double m_radius;
    double m_zoomLevel;
};

/** Centre of the marks' colour around a pixel, what is paler counting less; far away when there is none. */
inline QPointF markNear(const QImage& picture, QPointF expected, int reach)
{
    QPointF sum;
    double weight = 0;
    for (int y = qRound(expected.y()) - reach; y <= qRound(expected.y()) + reach; ++y) {
        for (int x = qRound(expected.x()) - reach; x <= qRound(expected.x()) + reach; ++x) {
            if (!picture.valid(x, y))
                continue;
            const QColor colour = picture.pixelColor(x, y);
            const double part = std::max(0, std::min(colour.red(), colour.blue()) - colour.green()) / 255.0;
            sum += part * QPointF(x + 0.5, y + 0.5);
            weight += part;
        }
    }
    return weight > 1 ? sum / weight : QPointF(-1e6, -1e6);
}

} // namespace Kx::Test
