#pragma once

#include "ParamSchema.h"
#include "StreamChannel.h"

#include <QHostAddress>
#include <QTcpServer>
#include <atomic>
#include <mutex>
#include <utility>

// Collects what a channel reports. The channel emits from its worker thread;
// the probe takes it there (direct connections) under a std::mutex, so that
// ThreadSanitizer sees the hand-over to the test's thread. Frames are deep
// copies both ways: a list shared with the worker's thread would be
// reference-counted across threads, which ThreadSanitizer cannot follow.
class ChannelProbe
{
public:
    explicit ChannelProbe(StreamChannel *channel) : m_channel(channel)
    {
        QObject::connect(channel, &StreamChannel::linkUp, &m_context, [this] { ++m_ups; }, Qt::DirectConnection);
        QObject::connect(
            channel, &StreamChannel::framesReceived, &m_context,
            [this](const QList<QByteArray> &got) {
                const qint64 bytes = StreamChannel::bytesOf(got);
                std::unique_lock<std::mutex> lock(m_mutex);
                m_frames += deepCopy(got);
                m_bytes += bytes;
                if (!m_taking) {
                    m_owed += bytes;
                    return;
                }
                lock.unlock();
                m_channel->framesTaken(bytes);
            },
            Qt::DirectConnection);
    }

    // A consumer that falls behind: frames are kept but reported taken only
    // once taking resumes.
    void setTaking(bool taking)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_taking = taking;
        const qint64 owed = taking ? std::exchange(m_owed, 0) : 0;
        lock.unlock();
        if (owed)
            m_channel->framesTaken(owed);
    }
    int ups() const { return m_ups; }
    qint64 byteCount() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_bytes;
    }
    QList<QByteArray> frames() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return deepCopy(m_frames);
    }

private:
    static QList<QByteArray> deepCopy(const QList<QByteArray> &frames)
    {
        QList<QByteArray> copy;
        for (const QByteArray &frame : frames)
            copy.append(QByteArray(frame.constData(), frame.size()));
        return copy;
    }

    StreamChannel *m_channel;
    QObject m_context;
    mutable std::mutex m_mutex;
    std::atomic<int> m_ups{0};
    QList<QByteArray> m_frames;
    qint64 m_bytes = 0;
    qint64 m_owed = 0;
    bool m_taking = true;
};

// What the daemon opens a device of `type` with: the defaults of its
// ParamSchema, with `changes` written over them.
inline StreamChannel::Params channelParams(const QByteArray &type, const StreamChannel::Params &changes)
{
    StreamChannel::Params params = ParamSchema::forModuleType(type)->defaults();
    for (auto it = changes.cbegin(); it != changes.cend(); ++it)
        params.insert(it.key(), it.value());
    return params;
}

// A loopback port nobody holds right now.
inline quint16 freeTcpPort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort();
}
