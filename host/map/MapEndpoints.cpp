#include "host/map/MapEndpoints.h"

#include "domain/boundary/BaseServices.h"
#include "host/map/TileAddress.h"
#include "host/map/TileFolder.h"

#include <QCryptographicHash>
#include <QDir>
#include <QStandardPaths>

namespace Torvik::Map {

namespace {

QString setting(const char* key)
{
    return Base::CApplicationSettings::instance().getCustomSetting(QLatin1String(key), QString());
}

/** A map that has asked for nothing this long has all that it shows. */
constexpr int restMs = 600;
constexpr int patienceForFirstTileMs = 3000;

bool isAddress(const QString& text)
{
    return text.startsWith(QLatin1String("http://")) || text.startsWith(QLatin1String("https://"));
}

} // namespace

MapEndpoints::MapEndpoints(QObject* parent)
    : QObject(parent)
{
}

MapEndpoints::~MapEndpoints()
{
    stopServing();
}

QString MapEndpoints::tilesOfSettings()
{
    return setting("MAPTILES");
}

QString MapEndpoints::geocodingHost() const
{
    return setting("MAPGEOCODING");
}

QString MapEndpoints::placesHost() const
{
    return setting("MAPPLACES");
}

QString MapEndpoints::copyright() const
{
    return setting("MAPCOPYRIGHT");
}

QString MapEndpoints::setTiles(const QString& folderOrAddress)
{
    stopServing();
    m_tilesHost.clear();
    m_cacheDirectory.clear();
    QString error;
    if (isAddress(folderOrAddress))
        error = useAddress(folderOrAddress);
    else if (!folderOrAddress.isEmpty())
        error = useFolder(folderOrAddress);
    emit changed();
    return error;
}

QString MapEndpoints::useFolder(const QString& path)
{
    const TileFolder folder(path);
    const QString error = folder.problem();
    if (!error.isEmpty())
        return error;
    // What the map keeps of a folder on this machine would only hide the folder's changes, so it goes at the end.
    m_scratch = std::make_unique<QTemporaryDir>();
    m_cacheDirectory = m_scratch->path();
    return serve([folder] {
        return new TileServer(
            [folder](const TileKey& key, const TileServer::Answer& answer) { answer(folder.tile(key)); });
    });
}

QString MapEndpoints::useAddress(const QString& address)
{
    if (!TileAddress::isUsable(address))
        return QStringLiteral("%1 is no address of a tile server").arg(address);
    const QByteArray name = QCryptographicHash::hash(address.toUtf8(), QCryptographicHash::Sha1).toHex().left(16);
    const QDir cache(QStandardPaths::writableLocation(QStandardPaths::CacheLocation));
    m_cacheDirectory = cache.filePath(QStringLiteral("tiles/") + QString::fromLatin1(name));
    cache.mkpath(m_cacheDirectory);
    return serve([this, address] {
        auto* source = new TileAddress(address);
        connect(source, &TileAddress::problem, this, &MapEndpoints::problem);
        auto* server = new TileServer(
            [source](const TileKey& key, const TileServer::Answer& answer) { source->request(key, answer); });
        source->setParent(server);
        return server;
    });
}

QString MapEndpoints::serve(const std::function<TileServer*()>& made)
{
    QObject onThread;
    onThread.moveToThread(&m_thread);
    m_thread.start(QThread::LowPriority);
    QString error;
    quint16 port = 0;
    QMetaObject::invokeMethod(
        &onThread,
        [&] {
            m_server = made();
            error = m_server->listen();
            port = m_server->port();
            onThread.moveToThread(thread());
        },
        Qt::BlockingQueuedConnection);
    connect(&m_thread, &QThread::finished, m_server, &QObject::deleteLater);
    if (!error.isEmpty()) {
        stopServing();
        return error;
    }
    m_tilesHost = QStringLiteral("http://127.0.0.1:%1").arg(port);
    m_seen = -1;
    return {};
}

bool MapEndpoints::busy()
{
    if (!m_server)
        return false;
    const int asked = m_server->asked();
    if (asked != m_seen || asked != m_server->served()) {
        m_seen = asked;
        m_quiet.start();
        return true;
    }
    return m_quiet.elapsed() < (asked == 0 ? patienceForFirstTileMs : restMs);
}

void MapEndpoints::stopServing()
{
    m_thread.quit();
    m_thread.wait();
    m_server = nullptr;
    m_scratch.reset();
}

} // namespace Torvik::Map
