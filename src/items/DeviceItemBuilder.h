#pragma once
// Builds devices from the XML descriptions: reads the list of offered device
// types, and turns a type's tab description into a new (pending) device with
// one item proxy per item element, made by the item factory.

#include <QObject>
#include <QStringList>
#include <QVector>

class BaseItemProxy;
class CommDevice;

namespace tinyxml2 {
class XMLElement;
}

class DeviceItemBuilder
{
public:
    // deviceParent: the QObject parent given to every device built.
    explicit DeviceItemBuilder(QObject *deviceParent);
    ~DeviceItemBuilder();
    DeviceItemBuilder(const DeviceItemBuilder &) = delete;
    DeviceItemBuilder &operator=(const DeviceItemBuilder &) = delete;

    // The gateway module types that are communication devices.
    static const QStringList &communicationTypes();

    // "DeviceItemInfo.xml": the device type list below the modules directory.
    static QString deviceListFileName();
    // The communication device types of DeviceItemInfo.xml, in file order.
    QStringList InitDeviceItemInfoXML() const;
    // One "Items" entry, given its first child element.
    static void CheckCommOrControlDevice(tinyxml2::XMLElement *first, QStringList &types);

    // Replaces the pending device by a new one of that type with its items.
    bool loadAlgorithmTabXML(const QString &deviceType);
    void ProcessItemsCallback(void *element, const QString &typeName);
    void CreateControlItems(tinyxml2::XMLElement *element, const QString &typeName, const QString &name);
    // The pending device's items when it is of that type, else none.
    QVector<BaseItemProxy *> itemList(const QString &deviceType) const;

    CommDevice *pendingDevice() const { return m_pending; }
    CommDevice *takePendingDevice(); // the caller owns it from now on
    void destroyPendingDevice();

private:
    QObject *m_deviceParent;
    CommDevice *m_pending = nullptr;
};
