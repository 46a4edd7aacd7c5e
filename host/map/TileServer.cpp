#include "host/map/TileServer.h"

#include <QHostAddress>
#include <QPointer>
#include <QTcpSocket>
#include <QUrl>

namespace Torvik::Map {

namespace {

/** Bytes; what a request for a tile never needs. */
constexpr int longestRequest = 16384;

QByteArray typeOf(const QByteArray& picture)
{
    return picture.startsWith("\x89PNG") ? "image/png" : "image/jpeg";
}

} // namespace

TileServer::TileServer(Source source, QObject* parent)
    : QObject(parent)
    , m_source(std::move(source))
    , m_server(this)
{
    connect(&m_server, &QTcpServer::newConnection, this, &TileServer::accept);
}

TileServer::~TileServer()
{
    // Their signals would reach what is being destroyed.
    for (QTcpSocket* socket : m_received.keys())
        socket->disconnect(this);
}

QString TileServer::listen()
{
    if (m_server.listen(QHostAddress::LocalHost))
        return {};
    return QStringLiteral("the map's tiles cannot be served: %1").arg(m_server.errorString());
}

void TileServer::accept()
{
    while (QTcpSocket* socket = m_server.nextPendingConnection()) {
        m_received.insert(socket, {});
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            m_received.remove(socket);
            socket->deleteLater();
        });
    }
}

void TileServer::read(QTcpSocket* socket)
{
    QByteArray& received = m_received[socket];
    received += socket->readAll();
    for (int end = received.indexOf("\r\n\r\n"); end >= 0; end = received.indexOf("\r\n\r\n")) {
        const QByteArray request = received.left(end);
        received.remove(0, end + 4);
        answer(socket, request);
    }
    if (received.size() > longestRequest)
        socket->abort();
}

void TileServer::answer(QTcpSocket* socket, const QByteArray& request)
{
    const QList<QByteArray> words = request.left(request.indexOf("\r\n")).split(' ');
    if (words.size() < 3 || words[0] != "GET" || !words[2].startsWith("HTTP/1.")) {
        send(socket, "400 Bad Request", "text/plain", "only GET\n");
        socket->disconnectFromHost();
        return;
    }
    const auto key = tileKeyOfPath(QUrl(QString::fromLatin1(words[1])).path());
    if (!key) {
        send(socket, "404 Not Found", "text/plain", "no tile\n");
        return;
    }
    ++m_asked;
    const QPointer<QTcpSocket> waiting(socket);
    const QPointer<TileServer> self(this);
    m_source(*key, [waiting, self](const QByteArray& picture) {
        if (self)
            ++self->m_served;
        if (!waiting)
            return;
        // No error: the map would ask again and again, and log each tile that it gives up.
        if (picture.isEmpty())
            waiting->write("HTTP/1.1 204 No Content\r\n\r\n");
        else
            send(waiting, "200 OK", typeOf(picture), picture);
    });
}

void TileServer::send(QTcpSocket* socket, const QByteArray& status, const QByteArray& type, const QByteArray& body)
{
    socket->write("HTTP/1.1 " + status + "\r\nContent-Type: " + type +
                  "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
}

} // namespace Torvik::Map
