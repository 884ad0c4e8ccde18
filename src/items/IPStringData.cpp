#include "IPStringData.h"

#include "CommLog.h"
#include "ErrorCodeText.h"
#include "GwPlatform.h"
#include "MessageBoxType.h"

#include <QHostAddress>
#include <QNetworkInterface>

namespace CommunicationControl {

namespace {
constexpr int kIpListBufferSize = 512;
const QString kAnyAddress = QStringLiteral("0.0.0.0");
} // namespace

IPStringData::IPStringData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent)
    : BaseItem(info, parent)
    , m_isHostIP(info.name.startsWith(QLatin1String("Local")))
{
    if (m_isHostIP)
        GwGetLocalIpList();
}

bool IPStringData::IsIPv4(const QString &text)
{
    QHostAddress address;
    return address.setAddress(text) && address.protocol() == QAbstractSocket::IPv4Protocol
           && address.toString() == text;
}

void IPStringData::updateIPString(const QString &ip)
{
    m_ipString = ip;
    emit ipStringChanged();
}

bool IPStringData::setIPString(const QString &ip)
{
    if (!IsIPv4(ip)) {
        COMM_LOG(CommLogInfo, "%s is not ipv4", ip.toUtf8().constData());
        // The operator is told why, as for an address the gateway refuses.
        emit messageBox(MessageBoxType::Error, errorCodeText(int(GW_ERR_INVALID_IP)));
        updateIPString(m_ipString); // the field shows the stored address again
        return false;
    }
    if (!accepted(GwSetModuleParam(ip))) {
        updateIPString(m_ipString);
        return false;
    }
    updateIPString(ip);
    return true;
}

int IPStringData::GwSetModuleParam(const QString &ip)
{
    return writeParamLogged(ip.toUtf8(), COMM_LOG_SITE);
}

// The gateway's view of this host's addresses; the host's own interfaces when
// the gateway cannot tell. "0.0.0.0" (all addresses) is always offered first.
void IPStringData::GwGetLocalIpList()
{
    char buffer[kIpListBufferSize + 1] = {}; // a NUL after whatever the gateway fills in
    int length = 0;
    const uint32_t rc = GW_PF_GetLocalIpList(buffer, kIpListBufferSize, &length);
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GW_PF_GetLocalIpList failed, error=%x", rc);
        GetQtLocalIpList();
        return;
    }
    QStringList list{kAnyAddress};
    for (const QString &ip : QString::fromUtf8(buffer).split(QLatin1Char('\t'), Qt::SkipEmptyParts))
        if (!list.contains(ip.trimmed()))
            list.append(ip.trimmed());
    m_ipList = list;
    emit ipListChanged();
}

void IPStringData::GetQtLocalIpList()
{
    QStringList list{kAnyAddress};
    for (const QHostAddress &address : QNetworkInterface::allAddresses())
        if (address.protocol() == QAbstractSocket::IPv4Protocol)
            list.append(address.toString());
    m_ipList = list;
    emit ipListChanged();
}

} // namespace CommunicationControl
