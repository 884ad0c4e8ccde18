#include "Enumeration.h"

#include "GwXMLNodeItemFactory.h"
#include "ItemQmlRegistration.h"

#include <new>
#include <tinyxml2.h>

namespace CommunicationControl {

QObject *gwObjectCreatorEnumeration(QObject *parent)
{
    return new (std::nothrow) Enumeration(parent);
}

namespace {
GwNodeItemRegistration g_gwCreatorRegisterEnumeration("Enumeration", gwObjectCreatorEnumeration);
GwNodeItemRegistration g_gwCreatorRegisterEnumerationBaudrate("EnumerationBaudrate", gwObjectCreatorEnumeration);
} // namespace

Enumeration::Enumeration(QObject *parent)
    : BaseItemProxy(parent)
{
    setQmlName(QStringLiteral("Enumeration.qml"));
    registerItemDataType<EnumerationData>("lm.cpp.Enumeration", "EnumerationData");
}

void Enumeration::CreateControl(tinyxml2::XMLElement *element)
{
    _S_Comm_BasicDefaultInfo_ info;
    QList<_S_EnumeraInfo_> entries;
    QList<S_TriggersNodeInfo> triggers;
    QString current, fallback, tip;
    bool hasTip = false;
    bool enabled = true;
    const bool read = readItemElement(element, info, [&](tinyxml2::XMLElement *child) {
        if (isNamed(child, "CurValue"))
            current = xmlText(child);
        else if (isNamed(child, "DefaultValue"))
            fallback = xmlText(child);
        else if (isNamed(child, "MessageTip")) {
            hasTip = true;
            tip = xmlText(child);
        } else if (isNamed(child, "Enable"))
            enabled = xmlBool(child->GetText());
        else if (isNamed(child, "EnumEntrys"))
            entries = readEntries(child);
        else if (isNamed(child, "Triggers")) {
            triggers = ParseTriggersElement(child);
        }
    });
    EnumerationData *data = read ? makeData<EnumerationData>(info) : nullptr;
    if (!data)
        return;
    data->setEntries(entries);
    data->SetTriggers(triggers);
    data->setMessageTip(hasTip, tip);
    if (!enabled)
        data->setAlwaysDisable(true);
    // "CurValue" (or, without it, "DefaultValue") names the entry by its value.
    const int index = data->indexOfValue((current.isEmpty() ? fallback : current).toInt());
    data->updateCurIndex(index < 0 ? 0 : index);
}

// Walks "EnumEntrys" with an explicit stack of elements: an entry is pushed,
// its children are read, and it is recorded (unless "DeviceType" is 1) when
// they are exhausted.
QList<_S_EnumeraInfo_> Enumeration::readEntries(tinyxml2::XMLElement *list)
{
    QList<_S_EnumeraInfo_> entries;
    struct Frame {
        tinyxml2::XMLElement *entry;
        tinyxml2::XMLElement *child;
        _S_EnumeraInfo_ info;
        int deviceType;
    };
    QVector<Frame> stack;
    for (auto *e = list->FirstChildElement(); e; e = e->NextSiblingElement()) {
        if (!isNamed(e, "EnumEntry") && !isNamed(e, "EnumEntryStr"))
            continue;
        const char *name = e->Attribute("Name");
        stack.push_back({e, e->FirstChildElement(), _S_EnumeraInfo_{}, 0});
        stack.back().info.name = name ? QString::fromUtf8(name) : QString();
        while (!stack.isEmpty()) {
            Frame &top = stack.back();
            if (!top.child) {
                if (top.deviceType != 1)
                    entries.append(top.info);
                stack.pop_back();
                continue;
            }
            tinyxml2::XMLElement *child = top.child;
            top.child = child->NextSiblingElement();
            if (isNamed(child, "Description"))
                top.info.description = xmlText(child);
            else if (isNamed(child, "DisplayName"))
                top.info.displayName = xmlText(child);
            else if (isNamed(child, "Value"))
                top.info.value = xmlInt(child);
            else if (isNamed(child, "DeviceType"))
                top.deviceType = xmlInt(child);
        }
    }
    return entries;
}

} // namespace CommunicationControl
