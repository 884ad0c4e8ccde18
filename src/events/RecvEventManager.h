#pragma once
// Creates and lists the receive events. Events are numbered from 0 in order
// of creation, never renumbered and never removed; they live in memory only.

#include <QList>
#include <QObject>

class RecvEvent;

class RecvEventManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QList<RecvEvent *> recvEvents READ recvEvents WRITE setRecvEvents NOTIFY recvEventsChanged)

public:
    enum RecvEventType { TextProtocolParse = 1, TextProtocolCompare = 2, ByteMatchCompare = 3, Script = 4 };
    Q_ENUM(RecvEventType)

    static RecvEventManager *Instance();

    // Null for an unknown type; the event's number is used up either way.
    Q_INVOKABLE RecvEvent *createRecvEvent(RecvEventType type);
    QList<RecvEvent *> recvEvents() const { return m_events; }
    void setRecvEvents(QList<RecvEvent *> events);

signals:
    void recvEventsChanged();

private:
    RecvEventManager();
    RecvEvent *makeEvent(RecvEventType type, int number);

    QList<RecvEvent *> m_events;
    int m_nextNumber = 0;
};
