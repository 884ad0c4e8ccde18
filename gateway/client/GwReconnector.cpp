#include "GwReconnector.h"

#include "GwLog.h"

#include <chrono>
#include <cstring>
#include <utility>

GwReconnector::GwReconnector(Attempt attempt, Report report, Replay replay)
    : m_attempt(std::move(attempt)), m_report(std::move(report)), m_replay(std::move(replay))
{
}

GwReconnector::~GwReconnector()
{
    stop();
}

int GwReconnector::backoffMs(int attempt)
{
    int ms = kFirstBackoffMs;
    for (int i = 1; i < attempt && ms < kMaxBackoffMs; ++i)
        ms *= 2;
    return ms < kMaxBackoffMs ? ms : kMaxBackoffMs;
}

void GwReconnector::start()
{
    stop();
    std::lock_guard<std::mutex> lock(m_mutex);
    m_stopping = false;
    m_lost = false;
    m_replayWanted = false;
    const unsigned generation = ++m_generation;
    m_thread = std::thread([this, generation] { run(generation); });
}

void GwReconnector::stop()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    if (!m_thread.joinable())
        return;
    if (m_thread.get_id() == std::this_thread::get_id())
        m_thread.detach(); // inside a report: the thread sees m_stopping when it returns
    else
        m_thread.join();
}

void GwReconnector::connectionLost()
{
#ifdef GW_TSAN_CONTROL
    // Built only into the ThreadSanitizer control test: the flag is set
    // without its lock, a race the tsan run must report.
    m_lost = true;
#else
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_lost = true;
    }
#endif
    m_wake.notify_all();
}

void GwReconnector::requestReplay()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_replayWanted = true;
    }
    m_wake.notify_all();
}

bool GwReconnector::stopWithin(unsigned generation, int ms)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_wake.wait_for(lock, std::chrono::milliseconds(ms), [&] { return endsLocked(generation); });
}

void GwReconnector::run(unsigned generation)
{
    while (true) {
        bool lost = false;
        bool replay = false;
        {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_wake.wait(lock, [&] { return endsLocked(generation) || m_lost || m_replayWanted; });
            if (endsLocked(generation))
                return;
            std::swap(lost, m_lost);
            std::swap(replay, m_replayWanted);
        }
        if (replay)
            m_replay();
        if (!lost)
            continue;
        gwLog(GwLogWarning, "gateway connection lost; reconnecting");
        m_report(GW_EVENT_GATEWAY_LOST, std::string());
        for (int attempt = 1;; ++attempt) {
            {
                std::lock_guard<std::mutex> lock(m_mutex);
                if (endsLocked(generation))
                    return;
            }
            if (m_attempt()) {
                gwLog(GwLogInfo, "gateway connection restored after %d attempt(s)", attempt);
                m_report(GW_EVENT_GATEWAY_RESTORED, std::string());
                break;
            }
            const int32_t wait = backoffMs(attempt);
            const int32_t fields[2] = {attempt, wait};
            std::string payload(sizeof(fields), '\0');
            std::memcpy(&payload[0], fields, sizeof(fields));
            m_report(GW_EVENT_GATEWAY_RECONNECTING, payload);
            if (stopWithin(generation, wait))
                return;
        }
    }
}
