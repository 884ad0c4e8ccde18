// The gateway process and its client library together: modules, parameters,
// persistence and failures, driven only through GW_PF_* (fieldbus addresses
// are tst_fieldbus's).
#include "GatewayProcess.h"
#include "GwCallbackRecorder.h"
#include "GwTestCalls.h"

#include <QElapsedTimer>
#include <QTcpSocket>
#include <QtTest>
#include <atomic>
#include <thread>

using namespace GwTestCalls;

class tst_Gatewayd : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void modules_listedInCreationOrder_badInputRefused();
    void params_invalidValue_refusedAndUnchanged_data();
    void params_invalidValue_refusedAndUnchanged();
    void params_integerOfOpenDevice_pendingReopen();
    void restart_modulesParamsAndOpenStateBack();
    void sigkill_duringBurst_callsFailFast_acknowledgedWritesKept();
    void refusedConnection_failsFast();
    void malformedFrame_dropsOnlyThatClient();
    void reservedPorts_smallBuffer_reportsNeededSize();

private:
    void connectClient();
    GatewayProcess *m_gw = nullptr;
    GwCallbackRecorder m_recorder;
};

void tst_Gatewayd::init()
{
    m_gw = new GatewayProcess;
    QVERIFY2(m_gw->start(), qPrintable(m_gw->error()));
    connectClient();
}

void tst_Gatewayd::connectClient()
{
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", m_gw->port(), 101), GW_OK);
    m_recorder.clear();
    m_recorder.install();
}

void tst_Gatewayd::cleanup()
{
    GW_PF_DeInit();
    delete m_gw;
    m_gw = nullptr;
}

void tst_Gatewayd::modules_listedInCreationOrder_badInputRefused()
{
    const int a = add("TcpServerModule", "first");
    const int b = add("ProfinetModule", "第二");
    const int c = add("UdpModule", "third");
    QVERIFY(a > 0 && b > a && c > b);
    QCOMPARE(GW_PF_DeleteModule(b), GW_OK);
    QCOMPARE(GW_PF_DeleteModule(4242), quint32(GW_ERR_UNKNOWN_MODULE));
    const int d = add("SerialModule", "fourth");
    QVERIFY2(d > c, "a deleted module's id is never given again");
    int id = -1;
    QCOMPARE(GW_PF_AddModule("ModbusModule", "x", &id), quint32(GW_ERR_UNKNOWN_TYPE));
    QCOMPARE(GW_PF_AddModule("UdpModule", "", &id), quint32(GW_ERR_NAME_EMPTY));
    QCOMPARE(GW_PF_AddModule("UdpModule", QByteArray(600, 'n').constData(), &id), quint32(GW_ERR_VALUE_TOO_LONG));

    GW_MODULE_INFO infos[2] = {};
    int count = -1;
    QCOMPARE(GW_PF_GetAllModules(infos, 2, &count), GW_OK);
    QCOMPARE(count, 2);
    QCOMPARE(infos[0].moduleId, a);
    QCOMPARE(QByteArray(infos[0].moduleType), QByteArray("TcpServerModule"));
    QCOMPARE(infos[1].moduleId, c);

    QCOMPARE(GW_PF_UpdateModule(c, "renamed 名"), GW_OK);
    GW_MODULE_INFO all[8] = {};
    QCOMPARE(GW_PF_GetAllModules(all, 8, &count), GW_OK);
    QCOMPARE(count, 3); // the refused ones were not added
    QCOMPARE(QString::fromUtf8(all[1].displayName), QStringLiteral("renamed 名"));
}

void tst_Gatewayd::params_invalidValue_refusedAndUnchanged_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("address");
    QTest::addColumn<quint32>("code");
    auto row = [](const char *name, const char *type, const char *key, const QByteArray &value, quint32 code,
                  int address = -1) {
        QTest::newRow(name) << QByteArray(type) << QByteArray(key) << value << address << code;
    };
    // A refusal of each kind through the wire; every key's rule is tst_paramschema's.
    row("port 0", "TcpServerModule", "LocalPort", "0", GW_ERR_INVALID_PORT);
    row("ipv6", "TcpClientModule", "TargetIP", "::1", GW_ERR_INVALID_IP);
    row("local ip not of this host", "TcpServerModule", "LocalIP", "203.0.113.7", GW_ERR_INVALID_VALUE);
    row("unknown key", "UdpModule", "Colour", "red", GW_ERR_UNKNOWN_KEY);
    row("value over the field", "SerialModule", "PortName", QByteArray(600, 'p'), GW_ERR_VALUE_TOO_LONG);
    row("stream device has no addresses", "UdpModule", "LocalPort", "9000", GW_ERR_UNKNOWN_ADDRESS, 5);
    row("connect state not boolean", "UdpModule", "ConnectState", "yes", GW_ERR_INVALID_VALUE);
}

void tst_Gatewayd::params_invalidValue_refusedAndUnchanged()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, value);
    QFETCH(int, address);
    QFETCH(quint32, code);
    const int id = add(type.constData());
    QVERIFY(id > 0);
    const QByteArray before = get(id, key);
    QCOMPARE(set(id, key, value, address), code);
    QCOMPARE(get(id, key), before);
    QCOMPARE(set(id + 100, "EndChar", "\n"), quint32(GW_ERR_UNKNOWN_MODULE));
}

