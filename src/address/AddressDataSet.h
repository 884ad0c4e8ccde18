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

    AddressDataSetData *data() const { return dataAs<AddressDataSetData>(); }
    void CreateControl(tinyxml2::XMLElement *element) override;

};

} // namespace CommunicationControl
