#include "SerialChannel.h"

#include "SerialWorker.h"

SerialChannel::SerialChannel(QObject *parent) : ThreadedStreamChannel(&makeWorker<SerialWorker>, parent) {}
