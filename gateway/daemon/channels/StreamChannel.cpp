#include "StreamChannel.h"

#include "SerialWorker.h"
#include "TcpClientWorker.h"
#include "TcpServerWorker.h"
#include "ThreadedStreamChannel.h"
#include "UdpWorker.h"

namespace {
template<typename Worker>
StreamWorker *makeWorker(std::shared_ptr<ChannelState> state)
{
    return new Worker(std::move(state));
}

using Factory = StreamWorker *(*)(std::shared_ptr<ChannelState>);

const QMap<QByteArray, Factory> &factories()
{
    static const QMap<QByteArray, Factory> table{
        {"TcpClientModule", &makeWorker<TcpClientWorker>},
        {"InsightModule", &makeWorker<TcpClientWorker>},
        {"TcpServerModule", &makeWorker<TcpServerWorker>},
        {"UdpModule", &makeWorker<UdpWorker>},
        {"SerialModule", &makeWorker<SerialWorker>},
    };
    return table;
}
} // namespace

StreamChannel *StreamChannel::create(const QByteArray &moduleType, QObject *parent)
{
    const Factory factory = factories().value(moduleType, nullptr);
    return factory ? new ThreadedStreamChannel(factory, parent) : nullptr;
}
