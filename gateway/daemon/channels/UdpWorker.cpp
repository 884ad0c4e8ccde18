#include "UdpWorker.h"

#include "GwErrorCodes.h"

#include <QNetworkDatagram>
#include <QUdpSocket>

quint32 UdpWorker::open(const StreamChannel::Params &params)
{
    close();
    QHostAddress local;
    QHostAddress target;
    int port = 0;
    int targetPort = 0;
    if (!ipv4Param(params, "LocalIP", "0.0.0.0", local) || !intParam(params, "LocalPort", 0, 1, 65535, port)
        || !ipv4Param(params, "TargetIP", "", target) || !intParam(params, "TargetPort", 0, 1, 65535, targetPort))
        return GW_ERR_INVALID_VALUE;
    m_target = target;
    m_targetPort = quint16(targetPort);
    m_splitter = FrameSplitter(params.value("EndChar"));
    m_socket = new QUdpSocket(this);
    if (!m_socket->bind(local, quint16(port), QAbstractSocket::DontShareAddress)) {
        const bool inUse = m_socket->error() == QAbstractSocket::AddressInUseError;
        emit logLine(QStringLiteral("cannot bind %1:%2: %3").arg(local.toString()).arg(port).arg(m_socket->errorString()));
        delete m_socket;
        m_socket = nullptr;
        return inUse ? GW_ERR_PORT_IN_USE : GW_ERR_OPEN_FAILED;
    }
    connect(m_socket, &QUdpSocket::readyRead, this, &UdpWorker::readPending);
    state().reservedPort = quint16(port);
    state().open = true;
    state().connectState = true;
    state().canSend = true;
    emit linkUp();
    return GW_OK;
}

// Datagrams left unread while reading is held stay in the kernel, which
// drops what does not fit: UDP has no way to slow the sender.
void UdpWorker::readPending()
{
    if (!mayRead())
        return;
    QList<QByteArray> frames;
    while (m_socket && m_socket->hasPendingDatagrams()) {
        const QNetworkDatagram datagram = m_socket->receiveDatagram();
        if (!datagram.isValid())
            break; // a pending error (e.g. ICMP unreachable), not data
        split(m_splitter, datagram.data(), frames);
        m_splitter.flush(frames);
    }
    emitFrames(frames);
}

void UdpWorker::close()
{
    state().open = false;
    state().connectState = false;
    state().canSend = false;
    state().reservedPort = 0;
    delete m_socket;
    m_socket = nullptr;
}

void UdpWorker::send(const QByteArray &bytes)
{
    if (!m_socket)
        return;
    if (m_socket->writeDatagram(bytes, m_target, m_targetPort) < 0)
        emit logLine(QStringLiteral("datagram to %1:%2 not sent: %3")
                         .arg(m_target.toString())
                         .arg(m_targetPort)
                         .arg(m_socket->errorString()));
}
