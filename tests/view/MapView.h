#pragma once

#include "host/map/TileServer.h"
#include "view/MapTown.h"
#include "view/SceneWindow.h"

#include <QGeoCoordinate>

#include <cmath>
#include <utility>

namespace Kx::Test {

/** What the view asks of its host for a map whose tiles the test paints. */
class PaintedEndpoints : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool available MEMBER available CONSTANT)
    Q_PROPERTY(QString tilesHost MEMBER tilesHost CONSTANT)
    Q_PROPERTY(QString geocodingHost MEMBER geocodingHost CONSTANT)
    Q_PROPERTY(QString placesHost MEMBER geocodingHost CONSTANT)
    Q_PROPERTY(QString copyright MEMBER copyright CONSTANT)
    Q_PROPERTY(QString cacheDirectory MEMBER cacheDirectory CONSTANT)

public:
    /** Searches go to the tiles' server too, which finds nothing, unless another is named. */
    explicit PaintedEndpoints(Torvik::Map::TileServer::Source source)
        : server(std::move(source))
        , cacheDirectory(scratch.path())
    {
        if (!server.listen().isEmpty())
            qFatal("No port for the tiles.");
        tilesHost = QStringLiteral("http://127.0.0.1:%1").arg(server.port());
        geocodingHost = tilesHost;
    }

    Torvik::Map::TileServer server;
    QTemporaryDir scratch;
    bool available = true;
    QString tilesHost;
    QString geocodingHost;
    QString copyright;
    QString cacheDirectory;
};

/** A window with the scene over a map, made when it is first asked for. */
class MapView {
public:
    explicit MapView(Torvik::Map::TileServer::Source source)
        : m_endpoints(std::move(source))
    {
    }

    PaintedEndpoints& endpoints() { return m_endpoints; }
    SceneWindow& window()
    {
        if (!m_window) {
            m_window = new SceneWindow(&m_endpoints);
            m_window->camera()->setFarPlane(500000);
            if (!QTest::qWaitFor([this] { return map() != nullptr; }))
                qFatal("The map was not loaded.");
            m_window->frames(10);
        }
        return *m_window;
    }
    /** The item of the map plug-in, and the view's own around it. */
    QQuickItem* qtMap() { return map()->findChild<QQuickItem*>("map"); }
    QObject* map() { return m_window->area()->property("map").value<QObject*>(); }

    void tie(const Place& place)
    {
        window();
        auto* projector = Torvik::View3d::GdalGeoProjector::instance();
        projector->deinit();
        projector->setProjectionSystem("EPSG:25832");
        projector->initFromMap(place.latitude, place.longitude, 0);
        rest();
    }
    void rest() { QTRY_VERIFY(!window().camera()->property("animationsRunning").toBool()); }
    QGeoCoordinate centre() { return qtMap()->property("center").value<QGeoCoordinate>(); }
    /** The level at which a pixel of the screen is one of the tiles. */
    double wantedLevel()
    {
        const double latitude = qtMap()->property("center").value<QGeoCoordinate>().latitude();
        const double metres = qtMap()->property("metersPerPixelLatitude").toDouble();
        return std::log2(40075016.686 * std::cos(qDegreesToRadians(latitude)) / metres) - 8;
    }
    static Place placeOf(QVector3D scene)
    {
        auto* projector = Torvik::View3d::GdalGeoProjector::instance();
        const auto place = projector->geoCoords(projector->origin() + Torvik::View3d::Vector3D<double>(scene));
        return {qRadiansToDegrees(place.lon()), qRadiansToDegrees(place.lat())};
    }
    /** From a direction that is so many degrees off the vertical, with the upper edge towards the heading. */
    void lookAtGround(QVector3D centre, double tilt, double heading, double distance)
    {
        const double t = qDegreesToRadians(tilt);
        const double h = qDegreesToRadians(heading);
        const QVector3D ahead(float(-std::sin(h)), 0, float(std::cos(h)));
        const QVector3D back = float(std::cos(t)) * QVector3D(0, 1, 0) - float(std::sin(t)) * ahead;
        const QVector3D up = float(std::sin(t)) * QVector3D(0, 1, 0) + float(std::cos(t)) * ahead;
        window().look(centre + float(distance) * back, centre, up);
    }
    /** Waits until the map has asked for nothing more for a while. */
    void waitForTiles()
    {
        int asked = -1;
        while (asked != m_endpoints.server.asked()) {
            asked = m_endpoints.server.asked();
            QTest::qWait(400);
        }
    }

private:
    PaintedEndpoints m_endpoints;
    SceneWindow* m_window = nullptr;
};

} // namespace Kx::Test
