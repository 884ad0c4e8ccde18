#pragma once

#include "StreamChannel.h"

#include <QHostAddress>
#include <QObject>
#include <QStringList>
#include <QTcpServer>
#include <QUdpSocket>
#include <mutex>

// Collects what a channel reports. The channel emits from its worker thread;
// the probe takes it there (direct connections) under a std::mutex, so that
// ThreadSanitizer sees the hand-over to the test's thread, and the test reads
// copies.
class ChannelProbe
{
public:
    explicit ChannelProbe(StreamChannel *channel)
    {
        QObject::connect(channel, &StreamChannel::linkUp, &m_context, [this] { locked([this] { ++m_ups; }); },
                         Qt::DirectConnection);
        QObject::connect(channel, &StreamChannel::linkDown, &m_context, [this] { locked([this] { ++m_downs; }); },
                         Qt::DirectConnection);
        QObject::connect(
            channel, &StreamChannel::framesReceived, &m_context,
            [this, channel](const QList<QByteArray> &got) {
                QList<QByteArray> deep; // own bytes, not shared with the worker
                for (const QByteArray &frame : got)
                    deep.append(QByteArray(frame.constData(), frame.size()));
                const qint64 bytes = StreamChannel::bytesOf(got);
                bool taking = true;
                locked([&] {
                    m_frames += deep;
                    m_bytes += bytes;
                    taking = m_taking;
                    if (!taking)
                        m_owed += bytes;
                });
                if (taking)
                    channel->framesTaken(bytes);
            },
            Qt::DirectConnection);
        QObject::connect(
            channel, &StreamChannel::logLine, &m_context,
            [this](const QString &line) {
                const QString copy(line.constData(), line.size());
                locked([&] { m_logs << copy; });
            },
            Qt::DirectConnection);
    }

    // A consumer that falls behind: frames are kept but not reported taken
    // until taking resumes.
    void setTaking(StreamChannel *channel, bool taking)
    {
        qint64 owed = 0;
        locked([&] {
            m_taking = taking;
            std::swap(owed, m_owed);
        });
        if (taking && owed)
            channel->framesTaken(owed);
    }
    qint64 byteCount() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_bytes;
    }
    int ups() const { return read(m_ups); }
    int downs() const { return read(m_downs); }
    int frameCount() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_frames.size();
    }
    // Deep copies: a list shared with the worker's thread would be
    // reference-counted across threads, which ThreadSanitizer cannot follow.
    QList<QByteArray> frames() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        QList<QByteArray> copy;
        for (const QByteArray &frame : m_frames)
            copy.append(QByteArray(frame.constData(), frame.size()));
        return copy;
    }
    QStringList logs() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        QStringList copy;
        for (const QString &line : m_logs)
            copy.append(QString(line.constData(), line.size()));
        return copy;
    }

private:
    template<typename F>
    void locked(F f)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        f();
    }
    int read(const int &value) const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return value;
    }

    QObject m_context;
    mutable std::mutex m_mutex;
    int m_ups = 0;
    int m_downs = 0;
    QList<QByteArray> m_frames;
    QStringList m_logs;
    qint64 m_bytes = 0;
    qint64 m_owed = 0;
    bool m_taking = true;
};

// A loopback port nobody holds right now.
inline quint16 freeTcpPort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort();
}

inline quint16 freeUdpPort()
{
    QUdpSocket probe;
    probe.bind(QHostAddress(QHostAddress::LocalHost), 0);
    return probe.localPort();
}
