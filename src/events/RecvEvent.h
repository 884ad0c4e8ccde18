#pragma once
// A receive event: what is to be done with the data one device receives. The
// base carries the kind, the bound device, the number and the name; the four
// subclasses carry the settings of each kind. Kept in memory only.

#include <QObject>
#include <QStringList>

class RecvEvent : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList splitChars READ splitChars WRITE setSplitChars NOTIFY splitCharsChanged DESIGNABLE false)
    Q_PROPERTY(int enumIndex READ enumIndex WRITE setEnumIndex NOTIFY enumIndexChanged DESIGNABLE false)
    Q_PROPERTY(int bindDeviceID READ bindDeviceID WRITE setBindDeviceID NOTIFY bindDeviceIDChanged)
    Q_PROPERTY(int eventID READ eventID WRITE setEventID NOTIFY eventIDChanged)
    Q_PROPERTY(QString eventName READ eventName WRITE setEventName NOTIFY eventNameChanged)

public:
    explicit RecvEvent(QObject *parent = nullptr, int kind = 0);

    // These store only: the page reads them when it needs them.
    Q_INVOKABLE int bindDeviceID() const { return m_bindDeviceID; }
    Q_INVOKABLE void setBindDeviceID(int id) { m_bindDeviceID = id; }
    Q_INVOKABLE int eventID() const { return m_eventID; }
    Q_INVOKABLE void setEventID(int id) { m_eventID = id; }
    Q_INVOKABLE QString eventName() const { return m_eventName; }
    Q_INVOKABLE void setEventName(QString name) { m_eventName = name; }

    QStringList splitChars() const { return m_splitChars; }
    void setSplitChars(const QStringList &chars);
    int enumIndex() const { return m_kind; }
    void setEnumIndex(int kind);

signals:
    void bindDeviceIDChanged();
    void eventIDChanged();
    void eventNameChanged();
    void splitCharsChanged();
    void enumIndexChanged();

private:
    int m_kind;
    int m_bindDeviceID = -1;
    int m_eventID = 0;
    QString m_eventName;
    // "\\r", "\\n" and "\\r\\n" are texts; whoever applies a separator turns them into CR, LF, CR LF.
    QStringList m_splitChars = {QStringLiteral(","), QStringLiteral(";"), QStringLiteral("_"),
                                QStringLiteral("\\r"), QStringLiteral("\\n"), QStringLiteral("\\r\\n")};
};
