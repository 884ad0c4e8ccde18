#pragma once

#include "ThreadedStreamChannel.h"

// The channel of a TCP server; the device itself is TcpServerWorker.
class TcpServerChannel : public ThreadedStreamChannel
{
    Q_OBJECT
public:
    explicit TcpServerChannel(QObject *parent = nullptr);
};
