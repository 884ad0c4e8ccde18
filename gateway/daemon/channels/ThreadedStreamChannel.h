#pragma once

#include "ChannelState.h"
#include "StreamChannel.h"

#include <QThread>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

class StreamWorker;

// A StreamChannel whose worker runs in a thread of its own. open and close
// wait for the worker; write hands bytes over and returns at once. Each kind
// of device is a subclass that names its worker.
//
// What crosses threads (the bytes to send, open's parameters and result)
// passes through m_mutex, and the worker is woken through an eventfd that a
// socket notifier in its thread watches; open and close wait on a condition
// variable. Qt's cross-thread events (queued or blocking-queued calls) would
// do the same, but ordered by locks inside Qt that ThreadSanitizer cannot see
// in a Qt not built for it, so every such hand-over would be reported; this
// way it checks every cross-thread access of the channel.
class ThreadedStreamChannel : public StreamChannel
{
    Q_OBJECT
public:
    using WorkerFactory = std::function<StreamWorker *(std::shared_ptr<ChannelState>)>;

    // Bytes a channel accepts for sending (queued here plus unsent in the
    // slowest peer's socket) before write refuses with GW_ERR_BUSY.
    static constexpr int64_t kMaxSendBacklog = 4 * 1024 * 1024;

    ~ThreadedStreamChannel() override;

    quint32 open(const Params &params) override;
    void close() override;
    bool isOpen() const override { return m_state->open; }
    bool connectState() const override { return m_state->connectState; }
    quint32 write(const QByteArray &bytes) override;
    QList<quint16> reservedPorts() const override;
    quint64 droppedFrames() const override { return m_state->droppedFrames; }
    ChannelStatus *status() override { return &m_state->status; }
    quint32 dropPeer(const QString &address) override;
    void framesTaken(qint64 bytes) override;
    void resumeInput() override;

protected:
    ThreadedStreamChannel(const WorkerFactory &factory, QObject *parent);

    template<typename Worker>
    static StreamWorker *makeWorker(std::shared_ptr<ChannelState> state)
    {
        return new Worker(std::move(state));
    }

private:
    enum class Request { None, Open, Close, DropPeer };

    // Runs `request` on the worker thread and waits for it; m_mutex held.
    void callWorker(Request request, std::unique_lock<std::mutex> &lock);
    void wakeWorker(); // m_mutex held
    // These run on the worker thread.
    void startWorkerThread();
    void serveRequests();
    bool onWorkerThread() const { return QThread::currentThread() == &m_thread; }

    std::shared_ptr<ChannelState> m_state;
    QThread m_thread;
    StreamWorker *m_worker;

    int m_wakeFd = -1;
    std::mutex m_callMutex; // one open or close at a time
    std::mutex m_mutex;     // guards the members below
    std::condition_variable m_done;
    QList<QByteArray> m_outbox;
    bool m_wakePending = false;
    bool m_resumeWanted = false;
    bool m_threadReady = false;
    Request m_request = Request::None;
    Params m_openParams;
    QString m_dropAddress;
    quint32 m_openResult = 0; // also the result of a dropped peer
};
