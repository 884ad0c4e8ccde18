// Request and answer through the gateway, the typical exchange of a vision
// station: a peer sends a 64-byte line ("T1..." + CR LF), the application
// answers it with GW_PF_WriteString, the peer waits for the answer. Measured
// in one run beside the floor, a plain echo on loopback sockets:
//  - BM_PlainEcho: the floor, an echo thread on a plain socket;
//  - BM_EchoFromCallback: a TCP server device, answered inside the result
//    callback;
//  - BM_EchoFromThread: the same, answered by another thread of the
//    application that the callback hands the line to;
//  - BM_EchoTcpClient: a TCP client device connected to the peer, answered
//    inside the callback;
//  - BM_PlainOneWay / BM_PlainRelayOneWay / BM_OneWayToCallback: lines paced
//    at 10,000 per second, from the peer's write to the reader (plain, or
//    through a plain relay thread) or to the result callback.
// Each reports p50_us and p99_us. Needs $GATEWAYD (the gatewayd to measure).
//
// Every line carries its number ("#L" and six digits). In a build with
// COMM_HOP_STAMPS the gateway and the client library stamp each line at each
// hop (GwHopStamps.h); after the run this program prints, for the last run of
// each benchmark through the gateway, the median and 99th percentile of the
// time from one hop to the next.
#include "BenchSupport.h"
#include "GatewayProcess.h"
#include "GwPlatform.h"

#include <QCoreApplication>
#include <algorithm>
#include <atomic>
#include <benchmark/benchmark.h>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <deque>
#include <mutex>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {
using namespace BenchSupport;
using Clock = std::chrono::steady_clock;

constexpr size_t kLine = 64;
constexpr int kLineNumbers = 1000000; // six digits, as GwHopStamps reads them
constexpr int kPeerWriteHop = 0;      // GwHop::PeerWrite
constexpr int kPeerReadHop = 9;       // GwHop::PeerRead
constexpr int kHops = 10;
const char *const kHopNames[kHops] = {"peer write",    "worker read", "push encoded", "session write",
                                      "client reader", "callback",    "request sent",       "request read",
                                      "worker write",  "peer read"};

long long nowNs();

// The peer's own stamps and the lines each benchmark's last run used.
std::vector<long long> g_peerWrite(kLineNumbers), g_peerRead(kLineNumbers);
int g_nextLine = 0;
std::map<std::string, std::pair<int, int>> g_lineRanges; // first line, one past the last

// "T1#L000123xxx...\r\n", 64 bytes, numbered with the next line number.
std::string nextRequest(int *line)
{
    *line = g_nextLine;
    g_nextLine = (g_nextLine + 1) % kLineNumbers;
    char head[16];
    std::snprintf(head, sizeof(head), "T1#L%06d", *line);
    std::string request(head);
    request.append(kLine - 2 - request.size(), 'x');
    return request + "\r\n";
}

// How the application answers a line.
enum class Answer { None, FromCallback, FromThread };
std::atomic<Answer> g_answer{Answer::None};
std::atomic<long long> g_lines{0};
std::atomic<long long> g_lastArrivalNs{0};

// The application's own answering thread: the callback queues, it writes.
class Answerer
{
public:
    Answerer()
        : m_thread([this] { run(); })
    {
    }
    ~Answerer()
    {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_stop = true;
        }
        m_ready.notify_one();
        m_thread.join();
    }
    void queue(int module, std::string line)
    {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_lines.emplace_back(module, std::move(line));
        }
        m_ready.notify_one();
    }

private:
    void run()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        for (;;) {
            m_ready.wait(lock, [this] { return m_stop || !m_lines.empty(); });
            if (m_stop)
                return;
            auto next = std::move(m_lines.front());
            m_lines.pop_front();
            lock.unlock();
            GW_PF_WriteString(next.first, -1, next.second.c_str());
            lock.lock();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_ready;
    std::deque<std::pair<int, std::string>> m_lines;
    bool m_stop = false;
    std::thread m_thread;
};
Answerer *g_answerer = nullptr;

