// The module on the real gatewayd and client library, each figure beside a
// baseline measured in the same run:
//  1. receive latency of paced CR LF lines into a TCP server device, from the
//     peer's write to the return of the module's result callback (the entry is
//     then in recvDataList), vs the same lines over plain loopback and a plain
//     64-byte round trip;
//  2. resident memory of this process and of gatewayd, sampled during 1;
//  3. CommManagerModule::Init to the page's first frameSwapped, a fresh process
//     per run, vs an empty QQuickView of the page's size (needs a display);
//  4. LoadDevices over 256 modules vs reading them directly.
// Percentiles, memory series and fresh-process timings: a small main(), not
// Google Benchmark.
//   GATEWAYD=build/gateway/daemon/gatewayd xvfb-run -a -s "-screen 0 1280x800x24" build/bench/bench_module
// Environment: BENCH_SECONDS (stream length, default 10), BENCH_RATE (lines/s,
// default 10000), BENCH_FRAME_RUNS and BENCH_LOAD_RUNS (default 5 each).
#include "CommDevice.h"
#include "CommManagerModule.h"
#include "DevicesManager.h"
#include "BenchSupport.h"
#include "GatewayProcess.h"
#include "GwCallbacks.h"
#include "GwPlatform.h"
#include "HostConfig.h"
#include "ModuleRegistry.h"
#include "QUICore.h"
#include "Slog.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QQuickView>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <memory>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {
using namespace BenchSupport;
using Clock = std::chrono::steady_clock;
constexpr int kLineBytes = 64; // with its CR LF
constexpr int kRssIntervalMs = 2000;
constexpr int kLoadModules = 256;
constexpr char kFirstFrameArg[] = "--first-frame";

int64_t nowNs()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now().time_since_epoch()).count();
}

int envInt(const char *name, int fallback)
{
    bool ok = false;
    const int value = qEnvironmentVariableIntValue(name, &ok);
    return ok && value > 0 ? value : fallback;
}

struct Summary {
    double p50 = 0, p99 = 0, max = 0; // microseconds
};

Summary summarize(std::vector<int64_t> ns)
{
    if (ns.empty())
        return {};
    std::sort(ns.begin(), ns.end());
    const auto at = [&ns](double q) { return double(ns[size_t(q * double(ns.size() - 1) + 0.5)]) / 1000.0; };
    return {at(0.50), at(0.99), at(1.0)};
}

double medianOf(std::vector<double> values)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    const size_t mid = values.size() / 2;
    return values.size() % 2 ? values[mid] : (values[mid - 1] + values[mid]) / 2;
}

// "L<seq> T<send ns> " padded with 'x', then CR LF: 64 printable bytes.
void formatLine(char *line, int seq, int64_t sentNs)
{
    const int n = std::snprintf(line, kLineBytes, "L%010d T%020lld ", seq, static_cast<long long>(sentNs));
    std::fill(line + n, line + kLineBytes - 2, 'x');
    line[kLineBytes - 2] = '\r';
    line[kLineBytes - 1] = '\n';
}

bool parseLine(const char *data, int length, int *seq, int64_t *sentNs)
{
    if (length < 33 || data[0] != 'L' || data[11] != ' ' || data[12] != 'T')
        return false;
    int s = 0;
    int64_t t = 0;
    for (int i = 1; i <= 10; ++i)
        s = s * 10 + (data[i] - '0');
    for (int i = 13; i <= 32; ++i)
        t = t * 10 + (data[i] - '0');
    *seq = s;
    *sentNs = t;
    return true;
}

// Sets up the host as the standalone app does, with its log file in stateDir.
std::shared_ptr<ModuleRegistry> setUpHost(const QString &gatewayPort, const QString &stateDir)
{
    auto registry = ModuleRegistry::installDefault();
    HostConfig::setLanguage(QStringLiteral("zh_CN"));
    HostConfig::setGatewayPort(gatewayPort);
    HostLog::setLogFile(stateDir + QStringLiteral("/commmanager.log"));
    QUICore::setInteractive(false);
    return registry;
}

