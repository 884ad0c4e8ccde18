#pragma once

#include "StreamWorker.h"

#include <QHostAddress>

class QUdpSocket;

// Binds "LocalIP":"LocalPort" and sends to "TargetIP":"TargetPort". Received
// datagrams go through the frame splitter like a stream.
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