std::string answerFor(const char *data, int length)
{
    std::string line(data, size_t(length));
    if (line.size() < 2 || line.compare(line.size() - 2, 2, "\r\n") != 0)
        line += "\r\n"; // the device hands the frame over without its end characters
    return line;
}

int onResult(int module, int, void *data, int length, void *)
{
    g_lastArrivalNs = nowNs();
    ++g_lines;
    switch (g_answer.load()) {
    case Answer::FromCallback:
        GW_PF_WriteString(module, -1, answerFor(static_cast<const char *>(data), length).c_str());
        break;
    case Answer::FromThread:
        g_answerer->queue(module, answerFor(static_cast<const char *>(data), length));
        break;
    case Answer::None:
        break;
    }
    return 0;
}

bool readLine(int fd, std::string &buffer)
{
    char chunk[256];
    while (buffer.find("\r\n") == std::string::npos) {
        const ssize_t n = ::read(fd, chunk, sizeof(chunk));
        if (n <= 0)
            return false;
        buffer.append(chunk, size_t(n));
    }
    buffer.erase(0, buffer.find("\r\n") + 2);
    return true;
}

void echoRounds(benchmark::State &state, int fd, const char *name)
{
    const timeval limit{2, 0}; // an answer that never comes ends the run
    setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof(limit));
    Latencies latencies;
    std::string pending;
    const int first = g_nextLine;
    for (auto _ : state) {
        int line = 0;
        const std::string request = nextRequest(&line);
        const auto start = Clock::now();
        g_peerWrite[size_t(line)] = nowNs();
        if (!writeFull(fd, request.data(), request.size()) || !readLine(fd, pending)) {
            state.SkipWithError("the echo stopped");
            break;
        }
        g_peerRead[size_t(line)] = nowNs();
        latencies.add(start);
    }
    g_lineRanges[name] = {first, g_nextLine};
    latencies.report(state);
}

void BM_PlainEcho(benchmark::State &state)
{
    uint16_t port = 0;
    const int server = listenLoopback(&port);
    std::thread echo(echo64, server);
    const int fd = connectLoopback(port);
    echoRounds(state, fd, "BM_PlainEcho");
    close(fd);
    echo.join();
    close(server);
}
BENCHMARK(BM_PlainEcho)->UseRealTime()->MinTime(2.0);

// A switched-on stream device with CR LF framing.
struct Device {
    int id = -1;
    Device(const char *type, uint16_t port)
    {
        GW_PF_AddModule(type, "bench", &id);
        if (std::strcmp(type, "TcpServerModule") == 0) {
            setModuleParam(id, "LocalIP", "127.0.0.1");
            setModuleParam(id, "LocalPort", QByteArray::number(port));
        } else {
            setModuleParam(id, "TargetIP", "127.0.0.1");
            setModuleParam(id, "TargetPort", QByteArray::number(port));
        }
        setModuleParam(id, "EndChar", "\r\n");
        setModuleParam(id, "ConnectState", "true");
    }
    ~Device() { GW_PF_DeleteModule(id); }
};

void echoThroughServer(benchmark::State &state, Answer answer, const char *name)
{
    const uint16_t port = freeLoopbackPort();
    const Device device("TcpServerModule", port);
    const int fd = connectLoopback(port);
    usleep(100000); // the device accepts the peer
    g_answer = answer;
    echoRounds(state, fd, name);
    g_answer = Answer::None;
    close(fd);
}

void BM_EchoFromCallback(benchmark::State &state)
{
    echoThroughServer(state, Answer::FromCallback, "BM_EchoFromCallback");
}
BENCHMARK(BM_EchoFromCallback)->UseRealTime()->MinTime(2.0);

void BM_EchoFromThread(benchmark::State &state)
{
    echoThroughServer(state, Answer::FromThread, "BM_EchoFromThread");
}
BENCHMARK(BM_EchoFromThread)->UseRealTime()->MinTime(2.0);

