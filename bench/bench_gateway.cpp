// The gateway against plain loopback sockets, in one run on one machine:
//  - one-key GW_PF_GetModuleParam round trip (median, 99th percentile) vs a
//    plain 64-byte TCP ping-pong between two threads and between two processes;
//  - a TCP server device delivering CR LF-framed 64-byte lines to the result
//    callback, and unframed 64 KiB writes vs plain loopback streaming;
//  - the daemon's resident memory after the streams (counter "daemon_rss_kb")
//    and over a long stream ($BENCH_STREAM_SECONDS, default 10);
//  - the cost of the device counters: a TCP server channel in this process
//    delivering CR LF-framed 64-byte lines with counting off (the baseline)
//    and on, in alternating rounds, switched at run time
//    (ChannelStatus::setCounting, there for this measurement only).
// Needs $GATEWAYD (the gatewayd to measure).
#include "BenchSupport.h"
#include "ChannelStatus.h"
#include "GatewayProcess.h"
#include "GwPlatform.h"
#include "ParamSchema.h"
#include "StreamChannel.h"

#include <QCoreApplication>
#include <algorithm>
#include <atomic>
#include <memory>
#include <chrono>
#include <benchmark/benchmark.h>
#include <string>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {
using namespace BenchSupport;
using Clock = std::chrono::steady_clock;
GatewayProcess *g_gateway = nullptr;
std::atomic<long long> g_bytes{0};
std::atomic<bool> g_slowCallback{false};

int onResult(int, int, void *, int length, void *)
{
    g_bytes += length;
    if (g_slowCallback)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return 0;
}

long daemonRssKb()
{
    return rssKb(g_gateway->pid());
}

void pingPong64(benchmark::State &state, uint16_t port)
{
    const int fd = connectLoopback(port);
    char buf[64] = {};
    Latencies latencies;
    for (auto _ : state) {
        const auto start = Clock::now();
        writeFull(fd, buf, sizeof(buf));
        readFull(fd, buf, sizeof(buf));
        latencies.add(start);
    }
    latencies.report(state);
    close(fd);
}

void BM_PlainPingPong64(benchmark::State &state)
{
    uint16_t port = 0;
    const int server = listenLoopback(&port);
    std::thread echo(echo64, server);
    pingPong64(state, port);
    echo.join();
    close(server);
}
BENCHMARK(BM_PlainPingPong64)->UseRealTime()->MinTime(2.0);

// The echo in another process, as the gateway is: each round trip then
// switches between address spaces.
void BM_PlainPingPong64Process(benchmark::State &state)
{
    uint16_t port = 0;
    const int server = listenLoopback(&port);
    const pid_t child = fork();
    if (child == 0) {
        echo64(server);
        _exit(0);
    }
    pingPong64(state, port);
    waitpid(child, nullptr, 0);
    close(server);
}
BENCHMARK(BM_PlainPingPong64Process)->UseRealTime()->MinTime(2.0);

void BM_GetModuleParamOneKey(benchmark::State &state)
{
    int id = -1;
    GW_PF_AddModule("UdpModule", "bench", &id);
    std::unique_ptr<GW_PARAM_RECORD> rec(new GW_PARAM_RECORD{});
    rec->count = 1;
    qstrncpy(rec->entries[0].key, "TargetPort", GW_PARAM_KEY_SIZE);
    Latencies latencies;
    for (auto _ : state) {
        const auto start = Clock::now();
        if (GW_PF_GetModuleParam(id, rec.get(), -1) != GW_OK) {
            state.SkipWithError("GetModuleParam failed");
            break;
        }
        latencies.add(start);
    }
    latencies.report(state);
    GW_PF_DeleteModule(id);
}
BENCHMARK(BM_GetModuleParamOneKey)->UseRealTime()->MinTime(2.0);

void BM_PlainStream64K(benchmark::State &state)
{
    uint16_t port = 0;
    const int server = listenLoopback(&port);
    std::atomic<long long> received{0};
    std::thread sink([&] {
        const int peer = accept(server, nullptr, nullptr);
        std::vector<char> buf(1 << 16);
        ssize_t n;
        while ((n = read(peer, buf.data(), buf.size())) > 0)
            received += n;
        close(peer);
    });
    const int fd = connectLoopback(port);
    std::vector<char> block(1 << 16, 'x');
    long long sent = 0;
    for (auto _ : state) {
        writeFull(fd, block.data(), block.size());
        sent += static_cast<long long>(block.size());
    }
    while (received < sent)
        std::this_thread::yield();
    state.SetBytesProcessed(sent);
    close(fd);
    sink.join();
    close(server);
}
BENCHMARK(BM_PlainStream64K)->UseRealTime()->MinTime(1.0);

