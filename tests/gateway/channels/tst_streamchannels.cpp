#include "ChannelProbe.h"
#include "GwErrorCodes.h"
#include "StreamChannel.h"

#include <QNetworkDatagram>
#include <QSocketNotifier>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUdpSocket>
#include <QtTest>

#include <fcntl.h>
#include <memory>
#include <pty.h>
#include <unistd.h>

using Params = StreamChannel::Params;
using ChannelPtr = std::unique_ptr<StreamChannel>;
Q_DECLARE_METATYPE(Params)

class tst_StreamChannels : public QObject
{
    Q_OBJECT
private slots:
    void create_data();
    void create();
    void open_refused_data();
    void open_refused();
    void open_portInUse_data();
    void open_portInUse();
    void server_receivesFrames_data();
    void server_receivesFrames();
    void server_writeReachesEveryPeer();
    void server_maxConnections_refusesExtraPeer();
    void client_followsListener_data();
    void client_followsListener();
    void client_closeStopsRetries();
    void udp_bothWays();
    void serial_overPseudoTerminal();

private:
    static ChannelPtr make(const QByteArray &type)
    {
        return ChannelPtr(StreamChannel::create(type));
    }
    static Params serverParams(quint16 port, const QByteArray &endChar, int maxConnections = 8)
    {
        return {{"LocalIP", "127.0.0.1"},
                {"LocalPort", QByteArray::number(port)},
                {"MaxConnections", QByteArray::number(maxConnections)},
                {"EndChar", endChar}};
    }
    static std::unique_ptr<QTcpSocket> connectedPeer(quint16 port)
    {
        auto peer = std::make_unique<QTcpSocket>();
        peer->connectToHost(QHostAddress::LocalHost, port);
        peer->waitForConnected(5000);
        return peer;
    }
};

void tst_StreamChannels::create_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<bool>("hasChannel");
    QTest::newRow("TCP client") << QByteArray("TcpClientModule") << true;
    QTest::newRow("Insight is a TCP client") << QByteArray("InsightModule") << true;
    QTest::newRow("TCP server") << QByteArray("TcpServerModule") << true;
    QTest::newRow("UDP") << QByteArray("UdpModule") << true;
    QTest::newRow("serial") << QByteArray("SerialModule") << true;
    QTest::newRow("fieldbus has none") << QByteArray("ProfinetModule") << false;
    QTest::newRow("unknown type") << QByteArray("NoSuchModule") << false;
}

// A fresh channel of every kind is closed, holds nothing and refuses to send.
void tst_StreamChannels::create()
{
    QFETCH(QByteArray, type);
    QFETCH(bool, hasChannel);
    ChannelPtr channel = make(type);
    QCOMPARE(channel != nullptr, hasChannel);
    if (!channel)
        return;
    QVERIFY(!channel->isOpen());
    QVERIFY(!channel->connectState());
    QVERIFY(channel->reservedPorts().isEmpty());
    QCOMPARE(channel->write("x"), GW_ERR_NOT_OPEN);
    channel->close(); // idempotent on a closed channel
    QVERIFY(!channel->isOpen());
}

