#include "TcpServerWorker.h"

#include "GwErrorCodes.h"
#include "ParamReader.h"

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
        delete m_server;
        m_server = nullptr;
        return inUse ? GW_ERR_PORT_IN_USE : GW_ERR_OPEN_FAILED;
    }
    connect(m_server, &QTcpServer::newConnection, this, &TcpServerWorker::onNewConnection);
    connect(m_server, &QTcpServer::acceptError, this, &TcpServerWorker::onAcceptError);
    state().reservedPort = port;
    state().open = true;
    state().connectState = true;
    emit linkUp();
    return GW_OK;
}

void TcpServerWorker::onNewConnection()
{
    while (QTcpSocket *peer = m_server->nextPendingConnection()) {
        if (m_peers.size() >= m_maxConnections) {
            emit logLine(QStringLiteral("peer %1 refused: %2 connections already")
                             .arg(peer->peerAddress().toString())
                             .arg(m_peers.size()));
            peer->abort();
            peer->deleteLater();
            continue;
        }
        peer->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        peer->setReadBufferSize(kReadBufferSize);
        m_peers.insert(peer, FrameSplitter(m_endChar));
        connect(peer, &QTcpSocket::readyRead, this, [this, peer] {
            auto it = m_peers.find(peer);
            if (it != m_peers.end())
                take(peer, it.value());
        });
        connect(peer, &QTcpSocket::disconnected, this, [this, peer] { dropPeer(peer); });
        connect(peer, &QTcpSocket::bytesWritten, this, &TcpServerWorker::updateBacklog);
        state().canSend = true;
    }
}

void TcpServerWorker::readPending()
{
    for (auto it = m_peers.begin(); it != m_peers.end(); ++it)
        take(it.key(), it.value());
}

void TcpServerWorker::onAcceptError()
{
    emit logLine(QStringLiteral("listener on port %1 failed: %2").arg(state().reservedPort).arg(m_server->errorString()));
    close();
    emit linkDown();
}

void TcpServerWorker::dropPeer(QTcpSocket *peer)
{
    auto it = m_peers.find(peer);
    if (it == m_peers.end())
        return;
    if (peer->bytesAvailable() > 0)
        deliver(it.value(), peer->readAll()); // what the peer sent just before it left
    m_peers.erase(it);
    peer->deleteLater();
    state().canSend = !m_peers.isEmpty();
    updateBacklog();
}

void TcpServerWorker::close()
{
    state().open = false;
    state().connectState = false;
    state().canSend = false;
    state().reservedPort = 0;
    const QList<QTcpSocket *> peers = m_peers.keys();
    m_peers.clear();
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
}

void TcpServerWorker::send(const QByteArray &bytes)
{
    for (auto it = m_peers.cbegin(); it != m_peers.cend(); ++it)
        it.key()->write(bytes);
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
