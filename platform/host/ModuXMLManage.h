#pragma once
// Host reader of module tab descriptions: walks a module type's tab XML and
// calls the item callback once per item element, in document order, with the
// element (a tinyxml2::XMLElement*) and its tag name.

#include <QString>
#include <functional>

struct _S_TABXML_EVENTS_ {
    std::function<void(void *element, QString typeName)> itemCallback;
};

class ModuXMLManage
{
public:
    static ModuXMLManage *Instance();

    // Reads <baseDir>/<moduleType>/<moduleType>AlgorithmTab.xml.
    int ParseModuTabXML(const QString &moduleType, const QString &baseDir, _S_TABXML_EVENTS_ &events);
    // Reads <baseDir>/<moduleType>/<fileName>.
    int ParseModuTabXML(const QString &moduleType, const QString &fileName, const QString &baseDir,
                        _S_TABXML_EVENTS_ &events);
    // Both return 0, or -1 when the file is missing or not well-formed.
};
