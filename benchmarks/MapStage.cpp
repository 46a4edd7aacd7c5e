#include "benchmarks/MapStage.h"

#include "benchmarks/Stopwatch.h"
#include "domain/boundary/AppState.h"
#include "geo/GdalGeoProjector.h"
#include "geo/MapSheet.h"
#include "host/app/DrawingCount.h"
#include "host/domain/ProjectStore.h"
#include "host/map/MapEndpoints.h"
#include "host/modules/HostModules.h"
#include "scene/SceneRoot.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QImage>
#include <QPainter>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>
#include <Qt3DRender/QCamera>
#include <QtMath>

#include <cmath>

namespace Torvik::Bench {

namespace {

constexpr int tileEdge = 256;
/** What lies in the folder; finer levels are cut out of it. */
constexpr int level = 14;
constexpr int reach = 4;
/** After a change the scene is drawn a few times more. */
constexpr int settleMs = 1000;

const char windowQml[] = R"(
import QtQuick 2.12
import QtQuick.Window 2.12
import "qrc:/viewer" as Viewer
Window { property alias area: area; width: 800; height: 600; visible: true
         Viewer.SceneArea { id: area; anchors.fill: parent } }
)";

/** Streets and blocks, a different number of them on each tile. */
QImage street(int x, int y)
{
    QImage tile(tileEdge, tileEdge, QImage::Format_RGB32);
    tile.fill(QColor(240, 236, 228));
    QPainter painter(&tile);
    painter.setPen(QPen(QColor(250, 210, 140), 4));
    const int step = 32 + 8 * ((x + y) % 3);
    for (int at = step / 2; at < tileEdge; at += step) {
        painter.drawLine(at, 0, at, tileEdge);
        painter.drawLine(0, at, tileEdge, at);
    }
    painter.setPen(Qt::darkGray);
    painter.drawText(tile.rect(), Qt::AlignCenter, QStringLiteral("%1/%2").arg(x).arg(y));
    return tile;
}

void paintTiles(const QString& folder, double longitude, double latitude)
{
    const double tiles = std::exp2(level);
    const double phi = qDegreesToRadians(latitude);
    const int middleX = int((longitude + 180) / 360 * tiles);
    const int middleY = int((1 - std::asinh(std::tan(phi)) / M_PI) / 2 * tiles);
    for (int x = middleX - reach; x <= middleX + reach; ++x) {
        const QString column = QStringLiteral("%1/%2/%3").arg(folder).arg(level).arg(x);
        QDir().mkpath(column);
        for (int y = middleY - reach; y <= middleY + reach; ++y)
            street(x, y).save(QStringLiteral("%1/%2.png").arg(column).arg(y));
    }
}

void wait(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

MapStage::MapStage(const QString& tiles)
    : m_tiles(tiles)
    , m_endpoints(std::make_unique<Map::MapEndpoints>())
    , m_engine(std::make_unique<QQmlApplicationEngine>())
{
    QDir().mkpath(QStringLiteral("%1/%2").arg(tiles).arg(level));
    if (const QString error = m_endpoints->setTiles(tiles); !error.isEmpty())
        qFatal("%s", qPrintable(error));
    Viewer::registerHostModules(*m_engine);
    m_engine->rootContext()->setContextProperty(QStringLiteral("mapEndpoints"), m_endpoints.get());
    m_engine->loadData(windowQml, QUrl(QStringLiteral("qrc:/viewer/MapStage.qml")));
    if (m_engine->rootObjects().isEmpty())
        qFatal("The window could not be loaded.");
    m_window = qobject_cast<QQuickWindow*>(m_engine->rootObjects().constFirst());
    m_area = m_window->property("area").value<QQuickItem*>();
    m_camera = m_area->property("scene").value<QQuickItem*>()->property("camera").value<Qt3DRender::QCamera*>();
    waitFrames(10);
}

MapStage::~MapStage() = default;

void MapStage::open(const QString& project)
{
    const auto opened = Database::ProjectStore::instance().open(project);
    if (!opened.project)
        qFatal("%s", qPrintable(opened.error));
    auto& manager = View3d::SceneRoot::instance()->entitiesManager();
    QEventLoop loop;
    bool loaded = false;
    QObject::connect(&manager, &View3d::EntitiesManager::loadingFinished, &loop, [&] {
        loaded = true;
        loop.quit();
    });
    AppState::instance().setActiveProject(opened.project);
    if (!loaded)
        loop.exec();
    const auto* const projector = View3d::GdalGeoProjector::instance();
    paintTiles(m_tiles, projector->longit(), projector->latit());
    waitFrames(4);
}

QQuickItem* MapStage::map() const
{
    return m_area->property("map").value<QObject*>()->findChild<QQuickItem*>(QStringLiteral("map"));
}

void MapStage::showMap(bool shown)
{
    m_area->setProperty("mapVisible", shown);
    waitFrames(4);
    if (map()->isVisible() != shown)
        qFatal("The map is not as it should be.");
}

void MapStage::look(const QVector3D& middle, double tiltDeg, double distance)
{
    while (m_camera->property("animationsRunning").toBool())
        waitFrames(1);
    const auto s = static_cast<float>(std::sin(qDegreesToRadians(tiltDeg)));
    const auto c = static_cast<float>(std::cos(qDegreesToRadians(tiltDeg)));
    m_camera->setPosition(middle + static_cast<float>(distance) * QVector3D(0, c, -s));
    m_camera->setViewCenter(middle);
    m_camera->setUpVector({0, s, c});
    m_camera->setNearPlane(static_cast<float>(distance) / 10);
    m_camera->setFarPlane(static_cast<float>(distance) * 2);
    waitFrames(4);
}

void MapStage::waitForTiles()
{
    while (m_endpoints->busy())
        wait(100);
    waitFrames(4);
}

int MapStage::tilesAsked() const
{
    return m_endpoints->asked();
}

QSizeF MapStage::sheetSize() const
{
    return map()->size();
}

void MapStage::waitFrames(int frames)
{
    QEventLoop loop;
    int left = frames;
    // Told by the render thread.
    QObject::connect(
        m_window, &QQuickWindow::frameSwapped, &loop,
        [&] {
            if (--left <= 0)
                loop.quit();
        },
        Qt::QueuedConnection);
    m_window->update();
    loop.exec();
}

MapStage::FrameTime MapStage::orbit(int frames)
{
    constexpr float stepDeg = 2.0F;
    const double before = processMs();
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < frames; ++i) {
        m_camera->panAboutViewCenter(stepDeg, QVector3D(0.0F, 1.0F, 0.0F));
        waitFrames(1);
    }
    return {static_cast<double>(clock.nsecsElapsed()) / 1e6 / frames, (processMs() - before) / frames};
}

MapStage::Activity MapStage::watch(int ms)
{
    wait(settleMs);
    Activity activity;
    const QObject context;
    QObject::connect(
        m_window, &QQuickWindow::frameSwapped, &context, [&activity] { ++activity.frames; }, Qt::QueuedConnection);
    auto* const sheet = m_area->property("map").value<QObject*>()->findChild<View3d::MapSheet*>();
    QObject::connect(sheet, &View3d::MapSheet::changed, &context, [&activity] { ++activity.mapMoves; });
    const int asked = tilesAsked();
    const Viewer::DrawingCount count;
    const double before = processMs();
    wait(ms);
    activity.processorMs = processMs() - before;
    activity.drawings = count.drawings();
    activity.tilesAsked = tilesAsked() - asked;
    return activity;
}

} // namespace Torvik::Bench
