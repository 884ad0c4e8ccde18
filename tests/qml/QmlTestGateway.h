#pragma once
// The fake gateway as the QML tests see it (singleton "TestGateway" of
// "test.gateway" 1.0): scripting answers, adding modules, reloading the
// device list, reading back the calls that the page made and the stored values;
// and the heading groups of the shipped device descriptions.

#include "CommPaths.h"
#include "DevicesManager.h"
#include "FakeGateway.h"

#include <QFile>
#include <QObject>
#include <QString>
#include <QVariantMap>
#include <QXmlStreamReader>
#include <cstring>

class QmlTestGateway : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    // Fresh gateway, an empty device list and a plain-text send field.
    Q_INVOKABLE void reset()
    {
        gw().reset();
        DevicesManager::Instance()->LoadDevices();
        DevicesManager::Instance()->sendDataNormalDevice()->setHexEnable(false);
        DevicesManager::Instance()->sendDataNormalDevice()->setText(QStringLiteral("TestData"));
        gw().clearCalls();
    }
    Q_INVOKABLE int addModule(const QString &type, const QString &name)
    {
        return gw().addModule(type.toUtf8(), name.toUtf8());
    }
    Q_INVOKABLE void setParam(int id, const QString &key, const QString &value)
    {
        gw().setParam(id, key.toUtf8(), value.toUtf8());
    }
    // What ReadData of one address delivers, as hex ("0a0b").
    Q_INVOKABLE void setReadData(int id, int address, const QString &hex)
    {
        gw().setAddressData(id, address, QByteArray::fromHex(hex.toLatin1()));
    }
    Q_INVOKABLE int lastAddressId(const QString &function) const { return gw().lastCall(function).addressId; }
    // The fake's address table of a fieldbus module and one parameter of an address.
    Q_INVOKABLE int addressCount(int moduleId) const { return gw().addresses(moduleId).size(); }
    Q_INVOKABLE QString addressParam(int moduleId, int addressId, const QString &key) const
    {
        return QString::fromUtf8(gw().param(moduleId, key.toUtf8(), addressId));
    }
    // The bytes the fake's ReadData answers for an address (the text as UTF-8).
    Q_INVOKABLE void setAddressData(int moduleId, int addressId, const QString &text)
    {
        gw().setAddressData(moduleId, addressId, text.toUtf8());
    }
    Q_INVOKABLE void loadDevices() { DevicesManager::Instance()->LoadDevices(); }
    // The gateway's status event of a device, as it arrives on the GUI thread.
    Q_INVOKABLE void pushStatus(int id, int state)
    {
        QSharedPointer<char> payload(new char[8], [](char *p) { delete[] p; });
        const qint32 fields[2] = {id, state};
        std::memcpy(payload.data(), fields, sizeof(fields));
        DevicesManager::Instance()->HandleGWEvent(GW_EVENT_DEVICE_STATUS, payload, 8);
    }
    // Every call of `function` answers code (codes above 2^31 come as doubles).
    Q_INVOKABLE void answer(const QString &function, double code) { gw().answer(function, quint32(code)); }
    Q_INVOKABLE void answerKey(const QString &function, const QString &key, double code)
    {
        gw().answerKey(function, key.toUtf8(), quint32(code));
    }
    Q_INVOKABLE void clearCalls() { gw().clearCalls(); }
    Q_INVOKABLE int callCount(const QString &function) const { return gw().calls(function).size(); }
    Q_INVOKABLE int lastModuleId(const QString &function) const { return gw().lastCall(function).moduleId; }
    Q_INVOKABLE QString param(int id, const QString &key) const
    {
        return QString::fromUtf8(gw().param(id, key.toUtf8()));
    }

    // Every named item of a device type's description: name -> { heading:
    // whether it is a Category, group: the heading it belongs to (a heading's
    // own Name, an item's Group attribute, empty without one) }.
    Q_INVOKABLE QVariantMap descriptionGroups(const QString &type) const
    {
        QVariantMap groups;
        QFile file(CommPaths::modulesDir() + type + QLatin1Char('/') + type + QStringLiteral("AlgorithmTab.xml"));
        if (!file.open(QIODevice::ReadOnly))
            return groups;
        QXmlStreamReader xml(&file);
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement || xml.name() == QLatin1String("Tab")
                || xml.name() == QLatin1String("AlgorithmTab"))
                continue; // the items are the other elements; their children are read by them
            const QString name = xml.attributes().value(QLatin1String("Name")).toString();
            const bool heading = xml.name() == QLatin1String("Category");
            if (!name.isEmpty()) {
                const QString group = heading ? name : xml.attributes().value(QLatin1String("Group")).toString();
                groups.insert(name, QVariantMap{{QStringLiteral("heading"), heading}, {QStringLiteral("group"), group}});
            }
            xml.skipCurrentElement();
        }
        return groups;
    }

private:
    static FakeGateway &gw() { return FakeGateway::instance(); }
};
