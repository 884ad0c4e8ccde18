#pragma once

#include "BaseItemProxy.h"
#include "EnumerationData.h"

namespace CommunicationControl {

// Proxy of a "Enumeration" item: reads its element and owns its EnumerationData.
class Enumeration : public BaseItemProxy
{
    Q_OBJECT
    Q_PROPERTY(CommunicationControl::EnumerationData *data READ data NOTIFY dataChanged)

public:
    explicit Enumeration(QObject *parent);

    EnumerationData *data() const { return dataAs<EnumerationData>(); }
    void CreateControl(tinyxml2::XMLElement *element) override;

private:
    static QList<_S_EnumeraInfo_> readEntries(tinyxml2::XMLElement *list);

};

} // namespace CommunicationControl
