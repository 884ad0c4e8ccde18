#include "Category.h"

#include "GwXMLNodeItemFactory.h"
#include "ItemQmlRegistration.h"

#include <new>
#include <tinyxml2.h>

namespace CommunicationControl {

QObject *gwObjectCreatorCategory(QObject *parent)
{
    return new (std::nothrow) Category(parent);
}

namespace {
GwNodeItemRegistration g_gwCreatorRegisterCategory("Category", gwObjectCreatorCategory);
} // namespace

Category::Category(QObject *parent)
    : BaseItemProxy(parent)
{
    setQmlName(QStringLiteral("Category.qml"));
    registerItemDataType<CategoryData>("lm.cpp.Category", "CategoryData");
}

// A heading: read only when the tag is exactly "Category" and it has a name,
// which serves as display name, description and key; "CustomVisible" is an
// attribute here.
void Category::CreateControl(tinyxml2::XMLElement *element)
{
    if (!element || !parent() || !isNamed(element, "Category") || !element->Attribute("Name"))
        return;
    _S_Comm_BasicDefaultInfo_ info;
    info.typeName = QStringLiteral("Category");
    info.name = QString::fromUtf8(element->Attribute("Name"));
    info.displayName = info.name;
    info.description = info.name;
    if (const char *visible = element->Attribute("CustomVisible"))
        info.customVisible = xmlBool(visible);
    info.generate = true;
    info.supportChangeEnable = false;
    makeData<CategoryData>(info);
}

} // namespace CommunicationControl
