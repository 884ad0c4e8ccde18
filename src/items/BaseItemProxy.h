#pragma once
// Base of every parameter item's proxy: made by the item factory with the
// device as parent, reads the item element, owns the data model and names
// the QML file that draws the item. Subclasses make their model with
// makeData<T>() and add a `data` property typed as T (READ dataAs<T>(),
// NOTIFY dataChanged).

#include "BaseItem.h"

#include <QObject>
#include <QString>
#include <functional>
#include <new>

namespace tinyxml2 {
class XMLElement;
}

class BaseItemProxy : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString qmlName READ qmlName WRITE setQmlName NOTIFY qmlNameChanged)

public:
    explicit BaseItemProxy(QObject *parent);

    QString qmlName() const { return m_qmlName; }
    void setQmlName(const QString &name);

    // The data model, or null while the element has not been read.
    BaseItem *baseData() const { return m_data; }

    // Reads the item element and makes the data model.
    virtual void CreateControl(tinyxml2::XMLElement *element) = 0;

    static void ParseTriggerElement(tinyxml2::XMLElement *element, S_TriggersNodeInfo &trigger);
    static void ParseSettersElement(tinyxml2::XMLElement *element, QList<S_SetterNodeInfo> &setters);
    // Every "Trigger" of a "Triggers" element, in order.
    static QList<S_TriggersNodeInfo> ParseTriggersElement(tinyxml2::XMLElement *triggers);

public slots:
    // Passes the module id to the data model's moduID.
    virtual void setDeviceID(int id);
    virtual void setModuleParam();
    virtual void getModuleParam();
    virtual void setItemEnable(bool enable);

signals:
    void qmlNameChanged();
    void dataChanged();

protected:
    // Makes the data model for the element just read (a child of the device,
    // owned by this proxy) without throwing and announces it; null, logged,
    // when it cannot be allocated.
    template <typename Data>
    Data *makeData(const _S_Comm_BasicDefaultInfo_ &info)
    {
        Data *data = new (std::nothrow) Data(info, parent());
        adoptData(data, Data::staticMetaObject.className());
        return data;
    }
    // The data model as the proxy's own class, or null.
    template <typename Data>
    Data *dataAs() const
    {
        return qobject_cast<Data *>(m_data);
    }

    // Reads an item element's attributes and common children into info and hands
    // every other child to perChild. False (nothing read) when the element is
    // null or the proxy has no device to build the data model for.
    bool readItemElement(tinyxml2::XMLElement *element, _S_Comm_BasicDefaultInfo_ &info,
                         const std::function<void(tinyxml2::XMLElement *)> &perChild = {},
                         bool readSupportChangeEnable = true) const;

    // XML values: booleans are true only for "True" and "true"; integers are 0
    // where the text is not one.
    static bool xmlBool(const char *text);
    static int xmlInt(const tinyxml2::XMLElement *element);
    static QString xmlText(const tinyxml2::XMLElement *element);
    static bool isNamed(const tinyxml2::XMLElement *element, const char *name);

private:
    void adoptData(BaseItem *data, const char *className);

    QString m_qmlName;
    BaseItem *m_data = nullptr; // child of the device, owned by this proxy
};
