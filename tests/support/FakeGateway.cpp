#include "FakeGateway.h"

#include <thread>

FakeGateway &FakeGateway::instance()
{
    static FakeGateway gateway;
    return gateway;
}

void FakeGateway::setParam(int moduleId, const QByteArray &key, const QByteArray &value, int addressId)
{
    Lock lock(m_mutex);
    m_s.params[qMakePair(qMakePair(moduleId, addressId), key)] = value;
}

QByteArray FakeGateway::param(int moduleId, const QByteArray &key, int addressId) const
{
    Lock lock(m_mutex);
    return m_s.params.value(qMakePair(qMakePair(moduleId, addressId), key));
}

int FakeGateway::addModule(const QByteArray &type, const QByteArray &name)
{
    Lock lock(m_mutex);
    const int id = m_s.nextModuleId++;
    m_s.modules.append({id, type, name});
    return id;
}

int FakeGateway::addAddress(int moduleId, int direction, const QByteArray &name)
{
    Lock lock(m_mutex);
    const int id = direction == GW_ADDRESS_WRITE ? m_s.nextWriteAddressId++ : m_s.nextReadAddressId++;
    m_s.addresses[moduleId].append({id, direction, name});
    return id;
}

QVector<FakeGwAddress> FakeGateway::addresses(int moduleId) const
{
    Lock lock(m_mutex);
    return m_s.addresses.value(moduleId);
}

bool FakeGateway::removeAddress(int moduleId, int addressId)
{
    Lock lock(m_mutex);
    QVector<FakeGwAddress> &list = m_s.addresses[moduleId];
    for (int i = 0; i < list.size(); ++i) {
        if (list[i].id == addressId) {
            list.remove(i);
            return true;
        }
    }
    return false;
}

void FakeGateway::setAddressData(int moduleId, int addressId, const QByteArray &bytes)
{
    Lock lock(m_mutex);
    m_s.addressData[qMakePair(moduleId, addressId)] = bytes;
}

QByteArray FakeGateway::addressData(int moduleId, int addressId) const
{
    Lock lock(m_mutex);
    return m_s.addressData.value(qMakePair(moduleId, addressId));
}

QList<FakeGwCall> FakeGateway::calls(const QString &function) const
{
    Lock lock(m_mutex);
    QList<FakeGwCall> out;
    for (const FakeGwCall &c : m_s.calls)
        if (function.isEmpty() || c.function == function)
            out.append(c);
    return out;
}

FakeGwCall FakeGateway::lastCall(const QString &function) const
{
    const QList<FakeGwCall> list = calls(function);
    return list.isEmpty() ? FakeGwCall() : list.last();
}

int FakeGateway::setCount(int moduleId, const QByteArray &key, const QByteArray &value, int addressId) const
{
    int n = 0;
    for (const FakeGwCall &c : calls(QStringLiteral("SetModuleParam")))
        if (c.moduleId == moduleId && c.addressId == addressId)
            n += c.entries.count(qMakePair(key, value));
    return n;
}

bool FakeGateway::fireEvent(int eventType, const QByteArray &payload)
{
    GW_EVENT_CALLBACK cb;
    void *user;
    {
        Lock lock(m_mutex);
        cb = m_s.eventCb;
        user = m_s.eventUser;
    }
    QByteArray copy = payload;
    if (cb)
        std::thread([&] { cb(eGW_EVENT_TYPE(eventType), copy.data(), user, copy.size()); }).join();
    return cb != nullptr;
}

bool FakeGateway::fireResult(int moduleId, int addressId, const QByteArray &data)
{
    GW_RESULT_CALLBACK cb;
    void *user;
    {
        Lock lock(m_mutex);
        cb = m_s.resultCb;
        user = m_s.resultUser;
    }
    QByteArray copy = data;
    if (cb)
        std::thread([&] { cb(moduleId, addressId, copy.data(), copy.size(), user); }).join();
    return cb != nullptr;
}

QByteArray FakeGateway::modulePayload(int moduleId)
{
    const qint32 id = moduleId;
    return QByteArray(reinterpret_cast<const char *>(&id), sizeof(id));
}

quint32 FakeGateway::record(const FakeGwCall &call)
{
    Lock lock(m_mutex);
    m_s.calls.append(call);
    const QByteArray key = call.entries.isEmpty() ? QByteArray() : call.entries.first().first;
    const auto keyed = m_s.keyAnswers.constFind(qMakePair(call.function, key));
    if (!key.isEmpty() && keyed != m_s.keyAnswers.constEnd())
        return *keyed;
    return m_s.answers.value(call.function, GW_OK);
}

bool FakeGateway::removeModule(int id)
{
    Lock lock(m_mutex);
    for (int i = 0; i < m_s.modules.size(); ++i) {
        if (m_s.modules[i].id == id) {
            m_s.modules.remove(i);
            return true;
        }
    }
    return false;
}

bool FakeGateway::renameModule(int id, const QByteArray &name)
{
    Lock lock(m_mutex);
    for (FakeGwModule &m : m_s.modules) {
        if (m.id == id) {
            m.name = name;
            return true;
        }
    }
    return false;
}

QByteArray FakeGateway::listText(const QString &function, int *reportedLength) const
{
    Lock lock(m_mutex);
    *reportedLength = 0;
    if (function == QLatin1String("GetLocalIpList"))
        return QByteArrayLiteral("127.0.0.1");
    if (function == QLatin1String("GetSerialList")) {
        *reportedLength = m_s.serialLength;
        return m_s.serialList;
    }
    return m_s.reservedPorts;
}

