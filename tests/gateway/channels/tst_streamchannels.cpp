#include "ChannelProbe.h"
#include "GwErrorCodes.h"
#include "StreamChannel.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QUdpSocket>
#include <QtTest>

#include <memory>

using Params = StreamChannel::Params;
using ChannelPtr = std::unique_ptr<StreamChannel>;
Q_DECLARE_METATYPE(Params)

class tst_StreamChannels : public QObject
{
    Q_OBJECT
private slots:
    void open_refused_data();
    void open_refused();
    void open_portInUse_data();
    void open_portInUse();
    void server_maxConnections_refusesExtraPeer();
    void server_heldInput_resumesWithoutLoss_data();
    void server_heldInput_resumesWithoutLoss();
    void client_closeStopsRetries();

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

void tst_StreamChannels::server_heldInput_resumesWithoutLoss_data()
{
    QTest::addColumn<bool>("consumerBehind"); // else the gateway's clients are
    QTest::newRow("consumer behind") << true;
    QTest::newRow("clients behind") << false;
}

// While input is held the device reads no more than its bound, the peer's
// writes back up in TCP, and once input resumes every byte arrives in order.
void tst_StreamChannels::server_heldInput_resumesWithoutLoss()
{
    QFETCH(bool, consumerBehind);
    const quint16 port = freeTcpPort();
    ChannelPtr channel = make("TcpServerModule");
    ChannelProbe probe(channel.get());
    QCOMPARE(channel->open(serverParams(port, "")), GW_OK);
    auto peer = connectedPeer(port);
    QTRY_VERIFY(channel->write("hello") == GW_OK); // the peer is accepted

    if (consumerBehind)
        probe.setTaking(channel.get(), false);
    else
        StreamChannel::holdAllInput(true);
    QByteArray sent;
    for (int i = 0; sent.size() < 3 * StreamChannel::kMaxInFlightBytes; ++i)
        sent += QByteArray(64 * 1024, char('a' + i % 26));
    peer->write(sent);
    QTest::qWait(300);
    QTRY_VERIFY(peer->bytesToWrite() > 0); // TCP is pushing back
    const qint64 heldAt = probe.byteCount();
    QVERIFY2(heldAt <= StreamChannel::kMaxInFlightBytes + 1024 * 1024, QByteArray::number(heldAt));

    if (consumerBehind) {
        probe.setTaking(channel.get(), true);
    } else {
        StreamChannel::holdAllInput(false);
        channel->resumeInput();
    }
    QTRY_COMPARE_WITH_TIMEOUT(probe.byteCount(), qint64(sent.size()), 10000);
    QByteArray got;
    for (const QByteArray &frame : probe.frames())
        got += frame;
    QVERIFY(got == sent);
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

QTEST_GUILESS_MAIN(tst_StreamChannels)
#include "tst_streamchannels.moc"
