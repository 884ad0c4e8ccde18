#pragma once

#include <QObject>
#include <QList>
#include <QSet>
#include <sys/types.h>

class ClientSession;
class GatewayService;
class QTcpServer;
class QTimer;
class RequestHandler;

// Accepts clients on 127.0.0.1 only and sends every push to all of them.
// While a client is backed up, the devices' input is held (see ClientSession).
class GatewayServer : public QObject
{
    Q_OBJECT
public:
    GatewayServer(GatewayService &service, QObject *parent = nullptr);
    ~GatewayServer() override;

    bool listen(quint16 port);
    quint16 port() const;
    QString errorString() const;
    // Users besides the gateway's own and root whose processes may connect
    // (a service user serving an operator's session, for one).
    void setAllowedUids(const QList<uid_t> &uids) { m_allowedUids = uids; }

private:
    void onNewConnection(int fd);
    void broadcast(const QByteArray &frames);
    void updateInputHold();

    GatewayService &m_service;
    RequestHandler *m_handler;
    QTcpServer *m_server;
    QTimer *m_holdCheck; // re-checks a hold, which a stalled client ends
    QSet<ClientSession *> m_sessions;
    QList<uid_t> m_allowedUids;
};
