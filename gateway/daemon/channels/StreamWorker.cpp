#include "StreamWorker.h"

#include <QIODevice>

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

void StreamWorker::take(QIODevice *device, FrameSplitter &splitter)
{
    if (mayRead())
        deliver(splitter, device->readAll());
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
    emit framesReceived(frames);
}

void StreamWorker::split(FrameSplitter &splitter, const QByteArray &bytes, QList<QByteArray> &frames)
{
    if (const int dropped = splitter.feed(bytes.constData(), bytes.size(), frames)) {
        const uint64_t total = (m_state->droppedFrames += uint64_t(dropped));
        emit logLine(QStringLiteral("frame longer than %1 bytes without its end sequence dropped (%2 so far)")
                         .arg(splitter.maxFrame())
                         .arg(total));
    }
}