void BM_EchoTcpClient(benchmark::State &state)
{
    uint16_t port = 0;
    const int server = listenLoopback(&port);
    const Device device("TcpClientModule", port);
    const int fd = accept(server, nullptr, nullptr);
    if (fd < 0) {
        state.SkipWithError("the device did not connect");
        close(server);
        return;
    }
    usleep(100000); // the device reports itself connected
    g_answer = Answer::FromCallback;
    echoRounds(state, fd, "BM_EchoTcpClient");
    g_answer = Answer::None;
    close(fd);
    close(server);
}
BENCHMARK(BM_EchoTcpClient)->UseRealTime()->MinTime(2.0);

// One way at 10,000 lines/s: each line is written at its slot; the receiving
// end notes when it arrived (a count and a time stamp), and the writer waits
// for that without spinning.
long long nowNs()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now().time_since_epoch()).count();
}

void pacedOneWay(benchmark::State &state, int fd, const std::atomic<long long> &arrived,
                 const std::atomic<long long> &arrivalNs, const char *name)
{
    Latencies latencies;
    const int first = g_nextLine;
    long long expected = arrived.load();
    auto slot = Clock::now();
    for (auto _ : state) {
        std::this_thread::sleep_until(slot += std::chrono::microseconds(100));
        int line = 0;
        const std::string request = nextRequest(&line);
        const long long start = nowNs();
        g_peerWrite[size_t(line)] = start;
        ++expected;
        if (!writeFull(fd, request.data(), request.size())) {
            state.SkipWithError("the peer socket failed");
            break;
        }
        const auto giveUp = Clock::now() + std::chrono::seconds(2);
        while (arrived.load() < expected && Clock::now() < giveUp)
            std::this_thread::sleep_for(std::chrono::microseconds(20));
        if (arrived.load() < expected) {
            state.SkipWithError("a line did not arrive");
            break;
        }
        latencies.us.push_back(double(arrivalNs.load() - start) / 1000.0);
    }
    g_lineRanges[name] = {first, g_nextLine};
    latencies.report(state);
}

void BM_PlainOneWay(benchmark::State &state)
{
    uint16_t port = 0;
    const int server = listenLoopback(&port);
    std::atomic<long long> arrived{0};
    std::atomic<long long> arrivalNs{0};
    std::thread reader([&] {
        const int peer = accept(server, nullptr, nullptr);
        std::string pending;
        while (readLine(peer, pending)) {
            arrivalNs = nowNs();
            ++arrived;
        }
        close(peer);
    });
    const int fd = connectLoopback(port);
    pacedOneWay(state, fd, arrived, arrivalNs, "BM_PlainOneWay");
    close(fd);
    reader.join();
    close(server);
}
BENCHMARK(BM_PlainOneWay)->UseRealTime()->MinTime(2.0);

// The same lines through a plain relay thread (a blocking read, then a write
// to a second connection) to the reader: two socket crossings, as through any
// gateway in between, with nothing else done. The floor of the gateway's path.
void BM_PlainRelayOneWay(benchmark::State &state)
{
    uint16_t inPort = 0, outPort = 0;
    const int inServer = listenLoopback(&inPort);
    const int outServer = listenLoopback(&outPort);
    std::atomic<long long> arrived{0};
    std::atomic<long long> arrivalNs{0};
    std::thread reader([&] {
        const int peer = accept(outServer, nullptr, nullptr);
        std::string pending;
        while (readLine(peer, pending)) {
            arrivalNs = nowNs();
            ++arrived;
        }
        close(peer);
    });
    std::thread relay([&] {
        const int from = accept(inServer, nullptr, nullptr);
        const int to = connectLoopback(outPort);
        char chunk[4096];
        ssize_t n;
        while ((n = ::read(from, chunk, sizeof(chunk))) > 0 && writeFull(to, chunk, size_t(n))) {
        }
        close(to);
        close(from);
    });
    const int fd = connectLoopback(inPort);
    pacedOneWay(state, fd, arrived, arrivalNs, "BM_PlainRelayOneWay");
    close(fd);
    relay.join();
    reader.join();
    close(inServer);
    close(outServer);
}
BENCHMARK(BM_PlainRelayOneWay)->UseRealTime()->MinTime(2.0);

