#include "UdpChannel.h"

#include "UdpWorker.h"

UdpChannel::UdpChannel(QObject *parent) : ThreadedStreamChannel(&makeWorker<UdpWorker>, parent) {}
