#pragma once
// The list of communication devices that the gateway runs for this module,
// and the module's translation helpers. Exposed to QML as the singleton
// "DevicesManager".

#include "GwPlatform.h"

#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QStringList>

class DevicesManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList commDevices READ commDevices WRITE setCommDevices NOTIFY commDevicesChanged)

public:
    static DevicesManager *Instance();

    // Rebuilds the device list from the gateway.
    void LoadDevices();

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
    QStringList m_deviceTypes;
};
