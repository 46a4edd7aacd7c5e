#pragma once

#include "host/map/TileKey.h"

#include <QHash>
#include <QObject>
#include <QTcpServer>

#include <atomic>
#include <functional>

class QTcpSocket;

namespace Torvik::Map {

/** Serves a street map's tiles by HTTP to this machine only, GET /z/x/y.png, which is how map plug-ins want them. What
 * is no request for a tile is answered with an error, and closes the connection if it is no HTTP; a tile that there is
 * not, with an empty answer. The thread that it lives on only. */
class TileServer : public QObject {
    Q_OBJECT

public:
    /** Takes the tile's picture file, or nothing when there is no such tile. */
    using Answer = std::function<void(const QByteArray&)>;
    /** Gives an answer now or later, once. */
    using Source = std::function<void(const TileKey&, Answer)>;

    explicit TileServer(Source source, QObject* parent = nullptr);
    ~TileServer() override;

    /** Listens on a free port of the loopback address. Gives an error for the user, or nothing. */
    Q_INVOKABLE QString listen();
    quint16 port() const { return m_server.serverPort(); }
    /** Requests for tiles so far, and those of them that are answered, also with "no such tile". Any thread. */
    int asked() const { return m_asked; }
    int served() const { return m_served; }

private:
    void accept();
    void read(QTcpSocket* socket);
    void answer(QTcpSocket* socket, const QByteArray& request);
    static void send(QTcpSocket* socket, const QByteArray& status, const QByteArray& type, const QByteArray& body);

    Source m_source;
    QTcpServer m_server;
    QHash<QTcpSocket*, QByteArray> m_received;
    std::atomic<int> m_asked {0};
    std::atomic<int> m_served {0};
};

} // namespace Torvik::Map
