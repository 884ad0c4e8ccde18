#pragma once
// Scriptable in-process implementation of every GW_PF_* function for unit
// tests. Link the shared library FakeGateway instead of the real client.
//
//   FakeGateway &gw = FakeGateway::instance();   // reset() in init()
//   gw.answer("SetModuleParam", 0xE00000FF);      // every SetModuleParam fails
//   gw.answerKey("SetModuleParam", "TargetPort", 0xE0000010);
//   gw.setParam(7, "ConnectState", "True");       // GetModuleParam answers it
//   QCOMPARE(gw.setCount(7, "ConnectState", "true"), 1);
//   QCOMPARE(gw.calls("GetModuleParam").size(), 1);
//   gw.fireResult(7, -1, "AB\r\n");               // from another thread
//
// Every call is recorded with its arguments and record entries. The fake keeps
// a module table (add/list/delete/rename) and a parameter store per module and
// address: SetModuleParam stores what it accepted, GetModuleParam reads it back.

#include "GwPlatform.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QVector>
#include <mutex>

struct FakeGwCall {
    QString function;       // without the "GW_PF_" prefix
    int moduleId = 0;
    int addressId = 0;
    int number = 0;         // count / capacity / direction / port, by function
    QByteArray text;        // type, name, values, server address, by function
    QByteArray text2;       // display name of AddModule
    int recordCount = 0;    // count field of the record passed in
    QList<QPair<QByteArray, QByteArray>> entries; // the record's entries in use
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
    void reset();

    // ---- scripting --------------------------------------------------------
    // Every call of `function` ("Init", "GetModuleParam", ...) returns code.
    void answer(const QString &function, quint32 code);
    // Calls of `function` whose first record key is `key` return code
    // (takes precedence over answer()).
    void answerKey(const QString &function, const QByteArray &key, quint32 code);
    // The next call of `function` returns code once, then the normal answer.
    void answerOnce(const QString &function, quint32 code);
    void clearAnswers();

    // Parameter store read by GetModuleParam / GetAllParam.
    void setParam(int moduleId, const QByteArray &key, const QByteArray &value, int addressId = -1);
    QByteArray param(int moduleId, const QByteArray &key, int addressId = -1) const;

    // Module table.
    int addModule(const QByteArray &type, const QByteArray &name); // returns the new id
    QVector<FakeGwModule> modules() const;
    // The id the next AddModule hands out (ids otherwise count up from 1).
    void setNextModuleId(int id);

    // Addresses of fieldbus modules (GetModuleAllAddressInfo).
    int addAddress(int moduleId, const QByteArray &name, int addressId = 0); // 0: next free id
    void setReadData(int moduleId, int addressId, const QByteArray &bytes);

    // Texts returned by the list functions.
    void setLocalIpList(const QByteArray &text);  // default "127.0.0.1"
    void setSerialList(const QByteArray &text, int reportedLength = 0); // 0: the text's size
    void setReservedPorts(const QByteArray &text);

    // ---- inspection ---------------------------------------------------------
    QList<FakeGwCall> calls(const QString &function = QString()) const;
    FakeGwCall lastCall(const QString &function) const; // empty call when none
    // How many SetModuleParam calls wrote key = value at that address.
    int setCount(int moduleId, const QByteArray &key, const QByteArray &value, int addressId = -1) const;
    // Same, for any module.
    int setCount(const QByteArray &key, const QByteArray &value, int addressId = -1) const;
    void clearCalls();

    // ---- callbacks ----------------------------------------------------------
    GW_EVENT_CALLBACK eventCallback() const;
    GW_RESULT_CALLBACK resultCallback() const;
    // Fire a callback from a fresh std::thread and wait for it to return.
    // Returns false when no callback is registered.
    bool fireEvent(int eventType, const QByteArray &payload);
    bool fireResult(int moduleId, int addressId, const QByteArray &data);
    // The usual connection event payload: the module id as int32.
    static QByteArray modulePayload(int moduleId);

    // ---- used by the GW_PF_* implementations ---------------------------------
    quint32 record(FakeGwCall call, const QByteArray &firstKey = QByteArray());
    quint32 doGetParams(const QString &function, int moduleId, GW_PARAM_RECORD *rec, int addressId);
    quint32 doSetParams(int moduleId, GW_PARAM_RECORD *rec, int addressId);
    quint32 doGetAllModules(GW_MODULE_INFO *modules, int capacity, int *count);
    quint32 doAddModule(const char *type, const char *name, int *id);
    quint32 doDeleteModule(int id);
    quint32 doUpdateModule(int id, const char *name);
    quint32 doGetAddresses(int moduleId, GW_ADDRESS_INFO *infos, int capacity, int *count);
    quint32 doAddAddress(int moduleId, const char *name, int direction, int *addressId);
    quint32 doDeleteAddress(int moduleId, int addressId);
    quint32 doReadData(int moduleId, int addressId, int size, int *length, char *buffer);
    quint32 doTextList(const QString &function, char *buffer, int size, int *length);
    void setCallbacks(GW_EVENT_CALLBACK event, void *eventUser, GW_RESULT_CALLBACK result, void *resultUser);
    void setEventCallback(GW_EVENT_CALLBACK cb, void *user);
    void setResultCallback(GW_RESULT_CALLBACK cb, void *user);

private:
    FakeGateway() = default;
    quint32 answerFor(const QString &function, const QByteArray &firstKey);
    static QList<QPair<QByteArray, QByteArray>> entriesOf(const GW_PARAM_RECORD *rec);

    mutable std::mutex m_mutex;
    QList<FakeGwCall> m_calls;
    QMap<QString, quint32> m_answers;
    QMap<QPair<QString, QByteArray>, quint32> m_keyAnswers;
    QMap<QString, QList<quint32>> m_onceAnswers;
    QMap<QPair<QPair<int, int>, QByteArray>, QByteArray> m_params; // ((module, address), key)
    QVector<FakeGwModule> m_modules;
    int m_nextModuleId = 1;
    QMap<int, QList<QPair<int, QByteArray>>> m_addresses; // module -> (id, name)
    QMap<QPair<int, int>, QByteArray> m_readData;
    QByteArray m_localIps = "127.0.0.1";
    QByteArray m_serialList;
    int m_serialLength = 0;
    QByteArray m_reservedPorts;
    GW_EVENT_CALLBACK m_eventCb = nullptr;
    void *m_eventUser = nullptr;
    GW_RESULT_CALLBACK m_resultCb = nullptr;
    void *m_resultUser = nullptr;
};
