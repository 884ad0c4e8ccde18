#include "UdpWorker.h"

#include "GwErrorCodes.h"

#include <QNetworkDatagram>
#include <QUdpSocket>

quint32 UdpWorker::open(const StreamChannel::Params &params)
{
    close();
    QHostAddress local;
    const int port = intParam(params, "LocalPort", 0);
    const int targetPort = intParam(params, "TargetPort", 0);
    if (!local.setAddress(QString::fromLatin1(params.value("LocalIP", "0.0.0.0")))
        || !m_target.setAddress(QString::fromLatin1(params.value("TargetIP"))) || port < 1 || port > 65535
        || targetPort < 1 || targetPort > 65535)
        return GW_ERR_INVALID_VALUE;
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
    connect(m_socket, &QUdpSocket::readyRead, this, &UdpWorker::onReadyRead);
    state().reservedPort = quint16(port);
    state().open = true;
    state().connectState = true;
    state().canSend = true;
    emit linkUp();
    return GW_OK;
}

void UdpWorker::onReadyRead()
{
    while (m_socket && m_socket->hasPendingDatagrams())
        deliver(m_splitter, m_socket->receiveDatagram().data());
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
