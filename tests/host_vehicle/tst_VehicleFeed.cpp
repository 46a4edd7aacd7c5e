#include "host/vehicle/VehicleFeed.h"

#include "measurement/SystemControlProxy.h"
#include "scene/GlobalNav.h"

#include <QSignalSpy>
#include <QtTest>

using namespace Torvik::Vehicle;
using Torvik::View3d::GlobalNav;
using Torvik::View3d::SystemControlProxy;

class tst_VehicleFeed : public QObject {
    Q_OBJECT

private slots:
    void init();
    void theCounterReachesTheView();
    void withoutRealTimeTheSensorIsNotTold();
    void inRealTimeTheSensorIsToldBehindTheCounter();
    void aReadingWithoutSensorMovesTheCounterOnly();
    void onlyAFurtherCounterComesWithAPlace();
    void goingBackTellsNoPlaces();
    void aNewMeasurementTellsPlacesFromItsBegin();
    void measuringIsTheViewsRealTime();
};

void tst_VehicleFeed::init()
{
    GlobalNav::instance()->setRealTimeEnabled(false);
    SystemControlProxy::instance().setSectionDistanceCounter(0);
}

void tst_VehicleFeed::theCounterReachesTheView()
{
    VehicleFeed feed;
    QSignalSpy changed(&SystemControlProxy::instance(), &SystemControlProxy::sectionDistanceCounterChanged);

    feed.take({1, 2.5, std::nullopt});
    feed.take({2, 2.5, std::nullopt});

    QCOMPARE(SystemControlProxy::instance().sectionDistanceCounter(), 2.5F);
    QCOMPARE(changed.size(), 1);
}

void tst_VehicleFeed::withoutRealTimeTheSensorIsNotTold()
{
    VehicleFeed feed;
    QSignalSpy told(&SystemControlProxy::instance(), &SystemControlProxy::latestCameraSensorPositionChanged);

    feed.take({1, 2.5, SensorPlace {1, 2, 3}});

    QVERIFY(told.isEmpty());
}

void tst_VehicleFeed::inRealTimeTheSensorIsToldBehindTheCounter()
{
    VehicleFeed feed;
    feed.setMeasuring(true);
    float counterThen = 0;
    Torvik::View3d::Vector3D<double> position;
    float distance = 0;
    connect(&SystemControlProxy::instance(), &SystemControlProxy::latestCameraSensorPositionChanged, &feed,
            [&](const Torvik::View3d::Vector3D<double>& told, float toldDistance) {
                counterThen = SystemControlProxy::instance().sectionDistanceCounter();
                position = told;
                distance = toldDistance;
            });

    feed.take({1, 2.5, SensorPlace {1, 2, 3}});

    QCOMPARE(counterThen, 2.5F);
    QCOMPARE(distance, 2.5F);
    // Without a pipe the frame is the scene's: west, south, up.
    QCOMPARE(position.toQVector3D(), QVector3D(-1, -2, 3));
}

void tst_VehicleFeed::aReadingWithoutSensorMovesTheCounterOnly()
{
    VehicleFeed feed;
    feed.setMeasuring(true);
    QSignalSpy told(&SystemControlProxy::instance(), &SystemControlProxy::latestCameraSensorPositionChanged);

    feed.take({1, 3.5, std::nullopt});

    QCOMPARE(SystemControlProxy::instance().sectionDistanceCounter(), 3.5F);
    QVERIFY(told.isEmpty());
}

void tst_VehicleFeed::onlyAFurtherCounterComesWithAPlace()
{
    VehicleFeed feed;
    feed.setMeasuring(true);
    QSignalSpy told(&SystemControlProxy::instance(), &SystemControlProxy::latestCameraSensorPositionChanged);

    for (double sensor : {5.001, 5.0, 4.999})
        feed.take({1, 5.0, SensorPlace {0, sensor, 0}});
    QCOMPARE(told.size(), 1);
    // The same centimetre still, then the next but one.
    feed.take({2, 5.004, SensorPlace {0, 5, 0}});
    QCOMPARE(told.size(), 1);
    feed.take({3, 5.02, SensorPlace {0, 5.02, 0}});

    QCOMPARE(told.size(), 2);
    QCOMPARE(told.last().last().toFloat(), 5.02F);
    QCOMPARE(SystemControlProxy::instance().sectionDistanceCounter(), 5.02F);
}

void tst_VehicleFeed::goingBackTellsNoPlaces()
{
    VehicleFeed feed;
    feed.setMeasuring(true);
    QSignalSpy told(&SystemControlProxy::instance(), &SystemControlProxy::latestCameraSensorPositionChanged);

    for (double counter : {5.0, 4.99, 5.0, 4.99, 2.0, 3.0, 5.0})
        feed.take({1, counter, SensorPlace {0, counter, 0}});
    QCOMPARE(told.size(), 1);
    QCOMPARE(SystemControlProxy::instance().sectionDistanceCounter(), 5.0F);
    feed.take({2, 5.5, SensorPlace {0, 5.5, 0}});

    QCOMPARE(told.size(), 2);
}

void tst_VehicleFeed::aNewMeasurementTellsPlacesFromItsBegin()
{
    VehicleFeed feed;
    feed.setMeasuring(true);
    QSignalSpy told(&SystemControlProxy::instance(), &SystemControlProxy::latestCameraSensorPositionChanged);
    feed.take({1, 5.0, SensorPlace {0, 5, 0}});

    feed.setMeasuring(false);
    feed.setMeasuring(true);
    feed.take({2, 2.0, SensorPlace {0, 2, 0}});

    QCOMPARE(told.size(), 2);
    QCOMPARE(told.last().last().toFloat(), 2.0F);
}

void tst_VehicleFeed::measuringIsTheViewsRealTime()
{
    VehicleFeed feed;

    QVERIFY(!feed.isMeasuring());
    feed.setMeasuring(true);
    QVERIFY(GlobalNav::instance()->realTimeEnabled());
    GlobalNav::instance()->setRealTimeEnabled(false);
    QVERIFY(!feed.isMeasuring());
}

QTEST_GUILESS_MAIN(tst_VehicleFeed)
#include "tst_VehicleFeed.moc"
