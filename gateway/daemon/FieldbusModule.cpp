#include "FieldbusModule.h"

#include "GwErrorCodes.h"
#include "GwPlatform.h"
#include "GwPlcSide.h"

namespace {
// The vision side lists a module's addresses in one call of 999 entries;
// more would leave some out of its tables.
constexpr int kMaxAddresses = 999;
// PROFINET's fixed addresses: 32 16-bit elements each.
constexpr int kFixedReadId = GW_PLC_FIXED_READ_ID;
constexpr int kFixedWriteId = GW_PLC_FIXED_WRITE_ID;
constexpr char kFixedElements[] = "32";
// The heartbeat bit of the fixed write address: bit 7 of its first byte, key
// "0.7" of ProfinetModuleFixedAddressParam.xml.
constexpr int kHeartbeatByte = 0;
constexpr char kHeartbeatMask = char(0x80);
// The one setting of a fixed address that can be changed.
constexpr char kPollEnable[] = "PollEnable";

bool isTrue(const QByteArray &text)
{
    return text.compare("true", Qt::CaseInsensitive) == 0;
}

int widthOf(const ParamMap &params)
{
    return FieldbusCodec::widthOf(params.value("IntDataType").toInt());
}
} // namespace

FieldbusModule::IdRange FieldbusModule::idRange(int direction)
{
    return direction == GW_ADDRESS_READ ? IdRange{GW_PLC_READ_ID_FIRST, GW_PLC_READ_ID_LAST}
                                        : IdRange{GW_PLC_WRITE_ID_FIRST, GW_PLC_WRITE_ID_LAST};
}

FieldbusModule::FieldbusModule(const StoredModule &stored, const ParamSchema &schema, QObject *parent)
    : GatewayModule(stored, schema, parent), m_addressSchema(*ParamSchema::forAddressOf(stored.type)),
      m_unitsPerElement(stored.type == "ProfinetModule" ? 1 : 2),
      m_byteOrder(FieldbusCodec::byteOrderOf(std::string_view(stored.type.constData(), size_t(stored.type.size())))),
      m_hasFixedAddresses(stored.type == "ProfinetModule")
{
    if (m_hasFixedAddresses) {
        addFixedAddress(kFixedReadId, GW_ADDRESS_READ, "FixedReadAddress");
        addFixedAddress(kFixedWriteId, GW_ADDRESS_WRITE, "FixedWriteAddress");
        for (int id : {kFixedReadId, kFixedWriteId}) {
            const ParamMap saved = stored.builtInAddressParams.value(id);
            if (saved.contains(kPollEnable))
                find(id)->stored.params.insert(kPollEnable, saved.value(kPollEnable));
        }
    }
    m_heartbeat.setTimerType(Qt::PreciseTimer);
    connect(&m_heartbeat, &QTimer::timeout, this, &FieldbusModule::toggleHeartbeat);
    for (const StoredAddress &storedAddress : stored.addresses) {
        Address address{storedAddress, {}, false};
        ParamMap params = m_addressSchema.defaults();
        for (auto it = storedAddress.params.cbegin(); it != storedAddress.params.cend(); ++it)
            params.insert(it.key(), it.value());
        address.stored.params = params;
        resizeData(address);
        m_addresses.insert(address.stored.id, address);
    }
}

// A new address with the schema's defaults, named, holding `extra`, and
// entered into the module; the stored part is returned.
StoredAddress FieldbusModule::insertAddress(int id, int direction, const QByteArray &name, const ParamMap &extra,
                                            bool fixed)
{
    Address address;
    address.stored.id = id;
    address.stored.direction = direction;
    address.stored.name = name;
    address.stored.params = m_addressSchema.defaults();
    address.stored.params.insert("AddressName", name);
    for (auto it = extra.cbegin(); it != extra.cend(); ++it)
        address.stored.params.insert(it.key(), it.value());
    address.fixed = fixed;
    resizeData(address);
    m_addresses.insert(id, address);
    return address.stored;
}

void FieldbusModule::addFixedAddress(int id, int direction, const QByteArray &name)
{
    insertAddress(id, direction, name, {{"SoftElementNum", kFixedElements}}, true);
}

void FieldbusModule::resizeData(Address &address)
{
    const int size = address.stored.params.value("SoftElementNum").toInt() * widthOf(address.stored.params);
    // New bytes read as zero; a shrunk address keeps its first bytes.
    address.data = address.data.leftJustified(qMax(size, 0), '\0', true);
}

FieldbusModule::Address *FieldbusModule::find(int addressId)
{
    auto it = m_addresses.find(addressId);
    return it == m_addresses.end() ? nullptr : &it.value();
}

const FieldbusModule::Address *FieldbusModule::find(int addressId) const
{
    auto it = m_addresses.constFind(addressId);
    return it == m_addresses.cend() ? nullptr : &it.value();
}

QByteArray FieldbusModule::constraintsOf(int direction) const
{
    if (direction == GW_ADDRESS_READ)
        return values().value("ReadAddressConstraints");
    if (direction == GW_ADDRESS_WRITE)
        return values().value("WriteAddressConstraints");
    return {};
}

