#include "host/modules/GpsSimulation.h"
#include "host/modules/Ostel.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace Torvik::Viewer;

/** The receiver of satellites that the application makes believe. */
class tst_Gps : public QObject {
    Q_OBJECT

private slots:
    void aTrackIsRead()
    {
        const GpsTrack track =
            GpsTrack::parse("time,latitude,longitude,status\r\n# a walk\r\n\r\n"
                            "0,47.5,10.25\r\n1.5, 47.6 ,10.3,2D\r\n3,0,0,No Fix\r\n4,-90,180,estimated fix");
        QCOMPARE(track.malformedLines, QVector<int>());
        QCOMPARE(track.fixes.size(), 4);
        QCOMPARE(track.fixes[0].status, QString("3D Fix"));
        QCOMPARE(track.fixes[0].latitude, 47.5);
        QCOMPARE(track.fixes[0].longitude, 10.25);
        QCOMPARE(track.fixes[1].time, 1.5);
        QCOMPARE(track.fixes[1].latitude, 47.6);
        QCOMPARE(track.fixes[1].status, QString("2D Fix"));
        QCOMPARE(track.fixes[2].status, QString("No Fix"));
        QCOMPARE(track.fixes[3].status, QString("Estimated Fix"));
        QCOMPARE(track.duration(), 4.0);
    }

    void aMalformedLineIsCountedAndTheRestRead()
    {
        const GpsTrack track =
            GpsTrack::parse("0,47,10\n1,91,10\n2,47,181\n3,47\nx,47,10\n4,47,10,sunny\n3,nan,10\n5,48,11\n4,1,1");
        QCOMPARE(track.fixes.size(), 2);
        QCOMPARE(track.malformedLines, QVector<int>({2, 3, 4, 5, 6, 7, 9}));
        QVERIFY(GpsTrack::parse("").fixes.isEmpty());
        QCOMPARE(GpsTrack::parse("7,x,y\n").malformedLines, QVector<int>({1}));
        const GpsTrack withoutATime = GpsTrack::parse(",48,11\n0,48,11");
        QCOMPARE(withoutATime.fixes.size(), 1);
        QCOMPARE(withoutATime.malformedLines, QVector<int>({1}));
    }

    void theFixOfATime()
    {
        const GpsTrack track = GpsTrack::parse("1,10,0\n2,20,0\n4,40,0");
        QCOMPARE(track.at(0.0).latitude, 10.0);
        QCOMPARE(track.at(1.0).latitude, 10.0);
        QCOMPARE(track.at(1.999).latitude, 10.0);
        QCOMPARE(track.at(2.0).latitude, 20.0);
        QCOMPARE(track.at(100.0).latitude, 40.0);
    }

    void aPlaceIsChosen()
    {
        QVERIFY(!GpsChoice::parse("here").valid);
        QVERIFY(!GpsChoice::parse("47").valid);
        const GpsChoice off = GpsChoice::parse("off");
        QVERIFY(off.valid && !off.enabled);
        const GpsChoice none = GpsChoice::parse("none");
        QVERIFY(none.valid && none.enabled);
        QCOMPARE(none.fix.status, QString("No Fix"));
        const GpsChoice flat = GpsChoice::parse("47.5,-10.25,2D");
        QVERIFY(flat.valid && flat.enabled);
        QCOMPARE(flat.fix.status, QString("2D Fix"));
        QCOMPARE(flat.fix.longitude, -10.25);
    }

    void aGpxFileIsATrack()
    {
        const GpsTrack track =
            GpsTrack::parse("<?xml version='1.0'?>\n<gpx xmlns='http://www.topografix.com/GPX/1/1'><trk><trkseg>\n"
                            "<trkpt lat='47.5' lon='10.25'><ele>700</ele><time>2026-05-01T10:00:00Z</time></trkpt>\n"
                            "<trkpt lat='47.6' lon='10.3'><time>2026-05-01T10:00:02.500Z</time><fix>2d</fix></trkpt>\n"
                            "<trkpt lat='91' lon='10.3'><time>2026-05-01T10:00:03Z</time></trkpt>\n"
                            "<trkpt lat='47.7' lon='10.4'><time>2026-05-01T10:00:04Z</time><fix>none</fix></trkpt>\n"
                            "<trkpt lat='1' lon='1'><time>2026-05-01T10:00:01Z</time></trkpt>\n</trkseg></trk></gpx>");
        QCOMPARE(track.fixes.size(), 3);
        QCOMPARE(track.malformedLines, QVector<int>({5, 7}));
        QCOMPARE(track.fixes[0].time, 0.0);
        QCOMPARE(track.fixes[0].status, QString("3D Fix"));
        QCOMPARE(track.fixes[1].time, 2.5);
        QCOMPARE(track.fixes[1].latitude, 47.6);
        QCOMPARE(track.fixes[1].longitude, 10.3);
        QCOMPARE(track.fixes[1].status, QString("2D Fix"));
        QCOMPARE(track.fixes[2].status, QString("No Fix"));
    }

