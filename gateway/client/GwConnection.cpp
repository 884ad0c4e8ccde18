#include "GwConnection.h"

#include "GwErrorCodes.h"
#include "GwHopStamps.h"
#include "GwLog.h"

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {
constexpr int kConnectTimeoutCapMs = 1000;
constexpr size_t kReadChunk = 256 * 1024;
constexpr int kReceiveSliceMs = 50;
// Pushes waiting for the callbacks: beyond this the newest are dropped, so a
// callback that does not keep up cannot make the host's memory grow.
constexpr size_t kMaxPendingPushBytes = 32 * 1024 * 1024;
// Callbacks running longer than this get the other pump reading the socket
// meanwhile, so that pushes are queued (or dropped, past the bound above)
// here rather than backing up in the gateway.
constexpr auto kMaxReadPause = std::chrono::milliseconds(1);

void setNonBlocking(int fd, bool on)
{
    const int flags = fcntl(fd, F_GETFL, 0);
    fcntl(fd, F_SETFL, on ? (flags | O_NONBLOCK) : (flags & ~O_NONBLOCK));
}
} // namespace

GwConnection::GwConnection(PushHandler onPush, int timeoutMs, LostHandler onLost)
    : m_onPush(std::move(onPush)), m_onLost(std::move(onLost)), m_timeoutMs(timeoutMs)
{
}

GwConnection::~GwConnection()
{
    close();
}

uint32_t GwConnection::open(const std::string &host, int port)
{
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_port = htons(uint16_t(port));
    if (port < 1 || port > 65535 || inet_pton(AF_INET, host.c_str(), &addr.sin_addr) != 1)
        return GW_ERR_CONNECT_FAILED;

    m_fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    m_wakeFd = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (m_fd < 0 || m_wakeFd < 0)
        return GW_ERR_CONNECT_FAILED;
    setNonBlocking(m_fd, true);
    if (::connect(m_fd, reinterpret_cast<sockaddr *>(&addr), sizeof(addr)) != 0) {
        if (errno != EINPROGRESS)
            return GW_ERR_CONNECT_FAILED;
        pollfd p{m_fd, POLLOUT, 0};
        const int ready = ::poll(&p, 1, std::min(m_timeoutMs, kConnectTimeoutCapMs));
        if (ready == 0)
            return GW_ERR_TIMEOUT;
        int err = 0;
        socklen_t len = sizeof(err);
        getsockopt(m_fd, SOL_SOCKET, SO_ERROR, &err, &len);
        if (ready < 0 || err != 0)
            return GW_ERR_CONNECT_FAILED;
    }
    // Retrying a port nobody listens on can connect the socket to itself
    // (TCP simultaneous open, when the kernel picks that very port as the
    // source): that is no gateway.
    sockaddr_in self{};
    socklen_t selfLen = sizeof(self);
    if (::getsockname(m_fd, reinterpret_cast<sockaddr *>(&self), &selfLen) == 0 && self.sin_port == addr.sin_port
        && self.sin_addr.s_addr == addr.sin_addr.s_addr)
        return GW_ERR_CONNECT_FAILED;
    setNonBlocking(m_fd, false);
    const int one = 1;
    setsockopt(m_fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof(one));
    // A gateway that stops reading cannot hold a sender longer than the call
    // timeout.
    timeval tv{m_timeoutMs / 1000, (m_timeoutMs % 1000) * 1000};
    setsockopt(m_fd, SOL_SOCKET, SO_SNDTIMEO, &tv, sizeof(tv));
    // A caller waiting for its reply blocks in recv and looks at its
    // deadline at least this often.
    const int slice = std::max(1, std::min(m_timeoutMs, kReceiveSliceMs));
    timeval rtv{slice / 1000, (slice % 1000) * 1000};
    setsockopt(m_fd, SOL_SOCKET, SO_RCVTIMEO, &rtv, sizeof(rtv));

    m_usable = true;
    for (int i = 0; i < 2; ++i) {
        m_pumps[i] = std::thread([this] { pumpLoop(); });
        m_pumpIds[i] = m_pumps[i].get_id();
    }
    return GW_OK;
}

bool GwConnection::isOwnThread() const
{
    const std::thread::id self = std::this_thread::get_id();
    return self == m_pumpIds[0] || self == m_pumpIds[1];
}

