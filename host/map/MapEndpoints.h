#pragma once

#include "host/map/TileServer.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTemporaryDir>
#include <QThread>

#include <functional>
#include <memory>

namespace Torvik::Map {

/** Where the map under the scene gets its tiles and addresses from, as the host's settings or the command line choose;
 *  QML has it as `mapEndpoints`. Tiles of a folder, and those of a server in the network, come to the map by this
 * process, on a thread of its own. Main thread only.
 *
 *  Settings (CApplicationSettings, custom): "MAPTILES" a folder or an address, "MAPGEOCODING" and "MAPPLACES" addresses
 * of services that find and name places, "MAPCOPYRIGHT" who made the map. */
class MapEndpoints : public QObject {
    Q_OBJECT
    /** There are tiles; without any, no map is shown. */
    Q_PROPERTY(bool available READ available NOTIFY changed)
    /** Address in front of /z/x/y.png, without the slash. */
    Q_PROPERTY(QString tilesHost READ tilesHost NOTIFY changed)
    Q_PROPERTY(QString geocodingHost READ geocodingHost CONSTANT)
    Q_PROPERTY(QString placesHost READ placesHost CONSTANT)
    Q_PROPERTY(QString copyright READ copyright CONSTANT)
    /** Where the map keeps tiles that it has fetched; another one for each source. */
    Q_PROPERTY(QString cacheDirectory READ cacheDirectory NOTIFY changed)

public:
    explicit MapEndpoints(QObject* parent = nullptr);
    ~MapEndpoints() override;

    /** Takes tiles from a folder, or from an address ("http://..."); nothing ends that. Gives an error for the user, or
     *  nothing; after an error there are no tiles. */
    QString setTiles(const QString& folderOrAddress);
    /** What the settings say of tiles. */
    static QString tilesOfSettings();

    bool available() const { return !m_tilesHost.isEmpty(); }
    QString tilesHost() const { return m_tilesHost; }
    QString geocodingHost() const;
    QString placesHost() const;
    QString copyright() const;
    QString cacheDirectory() const { return m_cacheDirectory; }

    /** Removes what was kept for this run only; for the end of a process that takes nothing else down. */
    void removeScratch() { m_scratch.reset(); }
    /** The map waits for tiles, or may ask for more in a moment. */
    bool busy();
    /** Requests of the map so far. */
    int asked() const { return m_server ? m_server->asked() : 0; }

signals:
    void changed();
    /** What keeps tiles away, for the user; told once. */
    void problem(const QString& text);

private:
    QString useFolder(const QString& path);
    QString useAddress(const QString& address);
    /** Has the source serve on the other thread, where `made` puts it together. */
    QString serve(const std::function<TileServer*()>& made);
    void stopServing();

    QThread m_thread;
    TileServer* m_server = nullptr;
    std::unique_ptr<QTemporaryDir> m_scratch;
    QString m_tilesHost;
    QString m_cacheDirectory;
    int m_seen = -1;
    QElapsedTimer m_quiet;
};

} // namespace Torvik::Map
