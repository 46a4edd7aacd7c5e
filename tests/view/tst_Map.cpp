#include "host/map/MapEndpoints.h"
#include "host/map/TileServer.h"
#include "view/MapTown.h"
#include "view/SceneWindow.h"

#include <QGeoCoordinate>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Kx::Test;
using namespace Torvik;
using View3d::GdalGeoProjector;

namespace {

/** What the view asks of its host for a map whose tiles the test paints. */
class PaintedEndpoints : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool available MEMBER available CONSTANT)
    Q_PROPERTY(QString tilesHost MEMBER tilesHost CONSTANT)
    Q_PROPERTY(QString geocodingHost MEMBER tilesHost CONSTANT)
    Q_PROPERTY(QString placesHost MEMBER tilesHost CONSTANT)
    Q_PROPERTY(QString copyright MEMBER copyright CONSTANT)
    Q_PROPERTY(QString cacheDirectory MEMBER cacheDirectory CONSTANT)

public:
    explicit PaintedEndpoints(Map::TileServer::Source source)
        : server(std::move(source))
        , cacheDirectory(scratch.path())
    {
        if (!server.listen().isEmpty())
            qFatal("No port for the tiles.");
        tilesHost = QStringLiteral("http://127.0.0.1:%1").arg(server.port());
    }

    Map::TileServer server;
    QTemporaryDir scratch;
    bool available = true;
    QString tilesHost;
    QString copyright;
    QString cacheDirectory;
};

} // namespace

/** The street map under the scene goes with its camera, and the scene with a map that is dragged. */
class tst_Map : public QObject {
    Q_OBJECT

private slots:
    void aDragOfTheMapTiesTheSceneAnewByItsVector()
    {
        m_painter.paint({}, 17);
        tie({10.33, 47.68});
        lookAtGround({310, 0, -120}, 0, 0, 2000);
        auto* projector = GdalGeoProjector::instance();
        const QVector3D corner = window().camera()->position();
        const Database::WktPoint before(projector->wktStringForWorldPos({12, 3, 45}));
        const QGeoCoordinate start = centre();
        QSignalSpy tied(projector, &GdalGeoProjector::geoLocationChanged);

        window().controller()->setControlPlanes(View3d::CameraController::Map);
        window().drag({300, 300}, {380, 260});
        window().controller()->setControlPlanes(View3d::CameraController::All);

        const QGeoCoordinate end = centre();
        QVERIFY(start.distanceTo(end) > 10);
        QCOMPARE(tied.count(), 1);
        QCOMPARE(window().camera()->position(), corner);
        const auto projected = [projector](const QGeoCoordinate& at) {
            return projector->cartesianCoords(qDegreesToRadians(at.longitude()), qDegreesToRadians(at.latitude()), 0);
        };
        const View3d::Vector3D<double> vector = projected(end) - projected(start);
        const Database::WktPoint after(projector->wktStringForWorldPos({12, 3, 45}));
        const auto moved = View3d::Vector3D<double>(after, 1.0) - View3d::Vector3D<double>(before, 1.0);
        // The text keeps micrometres.
        QVERIFY(std::abs(moved.x() - vector.x()) < 1e-5);
        QVERIFY(std::abs(moved.z() - vector.z()) < 1e-5);
        // What the map showed 80 pixels to the left and 40 below lies in the middle now: the map went with the finger.
        QVERIFY(end.longitude() < start.longitude());
        QVERIFY(end.latitude() < start.latitude());
    }

    void aCameraTiltedBeyondTheMapsLimitHidesIt()
    {
        m_painter.paint({}, 17);
        tie({10.33, 47.68});

        lookAtGround({0, 0, 0}, 79.5, 0, 2000);
        QVERIFY(map()->property("shown").toBool());
        QCOMPARE(window().area()->property("sceneTransparency").toDouble(), 0.0);
        lookAtGround({0, 0, 0}, 80.5, 0, 2000);
        QVERIFY(!map()->property("shown").toBool());
        QCOMPARE(window().area()->property("sceneTransparency").toDouble(), 1.0);
        lookAtGround({50, 0, 60}, 30, 0, 2000);
        QVERIFY(map()->property("shown").toBool());
        const Place here = placeOf({50, 0, 60});
        // The projector gives float degrees to the map, which is half a metre.
        QVERIFY(std::abs(centre().latitude() - here.latitude) < 5e-6);
        QVERIFY(std::abs(centre().longitude() - here.longitude) < 2e-6);
    }

