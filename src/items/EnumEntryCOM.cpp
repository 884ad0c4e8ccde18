#include "EnumEntryCOM.h"

#include "GwXMLNodeItemFactory.h"
#include "ItemQmlRegistration.h"

#include <new>
#include <tinyxml2.h>

namespace CommunicationControl {

QObject *gwObjectCreatorEnumEntryCOM(QObject *parent)
{
    return new (std::nothrow) EnumEntryCOM(parent);
}

namespace {
GwNodeItemRegistration g_gwCreatorRegisterEnumEntryCOM("EnumEntryCOM", gwObjectCreatorEnumEntryCOM);
} // namespace

EnumEntryCOM::EnumEntryCOM(QObject *parent)
    : BaseItemProxy(parent)
{
    setQmlName(QStringLiteral("EnumEntryCOM.qml"));
    registerItemDataType<EnumEntryCOMData>("lm.cpp.EnumEntryCOM", "EnumEntryCOMData");
}

void EnumEntryCOM::CreateControl(tinyxml2::XMLElement *element)
{
    _S_Comm_BasicDefaultInfo_ info;
    QString current;
    const bool read = readItemElement(element, info, [&](tinyxml2::XMLElement *child) {
        if (isNamed(child, "CurValue"))
            current = xmlText(child);
    });
    EnumEntryCOMData *data = read ? makeData<EnumEntryCOMData>(info) : nullptr;
    if (!data)
        return;
    data->getComList();
    data->selectPort(current);
}

} // namespace CommunicationControl
