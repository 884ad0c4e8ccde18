#include "TcpServerChannel.h"

#include "TcpServerWorker.h"

TcpServerChannel::TcpServerChannel(QObject *parent) : ThreadedStreamChannel(&makeWorker<TcpServerWorker>, parent) {}
