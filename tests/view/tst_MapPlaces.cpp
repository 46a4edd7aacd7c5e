#include "common/SceneTest.h"
#include "host/domain/HostSettings.h"
#include "host/modules/Ostel.h"
#include "plans/IBackgroundPlan.h"
#include "plans/PlanLoader.h"
#include "scene/SceneEntities.h"
#include "view/Finger.h"
#include "view/MapView.h"
#include "view/StandInGeocoder.h"

#include <QQmlListReference>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

using namespace Kx::Test;
using namespace Torvik;
using View3d::GdalGeoProjector;

namespace {

const Place home {10.33, 47.68};
const double notANumber = std::numeric_limits<double>::quiet_NaN();

QVariant variant(const QGeoCoordinate& place)
{
    return QVariant::fromValue(place);
}

/** What QML files tell by console.error while it stands. */
class QmlErrors {
public:
    QmlErrors()
    {
        list().clear();
        previous() = qInstallMessageHandler(note);
    }
    ~QmlErrors() { qInstallMessageHandler(previous()); }
    static QStringList& list()
    {
        static QStringList errors;
        return errors;
    }

private:
    static QtMessageHandler& previous()
    {
        static QtMessageHandler handler = nullptr;
        return handler;
    }
    static void note(QtMsgType type, const QMessageLogContext& context, const QString& message)
    {
        if (type == QtCriticalMsg)
            list() << message;
        previous()(type, context, message);
    }
};

} // namespace

/** Going to places by the map: positions, addresses, and the scene's tie to the earth. */
class tst_MapPlaces : public QObject, private MapView {
    Q_OBJECT

public:
    tst_MapPlaces()
        : MapView([this](const Map::TileKey& key, const Map::TileServer::Answer& answer) {
            answer(m_noTiles ? QByteArray() : MarkedTiles({}, 9, 17)(key));
        })
    {
        endpoints().geocodingHost = m_geocoder.host();
        endpoints().copyright = "Surveyors of the town, from a map under a licence that wants to be named";
    }

private slots:
    void initTestCase()
    {
        Base::HostSettings::setSettingsFile(m_settings.filePath("settings.ini"));
        // Before anyone else has tied the scene.
        window();
        m_firstTie = tiedAt();
        m_firstCentre = centre();
    }
    void init()
    {
        tie(home);
        lookAtGround({0, 0, 0}, 0, 0, 2000);
        m_geocoder.asked.clear();
        m_geocoder.status = "200 OK";
        m_geocoder.body = "[]";
    }
    void cleanup()
    {
        map()->setProperty("navigationMode", false);
        window().area()->setProperty("mapVisible", true);
        window().controller()->setControlPlanes(View3d::CameraController::All);
        View3d::SceneEntities::instance().deleteBackgroundPlan();
        m_project.reset();
        rest();
    }

    void theMapTiesTheSceneToItsFirstPlace()
    {
        const QGeoCoordinate first(47.6802960, 10.3267630);
        QCOMPARE(map()->property("defaultCenter").value<QGeoCoordinate>(), first);
        QVERIFY(m_firstTie.distanceTo(first) < 0.05);
        QVERIFY(m_firstCentre.distanceTo(first) < 0.5);
    }

    void anEmptySceneIsTiedToThePlace()
    {
        const QGeoCoordinate there = placeBeside(300, 90);
        QSignalSpy tied(projector(), &GdalGeoProjector::geoLocationChanged);

        call("gotoPosition", variant(there));
        rest();

        QCOMPARE(tied.count(), 1);
        QVERIFY(tiedAt().distanceTo(there) < 0.05);
        QVERIFY(seen().distanceTo(there) < 1);
        QCOMPARE(setting("LASTMATCHINGLATANDLONGADDRESS"), QString("UNDEFINED_STREET,UNDEFINED_CITY"));
        QVERIFY(std::abs(setting("LASTADDRESSPOSITIONLAT").toDouble() - there.latitude()) < 1e-3);
        QVERIFY(std::abs(setting("LASTADDRESSPOSITIONLONG").toDouble() - there.longitude()) < 1e-3);
    }

