// Fieldbus address data on the real gatewayd and client library, beside a
// baseline measured in the same run:
//  1. 16 read addresses of a PROFINET device with "Upload" on, each written by
//     the PLC side 1,000 times a second: latency from the PLC write to the
//     entry in the address's history (on the GUI thread, right after the
//     table appended it), deliveries, and each history's bound and last entry;
//  2. the same paced 16-byte records over a plain loopback socket to a reader
//     thread (the baseline);
//  3. resident memory of this process and of gatewayd at start and end.
//   GATEWAYD=build/bench/gateway/daemon/gatewayd build/bench/bench/bench_fieldbus [--seconds N]
// Environment: BENCH_FIELDBUS_SECONDS (default 5; --seconds wins), BENCH_FIELDBUS_RATE
// (writes per address per second, default 1000).
#include "AddressDataSetData.h"
#include "AddressInfo.h"
#include "BaseItemProxy.h"
#include "BenchSupport.h"
#include "CommDevice.h"
#include "DevicesManager.h"
#include "GatewayProcess.h"
#include "GwCallbacks.h"
#include "GwPlatform.h"
#include "GwPlcSide.h"
#include "HostConfig.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonObject>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace CommunicationControl;

namespace {
using namespace BenchSupport;
using Clock = std::chrono::steady_clock;
constexpr int kAddresses = 16;
constexpr int kRecordBytes = 16; // seq (int32), address index (int32), sent ns (int64)
constexpr int kElements = 4;     // 4 x 32-bit = 16 bytes per address
// PLC writers, each with its share of the addresses: one client call is a
// round trip, so a single thread cannot keep 16,000 writes a second.
constexpr int kWriters = 4;

int64_t nowNs()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now().time_since_epoch()).count();
}

struct Summary {
    double p50 = 0, p99 = 0, max = 0; // microseconds
};

Summary summarize(std::vector<int64_t> ns)
{
    ns.erase(std::remove(ns.begin(), ns.end(), -1), ns.end());
    if (ns.empty())
        return {};
    std::sort(ns.begin(), ns.end());
    const auto at = [&ns](double q) { return double(ns[size_t(q * double(ns.size() - 1) + 0.5)]) / 1000.0; };
    return {at(0.50), at(0.99), at(1.0)};
}

void formatRecord(char *out, int seq, int index, int64_t sent)
{
    std::memcpy(out, &seq, 4);
    std::memcpy(out + 4, &index, 4);
    std::memcpy(out + 8, &sent, 8);
}

bool parseRecord(const QByteArray &bytes, int *seq, int *index, int64_t *sent)
{
    if (bytes.size() < kRecordBytes)
        return false;
    std::memcpy(seq, bytes.constData(), 4);
    std::memcpy(index, bytes.constData() + 4, 4);
    std::memcpy(sent, bytes.constData() + 8, 8);
    return true;
}

// Calls `write(i, address)` for every write of the schedule: round-robin over
// the addresses, `total` writes at `rate` per second in all; a writer that
// wakes late writes what is due back to back.
template <typename Write>
double pace(int total, int rate, Write write)
{
    const auto period = std::chrono::nanoseconds(1000000000LL / rate);
    const auto start = Clock::now() + std::chrono::milliseconds(5);
    int64_t first = 0, last = 0;
    for (int i = 0; i < total; ++i) {
        const auto due = start + i * period;
        if (Clock::now() < due)
            std::this_thread::sleep_until(due);
        const int64_t t = nowNs();
        if (!write(i, i % kAddresses, t))
            return -1;
        if (i == 0)
            first = t;
        last = t;
    }
    return last > first ? double(total - 1) * 1e9 / double(last - first) : 0;
}

std::vector<int64_t> plainOneWay(int total, int rate)
{
    uint16_t port = 0;
    const int server = listenLoopback(&port);
    std::vector<int64_t> latency(size_t(total), -1);
    std::thread reader([server, &latency] {
        const int peer = accept(server, nullptr, nullptr);
        char buf[kRecordBytes];
        while (readFull(peer, buf, kRecordBytes)) {
            const int64_t arrived = nowNs();
            int seq = 0, index = 0;
            int64_t sent = 0;
            if (parseRecord(QByteArray::fromRawData(buf, kRecordBytes), &seq, &index, &sent) && seq >= 0
                && size_t(seq) < latency.size())
                latency[size_t(seq)] = arrived - sent;
        }
        close(peer);
    });
    const int fd = connectLoopback(port);
    pace(total, rate, [fd](int i, int index, int64_t t) {
        char record[kRecordBytes];
        formatRecord(record, i, index, t);
        return writeFull(fd, record, kRecordBytes);
    });
    shutdown(fd, SHUT_WR);
    reader.join();
    close(fd);
    close(server);
    return latency;
}

