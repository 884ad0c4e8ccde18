#include "PeerOwner.h"

#include <QFile>
#include <QList>
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {
// An address column as the kernel prints it: the IPv4 address as a
// little-endian hex word (tcp) or an IPv4-mapped IPv6 address as four such
// words (tcp6), a colon and the port in hex.
QByteArray addressText(quint32 ip, quint16 port, bool v6)
{
    const quint32 wire = htonl(ip); // the address bytes in network order, read as a host word
    const QByteArray v4 = QByteArray::number(wire, 16).rightJustified(8, '0').toUpper();
    const QByteArray addr = v6 ? QByteArrayLiteral("0000000000000000FFFF0000") + v4 : v4;
    return addr + ':' + QByteArray::number(port, 16).rightJustified(4, '0').toUpper();
}

uid_t findIn(const QByteArray &text, quint32 peerIp, quint16 peerPort, quint32 localIp, quint16 localPort)
{
    const QByteArray peer4 = addressText(peerIp, peerPort, false);
    const QByteArray peer6 = addressText(peerIp, peerPort, true);
    const QByteArray local4 = addressText(localIp, localPort, false);
    const QByteArray local6 = addressText(localIp, localPort, true);
    const QList<QByteArray> lines = text.split('\n');
    for (int i = 1; i < lines.size(); ++i) { // the first line names the columns
        const QList<QByteArray> f = lines.at(i).simplified().split(' ');
        // sl local rem st tx:rx tr:when retrnsmt uid ...
        if (f.size() < 8)
            continue;
        const QByteArray from = f.at(1).toUpper();
        const QByteArray to = f.at(2).toUpper();
        if (!((from == peer4 && to == local4) || (from == peer6 && to == local6)))
            continue;
        bool ok = false;
        const uint uid = f.at(7).toUInt(&ok);
        if (ok)
            return uid_t(uid);
    }
    return PeerOwner::kUnknown;
}

QByteArray readTable(const char *path)
{
    QFile file(QString::fromLatin1(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

uid_t PeerOwner::find(const QByteArray &text, quint32 peerIp, quint16 peerPort, quint32 localIp, quint16 localPort)
{
    return findIn(text, peerIp, peerPort, localIp, localPort);
}

uid_t PeerOwner::ofSocket(int fd)
{
    sockaddr_in peer{};
    sockaddr_in local{};
    socklen_t peerLen = sizeof(peer);
    socklen_t localLen = sizeof(local);
    if (::getpeername(fd, reinterpret_cast<sockaddr *>(&peer), &peerLen) != 0
        || ::getsockname(fd, reinterpret_cast<sockaddr *>(&local), &localLen) != 0 || peer.sin_family != AF_INET)
        return kUnknown;
    const quint32 peerIp = ntohl(peer.sin_addr.s_addr);
    const quint32 localIp = ntohl(local.sin_addr.s_addr);
    const quint16 peerPort = ntohs(peer.sin_port);
    const quint16 localPort = ntohs(local.sin_port);
    // A client's IPv4 socket is in tcp; one of an IPv6 socket reaching our
    // IPv4 listener through a mapped address is in tcp6.
    uid_t owner = find(readTable("/proc/net/tcp"), peerIp, peerPort, localIp, localPort);
    if (owner == kUnknown)
        owner = find(readTable("/proc/net/tcp6"), peerIp, peerPort, localIp, localPort);
    return owner;
}

bool PeerOwner::isAdmitted(uid_t owner, const QList<uid_t> &alsoAllowed)
{
    return owner != kUnknown && (owner == 0 || owner == ::geteuid() || alsoAllowed.contains(owner));
}
