#include "IPString.h"

#include "GwXMLNodeItemFactory.h"
#include "ItemQmlRegistration.h"

#include <new>
#include <tinyxml2.h>

namespace CommunicationControl {

QObject *gwObjectCreatorIPString(QObject *parent)
{
    return new (std::nothrow) IPString(parent);
}

namespace {
GwNodeItemRegistration g_gwCreatorRegisterIPString("IPString", gwObjectCreatorIPString);
} // namespace

IPString::IPString(QObject *parent)
    : BaseItemProxy(parent)
{
    setQmlName(QStringLiteral("IPString.qml"));
    registerItemDataType<IPStringData>("lm.cpp.IPString", "IPStringData");
}

void IPString::CreateControl(tinyxml2::XMLElement *element)
{
    _S_Comm_BasicDefaultInfo_ info;
    if (readItemElement(element, info))
        makeData<IPStringData>(info);
}

} // namespace CommunicationControl
