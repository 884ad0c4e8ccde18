#include "TcpClientChannel.h"

#include "TcpClientWorker.h"

TcpClientChannel::TcpClientChannel(QObject *parent) : ThreadedStreamChannel(&makeWorker<TcpClientWorker>, parent) {}
