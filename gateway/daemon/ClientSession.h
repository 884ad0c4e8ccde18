#pragma once

#include "GwFrameDecoder.h"

#include <QElapsedTimer>
#include <QObject>

class QTcpSocket;
class RequestHandler;

// One client connection: requests in, replies and pushes out. A malformed
// frame drops this connection only.
//
// Pushes wait in the socket's output. Past kBackedUpBytes the session counts
// as backed up and the server holds the devices' input until it drains below
// kDrainedBytes; a client that has taken nothing for kStallMs no longer
// counts (it would stop every device for every client), and pushes to it
// are dropped and counted once its output passes kMaxPendingOutput, so one
// stalled client cannot grow the gateway's memory.
class ClientSession : public QObject
{
    Q_OBJECT
public:
    ClientSession(QTcpSocket *socket, RequestHandler &handler, QObject *parent = nullptr);

    static constexpr qint64 kBackedUpBytes = 4 * 1024 * 1024;
    static constexpr qint64 kDrainedBytes = 1024 * 1024;
    static constexpr qint64 kMaxPendingOutput = 16 * 1024 * 1024;
    static constexpr qint64 kStallMs = 2000;

    void push(const QByteArray &frames);
    quint64 droppedPushes() const { return m_dropped; }
    bool isBackedUp() const;
    bool isDrained() const;

signals:
    void finished(ClientSession *session);
    // Some of the output was sent.
    void outputTaken();

private:
    void onReadyRead();
    void drop(const QString &why);

    QTcpSocket *m_socket;
    RequestHandler &m_handler;
    GwFrameDecoder m_decoder;
    QByteArray m_readBuffer;
    QElapsedTimer m_lastTaken; // since the client last took output
    quint64 m_dropped = 0;
    bool m_closing = false;
};