struct PaceResult {
    double linesPerSecond = 0;
    Summary slip; // how late each write was against its schedule
    bool ok = true;
};

// Writes `count` lines at `rate` per second, each stamped just before its own
// write; a writer that wakes late writes the lines now due back to back.
PaceResult paceLines(int fd, int count, int rate)
{
    PaceResult result;
    std::vector<int64_t> slip(size_t(count), 0); // sized up front: no growth while measured
    const auto period = std::chrono::nanoseconds(1000000000LL / rate);
    const auto start = Clock::now() + std::chrono::milliseconds(5);
    char line[kLineBytes];
    int64_t first = 0, last = 0;
    for (int i = 0; i < count; ++i) {
        const auto due = start + i * period;
        if (Clock::now() < due)
            std::this_thread::sleep_until(due);
        const int64_t sent = nowNs();
        formatLine(line, i, sent);
        if (!writeFull(fd, line, kLineBytes)) {
            result.ok = false;
            break;
        }
        slip[size_t(i)] = sent - std::chrono::duration_cast<std::chrono::nanoseconds>(due.time_since_epoch()).count();
        if (i == 0)
            first = sent;
        last = sent;
    }
    result.slip = summarize(std::move(slip));
    result.linesPerSecond = last > first ? double(count - 1) * 1e9 / double(last - first) : 0;
    return result;
}

std::vector<int64_t> plainRoundTrips(int rounds)
{
    uint16_t port = 0;
    const int server = listenLoopback(&port);
    std::thread echo(echo64, server);
    const int fd = connectLoopback(port);
    char buf[64] = {};
    std::vector<int64_t> times;
    times.reserve(size_t(rounds));
    for (int i = -rounds / 10; i < rounds; ++i) { // the first tenth warms up
        const int64_t t0 = nowNs();
        writeFull(fd, buf, sizeof(buf));
        readFull(fd, buf, sizeof(buf));
        if (i >= 0)
            times.push_back(nowNs() - t0);
    }
    close(fd);
    echo.join();
    close(server);
    return times;
}

// The same paced lines into a plain socket whose reader stamps each complete line.
std::vector<int64_t> plainOneWay(int count, int rate)
{
    uint16_t port = 0;
    const int server = listenLoopback(&port);
    std::vector<int64_t> latency(size_t(count), -1);
    std::thread reader([server, &latency] {
        const int peer = accept(server, nullptr, nullptr);
        char buf[16384];
        int have = 0;
        ssize_t r;
        while ((r = read(peer, buf + have, sizeof(buf) - size_t(have))) > 0) {
            const int64_t arrived = nowNs();
            have += int(r);
            int begin = 0;
            for (int i = 0; i < have; ++i) {
                if (buf[i] != '\n')
                    continue;
                int seq = 0;
                int64_t sent = 0;
                if (parseLine(buf + begin, i - begin, &seq, &sent) && seq >= 0 && size_t(seq) < latency.size())
                    latency[size_t(seq)] = arrived - sent;
                begin = i + 1;
            }
            std::copy(buf + begin, buf + have, buf);
            have -= begin;
        }
        close(peer);
    });
    const int fd = connectLoopback(port);
    paceLines(fd, count, rate);
    shutdown(fd, SHUT_WR);
    reader.join();
    close(fd);
    close(server);
    latency.erase(std::remove(latency.begin(), latency.end(), -1), latency.end());
    return latency;
}

struct StreamProbe {
    std::unique_ptr<std::atomic<int64_t>[]> latency; // per sequence number, -1 until seen
    int count = 0;
    std::atomic<int> delivered{0};
    std::atomic<int> duplicates{0};
    std::atomic<bool> warm{false};
};
StreamProbe g_probe;

