#pragma once
// Short forms of the GW_PF_* calls the integration tests make again and
// again: parameters read or written, a module added, a free loopback port.

#include "GwPlatform.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QTcpServer>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <utility>

namespace GwTestCalls {

inline std::unique_ptr<GW_PARAM_RECORD> record(const QByteArray &key, const QByteArray &value = {})
{
    std::unique_ptr<GW_PARAM_RECORD> rec(new GW_PARAM_RECORD{});
    rec->count = 1;
    qstrncpy(rec->entries[0].key, key.constData(), sizeof(rec->entries[0].key));
    // Values up to the whole field, so over-long values reach the gateway.
    std::memcpy(rec->entries[0].value, value.constData(), size_t(qMin(value.size(), GW_PARAM_VALUE_SIZE - 1)));
    return rec;
}

using Pairs = QList<QPair<QByteArray, QByteArray>>;

// One record holding every pair in order, as the module writes an address.
inline std::unique_ptr<GW_PARAM_RECORD> recordOf(const Pairs &pairs)
{
    std::unique_ptr<GW_PARAM_RECORD> rec(new GW_PARAM_RECORD{});
    for (const auto &pair : pairs) {
        GW_PARAM_ENTRY &entry = rec->entries[rec->count++];
        qstrncpy(entry.key, pair.first.constData(), sizeof(entry.key));
        qstrncpy(entry.value, pair.second.constData(), sizeof(entry.value));
    }
    return rec;
}

inline quint32 set(int module, const QByteArray &key, const QByteArray &value, int address = -1)
{
    return GW_PF_SetModuleParam(module, record(key, value).get(), address);
}

// Sets the module parameters in order; GW_OK or the first refusal.
inline quint32 setAll(int module, std::initializer_list<std::pair<QByteArray, QByteArray>> values)
{
    for (const auto &value : values)
        if (const quint32 rc = set(module, value.first, value.second))
            return rc;
    return GW_OK;
}

inline QByteArray get(int module, const QByteArray &key, int address = -1)
{
    auto rec = record(key);
    return GW_PF_GetModuleParam(module, rec.get(), address) == GW_OK ? QByteArray(rec->entries[0].value) : QByteArray();
}

inline int add(const char *type, const char *name = "device")
{
    int id = -1;
    return GW_PF_AddModule(type, name, &id) == GW_OK ? id : -1;
}

// A loopback port nobody holds right now.
inline quint16 freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
}

} // namespace GwTestCalls
