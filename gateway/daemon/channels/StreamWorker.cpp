#include "StreamWorker.h"

void StreamWorker::deliver(FrameSplitter &splitter, const QByteArray &bytes)
{
    QList<QByteArray> frames;
    if (const int dropped = splitter.feed(bytes.constData(), bytes.size(), frames)) {
        const uint64_t total = (m_state->droppedFrames += uint64_t(dropped));
        emit logLine(QStringLiteral("frame longer than %1 bytes without its end sequence dropped (%2 so far)")
                         .arg(FrameSplitter::kDefaultMaxFrame)
                         .arg(total));
    }
    if (!frames.isEmpty())
        emit framesReceived(frames);
}

int StreamWorker::intParam(const StreamChannel::Params &params, const char *key, int fallback)
{
    bool ok = false;
    const int value = params.value(key).toInt(&ok);
    return ok ? value : fallback;
}
