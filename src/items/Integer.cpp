#include "Integer.h"

#include "GwXMLNodeItemFactory.h"
#include "ItemQmlRegistration.h"

#include <new>
#include <tinyxml2.h>

namespace CommunicationControl {

QObject *gwObjectCreatorInteger(QObject *parent)
{
    return new (std::nothrow) Integer(parent);
}

namespace {
GwNodeItemRegistration g_gwCreatorRegisterInteger("Integer", gwObjectCreatorInteger);
} // namespace

Integer::Integer(QObject *parent)
    : BaseItemProxy(parent)
{
    setQmlName(QStringLiteral("Integer.qml"));
    registerItemDataType<IntegerData>("lm.cpp.Integer", "IntegerData");
}

void Integer::setDeviceID(int id)
{
    if (m_data)
        m_data->setModuID(uint(id));
}

void Integer::CreateControl(tinyxml2::XMLElement *element)
{
    _S_Comm_BasicDefaultInfo_ info;
    int current = 0, maximum = 0, minimum = 0, step = 0;
    bool hasTip = false;
    QString tip;
    const bool read = readItemElement(element, info, [&](tinyxml2::XMLElement *child) {
        if (isNamed(child, "CurValue"))
            current = xmlInt(child);
        else if (isNamed(child, "MaxValue"))
            maximum = xmlInt(child);
        else if (isNamed(child, "MinValue"))
            minimum = xmlInt(child);
        else if (isNamed(child, "IncValue"))
            step = xmlInt(child);
        else if (isNamed(child, "MessageTip")) {
            hasTip = true;
            tip = xmlText(child);
        }
    });
    if (!read)
        return;
    m_data = new (std::nothrow) IntegerData(info, parent());
    if (!m_data)
        return;
    setBaseData(m_data);
    if (hasTip)
        m_data->setMessageTip(true, tip);
    m_data->setCurrentValue(current);
    m_data->setMinValue(minimum);
    m_data->setMaxValue(maximum);
    m_data->setStepValue(step);
}

} // namespace CommunicationControl
