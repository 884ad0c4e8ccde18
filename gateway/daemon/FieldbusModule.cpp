#include "FieldbusModule.h"

#include "GwErrorCodes.h"
#include "GwPlatform.h"

#include <QtEndian>
#include <cstring>
#include <limits>

namespace {
constexpr int kReadLow = 1;
constexpr int kReadHigh = 999;
constexpr int kWriteLow = 1001;
constexpr int kWriteHigh = 1999;
// PROFINET's fixed addresses: 32 16-bit elements each.
constexpr int kFixedReadId = 0;
constexpr int kFixedWriteId = 1000;
constexpr char kFixedElements[] = "32";

int elementWidth(const QByteArray &intDataType)
{
    switch (intDataType.toInt()) {
    case 2: return 4;
    case 3: return 1;
    default: return 2;
    }
}

bool isTrue(const QByteArray &text)
{
    return text.compare("true", Qt::CaseInsensitive) == 0;
}

// "1;2;3;" -> the values; empty parts (the terminator) are skipped.
QList<QByteArray> valueTexts(const QByteArray &text)
{
    QList<QByteArray> values;
    for (const QByteArray &part : text.split(';')) {
        const QByteArray trimmed = part.trimmed();
        if (!trimmed.isEmpty())
            values.append(trimmed);
    }
    return values;
}

bool appendInt(QByteArray &out, const QByteArray &text, int width)
{
    bool ok = false;
    const qlonglong value = text.toLongLong(&ok);
    const qlonglong low = -(qlonglong(1) << (width * 8 - 1));
    const qlonglong high = (qlonglong(1) << (width * 8)) - 1;
    if (!ok || value < low || value > high)
        return false;
    char bytes[8];
    qToLittleEndian<qint64>(value, bytes);
    out.append(bytes, width);
    return true;
}

bool appendFloat(QByteArray &out, const QByteArray &text)
{
    bool ok = false;
    const float value = text.toFloat(&ok);
    if (!ok)
        return false;
    char bytes[4];
    qToLittleEndian<float>(value, bytes);
    out.append(bytes, 4);
    return true;
}
} // namespace

