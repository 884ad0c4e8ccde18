#pragma once

#include <QObject>
#include <QList>
#include <QSet>
#include <atomic>
#include <mutex>
#include <sys/types.h>

class ClientSession;
class GatewayService;
class QSocketNotifier;
class QTcpServer;
class QTimer;
class RequestHandler;

// Accepts clients on 127.0.0.1 only and sends every push to all of them.
// While a client is backed up, the devices' input is held (see ClientSession).
//
// Pushes come from any thread: a device's worker sends the frames it read to
// the sessions itself, under m_sessionsMutex, rather than through the main
// thread's event queue. What only the main thread may do (the sessions' write
// notifiers, the hold timer) it is asked for through an eventfd.
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
    // Any thread.
    void broadcast(const QByteArray &frames);
    void wakeMainThread();
    void onWake();
    void updateInputHold();

    GatewayService &m_service;
    RequestHandler *m_handler;
    QTcpServer *m_server;
    QTimer *m_holdCheck; // re-checks a hold, which a stalled client ends
    std::mutex m_sessionsMutex; // guards m_sessions for pushes from other threads
    QSet<ClientSession *> m_sessions; // changed on the main thread only
    QList<uid_t> m_allowedUids;
    int m_wakeFd = -1;
    QSocketNotifier *m_wakeNotifier = nullptr;
    std::atomic<bool> m_wakePending{false};
};
