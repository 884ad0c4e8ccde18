#include "ParamSchema.h"

#include "GwErrorCodes.h"

#include <QHostAddress>
#include <QNetworkInterface>

namespace {
using K = ParamSchema::Kind;
using Key = ParamSchema::Key;

constexpr int kMaxValueBytes = ParamSchema::kMaxValueBytes;
using A = ParamSchema::Access;

const QList<Key> kEndChar{{"EndChar", "\r\n", K::Text, 0, 8}};

// What every stream device shows and does besides its settings. "Status" is
// one of the state names of ChannelStatus, "StatusDetail" free text,
// "Counters" ";"-separated name=value pairs, "Peers" one line per peer of a
// TCP server. "ResetCounters" = "true" zeroes the counters; "DropPeer" =
// "a.b.c.d:port" disconnects that peer of a TCP server.
const QList<Key> kStatus{{"Status", "", K::Text, 0, 0, {}, A::ReadOnly},
                         {"StatusDetail", "", K::Text, 0, 0, {}, A::ReadOnly},
                         {"Counters", "", K::Text, 0, 0, {}, A::ReadOnly},
                         {"Peers", "", K::Text, 0, 0, {}, A::ReadOnly},
                         {"ResetCounters", "false", K::Bool, 0, 0, {}, A::Action}};
const QList<Key> kDropPeer{{"DropPeer", "", K::Text, 0, 21, {}, A::Action}}; // "255.255.255.255:65535"

QList<Key> tcpClientKeys()
{
    return QList<Key>{{"TargetIP", "127.0.0.1", K::Ip},
                      {"TargetPort", "8000", K::Port, 1, 65535},
                      {"ReconnectInterval", "3000", K::Integer, 100, 600000},
                      {"AutoReconnect", "true", K::Bool}}
        + kEndChar + kStatus;
}

QList<Key> fieldbusCommon(const QByteArray &readDefault, const QByteArray &writeDefault)
{
    return {{"LocalIP", "0.0.0.0", K::LocalIp},
            {"Heartbeat", "1000", K::Integer, 100, 60000},
            {"ReadAddressConstraints", readDefault, K::Constraints, 0, 0},
            {"WriteAddressConstraints", writeDefault, K::Constraints, 0, 0}};
}

const QMap<QByteArray, ParamSchema> &moduleSchemas()
{
    static const QMap<QByteArray, ParamSchema> schemas{
        {"TcpClientModule", ParamSchema(tcpClientKeys())},
        {"InsightModule", ParamSchema(tcpClientKeys())},
        {"TcpServerModule",
         ParamSchema(QList<Key>{{"LocalIP", "0.0.0.0", K::LocalIp},
                                {"LocalPort", "8000", K::Port, 1, 65535},
                                {"MaxConnections", "8", K::Integer, 1, 64}}
                     + kEndChar + kStatus + kDropPeer)},
        {"UdpModule",
         ParamSchema(QList<Key>{{"LocalIP", "0.0.0.0", K::LocalIp},
                                {"LocalPort", "8001", K::Port, 1, 65535},
                                {"TargetIP", "127.0.0.1", K::Ip},
                                {"TargetPort", "8002", K::Port, 1, 65535}}
                     + kEndChar + kStatus)},
        {"SerialModule",
         ParamSchema(QList<Key>{{"PortName", "", K::Text, 0, 255},
                                {"BaudRate", "9600", K::Integer, 50, 4000000},
                                {"DataBits", "8", K::Choice, 0, 0, {5, 6, 7, 8}},
                                // QSerialPort's codes: None, Even, Odd, Space, Mark
                                {"Parity", "0", K::Choice, 0, 0, {0, 2, 3, 4, 5}},
                                // One, Two, OneAndHalf
                                {"StopBits", "1", K::Choice, 0, 0, {1, 2, 3}},
                                // None, Hardware, Software
                                {"FlowControl", "0", K::Choice, 0, 0, {0, 1, 2}}}
                     + kEndChar + kStatus)},
        {"ProfinetModule",
         ParamSchema(QList<Key>{{"StationName", "lumora-vision", K::Text, 0, 240}}
                     + fieldbusCommon("ReadAddress;0;1439;0", "WriteAddress;0;1439;0"))},
        {"EipModule",
         ParamSchema(QList<Key>{{"InputAssembly", "100", K::Integer, 1, 65535},
                                {"OutputAssembly", "150", K::Integer, 1, 65535}}
                     // The PLC's output assembly (O->T) is what the vision side reads.
                     + fieldbusCommon("OutputAssembly;0;495;0", "InputAssembly;0;495;0"))},
    };
    return schemas;
}

// The most elements of one address: 256 of the widest (32-bit) fill the
// 1024 bytes that one GW_PF_ReadData of the vision side takes.
constexpr int kMaxAddressElements = 256;

QList<Key> addressKeys(int maxIntType)
{
    return {{"IntDataType", "1", K::Integer, 1, maxIntType},
            {"SoftElementAddress", "0", K::Integer, 0, 65535},
            {"SoftElementNum", "1", K::Integer, 1, kMaxAddressElements},
            {"OverTime", "1000", K::Integer, 0, 600000},
            {"PollEnable", "true", K::Bool},
            {"Upload", "false", K::Bool},
            {"AddressName", "", K::Text, 0, 511}};
}

bool parseInt(const QByteArray &text, int *out)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    if (ok && out)
        *out = value;
    return ok;
}

