#include "ProfinetFixedButtonData.h"

#include "AddressDataSetData.h"
#include "CommDevice.h"
#include "CommLog.h"
#include "ErrorCodeText.h"
#include "GSDMLXMLHelper.h"
#include "GwErrorCodes.h"
#include "GwParamRecord.h"
#include "GwPlatform.h"
#include "MessageBoxType.h"

#include <limits>
#include <memory>
#include <new>

namespace CommunicationControl {

namespace {
constexpr int kReadBufferSize = 1024;
constexpr char kPollEnable[] = "PollEnable";
constexpr char kHeartbeat[] = "Heartbeat";

// Byte index and bit offset of a bit key "B.O"; false for anything else.
bool splitBitKey(const QString &key, qint64 *byte, qint64 *bit)
{
    const int dot = key.indexOf(QLatin1Char('.'));
    if (dot < 0)
        return false;
    bool byteOk = false;
    bool bitOk = false;
    *byte = key.leftRef(dot).toLongLong(&byteOk);
    *bit = key.midRef(dot + 1).toLongLong(&bitOk);
    return byteOk && bitOk;
}
} // namespace

ProfinetFixedButtonData::ProfinetFixedButtonData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent)
    : BaseItem(info, parent)
{
    AddressInfo::registerTypes();
    if (CommDevice *owner = device()) {
        connect(owner, &CommDevice::deviceResultChanged, this, &ProfinetFixedButtonData::onDeviceResultChanged);
        m_moduType = AddressDataSetData::moduTypeOf(owner->deviceType(), m_moduType);
    }
}

void ProfinetFixedButtonData::setReadAddressId(int value)
{
    m_readAddressId = value;
    emit readAddressIdChanged();
}

void ProfinetFixedButtonData::setWriteAddressId(int value)
{
    m_writeAddressId = value;
    emit writeAddressIdChanged();
}

void ProfinetFixedButtonData::setWindowTitle(const QString &value)
{
    m_windowTitle = value;
    emit windowTitleChanged();
}

void ProfinetFixedButtonData::setReadAddressText(const QString &value)
{
    m_readAddressText = value;
    emit readAddressTextChanged();
}

void ProfinetFixedButtonData::setWriteAddressText(const QString &value)
{
    m_writeAddressText = value;
    emit writeAddressTextChanged();
}

int ProfinetFixedButtonData::moduleId() const
{
    const CommDevice *owner = device();
    return owner ? owner->deviceID() : int(moduID());
}

// The gateway first; a refusal is logged and shown, and the caller keeps
// its old value. A device not yet created has nothing to write to.
bool ProfinetFixedButtonData::writeSetting(const QByteArray &key, const QByteArray &value, int addressId)
{
    if (!inGateway())
        return true;
    const uint32_t rc = GwParamRecord::writeOne(int(moduID()), key, value, addressId);
    if (rc == GW_OK)
        return true;
    COMM_LOG(CommLogInfo, "GW_PF_SetModuleParam %s=%s of address %d failed, error=%x", key.constData(),
             value.constData(), addressId, rc);
    emit messageBox(MessageBoxType::Error, errorCodeText(int(rc)));
    return false;
}

void ProfinetFixedButtonData::setReadPollEnable(bool enable)
{
    if (writeSetting(kPollEnable, GwParamRecord::boolText(enable), m_readAddressId))
        m_readPollEnable = enable;
    emit readPollEnableChanged();
}

void ProfinetFixedButtonData::setWritePollEnable(bool enable)
{
    if (writeSetting(kPollEnable, GwParamRecord::boolText(enable), m_writeAddressId))
        m_writePollEnable = enable;
    emit writePollEnableChanged();
}

void ProfinetFixedButtonData::setWriteHeartBeat(int interval)
{
    if (writeSetting(kHeartbeat, QByteArray::number(interval), GW_MODULE_ADDRESS))
        m_writeHeartBeat = interval;
    emit writeHeartBeatChanged();
}

void ProfinetFixedButtonData::setDeviceId(int id)
{
    setModuID(uint(id));
    for (const QList<AddressInfo *> *list : {&m_readFixedAddressList, &m_writeFixedAddressList})
        for (AddressInfo *entry : *list)
            if (entry)
                entry->setDeviceId(id);
}

