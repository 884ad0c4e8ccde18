#include "DevicesManager.h"

#include "CEventDispatcher.h"
#include "CommLog.h"
#include "ErrorCodeText.h"

#include <cstring>

DevicesManager::DevicesManager()
{
    qRegisterMetaType<QVector<BaseItemProxy *>>("QVector<BaseItemProxy*>");
    InitDeviceItemInfoXML();
    connect(CEventDispatcher::Instance(), &CEventDispatcher::EventTriggered, this, &DevicesManager::HandleGWEvent,
            Qt::QueuedConnection);
}

DevicesManager *DevicesManager::Instance()
{
    static DevicesManager manager;
    return &manager;
}

void DevicesManager::LoadDevices()
{
    COMM_LOG(CommLogInfo, "LoadDevices enter");
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

// The device list arrives with device loading; until then no device has items.
QVector<BaseItemProxy *> DevicesManager::getCurrentDeviceItems(int)
{
    return {};
}

QString DevicesManager::qsLMTr(QString str)
{
    return lumoraTr(str);
}

QString DevicesManager::qsErrTr(int nCode)
{
    bool untranslated = false;
    return ERRORCODE_TR(nCode, untranslated);
}

void DevicesManager::setCommDevices(QStringList devices)
{
    m_deviceTypes = devices;
    emit commDevicesChanged();
}

void DevicesManager::HandleGWEvent(eGW_EVENT_TYPE eEventType, QSharedPointer<char> spData, int nDataLen)
{
    if (eEventType != GW_EVENT_CONNECTED && eEventType != GW_EVENT_DISCONNECTED)
        return;
    // The payload starts with the module id; a shorter one is not read.
    if (!spData || nDataLen < int(sizeof(qint32))) {
        COMM_LOG(CommLogInfo, "HandleGWEvent failed, payload of %d bytes has no module id", nDataLen);
        return;
    }
    COMM_LOG(CommLogInfo, "HandleGWEvent failed, getDeviceById null");
}

void DevicesManager::HandleGWResult(int, int, void *pRstData, int nRstDataLen)
{
    if (!pRstData || nRstDataLen < 1)
        return;
}
