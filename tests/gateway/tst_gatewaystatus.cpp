// The state, counters and peers of the real gateway's stream devices against
// ordinary peers: every state change is pushed as an event, and the counters
// match what the peers sent and received.
#include "GatewayProcess.h"
#include "GwCallbackRecorder.h"
#include "GwTestCalls.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>
#include <fcntl.h>
#include <pty.h>
#include <unistd.h>

using namespace GwTestCalls;
using States = QList<int>;

namespace {
// "RxBytes=1;TxBytes=2;..." as a map.
QMap<QByteArray, QByteArray> counters(int id)
{
    QMap<QByteArray, QByteArray> map;
    for (const QByteArray &pair : get(id, "Counters").split(';')) {
        const int eq = pair.indexOf('=');
        if (eq > 0)
            map.insert(pair.left(eq), pair.mid(eq + 1));
    }
    return map;
}

QByteArray counter(int id, const char *name)
{
    return counters(id).value(name);
}

QList<QByteArray> peerLines(int id)
{
    const QByteArray text = get(id, "Peers");
    return text.isEmpty() ? QList<QByteArray>() : text.split('\n');
}

QByteArray localAddress(const QTcpSocket &socket)
{
    return socket.localAddress().toString().toLatin1() + ':' + QByteArray::number(socket.localPort());
}

// A pseudo-terminal whose slave side is reached through a fixed link, so
// that the port can vanish (master closed, link removed) and come back
// under the same name.
class PtyPort
{
public:
    explicit PtyPort(const QString &link) : m_link(link) {}
    ~PtyPort() { remove(); }
    bool plug()
    {
        int slave = -1;
        char name[256] = {};
        if (openpty(&m_master, &slave, name, nullptr, nullptr) != 0)
            return false;
        ::close(slave); // the gateway opens the slave side by its name
        fcntl(m_master, F_SETFL, O_NONBLOCK);
        QFile::remove(m_link);
        return QFile::link(QString::fromLocal8Bit(name), m_link);
    }
    void remove()
    {
        QFile::remove(m_link);
        if (m_master >= 0)
            ::close(m_master);
        m_master = -1;
    }
    bool write(const QByteArray &bytes) { return ::write(m_master, bytes.constData(), size_t(bytes.size())) == bytes.size(); }
    QByteArray read()
    {
        char buffer[256];
        const ssize_t n = ::read(m_master, buffer, sizeof(buffer));
        return n > 0 ? QByteArray(buffer, int(n)) : QByteArray();
    }

private:
    QString m_link;
    int m_master = -1;
};
} // namespace

class tst_GatewayStatus : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void tcpServer_peersCountersLimitAndDrop();
    void tcpClient_refusedConnectedLostAndBack();
    void serial_portGoneAndBack();
    void statusKeys_writesRefusedOrRun_data();
    void statusKeys_writesRefusedOrRun();

private:
    GatewayProcess m_gw;
    GwCallbackRecorder m_recorder;
};

void tst_GatewayStatus::initTestCase()
{
    QVERIFY2(m_gw.start(), qPrintable(m_gw.error()));
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", m_gw.port(), 101), GW_OK);
    m_recorder.install();
}

void tst_GatewayStatus::cleanupTestCase()
{
    GW_PF_DeInit();
    QVERIFY(m_gw.stop());
}

void tst_GatewayStatus::init()
{
    m_recorder.clear();
}

