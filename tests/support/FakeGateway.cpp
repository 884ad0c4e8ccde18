#include "FakeGateway.h"

#include <cstring>
#include <thread>

namespace {
using Lock = std::lock_guard<std::mutex>;

QByteArray fieldText(const char *field, int size)
{
    return QByteArray(field, int(strnlen(field, size_t(size))));
}

void copyText(char *dst, int size, const QByteArray &text)
{
    if (!dst || size <= 0)
        return;
    const int n = qMin(text.size(), size - 1);
    std::memcpy(dst, text.constData(), size_t(n));
    dst[n] = '\0';
}
} // namespace

FakeGateway &FakeGateway::instance()
{
    static FakeGateway gateway;
    return gateway;
}

void FakeGateway::reset()
{
    Lock lock(m_mutex);
    m_calls.clear();
    m_answers.clear();
    m_keyAnswers.clear();
    m_onceAnswers.clear();
    m_params.clear();
    m_modules.clear();
    m_nextModuleId = 1;
    m_addresses.clear();
    m_readData.clear();
    m_localIps = "127.0.0.1";
    m_serialList.clear();
    m_serialLength = 0;
    m_reservedPorts.clear();
    m_eventCb = nullptr;
    m_eventUser = nullptr;
    m_resultCb = nullptr;
    m_resultUser = nullptr;
}

void FakeGateway::answer(const QString &function, quint32 code)
{
    Lock lock(m_mutex);
    m_answers[function] = code;
}

void FakeGateway::answerKey(const QString &function, const QByteArray &key, quint32 code)
{
    Lock lock(m_mutex);
    m_keyAnswers[qMakePair(function, key)] = code;
}

void FakeGateway::answerOnce(const QString &function, quint32 code)
{
    Lock lock(m_mutex);
    m_onceAnswers[function].append(code);
}

void FakeGateway::clearAnswers()
{
    Lock lock(m_mutex);
    m_answers.clear();
    m_keyAnswers.clear();
    m_onceAnswers.clear();
}

void FakeGateway::setParam(int moduleId, const QByteArray &key, const QByteArray &value, int addressId)
{
    Lock lock(m_mutex);
    m_params[qMakePair(qMakePair(moduleId, addressId), key)] = value;
}

QByteArray FakeGateway::param(int moduleId, const QByteArray &key, int addressId) const
{
    Lock lock(m_mutex);
    return m_params.value(qMakePair(qMakePair(moduleId, addressId), key));
}

int FakeGateway::addModule(const QByteArray &type, const QByteArray &name)
{
    Lock lock(m_mutex);
    const int id = m_nextModuleId++;
    m_modules.append({id, type, name});
    return id;
}

QVector<FakeGwModule> FakeGateway::modules() const
{
    Lock lock(m_mutex);
    return m_modules;
}

void FakeGateway::setNextModuleId(int id)
{
    Lock lock(m_mutex);
    m_nextModuleId = id;
}

int FakeGateway::addAddress(int moduleId, const QByteArray &name, int addressId)
{
    Lock lock(m_mutex);
    auto &list = m_addresses[moduleId];
    if (addressId == 0) {
        addressId = 1;
        for (const auto &a : list)
            addressId = qMax(addressId, a.first + 1);
    }
    list.append(qMakePair(addressId, name));
    return addressId;
}

void FakeGateway::setReadData(int moduleId, int addressId, const QByteArray &bytes)
{
    Lock lock(m_mutex);
    m_readData[qMakePair(moduleId, addressId)] = bytes;
}

void FakeGateway::setLocalIpList(const QByteArray &text)
{
    Lock lock(m_mutex);
    m_localIps = text;
}

void FakeGateway::setSerialList(const QByteArray &text, int reportedLength)
{
    Lock lock(m_mutex);
    m_serialList = text;
    m_serialLength = reportedLength;
}

void FakeGateway::setReservedPorts(const QByteArray &text)
{
    Lock lock(m_mutex);
    m_reservedPorts = text;
}

QList<FakeGwCall> FakeGateway::calls(const QString &function) const
{
    Lock lock(m_mutex);
    if (function.isEmpty())
        return m_calls;
    QList<FakeGwCall> out;
    for (const auto &c : m_calls)
        if (c.function == function)
            out.append(c);
    return out;
}

