// Stream devices of the real gateway against ordinary peers: a TCP server
// device and a plain socket, a TCP client device and a test listener, UDP
// both ways, and a serial device over a pseudo-terminal pair.
#include "GatewayProcess.h"
#include "GwCallbackRecorder.h"
#include "GwTestCalls.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QNetworkDatagram>
#include <QUdpSocket>
#include <QtTest>
#include <fcntl.h>
#include <pty.h>
#include <unistd.h>

using namespace GwTestCalls;

namespace {
quint16 freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
}
} // namespace

class tst_GatewayStreams : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void tcpServer_peerStream_framedResults_data();
    void tcpServer_peerStream_framedResults();
    void tcpServer_writeReachesEveryPeer_closedRefuses();
    void tcpServer_portInUse_refusedAndSwitchOff();
    void tcpClient_upAndDownWithListener();
    void udp_bothWays();
    void serial_overPseudoTerminal();

private:
    int openServer(quint16 port, const QByteArray &endChar);
    GatewayProcess m_gw;
    GwCallbackRecorder m_recorder;
};

void tst_GatewayStreams::initTestCase()
{
    QVERIFY2(m_gw.start(), qPrintable(m_gw.error()));
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", m_gw.port(), 101), GW_OK);
    m_recorder.install();
}

void tst_GatewayStreams::cleanupTestCase()
{
    GW_PF_DeInit();
    QVERIFY(m_gw.stop());
}

void tst_GatewayStreams::init()
{
    m_recorder.clear();
}

int tst_GatewayStreams::openServer(quint16 port, const QByteArray &endChar)
{
    const int id = add("TcpServerModule");
    if (set(id, "LocalIP", "127.0.0.1") || set(id, "LocalPort", QByteArray::number(port))
        || set(id, "EndChar", endChar) || set(id, "ConnectState", "true"))
        return -1;
    return id;
}

void tst_GatewayStreams::tcpServer_peerStream_framedResults_data()
{
    QTest::addColumn<QByteArray>("endChar");
    QTest::addColumn<QList<QByteArray>>("writes");
    QTest::addColumn<QList<QByteArray>>("frames");
    QTest::newRow("CR LF lines") << QByteArray("\r\n") << QList<QByteArray>{"abc\r\ndef\r\n"}
                                 << QList<QByteArray>{"abc\r\n", "def\r\n"};
    QTest::newRow("frame over many writes") << QByteArray("\r\n")
                                            << QList<QByteArray>{"he", "ll", "o wor", "ld\r", "\nnext"}
                                            << QList<QByteArray>{"hello world\r\n"};
    QTest::newRow("single end byte") << QByteArray(";") << QList<QByteArray>{"1;2", ";3"}
                                     << QList<QByteArray>{"1;", "2;"};
}

void tst_GatewayStreams::tcpServer_peerStream_framedResults()
{
    QFETCH(QByteArray, endChar);
    QFETCH(QList<QByteArray>, writes);
    QFETCH(QList<QByteArray>, frames);
    const quint16 port = freePort();
    const int id = openServer(port, endChar);
    QVERIFY(id > 0);
    QTRY_COMPARE(m_recorder.eventCount(GW_EVENT_CONNECTED, id), 1);
    QCOMPARE(get(id, "ConnectState"), QByteArray("true"));

    QTcpSocket peer;
    peer.connectToHost(QHostAddress::LocalHost, port);
    QVERIFY(peer.waitForConnected(3000));
    for (const QByteArray &chunk : writes) {
        peer.write(chunk);
        QVERIFY(peer.waitForBytesWritten(3000));
        QTest::qWait(5); // separate TCP segments, so the gateway sees separate reads
    }
    QTRY_COMPARE(m_recorder.results().size(), frames.size());
    for (int i = 0; i < frames.size(); ++i) {
        QCOMPARE(m_recorder.results().at(i).data, frames.at(i));
        QCOMPARE(m_recorder.results().at(i).addressId, -1);
        QCOMPARE(m_recorder.results().at(i).moduleId, id);
    }
    QCOMPARE(GW_PF_DeleteModule(id), GW_OK);
}

void tst_GatewayStreams::tcpServer_writeReachesEveryPeer_closedRefuses()
{
    const quint16 port = freePort();
    const int id = openServer(port, "\r\n");
    QVERIFY(id > 0);
    QCOMPARE(GW_PF_WriteString(id, -1, "nobody\r\n"), quint32(GW_ERR_NOT_OPEN));
    QTcpSocket a, b;
    for (QTcpSocket *peer : {&a, &b}) {
        peer->connectToHost(QHostAddress::LocalHost, port);
        QVERIFY(peer->waitForConnected(3000));
    }
    // Both peers are served once the gateway has framed a line from each.
    a.write("a\r\n");
    b.write("b\r\n");
    QTRY_COMPARE(m_recorder.results().size(), 2);
    QCOMPARE(GW_PF_WriteString(id, -1, "result=1\r\n"), GW_OK);
    QCOMPARE(GW_PF_WriteInt(id, -1, 2, "7;8;"), GW_OK);
    for (QTcpSocket *peer : {&a, &b}) {
        QByteArray got;
        QTRY_VERIFY((got += peer->readAll()).size() >= 14);
        QCOMPARE(got, QByteArray("result=1\r\n7;8;"));
    }
    QCOMPARE(set(id, "ConnectState", "false"), GW_OK);
    QCOMPARE(GW_PF_WriteString(id, -1, "late"), quint32(GW_ERR_NOT_OPEN));
    QCOMPARE(GW_PF_DeleteModule(id), GW_OK);
}

