#include "StreamModule.h"

#include "GwErrorCodes.h"
#include "GwPlatform.h"
#include "ChannelStatus.h"
#include "ParamSchema.h"
#include "StreamChannel.h"

StreamModule::StreamModule(const StoredModule &stored, const ParamSchema &schema, StreamChannel *channel,
                           QObject *parent)
    : GatewayModule(stored, schema, parent), m_channel(channel)
{
    if (!m_channel)
        return;
    m_channel->setParent(this);
    const int moduleId = id();
    // Frames, link and status changes go out on the worker's thread, straight
    // to the clients (the service's pushes may come from any thread): one
    // path keeps them in the order the worker saw them, and a frame does not
    // wait for the main thread.
    connect(m_channel, &StreamChannel::linkUp, this, [this, moduleId] { emit eventRaised(GW_EVENT_CONNECTED, moduleId); },
            Qt::DirectConnection);
    connect(m_channel, &StreamChannel::linkDown, this,
            [this, moduleId] { emit eventRaised(GW_EVENT_DISCONNECTED, moduleId); }, Qt::DirectConnection);
    connect(m_channel, &StreamChannel::statusChanged, this,
            [this, moduleId](int state) { emit deviceStatusChanged(moduleId, state); }, Qt::DirectConnection);
    connect(m_channel, &StreamChannel::framesReceived, this,
            [this, moduleId](const QList<QByteArray> &frames) {
                emit resultsReady(moduleId, -1, frames);
                m_channel->framesTaken(StreamChannel::bytesOf(frames));
            },
            Qt::DirectConnection);
    connect(m_channel, &StreamChannel::logLine, this, &GatewayModule::logLine, Qt::QueuedConnection);
}

StreamModule::~StreamModule()
{
    if (m_channel)
        m_channel->close();
}

quint32 StreamModule::setOpen(bool open)
{
    if (!m_channel)
        return GW_ERR_NOT_SUPPORTED;
    if (!open) {
        const bool wasUp = m_channel->connectState();
        m_channel->close();
        if (wasUp)
            emit eventRaised(GW_EVENT_DISCONNECTED, id());
        return GW_OK;
    }
    if (m_channel->isOpen())
        m_channel->close(); // reopen so changed parameters take effect
    return m_channel->open(values());
}

bool StreamModule::isOpen() const
{
    return m_channel && m_channel->isOpen();
}

bool StreamModule::connectState() const
{
    return m_channel && m_channel->connectState();
}

quint32 StreamModule::writeString(int addressId, const QByteArray &text)
{
    if (addressId != -1)
        return GW_ERR_UNKNOWN_ADDRESS;
    if (!m_channel)
        return GW_ERR_NOT_SUPPORTED;
    return m_channel->write(text);
}

quint32 StreamModule::writeValues(int addressId, int count, const QByteArray &text, bool)
{
    // A stream carries the values as the text they were given in.
    if (count < 0)
        return GW_ERR_INVALID_ARGUMENT;
    return writeString(addressId, text);
}

void StreamModule::resumeInput()
{
    if (m_channel)
        m_channel->resumeInput();
}

quint32 StreamModule::statusParam(const QByteArray &key, QByteArray *value) const
{
    ChannelStatus *status = m_channel ? m_channel->status() : nullptr;
    if (!status) {
        // A device that keeps no status shows only whether it is open.
        *value = key == "Status" ? ChannelStatus::stateName(isOpen() ? GW_DEVICE_CONNECTED : GW_DEVICE_CLOSED)
                                 : QByteArray();
        return GW_OK;
    }
    if (key == "Status")
        *value = ChannelStatus::stateName(status->state());
    else if (key == "StatusDetail")
        *value = status->detail().toUtf8().left(ParamSchema::kMaxValueBytes);
    else if (key == "Counters")
        *value = status->countersText();
    else if (key == "Peers")
        *value = status->peersText(ParamSchema::kMaxValueBytes);
    else
        return GW_ERR_UNKNOWN_KEY;
    return GW_OK;
}

quint32 StreamModule::runAction(const QByteArray &key, const QByteArray &value)
{
    if (!m_channel)
        return GW_ERR_NOT_SUPPORTED;
    if (key == "ResetCounters") {
        if (value.compare("true", Qt::CaseInsensitive) == 0 && m_channel->status())
            m_channel->status()->resetCounters();
        return GW_OK;
    }
    if (key == "DropPeer")
        return m_channel->dropPeer(QString::fromLatin1(value));
    return GW_ERR_NOT_SUPPORTED;
}

QList<quint16> StreamModule::reservedPorts() const
{
    return m_channel ? m_channel->reservedPorts() : QList<quint16>{};
}