FakeGwCall FakeGateway::lastCall(const QString &function) const
{
    const auto list = calls(function);
    return list.isEmpty() ? FakeGwCall() : list.last();
}

int FakeGateway::setCount(int moduleId, const QByteArray &key, const QByteArray &value, int addressId) const
{
    Lock lock(m_mutex);
    int n = 0;
    for (const auto &c : m_calls) {
        if (c.function != QLatin1String("SetModuleParam") || c.moduleId != moduleId || c.addressId != addressId)
            continue;
        for (const auto &e : c.entries)
            if (e.first == key && e.second == value)
                ++n;
    }
    return n;
}

int FakeGateway::setCount(const QByteArray &key, const QByteArray &value, int addressId) const
{
    Lock lock(m_mutex);
    int n = 0;
    for (const auto &c : m_calls) {
        if (c.function != QLatin1String("SetModuleParam") || c.addressId != addressId)
            continue;
        for (const auto &e : c.entries)
            if (e.first == key && e.second == value)
                ++n;
    }
    return n;
}

void FakeGateway::clearCalls()
{
    Lock lock(m_mutex);
    m_calls.clear();
}

GW_EVENT_CALLBACK FakeGateway::eventCallback() const
{
    Lock lock(m_mutex);
    return m_eventCb;
}

GW_RESULT_CALLBACK FakeGateway::resultCallback() const
{
    Lock lock(m_mutex);
    return m_resultCb;
}

bool FakeGateway::fireEvent(int eventType, const QByteArray &payload)
{
    GW_EVENT_CALLBACK cb;
    void *user;
    {
        Lock lock(m_mutex);
        cb = m_eventCb;
        user = m_eventUser;
    }
    if (!cb)
        return false;
    QByteArray copy = payload;
    std::thread t([&] { cb(eGW_EVENT_TYPE(eventType), copy.data(), user, copy.size()); });
    t.join();
    return true;
}

bool FakeGateway::fireResult(int moduleId, int addressId, const QByteArray &data)
{
    GW_RESULT_CALLBACK cb;
    void *user;
    {
        Lock lock(m_mutex);
        cb = m_resultCb;
        user = m_resultUser;
    }
    if (!cb)
        return false;
    QByteArray copy = data;
    std::thread t([&] { cb(moduleId, addressId, copy.data(), copy.size(), user); });
    t.join();
    return true;
}

QByteArray FakeGateway::modulePayload(int moduleId)
{
    const qint32 id = moduleId;
    return QByteArray(reinterpret_cast<const char *>(&id), sizeof(id));
}

// ---- implementation helpers -------------------------------------------------

quint32 FakeGateway::answerFor(const QString &function, const QByteArray &firstKey)
{
    auto once = m_onceAnswers.find(function);
    if (once != m_onceAnswers.end() && !once->isEmpty())
        return once->takeFirst();
    const auto keyed = m_keyAnswers.constFind(qMakePair(function, firstKey));
    if (!firstKey.isEmpty() && keyed != m_keyAnswers.constEnd())
        return *keyed;
    return m_answers.value(function, GW_OK);
}

quint32 FakeGateway::record(FakeGwCall call, const QByteArray &firstKey)
{
    Lock lock(m_mutex);
    m_calls.append(call);
    return answerFor(call.function, firstKey);
}

QList<QPair<QByteArray, QByteArray>> FakeGateway::entriesOf(const GW_PARAM_RECORD *rec)
{
    QList<QPair<QByteArray, QByteArray>> out;
    if (!rec)
        return out;
    const int n = qBound(0, int(rec->count), GW_PARAM_MAX_ENTRIES);
    for (int i = 0; i < n; ++i)
        out.append(qMakePair(fieldText(rec->entries[i].key, GW_PARAM_KEY_SIZE),
                             fieldText(rec->entries[i].value, GW_PARAM_VALUE_SIZE)));
    return out;
}

quint32 FakeGateway::doGetParams(const QString &function, int moduleId, GW_PARAM_RECORD *rec, int addressId)
{
    FakeGwCall call;
    call.function = function;
    call.moduleId = moduleId;
    call.addressId = addressId;
    call.recordCount = rec ? rec->count : 0;
    call.entries = entriesOf(rec);
    const quint32 code = record(call, call.entries.isEmpty() ? QByteArray() : call.entries.first().first);
    if (code != GW_OK || !rec)
        return rec ? code : GW_ERR_INVALID_ARGUMENT;
    Lock lock(m_mutex);
    for (int i = 0; i < call.entries.size(); ++i) {
        const auto k = qMakePair(qMakePair(moduleId, addressId), call.entries[i].first);
        if (m_params.contains(k))
            copyText(rec->entries[i].value, GW_PARAM_VALUE_SIZE, m_params.value(k));
    }
    return GW_OK;
}

