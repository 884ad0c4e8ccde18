#include "AddressDataSetData.h"

#include "CommDevice.h"
#include "CommLog.h"
#include "CommPaths.h"
#include "DevicesManager.h"
#include "GwParamRecord.h"
#include "MessageBoxType.h"
#include "ModuXMLManage.h"

#include <QRegularExpression>
#include <memory>
#include <new>
#include <tinyxml2.h>

namespace CommunicationControl {

namespace {
constexpr int kMaxAddresses = 999;
constexpr int kReadBufferSize = 1024;

const QByteArray kIntDataType = QByteArrayLiteral("IntDataType");
const QByteArray kSoftElementAddress = QByteArrayLiteral("SoftElementAddress");
const QByteArray kSoftElementNum = QByteArrayLiteral("SoftElementNum");
const QByteArray kOverTime = QByteArrayLiteral("OverTime");
const QByteArray kPollEnable = QByteArrayLiteral("PollEnable");
const QByteArray kUpload = QByteArrayLiteral("Upload");
const QByteArray kAddressName = QByteArrayLiteral("AddressName");

QString jsonKey(const QByteArray &key)
{
    return QString::fromLatin1(key);
}

int jsonInt(const QJsonObject &json, const QByteArray &key)
{
    return json.value(jsonKey(key)).toInt();
}

bool jsonBool(const QJsonObject &json, const QByteArray &key)
{
    return json.value(jsonKey(key)).toBool();
}

// A test value text holds only the characters of `allowed` and does not end
// with ";".
bool legalValueText(const QString &text, const QString &allowed)
{
    static const QString pattern = QStringLiteral("[^%1]");
    const QRegularExpression illegal(pattern.arg(QRegularExpression::escape(allowed)));
    return !illegal.match(text).hasMatch() && !text.endsWith(QLatin1Char(';'));
}

QString childText(const tinyxml2::XMLElement *element, const char *name)
{
    const tinyxml2::XMLElement *child = element->FirstChildElement(name);
    const char *text = child ? child->GetText() : nullptr;
    return text ? QString::fromUtf8(text) : QString();
}
} // namespace

AddressDataSetData::AddressDataSetData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent)
    : BaseItem(info, parent)
{
    AddressInfo::registerTypes();
    if (auto *device = qobject_cast<CommDevice *>(parent)) {
        connect(device, &CommDevice::deviceResultChanged, this, &AddressDataSetData::onDeviceResultChanged);
        m_moduType = moduTypeOf(device->deviceType(), m_moduType);
    }
}

int AddressDataSetData::moduTypeOf(const QString &deviceType, int otherwise)
{
    if (deviceType == QLatin1String("EipModule"))
        return Eip;
    if (deviceType == QLatin1String("ProfinetModule"))
        return Profinet;
    return otherwise;
}

void AddressDataSetData::setAddressType(int value)
{
    m_addressType = value;
    emit addressTypeChanged();
}

void AddressDataSetData::setAddressLow(int value)
{
    m_addressLow = value;
    emit addressLowChanged();
}

void AddressDataSetData::setAddressHigh(int value)
{
    m_addressHigh = value;
    emit addressHighChanged();
}

void AddressDataSetData::setSoftAddressMin(int value)
{
    m_softAddressMin = value;
    emit softAddressMinChanged();
}

void AddressDataSetData::setSoftAddressMax(int value)
{
    m_softAddressMax = value;
    emit softAddressMaxChanged();
}

void AddressDataSetData::setSoftAddressDefault(int value)
{
    m_softAddressDefault = value;
    emit softAddressDefaultChanged();
}

void AddressDataSetData::showMessage(int type, const char *key)
{
    emit messageBox(type, DevicesManager::Instance()->qsLMTr(QString::fromLatin1(key)));
}

bool AddressDataSetData::refuseClosedDevice()
{
    CommDevice *device = DevicesManager::Instance()->getDeviceById(moduleId());
    if (!device || device->connectState())
        return false;
    showMessage(MessageBoxType::Error, "Lang_OpenCommDev");
    return true;
}

// ---- loading ----------------------------------------------------------------

