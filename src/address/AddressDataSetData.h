#pragma once
// The address table of one direction (read or write addresses) of a PROFINET
// or EtherNet/IP device: loads it from the gateway, holds the defaults and the
// allowed first-address range for a new address, checks ranges for overlap,
// adds, changes, deletes and clears addresses (gateway first, model after),
// reads every address's data on demand, takes pushed results and writes test
// data. Every invokable is called by the address views.

#include "AddressInfo.h"
#include "BaseItem.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>

namespace tinyxml2 {
class XMLElement;
}

namespace CommunicationControl {

class AddressDataSetData : public BaseItem
{
    Q_OBJECT
    Q_PROPERTY(QList<CommunicationControl::AddressInfo *> addressList READ addressList NOTIFY addressListChanged)
    Q_PROPERTY(int addressType READ addressType WRITE setAddressType NOTIFY addressTypeChanged)
    Q_PROPERTY(int addressLow READ addressLow WRITE setAddressLow NOTIFY addressLowChanged)
    Q_PROPERTY(int addressHigh READ addressHigh WRITE setAddressHigh NOTIFY addressHighChanged)
    Q_PROPERTY(int moduType READ moduType NOTIFY moduTypeChanged)
    Q_PROPERTY(int softAddressMin READ softAddressMin WRITE setSoftAddressMin NOTIFY softAddressMinChanged)
    Q_PROPERTY(int softAddressMax READ softAddressMax WRITE setSoftAddressMax NOTIFY softAddressMaxChanged)
    Q_PROPERTY(int softAddressDefault READ softAddressDefault WRITE setSoftAddressDefault NOTIFY softAddressDefaultChanged)
    Q_PROPERTY(CommunicationControl::AddressInfo *addressInfoDefault READ addressInfoDefault NOTIFY addressInfoDefaultChanged)

public:
    enum AddressType {
        ReadAddress = 1,
        WriteAddress = 2,
    };
    Q_ENUM(AddressType)
    enum MouleType {
        Eip = 1,
        Profinet = 2,
    };
    Q_ENUM(MouleType)

    AddressDataSetData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent);
    // The module kind of a device type ("EipModule", "ProfinetModule"), else `otherwise`.
    static int moduTypeOf(const QString &deviceType, int otherwise);

    QList<AddressInfo *> addressList() const { return m_addressList; }
    int addressType() const { return m_addressType; }
    void setAddressType(int value);
    int addressLow() const { return m_addressLow; }
    void setAddressLow(int value);
    int addressHigh() const { return m_addressHigh; }
    void setAddressHigh(int value);
    int moduType() const { return m_moduType; }
    int softAddressMin() const { return m_softAddressMin; }
    void setSoftAddressMin(int value);
    int softAddressMax() const { return m_softAddressMax; }
    void setSoftAddressMax(int value);
    int softAddressDefault() const { return m_softAddressDefault; }
    void setSoftAddressDefault(int value);
    AddressInfo *addressInfoDefault() const { return m_addressInfoDefault; }
    // Units one element occupies on the address axis: 1 on PROFINET, 2 otherwise.
    int factor() const { return m_moduType == Profinet ? 1 : 2; }

    Q_INVOKABLE bool loadAdressAlgorithmTabXML(QString strDeviceName);
    Q_INVOKABLE int gwGetAddressConstraints();
    Q_INVOKABLE bool gwValidateAddressParams(QJsonObject json);
    Q_INVOKABLE QString checkValidAddress(int firAddr, int addrLen,
                                          CommunicationControl::AddressInfo *curAddr = nullptr);
    Q_INVOKABLE bool addCustomAddress(QJsonObject json);
    Q_INVOKABLE bool changeCustomAddress(CommunicationControl::AddressInfo *entry, QJsonObject json);
    Q_INVOKABLE bool gwSetAddressParam(CommunicationControl::AddressInfo *entry, QString key, QString value);
    Q_INVOKABLE bool delCustomAddress(int nSeq);
    Q_INVOKABLE bool clearAllCustomAddress();
    Q_INVOKABLE int GwGetModuleParam() override;

    Q_INVOKABLE void synchrodata();
    Q_INVOKABLE void sendTestData(QString strDataType, CommunicationControl::AddressInfo *pAddress, QString strData);

    // One item of the address description file, as the tab-XML reader hands it over.
    void takeDefaultItem(tinyxml2::XMLElement *element);

signals:
    void addressListChanged();
    void addressTypeChanged();
    void addressLowChanged();
    void addressHighChanged();
    void moduTypeChanged();
    void softAddressMinChanged();
    void softAddressMaxChanged();
    void softAddressDefaultChanged();
    void addressInfoDefaultChanged();

private slots:
    void onDeviceResultChanged(int id, QByteArray byte);

private:
    // Whether the owning device is known to the devices manager and switched
    // off; shows "Lang_OpenCommDev" then. A device the manager does not know
    // counts as open.
    bool refuseClosedDevice();
    void showMessage(int type, const char *key);
    int moduleId() const { return int(moduID()); }

    QList<AddressInfo *> m_addressList;
    int m_addressType = ReadAddress;
    int m_addressLow = 1;
    int m_addressHigh = 1;
    int m_moduType = 0;
    int m_softAddressMin = 0;
    int m_softAddressMax = 0;
    int m_softAddressDefault = 0;
    AddressInfo *m_addressInfoDefault = nullptr;
};

} // namespace CommunicationControl
