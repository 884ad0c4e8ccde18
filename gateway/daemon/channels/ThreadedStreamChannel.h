#pragma once

#include "ChannelState.h"
#include "StreamChannel.h"

#include <QThread>
#include <functional>
#include <memory>

class StreamWorker;

// A StreamChannel whose worker runs in a thread of its own. open and close
// wait for the worker; write hands bytes over and returns at once.
class ThreadedStreamChannel : public StreamChannel
{
    Q_OBJECT
public:
    using WorkerFactory = std::function<StreamWorker *(std::shared_ptr<ChannelState>)>;

    ThreadedStreamChannel(const WorkerFactory &factory, QObject *parent = nullptr);
    ~ThreadedStreamChannel() override;

    quint32 open(const Params &params) override;
    void close() override;
    bool isOpen() const override { return m_state->open; }
    bool connectState() const override { return m_state->connectState; }
    quint32 write(const QByteArray &bytes) override;
    QList<quint16> reservedPorts() const override;
    quint64 droppedFrames() const override { return m_state->droppedFrames; }

private:
    std::shared_ptr<ChannelState> m_state;
    QThread m_thread;
    StreamWorker *m_worker;
};
