#pragma once

#include "BaseItemProxy.h"
#include "EnumEntryCOMData.h"

namespace CommunicationControl {

// Proxy of a "EnumEntryCOM" item: reads its element and owns its EnumEntryCOMData.
class EnumEntryCOM : public BaseItemProxy
{
    Q_OBJECT
    Q_PROPERTY(CommunicationControl::EnumEntryCOMData *data READ data NOTIFY dataChanged)

public:
    explicit EnumEntryCOM(QObject *parent);

    EnumEntryCOMData *data() const { return dataAs<EnumEntryCOMData>(); }
    void CreateControl(tinyxml2::XMLElement *element) override;

};

} // namespace CommunicationControl
