#pragma once

#include "GwPlatform.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

// Brings the connection to the gateway back after it was lost. Its own
// thread reports the loss, tries to reach the gateway again with a capped
// backoff and reports every failed attempt and the restored connection,
// so the gateway-level events reach the host in order from one thread. On
// request the same thread also replays what the host missed (requestReplay).
class GwReconnector
{
public:
    // One attempt to reach the gateway; true once a new connection is in use.
    using Attempt = std::function<bool()>;
    // A gateway-level event and its payload (documented in GwPlatform.h).
    using Report = std::function<void(eGW_EVENT_TYPE type, const std::string &payload)>;

    // Tells the host the gateway-level events it missed.
    using Replay = std::function<void()>;

    GwReconnector(Attempt attempt, Report report, Replay replay);
    ~GwReconnector();
    GwReconnector(const GwReconnector &) = delete;
    GwReconnector &operator=(const GwReconnector &) = delete;

    void start();
    // Ends the thread and waits for it, unless called from a report on it:
    // then the thread ends once the report returns.
    void stop();
    // The connection in use closed; called from any thread.
    void connectionLost();
    // Runs the replay on the reconnector's thread, in order with its reports.
    void requestReplay();

    // Milliseconds to wait after failed attempt `attempt` (1-based):
    // 100 ms doubling up to kMaxBackoffMs.
    static int backoffMs(int attempt);
    static constexpr int kFirstBackoffMs = 100;
    static constexpr int kMaxBackoffMs = 2000;

private:
    void run(unsigned generation);
    // Whether the thread of `generation` is to end; m_mutex held.
    bool endsLocked(unsigned generation) const { return m_stopping || generation != m_generation; }
    // Waits up to `ms` for stop(); true when the thread is to end.
    bool stopWithin(unsigned generation, int ms);

    Attempt m_attempt;
    Report m_report;
    Replay m_replay;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_lost = false;
    bool m_replayWanted = false;
    bool m_stopping = false;
    // Counts start(): a thread left running by a stop() from a report (it
    // could not be joined) ends when a later start() begins another.
    unsigned m_generation = 0;
    std::thread m_thread;
};
