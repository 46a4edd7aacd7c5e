#pragma once

#include <QHostAddress>
#include <QObject>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

namespace Kx::Test {

/** A search service on this machine that finds what it is told to. Closes each connection after its answer. */
class StandInGeocoder {
public:
    StandInGeocoder()
    {
        if (!m_server.listen(QHostAddress::LocalHost))
            qFatal("No port for the searches.");
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { accept(); });
    }

    QString host() const { return QStringLiteral("http://127.0.0.1:%1").arg(m_server.serverPort()); }

    /** Of the search service's usual form, with its numbers as texts. */
    static QByteArray hit(const QString& latitude, const QString& longitude, const QString& street)
    {
        return QStringLiteral(
                   R"({"lat":"%1","lon":"%2","display_name":"%3, Town","address":{"road":"%3","city":"Town"}})")
            .arg(latitude, longitude, street)
            .toUtf8();
    }

    /** What was asked for, with its percent signs decoded. */
    QStringList asked;
    QByteArray status = "200 OK";
    QByteArray body = "[]";

private:
    void accept()
    {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                if (!socket->canReadLine())
                    return;
                asked << QUrl::fromPercentEncoding(socket->readAll().split(' ').value(1));
                socket->write("HTTP/1.1 " + status + "\r\nContent-Type: application/json\r\nConnection: close\r\n" +
                              "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
                socket->disconnectFromHost();
            });
        }
    }

    QTcpServer m_server;
};

} // namespace Kx::Test