int AddressDataSetData::GwGetModuleParam()
{
    std::unique_ptr<GW_ADDRESS_INFO[]> records(new (std::nothrow) GW_ADDRESS_INFO[kMaxAddresses]);
    if (!records)
        return int(GW_ERR_NO_MEMORY);
    int count = 0;
    uint32_t rc = GW_PF_GetModuleAllAddressInfo(moduleId(), records.get(), kMaxAddresses, &count);
    if (rc != GW_OK || count <= 0)
        return int(rc);
    // A second load (the device's items are read again) replaces the table
    // instead of listing every address twice.
    const bool reload = !m_addressList.isEmpty();
    for (AddressInfo *entry : qAsConst(m_addressList))
        if (entry)
            entry->deleteLater();
    m_addressList.clear();

    const CommDevice *owner = device();
    const int ownerId = owner ? owner->deviceID() : moduleId();
    for (int i = 0; i < qMin(count, kMaxAddresses); ++i) {
        const int id = records[i].addressId;
        if (id < m_addressLow || id > m_addressHigh)
            continue; // the other direction's table
        GwParamRecord record;
        if (!record.isValid())
            continue;
        record.setEntry(0, kIntDataType);
        record.setEntry(1, kSoftElementAddress);
        record.setEntry(2, kSoftElementNum);
        record.setEntry(3, kPollEnable);
        record.setEntry(4, kOverTime);
        record.setEntry(5, kUpload);
        record.setCount(6);
        rc = GW_PF_GetAllParam(ownerId, record.data(), id);
        if (rc != GW_OK)
            continue;
        auto *entry = new (std::nothrow) AddressInfo(this, factor());
        if (!entry)
            continue;
        const QByteArray name(records[i].addressName, int(qstrnlen(records[i].addressName, GW_ADDRESS_NAME_SIZE)));
        entry->setSerialNumber(id);
        entry->setAddrName(QString::fromUtf8(name));
        entry->setDeviceId(moduleId());
        entry->setIntType(record.value(0).toInt() - 1);
        entry->setFirstAddr(record.value(1).toInt());
        entry->setAddrLength(record.value(2).toInt());
        entry->setTimeout(record.value(4).toInt());
        entry->setPollEnable(record.value(3).toLower() == "true");
        entry->setUploadEnable(record.value(5).toLower() == "true");
        m_addressList.append(entry);
    }
    if (reload)
        emit addressListChanged();
    return int(rc);
}

// ---- defaults and constraints -------------------------------------------------

bool AddressDataSetData::loadAdressAlgorithmTabXML(QString strDeviceName)
{
    _S_TABXML_EVENTS_ events;
    events.itemCallback = [this](void *element, QString) {
        takeDefaultItem(static_cast<tinyxml2::XMLElement *>(element));
    };
    const QString fileName = strDeviceName + QStringLiteral("AddressAlgorithmTab.xml");
    const int parsed =
        ModuXMLManage::Instance()->ParseModuTabXML(strDeviceName, fileName, CommPaths::modulesDir(), events);
    if (parsed == -1)
        return false;
    emit addressInfoDefaultChanged();
    return true;
}

void AddressDataSetData::takeDefaultItem(tinyxml2::XMLElement *element)
{
    if (!element)
        return;
    if (!m_addressInfoDefault) {
        m_addressInfoDefault = new (std::nothrow) AddressInfo(this, factor());
        if (!m_addressInfoDefault) {
            COMM_LOG(CommLogInfo, "new(std::nothrow) AddressInfo failed");
            return;
        }
    }
    const char *nameAttr = element->Attribute("Name");
    const QByteArray name = nameAttr ? QByteArray(nameAttr) : QByteArray();
    QString value = childText(element, "CurValue");
    if (value.isEmpty())
        value = childText(element, "DefaultValue");
    AddressInfo *d = m_addressInfoDefault;
    if (name == kIntDataType)
        d->setIntType(value.toInt() - 1);
    else if (name == kSoftElementAddress)
        d->setFirstAddr(value.toInt());
    else if (name == kSoftElementNum)
        d->setAddrLength(value.toInt());
    else if (name == kOverTime)
        d->setTimeout(value.toInt());
    else if (name == kPollEnable)
        d->setPollEnable(value == QLatin1String("True"));
    else if (name == kUpload)
        d->setUploadEnable(value == QLatin1String("True"));
}

