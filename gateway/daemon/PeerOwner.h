#pragma once

#include <QList>
#include <QString>
#include <sys/types.h>

struct sockaddr_storage;

// Finds the user that owns the other end of a loopback TCP connection from
// the kernel's socket tables (/proc/net/tcp and /proc/net/tcp6): the peer's
// socket is the row whose local address is our remote one and whose remote
// address is our local one; its uid column names the owner.
class PeerOwner
{
public:
    static constexpr uid_t kUnknown = uid_t(-1);

    // The owner of the peer of the connected socket `fd`, or kUnknown.
    static uid_t ofSocket(int fd);
    // The owner of the socket bound to `peerIp`:`peerPort` connected to
    // `localIp`:`localPort` (IPv4, host order) in the table `text` (the
    // format of /proc/net/tcp or /proc/net/tcp6), or kUnknown.
    static uid_t find(const QByteArray &text, quint32 peerIp, quint16 peerPort, quint32 localIp, quint16 localPort);
    // The gateway's own user, root, or one of `alsoAllowed` may drive it.
    static bool isAdmitted(uid_t owner, const QList<uid_t> &alsoAllowed = {});
};
