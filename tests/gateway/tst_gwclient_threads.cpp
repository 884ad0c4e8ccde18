// The client library under concurrent use: calls from several threads while
// results flood the callback, then DeInit while results still arrive; calls
// from several threads while the gateway is killed and started again, so the
// reconnect thread replaces the connection under them; callbacks that call
// the library themselves, and one that waits for another thread's call. Run
// under ThreadSanitizer; the gateway process itself is not the subject here.
#include "GatewayProcess.h"
#include "GwTestCalls.h"
#include "../devices/ThreadJoiner.h"

#include <QElapsedTimer>
#include <QTcpSocket>
#include <QtTest>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

using namespace GwTestCalls;

namespace {
std::atomic<int> g_results{0};
std::atomic<bool> g_closed{false};
std::atomic<int> g_lateCallbacks{0};
std::atomic<int> g_restored{0};
std::atomic<int> g_lost{0};

int countGatewayEvents(eGW_EVENT_TYPE type, void *, void *, int)
{
    if (type == GW_EVENT_GATEWAY_LOST)
        ++g_lost;
    if (type == GW_EVENT_GATEWAY_RESTORED)
        ++g_restored;
    return 0;
}

int countResult(int, int, void *, int, void *)
{
    if (g_closed)
        ++g_lateCallbacks;
    ++g_results;
    return 0;
}
// Answers every line from inside the result callback, as a vision station
// answers its trigger: "<line>=ok".
int answerResult(int moduleId, int, void *data, int length, void *)
{
    const QByteArray line = QByteArray(static_cast<const char *>(data), length).trimmed();
    GW_PF_WriteString(moduleId, -1, (line + "=ok\r\n").constData());
    return 0;
}

// Records the results in order; the first one waits until the test has
// seen another thread's call come back.
struct WaitingRecorder {
    std::mutex mutex;
    std::condition_variable changed;
    bool entered = false; // the first callback is waiting
    bool released = false;
    QList<QByteArray> lines;
};
WaitingRecorder g_waiting;

int recordAfterRelease(int, int, void *data, int length, void *)
{
    std::unique_lock<std::mutex> lock(g_waiting.mutex);
    if (g_waiting.lines.isEmpty()) {
        g_waiting.entered = true;
        g_waiting.changed.notify_all();
        g_waiting.changed.wait_for(lock, std::chrono::seconds(10), [] { return g_waiting.released; });
    }
    g_waiting.lines.append(QByteArray(static_cast<const char *>(data), length).trimmed());
    return 0;
}

// The gateway-level events in the order they came, and whether any came on
// the thread that set the callback.
struct GatewayEventLog {
    std::mutex mutex;
    QList<int> types;
    std::thread::id setter;
    bool onSetterThread = false;
};
GatewayEventLog g_gatewayEvents;

int logGatewayEvent(eGW_EVENT_TYPE type, void *, void *, int)
{
    if (type < GW_EVENT_GATEWAY_LOST || type > GW_EVENT_GATEWAY_RESTORED)
        return 0;
    std::lock_guard<std::mutex> lock(g_gatewayEvents.mutex);
    g_gatewayEvents.types.append(type);
    g_gatewayEvents.onSetterThread |= std::this_thread::get_id() == g_gatewayEvents.setter;
    return 0;
}

// A deep copy: an implicitly shared one would be detached later, outside
// the lock, while the library's thread appends.
QList<int> gatewayEvents()
{
    std::lock_guard<std::mutex> lock(g_gatewayEvents.mutex);
    const QList<int> &types = g_gatewayEvents.types;
    return QList<int>(types.cbegin(), types.cend());
}

quint32 readTargetPort(int id)
{
    auto rec = record("TargetPort");
    return GW_PF_GetModuleParam(id, rec.get(), -1);
}

// A TCP server device on a free port with one peer connected; the device id.
int serverWithPeer(QTcpSocket &peer)
{
    const quint16 port = freePort();
    const int server = add("TcpServerModule");
    if (setAll(server, {{"LocalIP", "127.0.0.1"}, {"LocalPort", QByteArray::number(port)}, {"ConnectState", "true"}})
        != GW_OK)
        return -1;
    peer.connectToHost(QHostAddress::LocalHost, port);
    return peer.waitForConnected(3000) ? server : -1;
}

// The peer's next line, waiting for it at most 3 s.
QByteArray readLine(QTcpSocket &peer)
{
    QElapsedTimer waited;
    waited.start();
    while (!peer.canReadLine() && waited.elapsed() < 3000)
        peer.waitForReadyRead(100);
    return peer.readLine();
}
} // namespace

class tst_GwClientThreads : public QObject
{
    Q_OBJECT
private slots:
    void callsFromThreads_whileResultsFlood_thenDeInit();
    void callsFromThreads_whileTheGatewayIsKilledAndRestarted();
    void callbackAnswersEachLine_inOrder();
    void callbackWaitsForAnotherThreadsCall_resultsKeepTheirOrder();
    void lossBeforeTheEventCallback_isToldWhenItIsSet_data();
    void lossBeforeTheEventCallback_isToldWhenItIsSet();
};

