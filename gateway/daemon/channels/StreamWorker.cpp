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

bool StreamWorker::intParam(const StreamChannel::Params &params, const char *key, int fallback, int min, int max,
                            int &out)
{
    const auto it = params.constFind(key);
    if (it == params.constEnd()) {
        out = fallback;
        return true;
    }
    bool ok = false;
    out = it.value().trimmed().toInt(&ok);
    return ok && out >= min && out <= max;
}

bool StreamWorker::ipv4Param(const StreamChannel::Params &params, const char *key, const char *fallback,
                             QHostAddress &out)
{
    // Only the canonical dotted quad: QHostAddress would also take "1.2.3".
    const QString text = QString::fromLatin1(params.value(key, fallback).trimmed());
    return out.setAddress(text) && out.protocol() == QAbstractSocket::IPv4Protocol && out.toString() == text;
}

bool StreamWorker::boolParam(const StreamChannel::Params &params, const char *key, bool fallback, bool &out)
{
    const auto it = params.constFind(key);
    if (it == params.constEnd()) {
        out = fallback;
        return true;
    }
    const QByteArray text = it.value().trimmed().toLower();
    out = text == "true";
    return out || text == "false";
}
