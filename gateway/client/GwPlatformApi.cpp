// The GW_PF_* functions: each builds one request, waits for its reply and
// copies the answer into the caller's structures.
#include "GwClient.h"
#include "GwHopStamps.h"
#include "GwLog.h"
#include "GwOp.h"
#include "GwPlatform.h"
#include "GwPlcSide.h"
#include "GwRecordCodec.h"
#include "GwWireReader.h"

#include <cstring>

namespace {

GwWireWriter request(GwOp op)
{
    return GwClient::request(uint16_t(op));
}

// Sends the request; on success the reader is positioned on the answer.
struct Call {
    GwConnection::Reply reply;
    GwWireReader reader;
    explicit Call(GwWireWriter &writer)
        : reply(GwClient::instance().call(writer)), reader(reply.payload)
    {
    }
    uint32_t code() const { return reply.code; }
};

uint32_t simple(GwWireWriter &writer)
{
    return Call(writer).code();
}

// A request answered with one id (a new module's or address's).
uint32_t idQuery(GwWireWriter &writer, int *id)
{
    Call call(writer);
    if (call.code() != GW_OK)
        return call.code();
    const int32_t value = call.reader.i32();
    if (!call.reader.done())
        return GW_ERR_PROTOCOL;
    *id = value;
    return GW_OK;
}

// Copies a text answer into the caller's buffer with a NUL after it.
uint32_t copyText(std::string_view text, char *buffer, int size, int *length)
{
    if (length)
        *length = int(text.size());
    if (int64_t(text.size()) + 1 > size)
        return GW_ERR_BUFFER_TOO_SMALL;
    std::memcpy(buffer, text.data(), text.size());
    buffer[text.size()] = '\0';
    return GW_OK;
}

uint32_t textQuery(GwOp op, char *buffer, int size, int *length)
{
    if (!buffer || size <= 0 || !length)
        return GW_ERR_INVALID_ARGUMENT;
    GwWireWriter writer = request(op);
    Call call(writer);
    if (call.code() != GW_OK)
        return call.code();
    const std::string_view text = call.reader.bytes();
    if (!call.reader.done())
        return GW_ERR_PROTOCOL;
    return copyText(text, buffer, size, length);
}

uint32_t paramsQuery(GwOp op, int moduleId, GW_PARAM_RECORD *params, int addressId)
{
    if (!GwRecordCodec::isValid(params))
        return GW_ERR_INVALID_ARGUMENT;
    GwWireWriter writer = request(op);
    writer.i32(moduleId).i32(addressId);
    GwRecordCodec::writeKeys(writer, *params);
    Call call(writer);
    if (call.code() != GW_OK)
        return call.code();
    return GwRecordCodec::readPairs(call.reader, *params);
}

// Asks for an address's bytes and copies them into the caller's buffer;
// GW_ERR_BUFFER_TOO_SMALL with *length = the size needed when they do not fit.
uint32_t readAddressBytes(GwOp op, int moduleId, int addressId, char *buffer, int size, int *length)
{
    if (!length || !buffer || size < 0)
        return GW_ERR_INVALID_ARGUMENT;
    GwWireWriter writer = request(op);
    writer.i32(moduleId).i32(addressId);
    Call call(writer);
    if (call.code() != GW_OK)
        return call.code();
    const std::string_view data = call.reader.bytes();
    if (!call.reader.done())
        return GW_ERR_PROTOCOL;
    *length = int(data.size());
    if (data.size() > size_t(size))
        return GW_ERR_BUFFER_TOO_SMALL;
    std::memcpy(buffer, data.data(), data.size());
    return GW_OK;
}

// Sends a list request and fills at most `capacity` records, each zeroed and
// then read by `readOne`; a reply with more entries or a short one is refused.
template<typename Record, typename ReadOne>
uint32_t listQuery(GwWireWriter &writer, Record *records, int capacity, int *count, ReadOne readOne)
{
    Call call(writer);
    if (call.code() != GW_OK)
        return call.code();
    const uint32_t n = call.reader.u32();
    if (!call.reader.ok() || n > uint32_t(capacity))
        return GW_ERR_PROTOCOL;
    for (uint32_t i = 0; i < n; ++i) {
        std::memset(&records[i], 0, sizeof(Record));
        if (!readOne(call.reader, records[i]))
            return GW_ERR_PROTOCOL;
    }
    *count = int(n);
    return GW_OK;
}

uint32_t writeValues(GwOp op, int moduleId, int addressId, int count, const char *values)
{
    if (!values || count < 0)
        return GW_ERR_INVALID_ARGUMENT;
    GwWireWriter writer = request(op);
    writer.i32(moduleId).i32(addressId).i32(count).bytes(values);
    return simple(writer);
}

} // namespace

