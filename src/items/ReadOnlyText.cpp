#include "ReadOnlyText.h"

#include "GwXMLNodeItemFactory.h"
#include "ItemQmlRegistration.h"

#include <new>
#include <tinyxml2.h>

namespace CommunicationControl {

QObject *gwObjectCreatorReadOnlyText(QObject *parent)
{
    return new (std::nothrow) ReadOnlyText(parent);
}

namespace {
GwNodeItemRegistration g_gwCreatorRegisterReadOnlyText("ReadOnlyText", gwObjectCreatorReadOnlyText);
} // namespace

ReadOnlyText::ReadOnlyText(QObject *parent)
    : BaseItemProxy(parent)
{
    setQmlName(QStringLiteral("ReadOnlyText.qml"));
    registerItemDataType<ReadOnlyTextData>("lm.cpp.ReadOnlyText", "ReadOnlyTextData");
}

void ReadOnlyText::CreateControl(tinyxml2::XMLElement *element)
{
    _S_Comm_BasicDefaultInfo_ info;
    QString current;
    const bool read = readItemElement(
        element, info,
        [&](tinyxml2::XMLElement *child) {
            if (isNamed(child, "CurValue"))
                current = xmlText(child);
        },
        false);
    ReadOnlyTextData *data = read ? makeData<ReadOnlyTextData>(info) : nullptr;
    if (!data)
        return;
    data->updateCurValue(current);
}

} // namespace CommunicationControl
