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

    IPStringData *data() const { return m_data; }
    void CreateControl(tinyxml2::XMLElement *element) override;

public slots:
    void setDeviceID(int id) override;

private:
    IPStringData *m_data = nullptr;
};

} // namespace CommunicationControl