// Installed in place of the module's result callback, which it calls first:
// when that returns, the line's entry is in the device's receive list.
int timedResult(int moduleId, int addressId, void *data, int length, void *userData)
{
    const int rc = ResultCallBack(moduleId, addressId, data, length, userData);
    const int64_t appended = nowNs();
    const char *bytes = static_cast<const char *>(data);
    int seq = 0;
    int64_t sent = 0;
    if (length > 0 && bytes[0] == 'W') {
        g_probe.warm = true;
    } else if (parseLine(bytes, length, &seq, &sent) && seq >= 0 && seq < g_probe.count) {
        int64_t unseen = -1;
        if (g_probe.latency[size_t(seq)].compare_exchange_strong(unseen, appended - sent, std::memory_order_relaxed))
            g_probe.delivered.fetch_add(1, std::memory_order_release);
        else
            g_probe.duplicates.fetch_add(1, std::memory_order_relaxed);
    }
    return rc;
}

struct RssSeries {
    std::vector<long> kb;
    void add(long v) { kb.push_back(v); }
    void print(const char *what) const
    {
        if (kb.empty())
            return;
        std::printf("  %-34s %9.1f %9.1f %9.1f\n", what, double(kb.front()) / 1024,
                    double(*std::max_element(kb.begin(), kb.end())) / 1024, double(kb.back()) / 1024);
    }
};

// A TCP server device made the way the page makes one, on a free port, switched on.
CommDevice *openServerDevice(uint16_t *port)
{
    DevicesManager *manager = DevicesManager::Instance();
    const QString type = QStringLiteral("TcpServerModule");
    if (!manager->loadAlgorithmTabXML(type))
        return nullptr;
    const int id = manager->createCommDevice(type, QStringLiteral("Bench line"));
    CommDevice *device = id > 0 ? manager->getDeviceById(id) : nullptr;
    if (!device)
        return nullptr;
    *port = freeLoopbackPort();
    if (setModuleParam(id, "LocalIP", "127.0.0.1") != GW_OK
        || setModuleParam(id, "LocalPort", QByteArray::number(*port)) != GW_OK)
        return nullptr;
    device->setConnectState(true);
    return device->connectState() ? device : nullptr;
}