    void afterItsOwnWayTheMapIsBackWhereItWas()
    {
        m_painter.paint({}, 17);
        tie({10.33, 47.68});
        lookAtGround({0, 0, 0}, 0, 0, 2000);
        const QGeoCoordinate start = centre();
        const QVector3D camera = window().camera()->position();

        map()->setProperty("navigationMode", true);
        QMetaObject::invokeMethod(map(), "gotoPosition",
                                  Q_ARG(QVariant, QVariant::fromValue(QGeoCoordinate(50.0, 8.0))));
        QVERIFY(centre().distanceTo(QGeoCoordinate(50.0, 8.0)) < 0.01);
        QCOMPARE(window().camera()->position(), camera);
        map()->setProperty("navigationMode", false);

        QVERIFY(centre().distanceTo(start) < 0.5);
    }

    void farAwayTheGridGivesWay()
    {
        lookAtGround({0, 0, 0}, 0, 0, 3499);
        QVERIFY(!window().area()->property("gridIsFarAwayFromCamera").toBool());
        lookAtGround({0, 0, 0}, 0, 0, 3501);
        QVERIFY(window().area()->property("gridIsFarAwayFromCamera").toBool());
    }

    void withoutMovementTheMapAsksForNothingAndStaysStill()
    {
        m_painter.paint({}, 17);
        tie({10.33, 47.68});
        lookAtGround({0, 0, 0}, 30, 20, 2000);
        const auto* projector = GdalGeoProjector::instance();
        QSignalSpy tied(projector, &GdalGeoProjector::geoLocationChanged);
        QSignalSpy moved(qtMap(), SIGNAL(centerChanged(QGeoCoordinate)));
        int asked = -1;
        while (asked != m_endpoints.server.asked()) {
            asked = m_endpoints.server.asked();
            QTest::qWait(400);
        }

        window().frames(60);

        QCOMPARE(m_endpoints.server.asked(), asked);
        QCOMPARE(moved.count(), 0);
        QCOMPARE(tied.count(), 0);
    }

private:
    /** Paints tiles with marks; on hold it keeps those who ask waiting. */
    class Painter {
    public:
        void hold() { m_held = true; }
        void paint(const QVector<Place>& marks, double zoomLevel)
        {
            m_marks = marks;
            m_zoomLevel = zoomLevel;
            m_held = false;
            const auto waiting = std::exchange(m_waiting, {});
            for (const auto& [key, answer] : waiting)
                request(key, answer);
        }
        void request(const Map::TileKey& key, const Map::TileServer::Answer& answer)
        {
            if (m_held)
                m_waiting.append({key, answer});
            else
                answer(MarkedTiles(m_marks, 9, m_zoomLevel)(key));
        }

    private:
        QVector<Place> m_marks;
        double m_zoomLevel = 0;
        QVector<QPair<Map::TileKey, Map::TileServer::Answer>> m_waiting;
        bool m_held = false;
    };

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
    QQuickItem* qtMap() { return map()->findChild<QQuickItem*>("map"); }
    QObject* map() { return m_window->area()->property("map").value<QObject*>(); }

    void tie(const Place& place)
    {
        window();
        auto* projector = GdalGeoProjector::instance();
        projector->deinit();
        projector->setProjectionSystem("EPSG:25832");
        projector->initFromMap(place.latitude, place.longitude, 0);
        QTRY_VERIFY(!window().camera()->property("animationsRunning").toBool());
    }
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
        auto* projector = GdalGeoProjector::instance();
        const auto place = projector->geoCoords(projector->origin() + View3d::Vector3D<double>(scene));
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
    Painter m_painter;
    PaintedEndpoints m_endpoints {
        [this](const Map::TileKey& key, const Map::TileServer::Answer& answer) { m_painter.request(key, answer); }};
    SceneWindow* m_window = nullptr;
};

QTEST_MAIN(tst_Map)
#include "tst_Map.moc"
