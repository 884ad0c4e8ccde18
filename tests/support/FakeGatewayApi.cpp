// The GW_PF_* entry points of the fake: each records its call and defers to
// FakeGateway for the answer.
#include "FakeGateway.h"

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
} // namespace

extern "C" {

uint32_t GW_PF_Init(int mode, const char *serverIp, int port, int dongleType)
{
    FakeGwCall c = makeCall("Init", mode, dongleType, port, serverIp);
    return gw().record(c);
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
    FakeGwCall c = makeCall("SetRecvEventCalBack", callback ? 1 : 0, userData ? 1 : 0);
    return gw().record(c);
}

uint32_t GW_PF_SetEventCalBack(GW_EVENT_CALLBACK callback, void *userData)
{
    gw().setEventCallback(callback, userData);
    return gw().record(makeCall("SetEventCalBack"));
}

uint32_t GW_PF_GetAllModules(GW_MODULE_INFO *modules, int capacity, int *count)
{
    return gw().doGetAllModules(modules, capacity, count);
}

uint32_t GW_PF_AddModule(const char *moduleType, const char *displayName, int *moduleId)
{
    return gw().doAddModule(moduleType, displayName, moduleId);
}

uint32_t GW_PF_DeleteModule(int moduleId)
{
    return gw().doDeleteModule(moduleId);
}

uint32_t GW_PF_UpdateModule(int moduleId, const char *displayName)
{
    return gw().doUpdateModule(moduleId, displayName);
}

uint32_t GW_PF_GetModuleParam(int moduleId, GW_PARAM_RECORD *params, int addressId)
{
    return gw().doGetParams(QStringLiteral("GetModuleParam"), moduleId, params, addressId);
}

uint32_t GW_PF_SetModuleParam(int moduleId, GW_PARAM_RECORD *params, int addressId)
{
    return gw().doSetParams(moduleId, params, addressId);
}

uint32_t GW_PF_GetAllParam(int moduleId, GW_PARAM_RECORD *params, int addressId)
{
    return gw().doGetParams(QStringLiteral("GetAllParam"), moduleId, params, addressId);
}

uint32_t GW_PF_GetModuleAllAddressInfo(int moduleId, GW_ADDRESS_INFO *addresses, int capacity, int *count)
{
    return gw().doGetAddresses(moduleId, addresses, capacity, count);
}

uint32_t GW_PF_AddModuleAddressPN(int moduleId, const char *addressName, int direction, int *addressId)
{
    return gw().doAddAddress(moduleId, addressName, direction, addressId);
}

uint32_t GW_PF_DeleteModuleAddress(int moduleId, int addressId)
{
    return gw().doDeleteAddress(moduleId, addressId);
}

// Answers 1 (valid) unless scripted: a scripted code is returned as it stands.
uint32_t GW_PF_ValidateAddressParams(int moduleId, GW_PARAM_RECORD *params, int direction)
{
    FakeGwCall c = makeCall("ValidateAddressParams", moduleId, 0, direction);
    if (params) {
        c.recordCount = params->count;
        for (int i = 0; i < qBound(0, int(params->count), GW_PARAM_MAX_ENTRIES); ++i)
            c.entries.append(qMakePair(QByteArray(params->entries[i].key), QByteArray(params->entries[i].value)));
    }
    // answer("ValidateAddressParams", 0) is the default "valid"; any other
    // scripted code is returned as it stands (so answer 0x100 tests the low byte).
    const uint32_t code = gw().record(c);
    return code == GW_OK ? 1u : code;
}

uint32_t GW_PF_ReadData(int moduleId, int addressId, int bufferSize, int *length, char *buffer)
{
    return gw().doReadData(moduleId, addressId, bufferSize, length, buffer);
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
    return gw().doTextList(QStringLiteral("GetLocalIpList"), buffer, size, length);
}

uint32_t GW_PF_GetSerialList(char *buffer, int size, int *length)
{
    return gw().doTextList(QStringLiteral("GetSerialList"), buffer, size, length);
}

uint32_t GW_PF_GetReservedPorts(char *buffer, int size, int *needed)
{
    return gw().doTextList(QStringLiteral("GetReservedPorts"), buffer, size, needed);
}

} // extern "C"
