#pragma once

#include "BaseItemProxy.h"
#include "ProfinetFixedButtonData.h"

namespace CommunicationControl {

class ProfinetFixedButton : public BaseItemProxy
{
    Q_OBJECT
    Q_PROPERTY(CommunicationControl::ProfinetFixedButtonData *data READ data NOTIFY dataChanged)

public:
    explicit ProfinetFixedButton(QObject *parent);

    ProfinetFixedButtonData *data() const { return dataAs<ProfinetFixedButtonData>(); }
    // Reads the item element (the address ids default to the gateway's fixed
    // ids 0 and 1000 when it lacks them) and builds the bit entries.
    void CreateControl(tinyxml2::XMLElement *element) override;
    void setDeviceID(int id) override;

};

} // namespace CommunicationControl