    void aSceneWithManholesStaysTied()
    {
        openTown();
        const QGeoCoordinate there = placeBeside(300, 90);
        const QGeoCoordinate tiedBefore = tiedAt();
        QSignalSpy tied(projector(), &GdalGeoProjector::geoLocationChanged);

        call("gotoPosition", variant(there));
        rest();

        QCOMPARE(tied.count(), 0);
        QCOMPARE(tiedAt(), tiedBefore);
        QVERIFY(seen().distanceTo(there) < 1);
        QVERIFY(centre().distanceTo(there) < 1);
    }

    void fromTheFrontTheCameraGoesThereTooAndKeepsItsHeight_data()
    {
        QTest::addColumn<float>("off");
        QTest::newRow("level") << 0.0F;
        // What is left of a quarter turn by an animation.
        QTest::newRow("nearly level") << 1e-5F;
    }
    void fromTheFrontTheCameraGoesThereTooAndKeepsItsHeight()
    {
        QFETCH(float, off);
        openTown();
        const QGeoCoordinate there = placeBeside(300, 90);
        const QVector3D target =
            GdalGeoProjector::instance()->sceneCoordsFromGeoCoords(there.latitude(), there.longitude());
        window().look({0, 2.0F + off * 600, -600}, {0, 2, 0}, {0, 1, 0}, View3d::CameraController::View2dFront);
        const QmlErrors errors;

        call("gotoPosition", variant(there));
        rest();

        const QVector3D centre = window().camera()->viewCenter();
        QVERIFY2(
            (centre - QVector3D(target.x(), 2, target.z())).length() < 1,
            qPrintable(QString("%1 %2 %3").arg(double(centre.x())).arg(double(centre.y())).arg(double(centre.z()))));
        QVERIFY(std::abs(window().camera()->viewVector().length() - 600) < 1);
        QCOMPARE(errors.list(), QStringList());
    }

