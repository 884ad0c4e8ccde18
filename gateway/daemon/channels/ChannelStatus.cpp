#include "ChannelStatus.h"

#include <QDateTime>

namespace {
// The guard of m_mutex. The ThreadSanitizer control build of the thread test
// (COMM_TSAN_CONTROL, never part of the gateway) swaps in a guard that locks
// nothing, to prove that the test reports a status read without the lock.
#ifdef COMM_TSAN_CONTROL
struct Guard {
    explicit Guard(std::mutex &) {}
};
#else
using Guard = std::lock_guard<std::mutex>;
#endif

// A copy that shares no data with `text`. Texts cross between the worker
// and the main thread only as such copies: a shared QString is released
// inside Qt, where ThreadSanitizer cannot see the reference count that
// orders the release.
QString unshared(const QString &text)
{
    return QString(text.constData(), text.size());
}
} // namespace

std::atomic<bool> ChannelStatus::s_counting{true};

ChannelStatus::ChannelStatus() : m_sinceMs(QDateTime::currentMSecsSinceEpoch()) {}

QByteArray ChannelStatus::stateName(eGW_DEVICE_STATE state)
{
    switch (state) {
    case GW_DEVICE_CLOSED: return "Closed";
    case GW_DEVICE_OPENING: return "Opening";
    case GW_DEVICE_CONNECTED: return "Connected";
    case GW_DEVICE_LISTENING: return "Listening";
    case GW_DEVICE_RECONNECTING: return "Reconnecting";
    case GW_DEVICE_PORT_MISSING: return "PortMissing";
    case GW_DEVICE_ERROR: return "Error";
    }
    return "Error";
}

bool ChannelStatus::setState(eGW_DEVICE_STATE state, const QString &detail)
{
    Guard lock(m_mutex);
    const bool changed = state != m_state;
    m_state = state;
    m_detail = unshared(detail);
    return changed;
}

void ChannelStatus::setDetail(const QString &detail)
{
    Guard lock(m_mutex);
    m_detail = unshared(detail);
}

eGW_DEVICE_STATE ChannelStatus::state() const
{
    Guard lock(m_mutex);
    return m_state;
}

QString ChannelStatus::detail() const
{
    Guard lock(m_mutex);
    return unshared(m_detail);
}

void ChannelStatus::setCounting(bool on)
{
    s_counting.store(on, std::memory_order_relaxed);
}

QByteArray ChannelStatus::timeText(qint64 msecsSinceEpoch)
{
    return QDateTime::fromMSecsSinceEpoch(msecsSinceEpoch).toString(Qt::ISODate).toLatin1();
}

QByteArray ChannelStatus::countersText() const
{
    const auto n = [](const std::atomic<uint64_t> &value) {
        return QByteArray::number(qulonglong(value.load(std::memory_order_relaxed)));
    };
    return "RxBytes=" + n(m_rxBytes) + ";TxBytes=" + n(m_txBytes) + ";RxFrames=" + n(m_rxFrames)
        + ";TxFrames=" + n(m_txFrames) + ";Dropped=" + n(m_dropped) + ";Errors=" + n(m_errors)
        + ";Reconnects=" + n(m_reconnects) + ";Since=" + timeText(m_sinceMs.load(std::memory_order_relaxed));
}

void ChannelStatus::resetCounters()
{
    for (std::atomic<uint64_t> *counter :
         {&m_rxBytes, &m_txBytes, &m_rxFrames, &m_txFrames, &m_dropped, &m_errors, &m_reconnects})
        counter->store(0, std::memory_order_relaxed);
    m_sinceMs.store(QDateTime::currentMSecsSinceEpoch(), std::memory_order_relaxed);
}

ChannelStatus::PeerPtr ChannelStatus::addPeer(const QString &address)
{
    auto peer = std::make_shared<Peer>();
    peer->address = unshared(address);
    peer->sinceMs = QDateTime::currentMSecsSinceEpoch();
    peer->lastActivityMs = peer->sinceMs;
    Guard lock(m_mutex);
    m_peers.push_back(peer);
    return peer;
}

void ChannelStatus::removePeer(const PeerPtr &peer)
{
    Guard lock(m_mutex);
    for (auto it = m_peers.begin(); it != m_peers.end(); ++it) {
        if (*it == peer) {
            m_peers.erase(it);
            return;
        }
    }
}

void ChannelStatus::clearPeers()
{
    Guard lock(m_mutex);
    m_peers.clear();
}

int ChannelStatus::peerCount() const
{
    Guard lock(m_mutex);
    return int(m_peers.size());
}

void ChannelStatus::countPeerReceived(Peer &peer, qint64 bytes, qint64 nowMs)
{
    if (!counting())
        return;
    peer.rxBytes.fetch_add(uint64_t(bytes), std::memory_order_relaxed);
    peer.lastActivityMs.store(nowMs, std::memory_order_relaxed);
}

void ChannelStatus::countPeerSent(Peer &peer, qint64 bytes, qint64 nowMs)
{
    if (!counting())
        return;
    peer.txBytes.fetch_add(uint64_t(bytes), std::memory_order_relaxed);
    peer.lastActivityMs.store(nowMs, std::memory_order_relaxed);
}

QByteArray ChannelStatus::peersText(int maxBytes) const
{
    std::vector<PeerPtr> peers;
    {
        Guard lock(m_mutex);
        peers = m_peers;
    }
    QByteArray text;
    for (const PeerPtr &peer : peers) {
        const QByteArray line = peer->address.toLatin1() + ';' + timeText(peer->sinceMs) + ';'
            + QByteArray::number(qulonglong(peer->rxBytes.load(std::memory_order_relaxed))) + ';'
            + QByteArray::number(qulonglong(peer->txBytes.load(std::memory_order_relaxed))) + ';'
            + timeText(peer->lastActivityMs.load(std::memory_order_relaxed));
        if (text.size() + (text.isEmpty() ? 0 : 1) + line.size() > maxBytes)
            break;
        if (!text.isEmpty())
            text += '\n';
        text += line;
    }
    return text;
}
