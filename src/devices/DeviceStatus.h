#pragma once
// What the gateway reports about one stream device: its state with a detail
// text, its counters and, for a TCP server, its peers. The state arrives
// with the gateway's status event; counters and peers are read on request
// (the device view refreshes them while it is shown). Runs on the GUI thread.

#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

class DeviceStatus : public QObject
{
    Q_OBJECT
public:
    explicit DeviceStatus(QObject *parent = nullptr);

    // Whether the device type has a status of its own on the gateway (the
    // stream devices); the others follow their switch only.
    static bool typeHasStatus(const QString &deviceType);

    void setModule(int moduleId, const QString &deviceType);
    bool hasStatus() const { return m_hasStatus; }

    QString state() const { return m_state; }     // "Closed", "Connected", ...
    QString stateText() const;                     // translated
    QString level() const;                         // "off", "ok", "pending" or "fault"
    QString detail() const { return m_detail; }
    QVariantMap counters() const { return m_counters; }
    QVariantList peers() const { return m_peers; }

    // A state code of the gateway's status event: the state is taken and
    // the detail read. False (nothing changed) for a code it does not know.
    bool applyStateCode(int code);
    // A device without a status of its own shows its switch.
    void followSwitch(bool on);
    // Reads "Status" and "StatusDetail"; the gateway's code.
    quint32 readState();
    // Reads "StatusDetail", "Counters" and, for a TCP server, "Peers"; the
    // gateway's code.
    quint32 readCounters();
    // Writes "ResetCounters" = "true" / "DropPeer" = address, then reads
    // the counters again. The gateway's code; failures are logged.
    quint32 resetCounters();
    quint32 dropPeer(const QString &address);

    // "RxBytes=1;...;Since=..." into name -> value (numbers as qulonglong,
    // Since as text); an entry without "=" is skipped.
    static QVariantMap parseCounters(const QByteArray &text);
    // Lines "address:port;since;rx;tx;lastActivity" into maps with the keys
    // address, since, rx, tx, lastActivity; a line of another shape is skipped.
    static QVariantList parsePeers(const QByteArray &text);
    // The state name of a code of the status event, or an empty string.
    static QString stateName(int code);

signals:
    void stateChanged();
    void countersChanged();
    void peersChanged();

private:
    quint32 read(const char *key, QByteArray &value) const;
    void setState(const QString &state, const QString &detail);

    int m_moduleId = -1;
    bool m_hasStatus = false;
    bool m_isServer = false;
    QString m_state = QStringLiteral("Closed");
    QString m_detail;
    QVariantMap m_counters;
    QVariantList m_peers;
};
