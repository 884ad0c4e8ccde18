#include "BenchSupport.h"

#include "GwPlatform.h"

#include <QFile>
#include <QString>
#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <memory>
#include <unistd.h>

namespace BenchSupport {

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

uint16_t freeLoopbackPort()
{
    uint16_t port = 0;
    close(listenLoopback(&port));
    return port;
}

int connectLoopback(uint16_t port)
{
    const int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    a.sin_port = htons(port);
    if (connect(fd, reinterpret_cast<sockaddr *>(&a), sizeof(a)) != 0) {
        close(fd);
        return -1;
    }
    const int one = 1;
    setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof(one));
    return fd;
}

bool readFull(int fd, char *buf, size_t n)
{
    for (size_t got = 0; got < n;) {
        const ssize_t r = read(fd, buf + got, n - got);
        if (r <= 0)
            return false;
        got += size_t(r);
    }
    return true;
}

bool writeFull(int fd, const char *buf, size_t n)
{
    for (size_t done = 0; done < n;) {
        const ssize_t w = write(fd, buf + done, n - done);
        if (w <= 0)
            return false;
        done += size_t(w);
    }
    return true;
}

void echo64(int server)
{
    const int peer = accept(server, nullptr, nullptr);
    const int one = 1;
    setsockopt(peer, IPPROTO_TCP, TCP_NODELAY, &one, sizeof(one));
    char buf[64];
    while (readFull(peer, buf, sizeof(buf)) && writeFull(peer, buf, sizeof(buf))) {
    }
    close(peer);
}

quint32 setModuleParam(int module, const char *key, const QByteArray &value)
{
    std::unique_ptr<GW_PARAM_RECORD> rec(new GW_PARAM_RECORD{});
    rec->count = 1;
    qstrncpy(rec->entries[0].key, key, GW_PARAM_KEY_SIZE);
    qstrncpy(rec->entries[0].value, value.constData(), GW_PARAM_VALUE_SIZE);
    return GW_PF_SetModuleParam(module, rec.get(), GW_MODULE_ADDRESS);
}

long rssKb(qint64 pid)
{
    QFile status(pid > 0 ? QStringLiteral("/proc/%1/status").arg(pid) : QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    return -1;
}

} // namespace BenchSupport
