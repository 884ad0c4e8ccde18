#include "GSDMLXMLHelper.h"

#include "CommLog.h"
#include "CommPaths.h"

#include <QFile>
#include <cstring>
#include <tinyxml2.h>

namespace CommunicationControl {

namespace {
constexpr char kDescriptionFile[] = "ProfinetModule/ProfinetModuleFixedAddressParam.xml";

bool isNamed(const tinyxml2::XMLElement *element, const char *name)
{
    return element && std::strcmp(element->Name(), name) == 0;
}

tinyxml2::XMLElement *childNamed(tinyxml2::XMLElement *parent, const char *name)
{
    for (tinyxml2::XMLElement *child = parent ? parent->FirstChildElement() : nullptr; child;
         child = child->NextSiblingElement())
        if (isNamed(child, name))
            return child;
    return nullptr;
}

// XML booleans are written "true" or "True".
bool isTrue(const char *text)
{
    return text && (std::strcmp(text, "true") == 0 || std::strcmp(text, "True") == 0);
}

QString attribute(const tinyxml2::XMLElement *element, const char *name)
{
    const char *value = element->Attribute(name);
    return value ? QString::fromUtf8(value) : QString();
}
} // namespace

GSDMLXMLHelper &GSDMLXMLHelper::Instance()
{
    static GSDMLXMLHelper helper;
    return helper;
}

bool GSDMLXMLHelper::Init()
{
    if (m_initialised)
        return true;
    m_initialised = true;
    // A retry after a failure starts from nothing.
    m_readBits.clear();
    m_writeBits.clear();
    m_texts.clear();
    tinyxml2::XMLDocument doc;
    const QString path = CommPaths::modulesDir() + QLatin1String(kDescriptionFile);
    if (doc.LoadFile(QFile::encodeName(path).constData()) != tinyxml2::XML_SUCCESS) {
        COMM_LOG(CommLogInfo, "LoadFile %s failed, error=%d", qUtf8Printable(path), int(doc.ErrorID()));
        m_initialised = false;
        return false;
    }
    if (!parseDocument(doc.RootElement())) {
        COMM_LOG(CommLogInfo, "%s is not a readable device description", qUtf8Printable(path));
        m_initialised = false;
        return false;
    }
    return true;
}

bool GSDMLXMLHelper::parseDocument(tinyxml2::XMLElement *root)
{
    tinyxml2::XMLElement *process = childNamed(childNamed(root, "ProfileBody"), "ApplicationProcess");
    if (!process)
        return false;
    for (tinyxml2::XMLElement *child = process->FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (isNamed(child, "ModuleList") && !ParseModuleListNode(child))
            return false;
        if (isNamed(child, "ExternalTextList") && !ParsePrimaryLanguageNode(child->FirstChildElement()))
            return false;
    }
    return true;
}

QString GSDMLXMLHelper::PrimaryLanguage(const QString &textId) const
{
    return m_texts.value(textId);
}

bool GSDMLXMLHelper::ParseModuleListNode(tinyxml2::XMLElement *element)
{
    if (!element)
        return false;
    for (tinyxml2::XMLElement *item = element->FirstChildElement(); item; item = item->NextSiblingElement()) {
        if (!isNamed(item, "ModuleItem"))
            continue;
        const QString id = attribute(item, "ID");
        if (id != QLatin1String("ID_Mod_1") && id != QLatin1String("ID_Mod_2"))
            continue;
        if (!ParseModuleItemNode(item))
            return false;
    }
    return true;
}

bool GSDMLXMLHelper::ParseModuleItemNode(tinyxml2::XMLElement *element)
{
    tinyxml2::XMLElement *ioData =
        childNamed(childNamed(childNamed(element, "VirtualSubmoduleList"), "VirtualSubmoduleItem"), "IOData");
    if (!ioData)
        return false;
    for (tinyxml2::XMLElement *child = ioData->FirstChildElement(); child; child = child->NextSiblingElement())
        if ((isNamed(child, "Input") || isNamed(child, "Output")) && !ParseDataItemNode(child))
            return false;
    return true;
}

// The byte index counts only the data items used as bits, whatever their
// data type: the description lists those first, one byte each.
bool GSDMLXMLHelper::ParseDataItemNode(tinyxml2::XMLElement *element)
{
    if (!element)
        return false;
    QMap<QString, QString> &bits = isNamed(element, "Input") ? m_writeBits : m_readBits;
    int byteIndex = 0;
    for (tinyxml2::XMLElement *item = element->FirstChildElement(); item; item = item->NextSiblingElement()) {
        if (!isNamed(item, "DataItem"))
            continue;
        if (!isTrue(item->Attribute("UseAsBits")))
            continue;
        for (tinyxml2::XMLElement *bit = item->FirstChildElement(); bit; bit = bit->NextSiblingElement()) {
            const QString offset = attribute(bit, "BitOffset");
            const QString textId = attribute(bit, "TextId");
            if (!offset.isEmpty() && !textId.isEmpty())
                bits.insert(QStringLiteral("%1.%2").arg(byteIndex).arg(offset), textId);
        }
        ++byteIndex;
    }
    return true;
}

bool GSDMLXMLHelper::ParsePrimaryLanguageNode(tinyxml2::XMLElement *element)
{
    if (!element)
        return false;
    for (tinyxml2::XMLElement *text = element->FirstChildElement(); text; text = text->NextSiblingElement()) {
        if (!isNamed(text, "Text"))
            continue;
        const QString textId = attribute(text, "TextId");
        const QString value = attribute(text, "Value");
        if (!textId.isEmpty() && !value.isEmpty())
            m_texts.insert(textId, value);
    }
    return true;
}

} // namespace CommunicationControl