FieldbusCodec FieldbusModule::codecOf(const Address &address) const
{
    return FieldbusCodec(widthOf(address.stored.params), m_byteOrder);
}

quint32 FieldbusModule::param(int addressId, const QByteArray &key, QByteArray *value) const
{
    if (addressId == -1)
        return GatewayModule::param(addressId, key, value);
    const Address *address = find(addressId);
    if (!address)
        return GW_ERR_UNKNOWN_ADDRESS;
    const auto it = address->stored.params.constFind(key);
    if (it == address->stored.params.cend())
        return GW_ERR_UNKNOWN_KEY;
    *value = it.value();
    return GW_OK;
}

quint32 FieldbusModule::allParams(int addressId, ParamMap *values) const
{
    if (addressId == -1)
        return GatewayModule::allParams(addressId, values);
    const Address *address = find(addressId);
    if (!address)
        return GW_ERR_UNKNOWN_ADDRESS;
    *values = address->stored.params;
    return GW_OK;
}

// Each key by its rule, then the address as it would be afterwards inside
// its direction's area: the gateway never holds an address outside it.
quint32 FieldbusModule::checkParams(int addressId, const ParamMap &changes) const
{
    if (addressId == -1)
        return GatewayModule::checkParams(addressId, changes);
    const Address *address = find(addressId);
    if (!address)
        return GW_ERR_UNKNOWN_ADDRESS;
    for (auto it = changes.cbegin(); it != changes.cend(); ++it) {
        if (address->fixed && it.key() != kPollEnable)
            return GW_ERR_NOT_SUPPORTED;
        if (const quint32 rc = m_addressSchema.validate(it.key(), it.value()))
            return rc;
    }
    if (!changes.contains("SoftElementAddress") && !changes.contains("SoftElementNum"))
        return GW_OK;
    ParamMap after = address->stored.params;
    for (auto it = changes.cbegin(); it != changes.cend(); ++it)
        after.insert(it.key(), it.value());
    return ParamSchema::checkAddressRange(constraintsOf(address->stored.direction), m_unitsPerElement,
                                          {{"SoftElementAddress", after.value("SoftElementAddress")},
                                           {"SoftElementNum", after.value("SoftElementNum")}});
}

// The heartbeat interval of a device with fixed addresses takes effect at
// once; every other integer setting of an open device waits for a reopen.
quint32 FieldbusModule::applyParams(int addressId, const ParamMap &changes)
{
    if (addressId == -1) {
        if (!m_hasFixedAddresses || !changes.contains("Heartbeat"))
            return GatewayModule::applyParams(addressId, changes);
        ParamMap others = changes;
        GatewayModule::applyParams(addressId, {{"Heartbeat", others.take("Heartbeat")}});
        const quint32 rc = others.isEmpty() ? GW_OK : GatewayModule::applyParams(addressId, others);
        updateHeartbeat();
        return rc;
    }
    Address *address = find(addressId);
    if (!address)
        return GW_ERR_UNKNOWN_ADDRESS;
    for (auto it = changes.cbegin(); it != changes.cend(); ++it)
        address->stored.params.insert(it.key(), it.value());
    if (changes.contains("AddressName"))
        address->stored.name = changes.value("AddressName");
    resizeData(*address);
    if (address->fixed)
        updateHeartbeat();
    return GW_OK;
}

quint32 FieldbusModule::setOpen(bool open)
{
    if (open == m_open)
        return GW_OK;
    m_open = open;
    updateHeartbeat();
    emit eventRaised(open ? GW_EVENT_CONNECTED : GW_EVENT_DISCONNECTED, id());
    return GW_OK;
}

bool FieldbusModule::pollEnabled(int addressId) const
{
    const Address *address = find(addressId);
    return address && isTrue(address->stored.params.value(kPollEnable));
}

// Runs the heartbeat while the device is open and its fixed write address
// polls, at the current "Heartbeat" interval; a running timer keeps its
// phase unless the interval changed.
void FieldbusModule::updateHeartbeat()
{
    const int interval = values().value("Heartbeat").toInt();
    if (!m_hasFixedAddresses || !m_open || !pollEnabled(kFixedWriteId) || interval <= 0) {
        m_heartbeat.stop();
        return;
    }
    if (!m_heartbeat.isActive() || m_heartbeat.interval() != interval)
        m_heartbeat.start(interval);
}

void FieldbusModule::toggleHeartbeat()
{
    m_heartbeatHigh = !m_heartbeatHigh;
    if (Address *address = find(kFixedWriteId))
        applyHeartbeatBit(*address);
}

// The heartbeat bit belongs to the gateway: a write of the vision side to
// the fixed write address does not change it.
void FieldbusModule::applyHeartbeatBit(Address &address) const
{
    if (address.data.size() <= kHeartbeatByte)
        return;
    const char byte = address.data.at(kHeartbeatByte);
    address.data[kHeartbeatByte] = m_heartbeatHigh ? char(byte | kHeartbeatMask) : char(byte & ~kHeartbeatMask);
}

