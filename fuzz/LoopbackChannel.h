#pragma once

#include "StreamChannel.h"

// A stream device with nothing behind it, for running the daemon's request
// handling where no port may be opened: open and close only change its
// state, and what is written comes back at once as one received frame.
class LoopbackChannel : public StreamChannel
{
    Q_OBJECT
public:
    // Has the shape of StreamChannel::create, to be handed to GatewayService.
    static StreamChannel *create(const QByteArray &moduleType, QObject *parent);

    using StreamChannel::StreamChannel;

    quint32 open(const Params &params) override;
    void close() override { m_open = false; }
    bool isOpen() const override { return m_open; }
    bool connectState() const override { return m_open; }
    quint32 write(const QByteArray &bytes) override;
    QList<quint16> reservedPorts() const override { return {}; }
    quint64 droppedFrames() const override { return 0; }
    void framesTaken(qint64) override {}
    void resumeInput() override {}

private:
    bool m_open = false;
};
