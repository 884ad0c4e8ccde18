// The receive path under load: several gateway threads append blocks while the
// GUI thread reads and clears the lists. Run under ThreadSanitizer (label tsan)
// and AddressSanitizer.
#include "CommDevice.h"

#include <QtTest>
#include <atomic>
#include <thread>
#include <vector>

namespace {
constexpr int kThreads = 4;
constexpr int kBlocksPerThread = 3000;

// The hex form of the printable text of one entry: the two lists must stay
// paired entry by entry, whatever the interleaving.
bool entriesPaired(const QString &text, const QString &hex)
{
    if (text.left(26) != hex.left(26)) // "[yyyy-MM-dd hh:mm:ss.zzz] "
        return false;
    const QString body = text.mid(26);
    QString expected;
    for (QChar c : body)
        expected += QStringLiteral("[%1]").arg(c.unicode(), 2, 16, QLatin1Char('0')).toUpper();
    return hex.mid(26) == expected;
}
} // namespace

class tst_CommDeviceThreads : public QObject
{
    Q_OBJECT
private slots:
    void receive_whileGuiReadsAndClears();
    void control_unlockedListIsFlagged();
};

void tst_CommDeviceThreads::receive_whileGuiReadsAndClears()
{
    CommDevice device(QStringLiteral("TcpServerModule"));
    std::atomic<int> running{kThreads};
    std::vector<std::thread> gatewayThreads;
    for (int t = 0; t < kThreads; ++t) {
        gatewayThreads.emplace_back([&device, &running, t] {
            for (int i = 0; i < kBlocksPerThread; ++i) {
                QByteArray block = QByteArray::number(t) + ':' + QByteArray::number(i);
                device.ProRecvResultData(-1, block.data(), block.size());
            }
            running.fetch_sub(1);
        });
    }
    int reads = 0;
    while (running.load() > 0) {
        const QStringList text = device.recvDataList();
        const QStringList hex = device.recvHexDataList();
        QVERIFY(text.size() <= 200);
        QVERIFY(hex.size() <= 200);
        if (++reads % 50 == 0)
            device.clearRecvDatas();
    }
    for (auto &t : gatewayThreads)
        t.join();

    const QStringList text = device.recvDataList();
    const QStringList hex = device.recvHexDataList();
    QCOMPARE(text.size(), hex.size());
    QVERIFY(text.size() <= 200);
    for (int i = 0; i < text.size(); ++i)
        QVERIFY2(entriesPaired(text.at(i), hex.at(i)), qPrintable(text.at(i) + QLatin1String(" / ") + hex.at(i)));
}

// Proves that the ThreadSanitizer run can fail: the same trim-and-append
// pattern as the receive lists, without the lock, on a container whose code is
// compiled into this test (Debian's Qt is not instrumented, so a race inside
// its own container code would not be seen). Expected to be reported; it runs
// only when COMM_TSAN_CONTROL is set, as its own CTest entry marked to fail.
void tst_CommDeviceThreads::control_unlockedListIsFlagged()
{
    if (qEnvironmentVariableIsEmpty("COMM_TSAN_CONTROL"))
        QSKIP("control run only: set COMM_TSAN_CONTROL=1 under ThreadSanitizer");
    std::vector<QString> unguarded;
    std::atomic<bool> started{false};
    std::thread gateway([&unguarded, &started] {
        started = true;
        for (int i = 0; i < 20000; ++i) {
            if (unguarded.size() >= 200)
                unguarded.erase(unguarded.begin());
            unguarded.push_back(QStringLiteral("block"));
        }
    });
    while (!started)
        std::this_thread::yield();
    size_t seen = 0;
    for (int i = 0; i < 20000; ++i)
        seen += std::vector<QString>(unguarded).size();
    gateway.join();
    Q_UNUSED(seen)
}

QTEST_GUILESS_MAIN(tst_CommDeviceThreads)
#include "tst_commdevice_threads.moc"
