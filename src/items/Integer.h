#pragma once

#include "BaseItemProxy.h"
#include "IntegerData.h"

namespace CommunicationControl {

// Proxy of a "Integer" item: reads its element and owns its IntegerData.
class Integer : public BaseItemProxy
{
    Q_OBJECT
    Q_PROPERTY(CommunicationControl::IntegerData *data READ data NOTIFY dataChanged)

public:
    explicit Integer(QObject *parent);

    IntegerData *data() const { return dataAs<IntegerData>(); }
    void CreateControl(tinyxml2::XMLElement *element) override;

};

} // namespace CommunicationControl