int AddressDataSetData::gwGetAddressConstraints()
{
    const QByteArray key = m_addressType == ReadAddress ? QByteArrayLiteral("ReadAddressConstraints")
                                                        : QByteArrayLiteral("WriteAddressConstraints");
    QByteArray value;
    const uint32_t rc = GwParamRecord::readOne(moduleId(), key, value, GW_MODULE_ADDRESS);
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GW_PF_GetModuleParam ReadAddressConstraints or WriteAddressConstraints failed, error=%x",
                 rc);
        return int(rc);
    }
    QList<QByteArray> parts;
    for (const QByteArray &part : value.split(';'))
        if (!part.isEmpty())
            parts.append(part);
    if (parts.size() != 4) {
        COMM_LOG(CommLogInfo, "%s split ; num !=4", value.constData());
        return int(GW_ERR_PARSE);
    }
    setSoftAddressMin(parts.at(1).toInt());
    setSoftAddressMax(parts.at(2).toInt());
    setSoftAddressDefault(parts.at(3).toInt());
    return 0;
}

bool AddressDataSetData::gwValidateAddressParams(QJsonObject json)
{
    GwParamRecord record;
    bool valid = false;
    if (record.isValid()) {
        if (json.contains(jsonKey(kSoftElementAddress)))
            record.addEntry(kSoftElementAddress, QByteArray::number(jsonInt(json, kSoftElementAddress)));
        if (json.contains(jsonKey(kSoftElementNum)))
            record.addEntry(kSoftElementNum, QByteArray::number(jsonInt(json, kSoftElementNum)));
        valid = GW_PF_ValidateAddressParams(moduleId(), record.data(), m_addressType) != 0;
    }
    if (!valid)
        showMessage(MessageBoxType::Warning, "Lang_AddAddressFailed");
    return valid;
}

QString AddressDataSetData::checkValidAddress(int firAddr, int addrLen, AddressInfo *curAddr)
{
    QString result;
    for (AddressInfo *entry : qAsConst(m_addressList)) {
        if (!entry || entry == curAddr)
            continue;
        // Only the last conflicting entry in list order is named.
        if (!entry->CheckValid(firAddr, addrLen))
            result = QStringLiteral("%1 %2").arg(entry->serialNumber()).arg(entry->addrName());
    }
    if (!result.isEmpty()) {
        DevicesManager *dm = DevicesManager::Instance();
        emit messageBox(MessageBoxType::Warning, dm->qsLMTr(QStringLiteral("AND")) + QLatin1Char(' ') + result
                                                     + dm->qsLMTr(QStringLiteral("Lang_AddressConflict")));
    }
    return result;
}

// ---- add, change, delete, clear ----------------------------------------------

bool AddressDataSetData::addCustomAddress(QJsonObject json)
{
    const QString name = json.value(jsonKey(kAddressName)).toString();
    const int first = jsonInt(json, kSoftElementAddress);
    const int length = jsonInt(json, kSoftElementNum);
    const QByteArray utf8Name = name.toUtf8();

    int id = -1;
    uint32_t rc = GW_PF_AddModuleAddressPN(moduleId(), utf8Name.constData(), m_addressType, &id);
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GW_PF_AddModuleAddress failed, moduid=%d, addressname=%s. error=%x", moduleId(),
                 utf8Name.constData(), rc);
        showMessage(MessageBoxType::Error, "Lang_AddAddressFailed");
        return false;
    }
    auto *entry = new (std::nothrow) AddressInfo(this, factor());
    GwParamRecord record;
    if (!entry || !record.isValid()) {
        delete entry;
        GW_PF_DeleteModuleAddress(moduleId(), id);
        showMessage(MessageBoxType::Error, "Lang_NewResourceFailed");
        return false;
    }
    entry->setSerialNumber(id);
    entry->setAddrName(name);
    entry->setDeviceId(moduleId());
    // The keys go in their fixed order, packed: the client library sends the
    // first `count` entries of a record, so a gap left by an absent key would
    // send an empty key and drop the last one.
    if (json.contains(jsonKey(kIntDataType))) {
        const int type = jsonInt(json, kIntDataType);
        record.addEntry(kIntDataType, QByteArray::number(type + 1));
        entry->setIntType(type);
    }
    record.addEntry(kSoftElementAddress, QByteArray::number(first));
    record.addEntry(kSoftElementNum, QByteArray::number(length));
    entry->setFirstAddr(first);
    entry->setAddrLength(length);
    if (json.contains(jsonKey(kOverTime))) {
        const int timeout = jsonInt(json, kOverTime);
        record.addEntry(kOverTime, QByteArray::number(timeout));
        entry->setTimeout(timeout);
    }
    if (json.contains(jsonKey(kPollEnable))) {
        const bool poll = jsonBool(json, kPollEnable);
        record.addEntry(kPollEnable, GwParamRecord::boolText(poll));
        entry->setPollEnable(poll);
    }
    if (json.contains(jsonKey(kUpload))) {
        const bool upload = jsonBool(json, kUpload);
        record.addEntry(kUpload, GwParamRecord::boolText(upload));
        entry->setUploadEnable(upload);
    }
    rc = GW_PF_SetModuleParam(moduleId(), record.data(), id);
    if (rc != GW_OK) {
        GW_PF_DeleteModuleAddress(moduleId(), id);
        COMM_LOG(CommLogInfo, "GW_PF_SetModuleParam failed, moduid=%d, addressname=%s. error=%x", moduleId(),
                 utf8Name.constData(), rc);
        delete entry;
        showMessage(MessageBoxType::Error, "Lang_AddAddressFailed");
        return false;
    }
    m_addressList.append(entry);
    emit addressListChanged();
    return true;
}

