#include "CommDevice.h"

#include "BaseItemProxy.h"
#include "CheckedLock.h"
#include "CommLog.h"
#include "ErrorCodeText.h"
#include "GwParamRecord.h"
#include "MessageBoxType.h"
#include "RecvDataFormat.h"

#include <QTimer>
#include <new>

namespace {
constexpr int kRefreshIntervalMs = 300;
constexpr int kMaxRecvEntries = 200;
const QByteArray kConnectStateKey = QByteArrayLiteral("ConnectState");

// Drops the oldest entry once the list holds the maximum, making room for one.
void trimForAppend(QStringList &list)
{
    if (list.size() >= kMaxRecvEntries)
        list.removeFirst();
}
} // namespace

CommDevice::CommDevice(QObject *parent)
    : CommDevice(QString(), parent)
{
}

CommDevice::CommDevice(const QString &deviceType, QObject *parent)
    : QObject(parent)
    , m_deviceType(deviceType)
{
    m_status.setModule(m_deviceID, m_deviceType);
    connect(&m_status, &DeviceStatus::stateChanged, this, &CommDevice::statusChanged);
    connect(&m_status, &DeviceStatus::countersChanged, this, &CommDevice::countersChanged);
    connect(&m_status, &DeviceStatus::peersChanged, this, &CommDevice::peersChanged);
}

CommDevice::~CommDevice() = default;

int CommDevice::Init()
{
    m_timer = new (std::nothrow) QTimer(this);
    if (!m_timer) {
        COMM_LOG(CommLogInfo, "new QTimer failed");
        return int(GW_ERR_NO_MEMORY);
    }
    m_timer->setInterval(kRefreshIntervalMs);
    // The views re-read both lists on every tick; receiving itself is silent.
    connect(m_timer, &QTimer::timeout, this, [this] {
        emit recvDataListChanged();
        emit recvHexDataListChanged();
    });
    m_timer->start();
    return 0;
}

int CommDevice::deviceID() const
{
    return m_deviceID;
}

void CommDevice::setDeviceID(int id)
{
    m_deviceID = id;
    m_status.setModule(m_deviceID, m_deviceType);
    for (BaseItemProxy *item : qAsConst(m_items))
        if (item)
            item->setDeviceID(id);
    emit deviceIDChanged();
}

bool CommDevice::connectState() const
{
    return m_connectState;
}

void CommDevice::setConnectState(bool bConnectState)
{
    const bool old = m_connectState;
    const int rc = GwSetConnectState(bConnectState);
    // Re-announced either way, so a switch the user flipped follows the gateway.
    updateConState(rc == 0 ? bConnectState : old);
}

QString CommDevice::deviceType() const
{
    return m_deviceType;
}

void CommDevice::setDeviceType(QString devType)
{
    m_deviceType = devType;
    m_status.setModule(m_deviceID, m_deviceType);
    emit deviceTypeChanged();
    emit statusChanged(); // hasStatus follows the type
}

QString CommDevice::deviceName() const
{
    return m_deviceName;
}

void CommDevice::setDeviceName(QString devName)
{
    m_deviceName = devName;
    emit deviceNameChanged();
}

int CommDevice::GwGetConnectState()
{
    QByteArray value;
    const uint32_t rc = GwParamRecord::readOne(m_deviceID, kConnectStateKey, value);
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GW_PF_GetModuleParam failed, error=%x", rc);
        return int(rc);
    }
    const bool state = GwParamRecord::isTrueText(value);
    COMM_LOG(CommLogDetail, "[%d]%s ConnectState=%s(%s)", m_deviceID, m_deviceType.toUtf8().constData(),
             value.constData(), GwParamRecord::boolText(state).constData());
    updateConState(state);
    setItemsEnable(state);
    return 0;
}

int CommDevice::GwSetConnectState(bool value)
{
    const uint32_t rc = GwParamRecord::writeOne(m_deviceID, kConnectStateKey, GwParamRecord::boolText(value));
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GwSetModuleParam failed, error=%x", rc);
        emit messageBox(MessageBoxType::Error, errorCodeText(int(rc)));
    }
    return int(rc);
}

