#pragma once

#include "StreamWorker.h"

#include <QSerialPort>

// Opens "PortName" with the line settings (QSerialPort's codes). A port that
// fails while open (unplugged) is closed and reported down.
class SerialWorker : public StreamWorker
{
    Q_OBJECT
public:
    using StreamWorker::StreamWorker;

    quint32 open(const StreamChannel::Params &params) override;
    void close() override;
    void send(const QByteArray &bytes) override;
    void readPending() override;

private:
    void onError(QSerialPort::SerialPortError error);

    QSerialPort *m_port = nullptr;
    FrameSplitter m_splitter;
};