extern "C" {

uint32_t GW_PF_Init(int /*mode*/, const char *serverIp, int port, int /*dongleType*/)
{
    return GwClient::instance().init(serverIp, port);
}

uint32_t GW_PF_DeInit(void)
{
#ifdef COMM_HOP_STAMPS
    gwHopDumpToEnvDir("client");
#endif
    return GwClient::instance().deinit();
}

uint32_t GW_PF_SetResultCallback(GW_RESULT_CALLBACK callback, void *userData)
{
    GwClient::instance().setResultCallback(callback, userData);
    return GW_OK;
}

uint32_t GW_PF_SetRecvEventCalBack(GW_RECV_EVENT_CALLBACK callback, void *userData)
{
    GwClient::instance().setRecvEventCallback(callback, userData);
    return GW_OK;
}

uint32_t GW_PF_SetEventCalBack(GW_EVENT_CALLBACK callback, void *userData)
{
    GwClient::instance().setEventCallback(callback, userData);
    return GW_OK;
}

uint32_t GW_PF_SetLogCallBack(GW_LOG_CALLBACK callback, void *userData)
{
    gwSetLogCallback(callback, userData);
    return GW_OK;
}

uint32_t GW_PF_GetAllModules(GW_MODULE_INFO *modules, int capacity, int *count)
{
    if (!count || capacity < 0 || (capacity > 0 && !modules))
        return GW_ERR_INVALID_ARGUMENT;
    GwWireWriter writer = request(GwOp::GetAllModules);
    writer.u32(uint32_t(capacity));
    return listQuery(writer, modules, capacity, count, [](GwWireReader &in, GW_MODULE_INFO &info) {
        info.moduleId = in.i32();
        info.state = in.i32();
        const std::string_view type = in.bytes();
        const std::string_view name = in.bytes();
        return in.ok() && GwRecordCodec::copyField(info.moduleType, sizeof(info.moduleType), type)
            && GwRecordCodec::copyField(info.displayName, sizeof(info.displayName), name);
    });
}

uint32_t GW_PF_AddModule(const char *moduleType, const char *displayName, int *moduleId)
{
    if (!moduleType || !displayName || !moduleId)
        return GW_ERR_INVALID_ARGUMENT;
    GwWireWriter writer = request(GwOp::AddModule);
    writer.bytes(moduleType).bytes(displayName);
    return idQuery(writer, moduleId);
}

uint32_t GW_PF_DeleteModule(int moduleId)
{
    GwWireWriter writer = request(GwOp::DeleteModule);
    writer.i32(moduleId);
    return simple(writer);
}

uint32_t GW_PF_UpdateModule(int moduleId, const char *displayName)
{
    if (!displayName)
        return GW_ERR_INVALID_ARGUMENT;
    GwWireWriter writer = request(GwOp::UpdateModule);
    writer.i32(moduleId).bytes(displayName);
    return simple(writer);
}

uint32_t GW_PF_GetModuleParam(int moduleId, GW_PARAM_RECORD *params, int addressId)
{
    return paramsQuery(GwOp::GetModuleParam, moduleId, params, addressId);
}

uint32_t GW_PF_GetAllParam(int moduleId, GW_PARAM_RECORD *params, int addressId)
{
    return paramsQuery(GwOp::GetAllParam, moduleId, params, addressId);
}

uint32_t GW_PF_SetModuleParam(int moduleId, GW_PARAM_RECORD *params, int addressId)
{
    if (!GwRecordCodec::isValid(params))
        return GW_ERR_INVALID_ARGUMENT;
    GwWireWriter writer = request(GwOp::SetModuleParam);
    writer.i32(moduleId).i32(addressId);
    GwRecordCodec::writePairs(writer, *params);
    return simple(writer);
}

uint32_t GW_PF_GetModuleAllAddressInfo(int moduleId, GW_ADDRESS_INFO *addresses, int capacity, int *count)
{
    if (!count || capacity < 0 || (capacity > 0 && !addresses))
        return GW_ERR_INVALID_ARGUMENT;
    GwWireWriter writer = request(GwOp::GetAddresses);
    writer.i32(moduleId).u32(uint32_t(capacity));
    return listQuery(writer, addresses, capacity, count, [](GwWireReader &in, GW_ADDRESS_INFO &info) {
        info.addressId = in.i32();
        const std::string_view name = in.bytes();
        return in.ok() && GwRecordCodec::copyField(info.addressName, sizeof(info.addressName), name);
    });
}

uint32_t GW_PF_AddModuleAddressPN(int moduleId, const char *addressName, int direction, int *addressId)
{
    if (!addressName || !addressId)
        return GW_ERR_INVALID_ARGUMENT;
    GwWireWriter writer = request(GwOp::AddAddress);
    writer.i32(moduleId).bytes(addressName).i32(direction);
    return idQuery(writer, addressId);
}

uint32_t GW_PF_DeleteModuleAddress(int moduleId, int addressId)
{
    GwWireWriter writer = request(GwOp::DeleteAddress);
    writer.i32(moduleId).i32(addressId);
    return simple(writer);
}

uint32_t GW_PF_ValidateAddressParams(int moduleId, GW_PARAM_RECORD *params, int direction)
{
    if (!GwRecordCodec::isValid(params))
        return 0;
    GwWireWriter writer = request(GwOp::ValidateAddress);
    writer.i32(moduleId).i32(direction);
    GwRecordCodec::writePairs(writer, *params);
    // A truth value: 1 when the gateway accepts the range, 0 otherwise
    // (including when it cannot be asked).
    return simple(writer) == GW_OK ? 1u : 0u;
}

uint32_t GW_PF_ReadData(int moduleId, int addressId, int bufferSize, int *length, char *buffer)
{
    return readAddressBytes(GwOp::ReadData, moduleId, addressId, buffer, bufferSize, length);
}

uint32_t GW_PF_WriteInt(int moduleId, int addressId, int count, const char *values)
{
    return writeValues(GwOp::WriteInt, moduleId, addressId, count, values);
}

uint32_t GW_PF_WriteFloat(int moduleId, int addressId, int count, const char *values)
{
    return writeValues(GwOp::WriteFloat, moduleId, addressId, count, values);
}

uint32_t GW_PF_WriteString(int moduleId, int addressId, const char *text)
{
    if (!text)
        return GW_ERR_INVALID_ARGUMENT;
    GwWireWriter writer = request(GwOp::WriteString);
    writer.i32(moduleId).i32(addressId).bytes(text);
    return simple(writer);
}

uint32_t GW_PF_GetLocalIpList(char *buffer, int size, int *length)
{
    return textQuery(GwOp::GetLocalIpList, buffer, size, length);
}

uint32_t GW_PF_GetSerialList(char *buffer, int size, int *length)
{
    return textQuery(GwOp::GetSerialList, buffer, size, length);
}

uint32_t GW_PF_GetReservedPorts(char *buffer, int size, int *needed)
{
    const uint32_t rc = textQuery(GwOp::GetReservedPorts, buffer, size, needed);
    // The size to allocate includes the terminating NUL.
    if (rc == GW_ERR_BUFFER_TOO_SMALL && needed)
        *needed += 1;
    return rc;
}

} // extern "C"

extern "C" {

uint32_t GW_PLC_WriteAddress(int moduleId, int addressId, const char *data, int length)
{
    if (length < 0 || (length > 0 && !data))
        return GW_ERR_INVALID_ARGUMENT;
    GwWireWriter writer = request(GwOp::PlcWrite);
    writer.i32(moduleId).i32(addressId).bytes(std::string_view(data ? data : "", size_t(length)));
    return simple(writer);
}

uint32_t GW_PLC_ReadAddress(int moduleId, int addressId, char *buffer, int size, int *length)
{
    return readAddressBytes(GwOp::PlcRead, moduleId, addressId, buffer, size, length);
}

} // extern "C"