FieldbusModule::FieldbusModule(const StoredModule &stored, const ParamSchema &schema, QObject *parent)
    : GatewayModule(stored, schema, parent), m_addressSchema(*ParamSchema::forAddressOf(stored.type))
{
    if (stored.type == "ProfinetModule") {
        addFixedAddress(kFixedReadId, GW_ADDRESS_READ, "FixedReadAddress");
        addFixedAddress(kFixedWriteId, GW_ADDRESS_WRITE, "FixedWriteAddress");
    }
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
    const int size = address.stored.params.value("SoftElementNum").toInt()
        * elementWidth(address.stored.params.value("IntDataType"));
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

quint32 FieldbusModule::checkParams(int addressId, const ParamMap &changes) const
{
    if (addressId == -1)
        return GatewayModule::checkParams(addressId, changes);
    const Address *address = find(addressId);
    if (!address)
        return GW_ERR_UNKNOWN_ADDRESS;
    if (address->fixed)
        return GW_ERR_NOT_SUPPORTED;
    for (auto it = changes.cbegin(); it != changes.cend(); ++it)
        if (const quint32 rc = m_addressSchema.validate(it.key(), it.value()))
            return rc;
    return GW_OK;
}

quint32 FieldbusModule::applyParams(int addressId, const ParamMap &changes)
{
    if (addressId == -1)
        return GatewayModule::applyParams(addressId, changes);
    Address *address = find(addressId);
    if (!address)
        return GW_ERR_UNKNOWN_ADDRESS;
    for (auto it = changes.cbegin(); it != changes.cend(); ++it)
        address->stored.params.insert(it.key(), it.value());
    if (changes.contains("AddressName"))
        address->stored.name = changes.value("AddressName");
    resizeData(*address);
    return GW_OK;
}

quint32 FieldbusModule::setOpen(bool open)
{
    if (open == m_open)
        return GW_OK;
    m_open = open;
    emit eventRaised(open ? GW_EVENT_CONNECTED : GW_EVENT_DISCONNECTED, id());
    return GW_OK;
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
    const int low = direction == GW_ADDRESS_READ ? kReadLow : kWriteLow;
    const int high = direction == GW_ADDRESS_READ ? kReadHigh : kWriteHigh;
    int id = low;
    while (id <= high && m_addresses.contains(id))
        ++id;
    if (id > high)
        return GW_ERR_ADDRESS_RANGE;
    int first = 0;
    ParamSchema::parseConstraints(values().value(direction == GW_ADDRESS_READ ? "ReadAddressConstraints"
                                                                              : "WriteAddressConstraints"),
                                  nullptr, nullptr, &first);
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
    const QByteArray key = direction == GW_ADDRESS_READ ? "ReadAddressConstraints"
        : direction == GW_ADDRESS_WRITE                 ? "WriteAddressConstraints"
                                                        : QByteArray();
    int min = 0, max = 0;
    if (key.isEmpty() || !ParamSchema::parseConstraints(values().value(key), &min, &max, nullptr))
        return GW_ERR_INVALID_ARGUMENT;
    bool okFirst = true, okCount = true;
    const qlonglong first = params.contains("SoftElementAddress") ? params.value("SoftElementAddress").toLongLong(&okFirst)
                                                                  : min;
    const qlonglong count = params.contains("SoftElementNum") ? params.value("SoftElementNum").toLongLong(&okCount) : 1;
    if (!okFirst || !okCount || count < 1)
        return GW_ERR_INVALID_VALUE;
    return first >= min && first + count - 1 <= max ? GW_OK : GW_ERR_ADDRESS_RANGE;
}

quint32 FieldbusModule::readData(int addressId, QByteArray *data) const
{
    const Address *address = find(addressId);
    if (!address)
        return GW_ERR_UNKNOWN_ADDRESS;
    *data = address->data;
    return GW_OK;
}

quint32 FieldbusModule::writeBytes(int addressId, const QByteArray &bytes)
{
    Address *address = find(addressId);
    if (!address)
        return addressId == -1 ? GW_ERR_NOT_SUPPORTED : GW_ERR_UNKNOWN_ADDRESS;
    if (!m_open)
        return GW_ERR_NOT_OPEN;
    if (bytes.size() > address->data.size())
        return GW_ERR_VALUE_TOO_LONG;
    std::memcpy(address->data.data(), bytes.constData(), size_t(bytes.size()));
    return GW_OK;
}

quint32 FieldbusModule::writeString(int addressId, const QByteArray &text)
{
    return writeBytes(addressId, text);
}

quint32 FieldbusModule::writeValues(int addressId, int count, const QByteArray &text, bool isFloat)
{
    const Address *address = find(addressId);
    if (!address)
        return addressId == -1 ? GW_ERR_NOT_SUPPORTED : GW_ERR_UNKNOWN_ADDRESS;
    const QList<QByteArray> texts = valueTexts(text);
    if (count != texts.size())
        return GW_ERR_COUNT_MISMATCH;
    const int width = elementWidth(address->stored.params.value("IntDataType"));
    QByteArray bytes;
    for (const QByteArray &value : texts)
        if (!(isFloat ? appendFloat(bytes, value) : appendInt(bytes, value, width)))
            return GW_ERR_INVALID_VALUE;
    return writeBytes(addressId, bytes);
}

quint32 FieldbusModule::plcWrite(int addressId, const QByteArray &data)
{
    Address *address = find(addressId);
    if (!address)
        return GW_ERR_UNKNOWN_ADDRESS;
    if (address->stored.direction != GW_ADDRESS_READ)
        return GW_ERR_NOT_SUPPORTED;
    if (data.size() > address->data.size())
        return GW_ERR_VALUE_TOO_LONG;
    address->data.fill('\0');
    std::memcpy(address->data.data(), data.constData(), size_t(data.size()));
    if (m_open && isTrue(address->stored.params.value("Upload")))
        emit resultsReady(id(), addressId, {address->data});
    return GW_OK;
}

quint32 FieldbusModule::plcRead(int addressId, QByteArray *data) const
{
    const Address *address = find(addressId);
    if (!address)
        return GW_ERR_UNKNOWN_ADDRESS;
    *data = address->data;
    return GW_OK;
}
