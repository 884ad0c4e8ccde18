#include "TcpServerWorker.h"

#include "GwErrorCodes.h"
#include "ParamReader.h"

#include <QDateTime>
#include <QTcpServer>
#include <QTcpSocket>

quint32 TcpServerWorker::open(const StreamChannel::Params &params)
{
    close();
    ParamReader in(params);
    const QHostAddress local = in.ipv4("LocalIP");
    const quint16 port = in.port("LocalPort");
    m_maxConnections = in.integer("MaxConnections");
    m_endChar = in.text("EndChar");
    if (!in.ok())
        return GW_ERR_INVALID_VALUE;
    m_server = new QTcpServer(this);
    if (!m_server->listen(local, port)) {
        const bool inUse = m_server->serverError() == QAbstractSocket::AddressInUseError;
        emit logLine(QStringLiteral("cannot listen on %1:%2: %3").arg(local.toString()).arg(port).arg(m_server->errorString()));
        status().addError();
        setStatus(GW_DEVICE_ERROR, QStringLiteral("%1:%2: %3").arg(local.toString()).arg(port).arg(m_server->errorString()));
        delete m_server;
        m_server = nullptr;
        return inUse ? GW_ERR_PORT_IN_USE : GW_ERR_OPEN_FAILED;
    }
    connect(m_server, &QTcpServer::newConnection, this, &TcpServerWorker::onNewConnection);
    connect(m_server, &QTcpServer::acceptError, this, &TcpServerWorker::onAcceptError);
    state().reservedPort = port;
    state().open = true;
    state().connectState = true;
    m_listenText = QStringLiteral("%1:%2").arg(local.toString()).arg(port);
    showPeerCount();
    emit linkUp();
    return GW_OK;
}

void TcpServerWorker::onNewConnection()
{
    while (QTcpSocket *peer = m_server->nextPendingConnection()) {
        const QString address = QStringLiteral("%1:%2").arg(peer->peerAddress().toString()).arg(peer->peerPort());
        if (m_peers.size() >= m_maxConnections) {
            emit logLine(QStringLiteral("peer %1 refused: %2 connections already")
                             .arg(peer->peerAddress().toString())
                             .arg(m_peers.size()));
            status().addError();
            status().setDetail(QStringLiteral("%1 of %2 peers; %3 refused")
                                   .arg(m_peers.size())
                                   .arg(m_maxConnections)
                                   .arg(address));
            peer->abort();
            peer->deleteLater();
            continue;
        }
        peer->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        peer->setReadBufferSize(kReadBufferSize);
        m_peers.insert(peer, PeerEntry{FrameSplitter(m_endChar), status().addPeer(address)});
        connect(peer, &QTcpSocket::readyRead, this, [this, peer] {
            auto it = m_peers.find(peer);
            if (it != m_peers.end())
                if (const qint64 bytes = take(peer, it->splitter))
                    ChannelStatus::countPeerReceived(*it->stats, bytes, QDateTime::currentMSecsSinceEpoch());
        });
        connect(peer, &QTcpSocket::disconnected, this, [this, peer] { dropPeer(peer); });
        connect(peer, &QTcpSocket::bytesWritten, this, &TcpServerWorker::updateBacklog);
        state().canSend = true;
        showPeerCount();
    }
}

void TcpServerWorker::showPeerCount()
{
    const QString detail = QStringLiteral("%1, %2 of %3 peers").arg(m_listenText).arg(m_peers.size()).arg(m_maxConnections);
    setStatus(m_peers.isEmpty() ? GW_DEVICE_LISTENING : GW_DEVICE_CONNECTED, detail);
}

quint32 TcpServerWorker::dropPeer(const QString &address)
{
    for (auto it = m_peers.begin(); it != m_peers.end(); ++it) {
        if (it->stats->address != address)
            continue;
        QTcpSocket *peer = it.key();
        emit logLine(QStringLiteral("peer %1 dropped by the operator").arg(address));
        peer->disconnect(this);
        dropPeer(peer);
        peer->abort();
        return GW_OK;
    }
    return GW_ERR_INVALID_VALUE;
}

void TcpServerWorker::readPending()
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    for (auto it = m_peers.begin(); it != m_peers.end(); ++it)
        if (const qint64 bytes = take(it.key(), it->splitter))
            ChannelStatus::countPeerReceived(*it->stats, bytes, now);
}

void TcpServerWorker::onAcceptError()
{
    const QString error = m_server->errorString();
    emit logLine(QStringLiteral("listener on port %1 failed: %2").arg(state().reservedPort).arg(error));
    close();
    status().addError();
    setStatus(GW_DEVICE_ERROR, error);
    emit linkDown();
}

void TcpServerWorker::dropPeer(QTcpSocket *peer)
{
    auto it = m_peers.find(peer);
    if (it == m_peers.end())
        return;
    if (peer->bytesAvailable() > 0) {
        const QByteArray last = peer->readAll(); // what the peer sent just before it left
        ChannelStatus::countPeerReceived(*it->stats, last.size(), QDateTime::currentMSecsSinceEpoch());
        deliver(it->splitter, last);
    }
    status().removePeer(it->stats);
    m_peers.erase(it);
    peer->deleteLater();
    state().canSend = !m_peers.isEmpty();
    updateBacklog();
    if (state().open)
        showPeerCount();
}

void TcpServerWorker::close()
{
    state().open = false;
    state().connectState = false;
    state().canSend = false;
    state().reservedPort = 0;
    const QList<QTcpSocket *> peers = m_peers.keys();
    m_peers.clear();
    status().clearPeers();
    for (QTcpSocket *peer : peers) {
        peer->disconnect(this);
        peer->abort();
        peer->deleteLater();
    }
    if (m_server) {
        // Closed now so the port is free when close returns; deleted later
        // because close may run inside one of the server's own signals.
        m_server->close();
        m_server->disconnect(this);
        m_server->deleteLater();
        m_server = nullptr;
    }
    state().socketBacklog = 0;
    setStatus(GW_DEVICE_CLOSED, QString());
}

void TcpServerWorker::send(const QByteArray &bytes)
{
    if (m_peers.isEmpty())
        return;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    for (auto it = m_peers.cbegin(); it != m_peers.cend(); ++it) {
        const qint64 written = it.key()->write(bytes);
        if (written < 0)
            status().addError();
        else
            ChannelStatus::countPeerSent(*it->stats, written, now);
    }
    countSent(bytes.size());
    updateBacklog();
}

void TcpServerWorker::flushOutput()
{
    for (auto it = m_peers.cbegin(); it != m_peers.cend(); ++it)
        it.key()->flush();
    updateBacklog();
}

void TcpServerWorker::updateBacklog()
{
    // The slowest peer decides how much more may be queued.
    qint64 largest = 0;
    for (auto it = m_peers.cbegin(); it != m_peers.cend(); ++it)
        largest = qMax(largest, it.key()->bytesToWrite());
    state().socketBacklog = largest;
}