void BM_OneWayToCallback(benchmark::State &state)
{
    const uint16_t port = freeLoopbackPort();
    const Device device("TcpServerModule", port);
    const int fd = connectLoopback(port);
    usleep(100000);
    pacedOneWay(state, fd, g_lines, g_lastArrivalNs, "BM_OneWayToCallback");
    close(fd);
}
BENCHMARK(BM_OneWayToCallback)->UseRealTime()->MinTime(2.0);
#ifdef COMM_HOP_STAMPS
// The stamps a process of the gateway wrote ("hop line nanoseconds" lines).
void readStamps(const std::string &path, std::vector<std::vector<long long>> &stamps)
{
    std::ifstream in(path);
    int hop = 0, line = 0;
    long long ns = 0;
    while (in >> hop >> line >> ns)
        if (hop >= 0 && hop < kHops && line >= 0 && line < kLineNumbers)
            stamps[size_t(hop)][size_t(line)] = ns;
}

// Per benchmark through the gateway: each hop's time since the hop before it
// that stamped the line, median and 99th percentile over the last run's lines.
void reportHops(const std::string &dir)
{
    std::vector<std::vector<long long>> stamps(kHops, std::vector<long long>(kLineNumbers));
    stamps[kPeerWriteHop] = g_peerWrite;
    stamps[kPeerReadHop] = g_peerRead;
    readStamps(dir + "/daemon.txt", stamps);
    readStamps(dir + "/client.txt", stamps);
    std::printf("\nHop times (us) of the last run of each benchmark, from the hop before:\n");
    for (const auto &range : g_lineRanges) {
        if (range.first.rfind("BM_Plain", 0) == 0)
            continue;
        std::printf("%s (lines %d to %d)\n", range.first.c_str(), range.second.first, range.second.second - 1);
        std::printf("  %-20s %10s %10s %8s\n", "hop", "p50_us", "p99_us", "lines");
        for (int hop = 1; hop < kHops; ++hop) {
            std::vector<double> us;
            for (int line = range.second.first; line != range.second.second; line = (line + 1) % kLineNumbers) {
                const long long at = stamps[size_t(hop)][size_t(line)];
                if (!at)
                    continue;
                for (int before = hop - 1; before >= 0; --before) {
                    if (const long long from = stamps[size_t(before)][size_t(line)]) {
                        us.push_back(double(at - from) / 1000.0);
                        break;
                    }
                }
            }
            if (us.empty())
                continue;
            std::sort(us.begin(), us.end());
            std::printf("  %-20s %10.1f %10.1f %8zu\n", kHopNames[hop], us[us.size() / 2], us[us.size() * 99 / 100],
                        us.size());
        }
    }
}
#endif
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
#ifdef COMM_HOP_STAMPS
    char stampDir[] = "/tmp/bench_echo_hops.XXXXXX";
    if (!mkdtemp(stampDir))
        return 1;
    setenv("GW_HOP_STAMPS_DIR", stampDir, 1); // for the gateway and the client library
#endif
    GatewayProcess gateway;
    if (!gateway.start()) {
        std::fprintf(stderr, "cannot start the gateway: %s\n", qPrintable(gateway.error()));
        return 1;
    }
    if (GW_PF_Init(1, "127.0.0.1", gateway.port(), 101) != GW_OK)
        return 1;
    Answerer answerer;
    g_answerer = &answerer;
    GW_PF_SetResultCallback(&onResult, nullptr);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    GW_PF_DeInit();
    g_answerer = nullptr;
#ifdef COMM_HOP_STAMPS
    gateway.stop(); // the gateway writes its stamps on its way out
    reportHops(stampDir);
#endif
    return 0;
}
