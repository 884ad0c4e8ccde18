#include "BooleanData.h"

#include "CommLog.h"

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
    const bool old = m_curValue;
    updateCurValue(accepted(GwSetModuleParam(value)) ? value : old);
}

QString BooleanData::CurValue() const
{
    return QString::fromLatin1(GwParamRecord::boolText(m_curValue));
}

int BooleanData::GwSetModuleParam(bool value)
{
    return writeParamLogged(GwParamRecord::boolText(value), COMM_LOG_SITE);
}

} // namespace CommunicationControl
