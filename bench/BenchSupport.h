#pragma once
// Plain loopback sockets for the baselines, one-entry gateway parameter
// writes and process memory, shared by the benchmarks.
#include <QByteArray>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <vector>
#include <QtGlobal>
#include <cstddef>
#include <cstdint>

namespace BenchSupport {
// A listening socket on 127.0.0.1 and a free port; its descriptor.
int listenLoopback(uint16_t *port);
// A loopback port that was free a moment ago.
uint16_t freeLoopbackPort();
// A connected socket with TCP_NODELAY, or -1.
int connectLoopback(uint16_t port);
bool readFull(int fd, char *buf, size_t n);
bool writeFull(int fd, const char *buf, size_t n);
// Accepts one peer on `server` (TCP_NODELAY) and echoes its 64-byte messages until it leaves.
void echo64(int server);
// GW_PF_SetModuleParam of one key on the module itself.
quint32 setModuleParam(int module, const char *key, const QByteArray &value);
// VmRSS of a process (this one for pid 0) in kB, or -1.
long rssKb(qint64 pid = 0);

// Per-operation times, reported to a benchmark as median and 99th
// percentile (counters p50_us and p99_us).
struct Latencies {
    std::vector<double> us;
    void add(std::chrono::steady_clock::time_point start)
    {
        us.push_back(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
    }
    void report(benchmark::State &state)
    {
        if (us.empty())
            return;
        std::sort(us.begin(), us.end());
        state.counters["p50_us"] = us[us.size() / 2];
        state.counters["p99_us"] = us[us.size() * 99 / 100];
    }
};
} // namespace BenchSupport
