#include "RequestHandler.h"

#include "GatewayService.h"
#include "GwErrorCodes.h"
#include "GwFrame.h"
#include "GwOp.h"
#include "GwWireReader.h"
#include "GwWireWriter.h"

#include <cstring>

namespace {
QByteArray toBytes(std::string_view view)
{
    return QByteArray(view.data(), int(view.size()));
}

std::string_view view(const QByteArray &bytes)
{
    return std::string_view(bytes.constData(), size_t(bytes.size()));
}

// u32 count, then `count` fields read by `one`; false when the count is
// larger than the payload could possibly hold.
template<typename Fn>
bool readList(GwWireReader &in, Fn &&one)
{
    const uint32_t count = in.u32();
    if (!in.ok() || count > kGwMaxPayload / 4)
        return false;
    for (uint32_t i = 0; i < count && in.ok(); ++i)
        one();
    return in.ok();
}

void writePairs(GwWireWriter &out, const QList<QPair<QByteArray, QByteArray>> &pairs)
{
    out.u32(uint32_t(pairs.size()));
    for (const auto &pair : pairs)
        out.bytes(view(pair.first)).bytes(view(pair.second));
}

QList<QPair<QByteArray, QByteArray>> readPairs(GwWireReader &in)
{
    QList<QPair<QByteArray, QByteArray>> pairs;
    readList(in, [&] {
        const QByteArray key = toBytes(in.bytes());
        const QByteArray value = toBytes(in.bytes());
        pairs.append({key, value});
    });
    return pairs;
}
} // namespace

RequestHandler::Handler RequestHandler::handlerFor(uint16_t op)
{
    static const Handler table[] = {
        nullptr,
        &RequestHandler::hello,
        &RequestHandler::getAllModules,
        &RequestHandler::addModule,
        &RequestHandler::deleteModule,
        &RequestHandler::updateModule,
        &RequestHandler::getParams,
        &RequestHandler::setParams,
        &RequestHandler::getParams, // GetAllParam: the same answer, keys or all
        &RequestHandler::getAddresses,
        &RequestHandler::addAddress,
        &RequestHandler::deleteAddress,
        &RequestHandler::validateAddress,
        &RequestHandler::readData,
        &RequestHandler::writeInt,
        &RequestHandler::writeFloat,
        &RequestHandler::writeString,
        &RequestHandler::localIpList,
        &RequestHandler::serialList,
        &RequestHandler::reservedPorts,
        &RequestHandler::plcWrite,
        &RequestHandler::plcRead,
    };
    static_assert(sizeof(table) / sizeof(table[0]) == kGwOpLast + 1, "one handler per operation");
    return op <= kGwOpLast ? table[op] : nullptr;
}

std::string RequestHandler::handle(uint32_t seq, std::string_view payload)
{
    GwWireReader in(payload);
    const uint16_t op = in.u16();
    const Handler handler = in.ok() ? handlerFor(op) : nullptr;
    GwWireWriter answer(GwFrameKind::Reply, seq);
    uint32_t code = GW_ERR_PROTOCOL;
    if (handler)
        code = (this->*handler)(in, answer);
    if (code == GW_ERR_PROTOCOL || !in.done()) {
        GwWireWriter refused(GwFrameKind::Reply, seq);
        refused.u32(GW_ERR_PROTOCOL);
        return refused.finish();
    }
    // The code goes first: rebuild with it in front of the answer fields.
    GwWireWriter reply(GwFrameKind::Reply, seq);
    reply.u32(code);
    std::string frame = reply.finish();
    std::string fields = answer.finish();
    if (code == GW_OK || code == GW_ERR_PENDING_REOPEN)
        frame.append(fields, kGwHeaderSize, std::string::npos);
    const uint32_t length = uint32_t(frame.size() - kGwHeaderSize);
    std::memcpy(&frame[8], &length, sizeof(length));
    return frame;
}

uint32_t RequestHandler::hello(GwWireReader &in, GwWireWriter &)
{
    return in.u32() == kGwProtocolVersion ? GW_OK : GW_ERR_PROTOCOL;
}

uint32_t RequestHandler::getAllModules(GwWireReader &in, GwWireWriter &out)
{
    const uint32_t capacity = in.u32();
    if (!in.done())
        return GW_ERR_PROTOCOL;
    const QList<ModuleSummary> list = m_service.modules(int(qMin<uint32_t>(capacity, 1u << 20)));
    out.u32(uint32_t(list.size()));
    for (const ModuleSummary &m : list)
        out.i32(m.id).i32(m.state ? 1 : 0).bytes(view(m.type)).bytes(view(m.name));
    return GW_OK;
}

uint32_t RequestHandler::addModule(GwWireReader &in, GwWireWriter &out)
{
    const QByteArray type = toBytes(in.bytes());
    const QByteArray name = toBytes(in.bytes());
    if (!in.done())
        return GW_ERR_PROTOCOL;
    int id = 0;
    const uint32_t rc = m_service.addModule(type, name, &id);
    out.i32(id);
    return rc;
}

uint32_t RequestHandler::deleteModule(GwWireReader &in, GwWireWriter &)
{
    const int32_t id = in.i32();
    return in.done() ? m_service.deleteModule(id) : GW_ERR_PROTOCOL;
}

uint32_t RequestHandler::updateModule(GwWireReader &in, GwWireWriter &)
{
    const int32_t id = in.i32();
    const QByteArray name = toBytes(in.bytes());
    return in.done() ? m_service.renameModule(id, name) : GW_ERR_PROTOCOL;
}

