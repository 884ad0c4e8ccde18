#pragma once
// Records what the gateway library's callbacks deliver, from its threads,
// for the test thread to inspect.

#include "GwPlatform.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <cstring>
#include <mutex>

class GwCallbackRecorder
{
public:
    struct Result {
        int moduleId;
        int addressId;
        QByteArray data;
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
        m_states.clear();
    }
    // The states pushed for one module (GW_EVENT_DEVICE_STATUS), in order.
    QList<int> states(int moduleId) const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        QList<int> list;
        for (const auto &pair : m_states)
            if (pair.first == moduleId)
                list.append(pair.second);
        return list;
    }
    QList<Result> results() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_results;
    }
    int eventCount(int type, int moduleId) const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_events.count(qMakePair(type, moduleId));
    }
    // Every event type in the order delivered.
    QList<int> eventTypes() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        QList<int> types;
        for (const auto &event : m_events)
            types += event.first;
        return types;
    }
    // The bytes of each result of one module, in order.
    QList<QByteArray> frames(int moduleId) const
    {
        QList<QByteArray> all;
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
        qint32 moduleId = -1;
        if (length >= 4)
            std::memcpy(&moduleId, data, sizeof(moduleId));
        qint32 state = -1;
        if (type == GW_EVENT_DEVICE_STATUS && length >= 8)
            std::memcpy(&state, static_cast<const char *>(data) + 4, sizeof(state));
        auto *me = static_cast<GwCallbackRecorder *>(self);
        std::lock_guard<std::mutex> lock(me->m_mutex);
        me->m_events.append(qMakePair(int(type), int(moduleId)));
        if (type == GW_EVENT_DEVICE_STATUS)
            me->m_states.append(qMakePair(int(moduleId), int(state)));
        return 0;
    }

    mutable std::mutex m_mutex;
    QList<Result> m_results;
    QList<QPair<int, int>> m_events; // event type, module id
    QList<QPair<int, int>> m_states; // module id, device state
};
