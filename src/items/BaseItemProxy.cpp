#include "BaseItemProxy.h"

#include "CommLog.h"
#include "GwParamRecord.h"

#include <cstring>
#include <tinyxml2.h>

namespace {
QString elementText(const tinyxml2::XMLElement *element)
{
    const char *text = element->GetText();
    return text ? QString::fromUtf8(text) : QString();
}

bool named(const tinyxml2::XMLElement *element, const char *name)
{
    return std::strcmp(element->Name(), name) == 0;
}
} // namespace

bool BaseItemProxy::xmlBool(const char *text)
{
    return text && GwParamRecord::isTrueText(QByteArray(text)); // the gateway's rule as well
}

int BaseItemProxy::xmlInt(const tinyxml2::XMLElement *element)
{
    return element ? element->IntText(0) : 0;
}

QString BaseItemProxy::xmlText(const tinyxml2::XMLElement *element)
{
    return element ? elementText(element) : QString();
}

bool BaseItemProxy::isNamed(const tinyxml2::XMLElement *element, const char *name)
{
    return element && named(element, name);
}

bool BaseItemProxy::readItemElement(tinyxml2::XMLElement *element, _S_Comm_BasicDefaultInfo_ &info,
                                    const std::function<void(tinyxml2::XMLElement *)> &perChild,
                                    bool readSupportChangeEnable) const
{
    if (!element || !parent())
        return false;
    info.itemKind = 2;
    info.typeName = QString::fromUtf8(element->Name());
    const char *name = element->Attribute("Name");
    info.name = name ? QString::fromUtf8(name) : QString();
    if (const char *generate = element->Attribute("IsGenerate"))
        info.generate = xmlBool(generate);
    for (tinyxml2::XMLElement *child = element->FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (named(child, "DisplayName"))
            info.displayName = elementText(child);
        else if (named(child, "Description"))
            info.description = elementText(child);
        else if (named(child, "AccessMode"))
            info.accessMode = elementText(child);
        else if (named(child, "CustomVisible"))
            info.customVisible = xmlBool(child->GetText());
        else if (readSupportChangeEnable && named(child, "SupportChangeEnable"))
            info.supportChangeEnable = xmlBool(child->GetText());
        else if (perChild)
            perChild(child);
    }
    return true;
}

BaseItemProxy::BaseItemProxy(QObject *parent)
    : QObject(parent)
{
}

void BaseItemProxy::setQmlName(const QString &name)
{
    if (name == m_qmlName)
        return;
    m_qmlName = name;
    emit qmlNameChanged();
}

void BaseItemProxy::adoptData(BaseItem *data, const char *className)
{
    if (!data) {
        COMM_LOG(CommLogInfo, "new %s failed", className);
        return;
    }
    m_data = data;
    emit dataChanged();
}

void BaseItemProxy::setDeviceID(int id)
{
    if (m_data)
        m_data->setModuID(uint(id));
}

void BaseItemProxy::setModuleParam()
{
    if (m_data)
        m_data->SetModuleParam();
}

void BaseItemProxy::getModuleParam()
{
    if (m_data)
        m_data->GwGetModuleParam();
}

void BaseItemProxy::setItemEnable(bool enable)
{
    if (m_data)
        m_data->setSupportEnable(enable);
}

// "Property" names the condition, "Value" gives its expected text (starting as
// "CurValue"); both store the pair, a later one replacing the earlier value.
void BaseItemProxy::ParseTriggerElement(tinyxml2::XMLElement *element, S_TriggersNodeInfo &trigger)
{
    if (!element)
        return;
    QString property;
    QString value = QStringLiteral("CurValue");
    for (tinyxml2::XMLElement *child = element->FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (named(child, "Property")) {
            property = elementText(child);
            trigger.conditions.insert(property, value);
        } else if (named(child, "Value")) {
            value = elementText(child);
            trigger.conditions.insert(property, value);
        } else if (named(child, "Setters")) {
            ParseSettersElement(child, trigger.setters);
        }
    }
}

QList<S_TriggersNodeInfo> BaseItemProxy::ParseTriggersElement(tinyxml2::XMLElement *triggers)
{
    QList<S_TriggersNodeInfo> list;
    if (!triggers)
        return list;
    for (auto *t = triggers->FirstChildElement("Trigger"); t; t = t->NextSiblingElement("Trigger")) {
        S_TriggersNodeInfo trigger;
        ParseTriggerElement(t, trigger);
        list.append(trigger);
    }
    return list;
}

// The three texts carry over from one "Setter" to the next: a field that a
// later setter omits keeps the earlier one's text.
void BaseItemProxy::ParseSettersElement(tinyxml2::XMLElement *element, QList<S_SetterNodeInfo> &setters)
{
    if (!element)
        return;
    S_SetterNodeInfo current;
    for (tinyxml2::XMLElement *setter = element->FirstChildElement("Setter"); setter;
         setter = setter->NextSiblingElement("Setter")) {
        for (tinyxml2::XMLElement *child = setter->FirstChildElement(); child; child = child->NextSiblingElement()) {
            if (named(child, "TargetName"))
                current.targetName = elementText(child);
            else if (named(child, "OperationName") || named(child, "PropertyName"))
                current.operation = elementText(child);
            else if (named(child, "OperationParams") || named(child, "Value"))
                current.params = elementText(child);
        }
        current.target = nullptr;
        setters.append(current);
    }
}
