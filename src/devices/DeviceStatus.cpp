#include "DeviceStatus.h"

#include "CommLog.h"
#include "ErrorCodeText.h"
#include "GwParamRecord.h"

#include <QMap>
#include <QStringList>

namespace {
// The state names by their codes in the status event.
const QMap<int, QString> &stateNames()
{
    static const QMap<int, QString> names{{GW_DEVICE_CLOSED, QStringLiteral("Closed")},
                                          {GW_DEVICE_OPENING, QStringLiteral("Opening")},
                                          {GW_DEVICE_CONNECTED, QStringLiteral("Connected")},
                                          {GW_DEVICE_LISTENING, QStringLiteral("Listening")},
                                          {GW_DEVICE_RECONNECTING, QStringLiteral("Reconnecting")},
                                          {GW_DEVICE_PORT_MISSING, QStringLiteral("PortMissing")},
                                          {GW_DEVICE_ERROR, QStringLiteral("Error")}};
    return names;
}

const QStringList kStreamTypes{QStringLiteral("TcpClientModule"), QStringLiteral("TcpServerModule"),
                               QStringLiteral("UdpModule"), QStringLiteral("SerialModule")};
} // namespace

DeviceStatus::DeviceStatus(QObject *parent) : QObject(parent) {}

bool DeviceStatus::typeHasStatus(const QString &deviceType)
{
    return kStreamTypes.contains(deviceType);
}

void DeviceStatus::setModule(int moduleId, const QString &deviceType)
{
    m_moduleId = moduleId;
    m_hasStatus = typeHasStatus(deviceType);
    m_isServer = deviceType == QLatin1String("TcpServerModule");
}

QString DeviceStatus::stateName(int code)
{
    return stateNames().value(code);
}

QString DeviceStatus::stateText() const
{
    static const QMap<QString, QString> keys{{QStringLiteral("Closed"), QStringLiteral("Lang_DevState_Closed")},
                                             {QStringLiteral("Opening"), QStringLiteral("Lang_DevState_Opening")},
                                             {QStringLiteral("Connected"), QStringLiteral("Lang_DevState_Connected")},
                                             {QStringLiteral("Listening"), QStringLiteral("Lang_DevState_Listening")},
                                             {QStringLiteral("Reconnecting"), QStringLiteral("Lang_DevState_Reconnecting")},
                                             {QStringLiteral("PortMissing"), QStringLiteral("Lang_DevState_PortMissing")},
                                             {QStringLiteral("Error"), QStringLiteral("Lang_DevState_Error")}};
    return lumoraTr(keys.value(m_state, QStringLiteral("Lang_DevState_Error")));
}

QString DeviceStatus::level() const
{
    if (m_state == QLatin1String("Connected") || m_state == QLatin1String("Listening"))
        return QStringLiteral("ok");
    if (m_state == QLatin1String("Opening") || m_state == QLatin1String("Reconnecting"))
        return QStringLiteral("pending");
    if (m_state == QLatin1String("PortMissing") || m_state == QLatin1String("Error"))
        return QStringLiteral("fault");
    return QStringLiteral("off");
}

void DeviceStatus::setState(const QString &state, const QString &detail)
{
    if (state == m_state && detail == m_detail)
        return;
    m_state = state;
    m_detail = detail;
    emit stateChanged();
}

bool DeviceStatus::applyStateCode(int code)
{
    const QString name = stateName(code);
    if (name.isEmpty()) {
        COMM_LOG(CommLogInfo, "device %d: unknown state %d ignored", m_moduleId, code);
        return false;
    }
    QByteArray detail;
    if (read("StatusDetail", detail) != GW_OK)
        detail.clear();
    setState(name, QString::fromUtf8(detail));
    return true;
}

void DeviceStatus::followSwitch(bool on)
{
    if (!m_hasStatus)
        setState(stateName(on ? GW_DEVICE_CONNECTED : GW_DEVICE_CLOSED), QString());
}

quint32 DeviceStatus::read(const char *key, QByteArray &value) const
{
    const uint32_t rc = GwParamRecord::readOne(m_moduleId, QByteArray(key), value);
    if (rc != GW_OK)
        COMM_LOG(CommLogInfo, "GW_PF_GetModuleParam failed, moduid=%d, key=%s, error=%x", m_moduleId, key, rc);
    return rc;
}