// A switched-on TCP server device on a free port with a connected peer
// writing 64 KiB blocks of 64-byte CR LF lines (or of 'x' only).
struct DevicePeer {
    int id = -1;
    int fd = -1;
    std::string block;

    DevicePeer(const char *endChar, bool lines)
    {
        const uint16_t port = freeLoopbackPort();
        GW_PF_AddModule("TcpServerModule", "bench", &id);
        setModuleParam(id, "LocalIP", "127.0.0.1");
        setModuleParam(id, "LocalPort", QByteArray::number(port));
        setModuleParam(id, "EndChar", endChar);
        setModuleParam(id, "ConnectState", "true");
        fd = connectLoopback(port);
        const std::string line = lines ? std::string(62, 'x') + "\r\n" : std::string(1, 'x');
        while (block.size() + line.size() <= 64 * 1024)
            block += line;
        usleep(100000); // the device accepts the peer
    }
    ~DevicePeer()
    {
        close(fd);
        GW_PF_DeleteModule(id);
    }
};

// Waits until `target` bytes were delivered; false if nothing came for 2 s.
bool waitDelivered(long long target)
{
    long long last = g_bytes;
    auto lastChange = Clock::now();
    while (g_bytes < target) {
        std::this_thread::sleep_for(std::chrono::microseconds(50));
        if (g_bytes != last) {
            last = g_bytes;
            lastChange = Clock::now();
        } else if (Clock::now() - lastChange > std::chrono::seconds(2)) {
            return false;
        }
    }
    return true;
}

// One iteration streams 32 MiB from the peer and ends when the result
// callback has seen all of it: the time covers the whole path.
void streamThroughGateway(benchmark::State &state, const char *endChar, bool lines)
{
    constexpr long long kStreamChunk = 32LL * 1024 * 1024;
    const DevicePeer peer(endChar, lines);
    g_bytes = 0;
    long long sent = 0;
    for (auto _ : state) {
        const auto start = Clock::now();
        for (long long n = 0; n < kStreamChunk; n += static_cast<long long>(peer.block.size())) {
            writeFull(peer.fd, peer.block.data(), peer.block.size());
            sent += static_cast<long long>(peer.block.size());
        }
        if (!waitDelivered(sent)) {
            state.SkipWithError("bytes lost on the way");
            break;
        }
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
    }
    state.SetBytesProcessed(sent);
    if (lines)
        state.counters["lines_per_s"] = benchmark::Counter(double(sent / 64), benchmark::Counter::kIsRate);
    state.counters["daemon_rss_kb"] = double(daemonRssKb());
}

void BM_GatewayLinesCrLf64(benchmark::State &state)
{
    streamThroughGateway(state, "\r\n", true);
}
BENCHMARK(BM_GatewayLinesCrLf64)->UseManualTime()->MinTime(2.0);

void BM_GatewayStream64K(benchmark::State &state)
{
    streamThroughGateway(state, "", false);
}
BENCHMARK(BM_GatewayStream64K)->UseManualTime()->MinTime(2.0);

// The daemon's memory over a long stream of lines (60 s for the README's
// figure), with a callback that keeps up and with one that takes 1 ms per
// frame: the client library then drops what exceeds its bound, and the
// daemon must stay where it was.
void BM_GatewayMemoryUnderStream(benchmark::State &state)
{
    const int seconds = qEnvironmentVariableIsSet("BENCH_STREAM_SECONDS")
        ? qEnvironmentVariableIntValue("BENCH_STREAM_SECONDS") : 10;
    g_slowCallback = state.range(0) != 0;
    const DevicePeer peer("\r\n", true);
    for (auto _ : state) {
        long rssFirst = 0, rssMax = 0, rssLast = 0;
        const auto start = Clock::now();
        auto nextSample = start;
        while (Clock::now() - start < std::chrono::seconds(seconds)) {
            // 10,000 lines/s offered, in blocks every 100 ms.
            for (int i = 0; i < 1000 / int(peer.block.size() / 64) + 1; ++i)
                writeFull(peer.fd, peer.block.data(), peer.block.size());
            std::this_thread::sleep_until(nextSample += std::chrono::milliseconds(100));
            rssLast = daemonRssKb();
            rssFirst = rssFirst ? rssFirst : rssLast;
            rssMax = std::max(rssMax, rssLast);
        }
        state.counters["rss_first_kb"] = double(rssFirst);
        state.counters["rss_max_kb"] = double(rssMax);
        state.counters["rss_last_kb"] = double(rssLast);
    }
    g_slowCallback = false;
}
BENCHMARK(BM_GatewayMemoryUnderStream)->Arg(0)->Arg(1)->Iterations(1)->UseRealTime();

