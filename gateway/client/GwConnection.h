#pragma once

#include "GwFrame.h"
#include "GwFrameDecoder.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>

// One loopback connection to the gateway. Requests may come from any thread
// and wait for their reply; pushes (events, results) go to the callbacks on
// the connection's own threads, one at a time and in order.
//
// Reading the socket is a role that one thread holds at a time. A caller
// waiting for its reply takes it when it is free and reads the socket
// itself, so a reply wakes its caller directly rather than through another
// thread. While nobody calls, one of the connection's two pump threads holds
// it (the last call to end wakes them); a call that finds a pump polling
// wakes it through the eventfd to let go, once its request has left (the
// hand-over then overlaps the gateway's work rather than delaying the
// request). Whoever reads hands every frame to where it belongs: replies to
// their waiters, pushes to the push queue.
//
// A pump that read pushes runs their callbacks itself, so a push reaches its
// callback without waking another thread. The read role is free meanwhile:
// a callback's own call, or any other caller, reads its reply directly. When
// a run of callbacks lasts longer than a millisecond the other pump is woken
// (between two callbacks) to read the socket, so that pushes keep being
// queued here (and dropped past the bound) rather than backing up in the
// gateway. Only one pump runs callbacks at a time, and it takes the queue in
// arrival order.
class GwConnection
{
public:
    struct Reply {
        uint32_t code = 0;   // the gateway's code, or a transport code
        std::string payload; // the reply's fields after the code
    };
    using PushHandler = std::function<void(const GwFrame &)>;
    // The gateway closed the connection or sent garbage; called once, on the
    // thread that noticed, after every waiting call has been failed.
    using LostHandler = std::function<void(const GwConnection *)>;

    GwConnection(PushHandler onPush, int timeoutMs, LostHandler onLost = {});
    ~GwConnection();
    GwConnection(const GwConnection &) = delete;
    GwConnection &operator=(const GwConnection &) = delete;

    // GW_OK, GW_ERR_CONNECT_FAILED (refused, no such host) or GW_ERR_TIMEOUT.
    uint32_t open(const std::string &host, int port);
    // Stops both threads (waiting for them unless called from one of them)
    // and fails every waiting request with GW_ERR_CONNECTION_LOST.
    void close();
    bool isUsable() const { return m_usable.load(); }
    // True on one of the connection's pump threads (inside a callback).
    bool isOwnThread() const;

    // Sends one request frame (its sequence number is filled in here) and
    // waits for the reply at most the timeout. A request whose payload would
    // exceed the frame limit is not sent: GW_ERR_REQUEST_TOO_LARGE, and the
    // connection stays as it was.
    Reply call(std::string frame);
    // The gateway drops requests whose caller gave up: from now on each
    // request carries its deadline (set once the gateway said it can).
    void setSendDeadlines(bool on) { m_sendDeadlines = on; }

    // Push frames dropped because the callbacks did not keep up.
    uint64_t droppedPushes() const { return m_dropped.load(); }

private:
    struct Waiter {
        bool done = false;
        Reply reply;
    };

    bool sendAll(const std::string &bytes);
    // Waits for `waiter` until the deadline, reading the socket whenever
    // the role is free. m_mutex held.
    void awaitReply(Waiter &waiter, std::chrono::steady_clock::time_point deadline,
                    std::unique_lock<std::mutex> &lock);
    // Reads what the socket holds (waiting for it at most the receive
    // timeout when `wait`) and handles its frames; the read role held.
    // False once the connection is gone.
    bool readAvailable(bool wait);
    void pumpLoop();
    // What a free pump may do now; m_mutex held.
    bool mayRunCallbacks() const { return !m_runningCallbacks && !m_pushes.empty(); }
    bool mayTakeReadRole() const { return !m_reading && m_activeCalls == 0; }
    // Polls the socket and the eventfd once and reads what came; m_mutex
    // held on entry and return, free meanwhile. False once the connection
    // is gone.
    bool pollOnce(std::unique_lock<std::mutex> &lock);
    // Runs the callbacks of every queued push; m_mutex as for pollOnce.
    void runCallbacks(std::unique_lock<std::mutex> &lock);
    void wakeReader(); // m_mutex held
    void handleFrame(GwFrame &frame);
    void fail(const std::string &why);
    void failWaiters(uint32_t code);

    PushHandler m_onPush;
    LostHandler m_onLost;
    const int m_timeoutMs;
    std::atomic<bool> m_sendDeadlines{false};
    int m_fd = -1;
    int m_wakeFd = -1; // eventfd: the reader lets go of the role, or stops
    std::atomic<bool> m_usable{false};

    std::mutex m_sendMutex;

    std::mutex m_mutex; // guards the waiters, the read role and the push queue
    std::condition_variable m_changed; // a reply arrived or the role was freed
    std::map<uint32_t, Waiter *> m_waiters;
    uint32_t m_nextSeq = 1;
    bool m_reading = false;       // the read role is held
    bool m_readerPolling = false; // ... by a pump
    int m_activeCalls = 0;
    std::condition_variable m_pumpWake; // the role is free, pushes wait, or close()
    std::deque<GwFrame> m_pushes;
    size_t m_pushBytes = 0;
    bool m_runningCallbacks = false;
    std::atomic<uint64_t> m_dropped{0};

    GwFrameDecoder m_decoder; // the read role's holder only
    std::thread m_pumps[2];
    std::thread::id m_pumpIds[2];
    std::mutex m_closeMutex;
};
