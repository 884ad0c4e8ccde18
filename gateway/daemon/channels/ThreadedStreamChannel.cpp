#include "ThreadedStreamChannel.h"

#include "GwErrorCodes.h"
#include "StreamWorker.h"

namespace {
// Bytes a channel accepts for sending before it refuses with "busy": a peer
// that does not read cannot make the gateway's memory grow without bound.
constexpr int64_t kMaxSendBacklog = 4 * 1024 * 1024;
} // namespace

ThreadedStreamChannel::ThreadedStreamChannel(const WorkerFactory &factory, QObject *parent)
    : StreamChannel(parent), m_state(std::make_shared<ChannelState>()), m_worker(factory(m_state))
{
    m_worker->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    // Re-emitted on the worker thread, as the interface promises.
    connect(m_worker, &StreamWorker::linkUp, this, &StreamChannel::linkUp, Qt::DirectConnection);
    connect(m_worker, &StreamWorker::linkDown, this, &StreamChannel::linkDown, Qt::DirectConnection);
    connect(m_worker, &StreamWorker::framesReceived, this, &StreamChannel::framesReceived, Qt::DirectConnection);
    connect(m_worker, &StreamWorker::logLine, this, &StreamChannel::logLine, Qt::DirectConnection);
    m_thread.setObjectName(QStringLiteral("stream-channel"));
    m_thread.start();
}

ThreadedStreamChannel::~ThreadedStreamChannel()
{
    close();
    m_thread.quit();
    m_thread.wait();
}

quint32 ThreadedStreamChannel::open(const Params &params)
{
    quint32 rc = GW_ERR_OPEN_FAILED;
    StreamWorker *worker = m_worker;
    QMetaObject::invokeMethod(
        worker, [worker, &params, &rc] { rc = worker->open(params); }, Qt::BlockingQueuedConnection);
    return rc;
}

void ThreadedStreamChannel::close()
{
    if (!m_thread.isRunning())
        return;
    StreamWorker *worker = m_worker;
    QMetaObject::invokeMethod(worker, [worker] { worker->close(); }, Qt::BlockingQueuedConnection);
}

quint32 ThreadedStreamChannel::write(const QByteArray &bytes)
{
    if (!m_state->open || !m_state->canSend)
        return GW_ERR_NOT_OPEN;
    if (bytes.isEmpty())
        return GW_OK;
    if (m_state->queuedBytes + m_state->socketBacklog + bytes.size() > kMaxSendBacklog)
        return GW_ERR_BUSY;
    m_state->queuedBytes += bytes.size();
    StreamWorker *worker = m_worker;
    auto state = m_state;
    QMetaObject::invokeMethod(
        worker,
        [worker, state, bytes] {
            state->queuedBytes -= bytes.size();
            worker->send(bytes);
        },
        Qt::QueuedConnection);
    return GW_OK;
}

QList<quint16> ThreadedStreamChannel::reservedPorts() const
{
    const uint32_t port = m_state->reservedPort;
    return port && m_state->open ? QList<quint16>{quint16(port)} : QList<quint16>{};
}
