#include "EnumerationData.h"

#include "CommLog.h"
#include "ErrorCodeText.h"
#include "GwPlatform.h"

namespace CommunicationControl {

EnumerationData::EnumerationData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent)
    : BaseItem(info, parent)
{
}

// The list shows each entry's translated display name (its name when it has none).
void EnumerationData::setEntries(const QList<_S_EnumeraInfo_> &entries)
{
    m_entries = entries;
    QStringList shown;
    for (const _S_EnumeraInfo_ &entry : entries)
        shown.append(lumoraTr(entry.displayName.isEmpty() ? entry.name : entry.displayName));
    setEnums(shown);
}

int EnumerationData::indexOfValue(int value) const
{
    for (int i = 0; i < m_entries.size(); ++i)
        if (m_entries.at(i).value == value)
            return i;
    return -1;
}

void EnumerationData::setEnums(QStringList enums)
{
    m_enums = enums;
    emit enumsChanged();
}

void EnumerationData::updateCurIndex(int index)
{
    m_curIndex = index;
    emit curIndexChanged();
    TriggerAssociatedEvents();
}

// An item of a device not yet created in the gateway takes any index without
// a write; its entry is written when the device is created (SetModuleParam()).
// Otherwise a refused write keeps the old index. The view is told the index
// either way.
void EnumerationData::setCurIndex(int index)
{
    const bool taken = !inGateway() || SetModuleParam(index) == 0;
    updateCurIndex(taken ? index : m_curIndex);
}

void EnumerationData::setMessageTip(bool show, QString &tip)
{
    m_hasMessageTip = show;
    m_messageTip = tip;
}

QString EnumerationData::CurValue() const
{
    if (m_curIndex < 0 || m_curIndex >= m_entries.size())
        return QString();
    return QString::number(m_entries.at(m_curIndex).value);
}

void EnumerationData::takeGatewayValue(const QByteArray &value)
{
    bool ok = false;
    const int index = indexOfValue(value.toInt(&ok));
    if (ok && index >= 0)
        updateCurIndex(index);
}

// No answer counts as accepted here, not even 0xE000010C.
int EnumerationData::SetModuleParam(int index)
{
    if (index < 0 || index >= m_entries.size()) {
        COMM_LOG(CommLogInfo, "GwSetModuleParam [%s] index %d has no entry", objectName().toUtf8().constData(), index);
        return int(GW_ERR_INVALID_ARGUMENT);
    }
    const QByteArray value = QByteArray::number(m_entries.at(index).value);
    const int rc = writeParam(value, false);
    if (rc != 0)
        COMM_LOG(CommLogInfo, "GwSetModuleParam [%s=%s] failed, error=%x", objectName().toUtf8().constData(),
                 value.constData(), unsigned(rc));
    return rc;
}

} // namespace CommunicationControl