quint32 FakeGateway::doSetParams(int moduleId, GW_PARAM_RECORD *rec, int addressId)
{
    FakeGwCall call;
    call.function = QStringLiteral("SetModuleParam");
    call.moduleId = moduleId;
    call.addressId = addressId;
    call.recordCount = rec ? rec->count : 0;
    call.entries = entriesOf(rec);
    const quint32 code = record(call, call.entries.isEmpty() ? QByteArray() : call.entries.first().first);
    if (!rec)
        return GW_ERR_INVALID_ARGUMENT;
    if (code == GW_OK || code == GW_ERR_PENDING_REOPEN) {
        Lock lock(m_mutex);
        for (const auto &e : call.entries)
            m_params[qMakePair(qMakePair(moduleId, addressId), e.first)] = e.second;
    }
    return code;
}

quint32 FakeGateway::doGetAllModules(GW_MODULE_INFO *modules, int capacity, int *count)
{
    FakeGwCall call;
    call.function = QStringLiteral("GetAllModules");
    call.number = capacity;
    const quint32 code = record(call);
    if (code != GW_OK)
        return code;
    if (!modules || !count || capacity < 0)
        return GW_ERR_INVALID_ARGUMENT;
    Lock lock(m_mutex);
    const int n = qMin(capacity, m_modules.size());
    for (int i = 0; i < n; ++i) {
        std::memset(&modules[i], 0, sizeof(GW_MODULE_INFO));
        modules[i].moduleId = m_modules[i].id;
        copyText(modules[i].moduleType, GW_MODULE_TYPE_SIZE, m_modules[i].type);
        copyText(modules[i].displayName, GW_MODULE_NAME_SIZE, m_modules[i].name);
    }
    *count = n;
    return GW_OK;
}

quint32 FakeGateway::doAddModule(const char *type, const char *name, int *id)
{
    FakeGwCall call;
    call.function = QStringLiteral("AddModule");
    call.text = type ? QByteArray(type) : QByteArray();
    call.text2 = name ? QByteArray(name) : QByteArray();
    const quint32 code = record(call);
    if (code != GW_OK)
        return code;
    if (!type || !name || !id)
        return GW_ERR_INVALID_ARGUMENT;
    *id = addModule(call.text, call.text2);
    return GW_OK;
}

quint32 FakeGateway::doDeleteModule(int id)
{
    FakeGwCall call;
    call.function = QStringLiteral("DeleteModule");
    call.moduleId = id;
    const quint32 code = record(call);
    if (code != GW_OK)
        return code;
    Lock lock(m_mutex);
    for (int i = 0; i < m_modules.size(); ++i) {
        if (m_modules[i].id == id) {
            m_modules.remove(i);
            return GW_OK;
        }
    }
    return GW_ERR_UNKNOWN_MODULE;
}

quint32 FakeGateway::doUpdateModule(int id, const char *name)
{
    FakeGwCall call;
    call.function = QStringLiteral("UpdateModule");
    call.moduleId = id;
    call.text = name ? QByteArray(name) : QByteArray();
    const quint32 code = record(call);
    if (code != GW_OK)
        return code;
    Lock lock(m_mutex);
    for (auto &m : m_modules) {
        if (m.id == id) {
            m.name = call.text;
            return GW_OK;
        }
    }
    return GW_ERR_UNKNOWN_MODULE;
}

quint32 FakeGateway::doGetAddresses(int moduleId, GW_ADDRESS_INFO *infos, int capacity, int *count)
{
    FakeGwCall call;
    call.function = QStringLiteral("GetModuleAllAddressInfo");
    call.moduleId = moduleId;
    call.number = capacity;
    const quint32 code = record(call);
    if (code != GW_OK)
        return code;
    if (!infos || !count)
        return GW_ERR_INVALID_ARGUMENT;
    Lock lock(m_mutex);
    const auto list = m_addresses.value(moduleId);
    const int n = qMin(capacity, list.size());
    for (int i = 0; i < n; ++i) {
        std::memset(&infos[i], 0, sizeof(GW_ADDRESS_INFO));
        infos[i].addressId = list[i].first;
        copyText(infos[i].addressName, GW_ADDRESS_NAME_SIZE, list[i].second);
    }
    *count = n;
    return GW_OK;
}