void GwConnection::close()
{
    std::lock_guard<std::mutex> closing(m_closeMutex);
    m_usable = false;
    if (m_fd >= 0)
        ::shutdown(m_fd, SHUT_RDWR); // wakes a sender blocked on a full socket
    if (m_wakeFd >= 0) {
        const uint64_t one = 1;
        (void)!::write(m_wakeFd, &one, sizeof(one));
    }
    {
        std::lock_guard<std::mutex> lock(m_mutex);
    }
    m_changed.notify_all();
    m_pumpWake.notify_all(); // a waiting pump sees the end
    for (std::thread &t : m_pumps) {
        if (!t.joinable())
            continue;
        if (t.get_id() == std::this_thread::get_id())
            t.detach(); // the owner keeps this object alive until that thread is done
        else
            t.join();
    }
    failWaiters(GW_ERR_CONNECTION_LOST);
    {
        // A caller still reading (woken by the shutdown) lets go of the
        // socket before it is closed; nobody takes the role once unusable.
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_reading; });
    }
    std::lock_guard<std::mutex> sending(m_sendMutex);
    std::lock_guard<std::mutex> waiting(m_mutex);
    if (m_fd >= 0)
        ::close(m_fd);
    if (m_wakeFd >= 0)
        ::close(m_wakeFd);
    m_fd = m_wakeFd = -1;
}

GwConnection::Reply GwConnection::call(std::string frame)
{
    Reply reply;
    if (!m_usable || frame.size() < kGwHeaderSize) {
        reply.code = GW_ERR_CONNECTION_LOST;
        return reply;
    }
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(m_timeoutMs);
    const size_t extra = m_sendDeadlines ? kGwDeadlineSize : 0;
    if (frame.size() - kGwHeaderSize + extra > kGwMaxPayload) {
        gwLog(GwLogWarning, "request of %zu bytes exceeds the frame limit of %u bytes; not sent",
              frame.size() - kGwHeaderSize, unsigned(kGwMaxPayload));
        reply.code = GW_ERR_REQUEST_TOO_LARGE;
        return reply;
    }
    if (extra)
        gwAddDeadline(frame, uint64_t(std::chrono::duration_cast<std::chrono::microseconds>(
                                          deadline.time_since_epoch()).count()));
    Waiter waiter;
    uint32_t seq = 0;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        seq = m_nextSeq++;
        if (m_nextSeq == 0)
            m_nextSeq = 1;
        m_waiters[seq] = &waiter;
    }
    gwSetFrameSeq(frame, seq);
    struct CallScope {
        GwConnection &c;
        explicit CallScope(GwConnection &conn) : c(conn)
        {
            std::lock_guard<std::mutex> lock(c.m_mutex);
            ++c.m_activeCalls;
        }
        ~CallScope()
        {
            std::lock_guard<std::mutex> lock(c.m_mutex);
            // The last call out hands the socket back to the pumps at once,
            // so that a push arriving now is read without delay; a call from
            // a callback leaves it to its own pump, which reads once its
            // callbacks are done.
            if (--c.m_activeCalls == 0 && !c.isOwnThread())
                c.m_pumpWake.notify_all();
        }
    } scope(*this);
    bool sent = false;
    {
        std::lock_guard<std::mutex> lock(m_sendMutex);
        sent = m_usable && sendAll(frame);
        GW_HOP_MARK(GwHop::RequestSent, frame.data(), frame.size());
    }
    std::unique_lock<std::mutex> lock(m_mutex);
    // A pump polling the socket is asked to let go, so that the
    // reply wakes this caller directly rather than through the reader. Asked
    // only now: the request leaves first, and the hand-over of the role
    // happens while the gateway works on it. (Under the lock, so that
    // close() cannot close the eventfd in between.)
    if (sent && m_readerPolling && m_usable)
        wakeReader();
    if (sent)
        awaitReply(waiter, deadline, lock);
    m_waiters.erase(seq);
    if (waiter.done)
        return std::move(waiter.reply);
    reply.code = sent ? GW_ERR_TIMEOUT : GW_ERR_CONNECTION_LOST;
    return reply;
}

void GwConnection::awaitReply(Waiter &waiter, std::chrono::steady_clock::time_point deadline,
                              std::unique_lock<std::mutex> &lock)
{
    while (!waiter.done && m_usable) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0)
            return;
        if (m_reading) {
            m_changed.wait_until(lock, deadline, [&] { return waiter.done || !m_reading; });
            continue;
        }
        m_reading = true;
        lock.unlock();
        readAvailable(true); // returns by the receive timeout at the latest
        lock.lock();
        m_reading = false;
        m_changed.notify_all();
        if (!m_pushes.empty())
            m_pumpWake.notify_all(); // pushes this caller read
    }
}

bool GwConnection::readAvailable(bool wait)
{
    const ssize_t n = ::recv(m_fd, m_decoder.prepare(kReadChunk), kReadChunk, wait ? 0 : MSG_DONTWAIT);
    if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR))
        return true; // another reader took it first
    if (n <= 0) {
        if (m_usable)
            fail("the gateway closed the connection");
        return false;
    }
    m_decoder.commit(size_t(n));
    GwFrame frame;
    GwFrameDecoder::Status status;
    while ((status = m_decoder.next(frame)) == GwFrameDecoder::Status::Frame)
        handleFrame(frame);
    if (status == GwFrameDecoder::Status::Error) {
        fail("malformed frame from the gateway (" + m_decoder.error() + ")");
        return false;
    }
    return true;
}

