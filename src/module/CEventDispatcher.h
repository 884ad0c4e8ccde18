#pragma once
// Bridge from the gateway's callback threads into the module: events are
// copied and re-emitted (queued to the GUI thread by the receivers' connection);
// results are handed straight to the devices manager on the calling thread.

#include "GwPlatform.h"

#include <QMetaType>
#include <QObject>
#include <QSharedPointer>

Q_DECLARE_METATYPE(eGW_EVENT_TYPE)
Q_DECLARE_METATYPE(QSharedPointer<char>)

class CEventDispatcher : public QObject
{
    Q_OBJECT
public:
    static CEventDispatcher *Instance();

    void SendEvent(eGW_EVENT_TYPE eventType, void *data, int dataLen);
    void SendEvent(int moduleId, int addressId, void *data, int dataLen);

signals:
    void EventTriggered(eGW_EVENT_TYPE eEventType, QSharedPointer<char> spData, int nDataLen);

private:
    CEventDispatcher();
};
