#pragma once

#include "StreamWorker.h"

#include <QSerialPort>

class QTimer;

// Opens "PortName" with the line settings (QSerialPort's codes). A port that
// fails while open (unplugged) is reported down and the device goes to
// "PortMissing": it stays switched on and tries every kReopenIntervalMs to
// open the port again with the same settings, as a TCP client reconnects.
class SerialWorker : public StreamWorker
{
    Q_OBJECT
public:
    using StreamWorker::StreamWorker;

    static constexpr int kReopenIntervalMs = 500;

    quint32 open(const StreamChannel::Params &params) override;
    void close() override;
    void send(const QByteArray &bytes) override;
    void readPending() override;

private:
    struct Settings {
        QString name;
        int baudRate = 9600;
        QSerialPort::DataBits dataBits = QSerialPort::Data8;
        QSerialPort::Parity parity = QSerialPort::NoParity;
        QSerialPort::StopBits stopBits = QSerialPort::OneStop;
        QSerialPort::FlowControl flowControl = QSerialPort::NoFlowControl;
    };

    // Opens the port with m_settings; the error text when it cannot.
    bool openPort(QString *error);
    void onError(QSerialPort::SerialPortError error);
    void tryReopen();
    QString settingsText() const;

    QSerialPort *m_port = nullptr;
    QTimer *m_reopen = nullptr;
    Settings m_settings;
    QByteArray m_endChar;
    FrameSplitter m_splitter;
};
