#include "EndChar.h"

#include "GwXMLNodeItemFactory.h"
#include "ItemQmlRegistration.h"

#include <new>
#include <tinyxml2.h>

namespace CommunicationControl {

QObject *gwObjectCreatorEndChar(QObject *parent)
{
    return new (std::nothrow) EndChar(parent);
}

namespace {
GwNodeItemRegistration g_gwCreatorRegisterEndChar("EndChar", gwObjectCreatorEndChar);
} // namespace

EndChar::EndChar(QObject *parent)
    : BaseItemProxy(parent)
{
    setQmlName(QStringLiteral("EndChar.qml"));
    registerItemDataType<EndCharData>("lm.cpp.EndChar", "EndCharData");
}

void EndChar::CreateControl(tinyxml2::XMLElement *element)
{
    _S_Comm_BasicDefaultInfo_ info;
    QString current;
    int maxLength = 0;
    const bool read = readItemElement(element, info, [&](tinyxml2::XMLElement *child) {
        if (isNamed(child, "CurValue"))
            current = xmlText(child);
        else if (isNamed(child, "MaxLen"))
            maxLength = xmlInt(child);
    });
    EndCharData *data = read ? makeData<EndCharData>(info) : nullptr;
    if (!data)
        return;
    data->setMaxLength(maxLength);
    data->updateCurValue(current);
}

} // namespace CommunicationControl
