#include "ThreadedStreamChannel.h"

#include "GwErrorCodes.h"
#include "GwHopStamps.h"
#include "StreamWorker.h"

#include <QSocketNotifier>
#include <sys/eventfd.h>
#include <unistd.h>

ThreadedStreamChannel::ThreadedStreamChannel(const WorkerFactory &factory, QObject *parent)
    : StreamChannel(parent),
      m_state(std::make_shared<ChannelState>()),
      m_worker(factory(m_state)),
      m_wakeFd(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
{
    m_worker->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    // Re-emitted on the worker thread, as the interface promises.
    connect(m_worker, &StreamWorker::linkUp, this, &StreamChannel::linkUp, Qt::DirectConnection);
    connect(m_worker, &StreamWorker::linkDown, this, &StreamChannel::linkDown, Qt::DirectConnection);
    connect(m_worker, &StreamWorker::statusChanged, this, &StreamChannel::statusChanged, Qt::DirectConnection);
    connect(m_worker, &StreamWorker::framesReceived, this, &StreamChannel::framesReceived, Qt::DirectConnection);
    connect(m_worker, &StreamWorker::logLine, this, &StreamChannel::logLine, Qt::DirectConnection);
    // Both run in the new thread. Taking m_mutex there orders the creation
    // and the closing of the thread's event dispatcher against the wake-ups
    // and the quit sent from other threads.
    connect(&m_thread, &QThread::started, this, [this] { startWorkerThread(); }, Qt::DirectConnection);
    connect(&m_thread, &QThread::finished, this, [this] { std::lock_guard<std::mutex> lock(m_mutex); },
            Qt::DirectConnection);
    m_thread.setObjectName(QStringLiteral("stream-channel"));
    std::unique_lock<std::mutex> lock(m_mutex);
    m_thread.start();
    m_done.wait(lock, [this] { return m_threadReady; });
}

ThreadedStreamChannel::~ThreadedStreamChannel()
{
    close();
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_thread.quit();
    }
    m_thread.wait();
    std::lock_guard<std::mutex> lock(m_mutex); // after the thread's last use of it
    if (m_wakeFd >= 0)
        ::close(m_wakeFd);
}

void ThreadedStreamChannel::startWorkerThread()
{
    if (m_wakeFd >= 0) {
        auto *notifier = new QSocketNotifier(m_wakeFd, QSocketNotifier::Read, m_worker);
        connect(notifier, &QSocketNotifier::activated, m_worker, [this] { serveRequests(); });
    }
    std::lock_guard<std::mutex> lock(m_mutex);
    m_threadReady = true;
    m_done.notify_all();
}

void ThreadedStreamChannel::wakeWorker()
{
    if (m_wakePending)
        return; // one wake-up carries everything queued until the worker runs
    m_wakePending = true;
    const uint64_t one = 1;
    if (::write(m_wakeFd, &one, sizeof one) != ssize_t(sizeof one))
        m_wakePending = false; // only if the descriptor is unusable; nothing more to do
}

// Sends what was written, then serves an open or close, until nothing is left.
void ThreadedStreamChannel::serveRequests()
{
    // One read resets the eventfd's counter, however many wake-ups it holds.
    uint64_t count = 0;
    (void)!::read(m_wakeFd, &count, sizeof count);
    for (;;) {
        QList<QByteArray> batch;
        Request request = Request::None;
        Params params;
        QString dropAddress;
        bool resume = false;
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_wakePending = false;
            batch.swap(m_outbox);
            request = m_request;
            if (request == Request::Open)
                params = m_openParams;
            if (request == Request::DropPeer)
                dropAddress = m_dropAddress;
            std::swap(resume, m_resumeWanted);
        }
        if (batch.isEmpty() && request == Request::None && !resume)
            return;
        for (const QByteArray &bytes : qAsConst(batch)) {
            m_worker->send(bytes);
            m_state->queuedBytes -= bytes.size();
        }
        if (!batch.isEmpty()) {
            m_worker->flushOutput();
#ifdef COMM_HOP_STAMPS
            for (const QByteArray &bytes : qAsConst(batch))
                GW_HOP_MARK(GwHop::WorkerWrite, bytes.constData(), size_t(bytes.size()));
#endif
        }
        if (resume)
            m_worker->readPending();
        if (request == Request::None)
            continue;
        quint32 rc = GW_OK;
        if (request == Request::Open)
            rc = m_worker->open(params);
        else if (request == Request::DropPeer)
            rc = m_worker->dropPeer(dropAddress);
        else
            m_worker->close();
        std::lock_guard<std::mutex> lock(m_mutex);
        m_openResult = rc;
        m_request = Request::None;
        m_done.notify_all();
    }
}

