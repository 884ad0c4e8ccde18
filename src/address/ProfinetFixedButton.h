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
    void CreateControl(tinyxml2::XMLElement *element) override;

};

} // namespace CommunicationControl
