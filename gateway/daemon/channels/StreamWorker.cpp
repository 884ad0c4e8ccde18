#include "StreamWorker.h"

#include "GwErrorCodes.h"
#include "GwHopStamps.h"

#include <QIODevice>
#include <climits>

bool StreamWorker::mayRead()
{
    const auto behind = [this] {
        return m_state->inFlightBytes > StreamChannel::kMaxInFlightBytes || StreamChannel::allInputHeld();
    };
    if (behind()) {
        m_state->readingHeld = true;
        // Looked at again after the flag is up: a consumer that caught up in
        // between saw no hold and will not resume us.
        if (behind())
            return false;
    }
    m_state->readingHeld = false;
    return true;
}

quint32 StreamWorker::dropPeer(const QString &)
{
    return GW_ERR_NOT_SUPPORTED;
}

void StreamWorker::setStatus(eGW_DEVICE_STATE newState, const QString &detail)
{
    if (status().setState(newState, detail))
        emit statusChanged(int(newState));
}

qint64 StreamWorker::take(QIODevice *device, FrameSplitter &splitter)
{
    if (!mayRead())
        return 0;
    // Read into a buffer kept between reads: a fresh one for every read of a
    // busy stream cost page faults each time.
    const qint64 available = device->bytesAvailable();
    if (available <= 0)
        return 0;
    m_readBuffer.resize(int(qMin<qint64>(available, INT_MAX)));
    const qint64 n = device->read(m_readBuffer.data(), m_readBuffer.size());
    if (n > 0) {
        m_readBuffer.resize(int(n));
        deliver(splitter, m_readBuffer);
    }
    if (m_readBuffer.capacity() > StreamChannel::kKeptBufferBytes)
        m_readBuffer = QByteArray(); // after a burst, not held for good
    return qMax<qint64>(n, 0);
}

void StreamWorker::deliver(FrameSplitter &splitter, const QByteArray &bytes)
{
    QList<QByteArray> frames;
    split(splitter, bytes, frames);
    emitFrames(frames);
}

void StreamWorker::emitFrames(const QList<QByteArray> &frames)
{
    if (frames.isEmpty())
        return;
    m_state->inFlightBytes += StreamChannel::bytesOf(frames);
    status().addFrames(frames.size());
    emit framesReceived(frames);
}

void StreamWorker::split(FrameSplitter &splitter, const QByteArray &bytes, QList<QByteArray> &frames)
{
    GW_HOP_MARK(GwHop::WorkerRead, bytes.constData(), size_t(bytes.size()));
    status().addReceived(bytes.size());
    if (const int dropped = splitter.feed(bytes.constData(), bytes.size(), frames)) {
        const uint64_t total = (m_state->droppedFrames += uint64_t(dropped));
        status().addDropped(dropped);
        emit logLine(QStringLiteral("frame longer than %1 bytes without its end sequence dropped (%2 so far)")
                         .arg(splitter.maxFrame())
                         .arg(total));
    }
}
