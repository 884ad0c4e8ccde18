#pragma once

#include "BaseItemProxy.h"
#include "EndCharData.h"

namespace CommunicationControl {

// Proxy of a "EndChar" item: reads its element and owns its EndCharData.
class EndChar : public BaseItemProxy
{
    Q_OBJECT
    Q_PROPERTY(CommunicationControl::EndCharData *data READ data NOTIFY dataChanged)

public:
    explicit EndChar(QObject *parent);

    EndCharData *data() const { return dataAs<EndCharData>(); }
    void CreateControl(tinyxml2::XMLElement *element) override;

};

} // namespace CommunicationControl