bool runStream(const GatewayProcess &gateway, int seconds, int rate)
{
    uint16_t port = 0;
    CommDevice *device = openServerDevice(&port);
    if (!device) {
        std::fprintf(stderr, "cannot open a TCP server device on the gateway\n");
        return false;
    }
    const int count = seconds * rate;
    g_probe.count = count;
    g_probe.latency.reset(new std::atomic<int64_t>[size_t(count)]);
    for (int i = 0; i < count; ++i)
        g_probe.latency[size_t(i)].store(-1, std::memory_order_relaxed);
    GW_PF_SetResultCallback(&timedResult, nullptr);

    const int fd = connectLoopback(port);
    if (fd < 0) {
        std::fprintf(stderr, "cannot connect to the device on port %u\n", port);
        return false;
    }
    std::atomic<bool> writerDone{false};
    PaceResult pace;
    std::thread writer([&] {
        // Until the device has taken the peer and delivers, nothing is timed.
        for (int i = 0; i < 500 && !g_probe.warm; ++i) {
            writeFull(fd, "W\r\n", 3);
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        if (g_probe.warm)
            pace = paceLines(fd, count, rate);
        else
            pace.ok = false;
        writerDone = true;
    });

    RssSeries self, daemon;
    const auto sample = [&] {
        self.add(rssKb(0));
        daemon.add(rssKb(gateway.pid()));
    };
    sample();
    QEventLoop loop; // the GUI thread keeps running the module's timers meanwhile
    QTimer sampler;
    QObject::connect(&sampler, &QTimer::timeout, sample);
    sampler.start(kRssIntervalMs);
    QElapsedTimer quiet;
    int lastDelivered = -1;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        const int now = g_probe.delivered.load(std::memory_order_acquire);
        if (now != lastDelivered) {
            lastDelivered = now;
            quiet.restart();
        }
        // Done when all arrived, or when nothing more came for 2 s after the last write.
        if (writerDone && (now == count || quiet.elapsed() > 2000))
            loop.quit();
    });
    quiet.start();
    watch.start(20);
    loop.exec();
    sampler.stop();
    sample();
    writer.join();
    close(fd);
    GW_PF_SetResultCallback(ResultCallBack, nullptr);

    std::vector<int64_t> latency;
    latency.reserve(size_t(count));
    for (int i = 0; i < count; ++i)
        if (const int64_t v = g_probe.latency[size_t(i)].load(std::memory_order_relaxed); v >= 0)
            latency.push_back(v);
    const QStringList entries = device->recvDataList();
    char lastLine[16];
    std::snprintf(lastLine, sizeof(lastLine), "L%010d", count - 1);
    const bool tailOk = !entries.isEmpty() && entries.last().contains(QLatin1String(lastLine));

    const int baselineLines = std::min(count, 3 * rate);
    const Summary module = summarize(latency);
    const Summary oneWay = summarize(plainOneWay(baselineLines, rate));
    const Summary roundTrip = summarize(plainRoundTrips(20000));

    std::printf("\n1. Receive latency: peer write -> entry in recvDataList, %d lines/s for %d s (%d lines of %d B)\n",
                rate, seconds, count, kLineBytes);
    std::printf("  %-48s %9s %9s %9s\n", "", "median", "p99", "max");
    for (const auto &[label, s] : {std::pair{"module (gatewayd -> libgwplatform -> device)", module},
                                   {"baseline: same paced lines, plain loopback", oneWay},
                                   {"baseline: plain 64 B round trip (TCP_NODELAY)", roundTrip}})
        std::printf("  %-48s %7.1fus %7.1fus %7.1fus\n", label, s.p50, s.p99, s.max);
    std::printf("  %-48s %8.1fx %8.1fx\n", "module / plain one-way", module.p50 / oneWay.p50, module.p99 / oneWay.p99);
    std::printf("  %-48s %8.1fx %8.1fx\n", "module / plain round trip", module.p50 / roundTrip.p50,
                module.p99 / roundTrip.p99);
    std::printf("  lines lost: %d of %d, duplicated: %d; last line in recvDataList: %s\n",
                count - int(latency.size()), count, g_probe.duplicates.load(), tailOk ? "yes" : "NO");
    std::printf("  writer: %.0f lines/s achieved, schedule slip median %.1f us, p99 %.1f us%s\n", pace.linesPerSecond,
                pace.slip.p50, pace.slip.p99, pace.ok ? "" : " (WRITE FAILED)");
    std::printf("  (the page shows new entries on its 300 ms refresh tick, which is not counted)\n");

    std::printf("\n2. Resident memory during the stream, sampled every %d s (%zu samples)\n", kRssIntervalMs / 1000,
                self.kb.size());
    std::printf("  %-34s %9s %9s %9s\n", "MiB", "first", "max", "last");
    self.print("this process (module + client lib)");
    daemon.print("gatewayd");

    DevicesManager::Instance()->deleteCommDevice(device->deviceID());
    return pace.ok;
}

// The child: prints "FRAME <Init returned, us> <first frame, us>", both from
// just before Init (or, for the empty view, before setSource).
int firstFrameChild(const QString &mode, const QString &gatewayPort, const QString &stateDir)
{
    const bool isModule = mode == QLatin1String("module");
    const auto registry = isModule ? setUpHost(gatewayPort, stateDir) : nullptr;
    std::unique_ptr<QQuickView> view(isModule ? new CommManagerModule : new QQuickView);
    auto *module = qobject_cast<CommManagerModule *>(view.get());
    QElapsedTimer clock;
    std::atomic<qint64> frameUs{-1};
    // frameSwapped comes from the render thread when Qt renders threaded: the
    // time is taken there, not when the GUI thread next gets to a queued call.
    QObject::connect(view.get(), &QQuickWindow::frameSwapped, qApp, [&] {
        qint64 none = -1;
        if (frameUs.compare_exchange_strong(none, clock.nsecsElapsed() / 1000))
            QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    }, Qt::DirectConnection);
    clock.start();
    if (!module) {
        view->setSource(QUrl::fromLocalFile(stateDir + QStringLiteral("/empty.qml")));
    } else if (const int rc = module->Init(QString(), QString())) {
        std::fprintf(stderr, "Init failed: 0x%X\n", unsigned(rc));
        return 2;
    }
    const qint64 initUs = clock.nsecsElapsed() / 1000;
    view->show();
    QTimer::singleShot(20000, qApp, [] { QCoreApplication::exit(4); });
    const int rc = QCoreApplication::exec();
    if (module)
        module->DeInit();
    if (rc != 0 || frameUs < 0)
        return rc ? rc : 4;
    std::printf("FRAME %lld %lld\n", static_cast<long long>(initUs), static_cast<long long>(frameUs.load()));
    return 0;
}