uint32_t RequestHandler::getParams(GwWireReader &in, GwWireWriter &out)
{
    const int32_t id = in.i32();
    const int32_t address = in.i32();
    QList<QByteArray> keys;
    if (!readList(in, [&] { keys.append(toBytes(in.bytes())); }) || !in.done())
        return GW_ERR_PROTOCOL;
    QList<QPair<QByteArray, QByteArray>> pairs;
    const uint32_t rc = m_service.params(id, address, keys, &pairs);
    writePairs(out, pairs);
    return rc;
}

uint32_t RequestHandler::setParams(GwWireReader &in, GwWireWriter &)
{
    const int32_t id = in.i32();
    const int32_t address = in.i32();
    const auto pairs = readPairs(in);
    return in.done() ? m_service.setParams(id, address, pairs) : GW_ERR_PROTOCOL;
}

uint32_t RequestHandler::getAddresses(GwWireReader &in, GwWireWriter &out)
{
    const int32_t id = in.i32();
    const uint32_t capacity = in.u32();
    if (!in.done())
        return GW_ERR_PROTOCOL;
    QList<StoredAddress> list;
    const uint32_t rc = m_service.addresses(id, int(qMin<uint32_t>(capacity, 1u << 20)), &list);
    out.u32(uint32_t(list.size()));
    for (const StoredAddress &a : list)
        out.i32(a.id).bytes(view(a.name));
    return rc;
}

uint32_t RequestHandler::addAddress(GwWireReader &in, GwWireWriter &out)
{
    const int32_t id = in.i32();
    const QByteArray name = toBytes(in.bytes());
    const int32_t direction = in.i32();
    if (!in.done())
        return GW_ERR_PROTOCOL;
    int address = -1;
    const uint32_t rc = m_service.addAddress(id, name, direction, &address);
    out.i32(address);
    return rc;
}

uint32_t RequestHandler::deleteAddress(GwWireReader &in, GwWireWriter &)
{
    const int32_t id = in.i32();
    const int32_t address = in.i32();
    return in.done() ? m_service.deleteAddress(id, address) : GW_ERR_PROTOCOL;
}

uint32_t RequestHandler::validateAddress(GwWireReader &in, GwWireWriter &)
{
    const int32_t id = in.i32();
    const int32_t direction = in.i32();
    const auto pairs = readPairs(in);
    if (!in.done())
        return GW_ERR_PROTOCOL;
    ParamMap params;
    for (const auto &pair : pairs)
        params.insert(pair.first, pair.second);
    return m_service.validateAddress(id, direction, params);
}

uint32_t RequestHandler::readData(GwWireReader &in, GwWireWriter &out)
{
    const int32_t id = in.i32();
    const int32_t address = in.i32();
    if (!in.done())
        return GW_ERR_PROTOCOL;
    QByteArray data;
    const uint32_t rc = m_service.readData(id, address, &data);
    out.bytes(view(data));
    return rc;
}

uint32_t RequestHandler::writeValues(GwWireReader &in, bool isFloat)
{
    const int32_t id = in.i32();
    const int32_t address = in.i32();
    const int32_t count = in.i32();
    const QByteArray text = toBytes(in.bytes());
    return in.done() ? m_service.writeValues(id, address, count, text, isFloat) : GW_ERR_PROTOCOL;
}

uint32_t RequestHandler::writeInt(GwWireReader &in, GwWireWriter &)
{
    return writeValues(in, false);
}

uint32_t RequestHandler::writeFloat(GwWireReader &in, GwWireWriter &)
{
    return writeValues(in, true);
}

uint32_t RequestHandler::writeString(GwWireReader &in, GwWireWriter &)
{
    const int32_t id = in.i32();
    const int32_t address = in.i32();
    const QByteArray text = toBytes(in.bytes());
    return in.done() ? m_service.writeString(id, address, text) : GW_ERR_PROTOCOL;
}

uint32_t RequestHandler::localIpList(GwWireReader &in, GwWireWriter &out)
{
    out.bytes(view(m_service.localIpList()));
    return in.done() ? GW_OK : GW_ERR_PROTOCOL;
}

uint32_t RequestHandler::serialList(GwWireReader &in, GwWireWriter &out)
{
    out.bytes(view(m_service.serialList()));
    return in.done() ? GW_OK : GW_ERR_PROTOCOL;
}

uint32_t RequestHandler::reservedPorts(GwWireReader &in, GwWireWriter &out)
{
    out.bytes(view(m_service.reservedPorts()));
    return in.done() ? GW_OK : GW_ERR_PROTOCOL;
}

uint32_t RequestHandler::plcWrite(GwWireReader &in, GwWireWriter &)
{
    const int32_t id = in.i32();
    const int32_t address = in.i32();
    const QByteArray data = toBytes(in.bytes());
    return in.done() ? m_service.plcWrite(id, address, data) : GW_ERR_PROTOCOL;
}

uint32_t RequestHandler::plcRead(GwWireReader &in, GwWireWriter &out)
{
    const int32_t id = in.i32();
    const int32_t address = in.i32();
    if (!in.done())
        return GW_ERR_PROTOCOL;
    QByteArray data;
    const uint32_t rc = m_service.plcRead(id, address, &data);
    out.bytes(view(data));
    return rc;
}
