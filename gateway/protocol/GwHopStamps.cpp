#include "GwHopStamps.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <mutex>
#include <string>

namespace {
constexpr int kHops = int(GwHop::Count);

// One table of stamps per hop, indexed by line number; made on first use so
// that a process that never marks allocates nothing.
std::atomic<int64_t> *table(GwHop hop)
{
    static std::unique_ptr<std::atomic<int64_t>[]> tables[kHops];
    static std::once_flag made[kHops];
    const int index = int(hop);
    std::call_once(made[index], [index] { tables[index].reset(new std::atomic<int64_t>[kGwHopLineNumbers]()); });
    return tables[index].get();
}

int parseNumber(const char *digits)
{
    int value = 0;
    for (int i = 0; i < 6; ++i) {
        if (digits[i] < '0' || digits[i] > '9')
            return -1;
        value = value * 10 + (digits[i] - '0');
    }
    return value;
}
} // namespace

const char *gwHopName(GwHop hop)
{
    static const char *const names[kHops] = {"peer write",     "worker read",   "push encoded", "session write",
                                             "client reader",  "callback",      "request sent",       "request read",
                                             "worker write",   "peer read"};
    const int index = int(hop);
    return index >= 0 && index < kHops ? names[index] : "?";
}

int64_t gwHopNow()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t(now.tv_sec) * 1000000000 + now.tv_nsec;
}

void gwHopMark(GwHop hop, const char *data, size_t size)
{
    if (!data || size < 8 || int(hop) < 0 || hop >= GwHop::Count)
        return;
    const int64_t now = gwHopNow();
    const char *end = data + size;
    for (const char *p = data; p + 8 <= end; ++p) {
        p = static_cast<const char *>(std::memchr(p, '#', size_t(end - p)));
        if (!p || p + 8 > end)
            return;
        if (p[1] != 'L')
            continue;
        const int line = parseNumber(p + 2);
        if (line >= 0)
            table(hop)[line].store(now, std::memory_order_relaxed);
    }
}

int64_t gwHopStamp(GwHop hop, int line)
{
    if (line < 0 || line >= kGwHopLineNumbers || int(hop) < 0 || hop >= GwHop::Count)
        return 0;
    return table(hop)[line].load(std::memory_order_relaxed);
}

bool gwHopDump(const char *path)
{
    FILE *out = std::fopen(path, "w");
    if (!out)
        return false;
    for (int hop = 0; hop < kHops; ++hop) {
        const std::atomic<int64_t> *stamps = table(GwHop(hop));
        for (int line = 0; line < kGwHopLineNumbers; ++line) {
            const int64_t ns = stamps[line].load(std::memory_order_relaxed);
            if (ns)
                std::fprintf(out, "%d %d %lld\n", hop, line, static_cast<long long>(ns));
        }
    }
    return std::fclose(out) == 0;
}

void gwHopDumpToEnvDir(const char *name)
{
    const char *dir = std::getenv("GW_HOP_STAMPS_DIR");
    if (!dir || !*dir)
        return;
    const std::string path = std::string(dir) + "/" + name + ".txt";
    if (!gwHopDump(path.c_str()))
        std::fprintf(stderr, "cannot write the hop stamps to %s\n", path.c_str());
}