quint32 DeviceStatus::readState()
{
    if (!m_hasStatus)
        return GW_OK;
    QByteArray state, detail;
    if (const quint32 rc = read("Status", state))
        return rc;
    if (state.isEmpty())
        return GW_OK; // a gateway that keeps no state: the device shows Closed
    if (!stateNames().values().contains(QString::fromLatin1(state))) {
        COMM_LOG(CommLogInfo, "device %d: unknown state %s ignored", m_moduleId, state.constData());
        return GW_ERR_PARSE;
    }
    if (const quint32 rc = read("StatusDetail", detail))
        return rc;
    setState(QString::fromLatin1(state), QString::fromUtf8(detail));
    return GW_OK;
}

quint32 DeviceStatus::readCounters()
{
    if (!m_hasStatus)
        return GW_OK;
    // The detail moves on without a change of state (attempt number, next
    // try, peers connected): read again with the counters.
    QByteArray text;
    if (const quint32 rc = read("StatusDetail", text))
        return rc;
    setState(m_state, QString::fromUtf8(text));
    if (const quint32 rc = read("Counters", text))
        return rc;
    const QVariantMap counters = parseCounters(text);
    if (counters != m_counters) {
        m_counters = counters;
        emit countersChanged();
    }
    if (!m_isServer)
        return GW_OK;
    if (const quint32 rc = read("Peers", text))
        return rc;
    const QVariantList peers = parsePeers(text);
    if (peers != m_peers) {
        m_peers = peers;
        emit peersChanged();
    }
    return GW_OK;
}

quint32 DeviceStatus::resetCounters()
{
    const uint32_t rc = GwParamRecord::writeOne(m_moduleId, QByteArrayLiteral("ResetCounters"), "true");
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GW_PF_SetModuleParam failed, moduid=%d, key=ResetCounters, error=%x", m_moduleId, rc);
        return rc;
    }
    COMM_LOG(CommLogInfo, "device %d: counters reset", m_moduleId);
    readCounters();
    return GW_OK;
}

quint32 DeviceStatus::dropPeer(const QString &address)
{
    const QByteArray text = address.toLatin1();
    const uint32_t rc = GwParamRecord::writeOne(m_moduleId, QByteArrayLiteral("DropPeer"), text);
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GW_PF_SetModuleParam failed, moduid=%d, DropPeer=%s, error=%x", m_moduleId,
                 text.constData(), rc);
        return rc;
    }
    COMM_LOG(CommLogInfo, "device %d: peer %s dropped", m_moduleId, text.constData());
    readCounters();
    return GW_OK;
}

QVariantMap DeviceStatus::parseCounters(const QByteArray &text)
{
    QVariantMap map;
    for (const QByteArray &pair : text.split(';')) {
        const int eq = pair.indexOf('=');
        if (eq <= 0)
            continue;
        const QString name = QString::fromLatin1(pair.left(eq));
        const QByteArray value = pair.mid(eq + 1);
        bool isNumber = false;
        const qulonglong number = value.toULongLong(&isNumber);
        map.insert(name, isNumber ? QVariant(number) : QVariant(QString::fromLatin1(value)));
    }
    return map;
}

QVariantList DeviceStatus::parsePeers(const QByteArray &text)
{
    QVariantList peers;
    for (const QByteArray &line : text.split('\n')) {
        const QList<QByteArray> fields = line.split(';');
        if (fields.size() != 5 || fields[0].isEmpty())
            continue;
        bool rxOk = false, txOk = false;
        const qulonglong rx = fields[2].toULongLong(&rxOk);
        const qulonglong tx = fields[3].toULongLong(&txOk);
        if (!rxOk || !txOk)
            continue;
        peers.append(QVariantMap{{QStringLiteral("address"), QString::fromLatin1(fields[0])},
                                 {QStringLiteral("since"), QString::fromLatin1(fields[1])},
                                 {QStringLiteral("rx"), rx},
                                 {QStringLiteral("tx"), tx},
                                 {QStringLiteral("lastActivity"), QString::fromLatin1(fields[4])}});
    }
    return peers;
}