void tst_StreamChannels::open_refused_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<Params>("params");
    QTest::addColumn<quint32>("code");
    const QByteArray port = QByteArray::number(freeTcpPort());
    const Params server{{"LocalIP", "127.0.0.1"}, {"LocalPort", port}, {"MaxConnections", "4"}};
    const Params client{{"TargetIP", "127.0.0.1"}, {"TargetPort", port}, {"ReconnectInterval", "100"}};
    const Params udp{{"LocalIP", "127.0.0.1"}, {"LocalPort", port}, {"TargetIP", "127.0.0.1"}, {"TargetPort", port}};
    const Params serial{{"PortName", "/dev/null"}, {"BaudRate", "9600"}, {"DataBits", "8"}};
    auto with = [](Params p, const QByteArray &key, const QByteArray &value) {
        p[key] = value;
        return p;
    };
    QTest::newRow("server port 0") << QByteArray("TcpServerModule") << with(server, "LocalPort", "0")
                                   << GW_ERR_INVALID_VALUE;
    QTest::newRow("server no connections") << QByteArray("TcpServerModule") << with(server, "MaxConnections", "0")
                                           << GW_ERR_INVALID_VALUE;
    QTest::newRow("server IP garbage") << QByteArray("TcpServerModule") << with(server, "LocalIP", "host")
                                       << GW_ERR_INVALID_VALUE;
    QTest::newRow("server IPv6") << QByteArray("TcpServerModule") << with(server, "LocalIP", "::1")
                                 << GW_ERR_INVALID_VALUE;
    QTest::newRow("server address not of this host")
        << QByteArray("TcpServerModule") << with(server, "LocalIP", "192.0.2.1") << GW_ERR_OPEN_FAILED;
    QTest::newRow("client no target") << QByteArray("TcpClientModule") << with(client, "TargetIP", "")
                                      << GW_ERR_INVALID_VALUE;
    QTest::newRow("client interval too short")
        << QByteArray("TcpClientModule") << with(client, "ReconnectInterval", "99") << GW_ERR_INVALID_VALUE;
    QTest::newRow("client reconnect not a bool")
        << QByteArray("InsightModule") << with(client, "AutoReconnect", "sometimes") << GW_ERR_INVALID_VALUE;
    QTest::newRow("udp target port 0") << QByteArray("UdpModule") << with(udp, "TargetPort", "0")
                                       << GW_ERR_INVALID_VALUE;
    QTest::newRow("udp target IP short") << QByteArray("UdpModule") << with(udp, "TargetIP", "1.2.3")
                                         << GW_ERR_INVALID_VALUE;
    QTest::newRow("udp address not of this host") << QByteArray("UdpModule") << with(udp, "LocalIP", "192.0.2.1")
                                                  << GW_ERR_OPEN_FAILED;
    QTest::newRow("serial no name") << QByteArray("SerialModule") << with(serial, "PortName", "")
                                    << GW_ERR_INVALID_VALUE;
    QTest::newRow("serial nine data bits") << QByteArray("SerialModule") << with(serial, "DataBits", "9")
                                           << GW_ERR_INVALID_VALUE;
    QTest::newRow("serial parity code 1") << QByteArray("SerialModule") << with(serial, "Parity", "1")
                                          << GW_ERR_INVALID_VALUE;
    QTest::newRow("serial flow control 3") << QByteArray("SerialModule") << with(serial, "FlowControl", "3")
                                           << GW_ERR_INVALID_VALUE;
    QTest::newRow("serial missing device") << QByteArray("SerialModule")
                                           << with(serial, "PortName", "/dev/no-such-tty-here") << GW_ERR_OPEN_FAILED;
}

// Bad values and unusable devices are refused with nothing left open.
void tst_StreamChannels::open_refused()
{
    QFETCH(QByteArray, type);
    QFETCH(Params, params);
    QFETCH(quint32, code);
    ChannelPtr channel = make(type);
    ChannelProbe probe(channel.get());
    QCOMPARE(channel->open(params), code);
    QVERIFY(!channel->isOpen());
    QVERIFY(!channel->connectState());
    QVERIFY(channel->reservedPorts().isEmpty());
    QCOMPARE(channel->write("x"), GW_ERR_NOT_OPEN);
    QCoreApplication::processEvents();
    QCOMPARE(probe.ups(), 0);
}

void tst_StreamChannels::open_portInUse_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::newRow("TCP server") << QByteArray("TcpServerModule");
    QTest::newRow("UDP") << QByteArray("UdpModule");
}

