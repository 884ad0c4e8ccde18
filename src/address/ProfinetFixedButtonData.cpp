#include "ProfinetFixedButtonData.h"

namespace CommunicationControl {

ProfinetFixedButtonData::ProfinetFixedButtonData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent)
    : BaseItem(info, parent)
{
}

void ProfinetFixedButtonData::setReadAddressId(int value)
{
    m_readAddressId = value;
    emit readAddressIdChanged();
}

void ProfinetFixedButtonData::setWriteAddressId(int value)
{
    m_writeAddressId = value;
    emit writeAddressIdChanged();
}

void ProfinetFixedButtonData::setWindowTitle(const QString &value)
{
    m_windowTitle = value;
    emit windowTitleChanged();
}

void ProfinetFixedButtonData::setReadAddressText(const QString &value)
{
    m_readAddressText = value;
    emit readAddressTextChanged();
}

void ProfinetFixedButtonData::setWriteAddressText(const QString &value)
{
    m_writeAddressText = value;
    emit writeAddressTextChanged();
}

} // namespace CommunicationControl