bool AddressDataSetData::changeCustomAddress(AddressInfo *entry, QJsonObject json)
{
    if (!entry) {
        showMessage(MessageBoxType::Error, "Lang_AddressNotExist");
        return false;
    }
    bool ok = true;
    auto has = [&json](const QByteArray &key) { return json.contains(jsonKey(key)); };
    auto write = [&](const QByteArray &key, const QString &value) {
        const bool written = gwSetAddressParam(entry, QString::fromLatin1(key), value);
        ok = ok && written;
        return written;
    };
    auto boolText = [](bool v) { return QString::fromLatin1(GwParamRecord::boolText(v)); };
    if (has(kAddressName)) {
        const QString name = json.value(jsonKey(kAddressName)).toString();
        if (write(kAddressName, name))
            entry->setAddrName(name);
    }
    if (has(kIntDataType)) {
        const int type = jsonInt(json, kIntDataType);
        if (write(kIntDataType, QString::number(type + 1)))
            entry->setIntType(type);
    }
    if (has(kSoftElementAddress)) {
        const int first = jsonInt(json, kSoftElementAddress);
        if (write(kSoftElementAddress, QString::number(first)))
            entry->setFirstAddr(first);
    }
    if (has(kSoftElementNum)) {
        const int length = jsonInt(json, kSoftElementNum);
        if (write(kSoftElementNum, QString::number(length)))
            entry->setAddrLength(length);
    }
    if (has(kOverTime)) {
        const int timeout = jsonInt(json, kOverTime);
        if (write(kOverTime, QString::number(timeout)))
            entry->setTimeout(timeout);
    }
    if (has(kPollEnable)) {
        const bool poll = jsonBool(json, kPollEnable);
        if (write(kPollEnable, boolText(poll)))
            entry->setPollEnable(poll);
    }
    if (has(kUpload)) {
        const bool upload = jsonBool(json, kUpload);
        if (write(kUpload, boolText(upload)))
            entry->setUploadEnable(upload);
    }
    if (!ok)
        showMessage(MessageBoxType::Error, "Lang_AddressParamError");
    return ok;
}

bool AddressDataSetData::gwSetAddressParam(AddressInfo *entry, QString key, QString value)
{
    if (!entry)
        return false;
    const QByteArray k = key.toUtf8();
    const QByteArray v = value.toUtf8();
    const uint32_t rc = GwParamRecord::writeOne(moduleId(), k, v, entry->serialNumber());
    if (rc == GW_OK)
        return true;
    COMM_LOG(CommLogInfo, "GW_PF_SetModuleParam failed, moduid=%d, key=%s, value=%s. error=%x", moduleId(),
             k.constData(), v.constData(), rc);
    return false;
}

