// The address history under load: several threads decode blocks into one
// address while another reads, and clears, the lists the view shows. Run under
// ThreadSanitizer (label tsan) and AddressSanitizer; the control build
// (tst_addressinfo_threads_control) takes the list lock away and must be reported.
#include "AddressInfo.h"
#include "../devices/ThreadJoiner.h"

#include <QtTest>
#include <atomic>
#include <thread>
#include <vector>

using CommunicationControl::AddressInfo;

namespace {
constexpr int kThreads = 4;
constexpr int kBlocksPerThread = 2000;
} // namespace

class tst_AddressInfoThreads : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void updateData_whileViewReadsAndClears();
};

void tst_AddressInfoThreads::initTestCase()
{
#ifdef COMM_TSAN_CONTROL
    if (qEnvironmentVariableIsEmpty("COMM_TSAN_CONTROL"))
        QSKIP("control build: the list lock is removed; set COMM_TSAN_CONTROL=1 to run it under ThreadSanitizer");
#endif
}

void tst_AddressInfoThreads::updateData_whileViewReadsAndClears()
{
    AddressInfo entry(nullptr, 2);
    std::atomic<int> running{kThreads};
    std::vector<std::thread> writers;
    const ThreadJoiner joiner{writers};
    for (int t = 0; t < kThreads; ++t) {
        writers.emplace_back([&entry, &running, t] {
            for (int i = 0; i < kBlocksPerThread; ++i)
                entry.UpdateData(QByteArray::number(t) + ':' + QByteArray::number(i));
            running.fetch_sub(1);
        });
    }
    int reads = 0;
    while (running.load() > 0) {
        const QStringList text = entry.dataList();
        const QStringList hex = entry.hexDataList();
        const QString last = entry.data();
        QVERIFY(text.size() <= AddressInfo::kMaxHistory);
        QVERIFY(hex.size() <= AddressInfo::kMaxHistory);
        QVERIFY(last.isEmpty() || last.contains(QLatin1Char(':')));
        if (++reads % 40 == 0)
            entry.clearDataList();
    }
    for (auto &t : writers)
        t.join();

    const QStringList text = entry.dataList();
    const QStringList hex = entry.hexDataList();
    QCOMPARE(text.size(), hex.size());
    for (int i = 0; i < text.size(); ++i) {
        QCOMPARE(text.at(i).left(26), hex.at(i).left(26));
        QCOMPARE(hex.at(i).size() - 26, 4 * (text.at(i).size() - 26)); // paired entry by entry
    }
}

QTEST_GUILESS_MAIN(tst_AddressInfoThreads)
#include "tst_addressinfo_threads.moc"