// Listening without peers, Connected with them; each peer listed with what
// it sent and got; the peer over the limit refused and counted as an error;
// a peer dropped on request; counters reset.
void tst_GatewayStatus::tcpServer_peersCountersLimitAndDrop()
{
    const quint16 port = freePort();
    const int id = add("TcpServerModule");
    QCOMPARE(get(id, "Status"), QByteArray("Closed"));
    QCOMPARE(setAll(id, {{"LocalIP", "127.0.0.1"}, {"LocalPort", QByteArray::number(port)}, {"MaxConnections", "2"},
                         {"EndChar", "\n"}, {"ConnectState", "true"}}),
             GW_OK);
    QTRY_COMPARE(m_recorder.states(id), States{GW_DEVICE_LISTENING});
    QCOMPARE(get(id, "Status"), QByteArray("Listening"));
    QVERIFY(get(id, "StatusDetail").contains("0 of 2 peers"));

    QTcpSocket a, b, extra;
    a.connectToHost(QHostAddress::LocalHost, port);
    QVERIFY(a.waitForConnected(3000));
    QTRY_COMPARE(m_recorder.states(id), (States{GW_DEVICE_LISTENING, GW_DEVICE_CONNECTED}));
    a.write("abc\n12\nhalf");
    QTRY_COMPARE(m_recorder.frames(id).size(), 2);
    QCOMPARE(GW_PF_WriteString(id, -1, "hello"), GW_OK);
    QByteArray got;
    QTRY_COMPARE(got += a.readAll(), QByteArray("hello"));
    QTRY_COMPARE(counter(id, "RxBytes"), QByteArray("11"));
    QCOMPARE(counter(id, "RxFrames"), QByteArray("2"));
    QCOMPARE(counter(id, "TxBytes"), QByteArray("5"));
    QCOMPARE(counter(id, "TxFrames"), QByteArray("1"));
    QCOMPARE(counter(id, "Errors"), QByteArray("0"));
    QVERIFY(QDateTime::fromString(QString::fromLatin1(counter(id, "Since")), Qt::ISODate).isValid());
    QList<QByteArray> peers = peerLines(id);
    QCOMPARE(peers.size(), 1);
    QList<QByteArray> fields = peers[0].split(';');
    QCOMPARE(fields.size(), 5);
    QCOMPARE(fields[0], localAddress(a));
    QCOMPARE(fields[2], QByteArray("11"));
    QCOMPARE(fields[3], QByteArray("5"));
    // A frame over the length limit is dropped and counted.
    a.write(QByteArray(70 * 1024, 'x') + "\nok\n");
    QTRY_COMPARE(counter(id, "Dropped"), QByteArray("1"));
    QTRY_COMPARE(m_recorder.frames(id).size(), 3);

    b.connectToHost(QHostAddress::LocalHost, port);
    QVERIFY(b.waitForConnected(3000));
    QTRY_COMPARE(peerLines(id).size(), 2);
    extra.connectToHost(QHostAddress::LocalHost, port);
    QTRY_COMPARE(extra.state(), QAbstractSocket::UnconnectedState);
    QTRY_COMPARE(counter(id, "Errors"), QByteArray("1"));
    QVERIFY2(get(id, "StatusDetail").contains("refused"), get(id, "StatusDetail").constData());
    QCOMPARE(peerLines(id).size(), 2);

    const QByteArray first = localAddress(a);
    QCOMPARE(set(id, "DropPeer", first), GW_OK);
    QTRY_COMPARE(a.state(), QAbstractSocket::UnconnectedState);
    QCOMPARE(peerLines(id).size(), 1);
    QVERIFY(peerLines(id)[0].startsWith(localAddress(b) + ';'));
    QCOMPARE(set(id, "DropPeer", first), quint32(GW_ERR_INVALID_VALUE));
    QTRY_VERIFY(m_gw.log().contains("peer " + first + " dropped by the operator"));

    QCOMPARE(set(id, "ResetCounters", "true"), GW_OK);
    QCOMPARE(counter(id, "RxBytes"), QByteArray("0"));
    QCOMPARE(counter(id, "Errors"), QByteArray("0"));

    b.disconnectFromHost();
    QTRY_COMPARE(m_recorder.states(id).last(), int(GW_DEVICE_LISTENING));
    QCOMPARE(set(id, "ConnectState", "false"), GW_OK);
    QTRY_COMPARE(m_recorder.states(id).last(), int(GW_DEVICE_CLOSED));
    QCOMPARE(get(id, "Peers"), QByteArray());
    QCOMPARE(GW_PF_DeleteModule(id), GW_OK);
}