AddressDataSetData *readTable(CommDevice *device)
{
    for (BaseItemProxy *proxy : device->items()) {
        auto *data = qobject_cast<AddressDataSetData *>(proxy ? proxy->baseData() : nullptr);
        if (data && data->addressType() == AddressDataSetData::ReadAddress)
            return data;
    }
    return nullptr;
}

int secondsFromArgs(int argc, char **argv)
{
    for (int i = 1; i + 1 < argc; ++i)
        if (std::strcmp(argv[i], "--seconds") == 0)
            return std::max(1, std::atoi(argv[i + 1]));
    bool ok = false;
    const int env = qEnvironmentVariableIntValue("BENCH_FIELDBUS_SECONDS", &ok);
    return ok && env > 0 ? env : 5;
}
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const int seconds = secondsFromArgs(argc, argv);
    bool ok = false;
    int perAddress = qEnvironmentVariableIntValue("BENCH_FIELDBUS_RATE", &ok);
    if (!ok || perAddress <= 0)
        perAddress = 1000;
    const int rate = perAddress * kAddresses;
    const int total = rate * seconds - (rate * seconds) % kWriters;
    if (qEnvironmentVariableIsEmpty("LM_MODULES_DIR"))
        qputenv("LM_MODULES_DIR", COMM_MODULES_SOURCE_DIR);
    HostConfig::setLanguage(QStringLiteral("en"));

    GatewayProcess gateway;
    if (!gateway.start()) {
        std::fprintf(stderr, "gatewayd: %s\n", qPrintable(gateway.error()));
        return 1;
    }
    if (GW_PF_Init(1, "127.0.0.1", gateway.port(), 101) != GW_OK) {
        std::fprintf(stderr, "GW_PF_Init failed\n");
        return 1;
    }
    GW_PF_SetResultCallback(ResultCallBack, nullptr);
    DevicesManager *manager = DevicesManager::Instance();
    const QString type = QStringLiteral("ProfinetModule");
    const int moduleId = manager->loadAlgorithmTabXML(type) ? manager->createCommDevice(type, "Bench PLC") : -1;
    CommDevice *device = moduleId > 0 ? manager->getDeviceById(moduleId) : nullptr;
    if (device)
        device->setConnectState(true);
    AddressDataSetData *table = device ? readTable(device) : nullptr;
    if (!table || !device->connectState()) {
        std::fprintf(stderr, "cannot open a PROFINET device with an address table\n");
        return 1;
    }
    for (int i = 0; i < kAddresses; ++i) {
        const QJsonObject json{{"AddressName", QStringLiteral("bench %1").arg(i)}, {"IntDataType", 1},
                               {"SoftElementAddress", i * kElements}, {"SoftElementNum", kElements},
                               {"OverTime", 1000}, {"PollEnable", true}, {"Upload", true}};
        if (!table->addCustomAddress(json)) {
            std::fprintf(stderr, "adding address %d failed\n", i);
            return 1;
        }
    }
    const QList<AddressInfo *> addresses = table->addressList();
    std::vector<int> ids;
    for (AddressInfo *a : addresses)
        ids.push_back(a->serialNumber());

    // Stamped on the GUI thread right after the table's own queued slot for
    // the same result: the entry is then the newest of the address's history.
    std::vector<int64_t> latency(size_t(total), -1);
    std::vector<int> lastSeq(kAddresses, -1);
    int delivered = 0, misplaced = 0, checked = 0;
    QObject::connect(device, &CommDevice::deviceResultChanged, table, [&](int, QByteArray bytes) {
        const int64_t now = nowNs();
        int seq = 0, index = 0;
        int64_t sent = 0;
        if (!parseRecord(bytes, &seq, &index, &sent) || seq < 0 || seq >= total || index < 0 || index >= kAddresses)
            return;
        latency[size_t(seq)] = now - sent;
        lastSeq[size_t(index)] = seq;
        ++delivered;
        if (delivered % 97 == 0) { // a sample: the newest entry is this record
            ++checked;
            const QStringList hex = addresses.at(index)->hexDataList();
            QString expected;
            for (unsigned char b : bytes.left(kRecordBytes))
                expected += QStringLiteral("[%1]").arg(b, 2, 16, QLatin1Char('0')).toUpper();
            if (hex.isEmpty() || !hex.last().mid(26).startsWith(expected))
                ++misplaced;
        }
    }, Qt::QueuedConnection);

    const long rssStart = rssKb(), gwRssStart = rssKb(gateway.pid());
    std::atomic<bool> writerOk{true};
    std::atomic<int> writersLeft{kWriters};
    std::vector<double> achievedBy(kWriters, 0);
    std::vector<std::thread> writers;
    for (int w = 0; w < kWriters; ++w) {
        writers.emplace_back([&, w] {
            // Writer w makes writes w, w + kWriters, ...: its own addresses, in turn.
            const double got = pace(total / kWriters, rate / kWriters, [&](int i, int, int64_t t) {
                const int seq = i * kWriters + w;
                const int index = seq % kAddresses;
                char record[kRecordBytes];
                formatRecord(record, seq, index, t);
                return GW_PLC_WriteAddress(moduleId, ids[size_t(index)], record, kRecordBytes) == GW_OK;
            });
            achievedBy[size_t(w)] = got;
            if (got < 0)
                writerOk = false;
            writersLeft.fetch_sub(1);
        });
    }
    QElapsedTimer drain;
    bool draining = false;
    while (true) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        if (writersLeft.load() == 0 && !draining) {
            draining = true;
            drain.start();
        }
        if (draining && (delivered >= total || drain.elapsed() > 5000))
            break;
    }
    for (std::thread &t : writers)
        t.join();
    double achieved = 0;
    for (double a : achievedBy)
        achieved += a;
    const long rssEnd = rssKb(), gwRssEnd = rssKb(gateway.pid());

    const std::vector<int64_t> plain = plainOneWay(total, rate);

    int bounded = 0, lastRight = 0;
    for (int i = 0; i < kAddresses; ++i) {
        const QStringList hex = addresses.at(i)->hexDataList();
        const int writesHere = total / kAddresses + (i < total % kAddresses ? 1 : 0);
        if (hex.size() == std::min(writesHere, AddressInfo::kMaxHistory))
            ++bounded;
        const int lastWrite = total - 1 - ((total - 1 - i) % kAddresses);
        if (lastSeq[size_t(i)] == lastWrite)
            ++lastRight;
    }

    const Summary s = summarize(latency);
    const Summary p = summarize(plain);
    std::printf("fieldbus upload: %d addresses x %d writes/s for %d s (%d writes, achieved %.0f/s)%s\n",
                kAddresses, perAddress, seconds, total, achieved, writerOk ? "" : "  WRITER FAILED");
    std::printf("  %-40s %10s %10s %10s\n", "latency (us)", "p50", "p99", "max");
    std::printf("  %-40s %10.1f %10.1f %10.1f\n", "PLC write -> entry in history", s.p50, s.p99, s.max);
    std::printf("  %-40s %10.1f %10.1f %10.1f\n", "plain loopback, same records (baseline)", p.p50, p.p99, p.max);
    if (p.p50 > 0 && p.p99 > 0)
        std::printf("  ratio: p50 %.1fx, p99 %.1fx\n", s.p50 / p.p50, s.p99 / p.p99);
    std::printf("  delivered %d of %d (lost %d); sampled newest entry right %d of %d\n", delivered, total,
                total - delivered, checked - misplaced, checked);
    std::printf("  histories at min(writes, 200): %d of %d; last write newest: %d of %d\n", bounded, kAddresses,
                lastRight, kAddresses);
    std::printf("  RSS MB          start      end\n");
    std::printf("  this process %8.1f %8.1f\n", double(rssStart) / 1024, double(rssEnd) / 1024);
    std::printf("  gatewayd     %8.1f %8.1f\n", double(gwRssStart) / 1024, double(gwRssEnd) / 1024);

    GW_PF_DeInit();
    gateway.stop();
    return delivered == total && misplaced == 0 && bounded == kAddresses ? 0 : 2;
}
