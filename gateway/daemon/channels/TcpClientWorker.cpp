#include "TcpClientWorker.h"

#include "GwErrorCodes.h"
#include "ParamReader.h"

#include <QDateTime>
#include <QTcpSocket>
#include <QTimer>

namespace {
// A connection attempt still pending after this long (a target that drops
// the handshake) is abandoned and started again.
constexpr int kConnectTimeoutMs = 3000;
} // namespace

quint32 TcpClientWorker::open(const StreamChannel::Params &params)
{
    close();
    ParamReader in(params);
    m_target = in.ipv4("TargetIP");
    m_port = in.port("TargetPort");
    const int interval = in.integer("ReconnectInterval");
    m_autoReconnect = in.boolean("AutoReconnect");
    m_endChar = in.text("EndChar");
    if (!in.ok())
        return GW_ERR_INVALID_VALUE;
    m_splitter = FrameSplitter(m_endChar);
    createSocket();
    m_retry->setInterval(interval);
    m_established = false;
    m_hadConnection = false;
    m_failedAttempts = 0;
    state().open = true;
    state().connectState = true; // trying: the switch stays on until a lost connection
    setStatus(GW_DEVICE_OPENING, targetText());
    connectNow();
    m_retry->start();
    return GW_OK;
}

void TcpClientWorker::createSocket()
{
    if (m_socket)
        return;
    m_socket = new QTcpSocket(this);
    connect(m_socket, &QTcpSocket::connected, this, &TcpClientWorker::onConnected);
    connect(m_socket, &QTcpSocket::disconnected, this, &TcpClientWorker::onDisconnected);
    connect(m_socket, &QTcpSocket::errorOccurred, this, &TcpClientWorker::onError);
    m_socket->setReadBufferSize(kReadBufferSize);
    connect(m_socket, &QTcpSocket::readyRead, this, &TcpClientWorker::readPending);
    connect(m_socket, &QTcpSocket::bytesWritten, this, &TcpClientWorker::updateBacklog);
    m_retry = new QTimer(this);
    connect(m_retry, &QTimer::timeout, this, &TcpClientWorker::retry);
}

void TcpClientWorker::readPending()
{
    if (m_socket)
        take(m_socket, m_splitter);
}

// Every interval while not connected: a failed attempt is retried, one that
// hangs is abandoned after a while.
void TcpClientWorker::retry()
{
    switch (m_socket->state()) {
    case QAbstractSocket::UnconnectedState:
        connectNow();
        break;
    case QAbstractSocket::HostLookupState:
    case QAbstractSocket::ConnectingState:
        if (m_attempt.elapsed() >= qMax(kConnectTimeoutMs, m_retry->interval())) {
            m_socket->abort();
            ++m_failedAttempts;
            status().addError();
            setStatus(GW_DEVICE_RECONNECTING, QStringLiteral("%1, attempt %2 timed out; next try at %3")
                                                   .arg(targetText())
                                                   .arg(m_failedAttempts)
                                                   .arg(nextTryText()));
            connectNow();
        }
        break;
    default:
        break;
    }
}

void TcpClientWorker::connectNow()
{
    if (!state().open)
        return;
    m_attempt.start();
    m_socket->connectToHost(m_target, m_port);
}

void TcpClientWorker::onConnected()
{
    m_retry->stop();
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_established = true;
    if (m_hadConnection)
        status().addReconnect(); // back after a lost connection
    m_hadConnection = true;
    m_failedAttempts = 0;
    state().canSend = true;
    state().connectState = true;
    setStatus(GW_DEVICE_CONNECTED, targetText());
    emit linkUp();
}

void TcpClientWorker::onDisconnected()
{
    state().canSend = false;
    state().socketBacklog = 0;
    if (!state().open || !m_established)
        return;
    m_established = false;
    state().connectState = false;
    m_splitter = FrameSplitter(m_endChar); // a half frame of the old connection is gone
    emit logLine(QStringLiteral("connection to %1:%2 lost").arg(m_target.toString()).arg(m_port));
    const QString reason = m_socket->errorString();
    if (m_autoReconnect) {
        m_retry->start();
        setStatus(GW_DEVICE_RECONNECTING,
                  QStringLiteral("%1 lost (%2); next try at %3").arg(targetText(), reason, nextTryText()));
    } else {
        close();
        status().setDetail(QStringLiteral("%1 lost (%2)").arg(targetText(), reason));
    }
    emit linkDown();
}

// A connection attempt that failed (refused, unreachable). Errors of an
// established connection end in onDisconnected.
void TcpClientWorker::onError()
{
    if (!state().open || m_established)
        return;
    ++m_failedAttempts;
    status().addError();
    setStatus(GW_DEVICE_RECONNECTING, QStringLiteral("%1, attempt %2 failed (%3); next try at %4")
                                          .arg(targetText())
                                          .arg(m_failedAttempts)
                                          .arg(m_socket->errorString(), nextTryText()));
}

QString TcpClientWorker::targetText() const
{
    return QStringLiteral("%1:%2").arg(m_target.toString()).arg(m_port);
}

QString TcpClientWorker::nextTryText() const
{
    const int waitMs = m_retry && m_retry->isActive() ? m_retry->remainingTime() : m_retry ? m_retry->interval() : 0;
    return QDateTime::currentDateTime().addMSecs(qMax(waitMs, 0)).toString(QStringLiteral("hh:mm:ss"));
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
    setStatus(GW_DEVICE_CLOSED, QString());
}

void TcpClientWorker::send(const QByteArray &bytes)
{
    if (m_socket && m_socket->state() == QAbstractSocket::ConnectedState) {
        if (m_socket->write(bytes) < 0)
            status().addError();
        else
            countSent(bytes.size());
        updateBacklog();
    }
}

void TcpClientWorker::flushOutput()
{
    if (m_socket && m_socket->state() == QAbstractSocket::ConnectedState) {
        m_socket->flush();
        updateBacklog();
    }
}

void TcpClientWorker::updateBacklog()
{
    state().socketBacklog = m_socket ? m_socket->bytesToWrite() : 0;
}