// Refused while nobody listens (Reconnecting, the system's reason in the
// detail), Connected, Reconnecting when the peer goes, Connected again, each
// change pushed once; counters against what the peer saw.
void tst_GatewayStatus::tcpClient_refusedConnectedLostAndBack()
{
    const quint16 port = freePort();
    const int id = add("TcpClientModule");
    QCOMPARE(setAll(id, {{"TargetPort", QByteArray::number(port)}, {"ReconnectInterval", "100"},
                         {"EndChar", "\n"}, {"ConnectState", "true"}}),
             GW_OK);
    QTRY_COMPARE(m_recorder.states(id), (States{GW_DEVICE_OPENING, GW_DEVICE_RECONNECTING}));
    QCOMPARE(get(id, "Status"), QByteArray("Reconnecting"));
    const QByteArray refused = get(id, "StatusDetail");
    QVERIFY2(refused.contains("refused") && refused.contains("attempt"), refused.constData());
    QVERIFY(counter(id, "Errors").toInt() >= 1);

    QTcpServer listener;
    for (int connection = 1; connection <= 2; ++connection) {
        QVERIFY(listener.listen(QHostAddress::LocalHost, port));
        QTRY_VERIFY_WITH_TIMEOUT(listener.hasPendingConnections() || listener.waitForNewConnection(50), 10000);
        QTcpSocket *peer = listener.nextPendingConnection();
        QVERIFY(peer);
        QTRY_COMPARE(m_recorder.states(id).last(), int(GW_DEVICE_CONNECTED));
        // A first connection after refusals is no reconnection; one after a
        // lost connection is.
        QCOMPARE(counter(id, "Reconnects"), QByteArray::number(connection - 1));
        QCOMPARE(set(id, "ResetCounters", "true"), GW_OK);
        peer->write("one\ntwo\n");
        QTRY_COMPARE(counter(id, "RxFrames"), QByteArray("2"));
        QCOMPARE(counter(id, "RxBytes"), QByteArray("8"));
        QCOMPARE(GW_PF_WriteString(id, -1, "ack\n"), GW_OK);
        QByteArray got;
        QTRY_COMPARE(got += peer->readAll(), QByteArray("ack\n"));
        QCOMPARE(counter(id, "TxBytes"), QByteArray("4"));
        QCOMPARE(counter(id, "TxFrames"), QByteArray("1"));
        QCOMPARE(counter(id, "Errors"), QByteArray("0"));
        if (connection == 2)
            break;
        listener.close();
        peer->abort();
        QTRY_COMPARE(m_recorder.states(id).last(), int(GW_DEVICE_RECONNECTING));
        QVERIFY(get(id, "StatusDetail").contains("lost"));
        QTRY_VERIFY(counter(id, "Errors").toInt() >= 1); // refused while nobody listens
    }
    QCOMPARE(m_recorder.states(id), (States{GW_DEVICE_OPENING, GW_DEVICE_RECONNECTING, GW_DEVICE_CONNECTED,
                                             GW_DEVICE_RECONNECTING, GW_DEVICE_CONNECTED}));
    QCOMPARE(set(id, "ConnectState", "false"), GW_OK);
    QTRY_COMPARE(m_recorder.states(id).last(), int(GW_DEVICE_CLOSED));
    QCOMPARE(GW_PF_DeleteModule(id), GW_OK);
}

