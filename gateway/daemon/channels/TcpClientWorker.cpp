#include "TcpClientWorker.h"

#include "GwErrorCodes.h"

#include <QTcpSocket>
#include <QTimer>

quint32 TcpClientWorker::open(const StreamChannel::Params &params)
{
    close();
    const int port = intParam(params, "TargetPort", 0);
    if (!m_target.setAddress(QString::fromLatin1(params.value("TargetIP"))) || port < 1 || port > 65535)
        return GW_ERR_INVALID_VALUE;
    m_port = quint16(port);
    m_autoReconnect = params.value("AutoReconnect", "true").toLower() != "false";
    m_endChar = params.value("EndChar");
    m_splitter = FrameSplitter(m_endChar);
    if (!m_socket) {
        m_socket = new QTcpSocket(this);
        m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        connect(m_socket, &QTcpSocket::connected, this, &TcpClientWorker::onConnected);
        connect(m_socket, &QTcpSocket::disconnected, this, &TcpClientWorker::onGone);
        connect(m_socket, &QTcpSocket::errorOccurred, this, [this] {
            if (m_socket->state() != QAbstractSocket::ConnectedState)
                onGone();
        });
        connect(m_socket, &QTcpSocket::readyRead, this, [this] { deliver(m_splitter, m_socket->readAll()); });
        connect(m_socket, &QTcpSocket::bytesWritten, this, &TcpClientWorker::updateBacklog);
        m_retry = new QTimer(this);
        m_retry->setSingleShot(true);
        connect(m_retry, &QTimer::timeout, this, &TcpClientWorker::connectNow);
    }
    m_retry->setInterval(qMax(100, intParam(params, "ReconnectInterval", 3000)));
    m_established = false;
    state().open = true;
    state().connectState = true; // trying: the switch stays on until a lost connection
    connectNow();
    return GW_OK;
}

void TcpClientWorker::connectNow()
{
    if (!state().open || m_socket->state() != QAbstractSocket::UnconnectedState)
        return;
    m_socket->connectToHost(m_target, m_port);
}

void TcpClientWorker::onConnected()
{
    m_established = true;
    state().canSend = true;
    state().connectState = true;
    emit linkUp();
}

void TcpClientWorker::onGone()
{
    state().canSend = false;
    if (!state().open)
        return;
    if (m_established) {
        m_established = false;
        state().connectState = false;
        m_splitter = FrameSplitter(m_endChar); // a half frame of the old connection is gone
        emit logLine(QStringLiteral("connection to %1:%2 lost").arg(m_target.toString()).arg(m_port));
        emit linkDown();
        if (!m_autoReconnect) {
            close();
            return;
        }
    }
    if (!m_retry->isActive())
        m_retry->start();
}

void TcpClientWorker::close()
{
    state().open = false;
    state().connectState = false;
    state().canSend = false;
    m_established = false;
    if (m_retry)
        m_retry->stop();
    if (m_socket)
        m_socket->abort();
    state().socketBacklog = 0;
}

void TcpClientWorker::send(const QByteArray &bytes)
{
    if (m_socket && m_socket->state() == QAbstractSocket::ConnectedState) {
        m_socket->write(bytes);
        updateBacklog();
    }
}

void TcpClientWorker::updateBacklog()
{
    state().socketBacklog = m_socket ? m_socket->bytesToWrite() : 0;
}
