#pragma once
// One address of a fieldbus device's address table: its settings as the
// gateway holds them, and the data that flows through it with a bounded,
// time-stamped history in printable and hexadecimal form.

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QStringList>
#include <atomic>
#include <mutex>

class QTimer;

namespace CommunicationControl {

class AddressInfo : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString addrName READ addrName WRITE setAddrName NOTIFY addrNameChanged)
    Q_PROPERTY(int intType READ intType WRITE setIntType NOTIFY intTypeChanged)
    Q_PROPERTY(int firstAddr READ firstAddr WRITE setFirstAddr NOTIFY firstAddrChanged)
    Q_PROPERTY(int addrLength READ addrLength WRITE setAddrLength NOTIFY addrLengthChanged)
    Q_PROPERTY(int timeout READ timeout WRITE setTimeout NOTIFY timeoutChanged)
    Q_PROPERTY(bool pollEnable READ pollEnable WRITE setPollEnable NOTIFY pollEnableChanged)
    Q_PROPERTY(bool uploadEnable READ uploadEnable WRITE setUploadEnable NOTIFY uploadEnableChanged)
    Q_PROPERTY(int deviceId READ deviceId WRITE setDeviceId NOTIFY deviceIdChanged)
    Q_PROPERTY(QString data READ data NOTIFY dataChanged)
    Q_PROPERTY(int serialNumber READ serialNumber WRITE setSerialNumber NOTIFY serialNumberChanged)
    Q_PROPERTY(QString fixedAddress READ fixedAddress WRITE setFixedAddress NOTIFY fixedAddressChanged)
    Q_PROPERTY(QStringList dataList READ dataList NOTIFY dataListChanged)
    Q_PROPERTY(QStringList hexDataList READ hexDataList NOTIFY hexDataListChanged)
    Q_PROPERTY(int factor READ factor CONSTANT)

public:
    // factor: units that one element occupies on the address axis (1 on
    // PROFINET, 2 on EtherNet/IP).
    AddressInfo(QObject *parent, int factor);
    ~AddressInfo() override;

    // The entry and list types as QML and queued signals look them up by
    // name; the tables call it before they publish a list, empty or not.
    static void registerTypes();

    static constexpr int kMaxHistory = 200;
    static constexpr int kNotifyIntervalMs = 100;

    // Every setter assigns and notifies, also when the value is unchanged.
    QString addrName() const { return m_addrName; }
    void setAddrName(const QString &name);
    int intType() const { return m_intType; }
    void setIntType(int type);
    int firstAddr() const { return m_firstAddr; }
    void setFirstAddr(int addr);
    int addrLength() const { return m_addrLength; }
    void setAddrLength(int length);
    int timeout() const { return m_timeout; }
    void setTimeout(int timeout);
    bool pollEnable() const { return m_pollEnable; }
    void setPollEnable(bool enable);
    bool uploadEnable() const { return m_uploadEnable; }
    void setUploadEnable(bool enable);
    // Keeps only whether the id is non-zero: reads back 1 or 0.
    int deviceId() const { return m_deviceId ? 1 : 0; }
    void setDeviceId(int id);
    int serialNumber() const { return m_serialNumber; }
    void setSerialNumber(int number);
    QString fixedAddress() const { return m_fixedAddress; }
    void setFixedAddress(const QString &text);
    int factor() const { return m_factor; }

    // The last decoded text and copies of the histories, taken under the list lock.
    QString data() const;
    QStringList dataList() const;
    QStringList hexDataList() const;

    // Whether [firAddr, firAddr + factor*addrLen) stays clear of this
    // address's [firstAddr, firstAddr + factor*addrLength).
    bool CheckValid(int firAddr, int addrLen) const;

    // Decodes a block into data and both histories (oldest dropped beyond 200);
    // the list signals come at most once per 100 ms.
    void UpdateData(const QByteArray &bytes);
    // Shows a text as it stands; the histories are untouched.
    void UpdateData(const QString &text);
    Q_INVOKABLE void clearDataList();

signals:
    void addrNameChanged();
    void intTypeChanged();
    void firstAddrChanged();
    void addrLengthChanged();
    void timeoutChanged();
    void pollEnableChanged();
    void uploadEnableChanged();
    void deviceIdChanged();
    void dataChanged();
    void serialNumberChanged();
    void fixedAddressChanged();
    void dataListChanged();
    void hexDataListChanged();

private:
    void announceLists();

    QString m_addrName = QStringLiteral("Address");
    int m_intType = 0;
    int m_firstAddr = 0;
    int m_addrLength = 0;
    int m_timeout = 0;
    bool m_pollEnable = false;
    bool m_uploadEnable = false;
    bool m_deviceId = false;
    int m_serialNumber = 0;
    QString m_fixedAddress;
    const int m_factor;

    mutable std::mutex m_listLock; // data text, both histories and the receive timer
    QString m_data;
    QElapsedTimer m_recvTimer;
    QStringList m_dataList;
    QStringList m_hexDataList;
    // Updates that came inside the 100 ms pause are announced once after it,
    // so the last entries of a burst still reach the view (GUI thread only).
    QTimer *m_pendingAnnounce = nullptr;
};

} // namespace CommunicationControl
