#include "host/app/ViewerController.h"
#include "scene/GlobalNav.h"
#include "view/ViewerScreen.h"

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

private:
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

QTEST_MAIN(tst_VehicleBar)
#include "tst_VehicleBar.moc"
