#pragma once

#include "host/vehicle/ReadingLines.h"

#include <QHostAddress>
#include <QObject>
#include <QPointer>
#include <QTcpServer>

#include <memory>

class QTcpSocket;

namespace Torvik::Vehicle {

/** Takes readings from another process by TCP, one a line. One vehicle at a time: who connects later takes over, since
 * the earlier connection may be dead without knowing. Lines are counted anew with each connection. The thread that made
 * it only. */
class VehicleServer : public QObject {
    Q_OBJECT

public:
    explicit VehicleServer(QObject* parent = nullptr);
    ~VehicleServer() override;

    /** Listens from now on; port 0 takes a free one. Gives an error for the user, or nothing. */
    QString listen(const QHostAddress& address, quint16 port);
    /** No reading comes any more. */
    void close();
    bool isListening() const { return m_server.isListening(); }
    quint16 port() const { return m_server.serverPort(); }
    bool isConnected() const { return !m_socket.isNull(); }
    /** Since it was made, over all connections. */
    int readingCount() const { return m_readings; }
    int problemCount() const { return m_problems; }

signals:
    void reading(const Torvik::Vehicle::Reading& reading);
    /** A line was none; the next one counts again. */
    void problem(const Torvik::Vehicle::LineProblem& problem);
    void connected(const QString& peer);
    void disconnected();

private:
    void takeOver();
    void read(QTcpSocket* socket);
    void onClosed(QTcpSocket* socket);

    QTcpServer m_server;
    QPointer<QTcpSocket> m_socket;
    std::unique_ptr<ReadingLines> m_lines;
    int m_readings = 0;
    int m_problems = 0;
};

} // namespace Torvik::Vehicle
