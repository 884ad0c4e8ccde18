#pragma once

#include "BaseItemProxy.h"
#include "ReadOnlyTextData.h"

namespace CommunicationControl {

// Proxy of a "ReadOnlyText" item: reads its element and owns its ReadOnlyTextData.
class ReadOnlyText : public BaseItemProxy
{
    Q_OBJECT
    Q_PROPERTY(CommunicationControl::ReadOnlyTextData *data READ data NOTIFY dataChanged)

public:
    explicit ReadOnlyText(QObject *parent);

    ReadOnlyTextData *data() const { return dataAs<ReadOnlyTextData>(); }
    void CreateControl(tinyxml2::XMLElement *element) override;

};

} // namespace CommunicationControl
