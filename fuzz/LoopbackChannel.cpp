#include "LoopbackChannel.h"

#include "GwErrorCodes.h"

StreamChannel *LoopbackChannel::create(const QByteArray &, QObject *parent)
{
    return new LoopbackChannel(parent);
}

quint32 LoopbackChannel::open(const Params &)
{
    m_open = true;
    emit linkUp();
    return GW_OK;
}

quint32 LoopbackChannel::write(const QByteArray &bytes)
{
    if (!m_open)
        return GW_ERR_NOT_OPEN;
    if (!bytes.isEmpty())
        emit framesReceived({bytes});
    return GW_OK;
}
