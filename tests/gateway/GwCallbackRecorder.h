#pragma once
// Records what the gateway library's callbacks deliver, from its threads,
// for the test thread to inspect.

#include "GwPlatform.h"

#include <QByteArray>
#include <QList>
#include <mutex>

class GwCallbackRecorder
{
public:
    struct Result {
        int moduleId;
        int addressId;
        QByteArray data;
    };
    struct Event {
        int type;
        int moduleId;
    };

    void install()
    {
        GW_PF_SetResultCallback(&GwCallbackRecorder::onResult, this);
        GW_PF_SetEventCalBack(&GwCallbackRecorder::onEvent, this);
    }
    void clear()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_results.clear();
        m_events.clear();
        m_bytes = 0;
    }
    QList<Result> results() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_results;
    }
    QList<Event> events() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_events;
    }
    int eventCount(int type, int moduleId) const
    {
        int n = 0;
        for (const Event &e : events())
            n += (e.type == type && e.moduleId == moduleId);
        return n;
    }
    // Concatenated result bytes of one module.
    QByteArray stream(int moduleId) const
    {
        QByteArray all;
        for (const Result &r : results())
            if (r.moduleId == moduleId)
                all += r.data;
        return all;
    }

private:
    static int onResult(int moduleId, int addressId, void *data, int length, void *self)
    {
        auto *me = static_cast<GwCallbackRecorder *>(self);
        std::lock_guard<std::mutex> lock(me->m_mutex);
        me->m_results.append({moduleId, addressId, QByteArray(static_cast<const char *>(data), length)});
        return 0;
    }
    static int onEvent(eGW_EVENT_TYPE type, void *data, void *self, int length)
    {
        auto *me = static_cast<GwCallbackRecorder *>(self);
        qint32 moduleId = -1;
        if (length >= 4)
            memcpy(&moduleId, data, sizeof(moduleId));
        std::lock_guard<std::mutex> lock(me->m_mutex);
        me->m_events.append({int(type), moduleId});
        return 0;
    }

    mutable std::mutex m_mutex;
    QList<Result> m_results;
    QList<Event> m_events;
    qint64 m_bytes = 0;
};