bool runChild(const QString &mode, int gatewayPort, const QString &stateDir, double *initMs, double *frameMs)
{
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(),
                {QLatin1String(kFirstFrameArg), mode, QString::number(gatewayPort), stateDir});
    if (!child.waitForFinished(60000) || child.exitCode() != 0)
        return false;
    for (const QByteArray &line : child.readAllStandardOutput().split('\n')) {
        const QList<QByteArray> f = line.split(' ');
        if (f.size() == 3 && f[0] == "FRAME") {
            *initMs = f[1].toDouble() / 1000;
            *frameMs = f[2].toDouble() / 1000;
            return true;
        }
    }
    return false;
}

void runFirstFrame(int gatewayPort, const QString &stateDir, int runs)
{
    std::printf("\n3. CommManagerModule::Init -> first frameSwapped of the page, fresh process per run\n"
                "   (before the other parts: the gateway holds no modules yet)\n");
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1String("offscreen") || platform == QLatin1String("minimal")) {
        std::printf("  SKIPPED: no display (platform \"%s\"); run under xvfb-run -a -s \"-screen 0 1280x800x24\"\n",
                    qPrintable(platform));
        return;
    }
    QFile empty(stateDir + QStringLiteral("/empty.qml"));
    if (!empty.open(QIODevice::WriteOnly)
        || empty.write("import QtQuick 2.15\nRectangle { width: 1130; height: 680; color: \"white\" }\n") <= 0)
        return;
    empty.close();
    std::vector<double> moduleInit, moduleFrame, emptyFrame;
    QStringList runsText;
    for (int i = 0; i < runs; ++i) { // alternating, so drift in the machine's load hits both
        double init = 0, frame = 0;
        if (runChild(QStringLiteral("empty"), gatewayPort, stateDir, &init, &frame))
            emptyFrame.push_back(frame);
        if (runChild(QStringLiteral("module"), gatewayPort, stateDir, &init, &frame)) {
            moduleInit.push_back(init);
            moduleFrame.push_back(frame);
            runsText << QString::number(frame, 'f', 0);
        }
    }
    if (moduleFrame.empty() || emptyFrame.empty()) {
        std::printf("  FAILED: a child process did not draw (see its messages above)\n");
        return;
    }
    std::printf("  %-52s %9s\n", QString::asprintf("median of %zu runs", moduleFrame.size()).toUtf8().constData(),
                "ms");
    std::printf("  %-52s %9.1f   (runs: %s)\n", "module: Init -> first frame", medianOf(moduleFrame),
                qPrintable(runsText.join(QLatin1String(", "))));
    std::printf("  %-52s %9.1f\n", "  of which Init itself (page loaded, devices read)", medianOf(moduleInit));
    std::printf("  %-52s %9.1f\n", "baseline: empty 1130x680 QQuickView -> first frame", medianOf(emptyFrame));
    std::printf("  %-52s %8.1fx\n", "module / baseline", medianOf(moduleFrame) / medianOf(emptyFrame));
}

double msSince(const QElapsedTimer &t)
{
    return double(t.nsecsElapsed()) / 1e6;
}

// What any loader must fetch at least: the module list and every module's
// parameters in one request each.
double readEverythingDirectly(const std::vector<int> &ids)
{
    std::unique_ptr<GW_MODULE_INFO[]> infos(new GW_MODULE_INFO[kLoadModules]());
    std::unique_ptr<GW_PARAM_RECORD> rec(new GW_PARAM_RECORD{});
    QElapsedTimer t;
    t.start();
    int count = 0;
    GW_PF_GetAllModules(infos.get(), kLoadModules, &count);
    for (int id : ids) {
        rec->count = 0;
        GW_PF_GetAllParam(id, rec.get(), GW_MODULE_ADDRESS);
    }
    return msSince(t);
}

