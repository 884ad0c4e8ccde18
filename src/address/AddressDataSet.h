#pragma once

#include "BaseItemProxy.h"
#include "AddressDataSetData.h"

namespace CommunicationControl {

class AddressDataSet : public BaseItemProxy
{
    Q_OBJECT
    Q_PROPERTY(CommunicationControl::AddressDataSetData *data READ data NOTIFY dataChanged)

public:
    explicit AddressDataSet(QObject *parent);

    AddressDataSetData *data() const { return m_data; }
    void CreateControl(tinyxml2::XMLElement *element) override;

public slots:
    void setDeviceID(int id) override;

private:
    AddressDataSetData *m_data = nullptr;
};

} // namespace CommunicationControl
