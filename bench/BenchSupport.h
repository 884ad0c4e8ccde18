#pragma once
// Plain loopback sockets for the baselines, one-entry gateway parameter
// writes and process memory, shared by the benchmarks.
#include <QByteArray>
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
} // namespace BenchSupport
