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

    EnumerationData *data() const { return m_data; }
    void CreateControl(tinyxml2::XMLElement *element) override;

public slots:
    void setDeviceID(int id) override;

private:
    static QList<_S_EnumeraInfo_> readEntries(tinyxml2::XMLElement *list);

    EnumerationData *m_data = nullptr;
};

} // namespace CommunicationControl
