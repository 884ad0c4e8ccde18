#pragma once

#include "BaseItem.h"

namespace CommunicationControl {

// The address table of one direction of a fieldbus device. Its table operations come with the fieldbus address work; for now it carries the values its element gives.
class AddressDataSetData : public BaseItem
{
    Q_OBJECT
    Q_PROPERTY(int addressType READ addressType WRITE setAddressType NOTIFY addressTypeChanged)
    Q_PROPERTY(int addressLow READ addressLow WRITE setAddressLow NOTIFY addressLowChanged)
    Q_PROPERTY(int addressHigh READ addressHigh WRITE setAddressHigh NOTIFY addressHighChanged)
    Q_PROPERTY(int softAddressMin READ softAddressMin WRITE setSoftAddressMin NOTIFY softAddressMinChanged)
    Q_PROPERTY(int softAddressMax READ softAddressMax WRITE setSoftAddressMax NOTIFY softAddressMaxChanged)
    Q_PROPERTY(int softAddressDefault READ softAddressDefault WRITE setSoftAddressDefault NOTIFY softAddressDefaultChanged)

public:
    AddressDataSetData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent);

    int addressType() const { return m_addressType; }
    void setAddressType(int value);
    int addressLow() const { return m_addressLow; }
    void setAddressLow(int value);
    int addressHigh() const { return m_addressHigh; }
    void setAddressHigh(int value);
    int softAddressMin() const { return m_softAddressMin; }
    void setSoftAddressMin(int value);
    int softAddressMax() const { return m_softAddressMax; }
    void setSoftAddressMax(int value);
    int softAddressDefault() const { return m_softAddressDefault; }
    void setSoftAddressDefault(int value);

signals:
    void addressTypeChanged();
    void addressLowChanged();
    void addressHighChanged();
    void softAddressMinChanged();
    void softAddressMaxChanged();
    void softAddressDefaultChanged();

private:
    int m_addressType = 1;
    int m_addressLow = 1;
    int m_addressHigh = 1;
    int m_softAddressMin = 0;
    int m_softAddressMax = 0;
    int m_softAddressDefault = 0;
};

} // namespace CommunicationControl
