#pragma once

#include "GatewayModule.h"

#include <QMap>

// A simulated PROFINET or EtherNet/IP device. No fieldbus stack runs here:
// each address is a block of bytes that the vision side writes (write
// addresses) or that the PLC side sets from outside (read addresses, through
// the gateway's PLC operations). A read address with "Upload" true pushes its
// new bytes as a result when the PLC writes it.
class FieldbusModule : public GatewayModule
{
    Q_OBJECT
public:
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
    StoredAddress insertAddress(int id, int direction, const QByteArray &name, const ParamMap &extra, bool fixed);
    void addFixedAddress(int id, int direction, const QByteArray &name);
    static void resizeData(Address &address);
    quint32 writeBytes(int addressId, const QByteArray &bytes);

    const ParamSchema &m_addressSchema;
    QMap<int, Address> m_addresses;
    bool m_open = false;
};