QList<AddressInfo *> ProfinetFixedButtonData::makeBitEntries(const QMap<QString, QString> &bits, int addressId)
{
    const GSDMLXMLHelper &helper = GSDMLXMLHelper::Instance();
    QList<AddressInfo *> entries;
    for (auto it = bits.cbegin(); it != bits.cend(); ++it) {
        AddressInfo *entry = new (std::nothrow) AddressInfo(this, m_moduType == AddressDataSetData::Profinet ? 1 : 2);
        if (!entry) {
            COMM_LOG(CommLogInfo, "new(std::nothrow) AddressInfo failed");
            continue;
        }
        // A text id without a text shows as itself, so the bit is still
        // told apart and the missing text can be found in the description.
        const QString text = helper.PrimaryLanguage(it.value());
        entry->setDeviceId(moduleId());
        entry->setAddrName(text.isEmpty() ? it.value() : text);
        entry->setFixedAddress(it.key());
        entry->setSerialNumber(addressId);
        entries.append(entry);
    }
    return entries;
}

void ProfinetFixedButtonData::CreateFixedAddress()
{
    if (m_bitsBuilt)
        return;
    GSDMLXMLHelper &helper = GSDMLXMLHelper::Instance();
    if (!helper.Init())
        return;
    m_bitsBuilt = true;
    m_readFixedAddressList = makeBitEntries(helper.readBitMap(), m_readAddressId);
    m_writeFixedAddressList = makeBitEntries(helper.writeBitMap(), m_writeAddressId);
    emit readFixedAddressListChanged();
    emit writeFixedAddressListChanged();
}

int ProfinetFixedButtonData::getBit(const QByteArray &bytes, int n)
{
    if (n < 0 || qint64(n) >= qint64(bytes.size()) * 8)
        return -1;
    return (quint8(bytes.at(n / 8)) >> (n % 8)) & 1;
}

void ProfinetFixedButtonData::onDeviceResultChanged(int id, QByteArray byte)
{
    const QList<AddressInfo *> *entries = id == m_readAddressId ? &m_readFixedAddressList
        : id == m_writeAddressId                                ? &m_writeFixedAddressList
                                                                : nullptr;
    if (!entries)
        return;
    for (AddressInfo *entry : *entries) {
        if (!entry)
            continue;
        qint64 byteIndex = 0;
        qint64 bitOffset = 0;
        int value = -1;
        if (splitBitKey(entry->fixedAddress(), &byteIndex, &bitOffset)) {
            const qint64 n = byteIndex * 8 + bitOffset;
            if (byteIndex >= 0 && bitOffset >= 0 && n <= std::numeric_limits<int>::max())
                value = getBit(byte, int(n));
        }
        entry->UpdateData(QString::number(value));
    }
}

void ProfinetFixedButtonData::synchrodata(bool bRead)
{
    std::unique_ptr<char[]> buffer(new (std::nothrow) char[kReadBufferSize]());
    if (!buffer) {
        COMM_LOG(CommLogInfo, "new(std::nothrow) read buffer failed");
        return;
    }
    const int addressId = bRead ? m_readAddressId : m_writeAddressId;
    int length = 0;
    const uint32_t rc = GW_PF_ReadData(moduleId(), addressId, kReadBufferSize, &length, buffer.get());
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GW_PF_ReadData of address %d failed, error=%x", addressId, rc);
        return;
    }
    // Never more than the buffer holds, whatever length the gateway gave.
    onDeviceResultChanged(addressId, QByteArray(buffer.get(), qBound(0, length, kReadBufferSize)));
}

// A failed read is logged and leaves the flag as it was.
bool ProfinetFixedButtonData::readPollEnable(int addressId, bool *flag)
{
    QByteArray value;
    const uint32_t rc = GwParamRecord::readOne(moduleId(), kPollEnable, value, addressId);
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GW_PF_GetModuleParam PollEnable of address %d failed, error=%x", addressId, rc);
        return false;
    }
    *flag = GwParamRecord::isTrueText(value);
    return true;
}

int ProfinetFixedButtonData::GwGetModuleParam()
{
    if (readPollEnable(m_readAddressId, &m_readPollEnable))
        emit readPollEnableChanged();
    if (readPollEnable(m_writeAddressId, &m_writePollEnable))
        emit writePollEnableChanged();
    QByteArray value;
    const uint32_t rc = GwParamRecord::readOne(moduleId(), kHeartbeat, value);
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GW_PF_GetModuleParam Heartbeat failed, error=%x", rc);
        return int(rc);
    }
    bool ok = false;
    const int interval = value.toInt(&ok);
    if (!ok) {
        COMM_LOG(CommLogInfo, "Heartbeat %s is not a number", value.constData());
        return int(GW_ERR_PARSE);
    }
    m_writeHeartBeat = interval;
    emit writeHeartBeatChanged();
    return 0;
}

} // namespace CommunicationControl
