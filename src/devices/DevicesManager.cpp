#include "DevicesManager.h"

#include "CEventDispatcher.h"
#include "CommLog.h"
#include "CommPaths.h"
#include "ErrorCodeText.h"
#include "MessageBoxType.h"

#include <QQmlEngine>
#include <QUuid>
#include <cstring>
#include <memory>
#include <new>

namespace {
constexpr int kMaxModules = 256;

using Lock = std::lock_guard<std::mutex>;

QString fieldText(const char *field, int size)
{
    return QString::fromUtf8(field, int(strnlen(field, size_t(size))));
}

bool isStreamType(const QString &type)
{
    static const QStringList streams = {QStringLiteral("TcpClientModule"), QStringLiteral("TcpServerModule"),
                                        QStringLiteral("InsightModule"), QStringLiteral("UdpModule"),
                                        QStringLiteral("SerialModule")};
    return streams.contains(type);
}
} // namespace

DevicesManager::DevicesManager()
{
    qRegisterMetaType<CommDevice *>("CommDevice*");
    qRegisterMetaType<QVector<BaseItemProxy *>>("QVector<BaseItemProxy*>");
    qmlRegisterType<CommDevice>("lm.cpp.CommDevice", 1, 0, "CommDevice");
    InitDeviceItemInfoXML();
    checkDescriptions();
    connect(CEventDispatcher::Instance(), &CEventDispatcher::EventTriggered, this, &DevicesManager::HandleGWEvent,
            Qt::QueuedConnection);
}

DevicesManager::~DevicesManager()
{
    // Devices are children of the manager and go with it; the list must not
    // point at them while they do.
    Lock lock(m_listMutex);
    m_devices.clear();
}

DevicesManager *DevicesManager::Instance()
{
    static DevicesManager manager;
    return &manager;
}

CommDevice *DevicesManager::findLocked(int id) const
{
    for (CommDevice *device : m_devices)
        if (device && device->deviceID() == id)
            return device;
    return nullptr;
}

void DevicesManager::LoadDevices()
{
    COMM_LOG(CommLogInfo, "LoadDevices enter");
    QList<CommDevice *> old;
    {
        Lock lock(m_listMutex);
        old.swap(m_devices);
    }
    for (CommDevice *device : qAsConst(old))
        device->deleteLater();
    m_builder.destroyPendingDevice();
    if (!m_unreadableDevices.isEmpty()) {
        m_unreadableDevices.clear();
        emit unreadableDevicesChanged();
    }

    std::unique_ptr<GW_MODULE_INFO[]> records(new (std::nothrow) GW_MODULE_INFO[kMaxModules]());
    if (!records) {
        COMM_LOG(CommLogInfo, "new GW_MODULE_INFO[256] failed");
        emit commDeviceListChanged();
        return;
    }
    int count = 0;
    const uint32_t rc = GW_PF_GetAllModules(records.get(), kMaxModules, &count);
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GW_PF_GetAllModules failed, error=%x", rc);
        emit commDeviceListChanged();
        return;
    }
    for (int i = 0; i < qBound(0, count, kMaxModules); ++i)
        loadModule(records[size_t(i)], COMM_LOG_SITE);
    emit commDeviceListChanged();
    if (!m_unreadableDevices.isEmpty())
        emit unreadableDevicesChanged();
}

// Display names cross as UTF-8 in both directions, so names typed in Chinese
// come back as typed. The records are LoadDevices' (site).
void DevicesManager::loadModule(const GW_MODULE_INFO &info, const CommLogSite &site)
{
    const QString type = fieldText(info.moduleType, GW_MODULE_TYPE_SIZE);
    if (!DeviceItemBuilder::communicationTypes().contains(type))
        return;
    const QString name = fieldText(info.displayName, GW_MODULE_NAME_SIZE);
    const QByteArray typeText = type.toUtf8();
    const QByteArray nameText = name.toUtf8();
    COMM_LOG_AT(site, CommLogDetail, "loadAlgorithmTabXML[%s], deviceId=%d, deviceName=%s", typeText.constData(),
                info.moduleId, nameText.constData());
    if (!loadAlgorithmTabXML(type) || !m_builder.pendingDevice()) {
        noteUnreadable(info, type, name);
        return;
    }
    COMM_LOG_AT(site, CommLogDetail, "loadAlgorithmTabXML[%s] succ, deviceId=%d, deviceName=%s", typeText.constData(),
                info.moduleId, nameText.constData());
    CommDevice *device = m_builder.takePendingDevice();
    device->setDeviceID(info.moduleId);
    device->setDeviceName(name);
    device->setDeviceType(type);
    device->getModuleParams();
    device->GwGetConnectState();
    device->GwGetStatus();
    Lock lock(m_listMutex);
    m_devices.append(device);
}