    void aGpxFileWithoutTimesGoesOnEverySecond()
    {
        const GpsTrack track = GpsTrack::parse("<gpx><trk><trkseg><trkpt lat='1' lon='2'/><trkpt lat='2' lon='2'/>"
                                               "<trkpt lat='3' lon='2'/></trkseg></trk></gpx>");
        QCOMPARE(track.duration(), 2.0);
        QCOMPARE(track.at(1.5).latitude, 2.0);
        QCOMPARE(GpsTrack::parse("<gpx><trk>").malformedLines.size(), 1);
    }

    void aFixWithoutAPlaceWaitsForOne()
    {
        DeviceSystem system;
        GpsSimulation gps(system);
        QCOMPARE(gps.choose("2d"), QString());
        QVERIFY(gps.isChosen() && system.gpsEnabled());
        QCOMPARE(system.gpsData()->status(), QString("No Fix"));

        gps.setPlace(53.5, 10.5);
        QCOMPARE(system.gpsData()->status(), QString("2D Fix"));
        QCOMPARE(system.gpsData()->latitude(), 53.5);
        gps.choose("3d");
        gps.setPlace(53.5, 10.5);
        QCOMPARE(system.gpsData()->status(), QString("3D Fix"));

        // Who stands somewhere stays there.
        gps.choose("1,2");
        gps.setPlace(53.5, 10.5);
        QCOMPARE(system.gpsData()->latitude(), 1.0);
    }

    void theDeviceStandsAtAPlace()
    {
        DeviceSystem system;
        QVERIFY(!system.gpsEnabled());
        QCOMPARE(system.gpsData()->status(), QString("No Fix"));
        GpsSimulation gps(system);
        QSignalSpy moved(system.gpsData(), &GpsData::changed);

        QCOMPARE(gps.choose("47.5,10.25"), QString());
        QVERIFY(system.gpsEnabled());
        QCOMPARE(system.gpsData()->status(), QString("3D Fix"));
        QCOMPARE(system.gpsData()->latitude(), 47.5);
        QCOMPARE(system.gpsData()->longitude(), 10.25);
        QCOMPARE(moved.count(), 1);

        QCOMPARE(gps.choose("off"), QString());
        QVERIFY(!system.gpsEnabled());
    }

    void theDeviceWalksAndBeginsAgain()
    {
        DeviceSystem system;
        GpsSimulation gps(system);
        gps.walk(GpsTrack::parse("0,10,0\n0.3,20,0\n0.9,30,0"));
        QCOMPARE(system.gpsData()->latitude(), 10.0);
        QTRY_COMPARE(system.gpsData()->latitude(), 20.0);
        QTRY_COMPARE(system.gpsData()->latitude(), 10.0);
        gps.choose("1,2");
        QTest::qWait(450);
        QCOMPARE(system.gpsData()->latitude(), 1.0);
    }

    void whatCannotBeReadIsTold()
    {
        DeviceSystem system;
        GpsSimulation gps(system);
        QTemporaryDir folder;
        const auto write = [&folder](const QString& name, const QByteArray& text) {
            QFile file(folder.filePath(name));
            file.open(QIODevice::WriteOnly);
            file.write(text);
            return file.fileName();
        };
        QVERIFY(gps.choose(folder.filePath("missing.csv")).contains("missing.csv"));
        QVERIFY(!gps.isChosen());
        QVERIFY(gps.choose(write("empty.csv", "hello")).contains("holds no point"));
        QVERIFY(!system.gpsEnabled());
        QVERIFY(gps.choose(write("half.csv", "0,1,2\nx\n1,2,3\n")).contains("line 2"));
        QVERIFY(system.gpsEnabled());
        QCOMPARE(gps.choose(write("good.csv", "0,1,2\n1,2,3\n")), QString());
    }
};

QTEST_GUILESS_MAIN(tst_Gps)
#include "tst_Gps.moc"
