#pragma once

#include "StreamWorker.h"

#include <QHash>

class QTcpServer;
class QTcpSocket;

// Listens on "LocalIP":"LocalPort" and serves up to "MaxConnections" peers;
// each peer's stream is framed on its own. Sending goes to every peer.
class TcpServerWorker : public StreamWorker
{
    Q_OBJECT
public:
    using StreamWorker::StreamWorker;

    quint32 open(const StreamChannel::Params &params) override;
    void close() override;
    void send(const QByteArray &bytes) override;
    void readPending() override;

private:
    void onNewConnection();
    void onAcceptError();
    void dropPeer(QTcpSocket *peer);
    void updateBacklog();

    QTcpServer *m_server = nullptr;
    QHash<QTcpSocket *, FrameSplitter> m_peers;
    QByteArray m_endChar;
    int m_maxConnections = 1;
};
