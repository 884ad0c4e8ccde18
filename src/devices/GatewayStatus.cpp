#include "GatewayStatus.h"

#include "CommLog.h"
#include "ErrorCodeText.h"

#include <cstring>

GatewayStatus::GatewayStatus(QObject *parent) : QObject(parent)
{
    m_restoredTimer.setSingleShot(true);
    m_restoredTimer.setInterval(kRestoredShownMs);
    connect(&m_restoredTimer, &QTimer::timeout, this, [this] {
        if (m_state == Restored)
            setState(Online);
    });
}

QString GatewayStatus::text() const
{
    switch (m_state) {
    case Lost:
        return lumoraTr(QStringLiteral("Lang_GatewayLost"));
    case Reconnecting:
        return lumoraTr(QStringLiteral("Lang_GatewayReconnecting"))
            .arg(m_attempt)
            .arg(double(m_nextTryMs) / 1000.0, 0, 'f', 1);
    case Restored:
        return lumoraTr(QStringLiteral("Lang_GatewayRestored"));
    case Online:
        break;
    }
    return QString();
}

bool GatewayStatus::handleEvent(eGW_EVENT_TYPE type, const char *data, int dataLen)
{
    switch (type) {
    case GW_EVENT_GATEWAY_LOST:
        COMM_LOG(CommLogInfo, "gateway lost, devices shown as not connected");
        m_attempt = 0;
        setState(Lost);
        return true;
    case GW_EVENT_GATEWAY_RECONNECTING: {
        qint32 fields[2] = {0, 0};
        if (!data || dataLen < int(sizeof(fields))) {
            COMM_LOG(CommLogInfo, "gateway reconnecting event of %d bytes, 8 expected", dataLen);
            return true;
        }
        std::memcpy(fields, data, sizeof(fields));
        m_attempt = fields[0];
        m_nextTryMs = fields[1];
        m_state = Reconnecting;
        emit stateChanged(); // the attempt changes the text even when the state stays
        return true;
    }
    case GW_EVENT_GATEWAY_RESTORED:
        COMM_LOG(CommLogInfo, "gateway restored, reloading the devices");
        setState(Restored);
        m_restoredTimer.start();
        return true;
    default:
        return false;
    }
}

void GatewayStatus::setState(State state)
{
    if (state == m_state)
        return;
    m_state = state;
    emit stateChanged();
}
