#pragma once

#include "GatewayModule.h"
#include "ModuleStore.h"
#include "StreamChannel.h"

#include <QElapsedTimer>
#include <QMap>
#include <QObject>
#include <QStringList>

struct ModuleSummary {
    int id = 0;
    bool state = false;
    QByteArray type;
    QByteArray name;
};

// The gateway's operations on its modules: each checks its input, changes
// the database first and the live module second, and returns a code. A
// refused operation changes nothing. Runs on the daemon's main thread.
class GatewayService : public QObject
{
    Q_OBJECT
public:
    // Makes the device of a stream module. The gateway uses the real devices
    // (StreamChannel::create); request handling run where no port may be
    // opened (the fuzz target) is given devices that open nothing.
    using ChannelFactory = StreamChannel *(*)(const QByteArray &moduleType, QObject *parent);

    explicit GatewayService(ChannelFactory channels = &StreamChannel::create, QObject *parent = nullptr);
    ~GatewayService() override;

    // Loads the stored modules and reopens those that were open.
    bool start(const QString &stateDir);
    // Closes every device; the stored open flags stay for the next start.
    void stop();
    void setSerialExtras(const QStringList &paths) { m_serialExtras = paths; }
    void setListenerPort(quint16 port) { m_listenerPort = port; }

    QList<ModuleSummary> modules(int capacity) const;
    quint32 addModule(const QByteArray &type, const QByteArray &name, int *id);
    quint32 deleteModule(int id);
    quint32 renameModule(int id, const QByteArray &name);
    // The values of the given keys, in order; every key when `keys` is empty.
    quint32 params(int id, int addressId, const QList<QByteArray> &keys, QList<QPair<QByteArray, QByteArray>> *out) const;
    quint32 setParams(int id, int addressId, const QList<QPair<QByteArray, QByteArray>> &pairs);
    quint32 addresses(int id, int capacity, QList<StoredAddress> *out) const;
    quint32 addAddress(int id, const QByteArray &name, int direction, int *addressId);
    quint32 deleteAddress(int id, int addressId);
    quint32 validateAddress(int id, int direction, const ParamMap &params) const;
    quint32 readData(int id, int addressId, QByteArray *data) const;
    quint32 writeValues(int id, int addressId, int count, const QByteArray &text, bool isFloat);
    quint32 writeString(int id, int addressId, const QByteArray &text);
    quint32 plcWrite(int id, int addressId, const QByteArray &data);
    quint32 plcRead(int id, int addressId, QByteArray *data) const;

    QByteArray localIpList() const;
    QByteArray serialList() const;
    QByteArray reservedPorts() const;

    // Holds every stream device's input while the clients do not take the
    // pushes as fast as they come, and resumes it when they catch up.
    void holdInput(bool hold);

signals:
    // Encoded push frames (events, results) for every connected client;
    // connect directly: the bytes are valid during the call only. Emitted on
    // the main thread or on a stream device's worker thread.
    void pushFrames(const QByteArray &frames);

private:
    GatewayModule *module(int id) const;
    GatewayModule *createModule(const StoredModule &stored);
    quint32 setConnectState(GatewayModule *module, const QByteArray &value);
    void onEvent(int type, int moduleId);
    void onDeviceStatus(int moduleId, int state);
    void onResults(int moduleId, int addressId, const QList<QByteArray> &frames);

    const ChannelFactory m_channels;
    ModuleStore m_store;
    QMap<int, GatewayModule *> m_modules; // children of this object
    QStringList m_serialExtras;
    static constexpr qint64 kSerialListLifeMs = 1000;
    mutable QStringList m_systemSerialPorts;
    mutable QElapsedTimer m_serialListAge;
    quint16 m_listenerPort = 0;
};