// A taken local port is refused; once it is free the same channel opens.
void tst_StreamChannels::open_portInUse()
{
    QFETCH(QByteArray, type);
    const bool udp = type == "UdpModule";
    QTcpServer tcpHolder;
    QUdpSocket udpHolder;
    QVERIFY(udp ? udpHolder.bind(QHostAddress(QHostAddress::LocalHost), 0) : tcpHolder.listen(QHostAddress::LocalHost, 0));
    const quint16 port = udp ? udpHolder.localPort() : tcpHolder.serverPort();
    Params params = serverParams(port, "\r\n");
    params["TargetIP"] = "127.0.0.1";
    params["TargetPort"] = "9";

    ChannelPtr channel = make(type);
    QCOMPARE(channel->open(params), GW_ERR_PORT_IN_USE);
    QVERIFY(!channel->isOpen());
    QVERIFY(channel->reservedPorts().isEmpty());

    udpHolder.close();
    tcpHolder.close();
    QCOMPARE(channel->open(params), GW_OK);
    QVERIFY(channel->isOpen());
    QVERIFY(channel->connectState());
    QCOMPARE(channel->reservedPorts(), QList<quint16>{port});
    // The port is held until close and released by it.
    ChannelPtr second = make(type);
    QCOMPARE(second->open(params), GW_ERR_PORT_IN_USE);
    channel->close();
    QVERIFY(channel->reservedPorts().isEmpty());
    QCOMPARE(second->open(params), GW_OK);
}

void tst_StreamChannels::server_receivesFrames_data()
{
    QTest::addColumn<QByteArray>("endChar");
    QTest::addColumn<QList<QByteArray>>("writes");
    QTest::addColumn<QList<QByteArray>>("frames");
    using L = QList<QByteArray>;
    QTest::newRow("CR LF lines in one write") << QByteArray("\r\n") << L{"one\r\ntwo\r\n"} << L{"one\r\n", "two\r\n"};
    QTest::newRow("frame split across many writes")
        << QByteArray("\r\n") << L{"hel", "lo ", "wor", "ld\r", "\nnext", "\r\n"} << L{"hello world\r\n", "next\r\n"};
    QTest::newRow("single end byte") << QByteArray(";") << L{"1;2", ";3;"} << L{"1;", "2;", "3;"};
}

// Frames from a plain TCP peer arrive whole and in order, end sequence kept.
void tst_StreamChannels::server_receivesFrames()
{
    QFETCH(QByteArray, endChar);
    QFETCH(QList<QByteArray>, writes);
    QFETCH(QList<QByteArray>, frames);
    const quint16 port = freeTcpPort();
    ChannelPtr channel = make("TcpServerModule");
    ChannelProbe probe(channel.get());
    QCOMPARE(channel->open(serverParams(port, endChar)), GW_OK);
    QTRY_COMPARE(probe.ups(), 1);

    auto peer = connectedPeer(port);
    QCOMPARE(peer->state(), QAbstractSocket::ConnectedState);
    for (const QByteArray &chunk : writes) {
        peer->write(chunk);
        QVERIFY(peer->waitForBytesWritten(5000));
    }
    QTRY_COMPARE(probe.frames(), frames);
    QCOMPARE(probe.downs(), 0);
    QCOMPARE(channel->droppedFrames(), quint64(0));
}

// Every connected peer gets what is written; with nobody connected write is refused.
void tst_StreamChannels::server_writeReachesEveryPeer()
{
    const quint16 port = freeTcpPort();
    ChannelPtr channel = make("TcpServerModule");
    ChannelProbe probe(channel.get());
    QCOMPARE(channel->open(serverParams(port, "\n")), GW_OK);
    QCOMPARE(channel->write("nobody\n"), GW_ERR_NOT_OPEN);

    auto first = connectedPeer(port);
    auto second = connectedPeer(port);
    first->write("a\n");
    second->write("b\n");
    QTRY_COMPARE(probe.frameCount(), 2); // both accepted by the channel

    QCOMPARE(channel->write("to all\n"), GW_OK);
    QTRY_COMPARE(first->bytesAvailable(), qint64(7));
    QTRY_COMPARE(second->bytesAvailable(), qint64(7));
    QCOMPARE(first->readAll(), QByteArray("to all\n"));
    QCOMPARE(second->readAll(), QByteArray("to all\n"));

    first->disconnectFromHost();
    second->disconnectFromHost();
    QTRY_COMPARE(channel->write("gone\n"), GW_ERR_NOT_OPEN);
    QVERIFY(channel->isOpen()); // peers leaving do not stop the server
    QCOMPARE(probe.downs(), 0);
}

