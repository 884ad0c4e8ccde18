#include "TcpServerWorker.h"

#include "GwErrorCodes.h"

#include <QTcpServer>
#include <QTcpSocket>

quint32 TcpServerWorker::open(const StreamChannel::Params &params)
{
    close();
    QHostAddress local;
    const int port = intParam(params, "LocalPort", 0);
    if (!local.setAddress(QString::fromLatin1(params.value("LocalIP", "0.0.0.0"))) || port < 1 || port > 65535)
        return GW_ERR_INVALID_VALUE;
    m_endChar = params.value("EndChar");
    m_maxConnections = qBound(1, intParam(params, "MaxConnections", 8), 64);
    m_server = new QTcpServer(this);
    if (!m_server->listen(local, quint16(port))) {
        const bool inUse = m_server->serverError() == QAbstractSocket::AddressInUseError;
        emit logLine(QStringLiteral("cannot listen on %1:%2: %3").arg(local.toString()).arg(port).arg(m_server->errorString()));
        delete m_server;
        m_server = nullptr;
        return inUse ? GW_ERR_PORT_IN_USE : GW_ERR_OPEN_FAILED;
    }
    connect(m_server, &QTcpServer::newConnection, this, &TcpServerWorker::onNewConnection);
    state().reservedPort = quint16(port);
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
        m_peers.insert(peer, FrameSplitter(m_endChar));
        connect(peer, &QTcpSocket::readyRead, this, [this, peer] {
            auto it = m_peers.find(peer);
            if (it != m_peers.end())
                deliver(it.value(), peer->readAll());
        });
        connect(peer, &QTcpSocket::disconnected, this, [this, peer] { dropPeer(peer); });
        connect(peer, &QTcpSocket::bytesWritten, this, &TcpServerWorker::updateBacklog);
        state().canSend = true;
    }
}

void TcpServerWorker::dropPeer(QTcpSocket *peer)
{
    if (m_peers.remove(peer) == 0)
        return;
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
    delete m_server;
    m_server = nullptr;
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