void tst_GatewayStreams::tcpServer_portInUse_refusedAndSwitchOff()
{
    QTcpServer holder;
    QVERIFY(holder.listen(QHostAddress::LocalHost));
    const int id = add("TcpServerModule");
    QCOMPARE(set(id, "LocalIP", "127.0.0.1"), GW_OK);
    QCOMPARE(set(id, "LocalPort", QByteArray::number(holder.serverPort())), GW_OK);
    QCOMPARE(set(id, "ConnectState", "true"), quint32(GW_ERR_PORT_IN_USE));
    QCOMPARE(get(id, "ConnectState"), QByteArray("false"));
    QCOMPARE(GW_PF_DeleteModule(id), GW_OK);
}

void tst_GatewayStreams::tcpClient_upAndDownWithListener()
{
    QTcpServer listener;
    QVERIFY(listener.listen(QHostAddress::LocalHost));
    const quint16 port = listener.serverPort();
    const int id = add("TcpClientModule");
    QCOMPARE(set(id, "TargetPort", QByteArray::number(port)), GW_OK);
    QCOMPARE(set(id, "ReconnectInterval", "100"), GW_OK);
    QCOMPARE(set(id, "ConnectState", "true"), GW_OK);
    QTRY_VERIFY(listener.hasPendingConnections() || listener.waitForNewConnection(50));
    QTcpSocket *peer = listener.nextPendingConnection();
    QVERIFY(peer);
    QTRY_COMPARE(m_recorder.eventCount(GW_EVENT_CONNECTED, id), 1);
    QCOMPARE(GW_PF_WriteString(id, -1, "ping\n"), GW_OK);
    QByteArray got;
    QTRY_COMPARE(got += peer->readAll(), QByteArray("ping\n"));

    // The listener goes away: reported down, the switch reads off.
    listener.close();
    peer->abort();
    QTRY_COMPARE(m_recorder.eventCount(GW_EVENT_DISCONNECTED, id), 1);
    QCOMPARE(get(id, "ConnectState"), QByteArray("false"));

    // It comes back on the same port: the device reconnects by itself.
    QVERIFY(listener.listen(QHostAddress::LocalHost, port));
    QTRY_VERIFY_WITH_TIMEOUT(listener.hasPendingConnections() || listener.waitForNewConnection(50), 10000);
    QTRY_COMPARE(m_recorder.eventCount(GW_EVENT_CONNECTED, id), 2);
    QCOMPARE(get(id, "ConnectState"), QByteArray("true"));

    // Switched off, it stays off even though the listener is there.
    QCOMPARE(set(id, "ConnectState", "false"), GW_OK);
    listener.close();
    QCOMPARE(GW_PF_DeleteModule(id), GW_OK);
}

void tst_GatewayStreams::udp_bothWays()
{
    QUdpSocket peer;
    QVERIFY(peer.bind(QHostAddress(QHostAddress::LocalHost), 0));
    const quint16 devicePort = freePort();
    const int id = add("UdpModule");
    QCOMPARE(set(id, "LocalIP", "127.0.0.1"), GW_OK);
    QCOMPARE(set(id, "LocalPort", QByteArray::number(devicePort)), GW_OK);
    QCOMPARE(set(id, "TargetPort", QByteArray::number(peer.localPort())), GW_OK);
    QCOMPARE(set(id, "EndChar", ""), GW_OK);
    QCOMPARE(set(id, "ConnectState", "true"), GW_OK);

    QCOMPARE(GW_PF_WriteString(id, -1, "to peer"), GW_OK);
    QTRY_VERIFY(peer.hasPendingDatagrams());
    QCOMPARE(peer.receiveDatagram().data(), QByteArray("to peer"));

    peer.writeDatagram("to device", QHostAddress::LocalHost, devicePort);
    QTRY_COMPARE(m_recorder.stream(id), QByteArray("to device"));
    QCOMPARE(GW_PF_DeleteModule(id), GW_OK);
}

void tst_GatewayStreams::serial_overPseudoTerminal()
{
    int master = -1, slave = -1;
    char name[256] = {};
    if (openpty(&master, &slave, name, nullptr, nullptr) != 0)
        QSKIP("no pseudo-terminal pair available (openpty failed)");
    ::close(slave); // the gateway opens the slave side by its name
    const int id = add("SerialModule");
    QCOMPARE(set(id, "PortName", name), GW_OK);
    QCOMPARE(set(id, "BaudRate", "115200"), GW_OK);
    QCOMPARE(set(id, "EndChar", "\n"), GW_OK);
    QCOMPARE(set(id, "ConnectState", "true"), GW_OK);
    QTRY_COMPARE(m_recorder.eventCount(GW_EVENT_CONNECTED, id), 1);

    QVERIFY(::write(master, "T1 OK\nT2", 8) == 8);
    QTRY_COMPARE(m_recorder.stream(id), QByteArray("T1 OK\n"));

    QCOMPARE(GW_PF_WriteString(id, -1, "TRIGGER"), GW_OK);
    fcntl(master, F_SETFL, O_NONBLOCK);
    QByteArray got;
    QTRY_VERIFY([&] {
        char buffer[64];
        const ssize_t n = ::read(master, buffer, sizeof(buffer));
        if (n > 0)
            got.append(buffer, int(n));
        return got.contains("TRIGGER");
    }());
    QCOMPARE(GW_PF_DeleteModule(id), GW_OK);
    ::close(master);
}

QTEST_GUILESS_MAIN(tst_GatewayStreams)
#include "tst_gatewaystreams.moc"
