#pragma once

#include <QSizeF>
#include <QString>
#include <QVector3D>

#include <memory>

class QQmlApplicationEngine;
class QQuickItem;
class QQuickWindow;

namespace Qt3DRender {
class QCamera;
}
namespace Torvik::Map {
class MapEndpoints;
}

namespace Torvik::Bench {

/** The view as kxviewer embeds it, over a map whose tiles come from a folder. */
class MapStage {
public:
    /** Makes the folder of tiles; it is filled when a project has told where it lies. */
    explicit MapStage(const QString& tiles);
    ~MapStage();

    void open(const QString& project);
    void showMap(bool shown);
    void look(const QVector3D& middle, double tiltDeg, double distance);

    void waitForTiles();
    int tilesAsked() const;
    /** Of the map's item, in pixels. */
    QSizeF sheetSize() const;
    struct FrameTime {
        double clockMs = 1e9;
        /** Of all threads of the process. */
        double processorMs = 1e9;
    };
    /** Mean of a frame while the camera circles around what it looks at. */
    FrameTime orbit(int frames);

    struct Activity {
        int frames = 0;
        int drawings = 0;
        int mapMoves = 0;
        int tilesAsked = 0;
        /** Of all threads of the process. */
        double processorMs = 0.0;
    };
    Activity watch(int ms);

private:
    void waitFrames(int frames);
    QQuickItem* map() const;

    QString m_tiles;
    std::unique_ptr<Map::MapEndpoints> m_endpoints;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QQuickWindow* m_window = nullptr;
    QQuickItem* m_area = nullptr;
    Qt3DRender::QCamera* m_camera = nullptr;
};

} // namespace Torvik::Bench
