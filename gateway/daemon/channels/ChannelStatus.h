#pragma once

#include "GwPlatform.h"

#include <QByteArray>
#include <QString>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

// What a stream device shows the operator: its state with a detail text,
// its counters since a point in time and, for a TCP server, its peers.
//
// The worker thread writes, the gateway's main thread reads. Counters are
// relaxed atomics (each is a tally of its own; nobody orders one against
// another), so counting costs the receive path no lock. The state, the
// detail and the peer list change rarely and sit behind one mutex.
class ChannelStatus
{
public:
    // One connected peer of a server. Its tallies are written by the worker
    // thread only, read by any.
    struct Peer {
        QString address; // "a.b.c.d:port"
        qint64 sinceMs = 0;
        std::atomic<uint64_t> rxBytes{0};
        std::atomic<uint64_t> txBytes{0};
        std::atomic<qint64> lastActivityMs{0};
    };
    using PeerPtr = std::shared_ptr<Peer>;

    ChannelStatus();

    // "Closed", "Opening", ... as the parameter "Status" reads.
    static QByteArray stateName(eGW_DEVICE_STATE state);

    // True when the state differs from the one before (the detail alone
    // changing is no state change).
    bool setState(eGW_DEVICE_STATE state, const QString &detail);
    void setDetail(const QString &detail);
    eGW_DEVICE_STATE state() const;
    QString detail() const;

    // Counting. Off only for measuring what counting costs (bench_gateway).
    static void setCounting(bool on);
    static bool counting() { return s_counting.load(std::memory_order_relaxed); }
    void addReceived(qint64 bytes)
    {
        if (counting())
            m_rxBytes.fetch_add(uint64_t(bytes), std::memory_order_relaxed);
    }
    void addFrames(qint64 frames)
    {
        if (counting())
            m_rxFrames.fetch_add(uint64_t(frames), std::memory_order_relaxed);
    }
    void addSent(qint64 bytes)
    {
        if (counting()) {
            m_txBytes.fetch_add(uint64_t(bytes), std::memory_order_relaxed);
            m_txFrames.fetch_add(1, std::memory_order_relaxed);
        }
    }
    void addDropped(qint64 frames) { m_dropped.fetch_add(uint64_t(frames), std::memory_order_relaxed); }
    void addError() { m_errors.fetch_add(1, std::memory_order_relaxed); }
    void addReconnect() { m_reconnects.fetch_add(1, std::memory_order_relaxed); }
    // RxBytes=..;TxBytes=..;RxFrames=..;TxFrames=..;Dropped=..;Errors=..;Reconnects=..;Since=<ISO 8601>
    QByteArray countersText() const;
    // Every counter to zero, Since to now. Peers keep their own tallies.
    void resetCounters();

    PeerPtr addPeer(const QString &address);
    void removePeer(const PeerPtr &peer);
    void clearPeers();
    int peerCount() const;
    static void countPeerReceived(Peer &peer, qint64 bytes, qint64 nowMs);
    static void countPeerSent(Peer &peer, qint64 bytes, qint64 nowMs);
    // One line per peer, "address:port;since;rx;tx;lastActivity", in the
    // order they connected; as many whole lines as fit in `maxBytes`.
    QByteArray peersText(int maxBytes) const;

    // Time stamps as the parameters show them (local time, ISO 8601, seconds).
    static QByteArray timeText(qint64 msecsSinceEpoch);

private:
    static std::atomic<bool> s_counting;

    std::atomic<uint64_t> m_rxBytes{0};
    std::atomic<uint64_t> m_txBytes{0};
    std::atomic<uint64_t> m_rxFrames{0};
    std::atomic<uint64_t> m_txFrames{0};
    std::atomic<uint64_t> m_dropped{0};
    std::atomic<uint64_t> m_errors{0};
    std::atomic<uint64_t> m_reconnects{0};
    std::atomic<qint64> m_sinceMs{0};

    mutable std::mutex m_mutex; // guards the members below
    eGW_DEVICE_STATE m_state = GW_DEVICE_CLOSED;
    QString m_detail;
    std::vector<PeerPtr> m_peers;
};
