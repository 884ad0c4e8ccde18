// The client library and gatewayd when the gateway goes away, comes back,
// is hung, is asked too much or is driven by a stranger: calls fail at
// once, the loss and the return are reported in order, requests whose
// caller gave up are not carried out, and one state folder has one gateway.
#include "GatewayProcess.h"
#include "GwCallbackRecorder.h"
#include "GwTestCalls.h"

#include <QTcpSocket>
#include <QTimer>
#include <QtTest>
#include <csignal>
#include <thread>
#include <memory>
#include <unistd.h>

using namespace GwTestCalls;

class tst_GatewaySupervision : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void killDuringStream_callsFailAtOnce_reconnects_stateKept();
    void overLimitRequest_refusedHere_connectionStaysUsable_data();
    void overLimitRequest_refusedHere_connectionStaysUsable();
    void requestAfterCallerGaveUp_notCarriedOut();
    void secondGateway_onOneStateDir_refused();
    void otherUser_refused_ownUserServed();

private:
    quint32 initOn(int port);

    std::unique_ptr<GatewayProcess> m_gwOwner; // a fresh state folder per test
    GwCallbackRecorder m_recorder;
};

void tst_GatewaySupervision::initTestCase()
{
    // A call that waited for its time-out instead of failing at once would
    // outlast every QTRY below.
    qputenv("GW_PF_TIMEOUT_MS", "60000");
}

void tst_GatewaySupervision::init()
{
    m_gwOwner.reset(new GatewayProcess);
    QVERIFY2(m_gwOwner->start(), qPrintable(m_gwOwner->error()));
    QCOMPARE(initOn(m_gwOwner->port()), GW_OK);
}

void tst_GatewaySupervision::cleanup()
{
    GW_PF_DeInit();
    m_gwOwner.reset();
    m_recorder.clear();
    qputenv("GW_PF_TIMEOUT_MS", "60000");
}

quint32 tst_GatewaySupervision::initOn(int port)
{
    const quint32 rc = GW_PF_Init(1, "127.0.0.1", port, 101);
    m_recorder.install();
    return rc;
}

// kill -9 while a peer streams into a TCP server device: a call already
// waiting and every later one fail with 0xE0000006 at once; lost, then
// reconnecting attempts, then restored arrive in that order; the gateway
// restarted on the same port and folder runs the device as before and its
// data reaches this process again.
void tst_GatewaySupervision::killDuringStream_callsFailAtOnce_reconnects_stateKept()
{
    const quint16 devicePort = freePort();
    const int id = add("TcpServerModule", "stream");
    QCOMPARE(setAll(id, {{"LocalIP", "127.0.0.1"}, {"LocalPort", QByteArray::number(devicePort)},
                         {"EndChar", ";"}, {"ConnectState", "true"}}),
             GW_OK);
    QTcpSocket peer;
    peer.connectToHost(QHostAddress::LocalHost, devicePort);
    QVERIFY(peer.waitForConnected(3000));
    QTimer streaming;
    connect(&streaming, &QTimer::timeout, &peer, [&peer] { peer.write("line;"); });
    streaming.start(1);
    QTRY_VERIFY(m_recorder.frames(id).size() > 20);

    // A call under way when the gateway dies: stop the gateway so the call
    // waits, then kill it.
    const int gatewayPort = m_gwOwner->port();
    QCOMPARE(::kill(pid_t(m_gwOwner->pid()), SIGSTOP), 0);
    std::atomic<quint32> waiting{0};
    std::thread caller([&waiting] {
        int count = 0;
        GW_MODULE_INFO info[4];
        waiting = GW_PF_GetAllModules(info, 4, &count);
    });
    QTest::qWait(100); // let the call reach the stopped gateway
    m_gwOwner->kill();
    QTRY_COMPARE(waiting.load(), quint32(GW_ERR_CONNECTION_LOST));
    caller.join();
    streaming.stop();
    int count = 0;
    GW_MODULE_INFO info[4];
    QCOMPARE(GW_PF_GetAllModules(info, 4, &count), quint32(GW_ERR_CONNECTION_LOST));
    QTRY_VERIFY(m_recorder.eventCount(GW_EVENT_GATEWAY_RECONNECTING, 2) == 1);

    QVERIFY2(m_gwOwner->start({QStringLiteral("--port"), QString::number(gatewayPort)}), qPrintable(m_gwOwner->error()));
    QTRY_VERIFY_WITH_TIMEOUT(m_recorder.eventTypes().contains(GW_EVENT_GATEWAY_RESTORED), 10000);
    QList<int> gatewayEvents = m_recorder.eventTypes();
    gatewayEvents.erase(std::remove_if(gatewayEvents.begin(), gatewayEvents.end(),
                                       [](int t) { return t < GW_EVENT_GATEWAY_LOST || t > GW_EVENT_GATEWAY_RESTORED; }),
                        gatewayEvents.end());
    QCOMPARE(gatewayEvents.first(), int(GW_EVENT_GATEWAY_LOST));
    QCOMPARE(gatewayEvents.last(), int(GW_EVENT_GATEWAY_RESTORED));
    QCOMPARE(gatewayEvents.count(GW_EVENT_GATEWAY_RECONNECTING), gatewayEvents.size() - 2);

    // The device, its parameters and its switch survived the kill.
    QCOMPARE(GW_PF_GetAllModules(info, 4, &count), GW_OK);
    QCOMPARE(count, 1);
    QCOMPARE(info[0].moduleId, id);
    QCOMPARE(get(id, "LocalPort"), QByteArray::number(devicePort));
    QCOMPARE(get(id, "ConnectState"), QByteArray("true"));
    m_recorder.clear();
    QTcpSocket again;
    again.connectToHost(QHostAddress::LocalHost, devicePort);
    QVERIFY(again.waitForConnected(3000));
    again.write("after;");
    QTRY_COMPARE(m_recorder.frames(id), QList<QByteArray>{"after;"});
}

