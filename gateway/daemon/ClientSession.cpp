#include "ClientSession.h"

#include "RequestHandler.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <QtDebug>

namespace {
// Output queued for one client beyond which pushes are dropped.
constexpr qint64 kMaxPendingOutput = 16 * 1024 * 1024;
constexpr qint64 kReadChunk = 256 * 1024;
} // namespace

ClientSession::ClientSession(QTcpSocket *socket, RequestHandler &handler, QObject *parent)
    : QObject(parent), m_socket(socket), m_handler(handler)
{
    socket->setParent(this);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(socket, &QTcpSocket::readyRead, this, &ClientSession::onReadyRead);
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
    m_socket->write(frames);
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
}

void ClientSession::drop(const QString &why)
{
    qWarning("malformed frame from client (%s); connection dropped", qPrintable(why));
    m_closing = true;
    m_socket->abort();
    emit finished(this);
}
