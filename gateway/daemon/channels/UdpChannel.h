#pragma once

#include "ThreadedStreamChannel.h"

// The channel of a UDP socket; the device itself is UdpWorker.
class UdpChannel : public ThreadedStreamChannel
{
    Q_OBJECT
public:
    explicit UdpChannel(QObject *parent = nullptr);
};
