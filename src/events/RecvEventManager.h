#pragma once
// Creates and lists the receive events (configuration models kept in memory).

#include <QObject>

class RecvEventManager : public QObject
{
    Q_OBJECT
public:
    enum RecvEventType { TextProtocolParse = 1, TextProtocolCompare = 2, ByteMatchCompare = 3, Script = 4 };
    Q_ENUM(RecvEventType)

    static RecvEventManager *Instance();

private:
    RecvEventManager() = default;
};
