#include "host/vehicle/VehicleServer.h"

#include <QSignalSpy>
#include <QTcpSocket>
#include <QtTest>

using namespace Torvik::Vehicle;

namespace {

/** A server on a free port of this machine, and what it heard. */
struct Heard {
    Heard()
    {
        QObject::connect(&server, &VehicleServer::reading,
                         [this](const Reading& reading) { counters << reading.counter; });
        QObject::connect(&server, &VehicleServer::problem,
                         [this](const LineProblem& problem) { problems << toText(problem); });
        error = server.listen(QHostAddress::LocalHost, 0);
    }

    VehicleServer server;
    QVector<double> counters;
    QStringList problems;
    QString error;
};

void connectTo(QTcpSocket& socket, const Heard& heard)
{
    socket.connectToHost(QHostAddress::LocalHost, heard.server.port());
    QVERIFY(socket.waitForConnected());
}

} // namespace

class tst_VehicleServer : public QObject {
    Q_OBJECT

private slots:
    void readingsComeByTheLine();
    void aMalformedLineIsReportedAndTheStreamGoesOn();
    void aReadingInPiecesIsOne();
    void theLastLineCountsWithoutABreak();
    void connectionsComeOneAfterAnother();
    void whoConnectsLaterTakesOver();
    void manyReadingsAreAllTaken();
    void anEndlessLineIsOneProblem();
    void aPortInUseIsAnError();
    void itHearsOnlyTheAddressItWasGiven();
};

void tst_VehicleServer::readingsComeByTheLine()
{
    Heard heard;
    QVERIFY2(heard.error.isEmpty(), qPrintable(heard.error));
    QSignalSpy connected(&heard.server, &VehicleServer::connected);
    QTcpSocket socket;
    connectTo(socket, heard);

    socket.write("time,counter\n0.1,1\n0.2,2,3,4,5\n");

    QTRY_COMPARE(heard.counters, QVector<double>({1, 2}));
    QCOMPARE(connected.size(), 1);
    QVERIFY(heard.server.isConnected());
    QCOMPARE(heard.server.readingCount(), 2);
}

void tst_VehicleServer::aMalformedLineIsReportedAndTheStreamGoesOn()
{
    Heard heard;
    QTcpSocket socket;
    connectTo(socket, heard);

    socket.write("0.1,1\nhello\n0.2,2\n0.3\n0.4,3\n");

    QTRY_COMPARE(heard.counters, QVector<double>({1, 2, 3}));
    QCOMPARE(heard.problems, QStringList({"line 2: 2 or 5 values make a reading, not 1",
                                          "line 4: 2 or 5 values make a reading, not 1"}));
    QCOMPARE(heard.server.problemCount(), 2);
}

void tst_VehicleServer::aReadingInPiecesIsOne()
{
    Heard heard;
    QTcpSocket socket;
    connectTo(socket, heard);

    socket.write("0.1,1\n0.2,1");
    QTRY_COMPARE(heard.counters.size(), 1);
    socket.write("2.5\n");

    QTRY_COMPARE(heard.counters, QVector<double>({1, 12.5}));
    QVERIFY(heard.problems.isEmpty());
}

void tst_VehicleServer::theLastLineCountsWithoutABreak()
{
    Heard heard;
    QSignalSpy disconnected(&heard.server, &VehicleServer::disconnected);
    QTcpSocket socket;
    connectTo(socket, heard);

    socket.write("0.1,1\n0.2,2");
    socket.disconnectFromHost();

    QVERIFY(disconnected.wait());
    QCOMPARE(heard.counters, QVector<double>({1, 2}));
    QVERIFY(!heard.server.isConnected());
}

void tst_VehicleServer::connectionsComeOneAfterAnother()
{
    Heard heard;
    QSignalSpy disconnected(&heard.server, &VehicleServer::disconnected);

    for (int i = 0; i < 5; ++i) {
        QTcpSocket socket;
        connectTo(socket, heard);
        socket.write("0," + QByteArray::number(i) + "\nwrong\n");
        socket.disconnectFromHost();
        QVERIFY(disconnected.wait());
    }

    QCOMPARE(heard.counters, QVector<double>({0, 1, 2, 3, 4}));
    QCOMPARE(heard.problems.size(), 5);
    QVERIFY(heard.problems.last().startsWith("line 2: "));
}

void tst_VehicleServer::whoConnectsLaterTakesOver()
{
    Heard heard;
    QTcpSocket first;
    connectTo(first, heard);
    first.write("0,1\n");
    QTRY_COMPARE(heard.counters.size(), 1);
    QTcpSocket second;
    connectTo(second, heard);

    second.write("0,2\n");

    QTRY_COMPARE(heard.counters, QVector<double>({1, 2}));
    QTRY_COMPARE(first.state(), QAbstractSocket::UnconnectedState);
    QVERIFY(heard.server.isConnected());
    QCOMPARE(second.state(), QAbstractSocket::ConnectedState);
}

void tst_VehicleServer::manyReadingsAreAllTaken()
{
    constexpr int count = 100000;
    Heard heard;
    QTcpSocket socket;
    connectTo(socket, heard);
    QByteArray lines;
    for (int i = 0; i < count; ++i)
        lines += QByteArray::number(i) + ',' + QByteArray::number(i) + ",1,2,3\n";

    socket.write(lines);

    QTRY_COMPARE_WITH_TIMEOUT(heard.counters.size(), count, 20000);
    QCOMPARE(heard.counters.last(), double(count - 1));
    QVERIFY(heard.problems.isEmpty());
}

void tst_VehicleServer::anEndlessLineIsOneProblem()
{
    Heard heard;
    QTcpSocket socket;
    connectTo(socket, heard);

    socket.write(QByteArray(1000000, 'x') + "\n1,2\n");

    QTRY_COMPARE(heard.counters, QVector<double>({2}));
    QCOMPARE(heard.problems, QStringList("line 1: longer than 1000 bytes"));
}

void tst_VehicleServer::aPortInUseIsAnError()
{
    Heard heard;
    VehicleServer second;

    const QString error = second.listen(QHostAddress::LocalHost, heard.server.port());

    QVERIFY2(error.contains(QString::number(heard.server.port())), qPrintable(error));
    QVERIFY(!error.contains('\n'));
    QVERIFY(!second.isListening());
}

void tst_VehicleServer::itHearsOnlyTheAddressItWasGiven()
{
    Heard heard;
    QTcpSocket socket;

    // The whole of 127.0.0.0/8 is this machine; it listens on 127.0.0.1 alone.
    socket.connectToHost(QHostAddress("127.0.0.2"), heard.server.port());

    QVERIFY(!socket.waitForConnected(2000));
    QVERIFY(!heard.server.isConnected());
}

QTEST_GUILESS_MAIN(tst_VehicleServer)
#include "tst_VehicleServer.moc"
