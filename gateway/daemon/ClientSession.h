#pragma once

#include "GwFrameDecoder.h"

#include <QElapsedTimer>
#include <QObject>
#include <functional>
#include <mutex>
#include <string>

class QSocketNotifier;
class RequestHandler;

// One client connection: requests in, replies and pushes out. A malformed
// frame drops this connection only. The session works on the socket
// descriptor itself: a request is read straight into the frame decoder and
// its reply sent at once, without a socket class's buffers in between.
//
// Pushes may come from any thread (a device's worker sends the frames it
// read straight to the clients, without passing the main thread); the output
// and its counters are guarded by m_mutex. The notifiers belong to the main
// thread: a push from another thread that leaves output behind asks for the
// write notifier through the owner's wake-up (setWakeMainThread).
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

    // Any thread.
    void push(const char *frames, size_t size);
    quint64 droppedPushes() const;
    bool isBackedUp() const;
    bool isDrained() const;
    // Called from a push on another thread when output is left for the main
    // thread to send; it then calls syncWriteNotifier().
    void setWakeMainThread(std::function<void()> wake) { m_wakeMainThread = std::move(wake); }
    // Main thread: watches the socket for room while output is pending.
    void syncWriteNotifier();

signals:
    void finished(ClientSession *session);
    // Some of the output was sent.
    void outputTaken();

private:
    void onReadable();
    bool handleFrames();
    // Main thread: sends, updates the notifier, tells the server.
    void sendOutput();
    // Sends what the socket takes; true if some of it went. m_mutex held.
    bool sendLocked();
    qint64 pendingOutput() const { return qint64(m_output.size() - m_outputSent); } // m_mutex held
    bool isBackedUpLocked() const;
    void end(const char *why);
    bool onMainThread() const;

    int m_fd;
    RequestHandler &m_handler;
    QSocketNotifier *m_readNotifier;
    QSocketNotifier *m_writeNotifier;
    GwFrameDecoder m_decoder; // main thread
    std::function<void()> m_wakeMainThread;
    mutable std::mutex m_mutex; // guards the members below
    std::string m_output;      // replies and pushes not yet sent, from m_outputSent on
    size_t m_outputSent = 0;
    QElapsedTimer m_lastTaken; // since the client last took output
    quint64 m_dropped = 0;
    bool m_closing = false;
    bool m_socketFailed = false; // a send from another thread failed; ended on the main thread
};
