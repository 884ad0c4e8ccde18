#pragma once

#include "ThreadedStreamChannel.h"

// The channel of a serial port; the device itself is SerialWorker.
class SerialChannel : public ThreadedStreamChannel
{
    Q_OBJECT
public:
    explicit SerialChannel(QObject *parent = nullptr);
};
