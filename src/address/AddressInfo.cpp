#include "AddressInfo.h"

#include "CheckedLock.h"
#include "RecvDataFormat.h"

#include <QThread>
#include <QTimer>
#include <QtQml>
#include <new>

namespace CommunicationControl {

namespace {
void appendBounded(QStringList &list, QString entry)
{
    if (list.size() >= AddressInfo::kMaxHistory)
        list.removeFirst();
    list.append(std::move(entry));
}
} // namespace

void AddressInfo::registerTypes()
{
    static std::once_flag once;
    std::call_once(once, [] {
        qRegisterMetaType<AddressInfo *>("AddressInfo*");
        qRegisterMetaType<QList<AddressInfo *>>("QList<CommunicationControl::AddressInfo*>");
        qmlRegisterUncreatableType<AddressInfo>("lm.cpp.AddressInfo", 1, 0, "AddressInfo",
                                                QStringLiteral("made by its address table"));
    });
}

AddressInfo::AddressInfo(QObject *parent, int factor)
    : QObject(parent)
    , m_factor(factor)
{
    registerTypes();
    m_recvTimer.start();
    m_pendingAnnounce = new (std::nothrow) QTimer(this);
    if (m_pendingAnnounce) {
        m_pendingAnnounce->setSingleShot(true);
        connect(m_pendingAnnounce, &QTimer::timeout, this, [this] {
            {
                CheckedLockGuard lock(m_listLock);
                m_recvTimer.restart();
            }
            announceLists();
        });
    }
}

AddressInfo::~AddressInfo() = default;

void AddressInfo::setAddrName(const QString &name)
{
    m_addrName = name;
    emit addrNameChanged();
}

void AddressInfo::setIntType(int type)
{
    m_intType = type;
    emit intTypeChanged();
}

void AddressInfo::setFirstAddr(int addr)
{
    m_firstAddr = addr;
    emit firstAddrChanged();
}

void AddressInfo::setAddrLength(int length)
{
    m_addrLength = length;
    emit addrLengthChanged();
}

void AddressInfo::setTimeout(int timeout)
{
    m_timeout = timeout;
    emit timeoutChanged();
}

void AddressInfo::setPollEnable(bool enable)
{
    m_pollEnable = enable;
    emit pollEnableChanged();
}

void AddressInfo::setUploadEnable(bool enable)
{
    m_uploadEnable = enable;
    emit uploadEnableChanged();
}

void AddressInfo::setDeviceId(int id)
{
    m_deviceId = id != 0;
    emit deviceIdChanged();
}

void AddressInfo::setSerialNumber(int number)
{
    m_serialNumber = number;
    emit serialNumberChanged();
}

void AddressInfo::setFixedAddress(const QString &text)
{
    m_fixedAddress = text;
    emit fixedAddressChanged();
}

QString AddressInfo::data() const
{
    CheckedLockGuard lock(m_listLock);
    return deepCopy(m_data);
}

QStringList AddressInfo::dataList() const
{
    CheckedLockGuard lock(m_listLock);
    return detachedCopy(m_dataList);
}

QStringList AddressInfo::hexDataList() const
{
    CheckedLockGuard lock(m_listLock);
    return detachedCopy(m_hexDataList);
}

bool AddressInfo::CheckValid(int firAddr, int addrLen) const
{
    // 64-bit sums: a length near INT_MAX from a dialog must not wrap around.
    const qint64 begin = m_firstAddr;
    const qint64 end = begin + qint64(m_factor) * m_addrLength;
    if (firAddr >= end)
        return true;
    return qint64(firAddr) + qint64(m_factor) * addrLen <= begin;
}

// Formats outside the lock, then sets the text and appends both forms with
// one time stamp together under it, so entry i of one history is always the
// other form of entry i of the other.
void AddressInfo::UpdateData(const QByteArray &bytes)
{
    const QString text = RecvDataFormat::printable(bytes.constData(), bytes.size());
    const QString hex = RecvDataFormat::hex(bytes.constData(), bytes.size());
    const QString stamp = RecvDataFormat::timeStamp();
    QString textEntry = RecvDataFormat::entry(stamp, text);
    QString hexEntry = RecvDataFormat::entry(stamp, hex);
    bool announce = false;
    QString shown = deepCopy(text);
    {
        CheckedLockGuard lock(m_listLock);
        m_data.swap(shown);
    }
    emit dataChanged();
    {
        CheckedLockGuard lock(m_listLock);
        appendBounded(m_dataList, std::move(textEntry));
        appendBounded(m_hexDataList, std::move(hexEntry));
        if (m_recvTimer.elapsed() > kNotifyIntervalMs) {
            m_recvTimer.restart();
            announce = true;
        }
    }
    if (announce) {
        if (m_pendingAnnounce)
            m_pendingAnnounce->stop();
        announceLists();
    } else if (m_pendingAnnounce && QThread::currentThread() == thread() && !m_pendingAnnounce->isActive()) {
        m_pendingAnnounce->start(kNotifyIntervalMs + 1);
    }
}

void AddressInfo::UpdateData(const QString &text)
{
    QString shown = deepCopy(text);
    {
        CheckedLockGuard lock(m_listLock);
        m_data.swap(shown);
    }
    emit dataChanged();
}

void AddressInfo::clearDataList()
{
    {
        CheckedLockGuard lock(m_listLock);
        m_dataList.clear();
        m_hexDataList.clear();
    }
    announceLists();
}

void AddressInfo::announceLists()
{
    emit dataListChanged();
    emit hexDataListChanged();
}

} // namespace CommunicationControl
