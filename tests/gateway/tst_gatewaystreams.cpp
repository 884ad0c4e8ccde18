// Stream devices of the real gateway against ordinary peers: a TCP server
// device and plain sockets, a TCP client device and a test listener, UDP
// both ways, and a serial device over a pseudo-terminal pair.
#include "GatewayProcess.h"
#include "GwCallbackRecorder.h"
#include "GwTestCalls.h"

#include <QNetworkDatagram>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUdpSocket>
#include <QtTest>
#include <fcntl.h>
#include <pty.h>
#include <unistd.h>

using namespace GwTestCalls;
using Frames = QList<QByteArray>;

class tst_GatewayStreams : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void tcpServer_framesEachPeer_writesToAll_limitsPeers();
    void localPort_inUseRefused_heldUntilSwitchedOff_data();
    void localPort_inUseRefused_heldUntilSwitchedOff();
    void tcpClient_switchFollowsTheConnection();
    void udp_bothWays_eachDatagramFramedAlone();
    void serial_overPseudoTerminal();

private:
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

// A TCP server device frames each peer's bytes on their own, writes to every
// peer, refuses a peer beyond MaxConnections with a log line and serves a new
// one once peers have left.
void tst_GatewayStreams::tcpServer_framesEachPeer_writesToAll_limitsPeers()
{
    const quint16 port = freePort();
    const int id = add("TcpServerModule");
    QCOMPARE(setAll(id, {{"LocalIP", "127.0.0.1"}, {"LocalPort", QByteArray::number(port)}, {"MaxConnections", "2"},
                         {"EndChar", ";"}, {"ConnectState", "true"}}),
             GW_OK);
    QTRY_COMPARE(m_recorder.eventCount(GW_EVENT_CONNECTED, id), 1);
    QCOMPARE(get(id, "ConnectState"), QByteArray("true"));
    QCOMPARE(GW_PF_WriteString(id, -1, "nobody;"), quint32(GW_ERR_NOT_OPEN));

    QTcpSocket a, b, extra, later;
    for (QTcpSocket *peer : {&a, &b}) {
        peer->connectToHost(QHostAddress::LocalHost, port);
        QVERIFY(peer->waitForConnected(3000));
    }
    // A frame over two TCP segments, then a half frame of a that must not
    // run into b's frame.
    a.write("he");
    QVERIFY(a.waitForBytesWritten(3000));
    QTest::qWait(5);
    a.write("llo;wor");
    QTRY_COMPARE(m_recorder.frames(id), Frames{"hello;"});
    b.write("b;");
    QTRY_COMPARE(m_recorder.frames(id), (Frames{"hello;", "b;"}));
    for (const GwCallbackRecorder::Result &result : m_recorder.results())
        QCOMPARE(result.addressId, -1);

    extra.connectToHost(QHostAddress::LocalHost, port);
    QTRY_COMPARE(extra.state(), QAbstractSocket::UnconnectedState);
    const QByteArray refused = "module " + QByteArray::number(id) + ": peer 127.0.0.1 refused: 2 connections";
    QTRY_VERIFY2(m_gw.log().contains(refused), m_gw.log().constData());

    QCOMPARE(GW_PF_WriteString(id, -1, "result=1;"), GW_OK);
    QCOMPARE(GW_PF_WriteInt(id, -1, 2, "7;8;"), GW_OK);
    for (QTcpSocket *peer : {&a, &b}) {
        QByteArray got;
        QTRY_VERIFY((got += peer->readAll()).size() >= 13);
        QCOMPARE(got, QByteArray("result=1;7;8;"));
    }

    a.disconnectFromHost();
    b.disconnectFromHost();
    QTRY_COMPARE(GW_PF_WriteString(id, -1, "x;"), quint32(GW_ERR_NOT_OPEN));
    later.connectToHost(QHostAddress::LocalHost, port);
    QVERIFY(later.waitForConnected(3000));
    later.write("c;");
    QTRY_COMPARE(m_recorder.frames(id).value(2), QByteArray("c;"));

    QCOMPARE(set(id, "ConnectState", "false"), GW_OK);
    QCOMPARE(GW_PF_WriteString(id, -1, "late;"), quint32(GW_ERR_NOT_OPEN));
    QCOMPARE(GW_PF_DeleteModule(id), GW_OK);
}

void tst_GatewayStreams::localPort_inUseRefused_heldUntilSwitchedOff_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::newRow("TCP server") << QByteArray("TcpServerModule");
    QTest::newRow("UDP") << QByteArray("UdpModule");
}

