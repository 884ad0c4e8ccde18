// The GW_PF_* entry points of the fake: each records its call and defers to
// FakeGateway for the answer. Functions the module never calls are left out.
#include "FakeGateway.h"

#include <cstring>

namespace {
FakeGateway &gw()
{
    return FakeGateway::instance();
}

FakeGwCall makeCall(const char *function, int moduleId = 0, int addressId = 0, int number = 0,
                    const char *text = nullptr)
{
    FakeGwCall c;
    c.function = QString::fromLatin1(function);
    c.moduleId = moduleId;
    c.addressId = addressId;
    c.number = number;
    c.text = text ? QByteArray(text) : QByteArray();
    return c;
}

QByteArray fieldText(const char *field, int size)
{
    return QByteArray(field, int(qstrnlen(field, uint(size))));
}

// A call that passes a parameter record: its count and the entries in use.
FakeGwCall recordCall(const char *function, int moduleId, const GW_PARAM_RECORD *rec, int addressId)
{
    FakeGwCall c = makeCall(function, moduleId, addressId);
    if (rec) {
        c.recordCount = rec->count;
        for (int i = 0; i < qBound(0, int(rec->count), GW_PARAM_MAX_ENTRIES); ++i)
            c.entries.append(qMakePair(fieldText(rec->entries[i].key, GW_PARAM_KEY_SIZE),
                                       fieldText(rec->entries[i].value, GW_PARAM_VALUE_SIZE)));
    }
    return c;
}

// GetReservedPorts answers GW_ERR_BUFFER_TOO_SMALL with the size it needs;
// the other lists are cut to the buffer.
uint32_t textList(const char *function, char *buffer, int size, int *length)
{
    const uint32_t code = gw().record(makeCall(function, 0, 0, size));
    if (code != GW_OK && code != GW_ERR_BUFFER_TOO_SMALL)
        return code;
    if (!buffer || !length || size <= 0)
        return GW_ERR_INVALID_ARGUMENT;
    int reported = 0;
    const QByteArray text = gw().listText(QString::fromLatin1(function), &reported);
    if (std::strcmp(function, "GetReservedPorts") == 0 && (code != GW_OK || text.size() + 1 > size)) {
        *length = text.size() + 1;
        return GW_ERR_BUFFER_TOO_SMALL;
    }
    qstrncpy(buffer, text.constData(), uint(size));
    *length = reported != 0 ? reported : qMin(text.size(), size - 1);
    return GW_OK;
}

// Records the read as `function` and fills the value of every entry from the
// parameter store.
uint32_t readParams(const char *function, int moduleId, GW_PARAM_RECORD *params, int addressId)
{
    const FakeGwCall c = recordCall(function, moduleId, params, addressId);
    const uint32_t code = gw().record(c);
    if (!params)
        return GW_ERR_INVALID_ARGUMENT;
    if (code != GW_OK)
        return code;
    for (int i = 0; i < c.entries.size(); ++i)
        qstrncpy(params->entries[i].value, gw().param(moduleId, c.entries[i].first, addressId).constData(),
                 GW_PARAM_VALUE_SIZE);
    return GW_OK;
}
} // namespace

