// The gateway against plain loopback sockets, in one run on one machine:
//  - one-key GW_PF_GetModuleParam round trip (median, 99th percentile) vs a
//    plain 64-byte TCP ping-pong between two threads and between two
//    processes;
//  - a TCP server device delivering CR LF-framed 64-byte lines to the result
//    callback, and unframed 64 KiB writes vs plain loopback streaming;
//  - the daemon's resident memory after the streams (counter "daemon_rss_kb").
// Needs $GATEWAYD (the gatewayd to measure).
#include "BenchSupport.h"
#include "GatewayProcess.h"
#include "GwPlatform.h"

#include <QCoreApplication>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <benchmark/benchmark.h>
#include <cstring>
#include <memory>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {
using namespace BenchSupport;
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

// Per-operation round trips, reported as median and 99th percentile.
class Latencies
{
public:
    void add(std::chrono::steady_clock::time_point start)
    {
        m_us.push_back(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
    }
    void report(benchmark::State &state)
    {
        if (m_us.empty())
            return;
        std::sort(m_us.begin(), m_us.end());
        state.counters["p50_us"] = m_us[m_us.size() / 2];
        state.counters["p99_us"] = m_us[m_us.size() * 99 / 100];
    }

private:
    std::vector<double> m_us;
};

quint32 setParam(int module, const char *key, const char *value)
{
    std::unique_ptr<GW_PARAM_RECORD> rec(new GW_PARAM_RECORD{});
    rec->count = 1;
    qstrncpy(rec->entries[0].key, key, GW_PARAM_KEY_SIZE);
    qstrncpy(rec->entries[0].value, value, GW_PARAM_VALUE_SIZE);
    return GW_PF_SetModuleParam(module, rec.get(), -1);
}

long daemonRssKb()
{
    return rssKb(g_gateway->pid());
}

// A TCP server device on a free port, switched on; its module id.
int openServerDevice(const char *endChar, uint16_t *port)
{
    const int probe = listenLoopback(port);
    close(probe);
    int id = -1;
    GW_PF_AddModule("TcpServerModule", "bench", &id);
    setParam(id, "LocalIP", "127.0.0.1");
    setParam(id, "LocalPort", std::to_string(*port).c_str());
    setParam(id, "EndChar", endChar);
    setParam(id, "ConnectState", "true");
    return id;
}

// Accepts one peer on `server` and echoes its 64-byte messages until it leaves.
void echo64(int server)
{
    const int peer = accept(server, nullptr, nullptr);
    const int one = 1;
    setsockopt(peer, IPPROTO_TCP, TCP_NODELAY, &one, sizeof(one));
    char buf[64];
    while (readFull(peer, buf, sizeof(buf)))
        writeFull(peer, buf, sizeof(buf));
    close(peer);
}

void pingPong64(benchmark::State &state, uint16_t port)
{
    const int fd = connectLoopback(port);
    char buf[64] = {};
    Latencies latencies;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
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

// The same ping-pong with the echo in another process, as the gateway is:
// each round trip then switches between address spaces.
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
        const auto start = std::chrono::steady_clock::now();
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

// One iteration streams kStreamChunk bytes from a peer into a TCP server
// device and ends when the result callback has seen all of them: the time
// covers the whole path, not just the peer's writes.
constexpr long long kStreamChunk = 32LL * 1024 * 1024;

std::string streamBlock(size_t blockSize, bool lines)
{
    if (!lines)
        return std::string(blockSize, 'x');
    const std::string line = std::string(62, 'x') + "\r\n";
    std::string block;
    while (block.size() + line.size() <= blockSize)
        block += line;
    return block;
}

// Waits until `target` bytes were delivered; false if nothing came for 2 s.
bool waitDelivered(long long target)
{
    long long last = g_bytes;
    auto lastChange = std::chrono::steady_clock::now();
    while (g_bytes < target) {
        std::this_thread::sleep_for(std::chrono::microseconds(50));
        if (g_bytes != last) {
            last = g_bytes;
            lastChange = std::chrono::steady_clock::now();
        } else if (std::chrono::steady_clock::now() - lastChange > std::chrono::seconds(2)) {
            return false;
        }
    }
    return true;
}

void streamThroughGateway(benchmark::State &state, const char *endChar, bool lines)
{
    uint16_t port = 0;
    const int id = openServerDevice(endChar, &port);
    const int fd = connectLoopback(port);
    const std::string block = streamBlock(64 * 1024, lines);
    usleep(100000); // the device accepts the peer
    g_bytes = 0;
    long long sent = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        for (long long n = 0; n < kStreamChunk; n += static_cast<long long>(block.size())) {
            writeFull(fd, block.data(), block.size());
            sent += static_cast<long long>(block.size());
        }
        if (!waitDelivered(sent)) {
            state.SkipWithError("bytes lost on the way");
            break;
        }
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    state.SetBytesProcessed(sent);
    if (lines)
        state.counters["lines_per_s"] = benchmark::Counter(double(sent / 64), benchmark::Counter::kIsRate);
    state.counters["daemon_rss_kb"] = double(daemonRssKb());
    close(fd);
    GW_PF_DeleteModule(id);
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

// The daemon's memory over a long stream of lines ($BENCH_STREAM_SECONDS,
// default 10; 60 for the figure in the README), once with a callback that
// keeps up and once with one that takes 1 ms per frame and so falls behind:
// the client library then drops what exceeds its bound, and the daemon
// must stay where it was.
void BM_GatewayMemoryUnderStream(benchmark::State &state)
{
    const int seconds = qEnvironmentVariableIsSet("BENCH_STREAM_SECONDS")
        ? qEnvironmentVariableIntValue("BENCH_STREAM_SECONDS") : 10;
    g_slowCallback = state.range(0) != 0;
    uint16_t port = 0;
    const int id = openServerDevice("\r\n", &port);
    const int fd = connectLoopback(port);
    const std::string block = streamBlock(64 * 1024, true);
    usleep(100000);
    for (auto _ : state) {
        long rssFirst = 0, rssMax = 0, rssLast = 0;
        const auto start = std::chrono::steady_clock::now();
        auto nextSample = start;
        while (std::chrono::steady_clock::now() - start < std::chrono::seconds(seconds)) {
            // 10,000 lines/s offered, in blocks every 100 ms.
            for (int i = 0; i < 1000 / int(block.size() / 64) + 1; ++i)
                writeFull(fd, block.data(), block.size());
            std::this_thread::sleep_until(nextSample += std::chrono::milliseconds(100));
            rssLast = daemonRssKb();
            rssFirst = rssFirst ? rssFirst : rssLast;
            rssMax = std::max(rssMax, rssLast);
        }
        state.counters["rss_first_kb"] = double(rssFirst);
        state.counters["rss_max_kb"] = double(rssMax);
        state.counters["rss_last_kb"] = double(rssLast);
    }
    close(fd);
    GW_PF_DeleteModule(id);
    g_slowCallback = false;
}
BENCHMARK(BM_GatewayMemoryUnderStream)->Arg(0)->Arg(1)->Iterations(1)->UseRealTime();
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