bool AddressDataSetData::delCustomAddress(int nSeq)
{
    int index = -1;
    for (int i = 0; i < m_addressList.size(); ++i) {
        if (m_addressList.at(i) && m_addressList.at(i)->serialNumber() == nSeq) {
            index = i;
            break;
        }
    }
    if (index < 0)
        return true;
    const uint32_t rc = GW_PF_DeleteModuleAddress(moduleId(), nSeq);
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GW_PF_DeleteModuleAddress failed, moduid=%d, addressId=%d. error=%x", moduleId(), nSeq,
                 rc);
        showMessage(MessageBoxType::Error, "Lang_DeleteFail");
        return false;
    }
    // Later, not at once: the view that asked may still hold the entry.
    m_addressList.takeAt(index)->deleteLater();
    emit addressListChanged();
    return true;
}

bool AddressDataSetData::clearAllCustomAddress()
{
    bool ok = true;
    QList<AddressInfo *> kept;
    for (AddressInfo *entry : qAsConst(m_addressList)) {
        if (!entry)
            continue;
        const int id = entry->serialNumber();
        const uint32_t rc = GW_PF_DeleteModuleAddress(moduleId(), id);
        if (rc == GW_OK) {
            entry->deleteLater();
            continue;
        }
        COMM_LOG(CommLogInfo, "GW_PF_DeleteModuleAddress failed, moduid=%d, addressId=%d. error=%x", moduleId(), id,
                 rc);
        kept.append(entry);
        ok = false;
    }
    m_addressList = kept;
    emit addressListChanged();
    return ok;
}

// ---- data exchange ------------------------------------------------------------

void AddressDataSetData::synchrodata()
{
    std::unique_ptr<char[]> buffer(new (std::nothrow) char[kReadBufferSize]);
    if (!buffer)
        return;
    if (refuseClosedDevice())
        return;
    for (AddressInfo *entry : qAsConst(m_addressList)) {
        if (!entry)
            continue;
        memset(buffer.get(), 0, kReadBufferSize);
        int length = 0;
        if (GW_PF_ReadData(moduleId(), entry->serialNumber(), kReadBufferSize, &length, buffer.get()) != GW_OK)
            continue;
        // The gateway's length is not trusted beyond the buffer.
        entry->UpdateData(QByteArray(buffer.get(), qBound(0, length, kReadBufferSize)));
    }
}

void AddressDataSetData::onDeviceResultChanged(int id, QByteArray byte)
{
    for (AddressInfo *entry : qAsConst(m_addressList)) {
        if (entry && entry->serialNumber() == id) {
            entry->UpdateData(byte);
            return;
        }
    }
}

void AddressDataSetData::sendTestData(QString strDataType, AddressInfo *pAddress, QString strData)
{
    if (!pAddress) {
        showMessage(MessageBoxType::Error, "Lang_AddressError");
        return;
    }
    if (strData.isEmpty()) {
        showMessage(MessageBoxType::Error, "Lang_SentEmpty");
        return;
    }
    if (refuseClosedDevice())
        return;
    const int id = pAddress->serialNumber();
    uint32_t rc = GW_ERR_GENERAL; // an unknown type counts as a failed write
    if (strDataType.compare(QLatin1String("string"), Qt::CaseInsensitive) == 0) {
        rc = GW_PF_WriteString(moduleId(), id, strData.toUtf8().constData());
    } else if (strDataType == QLatin1String("int")) {
        if (!legalValueText(strData, QStringLiteral("0123456789;"))) {
            showMessage(MessageBoxType::Error, "Lang_SendTextIllegal");
            return;
        }
        const QString text = strData + QLatin1Char(';');
        rc = GW_PF_WriteInt(moduleId(), id, text.count(QLatin1Char(';')), text.toUtf8().constData());
    } else if (strDataType == QLatin1String("float")) {
        if (!legalValueText(strData, QStringLiteral(".0123456789;"))) {
            showMessage(MessageBoxType::Error, "Lang_SendTextIllegal");
            return;
        }
        const QStringList parts = strData.split(QLatin1Char(';'), Qt::KeepEmptyParts);
        for (const QString &part : parts) {
            bool ok = false;
            part.toFloat(&ok);
            if (!ok) {
                showMessage(MessageBoxType::Error, "Lang_SendTextIllegal");
                return;
            }
        }
        const QString text = strData + QLatin1Char(';');
        rc = GW_PF_WriteFloat(moduleId(), id, parts.size(), text.toUtf8().constData());
    }
    if (rc != GW_OK)
        showMessage(MessageBoxType::Error, "Lang_SendFail");
    else
        showMessage(MessageBoxType::Success, "Lang_SendSucceed");
}

} // namespace CommunicationControl