// A taken local port is refused and the switch reads off; once free the
// device opens and holds the port, reserved, until it is switched off.
void tst_GatewayStreams::localPort_inUseRefused_heldUntilSwitchedOff()
{
    QFETCH(QByteArray, type);
    QTcpServer tcpHolder;
    QUdpSocket udpHolder;
    const bool udp = type == "UdpModule";
    QVERIFY(udp ? udpHolder.bind(QHostAddress(QHostAddress::LocalHost), 0) : tcpHolder.listen(QHostAddress::LocalHost));
    const QByteArray port = QByteArray::number(udp ? udpHolder.localPort() : tcpHolder.serverPort());
    const auto reserved = [] {
        char buffer[1024] = {};
        int needed = 0;
        return GW_PF_GetReservedPorts(buffer, sizeof(buffer), &needed) == GW_OK ? QByteArray(buffer).split(',')
                                                                                  : QList<QByteArray>();
    };
    const int first = add(type.constData());
    const int second = add(type.constData());
    for (int id : {first, second})
        QCOMPARE(setAll(id, {{"LocalIP", "127.0.0.1"}, {"LocalPort", port}}), GW_OK);

    QCOMPARE(set(first, "ConnectState", "true"), quint32(GW_ERR_PORT_IN_USE));
    QCOMPARE(get(first, "ConnectState"), QByteArray("false"));
    QVERIFY(!reserved().contains(port));
    tcpHolder.close();
    udpHolder.close();
    QCOMPARE(set(first, "ConnectState", "true"), GW_OK);
    QCOMPARE(get(first, "ConnectState"), QByteArray("true"));
    QVERIFY(reserved().contains(port));
    QCOMPARE(set(second, "ConnectState", "true"), quint32(GW_ERR_PORT_IN_USE));
    QCOMPARE(set(first, "ConnectState", "false"), GW_OK);
    QVERIFY(!reserved().contains(port));
    QCOMPARE(set(second, "ConnectState", "true"), GW_OK);
    QCOMPARE(GW_PF_DeleteModule(first), GW_OK);
    QCOMPARE(GW_PF_DeleteModule(second), GW_OK);
}

// The switch of a TCP client device: on while it tries for a first
// connection (failed attempts fire nothing), off with event 2 when the
// connection is lost, on again when it reconnects by itself; switched off
// while retrying, it tries no more.
void tst_GatewayStreams::tcpClient_switchFollowsTheConnection()
{
    const quint16 port = freePort();
    const int id = add("TcpClientModule");
    QCOMPARE(setAll(id, {{"TargetPort", QByteArray::number(port)}, {"ReconnectInterval", "100"},
                         {"ConnectState", "true"}}),
             GW_OK);
    QCOMPARE(get(id, "ConnectState"), QByteArray("true"));
    QTcpServer listener;
    QTcpSocket *peer = nullptr;
    for (int connection = 1; connection <= 2; ++connection) {
        QVERIFY(listener.listen(QHostAddress::LocalHost, port));
        QTRY_VERIFY_WITH_TIMEOUT(listener.hasPendingConnections() || listener.waitForNewConnection(50), 10000);
        QVERIFY(peer = listener.nextPendingConnection());
        QTRY_COMPARE(m_recorder.eventCount(GW_EVENT_CONNECTED, id), connection);
        QCOMPARE(m_recorder.eventCount(GW_EVENT_DISCONNECTED, id), connection - 1);
        QCOMPARE(get(id, "ConnectState"), QByteArray("true"));
        QCOMPARE(GW_PF_WriteString(id, -1, "ping\n"), GW_OK);
        QByteArray got;
        QTRY_COMPARE(got += peer->readAll(), QByteArray("ping\n"));

        listener.close();
        peer->abort();
        QTRY_COMPARE(m_recorder.eventCount(GW_EVENT_DISCONNECTED, id), connection);
        QCOMPARE(get(id, "ConnectState"), QByteArray("false"));
    }

    QCOMPARE(set(id, "ConnectState", "false"), GW_OK);
    QVERIFY(listener.listen(QHostAddress::LocalHost, port));
    QTest::qWait(600); // several retry intervals
    QVERIFY(!listener.hasPendingConnections());
    QCOMPARE(m_recorder.eventCount(GW_EVENT_CONNECTED, id), 2);
    QCOMPARE(GW_PF_DeleteModule(id), GW_OK);
}

void tst_GatewayStreams::udp_bothWays_eachDatagramFramedAlone()
{
    QUdpSocket peer;
    QVERIFY(peer.bind(QHostAddress(QHostAddress::LocalHost), 0));
    const quint16 devicePort = freePort();
    const int id = add("UdpModule");
    QCOMPARE(setAll(id, {{"LocalIP", "127.0.0.1"}, {"LocalPort", QByteArray::number(devicePort)},
                         {"TargetPort", QByteArray::number(peer.localPort())}, {"EndChar", "\n"},
                         {"ConnectState", "true"}}),
             GW_OK);
    QCOMPARE(GW_PF_WriteString(id, -1, "to peer"), GW_OK);
    QTRY_VERIFY(peer.hasPendingDatagrams());
    QCOMPARE(peer.receiveDatagram().data(), QByteArray("to peer"));

    // A datagram ends its last frame, with or without the end character.
    for (const char *datagram : {"no end", "one\ntwo", "three\n"})
        peer.writeDatagram(datagram, QHostAddress::LocalHost, devicePort);
    QTRY_COMPARE(m_recorder.frames(id), (Frames{"no end", "one\n", "two", "three\n"}));
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
    QCOMPARE(setAll(id, {{"PortName", name}, {"BaudRate", "115200"}, {"EndChar", "\n"}, {"ConnectState", "true"}}),
             GW_OK);
    QTRY_COMPARE(m_recorder.eventCount(GW_EVENT_CONNECTED, id), 1);

    QVERIFY(::write(master, "T1 OK\nT2", 8) == 8);
    QTRY_COMPARE(m_recorder.frames(id), Frames{"T1 OK\n"});

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