// One peer beyond MaxConnections is closed at once with a log line; a slot
// freed by a leaving peer is used again.
void tst_StreamChannels::server_maxConnections_refusesExtraPeer()
{
    const quint16 port = freeTcpPort();
    ChannelPtr channel = make("TcpServerModule");
    ChannelProbe probe(channel.get());
    QCOMPARE(channel->open(serverParams(port, "\n", 1)), GW_OK);

    auto first = connectedPeer(port);
    first->write("first\n");
    QTRY_COMPARE(probe.frameCount(), 1);

    auto extra = connectedPeer(port);
    QTRY_COMPARE(extra->state(), QAbstractSocket::UnconnectedState);
    QTRY_COMPARE(probe.logs().size(), 1);
    QVERIFY2(probe.logs().first().contains(QLatin1String("refused")), qPrintable(probe.logs().first()));

    first->disconnectFromHost();
    QTRY_COMPARE(channel->write("x\n"), GW_ERR_NOT_OPEN);
    auto third = connectedPeer(port);
    third->write("third\n");
    QTRY_COMPARE(probe.frames(), (QList<QByteArray>{"first\n", "third\n"}));
    QCOMPARE(third->state(), QAbstractSocket::ConnectedState);
}

void tst_StreamChannels::client_followsListener_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<bool>("autoReconnect");
    QTest::newRow("reconnects") << QByteArray("TcpClientModule") << true;
    QTest::newRow("closes without reconnect") << QByteArray("TcpClientModule") << false;
    QTest::newRow("Insight reconnects") << QByteArray("InsightModule") << true;
}

// The client is up with its listener's peer, down when it goes, and either
// comes back with a new listener or closes.
void tst_StreamChannels::client_followsListener()
{
    QFETCH(QByteArray, type);
    QFETCH(bool, autoReconnect);
    QTcpServer listener;
    QVERIFY(listener.listen(QHostAddress::LocalHost, 0));
    const quint16 port = listener.serverPort();
    ChannelPtr channel = make(type);
    ChannelProbe probe(channel.get());
    const Params params{{"TargetIP", "127.0.0.1"},
                        {"TargetPort", QByteArray::number(port)},
                        {"ReconnectInterval", "100"},
                        {"AutoReconnect", autoReconnect ? "true" : "false"},
                        {"EndChar", "\r\n"}};
    QCOMPARE(channel->open(params), GW_OK);
    QTRY_COMPARE(probe.ups(), 1);
    QVERIFY(channel->connectState());
    QVERIFY(channel->reservedPorts().isEmpty());
    QTRY_VERIFY(listener.hasPendingConnections());
    std::unique_ptr<QTcpSocket> peer(listener.nextPendingConnection());

    peer->write("from listener\r\n");
    QTRY_COMPARE(probe.frames(), QList<QByteArray>{"from listener\r\n"});
    QCOMPARE(channel->write("from client"), GW_OK);
    QTRY_COMPARE(peer->bytesAvailable(), qint64(11));
    QCOMPARE(peer->readAll(), QByteArray("from client"));

    listener.close();
    peer->abort();
    QTRY_COMPARE(probe.downs(), 1);
    QVERIFY(!channel->connectState());
    QCOMPARE(channel->write("lost"), GW_ERR_NOT_OPEN);
    QCOMPARE(channel->isOpen(), autoReconnect);
    if (!autoReconnect)
        return;

    QVERIFY(listener.listen(QHostAddress::LocalHost, port));
    QTRY_COMPARE(probe.ups(), 2);
    QVERIFY(channel->connectState());
    QCOMPARE(probe.downs(), 1);
}

// Before a first connection the switch reads on and nothing fires; close
// stops the retries for good.
void tst_StreamChannels::client_closeStopsRetries()
{
    const quint16 port = freeTcpPort();
    ChannelPtr channel = make("TcpClientModule");
    ChannelProbe probe(channel.get());
    const Params params{{"TargetIP", "127.0.0.1"}, {"TargetPort", QByteArray::number(port)}, {"ReconnectInterval", "100"}};
    QCOMPARE(channel->open(params), GW_OK);
    QVERIFY(channel->isOpen());
    QVERIFY(channel->connectState());
    channel->close();
    QVERIFY(!channel->isOpen());
    QVERIFY(!channel->connectState());

    QTcpServer listener;
    QVERIFY(listener.listen(QHostAddress::LocalHost, port));
    // Several retry intervals in which a stopped channel must not connect.
    QTest::qWait(600);
    QVERIFY(!listener.hasPendingConnections());
    QCOMPARE(probe.ups(), 0);
    QCOMPARE(probe.downs(), 0);
}

