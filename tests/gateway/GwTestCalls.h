#pragma once
// Short forms of the GW_PF_* calls the integration tests make again and
// again: one parameter read or written, a module added.

#include "GwPlatform.h"

#include <QByteArray>
#include <cstring>
#include <memory>

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

inline quint32 set(int module, const QByteArray &key, const QByteArray &value, int address = -1)
{
    return GW_PF_SetModuleParam(module, record(key, value).get(), address);
}

inline QByteArray get(int module, const QByteArray &key, int address = -1, quint32 *rc = nullptr)
{
    auto rec = record(key);
    const quint32 code = GW_PF_GetModuleParam(module, rec.get(), address);
    if (rc)
        *rc = code;
    return code == GW_OK ? QByteArray(rec->entries[0].value) : QByteArray();
}

inline int add(const char *type, const char *name = "device")
{
    int id = -1;
    return GW_PF_AddModule(type, name, &id) == GW_OK ? id : -1;
}

} // namespace GwTestCalls
