#pragma once

#include <QByteArray>
#include <cstdint>
#include <string>
#include <string_view>

enum class GwOp : uint16_t;
class GatewayService;
class GwWireReader;
class GwWireWriter;

// Turns one request payload into one reply frame: decodes the operation's
// fields, calls the service and encodes the code and the answer. A payload
// that does not decode exactly is answered GW_ERR_PROTOCOL. Each operation
// has a handler that reads its fields from `in`, writes its answer fields to
// `out` and returns the code; whether the answer goes out with the code is
// the reply's rule (GwReplyWriter), not the handler's.
class RequestHandler
{
public:
    explicit RequestHandler(GatewayService &service) : m_service(service) {}

    std::string handle(uint32_t seq, std::string_view payload);

private:
    using Handler = uint32_t (RequestHandler::*)(GwWireReader &, GwWireWriter &);
    static Handler handlerFor(GwOp op);

    uint32_t hello(GwWireReader &in, GwWireWriter &out);
    uint32_t getAllModules(GwWireReader &in, GwWireWriter &out);
    uint32_t addModule(GwWireReader &in, GwWireWriter &out);
    uint32_t deleteModule(GwWireReader &in, GwWireWriter &out);
    uint32_t updateModule(GwWireReader &in, GwWireWriter &out);
    uint32_t getParams(GwWireReader &in, GwWireWriter &out);
    uint32_t setParams(GwWireReader &in, GwWireWriter &out);
    uint32_t getAddresses(GwWireReader &in, GwWireWriter &out);
    uint32_t addAddress(GwWireReader &in, GwWireWriter &out);
    uint32_t deleteAddress(GwWireReader &in, GwWireWriter &out);
    uint32_t validateAddress(GwWireReader &in, GwWireWriter &out);
    uint32_t readData(GwWireReader &in, GwWireWriter &out);
    uint32_t writeInt(GwWireReader &in, GwWireWriter &out);
    uint32_t writeFloat(GwWireReader &in, GwWireWriter &out);
    uint32_t writeString(GwWireReader &in, GwWireWriter &out);
    uint32_t localIpList(GwWireReader &in, GwWireWriter &out);
    uint32_t serialList(GwWireReader &in, GwWireWriter &out);
    uint32_t reservedPorts(GwWireReader &in, GwWireWriter &out);
    uint32_t plcWrite(GwWireReader &in, GwWireWriter &out);
    uint32_t plcRead(GwWireReader &in, GwWireWriter &out);
    uint32_t writeValues(GwWireReader &in, bool isFloat);

    GatewayService &m_service;
};
