#include "UdpWorker.h"

#include "GwErrorCodes.h"
#include "ParamReader.h"

#include <QNetworkDatagram>
#include <QUdpSocket>

quint32 UdpWorker::open(const StreamChannel::Params &params)
{
    close();
    ParamReader in(params);
    const QHostAddress local = in.ipv4("LocalIP");
    const quint16 port = in.port("LocalPort");
    m_target = in.ipv4("TargetIP");
    m_targetPort = in.port("TargetPort");
    m_splitter = FrameSplitter(in.text("EndChar"));
    if (!in.ok())
        return GW_ERR_INVALID_VALUE;
    m_socket = new QUdpSocket(this);
    if (!m_socket->bind(local, port, QAbstractSocket::DontShareAddress)) {
        const bool inUse = m_socket->error() == QAbstractSocket::AddressInUseError;
        emit logLine(QStringLiteral("cannot bind %1:%2: %3").arg(local.toString()).arg(port).arg(m_socket->errorString()));
        status().addError();
        setStatus(GW_DEVICE_ERROR, QStringLiteral("%1:%2: %3").arg(local.toString()).arg(port).arg(m_socket->errorString()));
        delete m_socket;
        m_socket = nullptr;
        return inUse ? GW_ERR_PORT_IN_USE : GW_ERR_OPEN_FAILED;
    }
    connect(m_socket, &QUdpSocket::readyRead, this, &UdpWorker::readPending);
    state().reservedPort = port;
    state().open = true;
    state().connectState = true;
    state().canSend = true;
    setStatus(GW_DEVICE_LISTENING, QStringLiteral("%1:%2 to %3:%4")
                                       .arg(local.toString())
                                       .arg(port)
                                       .arg(m_target.toString())
                                       .arg(m_targetPort));
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
    setStatus(GW_DEVICE_CLOSED, QString());
}

void UdpWorker::send(const QByteArray &bytes)
{
    if (!m_socket)
        return;
    if (m_socket->writeDatagram(bytes, m_target, m_targetPort) < 0) {
        status().addError();
        emit logLine(QStringLiteral("datagram to %1:%2 not sent: %3")
                         .arg(m_target.toString())
                         .arg(m_targetPort)
                         .arg(m_socket->errorString()));
    } else {
        countSent(bytes.size());
    }
}
