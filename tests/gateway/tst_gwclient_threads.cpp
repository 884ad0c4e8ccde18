// The client library under concurrent use: calls from several threads while
// results flood the callback, then DeInit while results still arrive. Run
// under ThreadSanitizer; the gateway process itself is not the subject here.
#include "GatewayProcess.h"
#include "GwTestCalls.h"
#include "../devices/ThreadJoiner.h"

#include <QTcpSocket>
#include <QtTest>
#include <atomic>
#include <thread>
#include <vector>

using namespace GwTestCalls;

namespace {
std::atomic<int> g_results{0};
std::atomic<bool> g_closed{false};
std::atomic<int> g_lateCallbacks{0};

int countResult(int, int, void *, int, void *)
{
    if (g_closed)
        ++g_lateCallbacks;
    ++g_results;
    return 0;
}
} // namespace

class tst_GwClientThreads : public QObject
{
    Q_OBJECT
private slots:
    void callsFromThreads_whileResultsFlood_thenDeInit();
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

QTEST_GUILESS_MAIN(tst_GwClientThreads)
#include "tst_gwclient_threads.moc"
