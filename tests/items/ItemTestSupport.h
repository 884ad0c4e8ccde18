#pragma once
// Builds one item from an XML snippet on a device, as the item factory does.

#include "BaseItemProxy.h"
#include "CommDevice.h"
#include "GwXMLNodeItemFactory.h"

#include <tinyxml2.h>

template <typename Proxy>
Proxy *buildItem(CommDevice &device, const char *xml)
{
    tinyxml2::XMLDocument doc;
    if (doc.Parse(xml) != tinyxml2::XML_SUCCESS)
        return nullptr;
    auto *proxy = qobject_cast<Proxy *>(
        GwXMLNodeItemFactory::Instance().CreateNodeItem(QString::fromUtf8(doc.RootElement()->Name()), &device));
    if (!proxy)
        return nullptr;
    proxy->CreateControl(doc.RootElement());
    device.AddDeviceItem(proxy);
    return proxy;
}
