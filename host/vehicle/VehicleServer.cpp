#include "host/vehicle/VehicleServer.h"

#include <QTcpSocket>

namespace Torvik::Vehicle {

namespace {

/** Bytes. A sender that is faster than the view is slowed down by TCP instead of filling the memory. */
constexpr qint64 readAtOnce = 64 * 1024;
/** Of a connection that another one takes over, which may go on sending. */
constexpr int mostReadsAtItsEnd = 100;

} // namespace

VehicleServer::VehicleServer(QObject* parent)
    : QObject(parent)
{
    connect(&m_server, &QTcpServer::newConnection, this, &VehicleServer::takeOver);
}

VehicleServer::~VehicleServer()
{
    // The sockets are the server's children and would tell of their end.
    if (m_socket)
        m_socket->disconnect(this);
}

QString VehicleServer::listen(const QHostAddress& address, quint16 port)
{
    if (m_server.listen(address, port))
        return {};
    return QStringLiteral("cannot listen on %1 port %2: %3")
        .arg(address.toString())
        .arg(port)
        .arg(m_server.errorString());
}

void VehicleServer::close()
{
    m_server.close();
    if (QTcpSocket* socket = m_socket) {
        onClosed(socket);
        socket->abort();
    }
}

void VehicleServer::takeOver()
{
    while (QTcpSocket* socket = m_server.nextPendingConnection()) {
        if (QTcpSocket* earlier = m_socket) {
            // What it has sent until now counts still.
            read(earlier);
            for (int i = 0; i < mostReadsAtItsEnd && earlier == m_socket && earlier->waitForReadyRead(0); ++i)
                read(earlier);
            onClosed(earlier);
            if (earlier->state() != QAbstractSocket::UnconnectedState)
                earlier->abort();
        }
        m_socket = socket;
        m_lines = std::make_unique<ReadingLines>(
            [this](const Reading& read) {
                ++m_readings;
                emit reading(read);
            },
            [this](const LineProblem& found) {
                ++m_problems;
                emit problem(found);
            });
        socket->setReadBufferSize(readAtOnce);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            read(socket);
            onClosed(socket);
        });
        emit connected(socket->peerAddress().toString());
        read(socket);
        // It may have gone before anyone listened to it.
        if (socket->state() == QAbstractSocket::UnconnectedState)
            onClosed(socket);
    }
}

void VehicleServer::read(QTcpSocket* socket)
{
    while (socket == m_socket && socket->bytesAvailable() > 0)
        m_lines->feed(socket->read(readAtOnce));
}

void VehicleServer::onClosed(QTcpSocket* socket)
{
    if (socket != m_socket)
        return;
    m_lines->finish();
    m_socket.clear();
    socket->disconnect(this);
    socket->deleteLater();
    emit disconnected();
}

} // namespace Torvik::Vehicle