// The device stays out of the device list; the page lists it apart, marked,
// so that the operator knows the gateway still runs it.
void DevicesManager::noteUnreadable(const GW_MODULE_INFO &info, const QString &type, const QString &name)
{
    DescriptionCheck::Problem problem;
    const QString path = DescriptionCheck::typeDescriptionPath(type);
    const QString text = DescriptionCheck::readable(CommPaths::modulesDir(), path, &problem) ? lumoraTr(QStringLiteral("Lang_DeviceNotBuilt"))
                                                                    : DescriptionCheck::message(problem);
    COMM_LOG(CommLogInfo, "device %d [%s] listed without parameters: %s", info.moduleId, name.toUtf8().constData(),
             text.toUtf8().constData());
    m_unreadableDevices.append(QVariantMap{{QStringLiteral("deviceID"), info.moduleId},
                                           {QStringLiteral("deviceName"), name},
                                           {QStringLiteral("deviceType"), type},
                                           {QStringLiteral("problem"), text}});
}

void DevicesManager::checkDescriptions()
{
    const QStringList before = m_descriptionCheck.messages();
    const QStringList offeredBefore = offeredDeviceTypes();
    m_descriptionCheck.run(CommPaths::modulesDir(), DeviceItemBuilder::deviceListFileName(), m_deviceTypes);
    if (m_descriptionCheck.messages() != before)
        emit descriptionProblemsChanged();
    if (offeredDeviceTypes() != offeredBefore)
        emit commDevicesChanged();
}

QStringList DevicesManager::offeredDeviceTypes() const
{
    QStringList offered;
    for (const QString &type : m_deviceTypes)
        if (!m_descriptionCheck.unreadableTypes().contains(type))
            offered.append(type);
    return offered;
}

void DevicesManager::InitDeviceItemInfoXML()
{
    m_deviceTypes.append(m_builder.InitDeviceItemInfoXML());
}

void DevicesManager::CheckCommOrControlDevice(tinyxml2::XMLElement *element, QStringList &types)
{
    DeviceItemBuilder::CheckCommOrControlDevice(element, types);
}

bool DevicesManager::loadAlgorithmTabXML(QString strDeviceType)
{
    return m_builder.loadAlgorithmTabXML(strDeviceType);
}

void DevicesManager::ProcessItemsCallback(void *element, QString typeName)
{
    m_builder.ProcessItemsCallback(element, typeName);
}

void DevicesManager::CreateControlItems(tinyxml2::XMLElement *element, QString typeName, QString name)
{
    m_builder.CreateControlItems(element, typeName, name);
}

QVector<BaseItemProxy *> DevicesManager::itemList(QString strDeviceName)
{
    return m_builder.itemList(strDeviceName);
}

QVector<BaseItemProxy *> DevicesManager::getCurrentDeviceItems(int nDeviceID)
{
    Lock lock(m_listMutex);
    const CommDevice *device = findLocked(nDeviceID);
    return device ? device->items() : QVector<BaseItemProxy *>();
}

QString DevicesManager::qsLMTr(QString str)
{
    return lumoraTr(str);
}

QString DevicesManager::qsErrTr(int nCode)
{
    return errorCodeText(nCode);
}

void DevicesManager::setCommDevices(QStringList devices)
{
    m_deviceTypes = devices;
    emit commDevicesChanged();
}

QList<CommDevice *> DevicesManager::commDeviceList() const
{
    Lock lock(m_listMutex);
    return m_devices;
}

void DevicesManager::setCommDeviceList(QList<CommDevice *> lstCommDevs)
{
    {
        Lock lock(m_listMutex);
        m_devices = lstCommDevs;
    }
    emit commDeviceListChanged();
}

CommDevice *DevicesManager::getDeviceById(int nDevId)
{
    Lock lock(m_listMutex);
    return findLocked(nDevId);
}

QString DevicesManager::generateUuid()
{
    return QUuid::createUuid().toString();
}

