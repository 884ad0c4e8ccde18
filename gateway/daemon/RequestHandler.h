#pragma once

#include <QByteArray>
#include <string>
#include <string_view>

class GatewayService;
class GwWireReader;
class GwWireWriter;

// Turns one request payload into one reply frame: decodes the operation's
// fields, calls the service and encodes the code and the answer. A payload
// that does not decode exactly is answered GW_ERR_PROTOCOL.
class RequestHandler
{
public:
    explicit RequestHandler(GatewayService &service) : m_service(service) {}

    std::string handle(uint32_t seq, std::string_view payload);

private:
    using Handler = uint32_t (RequestHandler::*)(GwWireReader &, GwWireWriter &);
    static Handler handlerFor(uint16_t op);

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
