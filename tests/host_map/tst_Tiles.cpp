#include "domain/boundary/BaseServices.h"
#include "host/domain/HostSettings.h"
#include "host/map/MapEndpoints.h"
#include "host/map/TileAddress.h"
#include "host/map/TileFolder.h"
#include "host/map/TileServer.h"

#include <QBuffer>
#include <QImage>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

using namespace Torvik::Map;

namespace {

/** Four quarters: red, green over blue, yellow. */
QByteArray quartered()
{
    QImage image(256, 256, QImage::Format_RGB32);
    for (int y = 0; y < 256; ++y) {
        for (int x = 0; x < 256; ++x)
            image.setPixelColor(x, y, y < 128 ? (x < 128 ? Qt::red : Qt::green) : (x < 128 ? Qt::blue : Qt::yellow));
    }
    QBuffer png;
    png.open(QIODevice::WriteOnly);
    image.save(&png, "PNG");
    return png.data();
}

void write(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

} // namespace

/** Where the map's tiles come from: a folder, an address, and the server that hands them to the map. */
class tst_Tiles : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Torvik::Base::HostSettings::setSettingsFile(m_settings.filePath("settings.ini")); }

    void aPathEndsInTheTilesKey_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("isKey");
        QTest::newRow("plain") << "/3/4/5.png" << true;
        QTest::newRow("deeper") << "/a/b/3/4/5.jpg" << true;
        QTest::newRow("no ending") << "/3/4/5" << true;
        QTest::newRow("outside the world") << "/3/8/5.png" << false;
        QTest::newRow("too fine") << "/25/4/5.png" << false;
        QTest::newRow("not a number") << "/3/x/5.png" << false;
        QTest::newRow("up") << "/3/4/../../5.png" << false;
        QTest::newRow("negative") << "/3/-4/5.png" << false;
    }
    void aPathEndsInTheTilesKey()
    {
        QFETCH(QString, path);
        QFETCH(bool, isKey);

        const auto key = tileKeyOfPath(path);

        QCOMPARE(key.has_value(), isKey);
        if (isKey)
            QVERIFY(*key == (TileKey {3, 4, 5}));
    }

    void aQuarterOfACoarserTileStandsForAFineOne()
    {
        const QImage cut = QImage::fromData(cutOut(quartered(), {3, 4, 5}, {4, 9, 10}));

        QCOMPARE(cut.size(), QSize(256, 256));
        for (const QPoint& at : {QPoint(0, 0), QPoint(255, 0), QPoint(0, 255), QPoint(255, 255)})
            QCOMPARE(cut.pixelColor(at), QColor(Qt::green));
        // Twelve levels on, the tile is a sixteenth of a pixel.
        const QImage tiny = QImage::fromData(cutOut(quartered(), {3, 4, 5}, {15, (4 << 12) + 1, (5 << 12) + 4095}));
        QCOMPARE(tiny.size(), QSize(256, 256));
        QCOMPARE(tiny.pixelColor(128, 128), QColor(Qt::blue));
        // The world's only tile stands for the finest there is, a hundredth of a millionth of it.
        const TileKey finest {finestLevel, 1 << (finestLevel - 1), (1 << (finestLevel - 1)) - 1};
        const QImage ofTheWorld = QImage::fromData(cutOut(quartered(), {0, 0, 0}, finest));
        QCOMPARE(ofTheWorld.size(), QSize(256, 256));
        QCOMPARE(ofTheWorld.pixelColor(128, 128), QImage::fromData(quartered()).pixelColor(128, 127));
        QCOMPARE(cutOut(quartered(), {3, 4, 5}, {3, 4, 5}), quartered());
        QVERIFY(cutOut(quartered(), {3, 4, 5}, {4, 0, 0}).isEmpty());
        QVERIFY(cutOut("no picture", {3, 4, 5}, {4, 9, 10}).isEmpty());
    }

    void aFolderGivesItsTilesAndEnlargesThemBeyondItsLevels()
    {
        QTemporaryDir folder;
        write(folder.filePath("3/4/5.png"), quartered());
        const TileFolder tiles(folder.path());

        QVERIFY(tiles.problem().isEmpty());
        QCOMPARE(tiles.tile({3, 4, 5}), quartered());
        QCOMPARE(QImage::fromData(tiles.tile({4, 8, 11})).pixelColor(9, 9), QColor(Qt::blue));
        QVERIFY(tiles.tile({3, 4, 6}).isEmpty());
        QVERIFY(tiles.tile({2, 2, 2}).isEmpty());
        QVERIFY(TileFolder(folder.filePath("nothing")).problem().contains("no such folder"));
        QVERIFY(TileFolder(folder.filePath("3")).problem().isEmpty());
        QTemporaryDir empty;
        QVERIFY(TileFolder(empty.path()).problem().contains("no map tiles"));
    }

    void theServerAnswersByLoopbackOnly()
    {
        TileServer server([](const TileKey& key, const TileServer::Answer& answer) {
            answer(key.z == 3 ? quartered() : QByteArray());
        });
        QVERIFY(server.listen().isEmpty());
        const QString host = QStringLiteral("http://127.0.0.1:%1").arg(server.port());

        QCOMPARE(get(host + "/3/4/5.png"), quartered());
        QCOMPARE(m_status, 200);
        QCOMPARE(m_type, QByteArray("image/png"));
        // The map does not ask again for what is answered without an error.
        QVERIFY(get(host + "/4/4/5.png").isEmpty());
        QCOMPARE(m_status, 204);
        get(host + "/osm/5.6/street");
        QCOMPARE(m_status, 404);
        QCOMPARE(server.asked(), 2);
        QCOMPARE(server.served(), 2);
    }

    void theServerSurvivesWhatIsNoHttp()
    {
        TileServer server([](const TileKey&, const TileServer::Answer& answer) { answer(quartered()); });
        QVERIFY(server.listen().isEmpty());
        for (const QByteArray& text : {QByteArray("\r\n\r\n"), QByteArray("POST /3/4/5.png HTTP/1.1\r\n\r\n"),
                                       QByteArray(40000, 'x'), QByteArray("GET\r\n\r\n")}) {
            QTcpSocket socket;
            QSignalSpy gone(&socket, &QTcpSocket::disconnected);
            socket.connectToHost("127.0.0.1", server.port());
            QVERIFY(socket.waitForConnected());
            socket.write(text);
            QTRY_COMPARE(gone.count(), 1);
        }
        QCOMPARE(server.asked(), 0);
        QCOMPARE(get(QStringLiteral("http://127.0.0.1:%1/3/4/5.png").arg(server.port())), quartered());
    }

    void anAddressTakesTheKeyInItsBracesOrAtItsEnd()
    {
        QCOMPARE(TileAddress("http://a.b/t/").urlOf({3, 4, 5}), QUrl("http://a.b/t/3/4/5.png"));
        QCOMPARE(TileAddress("https://a.b/{z}/{y}/{x}?k=1").urlOf({3, 4, 5}), QUrl("https://a.b/3/5/4?k=1"));
        QVERIFY(TileAddress::isUsable("http://a.b"));
        QVERIFY(!TileAddress::isUsable("ftp://a.b"));
        QVERIFY(!TileAddress::isUsable("http://"));
    }

    void anAddressIsAskedForACoarserTileWhereItHasNoFineOne_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<bool>("found");
        QTest::newRow("its fine tiles are empty") << "/{z}/{x}/{y}.png" << true;
        QTest::newRow("it knows no such address") << "/{z}/{x}" << false;
    }
    void anAddressIsAskedForACoarserTileWhereItHasNoFineOne()
    {
        QFETCH(QString, form);
        QFETCH(bool, found);
        TileServer upstream([](const TileKey& key, const TileServer::Answer& answer) {
            answer(key == TileKey {3, 4, 5} ? quartered() : QByteArray());
        });
        QVERIFY(upstream.listen().isEmpty());
        TileAddress address(QStringLiteral("http://127.0.0.1:%1").arg(upstream.port()) + form);
        QSignalSpy problems(&address, &TileAddress::problem);
        QVector<QByteArray> pictures;
        address.request({5, 18, 20}, [&pictures](const QByteArray& answer) { pictures << answer; });

        QTRY_COMPARE(pictures.size(), 1);

        QCOMPARE(pictures[0].isEmpty(), !found);
        if (found)
            QCOMPARE(QImage::fromData(pictures[0]).pixelColor(99, 99), QColor(Qt::green));
        QCOMPARE(upstream.asked(), found ? 3 : 0);
        QCOMPARE(problems.count(), 0);
    }

    void aServerThatIsNotThereIsToldOnce()
    {
        TileAddress address("http://127.0.0.1:1");
        QSignalSpy problems(&address, &TileAddress::problem);
        int answers = 0;
        for (int x = 0; x < 3; ++x)
            address.request({3, x, 5}, [&answers](const QByteArray& picture) { answers += picture.isEmpty(); });

        QTRY_COMPARE(answers, 3);

        QCOMPARE(problems.count(), 1);
    }

    void theHostsChoiceIsServedToTheMap()
    {
        QTemporaryDir folder;
        write(folder.filePath("3/4/5.png"), quartered());
        MapEndpoints endpoints;
        QSignalSpy changed(&endpoints, &MapEndpoints::changed);

        QVERIFY(!endpoints.available());
        QCOMPARE(endpoints.setTiles(folder.path()), QString());
        QVERIFY(endpoints.available());
        QCOMPARE(get(endpoints.tilesHost() + "/3/4/5.png"), quartered());
        const QString firstCache = endpoints.cacheDirectory();
        QVERIFY(QDir(firstCache).exists());
        QVERIFY(endpoints.busy());
        QTRY_VERIFY(!endpoints.busy());
        QVERIFY(!endpoints.setTiles(folder.filePath("nothing")).isEmpty());
        QVERIFY(!endpoints.available());
        QVERIFY(!QDir(firstCache).exists());
        QCOMPARE(endpoints.setTiles({}), QString());
        QVERIFY(!endpoints.setTiles("http://").isEmpty());
        QCOMPARE(changed.count(), 4);
    }

    void theSettingsNameTilesAndAddressServices()
    {
        const auto& settings = Torvik::Base::CApplicationSettings::instance();
        QCOMPARE(MapEndpoints::tilesOfSettings(), QString());
        settings.setCustomSetting("MAPTILES", "/maps");
        settings.setCustomSetting("MAPGEOCODING", "http://g");
        settings.setCustomSetting("MAPPLACES", "http://p");
        settings.setCustomSetting("MAPCOPYRIGHT", "somebody");

        const MapEndpoints endpoints;

        QCOMPARE(MapEndpoints::tilesOfSettings(), QString("/maps"));
        QCOMPARE(endpoints.geocodingHost(), QString("http://g"));
        QCOMPARE(endpoints.placesHost(), QString("http://p"));
        QCOMPARE(endpoints.copyright(), QString("somebody"));
    }

private:
    QByteArray get(const QString& address)
    {
        QNetworkReply* reply = m_network.get(QNetworkRequest(QUrl(address)));
        QSignalSpy finished(reply, &QNetworkReply::finished);
        if (!finished.wait(5000))
            return {};
        m_status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        m_type = reply->header(QNetworkRequest::ContentTypeHeader).toByteArray();
        reply->deleteLater();
        return reply->readAll();
    }

    QTemporaryDir m_settings;
    QNetworkAccessManager m_network;
    int m_status = 0;
    QByteArray m_type;
};

QTEST_GUILESS_MAIN(tst_Tiles)
#include "tst_Tiles.moc"