void tst_GwClientThreads::callsFromThreads_whileResultsFlood_thenDeInit()
{
    GatewayProcess gw;
    QVERIFY2(gw.start(), qPrintable(gw.error()));
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", gw.port(), 101), GW_OK);
    GW_PF_SetResultCallback(&countResult, nullptr);
    const quint16 port = freePort();
    const int server = add("TcpServerModule");
    QCOMPARE(setAll(server, {{"LocalIP", "127.0.0.1"}, {"LocalPort", QByteArray::number(port)},
                             {"ConnectState", "true"}}),
             GW_OK);
    const int other = add("UdpModule");
    QTcpSocket peer;
    peer.connectToHost(QHostAddress::LocalHost, port);
    QVERIFY(peer.waitForConnected(3000));

    std::atomic<bool> stop{false};
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    ThreadJoiner joiner{threads};
    for (int t = 0; t < 3; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; !stop && i < 300; ++i) {
                const QByteArray value = QByteArray::number(1000 + t * 1000 + i);
                if (set(other, "TargetPort", value) != GW_OK || get(other, "TargetPort").isEmpty())
                    ++failures;
            }
        });
    }
    for (int i = 0; i < 2000; ++i)
        peer.write(QByteArray(62, 'x') + "\r\n");
    QVERIFY(peer.waitForBytesWritten(5000));
    QTRY_VERIFY(g_results.load() > 100);
    GW_PF_DeInit();
    g_closed = true;
    stop = true;
    for (std::thread &t : threads)
        t.join();
    QCOMPARE(g_lateCallbacks.load(), 0);
    QVERIFY2(failures.load() < 900, "calls before DeInit succeed");
    QVERIFY(gw.stop());
}

void tst_GwClientThreads::callsFromThreads_whileTheGatewayIsKilledAndRestarted()
{
#ifdef GW_TSAN_CONTROL
    if (qEnvironmentVariableIsEmpty("GW_TSAN_CONTROL"))
        QSKIP("control build: the reconnector's flag is set unlocked; set GW_TSAN_CONTROL=1 to run it under ThreadSanitizer");
#endif
    GatewayProcess gw;
    QVERIFY2(gw.start(), qPrintable(gw.error()));
    const int port = gw.port();
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", port, 101), GW_OK);
    GW_PF_SetEventCalBack(&countGatewayEvents, nullptr);
    const int id = add("UdpModule");
    std::atomic<bool> stop{false};
    std::atomic<int> unexpected{0};
    std::vector<std::thread> threads;
    ThreadJoiner joiner{threads};
    for (int t = 0; t < 3; ++t) {
        threads.emplace_back([&] {
            while (!stop) {
                const quint32 rc = set(id, "TargetPort", "4000");
                if (rc != GW_OK && rc != GW_ERR_CONNECTION_LOST)
                    ++unexpected;
            }
        });
    }
    for (int round = 1; round <= 2; ++round) {
        gw.kill();
        QTRY_COMPARE(g_lost.load(), round);
        QVERIFY2(gw.start({QStringLiteral("--port"), QString::number(port)}), qPrintable(gw.error()));
        QTRY_COMPARE_WITH_TIMEOUT(g_restored.load(), round, 10000);
    }
    QCOMPARE(get(id, "TargetPort"), QByteArray("4000"));
    stop = true;
    for (std::thread &t : threads)
        t.join();
    GW_PF_DeInit();
    QCOMPARE(unexpected.load(), 0);
    QVERIFY(gw.stop());
}

void tst_GwClientThreads::callbackAnswersEachLine_inOrder()
{
    GatewayProcess gw;
    QVERIFY2(gw.start(), qPrintable(gw.error()));
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", gw.port(), 101), GW_OK);
    GW_PF_SetResultCallback(&answerResult, nullptr);
    QTcpSocket peer;
    QVERIFY(serverWithPeer(peer) > 0);
    for (int i = 0; i < 200; ++i) {
        // Each line waits for its answer, as a trigger does: the callback's
        // own call must get its reply while the callback runs.
        const QByteArray line = "T" + QByteArray::number(i);
        peer.write(line + "\r\n");
        QCOMPARE(readLine(peer), line + "=ok\r\n");
    }
    // A burst: answered whole and in order.
    QByteArray burst;
    for (int i = 0; i < 500; ++i)
        burst += "B" + QByteArray::number(i) + "\r\n";
    peer.write(burst);
    for (int i = 0; i < 500; ++i)
        QCOMPARE(readLine(peer), "B" + QByteArray::number(i) + "=ok\r\n");
    GW_PF_DeInit();
    QVERIFY(gw.stop());
}