bool GwConnection::sendAll(const std::string &bytes)
{
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::send(m_fd, bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        done += size_t(n);
    }
    return true;
}

void GwConnection::wakeReader()
{
    const uint64_t one = 1;
    (void)!::write(m_wakeFd, &one, sizeof(one));
}

void GwConnection::pumpLoop()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    bool alive = true;
    while (alive) {
        m_pumpWake.wait(lock, [this] { return !m_usable || mayRunCallbacks() || mayTakeReadRole(); });
        if (!m_usable)
            return;
        if (mayRunCallbacks())
            runCallbacks(lock);
        else
            alive = pollOnce(lock);
    }
}

bool GwConnection::pollOnce(std::unique_lock<std::mutex> &lock)
{
    m_reading = m_readerPolling = true;
    lock.unlock();
    pollfd fds[2] = {{m_fd, POLLIN, 0}, {m_wakeFd, POLLIN, 0}};
    bool alive = true;
    const int ready = ::poll(fds, 2, -1);
    if (ready > 0 && fds[1].revents) {
        uint64_t count = 0;
        (void)!::read(m_wakeFd, &count, sizeof(count));
    }
    if (ready < 0 && errno != EINTR)
        alive = false;
    else if (ready > 0 && fds[0].revents)
        alive = readAvailable(false);
    lock.lock();
    m_reading = m_readerPolling = false;
    m_changed.notify_all();
    return alive;
}

void GwConnection::runCallbacks(std::unique_lock<std::mutex> &lock)
{
    m_runningCallbacks = true;
    std::deque<GwFrame> batch;
    batch.swap(m_pushes);
    m_pushBytes = 0;
    lock.unlock();
    // The read role is free while the callbacks run: a callback's own call
    // reads its reply directly, and so does any other caller. The other
    // pump is woken to read pushes only once the callbacks have kept the
    // socket unread for kMaxReadPause; waking it for every push would put a
    // thread switch between each push and its callback.
    const auto started = std::chrono::steady_clock::now();
    bool otherPumpWoken = false;
    for (size_t i = 0; i < batch.size(); ++i) {
        if (i > 0 && !otherPumpWoken && std::chrono::steady_clock::now() - started > kMaxReadPause) {
            m_pumpWake.notify_one();
            otherPumpWoken = true;
        }
        m_onPush(batch[i]);
    }
    batch.clear();
    lock.lock();
    m_runningCallbacks = false;
    // Pushes queued meanwhile wait for a free pump: this one, at once.
}

void GwConnection::handleFrame(GwFrame &frame)
{
    if (frame.kind == GwFrameKind::Reply) {
        std::lock_guard<std::mutex> lock(m_mutex);
        auto it = m_waiters.find(frame.seq);
        if (it == m_waiters.end())
            return; // its caller timed out and left
        Waiter *waiter = it->second;
        if (frame.payload.size() < sizeof(uint32_t)) {
            waiter->reply.code = GW_ERR_PROTOCOL;
        } else {
            std::memcpy(&waiter->reply.code, frame.payload.data(), sizeof(uint32_t));
            waiter->reply.payload = frame.payload.substr(sizeof(uint32_t));
        }
        waiter->done = true;
        m_changed.notify_all();
        return;
    }
    if (frame.kind != GwFrameKind::Event && frame.kind != GwFrameKind::Result)
        return; // a request from the gateway has no meaning; ignore it
    GW_HOP_MARK(GwHop::ClientRead, frame.payload.data(), frame.payload.size());
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_pushBytes + frame.payload.size() > kMaxPendingPushBytes) {
        const uint64_t dropped = ++m_dropped;
        if (dropped == 1 || dropped % 10000 == 0)
            gwLog(GwLogWarning, "callbacks fall behind, %llu pushed frames dropped",
                  static_cast<unsigned long long>(dropped));
        return;
    }
    m_pushBytes += frame.payload.size();
    m_pushes.push_back(std::move(frame));
}

void GwConnection::fail(const std::string &why)
{
    gwLog(GwLogWarning, "%s; connection dropped", why.c_str());
    m_usable = false;
    ::shutdown(m_fd, SHUT_RDWR);
    failWaiters(why.rfind("malformed", 0) == 0 ? GW_ERR_PROTOCOL : GW_ERR_CONNECTION_LOST);
    if (m_onLost)
        m_onLost(this);
}

void GwConnection::failWaiters(uint32_t code)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    for (auto &entry : m_waiters) {
        if (!entry.second->done) {
            entry.second->reply.code = code;
            entry.second->done = true;
        }
    }
    m_changed.notify_all();
}
