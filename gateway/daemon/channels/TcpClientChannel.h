#pragma once

#include "ThreadedStreamChannel.h"

// The channel of a TCP client (also InsightModule); the device itself is TcpClientWorker.
class TcpClientChannel : public ThreadedStreamChannel
{
    Q_OBJECT
public:
    explicit TcpClientChannel(QObject *parent = nullptr);
};
