#include "common/SceneTest.h"
#include "common/TestProject.h"
#include "interaction/CameraController.h"
#include "view/FakeViewer.h"
#include "view/MapView.h"
#include "view/StandInGeocoder.h"
#include "view/ViewerScreen.h"

#include <memory>

using namespace Torvik;
using Kx::Test::FakeViewer;
using Kx::Test::MarkedTiles;
using Kx::Test::PaintedEndpoints;
using Kx::Test::QmlWarnings;
using Kx::Test::StandInGeocoder;
using Kx::Test::TestProject;
using Kx::Test::ViewerScreen;
using View3d::CameraController;
using View3d::GdalGeoProjector;
using View3d::SceneRoot;

/** What the application's window offers of a map. */
class tst_MapTools : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_endpoints.geocodingHost = m_geocoder.host();
        m_screen = std::make_unique<ViewerScreen>(m_viewer, QSize(1000, 700), [this](QQmlContext& context) {
            context.setContextProperty("mapEndpoints", &m_endpoints);
        });
        QTRY_VERIFY(map() && map()->property("shown").toBool());
    }
    void cleanup()
    {
        while (m_screen->visible("messageBox"))
            m_screen->evaluate("MessageBox.answer(false)");
        if (m_screen->visible("inputScreen"))
            m_screen->click("cancelButton");
        m_endpoints.geocodingHost = m_geocoder.host();
        m_geocoder.status = "200 OK";
        m_geocoder.body = "[]";
        controller()->setControlPlanes(CameraController::All);
    }
    void cleanupTestCase() { m_screen.reset(); }

    void anAddressThatIsNotFoundIsTold_data()
    {
        QTest::addColumn<QByteArray>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("told");
        QTest::newRow("no hit") << QByteArray("200 OK") << QByteArray("[]") << "Nothing is found under this address.";
        QTest::newRow("an error") << QByteArray("500 Internal Server Error") << QByteArray()
                                  << "The service at %1 cannot be reached, or answers with an error.";
        QTest::newRow("no answer of its kind")
            << QByteArray("200 OK") << QByteArray("Sorry") << "Nothing is found under this address.";
    }
    void anAddressThatIsNotFoundIsTold()
    {
        QFETCH(QByteArray, status);
        QFETCH(QByteArray, body);
        QFETCH(QString, told);
        m_geocoder.status = status;
        m_geocoder.body = body;
        const QVector3D camera = m_screen->camera()->position();

        choose("goToMenuButton", "editAddressButton");
        QTRY_VERIFY(m_screen->visible("inputScreen"));
        m_screen->item("inputField0Input")->setProperty("text", "Main Street");
        m_screen->click("acceptButton");

        QTRY_VERIFY(m_screen->visible("messageBox"));
        const QString expected = told.contains("%1") ? told.arg(m_geocoder.host()) : told;
        QCOMPARE(m_screen->text("messageText"), expected);
        QCOMPARE(m_screen->evaluate("MessageBox.boxes.length").toInt(), 1);
        QCOMPARE(m_screen->camera()->position(), camera);
        m_screen->click("yesButton");
        QVERIFY(!m_screen->visible("messageBox"));
    }

    void anAddressThatIsFoundIsGoneToWithoutAWord()
    {
        m_geocoder.body = "[" + StandInGeocoder::hit("47.7", "10.4", "Main Street") + "]";

        choose("goToMenuButton", "goToAddressButton");

        QTRY_VERIFY(std::abs(GdalGeoProjector::instance()->latit() - 47.7) < 1e-4);
        m_screen->settle();
        QVERIFY(!m_screen->visible("messageBox"));
    }

    void withoutAServiceItIsToldWhatIsMissing()
    {
        m_endpoints.geocodingHost.clear();

        choose("goToMenuButton", "editAddressButton");

        QTRY_VERIFY(m_screen->visible("messageBox"));
        QVERIFY(m_screen->text("messageText").contains("MAPGEOCODING"));
        QVERIFY(!m_screen->visible("inputScreen"));
    }

    void anEmptySceneIsTiedWhereTheMapIsDraggedTo()
    {
        const QGeoCoordinate before = tiedAt();

        shift();
        QVERIFY(!m_screen->visible("messageBox"));
        QCOMPARE(controller()->controlPlanes(), CameraController::Map);
        m_screen->drag({500, 300}, {580, 340});
        shift();

        QCOMPARE(controller()->controlPlanes(), CameraController::All);
        QVERIFY(tiedAt().distanceTo(before) > 10);
    }

    void aNetworkIsShiftedOnlyAfterAYes()
    {
        TestProject project("EPSG:25832");
        const auto node = project.addNode("A", "POINT ZM(600000 5280000 0 16)");
        project.activate();
        QTRY_VERIFY(SceneRoot::instance()->sceneHasNodesWithPosition());
        m_screen->settle();
        const QVector3D place = m_screen->camera()->position();
        const QString stored = node->readValue("OBJ_Shape_WKT").toString();

        shift();
        QTRY_VERIFY(m_screen->visible("messageBox"));
        m_screen->click("noButton");
        QCOMPARE(controller()->controlPlanes(), CameraController::All);
        shift();
        m_screen->click("yesButton");
        QCOMPARE(controller()->controlPlanes(), CameraController::Map);
        const QGeoCoordinate before = tiedAt();
        m_screen->drag({500, 300}, {580, 340});

        QVERIFY(tiedAt().distanceTo(before) > 10);
        QCOMPARE(m_screen->camera()->position(), place);
        QTRY_VERIFY_WITH_TIMEOUT(node->readValue("OBJ_Shape_WKT").toString() != stored, 5000);
        // It ends with the project.
        project.close();
        QTRY_COMPARE(controller()->controlPlanes(), CameraController::All);
    }

    void withoutTheMapInSightNothingIsShifted()
    {
        shift();
        QCOMPARE(controller()->controlPlanes(), CameraController::Map);

        area()->setProperty("mapVisible", false);

        QCOMPARE(controller()->controlPlanes(), CameraController::All);
        m_screen->click("viewMenuButton");
        QVERIFY(!m_screen->enabled("shiftMapButton"));
        m_screen->click("viewMenuButton");
        area()->setProperty("mapVisible", true);
    }

    void nothingWarnedOnTheWay() { QCOMPARE(QmlWarnings::list(), QStringList()); }

private:
    QQuickItem* area() const { return m_screen->window()->property("window3d").value<QQuickItem*>(); }
    QObject* map() const { return area()->property("map").value<QObject*>(); }
    CameraController* controller() const
    {
        return m_screen->scene()->property("cameraController").value<CameraController*>();
    }
    static QGeoCoordinate tiedAt()
    {
        return {GdalGeoProjector::instance()->latit(), GdalGeoProjector::instance()->longit()};
    }
    void shift() { choose("viewMenuButton", "shiftMapButton"); }
    void choose(const QString& menu, const QString& command)
    {
        m_screen->click(menu);
        m_screen->waitFrames(2);
        m_screen->click(command);
        m_screen->waitFrames(2);
    }

    QmlWarnings m_warnings;
    StandInGeocoder m_geocoder;
    PaintedEndpoints m_endpoints {
        [](const Map::TileKey& key, const Map::TileServer::Answer& answer) { answer(MarkedTiles({}, 9, 17)(key)); }};
    FakeViewer m_viewer;
    std::unique_ptr<ViewerScreen> m_screen;
};

KX_SCENE_TEST_MAIN(tst_MapTools)
#include "tst_MapTools.moc"