void CommDevice::updateConState(bool state)
{
    m_connectState = state;
    m_status.followSwitch(state);
    emit connectStateChanged();
}

void CommDevice::updateStatus(int stateCode)
{
    if (m_status.hasStatus())
        m_status.applyStateCode(stateCode);
}

void CommDevice::GwGetStatus()
{
    m_status.readState();
}

void CommDevice::refreshCounters()
{
    m_status.readCounters();
}

void CommDevice::resetCounters()
{
    if (const quint32 rc = m_status.resetCounters())
        emit messageBox(MessageBoxType::Error, errorCodeText(int(rc)));
}

void CommDevice::dropPeer(const QString &address)
{
    if (const quint32 rc = m_status.dropPeer(address))
        emit messageBox(MessageBoxType::Error, errorCodeText(int(rc)));
}

void CommDevice::setSendOutcome(quint32 code, int bytes)
{
    m_sendFailed = code != GW_OK;
    m_sendOutcome = m_sendFailed ? errorCodeText(int(code))
                                 : lumoraTr(QStringLiteral("Lang_SentBytes")).arg(bytes);
    emit sendOutcomeChanged();
}

void CommDevice::AddDeviceItem(BaseItemProxy *item)
{
    if (item)
        m_items.append(item);
}

void CommDevice::setItemsEnable(bool enable)
{
    for (BaseItemProxy *item : qAsConst(m_items))
        if (item)
            item->setItemEnable(enable);
}

void CommDevice::setModuleParams()
{
    for (BaseItemProxy *item : qAsConst(m_items))
        if (item)
            item->setModuleParam();
}

void CommDevice::getModuleParams()
{
    for (BaseItemProxy *item : qAsConst(m_items))
        if (item)
            item->getModuleParam();
}

QStringList CommDevice::recvDataList() const
{
    CheckedLockGuard lock(m_recvLock);
    return detachedCopy(m_recvDataList);
}

QStringList CommDevice::recvHexDataList() const
{
    CheckedLockGuard lock(m_recvLock);
    return detachedCopy(m_recvHexDataList);
}

void CommDevice::setRecvDataList(const QStringList &list)
{
    {
        CheckedLockGuard lock(m_recvLock);
        if (list == m_recvDataList)
            return;
        m_recvDataList = detachedCopy(list);
    }
    emit recvDataListChanged();
}

void CommDevice::setRecvHexDataList(const QStringList &list)
{
    {
        CheckedLockGuard lock(m_recvLock);
        if (list == m_recvHexDataList)
            return;
        m_recvHexDataList = detachedCopy(list);
    }
    emit recvHexDataListChanged();
}

void CommDevice::clearRecvDatas()
{
    {
        CheckedLockGuard lock(m_recvLock);
        m_recvDataList.clear();
        m_recvHexDataList.clear();
    }
    emit recvDataListChanged();
    emit recvHexDataListChanged();
}

// Runs on a gateway thread. Formatting happens outside the lock; the trim and
// the append of both lists happen together under it, so entry i of one list is
// always the other form of entry i of the other.
void CommDevice::ProRecvResultData(int addressId, void *data, int length)
{
    if (!data || length <= 0)
        return;
    const char *bytes = static_cast<const char *>(data);
    if (addressId != GW_MODULE_ADDRESS) {
        emit deviceResultChanged(addressId, QByteArray(bytes, length));
        return;
    }
    const QString stamp = RecvDataFormat::timeStamp();
    const QString text = RecvDataFormat::entry(stamp, RecvDataFormat::printable(bytes, length));
    const QString hex = RecvDataFormat::entry(stamp, RecvDataFormat::hex(bytes, length));
    CheckedLockGuard lock(m_recvLock);
    trimForAppend(m_recvDataList);
    trimForAppend(m_recvHexDataList);
    m_recvDataList.append(text);
    m_recvHexDataList.append(hex);
}