void tst_GwClientThreads::callbackWaitsForAnotherThreadsCall_resultsKeepTheirOrder()
{
    GatewayProcess gw;
    QVERIFY2(gw.start(), qPrintable(gw.error()));
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", gw.port(), 101), GW_OK);
    GW_PF_SetResultCallback(&recordAfterRelease, nullptr);
    QTcpSocket peer;
    const int server = serverWithPeer(peer);
    QVERIFY(server > 0);
    QByteArray lines;
    QList<QByteArray> expected;
    for (int i = 0; i < 300; ++i) {
        lines += "L" + QByteArray::number(i) + "\r\n";
        expected.append("L" + QByteArray::number(i));
    }
    peer.write(lines);
    QVERIFY(peer.waitForBytesWritten(3000));
    {
        std::unique_lock<std::mutex> lock(g_waiting.mutex);
        QVERIFY(g_waiting.changed.wait_for(lock, std::chrono::seconds(10), [] { return g_waiting.entered; }));
    }
    // With the first callback blocked, a call from another thread still
    // gets its reply; only then is the callback let go.
    QByteArray localPort;
    std::thread caller([&] { localPort = get(server, "LocalPort"); });
    caller.join();
    QVERIFY(!localPort.isEmpty());
    {
        std::lock_guard<std::mutex> lock(g_waiting.mutex);
        g_waiting.released = true;
    }
    g_waiting.changed.notify_all();
    QTRY_COMPARE_WITH_TIMEOUT(([] {
                                  std::lock_guard<std::mutex> lock(g_waiting.mutex);
                                  return g_waiting.lines.size();
                              }()),
                              expected.size(), 10000);
    GW_PF_DeInit();
    std::lock_guard<std::mutex> lock(g_waiting.mutex);
    QCOMPARE(g_waiting.lines, expected);
    QVERIFY(gw.stop());
}

void tst_GwClientThreads::lossBeforeTheEventCallback_isToldWhenItIsSet_data()
{
    QTest::addColumn<bool>("backBeforeTheCallback");
    QTest::newRow("gateway back before the callback is set") << true;
    QTest::newRow("gateway still away when the callback is set") << false;
}

// A host sets its event callback late in its start-up; a gateway that died
// before that must still be reported, or the host shows a half-loaded page
// with no word of the loss.
void tst_GwClientThreads::lossBeforeTheEventCallback_isToldWhenItIsSet()
{
    QFETCH(bool, backBeforeTheCallback);
    GatewayProcess gw;
    QVERIFY2(gw.start(), qPrintable(gw.error()));
    const int port = gw.port();
    GW_PF_SetEventCalBack(nullptr, nullptr);
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", port, 101), GW_OK);
    const int id = add("UdpModule");
    gw.kill();
    QTRY_COMPARE(readTargetPort(id), quint32(GW_ERR_CONNECTION_LOST));
    if (backBeforeTheCallback) {
        QVERIFY2(gw.start({QStringLiteral("--port"), QString::number(port)}), qPrintable(gw.error()));
        QTRY_COMPARE_WITH_TIMEOUT(readTargetPort(id), quint32(GW_OK), 10000);
    }
    {
        std::lock_guard<std::mutex> lock(g_gatewayEvents.mutex);
        g_gatewayEvents.types.clear();
        g_gatewayEvents.setter = std::this_thread::get_id();
        g_gatewayEvents.onSetterThread = false;
    }
    GW_PF_SetEventCalBack(&logGatewayEvent, nullptr);
    if (backBeforeTheCallback) {
        QTRY_COMPARE(gatewayEvents(), (QList<int>{GW_EVENT_GATEWAY_LOST, GW_EVENT_GATEWAY_RESTORED}));
    } else {
        // The loss first, then the attempts as they fail, then the restore.
        QTRY_VERIFY(gatewayEvents().size() >= 2);
        QVERIFY2(gw.start({QStringLiteral("--port"), QString::number(port)}), qPrintable(gw.error()));
        QTRY_COMPARE_WITH_TIMEOUT(gatewayEvents().last(), int(GW_EVENT_GATEWAY_RESTORED), 10000);
        const QList<int> events = gatewayEvents();
        QCOMPARE(events.first(), int(GW_EVENT_GATEWAY_LOST));
        QCOMPARE(events.count(GW_EVENT_GATEWAY_LOST), 1);
        QCOMPARE(events.count(GW_EVENT_GATEWAY_RESTORED), 1);
    }
    {
        std::lock_guard<std::mutex> lock(g_gatewayEvents.mutex);
        QVERIFY2(!g_gatewayEvents.onSetterThread, "events come on the library's own thread");
    }
    GW_PF_SetEventCalBack(nullptr, nullptr);
    GW_PF_DeInit();
    QVERIFY(gw.stop());
}

QTEST_GUILESS_MAIN(tst_GwClientThreads)
#include "tst_gwclient_threads.moc"