// Lines through a TCP server channel straight to a consumer on the worker
// thread, in 4 MiB rounds that switch counting off and on in turn, so that
// the load of a shared machine hits both alike. Reports lines per second of
// each and their ratio (counted / not counted).
void BM_ChannelLinesCountingCost(benchmark::State &state)
{
    constexpr long long kRound = 4LL * 1024 * 1024;
    const uint16_t port = freeLoopbackPort();
    std::unique_ptr<StreamChannel> channel(StreamChannel::create("TcpServerModule"));
    std::atomic<long long> delivered{0};
    QObject::connect(channel.get(), &StreamChannel::framesReceived, channel.get(),
                     [&delivered, shared = channel.get()](const QList<QByteArray> &frames) {
                         const qint64 bytes = StreamChannel::bytesOf(frames);
                         delivered += bytes;
                         shared->framesTaken(bytes);
                     },
                     Qt::DirectConnection);
    StreamChannel::Params params = ParamSchema::forModuleType("TcpServerModule")->defaults();
    params.insert("LocalIP", "127.0.0.1");
    params.insert("LocalPort", QByteArray::number(port));
    params.insert("EndChar", "\r\n");
    if (channel->open(params) != GW_OK) {
        state.SkipWithError("channel did not open");
        return;
    }
    const int fd = connectLoopback(port);
    while (channel->status()->peerCount() < 1)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    std::string block;
    const std::string line = std::string(62, 'x') + "\r\n";
    while (block.size() + line.size() <= 64 * 1024)
        block += line;
    long long sent = 0;
    double seconds[2] = {0, 0};
    long long bytes[2] = {0, 0};
    for (auto _ : state) {
        double iteration = 0;
        for (int counting = 0; counting < 2; ++counting) {
            ChannelStatus::setCounting(counting != 0);
            const auto start = Clock::now();
            for (long long n = 0; n < kRound; n += static_cast<long long>(block.size())) {
                writeFull(fd, block.data(), block.size());
                sent += static_cast<long long>(block.size());
                bytes[counting] += static_cast<long long>(block.size());
            }
            while (delivered < sent)
                std::this_thread::sleep_for(std::chrono::microseconds(20));
            const double elapsed = std::chrono::duration<double>(Clock::now() - start).count();
            seconds[counting] += elapsed;
            iteration += elapsed;
        }
        state.SetIterationTime(iteration);
    }
    ChannelStatus::setCounting(true);
    const double off = double(bytes[0] / 64) / seconds[0];
    const double on = double(bytes[1] / 64) / seconds[1];
    state.counters["lines_per_s_off"] = off;
    state.counters["lines_per_s_on"] = on;
    state.counters["on_vs_off"] = on / off;
    close(fd);
    channel->close();
}
BENCHMARK(BM_ChannelLinesCountingCost)->UseManualTime()->MinTime(10.0);
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    GatewayProcess gateway;
    if (!gateway.start()) {
        std::fprintf(stderr, "cannot start the gateway: %s\n", qPrintable(gateway.error()));
        return 1;
    }
    g_gateway = &gateway;
    if (GW_PF_Init(1, "127.0.0.1", gateway.port(), 101) != GW_OK)
        return 1;
    GW_PF_SetResultCallback(&onResult, nullptr);
    std::fprintf(stderr, "daemon RSS at start: %ld kB\n", daemonRssKb());
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::fprintf(stderr, "daemon RSS at end: %ld kB\n", daemonRssKb());
    GW_PF_DeInit();
    return 0;
}
