#include "GatewayServer.h"

#include "ClientSession.h"
#include "GatewayService.h"
#include "PeerOwner.h"
#include "RequestHandler.h"

#include "StreamChannel.h"

#include <QSocketNotifier>
#include <QThread>
#include <QTcpServer>
#include <QTimer>
#include <functional>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {
// Hands each accepted descriptor on as it is: the sessions work on it
// directly rather than through a QTcpSocket.
class Listener : public QTcpServer
{
public:
    using QTcpServer::QTcpServer;
    std::function<void(int)> onConnection;

protected:
    void incomingConnection(qintptr fd) override
    {
        if (onConnection)
            onConnection(int(fd));
        else
            ::close(int(fd));
    }
};
} // namespace

GatewayServer::GatewayServer(GatewayService &service, QObject *parent)
    : QObject(parent),
      m_service(service),
      m_handler(new RequestHandler(service)),
      m_server(new Listener(this)),
      m_holdCheck(new QTimer(this))
{
    m_holdCheck->setInterval(ClientSession::kStallMs / 4);
    connect(m_holdCheck, &QTimer::timeout, this, &GatewayServer::updateInputHold);
    static_cast<Listener *>(m_server)->onConnection = [this](int fd) { onNewConnection(fd); };
    m_wakeFd = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    if (m_wakeFd >= 0) {
        m_wakeNotifier = new QSocketNotifier(m_wakeFd, QSocketNotifier::Read, this);
        connect(m_wakeNotifier, &QSocketNotifier::activated, this, &GatewayServer::onWake);
    }
    connect(&m_service, &GatewayService::pushFrames, this, &GatewayServer::broadcast, Qt::DirectConnection);
}

GatewayServer::~GatewayServer()
{
    disconnect(&m_service, &GatewayService::pushFrames, this, &GatewayServer::broadcast);
    QSet<ClientSession *> sessions;
    {
        std::lock_guard<std::mutex> lock(m_sessionsMutex);
        sessions.swap(m_sessions);
    }
    qDeleteAll(sessions);
    delete m_handler;
    delete m_wakeNotifier;
    if (m_wakeFd >= 0)
        ::close(m_wakeFd);
}

bool GatewayServer::listen(quint16 port)
{
    if (!m_server->listen(QHostAddress::LocalHost, port))
        return false;
    m_service.setListenerPort(m_server->serverPort());
    return true;
}

quint16 GatewayServer::port() const
{
    return m_server->serverPort();
}

QString GatewayServer::errorString() const
{
    return m_server->errorString();
}

void GatewayServer::onNewConnection(int fd)
{
    // Only processes of the gateway's own user (or root) may drive it.
    const uid_t owner = PeerOwner::ofSocket(fd);
    if (!PeerOwner::isAdmitted(owner, m_allowedUids)) {
        if (owner == PeerOwner::kUnknown)
            qWarning("connection refused: its owner could not be found in the socket tables");
        else
            qWarning("connection refused: uid %u is not the gateway's user", unsigned(owner));
        ::close(fd);
        return;
    }
    auto *session = new ClientSession(fd, *m_handler, this);
    session->setWakeMainThread([this] { wakeMainThread(); });
    {
        std::lock_guard<std::mutex> lock(m_sessionsMutex);
        m_sessions.insert(session);
    }
    connect(session, &ClientSession::outputTaken, this, [this] {
        if (m_holdCheck->isActive())
            updateInputHold();
    });
    connect(session, &ClientSession::finished, this, [this](ClientSession *done) {
        {
            // No push reaches the session once it is out of the set.
            std::lock_guard<std::mutex> lock(m_sessionsMutex);
            m_sessions.remove(done);
        }
        done->deleteLater();
        updateInputHold();
    });
}

void GatewayServer::broadcast(const QByteArray &frames)
{
    if (QThread::currentThread() == thread()) {
        // A push here may end a session (its socket failed), which takes
        // it out of the set: pushed to a copy, outside the lock.
        QSet<ClientSession *> sessions;
        {
            std::lock_guard<std::mutex> lock(m_sessionsMutex);
            sessions = m_sessions;
        }
        for (ClientSession *session : qAsConst(sessions))
            session->push(frames.constData(), size_t(frames.size()));
        if (!m_holdCheck->isActive())
            updateInputHold();
        return;
    }
    bool backedUp = false;
    {
        std::lock_guard<std::mutex> lock(m_sessionsMutex);
        for (ClientSession *session : qAsConst(m_sessions)) {
            session->push(frames.constData(), size_t(frames.size()));
            backedUp = backedUp || session->isBackedUp();
        }
    }
    if (backedUp) {
        // Held at once, so that the worker reads no more; the main thread
        // then runs the hold as usual and ends it.
        StreamChannel::holdAllInput(true);
        wakeMainThread();
    }
}

void GatewayServer::wakeMainThread()
{
    if (m_wakeFd < 0 || m_wakePending.exchange(true))
        return; // one wake-up serves every request until the main thread runs
    const uint64_t one = 1;
    if (::write(m_wakeFd, &one, sizeof one) != ssize_t(sizeof one))
        m_wakePending = false;
}

// Sends what pushes from other threads left in the sessions, and looks at
// the hold.
void GatewayServer::onWake()
{
    uint64_t count = 0;
    (void)!::read(m_wakeFd, &count, sizeof count); // one read resets the counter
    m_wakePending = false;
    QSet<ClientSession *> sessions;
    {
        std::lock_guard<std::mutex> lock(m_sessionsMutex);
        sessions = m_sessions;
    }
    // Deleted only later on this thread, so each is still there.
    for (ClientSession *session : qAsConst(sessions))
        session->syncWriteNotifier();
    updateInputHold();
}

// Holds as soon as one client is backed up; resumes once all have drained.
void GatewayServer::updateInputHold()
{
    bool backedUp = false;
    bool drained = true;
    {
        std::lock_guard<std::mutex> lock(m_sessionsMutex);
        for (ClientSession *session : qAsConst(m_sessions)) {
            backedUp = backedUp || session->isBackedUp();
            drained = drained && session->isDrained();
        }
    }
    const bool hold = m_holdCheck->isActive() ? !drained : backedUp;
    if (hold != m_holdCheck->isActive()) {
        if (hold)
            m_holdCheck->start();
        else
            m_holdCheck->stop();
    }
    // Also when the timer did not change: a worker may have held the input
    // itself (see broadcast).
    m_service.holdInput(hold);
}
