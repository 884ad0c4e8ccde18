#pragma once

#include "GwFrame.h"
#include "GwFrameDecoder.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>

// One loopback connection to the gateway. Requests may come from any thread
// and wait for their reply; a reader thread takes every frame off the socket
// and hands replies to their waiters and pushes (events, results) to a
// dispatch thread, so a slow callback never holds up a reply.
class GwConnection
{
public:
    struct Reply {
        uint32_t code = 0;   // the gateway's code, or a transport code
        std::string payload; // the reply's fields after the code
    };
    using PushHandler = std::function<void(const GwFrame &)>;

    GwConnection(PushHandler onPush, int timeoutMs);
    ~GwConnection();
    GwConnection(const GwConnection &) = delete;
    GwConnection &operator=(const GwConnection &) = delete;

    // GW_OK, GW_ERR_CONNECT_FAILED (refused, no such host) or GW_ERR_TIMEOUT.
    uint32_t open(const std::string &host, int port);
    // Stops both threads (waiting for them unless called from one of them)
    // and fails every waiting request with GW_ERR_CONNECTION_LOST.
    void close();
    bool isUsable() const { return m_usable.load(); }
    // True on the connection's reader or dispatch thread (inside a callback).
    bool isOwnThread() const;

    // Sends one request frame (its sequence number is filled in here) and
    // waits for the reply at most the timeout.
    Reply call(std::string frame);

    // Push frames dropped because the callbacks did not keep up.
    uint64_t droppedPushes() const { return m_dropped.load(); }

private:
    struct Waiter {
        bool done = false;
        Reply reply;
    };

    bool sendAll(const std::string &bytes);
    void readLoop();
    void dispatchLoop();
    void handleFrame(GwFrame &frame);
    void fail(const std::string &why);
    void failWaiters(uint32_t code);

    PushHandler m_onPush;
    const int m_timeoutMs;
    int m_fd = -1;
    int m_wakeFd = -1; // eventfd that stops the reader
    std::atomic<bool> m_usable{false};

    std::mutex m_sendMutex;

    std::mutex m_waitMutex;
    std::condition_variable m_replied;
    std::map<uint32_t, Waiter *> m_waiters;
    uint32_t m_nextSeq = 1;

    std::mutex m_pushMutex;
    std::condition_variable m_pushReady;
    std::deque<GwFrame> m_pushes;
    size_t m_pushBytes = 0;
    bool m_stopping = false;
    std::atomic<uint64_t> m_dropped{0};

    GwFrameDecoder m_decoder; // reader thread only
    std::thread m_reader;
    std::thread m_dispatcher;
    std::thread::id m_readerId;
    std::thread::id m_dispatcherId;
    std::mutex m_closeMutex;
};