void runLoadDevices(int runs)
{
    static const char *const types[] = {"TcpClientModule", "TcpServerModule", "UdpModule",
                                        "SerialModule",    "ProfinetModule",  "EipModule"};
    std::vector<int> ids;
    for (int i = 0; i < kLoadModules; ++i) {
        int id = -1;
        const QByteArray name = "Bench " + QByteArray::number(i);
        if (GW_PF_AddModule(types[i % 6], name.constData(), &id) == GW_OK)
            ids.push_back(id);
    }
    if (ids.empty()) {
        std::printf("\n4. LoadDevices: FAILED, the gateway took no module\n");
        return;
    }
    DevicesManager *manager = DevicesManager::Instance();
    const auto dropOldDevices = [] { // what LoadDevices handed to deleteLater
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    };
    manager->LoadDevices(); // warms the file cache for the six descriptions
    dropOldDevices();
    const long rssBefore = rssKb(0);
    std::vector<double> load, direct;
    for (int r = 0; r < runs; ++r) {
        dropOldDevices();
        QElapsedTimer t;
        t.start();
        manager->LoadDevices();
        load.push_back(msSince(t));
        direct.push_back(readEverythingDirectly(ids));
    }
    const int loaded = manager->commDeviceList().size();
    dropOldDevices();
    const long rssAfter = rssKb(0);

    std::printf("\n4. DevicesManager::LoadDevices, %zu modules of 6 types on the gateway, %d runs\n", ids.size(), runs);
    std::printf("  %-58s %9s %9s\n", "", "median", "min");
    std::printf("  %-58s %7.1fms %7.1fms\n", "LoadDevices", medianOf(load), *std::min_element(load.begin(), load.end()));
    std::printf("  %-58s %7.1fms %7.1fms\n", "baseline: module list and every module's parameters, direct",
                medianOf(direct), *std::min_element(direct.begin(), direct.end()));
    std::printf("  LoadDevices / baseline: %.1fx; devices listed: %d\n", medianOf(load) / medianOf(direct), loaded);
    std::printf("  this process RSS after the warm-up load %.1f MiB, after the last %.1f MiB\n", double(rssBefore) / 1024,
                double(rssAfter) / 1024);
}
} // namespace

int main(int argc, char **argv)
{
    const bool child = argc == 5 && qstrcmp(argv[1], kFirstFrameArg) == 0;
    if (!child && qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen"); // parts 1, 2 and 4 need no display
    QApplication app(argc, argv);
    if (qEnvironmentVariableIsEmpty("LM_MODULES_DIR"))
        qputenv("LM_MODULES_DIR", QByteArray(COMM_MODULES_SOURCE_DIR));
    if (child)
        return firstFrameChild(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]),
                               QString::fromLocal8Bit(argv[4]));

    const int seconds = envInt("BENCH_SECONDS", 10);
    const int rate = envInt("BENCH_RATE", 10000);
    GatewayProcess gateway;
    if (!gateway.start()) {
        std::fprintf(stderr, "cannot start the gateway: %s\n", qPrintable(gateway.error()));
        return 1;
    }
    QTemporaryDir stateDir;
    std::printf("bench_module: gatewayd pid %lld on port %d; %u hardware threads\n",
                static_cast<long long>(gateway.pid()), gateway.port(), std::thread::hardware_concurrency());
    std::fflush(stdout);

    runFirstFrame(gateway.port(), stateDir.path(), envInt("BENCH_FRAME_RUNS", 5));
    std::fflush(stdout);

    const auto registry = setUpHost(QString::number(gateway.port()), stateDir.path());
    auto module = std::make_unique<CommManagerModule>();
    if (const int rc = module->Init(QString(), QString())) {
        std::fprintf(stderr, "CommManagerModule::Init failed: 0x%X\n", unsigned(rc));
        return 1;
    }
    const bool streamed = runStream(gateway, seconds, rate);
    std::fflush(stdout);
    runLoadDevices(envInt("BENCH_LOAD_RUNS", 5));
    std::fflush(stdout);

    module->DeInit();
    module.reset();
    gateway.stop();
    return streamed ? 0 : 1;
}
