#pragma once
// The list of communication devices that the gateway runs for this module,
// and the module's translation helpers. Exposed to QML as the singleton
// "DevicesManager".

#include "BaseItemProxy.h"
#include "DeviceItemBuilder.h"
#include "GwPlatform.h"

#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QVector>

class CommDevice;

namespace tinyxml2 {
class XMLElement;
}

class DevicesManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList commDevices READ commDevices WRITE setCommDevices NOTIFY commDevicesChanged)

public:
    static DevicesManager *Instance();

    // Rebuilds the device list from the gateway.
    void LoadDevices();

    // Item descriptions: the offered device types and the pending device built
    // from a type's description before it is added to the gateway.
    void InitDeviceItemInfoXML();
    static void CheckCommOrControlDevice(tinyxml2::XMLElement *element, QStringList &types);
    Q_INVOKABLE bool loadAlgorithmTabXML(QString strDeviceType);
    void ProcessItemsCallback(void *element, QString typeName);
    void CreateControlItems(tinyxml2::XMLElement *element, QString typeName, QString name);
    Q_INVOKABLE QVector<BaseItemProxy *> itemList(QString strDeviceName);
    Q_INVOKABLE QVector<BaseItemProxy *> getCurrentDeviceItems(int nDeviceID);
    CommDevice *pendingDevice() const { return m_builder.pendingDevice(); }

    Q_INVOKABLE QString qsLMTr(QString str);
    Q_INVOKABLE QString qsErrTr(int nCode);
    Q_INVOKABLE QStringList commDevices() const { return m_deviceTypes; }
    Q_INVOKABLE void setCommDevices(QStringList devices);

signals:
    void commDevicesChanged();
    void messageBox(int nMsgBoxType, QString strMsg);

public slots:
    void HandleGWEvent(eGW_EVENT_TYPE eEventType, QSharedPointer<char> spData, int nDataLen);
    void HandleGWResult(int nModuleId, int nAddressId, void *pRstData, int nRstDataLen);

private:
    DevicesManager();
    DeviceItemBuilder m_builder{this};
    QStringList m_deviceTypes;
};
