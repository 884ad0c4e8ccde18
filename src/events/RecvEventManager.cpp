#include "RecvEventManager.h"

#include "RecvEvent4ByteMatchCompare.h"
#include "RecvEvent4Script.h"
#include "RecvEvent4TextProtocolCompare.h"
#include "RecvEvent4TextProtocolParse.h"

#include <QQmlEngine>
#include <QVector>
#include <new>

RecvEventManager::RecvEventManager()
{
    qRegisterMetaType<QVector<RecvEvent *>>("QVector<RecvEvent*>");
    // The header only declares RecvEvent, so moc cannot register the list
    // property's type; without this QML reads recvEvents as undefined.
    qRegisterMetaType<QList<RecvEvent *>>("QList<RecvEvent*>");
    qmlRegisterType<RecvEvent>("lm.cpp.RecvEvent", 1, 0, "RecvEvent");
    qmlRegisterType<RecvEvent4TextProtocolParse>("lm.cpp.RecvEvent4TextProtocolParse", 1, 0,
                                                 "RecvEvent4TextProtocolParse");
    qmlRegisterType<RecvEvent4TextProtocolCompare>("lm.cpp.RecvEvent4TextProtocolCompare", 1, 0,
                                                   "RecvEvent4TextProtocolCompare");
    qmlRegisterType<RecvEvent4ByteMatchCompare>("lm.cpp.RecvEvent4ByteMatchCompare", 1, 0,
                                                "RecvEvent4ByteMatchCompare");
    qmlRegisterType<RecvEvent4Script>("lm.cpp.RecvEvent4Script", 1, 0, "RecvEvent4Script");
}

RecvEventManager *RecvEventManager::Instance()
{
    static RecvEventManager manager;
    return &manager;
}

RecvEvent *RecvEventManager::makeEvent(RecvEventType type, int number)
{
    RecvEvent *event = nullptr;
    QString pattern;
    switch (type) {
    case TextProtocolParse:
        event = new (std::nothrow) RecvEvent4TextProtocolParse(this);
        pattern = QStringLiteral("%1 Text-ProParse");
        break;
    case TextProtocolCompare:
        event = new (std::nothrow) RecvEvent4TextProtocolCompare(this);
        pattern = QStringLiteral("%1 Text-ProCompare");
        break;
    case ByteMatchCompare:
        event = new (std::nothrow) RecvEvent4ByteMatchCompare(this);
        pattern = QStringLiteral("%1 Byte-ProMatch");
        break;
    case Script:
        event = new (std::nothrow) RecvEvent4Script(this);
        pattern = QStringLiteral("%1 Script");
        break;
    }
    if (event) {
        event->setEventID(number);
        event->setEventName(pattern.arg(number));
    }
    return event;
}

RecvEvent *RecvEventManager::createRecvEvent(RecvEventType type)
{
    const int number = m_nextNumber++;
    RecvEvent *event = makeEvent(type, number);
    if (!event)
        return nullptr;
    m_events.append(event);
    emit recvEventsChanged();
    return event;
}

void RecvEventManager::setRecvEvents(QList<RecvEvent *> events)
{
    m_events = events;
    emit recvEventsChanged();
}
