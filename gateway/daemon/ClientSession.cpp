#include "ClientSession.h"

#include "GwHopStamps.h"
#include "RequestHandler.h"

#include <QSocketNotifier>
#include <QThread>
#include <QtDebug>
#include <cerrno>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {
constexpr size_t kReadChunk = 256 * 1024;
// Reads per readiness notification, so one busy client cannot starve the
// event loop.
constexpr int kReadsPerTurn = 16;
} // namespace

ClientSession::ClientSession(int fd, RequestHandler &handler, QObject *parent)
    : QObject(parent),
      m_fd(fd),
      m_handler(handler),
      m_readNotifier(new QSocketNotifier(fd, QSocketNotifier::Read, this)),
      m_writeNotifier(new QSocketNotifier(fd, QSocketNotifier::Write, this))
{
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL, 0) | O_NONBLOCK);
    const int one = 1;
    ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof(one));
    m_writeNotifier->setEnabled(false);
    connect(m_readNotifier, &QSocketNotifier::activated, this, &ClientSession::onReadable);
    connect(m_writeNotifier, &QSocketNotifier::activated, this, &ClientSession::sendOutput);
    m_lastTaken.start();
}

ClientSession::~ClientSession()
{
    // The notifiers leave the event dispatcher before their descriptor closes.
    delete m_readNotifier;
    delete m_writeNotifier;
    ::close(m_fd);
}

bool ClientSession::onMainThread() const
{
    return QThread::currentThread() == thread();
}

void ClientSession::push(const char *frames, size_t size)
{
    if (onMainThread()) {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            if (m_closing)
                return;
            if (pendingOutput() > kMaxPendingOutput) {
                if (m_dropped++ % 10000 == 0)
                    qWarning("client on descriptor %d does not read, pushed frames dropped (%llu so far)", m_fd, m_dropped);
                return;
            }
            if (pendingOutput() == 0)
                m_lastTaken.start(); // idle until now: the stall clock starts with this output
            m_output.append(frames, size);
        }
        sendOutput();
        return;
    }
    bool leftOver = false;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (m_closing || m_socketFailed)
            return;
        if (pendingOutput() > kMaxPendingOutput) {
            if (m_dropped++ % 10000 == 0)
                qWarning("client on descriptor %d does not read, pushed frames dropped (%llu so far)", m_fd, m_dropped);
            return;
        }
        const bool wasIdle = pendingOutput() == 0;
        if (wasIdle)
            m_lastTaken.start();
        m_output.append(frames, size);
        // Output already waiting means the main thread watches the socket
        // for room: it sends this too, in order.
        if (wasIdle && sendLocked())
            m_lastTaken.start();
        leftOver = wasIdle && (pendingOutput() > 0 || m_socketFailed);
    }
    if (leftOver && m_wakeMainThread)
        m_wakeMainThread();
}

quint64 ClientSession::droppedPushes() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_dropped;
}

bool ClientSession::isBackedUpLocked() const
{
    return !m_closing && pendingOutput() > kBackedUpBytes && !m_lastTaken.hasExpired(kStallMs);
}

bool ClientSession::isBackedUp() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return isBackedUpLocked();
}

bool ClientSession::isDrained() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_closing || pendingOutput() <= kDrainedBytes || m_lastTaken.hasExpired(kStallMs);
}

void ClientSession::syncWriteNotifier()
{
    sendOutput();
}

void ClientSession::onReadable()
{
    for (int i = 0; i < kReadsPerTurn && !m_closing; ++i) {
        const ssize_t n = ::recv(m_fd, m_decoder.prepare(kReadChunk), kReadChunk, 0);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
            break;
        if (n <= 0) {
            end(nullptr); // the client left (or its connection failed)
            return;
        }
        m_decoder.commit(size_t(n));
        if (!handleFrames())
            return;
        // A short read emptied the socket: asking again would only return
        // EAGAIN, one system call between the request and its reply. More
        // data arriving now keeps the notifier ready.
        if (size_t(n) < kReadChunk)
            break;
    }
    sendOutput(); // replies leave now rather than on the next turn of the event loop
}

// Answers every complete request; false once the connection was dropped.
bool ClientSession::handleFrames()
{
    GwFrame frame;
    GwFrameDecoder::Status status;
    while ((status = m_decoder.next(frame)) == GwFrameDecoder::Status::Frame) {
        uint64_t deadline = 0;
        if (frame.kind == GwFrameKind::DeadlineRequest) {
            if (!gwTakeDeadline(frame, deadline)) {
                end("a request without its deadline");
                return false;
            }
            if (gwMonotonicMicros() > deadline) {
                // Its caller has given up and reported a time-out: doing it
                // now would be a change nobody is told about.
                qWarning("request %u arrived %llu ms after its caller gave up; dropped", frame.seq,
                         static_cast<unsigned long long>((gwMonotonicMicros() - deadline) / 1000));
                continue;
            }
        }
        if (frame.kind != GwFrameKind::Request) {
            end("a frame that is not a request");
            return false;
        }
        GW_HOP_MARK(GwHop::RequestRead, frame.payload.data(), frame.payload.size());
        // Handled without the lock: a device's worker may push meanwhile.
        const std::string reply = m_handler.handle(frame.seq, frame.payload);
        std::lock_guard<std::mutex> lock(m_mutex);
        m_output += reply;
    }
    if (status == GwFrameDecoder::Status::Error) {
        end(m_decoder.error().c_str());
        return false;
    }
    return true;
}

bool ClientSession::sendLocked()
{
    bool sent = false;
    while (!m_closing && !m_socketFailed && pendingOutput() > 0) {
        const ssize_t n = ::send(m_fd, m_output.data() + m_outputSent, m_output.size() - m_outputSent,
                                 MSG_NOSIGNAL | MSG_DONTWAIT);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
            break;
        if (n < 0) {
            m_socketFailed = true;
            break;
        }
        GW_HOP_MARK(GwHop::SessionWrite, m_output.data() + m_outputSent, size_t(n));
        m_outputSent += size_t(n);
        sent = true;
    }
    if (pendingOutput() == 0) {
        m_output.clear();
        m_outputSent = 0;
    } else if (m_outputSent > m_output.size() / 2) {
        m_output.erase(0, m_outputSent);
        m_outputSent = 0;
    }
    return sent;
}

void ClientSession::sendOutput()
{
    bool sent = false;
    bool pending = false;
    bool failed = false;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (m_closing)
            return;
        sent = sendLocked();
        if (sent)
            m_lastTaken.start();
        pending = pendingOutput() > 0;
        failed = m_socketFailed;
    }
    if (failed) {
        end(nullptr);
        return;
    }
    m_writeNotifier->setEnabled(pending);
    if (sent)
        emit outputTaken();
}

// Stops serving; `why` names a malformed frame, null for a client that left.
void ClientSession::end(const char *why)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (m_closing)
            return;
        m_closing = true;
    }
    if (why)
        qWarning("malformed frame from client (%s); connection dropped", why);
    m_readNotifier->setEnabled(false);
    m_writeNotifier->setEnabled(false);
    ::shutdown(m_fd, SHUT_RDWR);
    emit finished(this);
}
