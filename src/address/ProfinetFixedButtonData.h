#pragma once

#include "AddressInfo.h"
#include "BaseItem.h"

#include <QByteArray>
#include <QList>

namespace CommunicationControl {

// The fixed PROFINET read and write addresses of one device: one entry per
// bit that the device description names, each showing that bit's value, and
// the three settings that go with them (the poll switch of each address and
// the heartbeat interval). Settings are written to the gateway first; the
// notify signal comes in every case, so a refused value snaps back in the view.
class ProfinetFixedButtonData : public BaseItem
{
    Q_OBJECT
    Q_PROPERTY(int readAddressId READ readAddressId WRITE setReadAddressId NOTIFY readAddressIdChanged)
    Q_PROPERTY(int writeAddressId READ writeAddressId WRITE setWriteAddressId NOTIFY writeAddressIdChanged)
    Q_PROPERTY(QString windowTitle READ windowTitle WRITE setWindowTitle NOTIFY windowTitleChanged)
    Q_PROPERTY(QString readAddressText READ readAddressText WRITE setReadAddressText NOTIFY readAddressTextChanged)
    Q_PROPERTY(QString writeAddressText READ writeAddressText WRITE setWriteAddressText NOTIFY writeAddressTextChanged)
    Q_PROPERTY(QList<CommunicationControl::AddressInfo *> readFixedAddressList READ readFixedAddressList NOTIFY readFixedAddressListChanged)
    Q_PROPERTY(QList<CommunicationControl::AddressInfo *> writeFixedAddressList READ writeFixedAddressList NOTIFY writeFixedAddressListChanged)
    Q_PROPERTY(bool readPollEnable READ readPollEnable WRITE setReadPollEnable NOTIFY readPollEnableChanged)
    Q_PROPERTY(bool writePollEnable READ writePollEnable WRITE setWritePollEnable NOTIFY writePollEnableChanged)
    Q_PROPERTY(int writeHeartBeat READ writeHeartBeat WRITE setWriteHeartBeat NOTIFY writeHeartBeatChanged)

public:
    ProfinetFixedButtonData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent);

    int readAddressId() const { return m_readAddressId; }
    void setReadAddressId(int value);
    int writeAddressId() const { return m_writeAddressId; }
    void setWriteAddressId(int value);
    QString windowTitle() const { return m_windowTitle; }
    void setWindowTitle(const QString &value);
    QString readAddressText() const { return m_readAddressText; }
    void setReadAddressText(const QString &value);
    QString writeAddressText() const { return m_writeAddressText; }
    void setWriteAddressText(const QString &value);
    QList<AddressInfo *> readFixedAddressList() const { return m_readFixedAddressList; }
    QList<AddressInfo *> writeFixedAddressList() const { return m_writeFixedAddressList; }
    bool readPollEnable() const { return m_readPollEnable; }
    void setReadPollEnable(bool enable);
    bool writePollEnable() const { return m_writePollEnable; }
    void setWritePollEnable(bool enable);
    int writeHeartBeat() const { return m_writeHeartBeat; }
    void setWriteHeartBeat(int interval);
    // The owning device's kind, as the address tables name it.
    int moduType() const { return m_moduType; }
    // Also marks every bit entry as belonging to a created device.
    void setDeviceId(int moduleId);

    // One entry per named bit of each fixed address, once; nothing when the
    // device description cannot be read.
    void CreateFixedAddress();
    // Reads the bytes of one fixed address and shows its bits.
    Q_INVOKABLE void synchrodata(bool bRead);
    // Both poll switches and the heartbeat from the gateway: 0 or the
    // heartbeat read's code.
    int GwGetModuleParam() override;

    // Bit n of the bytes, least significant first within each byte; -1 when
    // n lies outside them.
    static int getBit(const QByteArray &bytes, int n);

public slots:
    void onDeviceResultChanged(int id, QByteArray byte);

signals:
    void readAddressIdChanged();
    void writeAddressIdChanged();
    void windowTitleChanged();
    void readAddressTextChanged();
    void writeAddressTextChanged();
    void readFixedAddressListChanged();
    void writeFixedAddressListChanged();
    void writeHeartBeatChanged();
    void readPollEnableChanged();
    void writePollEnableChanged();

private:
    QList<AddressInfo *> makeBitEntries(const QMap<QString, QString> &bits, int addressId);
    bool writeSetting(const QByteArray &key, const QByteArray &value, int addressId);
    bool readPollEnable(int addressId, bool *flag);
    int moduleId() const;

    int m_readAddressId = 0;
    int m_writeAddressId = 1000;
    QString m_windowTitle;
    QString m_readAddressText;
    QString m_writeAddressText;
    QList<AddressInfo *> m_readFixedAddressList;
    QList<AddressInfo *> m_writeFixedAddressList;
    bool m_readPollEnable = false;
    bool m_writePollEnable = false;
    int m_writeHeartBeat = 1000;
    int m_moduType = 1; // Eip, as the address tables number the kinds
    bool m_bitsBuilt = false;
};

} // namespace CommunicationControl
