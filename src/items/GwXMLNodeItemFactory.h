#pragma once
// Registry from item type name (the XML tag) to the function that creates the
// item's proxy. Filled by static registration objects in each item's source.

#include <QMap>
#include <QObject>
#include <QString>

using GwNodeItemCreator = QObject *(*)(QObject *parent);

class GwXMLNodeItemFactory
{
public:
    static GwXMLNodeItemFactory &Instance();

    // A second registration of the same name is ignored.
    void RegisterNodeItemType(const QString &typeName, GwNodeItemCreator creator);
    // Exact, case-sensitive lookup; null for an unknown name or a failed allocation.
    QObject *CreateNodeItem(const QString &typeName, QObject *parent) const;
    QStringList registeredTypes() const { return m_creators.keys(); }

private:
    GwXMLNodeItemFactory() = default;
    QMap<QString, GwNodeItemCreator> m_creators;
};

// One static object per XML type name registers its creator at load time.
struct GwNodeItemRegistration {
    GwNodeItemRegistration(const char *typeName, GwNodeItemCreator creator)
    {
        GwXMLNodeItemFactory::Instance().RegisterNodeItemType(QString::fromLatin1(typeName), creator);
    }
};
