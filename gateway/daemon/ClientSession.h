#pragma once

#include "GwFrameDecoder.h"

#include <QObject>

class QTcpSocket;
class RequestHandler;

// One client connection: requests in, replies and pushes out. A malformed
// frame drops this connection only. Pushes to a client that does not read
// are dropped (and counted) once its output passes a bound, so one stalled
// client cannot grow the gateway's memory.
class ClientSession : public QObject
{
    Q_OBJECT
public:
    ClientSession(QTcpSocket *socket, RequestHandler &handler, QObject *parent = nullptr);

    void push(const QByteArray &frames);
    quint64 droppedPushes() const { return m_dropped; }

signals:
    void finished(ClientSession *session);

private:
    void onReadyRead();
    void drop(const QString &why);

    QTcpSocket *m_socket;
    RequestHandler &m_handler;
    GwFrameDecoder m_decoder;
    QByteArray m_readBuffer;
    quint64 m_dropped = 0;
    bool m_closing = false;
};