bool isCanonicalIpv4(const QByteArray &text)
{
    QHostAddress address;
    return address.setAddress(QString::fromLatin1(text)) && address.protocol() == QAbstractSocket::IPv4Protocol
        && address.toString().toLatin1() == text;
}

bool isAddressOfThisHost(const QByteArray &text)
{
    if (text == "0.0.0.0")
        return true;
    const QHostAddress wanted(QString::fromLatin1(text));
    const QList<QHostAddress> all = QNetworkInterface::allAddresses();
    return all.contains(wanted);
}

quint32 checkValue(const Key &key, const QByteArray &value)
{
    int number = 0;
    switch (key.kind) {
    case K::Integer:
        return parseInt(value, &number) && number >= key.min && number <= key.max ? GW_OK : GW_ERR_INVALID_VALUE;
    case K::Port:
        if (!parseInt(value, &number))
            return GW_ERR_INVALID_VALUE;
        return number >= 1 && number <= 65535 ? GW_OK : GW_ERR_INVALID_PORT;
    case K::Ip:
        return isCanonicalIpv4(value) ? GW_OK : GW_ERR_INVALID_IP;
    case K::LocalIp:
        if (!isCanonicalIpv4(value))
            return GW_ERR_INVALID_IP;
        return isAddressOfThisHost(value) ? GW_OK : GW_ERR_INVALID_VALUE;
    case K::Bool:
        return value == "true" || value == "false" || value == "True" || value == "False" ? GW_OK
                                                                                          : GW_ERR_INVALID_VALUE;
    case K::Text:
        return value.size() <= key.max ? GW_OK : GW_ERR_VALUE_TOO_LONG;
    case K::Choice:
        return parseInt(value, &number) && key.choices.contains(number) ? GW_OK : GW_ERR_INVALID_VALUE;
    case K::Constraints:
        return ParamSchema::parseConstraints(value, nullptr, nullptr, nullptr) ? GW_OK : GW_ERR_INVALID_VALUE;
    }
    return GW_ERR_INVALID_VALUE;
}
} // namespace

const ParamSchema *ParamSchema::forModuleType(const QByteArray &type)
{
    const auto &schemas = moduleSchemas();
    const auto it = schemas.find(type);
    return it == schemas.end() ? nullptr : &it.value();
}

const ParamSchema *ParamSchema::forAddressOf(const QByteArray &type)
{
    static const ParamSchema profinet(addressKeys(3)); // 16-, 32- and 8-bit elements
    static const ParamSchema eip(addressKeys(2));      // 16- and 32-bit elements
    if (type == "ProfinetModule")
        return &profinet;
    if (type == "EipModule")
        return &eip;
    return nullptr;
}

const ParamSchema::Key *ParamSchema::find(const QByteArray &name) const
{
    for (const Key &key : m_keys)
        if (key.name == name)
            return &key;
    return nullptr;
}

quint32 ParamSchema::validate(const QByteArray &name, const QByteArray &value) const
{
    const Key *key = find(name);
    if (!key)
        return GW_ERR_UNKNOWN_KEY;
    if (key->access == Access::ReadOnly)
        return GW_ERR_NOT_SUPPORTED;
    if (value.size() > kMaxValueBytes)
        return GW_ERR_VALUE_TOO_LONG;
    return checkValue(*key, value);
}

QMap<QByteArray, QByteArray> ParamSchema::defaults() const
{
    QMap<QByteArray, QByteArray> values;
    for (const Key &key : m_keys)
        if (key.access == Access::Stored)
            values.insert(key.name, key.defaultValue);
    return values;
}

ParamSchema::Access ParamSchema::access(const QByteArray &name) const
{
    const Key *key = find(name);
    return key ? key->access : Access::Stored;
}

bool ParamSchema::parseConstraints(const QByteArray &text, int *min, int *max, int *first)
{
    QList<QByteArray> parts;
    for (const QByteArray &part : text.split(';'))
        if (!part.isEmpty())
            parts.append(part);
    int lo = 0, hi = 0, def = 0;
    if (parts.size() != 4 || !parseInt(parts[1], &lo) || !parseInt(parts[2], &hi) || !parseInt(parts[3], &def)
        || lo > hi || def < lo || def > hi)
        return false;
    if (min)
        *min = lo;
    if (max)
        *max = hi;
    if (first)
        *first = def;
    return true;
}

quint32 ParamSchema::checkAddressRange(const QByteArray &constraints, int unitsPerElement,
                                       const QMap<QByteArray, QByteArray> &address)
{
    int min = 0, max = 0;
    if (!parseConstraints(constraints, &min, &max, nullptr))
        return GW_ERR_INVALID_VALUE;
    const bool hasFirst = address.contains("SoftElementAddress");
    const bool hasCount = address.contains("SoftElementNum");
    int first = min, count = 1;
    if ((hasFirst && !parseInt(address.value("SoftElementAddress"), &first))
        || (hasCount && (!parseInt(address.value("SoftElementNum"), &count) || count < 1
                         || count > kMaxAddressElements)))
        return GW_ERR_INVALID_VALUE;
    if (first < min || first > max)
        return GW_ERR_ADDRESS_RANGE;
    // Without a first address the length must fit the area anywhere.
    const qint64 start = hasFirst ? first : min;
    return start + qint64(count) * unitsPerElement - 1 <= max ? GW_OK : GW_ERR_ADDRESS_RANGE;
}