// A serial port that vanishes puts the device in PortMissing with the switch
// off; when it comes back under its name the device reopens by itself.
void tst_GatewayStatus::serial_portGoneAndBack()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString link = dir.filePath(QStringLiteral("ttyStatus"));
    PtyPort port(link);
    if (!port.plug())
        QSKIP("no pseudo-terminal pair available (openpty failed)");
    const int id = add("SerialModule");
    QCOMPARE(setAll(id, {{"PortName", link.toUtf8()}, {"BaudRate", "115200"}, {"EndChar", "\n"},
                         {"ConnectState", "true"}}),
             GW_OK);
    QTRY_COMPARE(m_recorder.states(id), States{GW_DEVICE_CONNECTED});
    QVERIFY(port.write("T1\n"));
    QTRY_COMPARE(counter(id, "RxFrames"), QByteArray("1"));

    port.remove();
    QTRY_COMPARE(m_recorder.states(id), (States{GW_DEVICE_CONNECTED, GW_DEVICE_PORT_MISSING}));
    QTRY_COMPARE(m_recorder.eventCount(GW_EVENT_DISCONNECTED, id), 1);
    QCOMPARE(get(id, "Status"), QByteArray("PortMissing"));
    QCOMPARE(get(id, "ConnectState"), QByteArray("false"));
    QVERIFY(get(id, "StatusDetail").contains(link.toUtf8()));
    QCOMPARE(GW_PF_WriteString(id, -1, "lost"), quint32(GW_ERR_NOT_OPEN));

    QVERIFY(port.plug());
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder.states(id).last(), int(GW_DEVICE_CONNECTED), 10000);
    QTRY_COMPARE(m_recorder.eventCount(GW_EVENT_CONNECTED, id), 2); // pushed after the state
    QCOMPARE(get(id, "ConnectState"), QByteArray("true"));
    QCOMPARE(counter(id, "Reconnects"), QByteArray("1"));
    QVERIFY(port.write("T2\n"));
    QTRY_COMPARE(m_recorder.frames(id), (QList<QByteArray>{"T1\n", "T2\n"}));
    QCOMPARE(GW_PF_WriteString(id, -1, "again"), GW_OK);
    QByteArray got;
    QTRY_VERIFY((got += port.read()).contains("again"));
    QCOMPARE(counter(id, "TxBytes"), QByteArray("5"));
    QCOMPARE(GW_PF_DeleteModule(id), GW_OK);
}

void tst_GatewayStatus::statusKeys_writesRefusedOrRun_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<quint32>("expected");
    QTest::newRow("Status is read-only") << QByteArray("TcpServerModule") << QByteArray("Status")
                                         << QByteArray("Connected") << quint32(GW_ERR_NOT_SUPPORTED);
    QTest::newRow("reset takes true or false only") << QByteArray("SerialModule") << QByteArray("ResetCounters")
                                                    << QByteArray("yes") << quint32(GW_ERR_INVALID_VALUE);
    QTest::newRow("drop on a device without peers") << QByteArray("TcpClientModule") << QByteArray("DropPeer")
                                                    << QByteArray("127.0.0.1:1") << quint32(GW_ERR_UNKNOWN_KEY);
    QTest::newRow("drop of an over-long address") << QByteArray("TcpServerModule") << QByteArray("DropPeer")
                                                  << QByteArray(40, '1') << quint32(GW_ERR_VALUE_TOO_LONG);
    QTest::newRow("drop of nobody") << QByteArray("TcpServerModule") << QByteArray("DropPeer")
                                    << QByteArray("127.0.0.1:1") << quint32(GW_ERR_INVALID_VALUE);
    QTest::newRow("status of a fieldbus device") << QByteArray("ProfinetModule") << QByteArray("ResetCounters")
                                                 << QByteArray("true") << quint32(GW_ERR_UNKNOWN_KEY);
}

// Writes of the status keys: read-only ones refused, actions checked like
// settings and run; nothing of it changes the device's state.
void tst_GatewayStatus::statusKeys_writesRefusedOrRun()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, value);
    QFETCH(quint32, expected);
    const int id = add(type.constData());
    QCOMPARE(set(id, key, value), expected);
    if (type != "ProfinetModule")
        QCOMPARE(get(id, "Status"), QByteArray("Closed"));
    QCOMPARE(GW_PF_DeleteModule(id), GW_OK);
}

QTEST_GUILESS_MAIN(tst_GatewayStatus)
#include "tst_gatewaystatus.moc"
