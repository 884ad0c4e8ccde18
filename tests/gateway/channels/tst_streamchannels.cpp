// The channels on their own: devices that cannot be opened, parameters the
// daemon never leaves out, and flow control. The rules of the values are
// ParamSchema's (tst_paramschema); through the daemon, tst_gatewaystreams
// covers peers, ports and the switch rule.
#include "ChannelProbe.h"
#include "GwErrorCodes.h"
#include "StreamChannel.h"

#include <QTcpSocket>
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
    void server_heldInput_resumesWithoutLoss_data();
    void server_heldInput_resumesWithoutLoss();
};

void tst_StreamChannels::open_refused_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<Params>("params");
    QTest::addColumn<quint32>("code");
    const QByteArray port = QByteArray::number(freeTcpPort());
    const Params client{{"TargetPort", port}, {"ReconnectInterval", "100"}};
    const QMap<QByteArray, Params> usable{
        {"TcpServerModule", {{"LocalIP", "127.0.0.1"}, {"LocalPort", port}}},
        {"TcpClientModule", client},
        {"InsightModule", client},
        {"UdpModule", {{"LocalIP", "127.0.0.1"}, {"LocalPort", port}, {"TargetPort", port}}},
        {"SerialModule", {{"PortName", "/dev/null"}}}};
    // What the daemon would pass for the type, with one value changed or,
    // when `value` is null, one key left out.
    auto row = [&](const char *name, const QByteArray &type, const QByteArray &key, const QByteArray &value,
                   quint32 code) {
        Params params = channelParams(type, usable.value(type));
        if (value.isNull())
            params.remove(key);
        else
            params[key] = value;
        QTest::newRow(name) << type << params << code;
    };
    const QByteArray leftOut;
    row("server address not of this host", "TcpServerModule", "LocalIP", "192.0.2.1", GW_ERR_OPEN_FAILED);
    row("server without its port", "TcpServerModule", "LocalPort", leftOut, GW_ERR_INVALID_VALUE);
    row("client without its end char", "TcpClientModule", "EndChar", leftOut, GW_ERR_INVALID_VALUE);
    row("client without reconnecting", "InsightModule", "AutoReconnect", leftOut, GW_ERR_INVALID_VALUE);
    row("udp address not of this host", "UdpModule", "LocalIP", "192.0.2.1", GW_ERR_OPEN_FAILED);
    row("udp without its target", "UdpModule", "TargetIP", leftOut, GW_ERR_INVALID_VALUE);
    row("serial no port chosen", "SerialModule", "PortName", "", GW_ERR_INVALID_VALUE);
    row("serial missing device", "SerialModule", "PortName", "/dev/no-such-tty-here", GW_ERR_OPEN_FAILED);
    row("serial without its stop bits", "SerialModule", "StopBits", leftOut, GW_ERR_INVALID_VALUE);
}

// Unusable devices, and parameters that bypassed the schema, are refused
// with nothing left open.
void tst_StreamChannels::open_refused()
{
    QFETCH(QByteArray, type);
    QFETCH(Params, params);
    QFETCH(quint32, code);
    ChannelPtr channel(StreamChannel::create(type));
    ChannelProbe probe(channel.get());
    QCOMPARE(channel->open(params), code);
    QVERIFY(!channel->isOpen());
    QVERIFY(!channel->connectState());
    QVERIFY(channel->reservedPorts().isEmpty());
    QCOMPARE(channel->write("x"), GW_ERR_NOT_OPEN);
    QCOMPARE(probe.ups(), 0);
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
    ChannelPtr channel(StreamChannel::create("TcpServerModule"));
    ChannelProbe probe(channel.get());
    const Params params = channelParams(
        "TcpServerModule", {{"LocalIP", "127.0.0.1"}, {"LocalPort", QByteArray::number(port)}, {"EndChar", ""}});
    QCOMPARE(channel->open(params), GW_OK);
    QTcpSocket peer;
    peer.connectToHost(QHostAddress::LocalHost, port);
    QVERIFY(peer.waitForConnected(5000));
    QTRY_VERIFY(channel->write("hello") == GW_OK); // the peer is accepted

    if (consumerBehind)
        probe.setTaking(false);
    else
        StreamChannel::holdAllInput(true);
    QByteArray sent;
    for (int i = 0; sent.size() < 3 * StreamChannel::kMaxInFlightBytes; ++i)
        sent += QByteArray(64 * 1024, char('a' + i % 26));
    peer.write(sent);
    QTest::qWait(300);
    QTRY_VERIFY(peer.bytesToWrite() > 0); // TCP is pushing back
    const qint64 heldAt = probe.byteCount();
    QVERIFY2(heldAt <= StreamChannel::kMaxInFlightBytes + 1024 * 1024, QByteArray::number(heldAt));

    if (consumerBehind) {
        probe.setTaking(true);
    } else {
        StreamChannel::holdAllInput(false);
        channel->resumeInput();
    }
    QTRY_COMPARE_WITH_TIMEOUT(probe.byteCount(), qint64(sent.size()), 10000);
    QVERIFY(probe.frames().join() == sent);
}

QTEST_GUILESS_MAIN(tst_StreamChannels)
#include "tst_streamchannels.moc"
