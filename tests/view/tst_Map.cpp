#include "common/SceneTest.h"
#include "view/MapTown.h"
#include "view/MapView.h"

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Kx::Test;
using namespace Torvik;
using View3d::GdalGeoProjector;

/** The street map under the scene: what is painted at a place on earth is seen where the scene has that place. */
class tst_Map : public QObject, private MapView {
    Q_OBJECT

public:
    tst_Map()
        : MapView([this](const Map::TileKey& key, const Map::TileServer::Answer& answer) {
            m_painter.request(key, answer);
        })
    {
    }

private slots:
    void mapAndSceneCoincideInTheCorners_data()
    {
        QTest::addColumn<double>("tilt");
        QTest::addColumn<double>("heading");
        QTest::addColumn<double>("distance");
        for (const double tilt : {0.0, 45.0, 75.0}) {
            for (const double heading : {0.0, 70.0, 180.0, 305.0}) {
                for (const double distance : {350.0, 3000.0, 40000.0})
                    QTest::addRow("tilt %g, heading %g, from %g m", tilt, heading, distance)
                        << tilt << heading << distance;
            }
        }
    }
    void mapAndSceneCoincideInTheCorners()
    {
        QFETCH(double, tilt);
        QFETCH(double, heading);
        QFETCH(double, distance);
        m_painter.hold();
        // Elsewhere for each row: no tile of the row before serves again, and north of the grid is not that of the map.
        tie({4.0 + 0.3 * m_row++, 47.68});
        lookAtGround({310, 0, -120}, tilt, heading, distance);
        checkCorners(QString("map-%1-%2-%3").arg(tilt).arg(heading).arg(distance));
    }

    void aLevelThatTheMapRoundsLiesRightToo_data()
    {
        QTest::addColumn<double>("beside");
        QTest::newRow("a little above a whole level") << 0.008;
        QTest::newRow("a little below a whole level") << -0.008;
    }
    void aLevelThatTheMapRoundsLiesRightToo()
    {
        QFETCH(double, beside);
        m_painter.hold();
        tie({4.0 + 0.3 * m_row++, 47.68});
        lookAtGround({310, 0, -120}, 0, 70, 3000);
        const double distance = 3000 * std::exp2(wantedLevel() - std::floor(wantedLevel()) - beside);
        lookAtGround({310, 0, -120}, 0, 70, distance);
        QVERIFY(std::abs(wantedLevel() - std::round(wantedLevel()) - beside) < 0.001);
        checkCorners(QString("map-rounded-%1").arg(beside));
    }

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
        waitForTiles();
        const int asked = endpoints().server.asked();

        window().frames(60);

        QCOMPARE(endpoints().server.asked(), asked);
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

    /** Has marks painted at the places in the view's corners and middle, and waits until they are seen there. */
    void checkCorners(const QString& picture)
    {
        QVector<Place> marks;
        QVector<QPointF> expected;
        const QSizeF size = window().area()->size();
        for (const QPointF& at :
             {QPointF(40, 40), QPointF(size.width() - 40, 40), QPointF(40, size.height() - 60),
              QPointF(size.width() - 40, size.height() - 60), QPointF(size.width() / 2, size.height() / 2)}) {
            const QVector3D ground = View3d::Utils3d::pointScreenToWorldGround(
                float(at.x()), float(at.y()), window().camera(), size.width(), size.height());
            marks << placeOf(ground);
            expected << renderedAt(ground);
        }
        m_painter.paint(marks, wantedLevel());

        const bool right = QTest::qWaitFor([&] { return worstOffset(expected) < 2.0; }, 20000);
        window().keep(picture);
        QVERIFY2(right, qPrintable(QString::number(worstOffset(expected)) + " px"));
    }
    /** The pixel at which the scene's renderer draws a point. */
    QPointF renderedAt(QVector3D point)
    {
        const QVector3D at = window().camera()->projectionMatrix() * (window().camera()->viewMatrix() * point);
        const QSizeF size = window().area()->size();
        return {(double(at.x()) + 1) / 2 * size.width(), (1 - double(at.y())) / 2 * size.height()};
    }
    /** In pixels, of the marks from where they should be seen; large while one is not. */
    double worstOffset(const QVector<QPointF>& expected)
    {
        const QImage picture = window().grab();
        double worst = 0;
        for (const QPointF& at : expected) {
            const QPointF offset = markNear(picture, at, 36) - at;
            worst = std::max(worst, std::hypot(offset.x(), offset.y()));
        }
        return worst;
    }

    Painter m_painter;
    int m_row = 0;
};

KX_SCENE_TEST_MAIN(tst_Map)
#include "tst_Map.moc"
