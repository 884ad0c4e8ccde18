#pragma once

#include "StreamWorker.h"

#include <QHash>

class QTcpServer;
class QTcpSocket;

// Listens on "LocalIP":"LocalPort" and serves up to "MaxConnections" peers;
// each peer's stream is framed on its own. Sending goes to every peer.
// State: "Listening" without peers, "Connected" with at least one; the
// peers are published in the channel status.
class TcpServerWorker : public StreamWorker
{
    Q_OBJECT
public:
    using StreamWorker::StreamWorker;

    quint32 open(const StreamChannel::Params &params) override;
    void close() override;
    void send(const QByteArray &bytes) override;
    void flushOutput() override;
    void readPending() override;
    quint32 dropPeer(const QString &address) override;

private:
    void onNewConnection();
    void onAcceptError();
    void dropPeer(QTcpSocket *peer);
    void updateBacklog();
    void showPeerCount();

    struct PeerEntry {
        FrameSplitter splitter;
        ChannelStatus::PeerPtr stats;
    };

    QTcpServer *m_server = nullptr;
    QHash<QTcpSocket *, PeerEntry> m_peers;
    QString m_listenText; // "a.b.c.d:port" while listening
    QByteArray m_endChar;
    int m_maxConnections = 1;
};
