#include "ModuXMLManage.h"

#include "Slog.h"

#include <QDir>
#include <cstring>
#include <tinyxml2.h>

// Tab description format:
//   <AlgorithmTab>                      root (any name)
//     <Tab Name="...">                  optional grouping, any number, may nest
//       <Integer Name="TargetPort">...  item element: its tag is the item type
//     </Tab>
//     <Boolean Name="...">...           items may also sit directly under the root
//   </AlgorithmTab>
// The reader calls the item callback once per item element in document order;
// the children of an item are read by the item itself.

namespace {
constexpr char kLogTag[] = "HostXml";

void walkItems(tinyxml2::XMLElement *parent, _S_TABXML_EVENTS_ &events)
{
    for (tinyxml2::XMLElement *e = parent->FirstChildElement(); e; e = e->NextSiblingElement()) {
        const char *name = e->Name();
        if (name && std::strcmp(name, "Tab") == 0) {
            walkItems(e, events);
            continue;
        }
        if (events.itemCallback)
            events.itemCallback(e, QString::fromUtf8(name ? name : ""));
    }
}

int parseFile(const QString &path, _S_TABXML_EVENTS_ &events)
{
    tinyxml2::XMLDocument doc;
    const tinyxml2::XMLError err = doc.LoadFile(QFile::encodeName(path).constData());
    if (err != tinyxml2::XML_SUCCESS) {
        Slog_LogPrint(kLogTag, 4, "[%s] [%s@%d] cannot read %s: %s", kLogTag, __func__, __LINE__,
                      path.toUtf8().constData(), doc.ErrorStr());
        return -1;
    }
    tinyxml2::XMLElement *root = doc.RootElement();
    if (!root)
        return -1;
    walkItems(root, events);
    return 0;
}

QString joinPath(const QString &baseDir, const QString &moduleType, const QString &fileName)
{
    return QDir(baseDir).filePath(moduleType + QLatin1Char('/') + fileName);
}
} // namespace

ModuXMLManage *ModuXMLManage::Instance()
{
    static ModuXMLManage manager;
    return &manager;
}

int ModuXMLManage::ParseModuTabXML(const QString &moduleType, const QString &baseDir, _S_TABXML_EVENTS_ &events)
{
    return ParseModuTabXML(moduleType, moduleType + QStringLiteral("AlgorithmTab.xml"), baseDir, events);
}

int ModuXMLManage::ParseModuTabXML(const QString &moduleType, const QString &fileName, const QString &baseDir,
                                   _S_TABXML_EVENTS_ &events)
{
    if (moduleType.isEmpty() || fileName.isEmpty())
        return -1;
    return parseFile(joinPath(baseDir, moduleType, fileName), events);
}