QList<StoredAddress> FieldbusModule::addresses() const
{
    QList<StoredAddress> list;
    for (const Address &address : m_addresses)
        if (!address.fixed)
            list.append(address.stored);
    return list;
}

quint32 FieldbusModule::addAddress(const QByteArray &name, int direction, StoredAddress *added)
{
    if (direction != GW_ADDRESS_READ && direction != GW_ADDRESS_WRITE)
        return GW_ERR_INVALID_ARGUMENT;
    if (name.size() >= GW_ADDRESS_NAME_SIZE)
        return GW_ERR_VALUE_TOO_LONG;
    if (addresses().size() >= kMaxAddresses)
        return GW_ERR_ADDRESS_RANGE;
    const IdRange range = idRange(direction);
    int id = range.low;
    while (id <= range.high && m_addresses.contains(id))
        ++id;
    if (id > range.high)
        return GW_ERR_ADDRESS_RANGE;
    int first = 0;
    ParamSchema::parseConstraints(constraintsOf(direction), nullptr, nullptr, &first);
    *added = insertAddress(id, direction, name, {{"SoftElementAddress", QByteArray::number(first)}}, false);
    return GW_OK;
}

quint32 FieldbusModule::deleteAddress(int addressId)
{
    const Address *address = find(addressId);
    if (!address)
        return GW_ERR_UNKNOWN_ADDRESS;
    if (address->fixed)
        return GW_ERR_NOT_SUPPORTED;
    m_addresses.remove(addressId);
    return GW_OK;
}

quint32 FieldbusModule::validateAddress(int direction, const ParamMap &params) const
{
    const QByteArray constraints = constraintsOf(direction);
    return constraints.isEmpty() ? GW_ERR_INVALID_ARGUMENT
                                 : ParamSchema::checkAddressRange(constraints, m_unitsPerElement, params);
}

quint32 FieldbusModule::readData(int addressId, QByteArray *data) const
{
    const Address *address = find(addressId);
    if (!address)
        return GW_ERR_UNKNOWN_ADDRESS;
    *data = address->data;
    return GW_OK;
}

// The vision side writes write addresses and the PLC read addresses, each
// only while the device is open (a closed device has no PLC connection).
quint32 FieldbusModule::writableAddress(int addressId, int direction, Address **found)
{
    Address *address = find(addressId);
    if (!address)
        return addressId == -1 ? GW_ERR_NOT_SUPPORTED : GW_ERR_UNKNOWN_ADDRESS;
    if (address->stored.direction != direction)
        return GW_ERR_WRONG_DIRECTION;
    if (!m_open)
        return GW_ERR_NOT_OPEN;
    *found = address;
    return GW_OK;
}

// A write replaces the whole content of the address, as a cyclic fieldbus
// frame does: what the bytes do not cover reads zero afterwards.
quint32 FieldbusModule::replaceData(Address &address, const QByteArray &bytes)
{
    if (bytes.size() > address.data.size())
        return GW_ERR_VALUE_TOO_LONG;
    address.data = bytes.leftJustified(address.data.size(), '\0');
    return GW_OK;
}

quint32 FieldbusModule::writeString(int addressId, const QByteArray &text)
{
    Address *address = nullptr;
    if (const quint32 rc = writableAddress(addressId, GW_ADDRESS_WRITE, &address))
        return rc;
    return replaceWritten(*address, text);
}

quint32 FieldbusModule::writeValues(int addressId, int count, const QByteArray &text, bool isFloat)
{
    Address *address = nullptr;
    if (const quint32 rc = writableAddress(addressId, GW_ADDRESS_WRITE, &address))
        return rc;
    std::string bytes;
    int values = 0;
    const quint32 rc = codecOf(*address).encode(std::string_view(text.constData(), size_t(text.size())), ';',
                                                 isFloat, &bytes, &values);
    if (values != count)
        return GW_ERR_COUNT_MISMATCH;
    if (rc != GW_OK)
        return rc;
    return replaceWritten(*address, QByteArray(bytes.data(), int(bytes.size())));
}

quint32 FieldbusModule::replaceWritten(Address &address, const QByteArray &bytes)
{
    const quint32 rc = replaceData(address, bytes);
    if (rc == GW_OK && address.fixed)
        applyHeartbeatBit(address);
    return rc;
}

quint32 FieldbusModule::plcWrite(int addressId, const QByteArray &data)
{
    Address *address = nullptr;
    if (const quint32 rc = writableAddress(addressId, GW_ADDRESS_READ, &address))
        return rc;
    if (const quint32 rc = replaceData(*address, data))
        return rc;
    // The fixed read address has no "Upload" of its own: its "PollEnable"
    // decides.
    if (isTrue(address->stored.params.value(address->fixed ? kPollEnable : "Upload")))
        emit resultsReady(id(), addressId, {address->data});
    return GW_OK;
}

quint32 FieldbusModule::plcRead(int addressId, QByteArray *data) const
{
    return readData(addressId, data);
}