void tst_Gatewayd::params_integerOfOpenDevice_pendingReopen()
{
    const int id = add("EipModule");
    QCOMPARE(set(id, "ConnectState", "true"), GW_OK);
    QCOMPARE(set(id, "Heartbeat", "2000"), quint32(GW_ERR_PENDING_REOPEN));
    QCOMPARE(get(id, "Heartbeat"), QByteArray("2000"));
    QCOMPARE(set(id, "ConnectState", "false"), GW_OK);
    QCOMPARE(set(id, "Heartbeat", "3000"), GW_OK);
}

void tst_Gatewayd::restart_modulesParamsAndOpenStateBack()
{
    const int pn = add("ProfinetModule", "station 站");
    const int udp = add("UdpModule", "udp");
    QCOMPARE(set(pn, "ConnectState", "true"), GW_OK);
    QCOMPARE(set(udp, "TargetPort", "4321"), GW_OK);

    GW_PF_DeInit();
    QVERIFY(m_gw->stop());
    QVERIFY2(m_gw->start(), qPrintable(m_gw->error()));
    connectClient();

    GW_MODULE_INFO infos[4] = {};
    int count = 0;
    QCOMPARE(GW_PF_GetAllModules(infos, 4, &count), GW_OK);
    QCOMPARE(count, 2);
    QCOMPARE(QString::fromUtf8(infos[0].displayName), QStringLiteral("station 站"));
    QCOMPARE(infos[0].state, 1);
    QCOMPARE(get(pn, "ConnectState"), QByteArray("true"));
    QCOMPARE(get(udp, "TargetPort"), QByteArray("4321"));
    QVERIFY(add("UdpModule") > udp);
}

// SIGKILL during a burst of writes: the call in flight and the ones after it
// fail at once, Init is refused while the gateway is down, and after a
// restart no acknowledged write is lost.
void tst_Gatewayd::sigkill_duringBurst_callsFailFast_acknowledgedWritesKept()
{
    const int id = add("EipModule");
    std::atomic<int> acknowledged{0};
    std::thread writer([&] {
        for (int i = 1; i <= 100000; ++i) {
            if (set(id, "Heartbeat", QByteArray::number(100 + i)) != GW_OK)
                return;
            acknowledged = i;
        }
    });
    QTRY_VERIFY(acknowledged.load() >= 20);
    QElapsedTimer timer;
    timer.start();
    m_gw->kill();
    writer.join();
    const int last = acknowledged.load();
    QVERIFY(set(id, "Heartbeat", "500") != GW_OK);
    GW_MODULE_INFO infos[2];
    int count = 0;
    QVERIFY(GW_PF_GetAllModules(infos, 2, &count) != GW_OK);
    QVERIFY2(timer.elapsed() < 2000, "a dead gateway answers at once");

    QCOMPARE(GW_PF_DeInit(), GW_OK);
    QVERIFY(GW_PF_Init(1, "127.0.0.1", m_gw->port(), 101) != GW_OK);
    QVERIFY2(m_gw->start(), qPrintable(m_gw->error()));
    connectClient();
    const int stored = get(id, "Heartbeat").toInt() - 100;
    // The write in flight may or may not have landed; none acknowledged is lost.
    QVERIFY2(stored == last || stored == last + 1, qPrintable(QStringLiteral("%1 vs %2").arg(stored).arg(last)));
}

void tst_Gatewayd::refusedConnection_failsFast()
{
    GW_PF_DeInit();
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", freePort(), 101), quint32(GW_ERR_CONNECT_FAILED));
    QCOMPARE(GW_PF_DeleteModule(1), quint32(GW_ERR_NOT_INITIALISED));
    QCOMPARE(GW_PF_Init(1, "not an address", m_gw->port(), 101), quint32(GW_ERR_CONNECT_FAILED));
    connectClient();
}

void tst_Gatewayd::malformedFrame_dropsOnlyThatClient()
{
    QTcpSocket rogue;
    rogue.connectToHost(QHostAddress::LocalHost, quint16(m_gw->port()));
    QVERIFY(rogue.waitForConnected(2000));
    rogue.write(QByteArray("GW\x01\x01") + QByteArray(4, '\0') + QByteArray("\xff\xff\xff\x7f", 4));
    QVERIFY(rogue.waitForDisconnected(5000));
    QTRY_VERIFY(m_gw->log().contains("malformed frame"));
    QVERIFY(add("TcpServerModule") > 0);
}

void tst_Gatewayd::reservedPorts_smallBuffer_reportsNeededSize()
{
    char small[2] = {};
    int needed = 0;
    QCOMPARE(GW_PF_GetReservedPorts(small, sizeof(small), &needed), quint32(GW_ERR_BUFFER_TOO_SMALL));
    QVERIFY(needed > 2);
    QByteArray buffer(needed, '\0');
    QCOMPARE(GW_PF_GetReservedPorts(buffer.data(), needed, &needed), GW_OK);
    QVERIFY2(QByteArray(buffer.constData()).split(',').contains(QByteArray::number(m_gw->port())),
             "the gateway's own port is reserved");
}

QTEST_GUILESS_MAIN(tst_Gatewayd)
#include "tst_gatewayd.moc"
