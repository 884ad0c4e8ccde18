#include "Boolean.h"

#include "GwXMLNodeItemFactory.h"
#include "ItemQmlRegistration.h"

#include <new>
#include <tinyxml2.h>

namespace CommunicationControl {

QObject *gwObjectCreatorBoolean(QObject *parent)
{
    return new (std::nothrow) Boolean(parent);
}

namespace {
GwNodeItemRegistration g_gwCreatorRegisterBoolean("Boolean", gwObjectCreatorBoolean);
} // namespace

Boolean::Boolean(QObject *parent)
    : BaseItemProxy(parent)
{
    setQmlName(QStringLiteral("Boolean.qml"));
    registerItemDataType<BooleanData>("lm.cpp.Boolean", "BooleanData");
}

void Boolean::CreateControl(tinyxml2::XMLElement *element)
{
    _S_Comm_BasicDefaultInfo_ info;
    bool current = false;
    QList<S_TriggersNodeInfo> triggers;
    const bool read = readItemElement(element, info, [&](tinyxml2::XMLElement *child) {
        if (isNamed(child, "CurValue")) {
            current = xmlBool(child->GetText());
        } else if (isNamed(child, "Triggers")) {
            triggers = ParseTriggersElement(child);
        }
    });
    BooleanData *data = read ? makeData<BooleanData>(info) : nullptr;
    if (!data)
        return;
    data->SetTriggers(triggers);
    data->updateCurValue(current);
}

} // namespace CommunicationControl
