#include "common/SceneTest.h"
#include "common/TestProject.h"
#include "domain/boundary/AppState.h"
#include "host/app/ViewerController.h"
#include "scene/GlobalNav.h"
#include "view/ViewerScreen.h"

#include <QTcpSocket>

#include <memory>

using namespace Torvik;
using Kx::Test::ViewerScreen;

/** The bar of the vehicle in the window, with a finger. */
class tst_VehicleBar : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void withoutAVehicleThereIsNoBar();
    void aRecordingIsPlayedAndPaused();
    void aTapChoosesTheSpeed();
    void theSliderFollowsAndGoesBack();
    void aTapMeasures();
    void aConnectionTellsOfItself();
    void linesThatAreNoReadingsAreCounted();
    void whatKeepsAMeasurementFromBeingStoredIsSaid();

private:
    void send(const QByteArray& lines)
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, m_viewer.vehicle()->server().port());
        QVERIFY(socket.waitForConnected());
        socket.write(lines);
        QVERIFY(socket.waitForBytesWritten());
        // What has been sent is read before the end of the connection is heard of.
        QTest::qWait(50);
    }

    Viewer::ViewerController m_viewer;
    std::unique_ptr<ViewerScreen> m_screen;
};

void tst_VehicleBar::initTestCase()
{
    m_screen = std::make_unique<ViewerScreen>(m_viewer);
}

void tst_VehicleBar::withoutAVehicleThereIsNoBar()
{
    QVERIFY(!m_screen->visible("vehicleBar"));

    m_viewer.vehicle()->load({{0, 0, std::nullopt}, {60, 6, std::nullopt}, {90, 9, std::nullopt}});

    QTRY_VERIFY(m_screen->visible("vehicleBar"));
    m_screen->waitFrames(3);
    QVERIFY(m_screen->visible("playButton"));
    QVERIFY(!m_screen->visible("connectionText"));
    QCOMPARE(m_screen->text("timeText"), QString("0:00 / 1:30"));
}

void tst_VehicleBar::aRecordingIsPlayedAndPaused()
{
    m_screen->click("playButton");
    QTRY_VERIFY(m_viewer.vehicle()->isPlaying());
    QTRY_COMPARE(m_screen->text("playButton"), QString("Pause"));

    m_screen->click("playButton");

    QTRY_VERIFY(!m_viewer.vehicle()->isPlaying());
    QCOMPARE(m_screen->text("playButton"), QString("Play"));
}

void tst_VehicleBar::aTapChoosesTheSpeed()
{
    QVERIFY(m_screen->checked("normalButton"));

    m_screen->click("tenfoldButton");

    QTRY_COMPARE(m_viewer.vehicle()->speed(), 10.0);
    QVERIFY(m_screen->checked("tenfoldButton"));
    QVERIFY(!m_screen->checked("normalButton"));
    m_screen->click("fastestButton");
    QTRY_COMPARE(m_viewer.vehicle()->speed(), 0.0);
}

void tst_VehicleBar::theSliderFollowsAndGoesBack()
{
    m_viewer.vehicle()->seek(75);

    QQuickItem* const slider = m_screen->item("timeSlider");
    QCOMPARE(slider->property("value").toDouble(), 75.0);
    QCOMPARE(m_viewer.vehicle()->counter(), 6.0);
    QCOMPARE(m_screen->text("timeText"), QString("1:15 / 1:30"));
    QVERIFY(m_screen->text("counterText").startsWith(QLocale().toString(6.0, 'f', 2)));
    const QPointF left = slider->mapToScene({slider->width() * 0.1, slider->height() / 2});
    QTest::mouseClick(m_screen->window(), Qt::LeftButton, {}, left.toPoint());
    QTRY_VERIFY(m_viewer.vehicle()->position() < 20);
    QCOMPARE(m_viewer.vehicle()->counter(), 0.0);
    // The hand has not cut it off from the recording.
    m_viewer.vehicle()->seek(30);
    QCOMPARE(slider->property("value").toDouble(), 30.0);
}

void tst_VehicleBar::aTapMeasures()
{
    m_screen->click("measureButton");
    QTRY_VERIFY(View3d::GlobalNav::instance()->realTimeEnabled());
    QVERIFY(m_screen->checked("measureButton"));

    View3d::GlobalNav::instance()->setRealTimeEnabled(false);

    QVERIFY(!m_screen->checked("measureButton"));
}

void tst_VehicleBar::aConnectionTellsOfItself()
{
    m_viewer.vehicle()->load({});
    QVERIFY(!m_screen->visible("vehicleBar"));

    QCOMPARE(m_viewer.vehicle()->listen(QHostAddress::LocalHost, 0), QString());

    QTRY_VERIFY(m_screen->visible("connectionText"));
    QVERIFY(!m_screen->visible("playButton"));
    QVERIFY2(m_screen->text("connectionText").contains("0 readings"), qPrintable(m_screen->text("connectionText")));
}

void tst_VehicleBar::linesThatAreNoReadingsAreCounted()
{
    const auto text = [this] { return m_screen->text("connectionText"); };

    send("0,0.5\n");
    QTRY_VERIFY2(text().contains("1 readings") && !text().contains("malformed"), qPrintable(text()));
    send("once upon a time\n1,1\n");

    QTRY_VERIFY2(text().contains("2 readings, 1 malformed"), qPrintable(text()));
}

void tst_VehicleBar::whatKeepsAMeasurementFromBeingStoredIsSaid()
{
    using namespace Torvik::Database;
    constexpr int longEnoughMs = 15000;
    Kx::Test::TestProject project;
    const auto inspection = project.addInspection(project.addSection("S", {}, {}));
    const QString id = inspection->id();
    project.addNode("A", "POINT ZM(400000 5600000 100 16)");
    project.close();
    QSignalSpy opened(&m_viewer, &Viewer::ViewerController::opened);
    m_viewer.openFolder(project.path());
    QTRY_COMPARE(opened.count(), 1);
    AppState::instance().setActiveInspection(m_viewer.inspectionOfKey(id));
    m_screen->click("measureButton");
    QTRY_VERIFY(m_viewer.vehicle()->isMeasuring());
    const auto stored = [&] { return project.stored("SECMP", "'1'", "1", "COUNT(*)").toInt(); };
    send("0,0.5,0,0.5,0\n1,1,0,1,0\n");
    QTRY_COMPARE(stored(), 3);

    StoreStatus status;
    const auto other =
        SqlConnection::open(ProjectStore::databaseFile(project.path()), SqlConnection::ReadWrite, status);
    auto lock = std::make_unique<SqlTransaction>(*other);
    QVERIFY(lock->begun());
    send("2,1.5,0,1.5,0\n3,2,0,2,0\n");
    QTRY_VERIFY_WITH_TIMEOUT(m_screen->visible("errorBanner"), longEnoughMs);
    QVERIFY2(m_viewer.errorText().contains("locked by another program"), qPrintable(m_viewer.errorText()));
    QCOMPARE(m_viewer.errorText().count('\n'), 0);
    // The view goes on meanwhile.
    send("4,2.5,0,2.5,0\n");
    QTRY_COMPARE(m_viewer.vehicle()->counter(), 2.5);
    QCOMPARE(stored(), 3);
    lock.reset();

    QTRY_VERIFY_WITH_TIMEOUT(!m_screen->visible("errorBanner"), longEnoughMs);
    QTRY_COMPARE(stored(), 6);
    m_viewer.vehicle()->stop();
    m_viewer.closeProject();
}

KX_SCENE_TEST_MAIN(tst_VehicleBar)
#include "tst_VehicleBar.moc"
