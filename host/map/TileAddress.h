#pragma once

#include "host/map/TileServer.h"

#include <QNetworkAccessManager>
#include <QObject>
#include <QUrl>

namespace Torvik::Map {

/** Tiles of a server, by its address: "http://host/path", to which /z/x/y.png is added, or one with {z}, {x} and {y} in
 *  it. A level that the server does not have is cut out of a coarser one. The thread that it lives on only. */
class TileAddress : public QObject {
    Q_OBJECT

public:
    explicit TileAddress(const QString& address, QObject* parent = nullptr);

    /** Whether an address can be one; the network is not asked. */
    static bool isUsable(const QString& address);
    QUrl urlOf(const TileKey& key) const;
    void request(const TileKey& key, const TileServer::Answer& answer);

signals:
    /** The server could not be reached, or refuses; told once. */
    void problem(const QString& text);

private:
    void fetch(const TileKey& from, const TileKey& wanted, const TileServer::Answer& answer);

    QString m_address;
    QNetworkAccessManager m_network;
    bool m_told = false;
};

} // namespace Torvik::Map