bool DevicesManager::checkPLCDevice(uint nModuId)
{
    Lock lock(m_listMutex);
    const CommDevice *device = findLocked(int(nModuId));
    return device && !isStreamType(device->deviceType());
}

// "Adding the device failed" followed, without a separator, by why.
void DevicesManager::showAddFailed(const QString &reason)
{
    emit messageBox(MessageBoxType::Error, qsLMTr(QStringLiteral("Lang_DeviceAddFailed")) + reason);
}

// The pending device's parameters are written before it joins the list: no
// gateway result can reach it yet, and no lock is held across gateway calls or
// signals that the page answers.
int DevicesManager::createCommDevice(QString strDevType, QString strDisplayName)
{
    CommDevice *pending = m_builder.pendingDevice();
    if (!pending) {
        showAddFailed(qsErrTr(int(GW_ERR_NO_TEMPLATE)));
        return int(GW_ERR_NO_TEMPLATE);
    }
    const QByteArray type = strDevType.toUtf8();
    const QByteArray name = strDisplayName.toUtf8();
    int newId = 0;
    const uint32_t rc = GW_PF_AddModule(type.constData(), name.constData(), &newId);
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GW_PF_AddModule failed, deviceType[%s], DisplayName[%s], error=%x", type.constData(),
                 name.constData(), rc);
        showAddFailed(qsErrTr(int(rc)));
        return int(rc);
    }
    bool exists = false;
    {
        Lock lock(m_listMutex);
        if (const CommDevice *existing = findLocked(newId)) {
            exists = true;
            COMM_LOG(CommLogInfo, "AddModule devID[%d] == ( Exist devID[%d], deviceType[%s], DisplayName[%s] )", newId,
                     existing->deviceID(), existing->deviceType().toUtf8().constData(),
                     existing->deviceName().toUtf8().constData());
        }
    }
    if (exists) {
        showAddFailed(qsLMTr(QStringLiteral("Lang_DeviceIdExisted")));
        return int(GW_ERR_GENERAL);
    }
    CommDevice *device = m_builder.takePendingDevice();
    device->setDeviceID(newId);
    device->setDeviceName(strDisplayName);
    device->setDeviceType(strDevType);
    device->setModuleParams();
    {
        Lock lock(m_listMutex);
        m_devices.append(device);
    }
    emit commDeviceListChanged();
    return newId;
}

// The device leaves the list under the lock, after any result being delivered
// to it has finished and before it is destroyed, so no result reaches freed memory.
int DevicesManager::deleteCommDevice(int nDeviceId)
{
    CommDevice *removed = nullptr;
    uint32_t rc = GW_OK;
    {
        Lock lock(m_listMutex);
        CommDevice *device = findLocked(nDeviceId);
        if (!device)
            return 0;
        rc = GW_PF_DeleteModule(nDeviceId);
        if (rc == GW_OK) {
            m_devices.removeOne(device);
            removed = device;
        }
    }
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GW_PF_DeleteModule failed, moduid=%d, error=%x", nDeviceId, rc);
        emit messageBox(MessageBoxType::Error, qsLMTr(QStringLiteral("Lang_DeleteFail")));
        return int(rc);
    }
    removed->deleteLater();
    emit commDeviceListChanged();
    return 0;
}

bool DevicesManager::changeDeviceName(int nDeviceId, QString strName)
{
    if (strName.isEmpty()) {
        emit messageBox(MessageBoxType::Error, qsLMTr(QStringLiteral("Lang_NameEmpty")));
        return false;
    }
    CommDevice *device = nullptr;
    uint32_t rc = GW_OK;
    {
        Lock lock(m_listMutex);
        device = findLocked(nDeviceId);
        if (!device)
            return true;
        rc = GW_PF_UpdateModule(nDeviceId, strName.toUtf8().constData());
    }
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GW_PF_UpdateModule failed, moduid=%d, error=%x", nDeviceId, rc);
        emit messageBox(MessageBoxType::Error, qsLMTr(QStringLiteral("Lang_NameError")));
        return false;
    }
    device->setDeviceName(strName);
    return true;
}

