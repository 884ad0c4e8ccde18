#include "GatewayServer.h"

#include "ClientSession.h"
#include "GatewayService.h"
#include "PeerOwner.h"
#include "RequestHandler.h"

#include <QTcpServer>
#include <QTimer>
#include <functional>
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
    connect(&m_service, &GatewayService::pushFrames, this, &GatewayServer::broadcast, Qt::DirectConnection);
}

GatewayServer::~GatewayServer()
{
    qDeleteAll(m_sessions);
    delete m_handler;
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
    m_sessions.insert(session);
    connect(session, &ClientSession::outputTaken, this, [this] {
        if (m_holdCheck->isActive())
            updateInputHold();
    });
    connect(session, &ClientSession::finished, this, [this](ClientSession *done) {
        m_sessions.remove(done);
        done->deleteLater();
        updateInputHold();
    });
}

void GatewayServer::broadcast(const QByteArray &frames)
{
    for (ClientSession *session : qAsConst(m_sessions))
        session->push(frames.constData(), size_t(frames.size()));
    if (!m_holdCheck->isActive())
        updateInputHold();
}

// Holds as soon as one client is backed up; resumes once all have drained.
void GatewayServer::updateInputHold()
{
    bool backedUp = false;
    bool drained = true;
    for (ClientSession *session : qAsConst(m_sessions)) {
        backedUp = backedUp || session->isBackedUp();
        drained = drained && session->isDrained();
    }
    const bool hold = m_holdCheck->isActive() ? !drained : backedUp;
    if (hold == m_holdCheck->isActive())
        return;
    if (hold)
        m_holdCheck->start();
    else
        m_holdCheck->stop();
    m_service.holdInput(hold);
}
