#include "ClientSession.h"

#include "RequestHandler.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <QtDebug>

namespace {
constexpr qint64 kReadChunk = 256 * 1024;
} // namespace

ClientSession::ClientSession(QTcpSocket *socket, RequestHandler &handler, QObject *parent)
    : QObject(parent), m_socket(socket), m_handler(handler)
{
    socket->setParent(this);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(socket, &QTcpSocket::readyRead, this, &ClientSession::onReadyRead);
    connect(socket, &QTcpSocket::bytesWritten, this, [this] {
        m_lastTaken.start();
        emit outputTaken();
    });
    m_lastTaken.start();
    connect(socket, &QTcpSocket::disconnected, this, [this] {
        if (!m_closing) {
            m_closing = true;
            emit finished(this);
        }
    });
}

void ClientSession::push(const QByteArray &frames)
{
    if (m_closing)
        return;
    if (m_socket->bytesToWrite() > kMaxPendingOutput) {
        if (m_dropped++ % 10000 == 0)
            qWarning("client %s does not read, pushed frames dropped (%llu so far)",
                     qPrintable(m_socket->peerAddress().toString()), m_dropped);
        return;
    }
    if (m_socket->bytesToWrite() == 0)
        m_lastTaken.start(); // idle until now: the stall clock starts with this output
    m_socket->write(frames);
    m_socket->flush();
}

bool ClientSession::isBackedUp() const
{
    return !m_closing && m_socket->bytesToWrite() > kBackedUpBytes && !m_lastTaken.hasExpired(kStallMs);
}

bool ClientSession::isDrained() const
{
    return m_closing || m_socket->bytesToWrite() <= kDrainedBytes || m_lastTaken.hasExpired(kStallMs);
}

void ClientSession::onReadyRead()
{
    m_readBuffer.resize(int(kReadChunk));
    qint64 n;
    while (!m_closing && (n = m_socket->read(m_readBuffer.data(), kReadChunk)) > 0) {
        m_decoder.append(m_readBuffer.constData(), size_t(n));
        GwFrame frame;
        GwFrameDecoder::Status status;
        while ((status = m_decoder.next(frame)) == GwFrameDecoder::Status::Frame) {
            if (frame.kind != GwFrameKind::Request) {
                drop(QStringLiteral("a frame that is not a request"));
                return;
            }
            const std::string reply = m_handler.handle(frame.seq, frame.payload);
            m_socket->write(reply.data(), qint64(reply.size()));
        }
        if (status == GwFrameDecoder::Status::Error) {
            drop(QString::fromStdString(m_decoder.error()));
            return;
        }
    }
    // Replies leave now rather than on the next turn of the event loop.
    if (!m_closing)
        m_socket->flush();
}

void ClientSession::drop(const QString &why)
{
    qWarning("malformed frame from client (%s); connection dropped", qPrintable(why));
    m_closing = true;
    m_socket->abort();
    emit finished(this);
}
