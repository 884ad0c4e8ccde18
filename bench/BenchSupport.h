#pragma once
// Plain loopback sockets and process memory for the benchmarks' baselines.
#include <QtGlobal>
#include <cstddef>
#include <cstdint>

namespace BenchSupport {
// A listening socket on 127.0.0.1 and a free port; its descriptor.
int listenLoopback(uint16_t *port);
// A connected socket with TCP_NODELAY, or -1.
int connectLoopback(uint16_t port);
bool readFull(int fd, char *buf, size_t n);
bool writeFull(int fd, const char *buf, size_t n);
// VmRSS of a process (this one for pid 0) in kB, or -1.
long rssKb(qint64 pid = 0);
} // namespace BenchSupport
