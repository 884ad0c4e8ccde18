#pragma once
// The list of communication devices that the gateway runs for this module:
// loading, creating, deleting and renaming them on the gateway, sending data
// through them, and receiving the gateway's events and results. Exposed to QML
// as the singleton "DevicesManager".

#include "BaseItemProxy.h"
#include "CommDevice.h"
#include "DescriptionCheck.h"
#include "DeviceItemBuilder.h"
#include "GatewayStatus.h"
#include "GeneralDeviceSendData.h"
#include "GwPlatform.h"

#include <QList>
#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVector>
#include <mutex>

namespace tinyxml2 {
class XMLElement;
}

struct CommLogSite;

class DevicesManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList commDevices READ commDevices WRITE setCommDevices NOTIFY commDevicesChanged)
    Q_PROPERTY(QList<CommDevice *> commDeviceList READ commDeviceList WRITE setCommDeviceList NOTIFY commDeviceListChanged)
    Q_PROPERTY(GeneralDeviceSendData *sendDataNormalDevice READ sendDataNormalDevice CONSTANT)
    Q_PROPERTY(GatewayStatus *gatewayStatus READ gatewayStatus CONSTANT)
    // The device types that can be created: those of commDevices whose
    // description can be read.
    Q_PROPERTY(QStringList offeredDeviceTypes READ offeredDeviceTypes NOTIFY commDevicesChanged)
    // Translated messages naming each description file that cannot be read,
    // with its line.
    Q_PROPERTY(QStringList descriptionProblems READ descriptionProblems NOTIFY descriptionProblemsChanged)
    // Gateway modules that the last LoadDevices could not build (their
    // description cannot be read): one map each with deviceID, deviceName,
    // deviceType and problem (translated). The page lists them, marked,
    // without parameters; the gateway keeps running them.
    Q_PROPERTY(QVariantList unreadableDevices READ unreadableDevices NOTIFY unreadableDevicesChanged)

public:
    static DevicesManager *Instance();
    ~DevicesManager() override;

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
    Q_INVOKABLE int createCommDevice(QString strDevType, QString strDisplayName);
    Q_INVOKABLE QList<CommDevice *> commDeviceList() const;
    Q_INVOKABLE void setCommDeviceList(QList<CommDevice *> lstCommDevs);
    Q_INVOKABLE CommDevice *getDeviceById(int nDevId);
    Q_INVOKABLE GeneralDeviceSendData *sendDataNormalDevice() { return &m_sendData; }
    GatewayStatus *gatewayStatus() { return &m_gatewayStatus; }
    Q_INVOKABLE QString generateUuid();
    Q_INVOKABLE bool checkPLCDevice(uint nModuId);
    Q_INVOKABLE int deleteCommDevice(int nDeviceId);
    Q_INVOKABLE bool changeDeviceName(int nDeviceId, QString strName);
    QStringList offeredDeviceTypes() const;
    QStringList descriptionProblems() const { return m_descriptionCheck.messages(); }
    QVariantList unreadableDevices() const { return m_unreadableDevices; }
    // Checks the device type list and every type's description again.
    Q_INVOKABLE void checkDescriptions();
    Q_INVOKABLE int gwSendData(int nModuleId, QString msg, int nAddressId = -1, int dataType = 2, int nNum = 1);

signals:
    void commDevicesChanged();
    void commDeviceListChanged();
    void messageBox(int nMsgBoxType, QString strMsg); // nMsgBoxType: a MessageBoxType
    void descriptionProblemsChanged();
    void unreadableDevicesChanged();

public slots:
    void HandleGWEvent(eGW_EVENT_TYPE eEventType, QSharedPointer<char> spData, int nDataLen);
    void HandleGWResult(int nModuleId, int nAddressId, void *pRstData, int nRstDataLen);

private:
    void handleStatusEvent(const QSharedPointer<char> &spData, int nDataLen);
    DevicesManager();
    // The first device with that id; the caller holds m_listMutex.
    CommDevice *findLocked(int id) const;
    void loadModule(const GW_MODULE_INFO &info, const CommLogSite &site);
    void showAddFailed(const QString &reason);
    // While the gateway is away every device shows as not connected; once it
    // is back the list is read again, as the gateway may have restarted.
    void handleGatewayEvent(eGW_EVENT_TYPE type);
    void noteUnreadable(const GW_MODULE_INFO &info, const QString &type, const QString &name);

    DeviceItemBuilder m_builder{this};
    mutable std::mutex m_listMutex; // the device list against the gateway's result threads
    QList<CommDevice *> m_devices;
    QStringList m_deviceTypes;
    DescriptionCheck m_descriptionCheck;
    QVariantList m_unreadableDevices;
    GeneralDeviceSendData m_sendData;
    GatewayStatus m_gatewayStatus;
};
