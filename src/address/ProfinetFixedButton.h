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

    ProfinetFixedButtonData *data() const { return m_data; }
    void CreateControl(tinyxml2::XMLElement *element) override;

public slots:
    void setDeviceID(int id) override;

private:
    ProfinetFixedButtonData *m_data = nullptr;
};

} // namespace CommunicationControl
