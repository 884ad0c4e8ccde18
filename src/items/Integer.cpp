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
    IntegerData *data = read ? makeData<IntegerData>(info) : nullptr;
    if (!data)
        return;
    if (hasTip)
        data->setMessageTip(true, tip);
    data->setCurrentValue(current);
    data->setMinValue(minimum);
    data->setMaxValue(maximum);
    data->setStepValue(step);
}

} // namespace CommunicationControl
