#include "StreamChannel.h"

#include "GwErrorCodes.h"
#include "SerialChannel.h"
#include "TcpClientChannel.h"
#include "TcpServerChannel.h"
#include "UdpChannel.h"

#include <atomic>

namespace {
template<typename Channel>
StreamChannel *makeChannel(QObject *parent)
{
    return new Channel(parent);
}

using Creator = StreamChannel *(*)(QObject *);

// The one place that maps a module type to its kind of channel.
const QMap<QByteArray, Creator> &creators()
{
    static const QMap<QByteArray, Creator> table{
        {"TcpClientModule", &makeChannel<TcpClientChannel>},
        {"InsightModule", &makeChannel<TcpClientChannel>},
        {"TcpServerModule", &makeChannel<TcpServerChannel>},
        {"UdpModule", &makeChannel<UdpChannel>},
        {"SerialModule", &makeChannel<SerialChannel>},
    };
    return table;
}
} // namespace

namespace {
std::atomic<bool> g_inputHeld{false};
} // namespace

void StreamChannel::holdAllInput(bool hold)
{
    g_inputHeld = hold;
}

bool StreamChannel::allInputHeld()
{
    return g_inputHeld;
}

quint32 StreamChannel::dropPeer(const QString &)
{
    return GW_ERR_NOT_SUPPORTED;
}

qint64 StreamChannel::bytesOf(const QList<QByteArray> &frames)
{
    qint64 total = 0;
    for (const QByteArray &frame : frames)
        total += frame.size();
    return total;
}

StreamChannel *StreamChannel::create(const QByteArray &moduleType, QObject *parent)
{
    const Creator creator = creators().value(moduleType, nullptr);
    return creator ? creator(parent) : nullptr;
}
