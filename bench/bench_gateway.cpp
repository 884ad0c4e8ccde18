// The gateway against plain loopback sockets, in one run on one machine:
//  - one-key GW_PF_GetModuleParam round trip vs a plain 64-byte TCP ping-pong;
//  - a TCP server device delivering CR LF-framed 64-byte lines to the result
//    callback, and unframed 64 KiB writes vs plain loopback streaming;
//  - the daemon's resident memory after the streams (counter "daemon_rss_kb").
// Needs $GATEWAYD (the gatewayd to measure).
#include "GatewayProcess.h"
#include "GwPlatform.h"

#include <QCoreApplication>
#include <QFile>
#include <arpa/inet.h>
#include <atomic>
#include <benchmark/benchmark.h>
#include <cstring>
#include <memory>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {
GatewayProcess *g_gateway = nullptr;
std::atomic<long long> g_bytes{0};

int onResult(int, int, void *, int length, void *)
{
    g_bytes += length;
    return 0;
}

int listenLoopback(uint16_t *port)
{
    const int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bind(fd, reinterpret_cast<sockaddr *>(&a), sizeof(a));
    listen(fd, 4);
    socklen_t len = sizeof(a);
    getsockname(fd, reinterpret_cast<sockaddr *>(&a), &len);
    *port = ntohs(a.sin_port);
    return fd;
}

int connectLoopback(uint16_t port)
{
    const int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    a.sin_port = htons(port);
    connect(fd, reinterpret_cast<sockaddr *>(&a), sizeof(a));
    const int one = 1;
    setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof(one));
    return fd;
}

bool readFull(int fd, char *buf, size_t n)
{
    size_t got = 0;
    while (got < n) {
        const ssize_t r = read(fd, buf + got, n - got);
        if (r <= 0)
            return false;
        got += size_t(r);
    }
    return true;
}

void writeFull(int fd, const char *buf, size_t n)
{
    size_t done = 0;
    while (done < n) {
        const ssize_t w = write(fd, buf + done, n - done);
        if (w <= 0)
            return;
        done += size_t(w);
    }
}

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
    QFile status(QStringLiteral("/proc/%1/status").arg(g_gateway->pid()));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    return -1;
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

void BM_PlainPingPong64(benchmark::State &state)
{
    uint16_t port = 0;
    const int server = listenLoopback(&port);
    std::thread echo([server] {
        const int peer = accept(server, nullptr, nullptr);
        const int one = 1;
        setsockopt(peer, IPPROTO_TCP, TCP_NODELAY, &one, sizeof(one));
        char buf[64];
        while (readFull(peer, buf, sizeof(buf)))
            writeFull(peer, buf, sizeof(buf));
        close(peer);
    });
    const int fd = connectLoopback(port);
    char buf[64] = {};
    for (auto _ : state) {
        writeFull(fd, buf, sizeof(buf));
        readFull(fd, buf, sizeof(buf));
    }
    close(fd);
    echo.join();
    close(server);
}
BENCHMARK(BM_PlainPingPong64)->UseRealTime()->Repetitions(5)->ReportAggregatesOnly(true);

void BM_GetModuleParamOneKey(benchmark::State &state)
{
    int id = -1;
    GW_PF_AddModule("UdpModule", "bench", &id);
    std::unique_ptr<GW_PARAM_RECORD> rec(new GW_PARAM_RECORD{});
    rec->count = 1;
    qstrncpy(rec->entries[0].key, "TargetPort", GW_PARAM_KEY_SIZE);
    for (auto _ : state)
        if (GW_PF_GetModuleParam(id, rec.get(), -1) != GW_OK)
            state.SkipWithError("GetModuleParam failed");
    GW_PF_DeleteModule(id);
}
BENCHMARK(BM_GetModuleParamOneKey)->UseRealTime()->Repetitions(5)->ReportAggregatesOnly(true);

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

void streamThroughGateway(benchmark::State &state, const char *endChar, size_t blockSize, bool lines)
{
    uint16_t port = 0;
    const int id = openServerDevice(endChar, &port);
    const int fd = connectLoopback(port);
    std::string block;
    if (lines) {
        const std::string line = std::string(62, 'x') + "\r\n";
        while (block.size() + line.size() <= blockSize)
            block += line;
    } else {
        block.assign(blockSize, 'x');
    }
    usleep(100000); // the device accepts the peer
    g_bytes = 0;
    long long sent = 0;
    for (auto _ : state) {
        writeFull(fd, block.data(), block.size());
        sent += static_cast<long long>(block.size());
    }
    // Frames the gateway had to drop never arrive: stop waiting once nothing
    // has come for a second, and report the share delivered.
    long long last = -1;
    while (g_bytes < sent && g_bytes != last) {
        last = g_bytes;
        usleep(1000000);
    }
    state.SetBytesProcessed(g_bytes);
    state.counters["delivered"] = double(g_bytes) / double(sent);
    if (lines)
        state.counters["lines_per_s"] = benchmark::Counter(double(g_bytes / 64), benchmark::Counter::kIsRate);
    state.counters["daemon_rss_kb"] = double(daemonRssKb());
    close(fd);
    GW_PF_DeleteModule(id);
}

void BM_GatewayLinesCrLf64(benchmark::State &state)
{
    streamThroughGateway(state, "\r\n", 64 * 1024, true);
}
BENCHMARK(BM_GatewayLinesCrLf64)->UseRealTime()->MinTime(2.0);

void BM_GatewayStream64K(benchmark::State &state)
{
    streamThroughGateway(state, "", 64 * 1024, false);
}
BENCHMARK(BM_GatewayStream64K)->UseRealTime()->MinTime(2.0);
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
