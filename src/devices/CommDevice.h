#pragma once
// Model of one communication device (one gateway module): identity, connect
// state, parameter items and the two rolling receive lists.

#include "DeviceStatus.h"

#include <QObject>
#include <QStringList>
#include <QVector>
#include <mutex>

class BaseItemProxy;
class QTimer;

class CommDevice : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int deviceID READ deviceID WRITE setDeviceID NOTIFY deviceIDChanged DESIGNABLE true FINAL)
    Q_PROPERTY(bool connectState READ connectState WRITE setConnectState NOTIFY connectStateChanged DESIGNABLE true FINAL)
    Q_PROPERTY(QString deviceType READ deviceType WRITE setDeviceType NOTIFY deviceTypeChanged DESIGNABLE true FINAL)
    Q_PROPERTY(QString deviceName READ deviceName WRITE setDeviceName NOTIFY deviceNameChanged DESIGNABLE true FINAL)
    Q_PROPERTY(QStringList recvDataList READ recvDataList WRITE setRecvDataList NOTIFY recvDataListChanged DESIGNABLE false FINAL)
    Q_PROPERTY(QStringList recvHexDataList READ recvHexDataList WRITE setRecvHexDataList NOTIFY recvHexDataListChanged DESIGNABLE false FINAL)
    // What the gateway reports about the device (DeviceStatus): the state
    // name ("Connected", ...), its translated word, its level for the
    // colour ("off", "ok", "pending", "fault") and the detail text.
    Q_PROPERTY(bool hasStatus READ hasStatus NOTIFY statusChanged FINAL)
    Q_PROPERTY(QString status READ status NOTIFY statusChanged FINAL)
    Q_PROPERTY(QString statusText READ statusText NOTIFY statusChanged FINAL)
    Q_PROPERTY(QString statusLevel READ statusLevel NOTIFY statusChanged FINAL)
    Q_PROPERTY(QString statusDetail READ statusDetail NOTIFY statusChanged FINAL)
    Q_PROPERTY(QVariantMap counters READ counters NOTIFY countersChanged FINAL)
    Q_PROPERTY(QVariantList peers READ peers NOTIFY peersChanged FINAL)
    // The outcome of the last send from the page: "" before any, else the
    // bytes sent or the translated error.
    Q_PROPERTY(QString sendOutcome READ sendOutcome NOTIFY sendOutcomeChanged FINAL)
    Q_PROPERTY(bool sendFailed READ sendFailed NOTIFY sendOutcomeChanged FINAL)

public:
    explicit CommDevice(QObject *parent = nullptr);
    explicit CommDevice(const QString &deviceType, QObject *parent = nullptr);
    ~CommDevice() override;

    Q_INVOKABLE int deviceID() const;
    Q_INVOKABLE void setDeviceID(int id);
    Q_INVOKABLE bool connectState() const;
    Q_INVOKABLE void setConnectState(bool bConnectState);
    Q_INVOKABLE QString deviceType() const;
    Q_INVOKABLE void setDeviceType(QString devType);
    Q_INVOKABLE QString deviceName() const;
    Q_INVOKABLE void setDeviceName(QString devName);
    Q_INVOKABLE int GwGetConnectState();
    Q_INVOKABLE int GwSetConnectState(bool value);
    Q_INVOKABLE void clearRecvDatas();
    // Reads detail, counters (and peers) again; the device view calls it
    // while shown.
    Q_INVOKABLE void refreshCounters();
    // Zeroes the gateway's counters of the device; a refusal is shown.
    Q_INVOKABLE void resetCounters();
    // Disconnects one peer ("a.b.c.d:port") of a TCP server; a refusal is shown.
    Q_INVOKABLE void dropPeer(const QString &address);

    bool hasStatus() const { return m_status.hasStatus(); }
    QString status() const { return m_status.state(); }
    QString statusText() const { return m_status.stateText(); }
    QString statusLevel() const { return m_status.level(); }
    QString statusDetail() const { return m_status.detail(); }
    QVariantMap counters() const { return m_status.counters(); }
    QVariantList peers() const { return m_status.peers(); }
    QString sendOutcome() const { return m_sendOutcome; }
    bool sendFailed() const { return m_sendFailed; }
    // A state code of the gateway's status event (GUI thread).
    void updateStatus(int stateCode);
    // Reads the state from the gateway (on loading the device).
    void GwGetStatus();
    // The result of a send of `bytes` bytes: `code` 0 or the gateway's error.
    void setSendOutcome(quint32 code, int bytes);

    // Copies taken under the receive lock.
    QStringList recvDataList() const;
    void setRecvDataList(const QStringList &list);
    QStringList recvHexDataList() const;
    void setRecvHexDataList(const QStringList &list);

    int Init(); // creates the 300 ms refresh timer; 0 or 0xE0000002
    void AddDeviceItem(BaseItemProxy *item);
    QVector<BaseItemProxy *> items() const { return m_items; }
    void setItemsEnable(bool enable);
    void setModuleParams();
    void getModuleParams();
    void updateConState(bool state);

    // One block of received data; called on a gateway thread.
    void ProRecvResultData(int addressId, void *data, int length);

signals:
    void deviceIDChanged();
    void connectStateChanged();
    void deviceTypeChanged();
    void deviceNameChanged();
    void recvDataListChanged();
    void recvHexDataListChanged();
    void statusChanged();
    void countersChanged();
    void peersChanged();
    void sendOutcomeChanged();
    void messageBox(int nMsgBoxType, QString strMsg); // nMsgBoxType: a MessageBoxType
    // Emitted on a gateway thread while the manager's device-list lock is held:
    // receivers connect queued (the default for a receiver on the GUI thread)
    // and must not call back into the manager from a direct connection.
    void deviceResultChanged(int addressId, QByteArray byteResult);

private:
    int m_deviceID = -1;
    bool m_connectState = false;
    QVector<BaseItemProxy *> m_items;
    QString m_deviceType;
    QString m_deviceName;
    QTimer *m_timer = nullptr;
    mutable std::mutex m_recvLock; // guards both lists (gateway thread vs GUI thread)
    QStringList m_recvDataList;
    QStringList m_recvHexDataList;
    DeviceStatus m_status;
    QString m_sendOutcome;
    bool m_sendFailed = false;
};