extern "C" {

uint32_t GW_PF_Init(int mode, const char *serverIp, int port, int dongleType)
{
    return gw().record(makeCall("Init", mode, dongleType, port, serverIp));
}

uint32_t GW_PF_DeInit(void)
{
    return gw().record(makeCall("DeInit"));
}

uint32_t GW_PF_SetResultCallback(GW_RESULT_CALLBACK callback, void *userData)
{
    gw().setResultCallback(callback, userData);
    return gw().record(makeCall("SetResultCallback"));
}

uint32_t GW_PF_SetRecvEventCalBack(GW_RECV_EVENT_CALLBACK callback, void *userData)
{
    return gw().record(makeCall("SetRecvEventCalBack", callback ? 1 : 0, userData ? 1 : 0));
}

uint32_t GW_PF_SetEventCalBack(GW_EVENT_CALLBACK callback, void *userData)
{
    gw().setEventCallback(callback, userData);
    return gw().record(makeCall("SetEventCalBack"));
}

// The module's log hook: the fake writes no lines of its own.
uint32_t GW_PF_SetLogCallBack(GW_LOG_CALLBACK, void *)
{
    return GW_OK;
}

uint32_t GW_PF_GetAllModules(GW_MODULE_INFO *modules, int capacity, int *count)
{
    const uint32_t code = gw().record(makeCall("GetAllModules", 0, 0, capacity));
    if (code != GW_OK)
        return code;
    if (!modules || !count || capacity < 0)
        return GW_ERR_INVALID_ARGUMENT;
    const QVector<FakeGwModule> list = gw().modules();
    *count = qMin(capacity, list.size());
    for (int i = 0; i < *count; ++i) {
        modules[i] = GW_MODULE_INFO{};
        modules[i].moduleId = list[i].id;
        qstrncpy(modules[i].moduleType, list[i].type.constData(), GW_MODULE_TYPE_SIZE);
        qstrncpy(modules[i].displayName, list[i].name.constData(), GW_MODULE_NAME_SIZE);
    }
    return GW_OK;
}

uint32_t GW_PF_AddModule(const char *moduleType, const char *displayName, int *moduleId)
{
    FakeGwCall c = makeCall("AddModule", 0, 0, 0, moduleType);
    c.text2 = displayName ? QByteArray(displayName) : QByteArray();
    const uint32_t code = gw().record(c);
    if (code != GW_OK)
        return code;
    if (!moduleType || !displayName || !moduleId)
        return GW_ERR_INVALID_ARGUMENT;
    *moduleId = gw().addModule(c.text, c.text2);
    return GW_OK;
}

uint32_t GW_PF_DeleteModule(int moduleId)
{
    const uint32_t code = gw().record(makeCall("DeleteModule", moduleId));
    if (code != GW_OK)
        return code;
    return gw().removeModule(moduleId) ? GW_OK : GW_ERR_UNKNOWN_MODULE;
}

uint32_t GW_PF_UpdateModule(int moduleId, const char *displayName)
{
    const FakeGwCall c = makeCall("UpdateModule", moduleId, 0, 0, displayName);
    const uint32_t code = gw().record(c);
    if (code != GW_OK)
        return code;
    return gw().renameModule(moduleId, c.text) ? GW_OK : GW_ERR_UNKNOWN_MODULE;
}

uint32_t GW_PF_GetModuleParam(int moduleId, GW_PARAM_RECORD *params, int addressId)
{
    return readParams("GetModuleParam", moduleId, params, addressId);
}

// Stores every entry when accepted (also when the device must reopen for it).
uint32_t GW_PF_SetModuleParam(int moduleId, GW_PARAM_RECORD *params, int addressId)
{
    const FakeGwCall c = recordCall("SetModuleParam", moduleId, params, addressId);
    const uint32_t code = gw().record(c);
    if (!params)
        return GW_ERR_INVALID_ARGUMENT;
    if (code == GW_OK || code == GW_ERR_PENDING_REOPEN) {
        for (const auto &entry : c.entries)
            gw().setParam(moduleId, entry.first, entry.second, addressId);
    }
    return code;
}

uint32_t GW_PF_GetAllParam(int moduleId, GW_PARAM_RECORD *params, int addressId)
{
    return readParams("GetAllParam", moduleId, params, addressId);
}

// number: the capacity passed in.
uint32_t GW_PF_GetModuleAllAddressInfo(int moduleId, GW_ADDRESS_INFO *addresses, int capacity, int *count)
{
    const uint32_t code = gw().record(makeCall("GetModuleAllAddressInfo", moduleId, 0, capacity));
    if (code != GW_OK)
        return code;
    if (!addresses || !count || capacity < 0)
        return GW_ERR_INVALID_ARGUMENT;
    const QVector<FakeGwAddress> list = gw().addresses(moduleId);
    *count = qMin(capacity, list.size());
    for (int i = 0; i < *count; ++i) {
        addresses[i] = GW_ADDRESS_INFO{};
        addresses[i].addressId = list[i].id;
        qstrncpy(addresses[i].addressName, list[i].name.constData(), GW_ADDRESS_NAME_SIZE);
    }
    return GW_OK;
}

// number: the direction; text: the name.
uint32_t GW_PF_AddModuleAddressPN(int moduleId, const char *addressName, int direction, int *addressId)
{
    const FakeGwCall c = makeCall("AddModuleAddressPN", moduleId, addressId ? *addressId : 0, direction, addressName);
    const uint32_t code = gw().record(c);
    if (code != GW_OK)
        return code;
    if (!addressName || !addressId)
        return GW_ERR_INVALID_ARGUMENT;
    *addressId = gw().addAddress(moduleId, direction, c.text);
    return GW_OK;
}

uint32_t GW_PF_DeleteModuleAddress(int moduleId, int addressId)
{
    const uint32_t code = gw().record(makeCall("DeleteModuleAddress", moduleId, addressId));
    if (code != GW_OK)
        return code;
    gw().removeAddress(moduleId, addressId);
    return GW_OK;
}

// A truth value: valid unless a failure code is scripted for it. number: the direction.
uint32_t GW_PF_ValidateAddressParams(int moduleId, GW_PARAM_RECORD *params, int direction)
{
    FakeGwCall c = recordCall("ValidateAddressParams", moduleId, params, 0);
    c.number = direction;
    return gw().record(c) == GW_OK ? 1 : 0;
}

// number: the buffer size; answers the bytes setAddressData gave, cut to the buffer.
uint32_t GW_PF_ReadData(int moduleId, int addressId, int bufferSize, int *length, char *buffer)
{
    const uint32_t code = gw().record(makeCall("ReadData", moduleId, addressId, bufferSize));
    if (code != GW_OK)
        return code;
    if (!length || !buffer || bufferSize < 0)
        return GW_ERR_INVALID_ARGUMENT;
    const QByteArray bytes = gw().addressData(moduleId, addressId).left(bufferSize);
    memcpy(buffer, bytes.constData(), size_t(bytes.size()));
    *length = bytes.size();
    return GW_OK;
}

uint32_t GW_PF_WriteInt(int moduleId, int addressId, int count, const char *values)
{
    return gw().record(makeCall("WriteInt", moduleId, addressId, count, values));
}

uint32_t GW_PF_WriteFloat(int moduleId, int addressId, int count, const char *values)
{
    return gw().record(makeCall("WriteFloat", moduleId, addressId, count, values));
}

uint32_t GW_PF_WriteString(int moduleId, int addressId, const char *text)
{
    return gw().record(makeCall("WriteString", moduleId, addressId, 0, text));
}

uint32_t GW_PF_GetLocalIpList(char *buffer, int size, int *length)
{
    return textList("GetLocalIpList", buffer, size, length);
}

uint32_t GW_PF_GetSerialList(char *buffer, int size, int *length)
{
    return textList("GetSerialList", buffer, size, length);
}

uint32_t GW_PF_GetReservedPorts(char *buffer, int size, int *needed)
{
    return textList("GetReservedPorts", buffer, size, needed);
}

} // extern "C"
