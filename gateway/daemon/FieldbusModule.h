#pragma once

#include "FieldbusCodec.h"
#include "GatewayModule.h"

#include <QMap>
#include <QTimer>

// A simulated PROFINET or EtherNet/IP device. No fieldbus stack runs here:
// each address is a block of elements that one side writes and the other
// reads. The vision side writes write addresses (GW_PF_Write*), the PLC
// writes read addresses (the gateway's PLC operations, gwplc); either side
// may read any address. A PLC write to a read address with "Upload" true is
// pushed to the vision side as a result with that address's id; writes of
// the vision side are never echoed back.
//
// A PROFINET device also has two fixed addresses, 0 (read) and 1000 (write),
// whose bits the device description names. Of their settings only
// "PollEnable" can be changed: on the read address it decides whether a PLC
// write is pushed to the vision side, on the write address whether the
// gateway toggles the heartbeat bit every "Heartbeat" milliseconds while the
// device is open.
class FieldbusModule : public GatewayModule
{
    Q_OBJECT
public:
    struct IdRange {
        int low;
        int high;
    };
    // The ids of the addresses of one direction (GW_ADDRESS_READ or
    // GW_ADDRESS_WRITE); the module's address tables take the same ranges
    // from the device descriptions.
    static IdRange idRange(int direction);

    FieldbusModule(const StoredModule &stored, const ParamSchema &schema, QObject *parent = nullptr);

    quint32 param(int addressId, const QByteArray &key, QByteArray *value) const override;
    quint32 allParams(int addressId, ParamMap *values) const override;
    quint32 checkParams(int addressId, const ParamMap &changes) const override;
    quint32 applyParams(int addressId, const ParamMap &changes) override;

    quint32 setOpen(bool open) override;
    bool isOpen() const override { return m_open; }
    bool connectState() const override { return m_open; }
    quint32 writeString(int addressId, const QByteArray &text) override;
    quint32 writeValues(int addressId, int count, const QByteArray &text, bool isFloat) override;

    QList<StoredAddress> addresses() const override;
    quint32 addAddress(const QByteArray &name, int direction, StoredAddress *added) override;
    quint32 deleteAddress(int addressId) override;
    quint32 validateAddress(int direction, const ParamMap &params) const override;
    quint32 readData(int addressId, QByteArray *data) const override;
    quint32 plcWrite(int addressId, const QByteArray &data) override;
    quint32 plcRead(int addressId, QByteArray *data) const override;

private:
    struct Address {
        StoredAddress stored;
        QByteArray data;
        bool fixed = false;
    };

    Address *find(int addressId);
    const Address *find(int addressId) const;
    bool pollEnabled(int addressId) const;
    void updateHeartbeat();
    void toggleHeartbeat();
    void applyHeartbeatBit(Address &address) const;
    StoredAddress insertAddress(int id, int direction, const QByteArray &name, const ParamMap &extra, bool fixed);
    void addFixedAddress(int id, int direction, const QByteArray &name);
    QByteArray constraintsOf(int direction) const;
    FieldbusCodec codecOf(const Address &address) const;
    static void resizeData(Address &address);
    quint32 writableAddress(int addressId, int direction, Address **found);
    static quint32 replaceData(Address &address, const QByteArray &bytes);
    quint32 replaceWritten(Address &address, const QByteArray &bytes);

    const ParamSchema &m_addressSchema;
    // Units of the address axis that one element takes, as the address
    // tables count them: 1 on PROFINET, 2 on EtherNet/IP.
    const int m_unitsPerElement;
    const FieldbusCodec::ByteOrder m_byteOrder;
    QMap<int, Address> m_addresses;
    bool m_open = false;
    const bool m_hasFixedAddresses;
    QTimer m_heartbeat;
    bool m_heartbeatHigh = false;
};
