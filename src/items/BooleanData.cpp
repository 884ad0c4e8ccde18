#include "BooleanData.h"

#include "CommDevice.h"
#include "GwParamRecord.h"

namespace CommunicationControl {

BooleanData::BooleanData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent)
    : BaseItem(info, parent)
{
}

void BooleanData::updateCurValue(bool value)
{
    m_curValue = value;
    emit curValueChanged();
    TriggerAssociatedEvents();
}

void BooleanData::setCurValue(bool value)
{
    const CommDevice *owner = device();
    if (!owner || owner->deviceID() < 1) {
        updateCurValue(value);
        return;
    }
    const bool old = m_curValue;
    updateCurValue(accepted(GwSetModuleParam(value)) ? value : old);
}

QString BooleanData::CurValue() const
{
    return QString::fromLatin1(GwParamRecord::boolText(m_curValue));
}

int BooleanData::GwGetModuleParam()
{
    QByteArray value;
    const int rc = gwReadParam(value);
    if (rc == 0)
        updateCurValue(GwParamRecord::isTrueText(value));
    return rc;
}

int BooleanData::GwSetModuleParam(bool value)
{
    return gwWriteParam(GwParamRecord::boolText(value));
}

} // namespace CommunicationControl