void ThreadedStreamChannel::callWorker(Request request, std::unique_lock<std::mutex> &lock)
{
    m_request = request;
    wakeWorker();
    m_done.wait(lock, [this] { return m_request == Request::None; });
}

quint32 ThreadedStreamChannel::open(const Params &params)
{
    if (onWorkerThread())
        return m_worker->open(params); // waiting for the worker here would wait for itself
    if (m_wakeFd < 0)
        return GW_ERR_OPEN_FAILED;
    std::lock_guard<std::mutex> call(m_callMutex);
    std::unique_lock<std::mutex> lock(m_mutex);
    m_openParams = params;
    callWorker(Request::Open, lock);
    m_openParams.clear();
    return m_openResult;
}

void ThreadedStreamChannel::close()
{
    if (onWorkerThread()) {
        m_worker->close();
        return;
    }
    if (!m_thread.isRunning() || m_wakeFd < 0)
        return;
    std::lock_guard<std::mutex> call(m_callMutex);
    std::unique_lock<std::mutex> lock(m_mutex);
    callWorker(Request::Close, lock);
}

quint32 ThreadedStreamChannel::dropPeer(const QString &address)
{
    if (onWorkerThread())
        return m_worker->dropPeer(address);
    if (!m_thread.isRunning() || m_wakeFd < 0)
        return GW_ERR_NOT_OPEN;
    std::lock_guard<std::mutex> call(m_callMutex);
    std::unique_lock<std::mutex> lock(m_mutex);
    m_dropAddress = address;
    callWorker(Request::DropPeer, lock);
    m_dropAddress.clear();
    return m_openResult;
}

void ThreadedStreamChannel::framesTaken(qint64 bytes)
{
    const int64_t left = m_state->inFlightBytes -= bytes;
    if (left <= kMaxInFlightBytes / 2 && m_state->readingHeld && !allInputHeld())
        resumeInput();
}

void ThreadedStreamChannel::resumeInput()
{
    if (!m_state->readingHeld || m_wakeFd < 0)
        return;
    std::lock_guard<std::mutex> lock(m_mutex);
    m_resumeWanted = true;
    wakeWorker();
}

quint32 ThreadedStreamChannel::write(const QByteArray &bytes)
{
    if (!m_state->open || !m_state->canSend)
        return GW_ERR_NOT_OPEN;
    if (bytes.isEmpty())
        return GW_OK;
    // Reserve first, then check, so that concurrent writers cannot all pass
    // the bound together.
    const int64_t size = bytes.size();
    const int64_t queued = m_state->queuedBytes.fetch_add(size) + size;
    if (queued + m_state->socketBacklog > kMaxSendBacklog) {
        m_state->queuedBytes -= size;
        return GW_ERR_BUSY;
    }
    std::lock_guard<std::mutex> lock(m_mutex);
    m_outbox.append(bytes);
    wakeWorker();
    return GW_OK;
}

QList<quint16> ThreadedStreamChannel::reservedPorts() const
{
    const uint32_t port = m_state->reservedPort;
    return port && m_state->open ? QList<quint16>{quint16(port)} : QList<quint16>{};
}
