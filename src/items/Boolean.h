#pragma once

#include "BaseItemProxy.h"
#include "BooleanData.h"

namespace CommunicationControl {

// Proxy of a "Boolean" item: reads its element and owns its BooleanData.
class Boolean : public BaseItemProxy
{
    Q_OBJECT
    Q_PROPERTY(CommunicationControl::BooleanData *data READ data NOTIFY dataChanged)

public:
    explicit Boolean(QObject *parent);

    BooleanData *data() const { return dataAs<BooleanData>(); }
    void CreateControl(tinyxml2::XMLElement *element) override;

};

} // namespace CommunicationControl
