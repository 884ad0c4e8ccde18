#pragma once

#include "StreamWorker.h"

#include <QHostAddress>

class QUdpSocket;

// Binds "LocalIP":"LocalPort" and sends to "TargetIP":"TargetPort". Each
// received datagram is framed on its own: it is cut at the end sequence, and
// its end closes its last frame, so a datagram without the end sequence is
// one frame and never joined to the next.
class UdpWorker : public StreamWorker
{
    Q_OBJECT
public:
    using StreamWorker::StreamWorker;

    quint32 open(const StreamChannel::Params &params) override;
    void close() override;
    void send(const QByteArray &bytes) override;
    void readPending() override;

private:
    QUdpSocket *m_socket = nullptr;
    QHostAddress m_target;
    quint16 m_targetPort = 0;
    FrameSplitter m_splitter;
};