void tst_GatewaySupervision::overLimitRequest_refusedHere_connectionStaysUsable_data()
{
    QTest::addColumn<int>("textSize");
    QTest::addColumn<quint32>("code");
    // WriteString carries 22 bytes besides its text (op, ids, length, deadline).
    // The device is off: a request that reaches the gateway is answered "not open".
    QTest::newRow("1 MiB refused before sending") << 1024 * 1024 << quint32(GW_ERR_REQUEST_TOO_LARGE);
    QTest::newRow("just over the frame limit") << 1024 * 1024 - 21 << quint32(GW_ERR_REQUEST_TOO_LARGE);
    QTest::newRow("largest that fits reaches the gateway") << 1024 * 1024 - 22 << quint32(GW_ERR_NOT_OPEN);
}

void tst_GatewaySupervision::overLimitRequest_refusedHere_connectionStaysUsable()
{
    QFETCH(int, textSize);
    QFETCH(quint32, code);
    const int id = add("TcpServerModule");
    const QByteArray text(textSize, 'x');
    QCOMPARE(GW_PF_WriteString(id, -1, text.constData()), code);
    int count = 0;
    GW_MODULE_INFO info[4];
    QCOMPARE(GW_PF_GetAllModules(info, 4, &count), GW_OK);
    QCOMPARE(count, 1);
    QVERIFY(!m_recorder.eventTypes().contains(GW_EVENT_GATEWAY_LOST));
}

// A gateway that does not read until after the caller's time-out must not
// add the module the caller was told was not added.
void tst_GatewaySupervision::requestAfterCallerGaveUp_notCarriedOut()
{
    GW_PF_DeInit();
    qputenv("GW_PF_TIMEOUT_MS", "300");
    QCOMPARE(initOn(m_gwOwner->port()), GW_OK);
    QCOMPARE(::kill(pid_t(m_gwOwner->pid()), SIGSTOP), 0);
    int id = 0;
    const quint32 rc = GW_PF_AddModule("UdpModule", "late", &id);
    QCOMPARE(::kill(pid_t(m_gwOwner->pid()), SIGCONT), 0);
    QCOMPARE(rc, quint32(GW_ERR_TIMEOUT));
    QTRY_VERIFY(m_gwOwner->log().contains("after its caller gave up; dropped"));
    int count = -1;
    GW_MODULE_INFO info[4];
    QCOMPARE(GW_PF_GetAllModules(info, 4, &count), GW_OK);
    QCOMPARE(count, 0);
    QCOMPARE(GW_PF_AddModule("UdpModule", "in time", &id), GW_OK);
}

void tst_GatewaySupervision::secondGateway_onOneStateDir_refused()
{
    QProcess second;
    second.start(qEnvironmentVariable("GATEWAYD"),
                 {QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--state-dir"), m_gwOwner->stateDir()});
    QVERIFY(second.waitForFinished(10000));
    QCOMPARE(second.exitStatus(), QProcess::NormalExit);
    QCOMPARE(second.exitCode(), 3);
    QVERIFY(second.readAllStandardOutput().isEmpty()); // never listened
    const QByteArray said = second.readAllStandardError();
    QVERIFY2(said.contains(QByteArray("another gateway (pid ") + QByteArray::number(m_gwOwner->pid())
                           + ") already uses the state directory"),
             said.constData());
    // The first one still serves.
    QCOMPARE(add("UdpModule"), 1);
}

void tst_GatewaySupervision::otherUser_refused_ownUserServed()
{
    if (::geteuid() != 0)
        QSKIP("running as another user needs root (setpriv --reuid)");
    const QString gwplc = qEnvironmentVariable("GWPLC");
    if (gwplc.isEmpty() || QStandardPaths::findExecutable(QStringLiteral("setpriv")).isEmpty())
        QSKIP("needs gwplc (GWPLC) and setpriv");
    QProcess stranger;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("GATEWAY_PORT"), QString::number(m_gwOwner->port()));
    stranger.setProcessEnvironment(env);
    stranger.start(QStringLiteral("setpriv"), {QStringLiteral("--reuid=nobody"), QStringLiteral("--regid=nogroup"),
                                               QStringLiteral("--clear-groups"), gwplc, QStringLiteral("list")});
    QVERIFY(stranger.waitForFinished(20000));
    const QByteArray said = stranger.readAllStandardError();
    if (said.contains("Permission denied") || said.contains("cannot execute"))
        QSKIP("the user nobody cannot run the test build's gwplc");
    QCOMPARE(stranger.exitCode(), 3); // gwplc: no gateway
    QTRY_VERIFY(m_gwOwner->log().contains("connection refused: uid 65534 is not the gateway's user"));
    QCOMPARE(add("UdpModule"), 1); // this process, the gateway's own user
}

QTEST_GUILESS_MAIN(tst_GatewaySupervision)
#include "tst_gatewaysupervision.moc"
