#pragma once

#include "BaseItemProxy.h"
#include "IPStringData.h"

namespace CommunicationControl {

// Proxy of a "IPString" item: reads its element and owns its IPStringData.
class IPString : public BaseItemProxy
{
    Q_OBJECT
    Q_PROPERTY(CommunicationControl::IPStringData *data READ data NOTIFY dataChanged)

public:
    explicit IPString(QObject *parent);

    IPStringData *data() const { return dataAs<IPStringData>(); }
    void CreateControl(tinyxml2::XMLElement *element) override;

};

} // namespace CommunicationControl