quint32 FakeGateway::doAddAddress(int moduleId, const char *name, int direction, int *addressId)
{
    FakeGwCall call;
    call.function = QStringLiteral("AddModuleAddressPN");
    call.moduleId = moduleId;
    call.number = direction;
    call.text = name ? QByteArray(name) : QByteArray();
    const quint32 code = record(call);
    if (code != GW_OK)
        return code;
    if (!addressId)
        return GW_ERR_INVALID_ARGUMENT;
    int id = direction == GW_ADDRESS_WRITE ? 1001 : 1;
    {
        Lock lock(m_mutex);
        for (const auto &a : m_addresses.value(moduleId))
            if ((direction == GW_ADDRESS_WRITE) == (a.first >= 1000))
                id = qMax(id, a.first + 1);
    }
    *addressId = addAddress(moduleId, call.text, id);
    return GW_OK;
}

quint32 FakeGateway::doDeleteAddress(int moduleId, int addressId)
{
    FakeGwCall call;
    call.function = QStringLiteral("DeleteModuleAddress");
    call.moduleId = moduleId;
    call.addressId = addressId;
    const quint32 code = record(call);
    if (code != GW_OK)
        return code;
    Lock lock(m_mutex);
    auto &list = m_addresses[moduleId];
    for (int i = 0; i < list.size(); ++i) {
        if (list[i].first == addressId) {
            list.removeAt(i);
            return GW_OK;
        }
    }
    return GW_ERR_UNKNOWN_ADDRESS;
}

quint32 FakeGateway::doReadData(int moduleId, int addressId, int size, int *length, char *buffer)
{
    FakeGwCall call;
    call.function = QStringLiteral("ReadData");
    call.moduleId = moduleId;
    call.addressId = addressId;
    call.number = size;
    const quint32 code = record(call);
    if (code != GW_OK)
        return code;
    if (!length || !buffer || size < 0)
        return GW_ERR_INVALID_ARGUMENT;
    Lock lock(m_mutex);
    const QByteArray bytes = m_readData.value(qMakePair(moduleId, addressId));
    const int n = qMin(size, bytes.size());
    std::memcpy(buffer, bytes.constData(), size_t(n));
    *length = n;
    return GW_OK;
}

quint32 FakeGateway::doTextList(const QString &function, char *buffer, int size, int *length)
{
    FakeGwCall call;
    call.function = function;
    call.number = size;
    const quint32 code = record(call);
    if (code != GW_OK && code != GW_ERR_BUFFER_TOO_SMALL)
        return code;
    if (!buffer || !length || size <= 0)
        return GW_ERR_INVALID_ARGUMENT;
    Lock lock(m_mutex);
    QByteArray text;
    int reported = -2;
    if (function == QLatin1String("GetLocalIpList")) {
        text = m_localIps;
    } else if (function == QLatin1String("GetSerialList")) {
        text = m_serialList;
        if (m_serialLength != 0)
            reported = m_serialLength;
    } else {
        text = m_reservedPorts;
        if (code == GW_ERR_BUFFER_TOO_SMALL || text.size() + 1 > size) {
            *length = text.size() + 1;
            return GW_ERR_BUFFER_TOO_SMALL;
        }
    }
    copyText(buffer, size, text);
    *length = reported != -2 ? reported : qMin(text.size(), size - 1);
    return GW_OK;
}

void FakeGateway::setEventCallback(GW_EVENT_CALLBACK cb, void *user)
{
    Lock lock(m_mutex);
    m_eventCb = cb;
    m_eventUser = user;
}

void FakeGateway::setResultCallback(GW_RESULT_CALLBACK cb, void *user)
{
    Lock lock(m_mutex);
    m_resultCb = cb;
    m_resultUser = user;
}

void FakeGateway::setCallbacks(GW_EVENT_CALLBACK event, void *eventUser, GW_RESULT_CALLBACK result,
                               void *resultUser)
{
    setEventCallback(event, eventUser);
    setResultCallback(result, resultUser);
}