int DevicesManager::gwSendData(int nModuleId, QString msg, int nAddressId, int dataType, int nNum)
{
    if (msg.isEmpty()) {
        emit messageBox(MessageBoxType::Error, qsLMTr(QStringLiteral("Lang_PmNameEmpty")));
        return int(GW_ERR_GENERAL);
    }
    const CommDevice *device = getDeviceById(nModuleId);
    if (device && !device->connectState()) {
        emit messageBox(MessageBoxType::Error, qsLMTr(QStringLiteral("Lang_OpenCommDev")));
        return int(GW_ERR_GENERAL);
    }
    if (m_sendData.hexEnable())
        msg = GeneralDeviceSendData::hexToString(msg);
    const QByteArray text = msg.toUtf8();
    const char *call = nullptr;
    uint32_t rc = GW_OK;
    switch (dataType) {
    case 0:
        call = "GW_PF_WriteInt";
        rc = GW_PF_WriteInt(nModuleId, nAddressId, nNum, text.constData());
        break;
    case 1:
        call = "GW_PF_WriteFloat";
        rc = GW_PF_WriteFloat(nModuleId, nAddressId, nNum, text.constData());
        break;
    default:
        call = "GW_PF_WriteString";
        rc = GW_PF_WriteString(nModuleId, nAddressId, text.constData());
        break;
    }
    if (rc != GW_OK)
        COMM_LOG(CommLogInfo, "%s failed, moduid=%d, addressId=%d, error=%x", call, nModuleId, nAddressId, rc);
    // Shown under the send field of a stream device; a fieldbus address
    // test shows its own outcome.
    if (CommDevice *target = getDeviceById(nModuleId); target && nAddressId == -1)
        target->setSendOutcome(rc, text.size());
    return int(rc);
}

void DevicesManager::HandleGWEvent(eGW_EVENT_TYPE eEventType, QSharedPointer<char> spData, int nDataLen)
{
    if (m_gatewayStatus.handleEvent(eEventType, spData.data(), spData ? nDataLen : 0)) {
        handleGatewayEvent(eEventType);
        return;
    }
    if (eEventType == GW_EVENT_DEVICE_STATUS) {
        handleStatusEvent(spData, nDataLen);
        return;
    }
    if (eEventType != GW_EVENT_CONNECTED && eEventType != GW_EVENT_DISCONNECTED)
        return;
    // The payload starts with the module id; a shorter one is not read.
    if (!spData || nDataLen < int(sizeof(qint32))) {
        COMM_LOG(CommLogInfo, "HandleGWEvent failed, payload of %d bytes has no module id", nDataLen);
        return;
    }
    qint32 moduleId = 0;
    std::memcpy(&moduleId, spData.data(), sizeof(moduleId));
    CommDevice *device = getDeviceById(moduleId);
    if (!device) {
        COMM_LOG(CommLogInfo, "HandleGWEvent failed, getDeviceById null");
        return;
    }
    const bool up = (eEventType == GW_EVENT_CONNECTED);
    device->updateConState(up);
    device->setItemsEnable(up);
}

void DevicesManager::handleGatewayEvent(eGW_EVENT_TYPE type)
{
    if (type == GW_EVENT_GATEWAY_RESTORED) {
        LoadDevices();
        return;
    }
    if (type != GW_EVENT_GATEWAY_LOST)
        return;
    for (CommDevice *device : commDeviceList()) {
        device->updateConState(false);
        device->setItemsEnable(false);
        device->updateStatus(GW_DEVICE_CLOSED); // nothing runs while the gateway is away
    }
}

// Payload: module id, then the state code (int32 each).
void DevicesManager::handleStatusEvent(const QSharedPointer<char> &spData, int nDataLen)
{
    if (!spData || nDataLen < int(2 * sizeof(qint32))) {
        COMM_LOG(CommLogInfo, "HandleGWEvent failed, status payload of %d bytes", nDataLen);
        return;
    }
    qint32 fields[2] = {};
    std::memcpy(fields, spData.data(), sizeof(fields));
    CommDevice *device = getDeviceById(fields[0]);
    if (!device) {
        COMM_LOG(CommLogInfo, "HandleGWEvent failed, getDeviceById null");
        return;
    }
    device->updateStatus(fields[1]);
}

void DevicesManager::HandleGWResult(int nModuleId, int nAddressId, void *pRstData, int nRstDataLen)
{
    if (!pRstData || nRstDataLen < 1)
        return;
    Lock lock(m_listMutex);
    if (CommDevice *device = findLocked(nModuleId))
        device->ProRecvResultData(nAddressId, pRstData, nRstDataLen);
}
