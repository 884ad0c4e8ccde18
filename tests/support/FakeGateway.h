#pragma once
// Scriptable in-process implementation of the GW_PF_* functions the module
// calls, for unit tests: link the shared library FakeGateway instead of the
// real client. Every call is recorded with its arguments and record entries;
// answers are GW_OK unless scripted. The fake keeps a module table and a
// parameter store per module and address: SetModuleParam stores what it
// accepted, GetModuleParam reads it back.

#include "GwPlatform.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QVector>
#include <mutex>

struct FakeGwCall {
    QString function;    // without the "GW_PF_" prefix
    int moduleId = 0;    // Init: the mode
    int addressId = 0;   // Init: the dongle type
    int number = 0;      // count / capacity / port, by function
    QByteArray text;     // type, name, values, server address, by function
    QByteArray text2;    // display name of AddModule
    int recordCount = 0; // count field of the record passed in
    QList<QPair<QByteArray, QByteArray>> entries; // the record's entries in use
};

struct FakeGwAddress {
    int id = 0;
    int direction = 0; // GW_ADDRESS_READ / GW_ADDRESS_WRITE
    QByteArray name;
};

struct FakeGwModule {
    int id = 0;
    QByteArray type;
    QByteArray name;
};

class FakeGateway
{
public:
    static FakeGateway &instance();

    // Back to a fresh gateway: no modules, no scripts, no calls, no callbacks.
    void reset() { Lock lock(m_mutex); m_s = State(); }

    // ---- scripting --------------------------------------------------------
    // Every call of `function` ("Init", "GetModuleParam", ...) returns code.
    void answer(const QString &function, quint32 code) { Lock lock(m_mutex); m_s.answers[function] = code; }
    // Calls of `function` whose first record key is `key` return code
    // (takes precedence over answer()).
    void answerKey(const QString &function, const QByteArray &key, quint32 code)
    {
        Lock lock(m_mutex);
        m_s.keyAnswers[qMakePair(function, key)] = code;
    }
    // Parameter store read by GetModuleParam.
    void setParam(int moduleId, const QByteArray &key, const QByteArray &value, int addressId = -1);
    QByteArray param(int moduleId, const QByteArray &key, int addressId = -1) const;
    // Module table; ids count up from 1 unless setNextModuleId() says otherwise.
    int addModule(const QByteArray &type, const QByteArray &name); // returns the new id
    QVector<FakeGwModule> modules() const { Lock lock(m_mutex); return m_s.modules; }
    void setNextModuleId(int id) { Lock lock(m_mutex); m_s.nextModuleId = id; }
    // Texts of the list functions (GetLocalIpList always answers "127.0.0.1").
    void setSerialList(const QByteArray &text, int reportedLength = 0) // 0: the text's size
    {
        Lock lock(m_mutex);
        m_s.serialList = text;
        m_s.serialLength = reportedLength;
    }
    void setReservedPorts(const QByteArray &text) { Lock lock(m_mutex); m_s.reservedPorts = text; }
    // Address table of a fieldbus module, as AddModuleAddressPN fills it: read
    // ids count up from 1, write ids from 1001 (the ranges of our descriptions).
    int addAddress(int moduleId, int direction, const QByteArray &name); // returns the new id
    QVector<FakeGwAddress> addresses(int moduleId) const;
    bool removeAddress(int moduleId, int addressId);
    // The bytes ReadData answers for an address.
    void setAddressData(int moduleId, int addressId, const QByteArray &bytes);
    QByteArray addressData(int moduleId, int addressId) const;

    // ---- inspection ---------------------------------------------------------
    QList<FakeGwCall> calls(const QString &function = QString()) const;
    FakeGwCall lastCall(const QString &function) const; // empty call when none
    // How many SetModuleParam calls wrote key = value at that address.
    int setCount(int moduleId, const QByteArray &key, const QByteArray &value, int addressId = -1) const;
    void clearCalls() { Lock lock(m_mutex); m_s.calls.clear(); }

    // ---- callbacks ----------------------------------------------------------
    // Fire the registered callback from a fresh std::thread and wait for it to
    // return. Returns false when no callback is registered.
    bool fireEvent(int eventType, const QByteArray &payload);
    bool fireResult(int moduleId, int addressId, const QByteArray &data);
    // The usual connection event payload: the module id as int32.
    static QByteArray modulePayload(int moduleId);

    // ---- used by the GW_PF_* functions ----------------------------------------
    // Records the call; returns its scripted answer (GW_OK unless scripted).
    quint32 record(const FakeGwCall &call);
    bool removeModule(int id);
    bool renameModule(int id, const QByteArray &name);
    // The text of a list function and the length it reports (0: the text's size).
    QByteArray listText(const QString &function, int *reportedLength) const;
    void setEventCallback(GW_EVENT_CALLBACK cb, void *user)
    {
        Lock lock(m_mutex);
        m_s.eventCb = cb;
        m_s.eventUser = user;
    }
    void setResultCallback(GW_RESULT_CALLBACK cb, void *user)
    {
        Lock lock(m_mutex);
        m_s.resultCb = cb;
        m_s.resultUser = user;
    }

private:
    using Lock = std::lock_guard<std::mutex>;
    struct State {
        QList<FakeGwCall> calls;
        QMap<QString, quint32> answers;
        QMap<QPair<QString, QByteArray>, quint32> keyAnswers;
        QMap<QPair<QPair<int, int>, QByteArray>, QByteArray> params; // ((module, address), key)
        QVector<FakeGwModule> modules;
        int nextModuleId = 1;
        QByteArray serialList;
        int serialLength = 0;
        QByteArray reservedPorts;
        QMap<int, QVector<FakeGwAddress>> addresses;
        int nextReadAddressId = 1;
        int nextWriteAddressId = 1001;
        QMap<QPair<int, int>, QByteArray> addressData;
        GW_EVENT_CALLBACK eventCb = nullptr;
        void *eventUser = nullptr;
        GW_RESULT_CALLBACK resultCb = nullptr;
        void *resultUser = nullptr;
    };

    FakeGateway() = default;

    mutable std::mutex m_mutex;
    State m_s;
};
