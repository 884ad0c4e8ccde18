#pragma once

#include "ModuleStore.h"
#include "ParamSchema.h"

#include <QObject>

// One module of the gateway: its identity, its parameter values and the
// device behind it. Stream and fieldbus devices implement the device side.
// Everything here runs on the daemon's main thread.
class GatewayModule : public QObject
{
    Q_OBJECT
public:
    GatewayModule(const StoredModule &stored, const ParamSchema &schema, QObject *parent = nullptr);

    int id() const { return m_id; }
    QByteArray type() const { return m_type; }
    QByteArray name() const { return m_name; }
    void setName(const QByteArray &name) { m_name = name; }
    const ParamSchema &schema() const { return m_schema; }

    // The value of a key of the module (address -1) or of one address.
    virtual quint32 param(int addressId, const QByteArray &key, QByteArray *value) const;
    // Every key and value of the module or of one address.
    virtual quint32 allParams(int addressId, ParamMap *values) const;
    // Checks changes without applying them: GW_OK or the first failing code.
    virtual quint32 checkParams(int addressId, const ParamMap &changes) const;
    // Applies checked changes. GW_OK, or GW_ERR_PENDING_REOPEN when a value
    // of an open device takes effect only when it is next opened.
    virtual quint32 applyParams(int addressId, const ParamMap &changes);

    virtual quint32 setOpen(bool open) = 0;
    virtual bool isOpen() const = 0;
    // What "ConnectState" reads; also the state listed with the module.
    virtual bool connectState() const = 0;
    virtual quint32 writeString(int addressId, const QByteArray &text) = 0;
    virtual quint32 writeValues(int addressId, int count, const QByteArray &text, bool isFloat) = 0;
    virtual QList<quint16> reservedPorts() const { return {}; }
    // Reads what a device's peers sent while input was held.
    virtual void resumeInput() {}
    // A read-only key of the schema ("Status", "Counters", ...).
    virtual quint32 statusParam(const QByteArray &key, QByteArray *value) const;
    // A write of an action key of the schema ("ResetCounters", "DropPeer"),
    // already checked by the schema.
    virtual quint32 runAction(const QByteArray &key, const QByteArray &value);

    // Addresses of fieldbus devices; stream devices have none.
    virtual QList<StoredAddress> addresses() const { return {}; }
    virtual quint32 addAddress(const QByteArray &name, int direction, StoredAddress *added);
    virtual quint32 deleteAddress(int addressId);
    virtual quint32 validateAddress(int direction, const ParamMap &params) const;
    virtual quint32 readData(int addressId, QByteArray *data) const;
    virtual quint32 plcWrite(int addressId, const QByteArray &data);
    virtual quint32 plcRead(int addressId, QByteArray *data) const;

signals:
    void eventRaised(int type, int moduleId);
    // The device's state changed (an eGW_DEVICE_STATE).
    void deviceStatusChanged(int moduleId, int state);
    void resultsReady(int moduleId, int addressId, const QList<QByteArray> &frames);
    void logLine(const QString &text);

protected:
    const ParamMap &values() const { return m_values; }

private:
    const int m_id;
    const QByteArray m_type;
    QByteArray m_name;
    const ParamSchema &m_schema;
    ParamMap m_values;
};
