#pragma once

#include "GatewayModule.h"

#include <QPointer>

class StreamChannel;

// A module whose device is a byte stream (TCP client or server, UDP,
// serial). Received frames become results of address -1; events 1 and 2
// follow the channel's link state (the switch rule is in StreamChannel.h).
class StreamModule : public GatewayModule
{
    Q_OBJECT
public:
    // Takes `channel`, the module's device (none for a type without one).
    StreamModule(const StoredModule &stored, const ParamSchema &schema, StreamChannel *channel,
                 QObject *parent = nullptr);
    ~StreamModule() override;

    quint32 setOpen(bool open) override;
    bool isOpen() const override;
    bool connectState() const override;
    quint32 writeString(int addressId, const QByteArray &text) override;
    quint32 writeValues(int addressId, int count, const QByteArray &text, bool isFloat) override;
    QList<quint16> reservedPorts() const override;
    void resumeInput() override;
    quint32 statusParam(const QByteArray &key, QByteArray *value) const override;
    quint32 runAction(const QByteArray &key, const QByteArray &value) override;

private:
    StreamChannel *m_channel = nullptr;
};
