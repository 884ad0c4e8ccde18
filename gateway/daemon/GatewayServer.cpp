#include "GatewayServer.h"

#include "ClientSession.h"
#include "GatewayService.h"
#include "RequestHandler.h"

#include <QTcpServer>
#include <QTcpSocket>

GatewayServer::GatewayServer(GatewayService &service, QObject *parent)
    : QObject(parent), m_service(service), m_handler(new RequestHandler(service)), m_server(new QTcpServer(this))
{
    connect(m_server, &QTcpServer::newConnection, this, &GatewayServer::onNewConnection);
    connect(&m_service, &GatewayService::pushFrames, this, &GatewayServer::broadcast);
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

void GatewayServer::onNewConnection()
{
    while (QTcpSocket *socket = m_server->nextPendingConnection()) {
        auto *session = new ClientSession(socket, *m_handler, this);
        m_sessions.insert(session);
        connect(session, &ClientSession::finished, this, [this](ClientSession *done) {
            m_sessions.remove(done);
            done->deleteLater();
        });
    }
}

void GatewayServer::broadcast(const QByteArray &frames)
{
    for (ClientSession *session : qAsConst(m_sessions))
        session->push(frames);
}
