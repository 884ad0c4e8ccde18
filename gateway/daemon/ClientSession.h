#pragma once

#include "GwFrameDecoder.h"

#include <QElapsedTimer>
#include <QObject>
#include <string>

class QSocketNotifier;
class RequestHandler;

// One client connection: requests in, replies and pushes out. A malformed
// frame drops this connection only. The session works on the socket
// descriptor itself: a request is read straight into the frame decoder and
// its reply sent at once, without a socket class's buffers in between.
//
// Pushes wait in the session's output while the client's socket is full.
// Past kBackedUpBytes the session counts as backed up and the server holds
// the devices' input until it drains below kDrainedBytes; a client that has
// taken nothing for kStallMs no longer counts (it would stop every device
// for every client), and pushes to it are dropped and counted once its
// output passes kMaxPendingOutput, so one stalled client cannot grow the
// gateway's memory.
class ClientSession : public QObject
{
    Q_OBJECT
public:
    // Takes ownership of the connected descriptor `fd`.
    ClientSession(int fd, RequestHandler &handler, QObject *parent = nullptr);
    ~ClientSession() override;

    static constexpr qint64 kBackedUpBytes = 4 * 1024 * 1024;
    static constexpr qint64 kDrainedBytes = 1024 * 1024;
    static constexpr qint64 kMaxPendingOutput = 16 * 1024 * 1024;
    static constexpr qint64 kStallMs = 2000;

    void push(const char *frames, size_t size);
    quint64 droppedPushes() const { return m_dropped; }
    bool isBackedUp() const;
    bool isDrained() const;

signals:
    void finished(ClientSession *session);
    // Some of the output was sent.
    void outputTaken();

private:
    void onReadable();
    bool handleFrames();
    void sendOutput();
    qint64 pendingOutput() const { return qint64(m_output.size() - m_outputSent); }
    void end(const char *why);

    int m_fd;
    RequestHandler &m_handler;
    QSocketNotifier *m_readNotifier;
    QSocketNotifier *m_writeNotifier;
    GwFrameDecoder m_decoder;
    std::string m_output;      // replies and pushes not yet sent, from m_outputSent on
    size_t m_outputSent = 0;
    QElapsedTimer m_lastTaken; // since the client last took output
    quint64 m_dropped = 0;
    bool m_closing = false;
};
