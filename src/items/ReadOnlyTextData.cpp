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

int ReadOnlyTextData::GwGetModuleParam()
{
    QByteArray value;
    const int rc = gwReadParam(value);
    if (rc == 0)
        updateCurValue(QString::fromUtf8(value));
    return rc;
}

} // namespace CommunicationControl
