#pragma once

#include "ChannelState.h"
#include "FrameSplitter.h"
#include "StreamChannel.h"

#include <QObject>
#include <memory>

class QIODevice;

// The part of a stream channel that lives in the channel's thread and owns
// its sockets or port. Subclasses do one kind of device.
class StreamWorker : public QObject
{
    Q_OBJECT
public:
    explicit StreamWorker(std::shared_ptr<ChannelState> state) : m_state(std::move(state)) {}

    virtual quint32 open(const StreamChannel::Params &params) = 0;
    virtual void close() = 0;
    virtual void send(const QByteArray &bytes) = 0;
    // Hands what send() queued to the device now rather than on the next
    // turn of the event loop, so that an answer leaves at once; what the
    // device cannot take yet follows when it can.
    virtual void flushOutput() {}
    // Reads what its peers sent while reading was held (see flow control in
    // StreamChannel).
    virtual void readPending() = 0;
    // See StreamChannel::dropPeer.
    virtual quint32 dropPeer(const QString &address);

    // What a socket or port buffers on our side; beyond it the bytes stay in
    // the kernel while reading is held.
    static constexpr qint64 kReadBufferSize = 256 * 1024;

signals:
    void linkUp();
    void linkDown();
    void statusChanged(int state);
    void framesReceived(const QList<QByteArray> &frames);
    void logLine(const QString &text);

protected:
    ChannelState &state() { return *m_state; }
    ChannelStatus &status() { return m_state->status; }
    // Sets state and detail; announces a change of state.
    void setStatus(eGW_DEVICE_STATE newState, const QString &detail);
    // Counts one write of `bytes` handed to the device.
    void countSent(qint64 bytes) { status().addSent(bytes); }
    // Reads what `device` has and delivers it, unless reading is held: then
    // the bytes wait until readPending(). Returns the bytes read.
    qint64 take(QIODevice *device, FrameSplitter &splitter);
    // False (and the hold noted) while the consumer is behind.
    bool mayRead();
    // Splits received bytes and emits their frames in one signal.
    void deliver(FrameSplitter &splitter, const QByteArray &bytes);
    void emitFrames(const QList<QByteArray> &frames);
    // Splits into `frames`, counting and logging what was dropped.
    void split(FrameSplitter &splitter, const QByteArray &bytes, QList<QByteArray> &frames);

private:
    std::shared_ptr<ChannelState> m_state;
    QByteArray m_readBuffer; // take()'s, kept between reads up to StreamChannel::kKeptBufferBytes
};
