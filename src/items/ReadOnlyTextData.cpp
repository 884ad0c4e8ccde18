#include "ReadOnlyTextData.h"

namespace CommunicationControl {

ReadOnlyTextData::ReadOnlyTextData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent)
    : BaseItem(info, parent)
{
}

void ReadOnlyTextData::updateCurValue(const QString &value)
{
    m_curValue = value;
    emit curValueChanged();
}

} // namespace CommunicationControl
