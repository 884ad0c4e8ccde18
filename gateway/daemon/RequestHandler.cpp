#include "RequestHandler.h"

#include "GatewayService.h"
#include "GwErrorCodes.h"
#include "GwOp.h"
#include "GwReplyWriter.h"
#include "GwWireReader.h"
#include "GwWireWriter.h"

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

// Which handler answers each operation, by name. A case left out would be
// an operation answered GW_ERR_PROTOCOL; -Werror=switch refuses to build it.
RequestHandler::Handler RequestHandler::handlerFor(GwOp op)
{
    switch (op) {
    case GwOp::Hello: return &RequestHandler::hello;
    case GwOp::GetAllModules: return &RequestHandler::getAllModules;
    case GwOp::AddModule: return &RequestHandler::addModule;
    case GwOp::DeleteModule: return &RequestHandler::deleteModule;
    case GwOp::UpdateModule: return &RequestHandler::updateModule;
    case GwOp::GetModuleParam: return &RequestHandler::getParams;
    case GwOp::SetModuleParam: return &RequestHandler::setParams;
    case GwOp::GetAllParam: return &RequestHandler::getParams; // the same answer, keys or all
    case GwOp::GetAddresses: return &RequestHandler::getAddresses;
    case GwOp::AddAddress: return &RequestHandler::addAddress;
    case GwOp::DeleteAddress: return &RequestHandler::deleteAddress;
    case GwOp::ValidateAddress: return &RequestHandler::validateAddress;
    case GwOp::ReadData: return &RequestHandler::readData;
    case GwOp::WriteInt: return &RequestHandler::writeInt;
    case GwOp::WriteFloat: return &RequestHandler::writeFloat;
    case GwOp::WriteString: return &RequestHandler::writeString;
    case GwOp::GetLocalIpList: return &RequestHandler::localIpList;
    case GwOp::GetSerialList: return &RequestHandler::serialList;
    case GwOp::GetReservedPorts: return &RequestHandler::reservedPorts;
    case GwOp::PlcWrite: return &RequestHandler::plcWrite;
    case GwOp::PlcRead: return &RequestHandler::plcRead;
    }
    return nullptr; // a number this protocol version does not define
}

std::string RequestHandler::handle(uint32_t seq, std::string_view payload)
{
    GwWireReader in(payload);
    const Handler handler = handlerFor(GwOp(in.u16()));
    GwReplyWriter reply(seq);
    uint32_t code = GW_ERR_PROTOCOL;
    if (in.ok() && handler)
        code = (this->*handler)(in, reply.answer());
    if (!in.done())
        code = GW_ERR_PROTOCOL;
    return reply.finish(code);
}

uint32_t RequestHandler::hello(GwWireReader &in, GwWireWriter &out)
{
    if (in.u32() != kGwProtocolVersion)
        return GW_ERR_PROTOCOL;
    out.u32(kGwFeatureDeadlines); // a client that does not know it reads the code only
    return GW_OK;
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