    void aSceneWithAPlanStaysTied_data()
    {
        QTest::addColumn<bool>("there");
        QTest::newRow("while it loads") << false;
        QTest::newRow("when it is there") << true;
    }
    void aSceneWithAPlanStaysTied()
    {
        QFETCH(bool, there);
        m_project = std::make_unique<TestProject>("EPSG:25832");
        m_project->activate();
        tie(home);
        const auto& scene = View3d::SceneEntities::instance();
        const QString file = m_settings.filePath("plan.png");
        QImage picture(64, 64, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QVERIFY(picture.save(file));
        auto* const loader = window().root()->planLoader();
        const QObject here;
        connect(loader, &View3d::PlanLoader::planLoaded, &here, [](View3d::Renderable* plan) {
            View3d::SceneEntities::instance().setBackgroundPlan(dynamic_cast<View3d::IBackgroundPlan*>(plan));
        });
        loader->loadPlan(file);
        QVERIFY(loader->planLoading());
        if (there)
            QTRY_VERIFY(scene.getBackgroundPlan());
        QSignalSpy tied(projector(), &GdalGeoProjector::geoLocationChanged);

        call("gotoPosition", variant(placeBeside(300, 90)));
        rest();

        QCOMPARE(tied.count(), 0);
        QTRY_VERIFY(scene.getBackgroundPlan());
    }

    void whatIsNoPlaceMovesNothing_data()
    {
        QTest::addColumn<QVariant>("place");
        QTest::newRow("nothing") << QVariant();
        QTest::newRow("no numbers") << variant(QGeoCoordinate());
        QTest::newRow("a longitude that is no number") << variant(QGeoCoordinate(47.0, notANumber));
        QTest::newRow("beyond the pole") << variant(QGeoCoordinate(91.0, 10.0));
    }
    void whatIsNoPlaceMovesNothing()
    {
        QFETCH(QVariant, place);
        QSignalSpy tied(projector(), &GdalGeoProjector::geoLocationChanged);
        const QVector3D camera = window().camera()->position();
        const QGeoCoordinate before = centre();

        for (const bool alone : {false, true}) {
            map()->setProperty("navigationMode", alone);
            call("gotoPosition", place);
            call("moveCameraToPosition", place);
        }
        rest();

        QCOMPARE(window().camera()->position(), camera);
        QCOMPARE(centre(), before);
        QCOMPARE(tied.count(), 0);
        QVERIFY(m_geocoder.asked.isEmpty());
    }

    void aPlaceIsReachedThoughTheCameraIsUnderWay()
    {
        openTown();
        const QGeoCoordinate there = placeBeside(200, 0);
        QMetaObject::invokeMethod(window().camera(), "animatedTranslation", Q_ARG(QVariant, QVector3D(400, 0, 0)),
                                  Q_ARG(QVariant, QVariant()));
        QVERIFY(window().camera()->property("animationsRunning").toBool());

        call("gotoPosition", variant(there));
        rest();

        QVERIFY2(seen().distanceTo(there) < 1, qPrintable(QString::number(seen().distanceTo(there)) + " m"));
    }

    void anAddressIsSearchedFor()
    {
        openTown();
        const QGeoCoordinate there = placeBeside(250, 180);
        m_geocoder.body = "[" + found(there) + "," + found(placeBeside(900, 0)) + "]";
        QSignalSpy received(map(), SIGNAL(locationReceived(QVariant)));

        call("gotoAddress", QString());
        call("gotoAddress", "Main Street,Town,");

        QTRY_COMPARE(received.count(), 1);
        QCOMPARE(m_geocoder.asked.size(), 1);
        QVERIFY2(m_geocoder.asked[0].startsWith("/search?q=Main Street,Town,&"), qPrintable(m_geocoder.asked[0]));
        QVERIFY(seen().distanceTo(there) < 1);
        const auto* location = received[0][0].value<QObject*>();
        QVERIFY(location);
        QCOMPARE(location->property("address").value<QObject*>()->property("street").toString(),
                 QString("Main Street"));
    }

    void aSearchThatFailsIsTold()
    {
        QSignalSpy received(map(), SIGNAL(locationReceived(QVariant)));
        QSignalSpy status(map(), SIGNAL(geocodeModelStatusChanged(QVariant, QVariant)));
        const QVector3D camera = window().camera()->position();
        m_geocoder.status = "500 Internal Server Error";

        call("gotoAddress", "Main Street");

        constexpr int statusError = 3;
        QTRY_VERIFY(!status.isEmpty() && status.last()[0].toInt() == statusError);
        QVERIFY(status.last()[1].toInt() != 0);
        QCOMPARE(received.count(), 0);
        QCOMPARE(window().camera()->position(), camera);
        // The next one is not held up by it.
        m_geocoder.status = "200 OK";
        m_geocoder.body = "[" + found(placeBeside(100, 0)) + "]";
        call("gotoAddress", "Main Street");
        QTRY_COMPARE(received.count(), 1);
    }

    void aSearchThatFindsNothingMovesNothing()
    {
        QSignalSpy received(map(), SIGNAL(locationReceived(QVariant)));
        QSignalSpy status(map(), SIGNAL(geocodeModelStatusChanged(QVariant, QVariant)));
        const QVector3D camera = window().camera()->position();

        call("gotoAddress", "Nowhere");

        constexpr int statusReady = 1;
        QTRY_VERIFY(!status.isEmpty() && status.last()[0].toInt() == statusReady);
        QCOMPARE(received.count(), 0);
        QCOMPARE(window().camera()->position(), camera);
    }

    void theAddressUnderAPixelIsTold_data()
    {
        QTest::addColumn<bool>("shown");
        QTest::newRow("of the map") << true;
        QTest::newRow("with the map switched off") << false;
    }
    void theAddressUnderAPixelIsTold()
    {
        QFETCH(bool, shown);
        window().area()->setProperty("mapVisible", shown);
        lookAtGround({0, 0, 500}, 30, 40, 2000);
        m_geocoder.body = found(placeBeside(900, 0));
        QSignalSpy received(map(), SIGNAL(locationReceived(QVariant)));
        const QVector3D camera = window().camera()->position();
        const QGeoCoordinate before = centre();
        const QPointF pixel(200, 450);

        call("requestAddress", pixel);

        QTRY_COMPARE(received.count(), 1);
        QCOMPARE(window().camera()->position(), camera);
        QCOMPARE(centre(), before);
        QVERIFY(m_geocoder.asked[0].startsWith("/reverse?"));
        const QSizeF size = window().area()->size();
        const Place there = placeOf(View3d::Utils3d::pointScreenToWorldGround(
            float(pixel.x()), float(pixel.y()), window().camera(), size.width(), size.height()));
        const auto number = [this](const char* name) {
            const QRegularExpression form(QString("[?&]%1=([-0-9.]+)").arg(name));
            return form.match(m_geocoder.asked[0]).captured(1).toDouble();
        };
        // The service is asked with six digits.
        QVERIFY(std::abs(number("lat") - there.latitude) < 1e-4);
        QVERIFY(std::abs(number("lon") - there.longitude) < 1e-4);
    }

    void aMapOnItsOwnWayGoesWithoutTheScene()
    {
        const QVector3D camera = window().camera()->position();
        const QGeoCoordinate start = centre();
        const QGeoCoordinate there = placeBeside(5000, 70);
        const QGeoCoordinate further = placeBeside(9000, 10);
        QSignalSpy tied(projector(), &GdalGeoProjector::geoLocationChanged);
        QSignalSpy received(map(), SIGNAL(locationReceived(QVariant)));
        m_geocoder.body = found(further);
        map()->setProperty("navigationMode", true);

        call("gotoPosition", variant(there));

        QTRY_COMPARE(received.count(), 1);
        QVERIFY(m_geocoder.asked[0].startsWith("/reverse?"));
        QVERIFY(centre().distanceTo(there) < 0.01);
        m_geocoder.body = "[" + found(further) + "]";
        call("gotoAddress", "Elsewhere");
        QTRY_COMPARE(received.count(), 2);
        QVERIFY(centre().distanceTo(further) < 1);
        QCOMPARE(window().camera()->position(), camera);
        QCOMPARE(tied.count(), 0);
        map()->setProperty("navigationMode", false);
        QVERIFY(centre().distanceTo(start) < 0.5);
    }

    void aDragOnTheMapsOwnWayTiesNothing()
    {
        QSignalSpy tied(projector(), &GdalGeoProjector::geoLocationChanged);
        const QGeoCoordinate start = centre();
        window().controller()->setControlPlanes(View3d::CameraController::Map);
        map()->setProperty("navigationMode", true);

        window().drag({300, 300}, {380, 260});

        QVERIFY(centre().distanceTo(start) > 10);
        QCOMPARE(tied.count(), 0);
        map()->setProperty("navigationMode", false);
        QVERIFY(centre().distanceTo(start) < 0.5);
        // The next drag begins where the map is then, not where the first one began.
        const QGeoCoordinate tiedBefore = tiedAt();
        window().drag({300, 300}, {380, 260});
        QCOMPARE(tied.count(), 1);
        QVERIFY(std::abs(tiedAt().distanceTo(tiedBefore) - centre().distanceTo(start)) < 1);
    }

    void aDragOfTheMapThatASecondFingerTakesOverTiesTheScene_data()
    {
        QTest::addColumn<bool>("pinched");
        QTest::newRow("by a second finger") << true;
        QTest::newRow("by other planes") << false;
    }
    /** Its release is told to nobody. */
    void aDragOfTheMapThatASecondFingerTakesOverTiesTheScene()
    {
        QFETCH(bool, pinched);
        const QGeoCoordinate start = centre();
        const QGeoCoordinate tiedBefore = tiedAt();
        QSignalSpy tied(projector(), &GdalGeoProjector::geoLocationChanged);
        window().controller()->setControlPlanes(View3d::CameraController::Map);

        if (pinched) {
            Finger(window()).dragThenSpread({300, 300}, {380, 260}, 60);
        } else {
            window().press({300, 300});
            window().moveTo({380, 260});
            window().controller()->setControlPlanes(View3d::CameraController::All);
            window().release({380, 260});
        }

        QCOMPARE(tied.count(), 1);
        const double way = tiedAt().distanceTo(tiedBefore);
        QVERIFY(way > 10);
        if (!pinched)
            QVERIFY(std::abs(way - centre().distanceTo(start)) < 1);
        // The next drag begins where the map is then.
        window().controller()->setControlPlanes(View3d::CameraController::All);
        lookAtGround({0, 0, 0}, 0, 0, 2000);
        window().controller()->setControlPlanes(View3d::CameraController::Map);
        const QGeoCoordinate tiedThen = tiedAt();
        const QGeoCoordinate centreThen = centre();
        window().drag({300, 300}, {380, 260});
        QCOMPARE(tied.count(), 2);
        QVERIFY(std::abs(tiedAt().distanceTo(tiedThen) - centre().distanceTo(centreThen)) < 1);
    }

    void afterAProjectIsClosedTheViewStaysWhereThatWas_data()
    {
        QTest::addColumn<bool>("shown");
        QTest::newRow("map shown") << true;
        QTest::newRow("map switched off") << false;
    }
    void afterAProjectIsClosedTheViewStaysWhereThatWas()
    {
        QFETCH(bool, shown);
        window().area()->setProperty("mapVisible", shown);
        openTown();
        const QGeoCoordinate town = tiedAt();

        m_project->close();
        QTRY_VERIFY(projector()->initialized());
        rest();
        window().frames(5);

        QVERIFY(tiedAt().distanceTo(town) < 1);
        window().area()->setProperty("mapVisible", true);
        QVERIFY2(centre().distanceTo(town) < 1000, qPrintable(centre().toString()));
        const QGeoCoordinate there = placeBeside(300, 90);
        call("gotoPosition", variant(there));
        rest();
        QVERIFY(seen().distanceTo(there) < 1);
    }

    void aProjectWithoutAPlaceLeavesTheMapAlone()
    {
        const QGeoCoordinate before = centre();
        m_project = std::make_unique<TestProject>("EPSG:25832");

        m_project->activate();
        rest();
        lookAtGround({100, 0, 50}, 0, 0, 2000);

        // Its first object is to tie it.
        QVERIFY(!projector()->initialized());
        QVERIFY2(centre().distanceTo(before) < 1000, qPrintable(centre().toString()));
        const QGeoCoordinate there = placeBeside(300, 90);
        call("gotoPosition", variant(there));
        rest();
        QVERIFY(tiedAt().distanceTo(there) < 1);
        QVERIFY(seen().distanceTo(there) < 1);
    }

    void theTieTakesTheAltitudeIfItIsOne_data()
    {
        QTest::addColumn<QVariant>("altitude");
        QTest::addColumn<double>("expected");
        QTest::newRow("a number") << QVariant(612.5) << 612.5;
        QTest::newRow("no number") << QVariant(notANumber) << 0.0;
        QTest::newRow("none") << QVariant() << 0.0;
    }
    void theTieTakesTheAltitudeIfItIsOne()
    {
        QFETCH(QVariant, altitude);
        QFETCH(double, expected);
        projector()->deinit();

        call("initGeoProjector", variant(QGeoCoordinate(47.7, 10.4)), altitude);

        QVERIFY(tiedAt().distanceTo(QGeoCoordinate(47.7, 10.4)) < 0.05);
        QCOMPARE(projector()->getOriginY(), expected);
    }

    void withoutAPlaceTheTieIsWhereTheViewLooks_data()
    {
        QTest::addColumn<bool>("shown");
        QTest::addColumn<double>("tilt");
        QTest::newRow("map shown") << true << 20.0;
        QTest::newRow("map switched off") << false << 20.0;
        QTest::newRow("map hidden by the tilt") << true << 82.0;
    }
    void withoutAPlaceTheTieIsWhereTheViewLooks()
    {
        QFETCH(bool, shown);
        QFETCH(double, tilt);
        window().area()->setProperty("mapVisible", shown);
        lookAtGround({0, 0, 500}, tilt, 0, 2000);
        const Place middle = placeOf({0, 0, 500});

        call("resetGeoProjector", QVariant(), QVariant());
        rest();

        QVERIFY(tiedAt().distanceTo(QGeoCoordinate(middle.latitude, middle.longitude)) < 1);
    }

    void theTieWaitsForTheCameraToArrive()
    {
        const QGeoCoordinate before = tiedAt();
        QMetaObject::invokeMethod(window().camera(), "animatedTranslation", Q_ARG(QVariant, QVector3D(400, 0, 0)),
                                  Q_ARG(QVariant, QVariant()));

        call("resetGeoProjector", variant(QGeoCoordinate(47.7, 10.4)), QVariant());

        QCOMPARE(tiedAt(), before);
        rest();
        QVERIFY(tiedAt().distanceTo(QGeoCoordinate(47.7, 10.4)) < 0.05);
    }

    void aResetLooksAtTheTie()
    {
        lookAtGround({300, 0, -200}, 30, 60, 2500);

        emit projector()->mapResetRequest();
        rest();

        QVERIFY(window().camera()->viewCenter().length() < 0.5F);
        QVERIFY(std::abs(window().camera()->viewVector().length() - 2500) < 1);
        QVERIFY(centre().distanceTo(tiedAt()) < 1);
    }

    void aCameraThatMovesTheMapAloneLeavesItsCentre()
    {
        window().controller()->setControlPlanes(View3d::CameraController::Map);
        const QGeoCoordinate before = centre();

        window().camera()->setViewCenter({200, 0, 0});

        QCOMPARE(centre(), before);
        window().controller()->setControlPlanes(View3d::CameraController::All);
        window().camera()->setViewCenter({250, 0, 0});
        QVERIFY(centre().distanceTo(before) > 200);
    }

    void theCentreGoesNorthAndEast()
    {
        const QGeoCoordinate before = centre();

        invoke(qtMap(), "translateCenter", 100, 0);
        QVERIFY(std::abs(before.azimuthTo(centre())) < 0.1);
        QVERIFY(std::abs(before.distanceTo(centre()) - 100) < 0.1);
        const QGeoCoordinate north = centre();
        invoke(qtMap(), "translateCenter", 0, 100);
        QVERIFY(std::abs(north.azimuthTo(centre()) - 90) < 0.1);
        QVERIFY(std::abs(north.distanceTo(centre()) - 100) < 0.1);
        map()->metaObject()->invokeMethod(map(), "refresh");
        QVERIFY(centre().distanceTo(before) < 0.5);
    }

    void theReceiversPlaceIsKnownWithAFix()
    {
        const auto* ostel = qmlContext(map())->contextProperty("ostel").value<Viewer::Ostel*>();
        QVERIFY(ostel);
        auto* const device = ostel->system();
        const auto latitude = [this] { return map()->property("currentGpsLatitude"); };
        const auto longitude = [this] { return map()->property("currentGpsLongitude"); };
        device->setGpsEnabled(true);

        for (const char* fix : {"2D Fix", "3D Fix", "Estimated Fix"}) {
            device->gpsData()->set("No Fix", 47.1, 10.2);
            QVERIFY(!latitude().isValid() && !longitude().isValid());
            device->gpsData()->set(fix, 47.1, 10.2);
            QCOMPARE(latitude().toDouble(), 47.1);
            QCOMPARE(longitude().toDouble(), 10.2);
        }
        device->setGpsEnabled(false);

        QVERIFY(!latitude().isValid() && !longitude().isValid());
        QVERIFY(!call("isGpsWorking").toBool());
    }

    void whoMadeTheMapStandsOverTheSceneBesideTheControls()
    {
        auto* const area = window().area();
        area->setProperty("controlsVisible", true);
        auto* const notice = area->findChild<QQuickItem*>("mapNotice");
        QVERIFY(notice);
        for (const int width : {320, 400, 800}) {
            window().window()->resize(width, 600);
            QTRY_COMPARE(area->width(), double(width));
            window().frames(4);
            window().keep(QString("notice-%1").arg(width));

            const auto placeOf = [area](QQuickItem* item) {
                return item->mapRectToItem(area, {0, 0, item->width(), item->height()});
            };
            const QRectF place = placeOf(notice);
            QVERIFY(notice->isVisible());
            QVERIFY(QRectF(0, 0, width, 600).contains(place));
            for (const char* name : {"gridScaleInfo", "zoomOutButton"}) {
                auto* const other = area->findChild<QQuickItem*>(name);
                QVERIFY2(other && other->isVisible() && !place.intersects(placeOf(other)), name);
            }
            const auto* const words = notice->findChild<QQuickItem*>("mapNoticeText");
            QCOMPARE(words->property("text").toString(), QString::fromUtf8("\u00a9 ") + endpoints().copyright);
            QVERIFY(!words->property("truncated").toBool() && words->height() <= notice->height());
        }
        // What the scene draws lies below it.
        QCOMPARE(notice->parentItem(), area);
        const auto children = area->childItems();
        QVERIFY(children.indexOf(notice) > children.indexOf(area->property("sceneLoader").value<QQuickItem*>()));
        window().area()->setProperty("mapVisible", false);
        QVERIFY(!notice->isVisible());
        area->setProperty("controlsVisible", false);
    }

    void thePlugInIsToldItsEndpoints()
    {
        auto* const plugin = qtMap()->property("plugin").value<QObject*>();
        const QQmlListReference list(plugin, "parameters");
        QVariantMap told;
        for (int i = 0; i < list.count(); ++i)
            told.insert(list.at(i)->property("name").toString(), list.at(i)->property("value"));

        QCOMPARE(plugin->property("name").toString(), QString("osm"));
        QCOMPARE(told["minimumFieldOfView"].toDouble(), 0.01);
        const QHash<QString, QString> texts {
            {"osm.useragent", "SightlogII"},
            {"osm.places.host", m_geocoder.host()},
            {"osm.geocoding.host", m_geocoder.host()},
            {"osm.mapping.cache.disk.cost_strategy", "bytesize"},
            {"osm.mapping.cache.disk.size", "200000000"},
            {"osm.mapping.cache.directory", endpoints().cacheDirectory},
            {"osm.mapping.providersrepository.disabled", "true"},
            {"osm.mapping.providersrepository.address", endpoints().tilesHost + "/osm/5.6/"},
        };
        for (auto text = texts.begin(); text != texts.end(); ++text)
            QVERIFY2(told[text.key()].toString() == text.value(), qPrintable(text.key()));
        QVERIFY(!qtMap()->property("gesture").value<QObject*>()->property("enabled").toBool());
    }

    void aTileThatDoesNotExistIsAskedForOnce()
    {
        waitForTiles();
        m_noTiles = true;
        const int before = endpoints().server.asked();

        tie({11.5, 48.2});
        waitForTiles();
        const int asked = endpoints().server.asked();
        QVERIFY(asked > before);
        // After an error the plug-in tries again within half a second.
        QTest::qWait(1000);

        QCOMPARE(endpoints().server.asked(), asked);
        QVERIFY(map()->property("shown").toBool());
        m_noTiles = false;
    }

    void aMapThatIsSwitchedOffAsksForNoTiles()
    {
        waitForTiles();
        window().area()->setProperty("mapVisible", false);
        const int asked = endpoints().server.asked();

        lookAtGround({5000, 0, 3000}, 30, 40, 3000);
        waitForTiles();

        QCOMPARE(endpoints().server.asked(), asked);
    }

private:
    static GdalGeoProjector* projector() { return GdalGeoProjector::instance(); }
    static QGeoCoordinate tiedAt() { return {projector()->latit(), projector()->longit()}; }
    static QString setting(const char* key)
    {
        return Base::CApplicationSettings::instance().getCustomSetting(key, "unset");
    }
    static QVariant invoke(QObject* object, const char* function, const QVariant& a, const QVariant& b)
    {
        QVariant result;
        QMetaObject::invokeMethod(object, function, Q_RETURN_ARG(QVariant, result), Q_ARG(QVariant, a),
                                  Q_ARG(QVariant, b));
        return result;
    }
    void call(const char* function, const QVariant& a, const QVariant& b) { invoke(map(), function, a, b); }
    void call(const char* function, const QVariant& argument)
    {
        QVERIFY(QMetaObject::invokeMethod(map(), function, Q_ARG(QVariant, argument)));
    }
    QVariant call(const char* function)
    {
        QVariant result;
        QMetaObject::invokeMethod(map(), function, Q_RETURN_ARG(QVariant, result));
        return result;
    }
    /** The place that the middle of the view shows. */
    QGeoCoordinate seen()
    {
        QVariant ground;
        QMetaObject::invokeMethod(window().camera(), "groundCenter", Q_RETURN_ARG(QVariant, ground));
        const Place place = placeOf(ground.value<QVector3D>());
        return {place.latitude, place.longitude};
    }
    QGeoCoordinate placeBeside(double metres, double azimuth) { return centre().atDistanceAndAzimuth(metres, azimuth); }
    static QByteArray found(const QGeoCoordinate& place)
    {
        return StandInGeocoder::hit(QString::number(place.latitude(), 'f', 8),
                                    QString::number(place.longitude(), 'f', 8), "Main Street");
    }
    void openTown()
    {
        m_project = std::make_unique<TestProject>("EPSG:25832");
        m_project->addNode("A", "POINT ZM(600000 5280000 0 16)");
        m_project->activate();
        QTRY_VERIFY(window().root()->sceneHasNodesWithPosition());
        rest();
        lookAtGround({0, 0, 0}, 0, 0, 2000);
    }

    StandInGeocoder m_geocoder;
    QTemporaryDir m_settings;
    std::unique_ptr<TestProject> m_project;
    QGeoCoordinate m_firstTie;
    QGeoCoordinate m_firstCentre;
    bool m_noTiles = false;
};

KX_SCENE_TEST_MAIN(tst_MapPlaces)
#include "tst_MapPlaces.moc"
