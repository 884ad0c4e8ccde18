#include "AddressDataSetData.h"

namespace CommunicationControl {

AddressDataSetData::AddressDataSetData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent)
    : BaseItem(info, parent)
{
}

void AddressDataSetData::setAddressType(int value)
{
    m_addressType = value;
    emit addressTypeChanged();
}

void AddressDataSetData::setAddressLow(int value)
{
    m_addressLow = value;
    emit addressLowChanged();
}

void AddressDataSetData::setAddressHigh(int value)
{
    m_addressHigh = value;
    emit addressHighChanged();
}

void AddressDataSetData::setSoftAddressMin(int value)
{
    m_softAddressMin = value;
    emit softAddressMinChanged();
}

void AddressDataSetData::setSoftAddressMax(int value)
{
    m_softAddressMax = value;
    emit softAddressMaxChanged();
}

void AddressDataSetData::setSoftAddressDefault(int value)
{
    m_softAddressDefault = value;
    emit softAddressDefaultChanged();
}

} // namespace CommunicationControl
