#include "GwXMLNodeItemFactory.h"

GwXMLNodeItemFactory &GwXMLNodeItemFactory::Instance()
{
    static GwXMLNodeItemFactory factory;
    return factory;
}

void GwXMLNodeItemFactory::RegisterNodeItemType(const QString &typeName, GwNodeItemCreator creator)
{
    if (!creator || m_creators.contains(typeName))
        return;
    m_creators.insert(typeName, creator);
}

QObject *GwXMLNodeItemFactory::CreateNodeItem(const QString &typeName, QObject *parent) const
{
    const GwNodeItemCreator creator = m_creators.value(typeName, nullptr);
    return creator ? creator(parent) : nullptr;
}