// Datagrams go to the target; received ones are framed like a stream.
void tst_StreamChannels::udp_bothWays()
{
    QUdpSocket peer;
    QVERIFY(peer.bind(QHostAddress(QHostAddress::LocalHost), 0));
    const quint16 local = freeUdpPort();
    ChannelPtr channel = make("UdpModule");
    ChannelProbe probe(channel.get());
    const Params params{{"LocalIP", "127.0.0.1"},
                        {"LocalPort", QByteArray::number(local)},
                        {"TargetIP", "127.0.0.1"},
                        {"TargetPort", QByteArray::number(peer.localPort())},
                        {"EndChar", "\r\n"}};
    QCOMPARE(channel->open(params), GW_OK);
    QTRY_COMPARE(probe.ups(), 1);
    QCOMPARE(channel->reservedPorts(), QList<quint16>{local});

    QCOMPARE(channel->write("to peer"), GW_OK);
    QTRY_VERIFY(peer.hasPendingDatagrams());
    const QNetworkDatagram got = peer.receiveDatagram();
    QCOMPARE(got.data(), QByteArray("to peer"));
    QCOMPARE(got.senderPort(), int(local));

    peer.writeDatagram("a\r\nb", QHostAddress::LocalHost, local);
    peer.writeDatagram("c\r\n", QHostAddress::LocalHost, local);
    QTRY_COMPARE(probe.frames(), (QList<QByteArray>{"a\r\n", "bc\r\n"}));
}

// Bytes both ways through a pseudo-terminal; the port vanishing closes the
// channel and reports it down.
void tst_StreamChannels::serial_overPseudoTerminal()
{
    int master = -1;
    int slave = -1;
    char name[256] = {};
    if (openpty(&master, &slave, name, nullptr, nullptr) != 0)
        QSKIP("openpty failed: no pseudo-terminals on this machine");
    ::close(slave); // the channel opens the slave by its path
    fcntl(master, F_SETFL, fcntl(master, F_GETFL) | O_NONBLOCK);
    bool masterOpen = true;
    auto closeMaster = qScopeGuard([&] {
        if (masterOpen)
            ::close(master);
    });

    ChannelPtr channel = make("SerialModule");
    ChannelProbe probe(channel.get());
    const Params params{{"PortName", name},  {"BaudRate", "115200"}, {"DataBits", "8"}, {"Parity", "0"},
                        {"StopBits", "1"},   {"FlowControl", "0"},   {"EndChar", "\n"}};
    QCOMPARE(channel->open(params), GW_OK);
    QTRY_COMPARE(probe.ups(), 1);
    QVERIFY(channel->connectState());

    QCOMPARE(channel->write("ping\n"), GW_OK);
    QByteArray fromPort;
    QTRY_VERIFY([&] {
        char buf[64];
        const ssize_t n = ::read(master, buf, sizeof buf);
        if (n > 0)
            fromPort.append(buf, int(n));
        return fromPort == "ping\n";
    }());

    QCOMPARE(::write(master, "po", 2), ssize_t(2));
    QCOMPARE(::write(master, "ng\n", 3), ssize_t(3));
    QTRY_COMPARE(probe.frames(), QList<QByteArray>{"pong\n"});

    ::close(master);
    masterOpen = false;
    QTRY_COMPARE(probe.downs(), 1);
    QVERIFY(!channel->isOpen());
    QVERIFY(!channel->connectState());
    QCOMPARE(channel->write("gone\n"), GW_ERR_NOT_OPEN);
}

QTEST_GUILESS_MAIN(tst_StreamChannels)
#include "tst_streamchannels.moc"
