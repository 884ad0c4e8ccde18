#include "SerialWorker.h"

#include "GwErrorCodes.h"
#include "ParamReader.h"

#include <QSerialPort>

quint32 SerialWorker::open(const StreamChannel::Params &params)
{
    close();
    // The line settings are QSerialPort's own codes.
    ParamReader in(params);
    const QString name = QString::fromUtf8(in.text("PortName")).trimmed();
    const int baudRate = in.integer("BaudRate");
    const auto dataBits = QSerialPort::DataBits(in.integer("DataBits"));
    const auto parity = QSerialPort::Parity(in.integer("Parity"));
    const auto stopBits = QSerialPort::StopBits(in.integer("StopBits"));
    const auto flowControl = QSerialPort::FlowControl(in.integer("FlowControl"));
    m_splitter = FrameSplitter(in.text("EndChar"));
    if (!in.ok() || name.isEmpty()) // no port chosen yet
        return GW_ERR_INVALID_VALUE;
    m_port = new QSerialPort(this);
    m_port->setPortName(name);
    // Applied after opening so that a setting the device refuses is reported.
    const bool opened = m_port->open(QIODevice::ReadWrite);
    const bool settingsOk = opened && m_port->setBaudRate(baudRate) && m_port->setDataBits(dataBits)
        && m_port->setParity(parity) && m_port->setStopBits(stopBits) && m_port->setFlowControl(flowControl);
    if (!settingsOk) {
        emit logLine(QStringLiteral("cannot open serial port %1: %2").arg(name, m_port->errorString()));
        delete m_port; // closes it if it was opened
        m_port = nullptr;
        return GW_ERR_OPEN_FAILED;
    }
    m_port->setReadBufferSize(kReadBufferSize);
    connect(m_port, &QSerialPort::readyRead, this, &SerialWorker::readPending);
    connect(m_port, &QSerialPort::errorOccurred, this, &SerialWorker::onError);
    connect(m_port, &QSerialPort::bytesWritten, this, [this] { state().socketBacklog = m_port->bytesToWrite(); });
    state().open = true;
    state().connectState = true;
    state().canSend = true;
    emit linkUp();
    return GW_OK;
}

void SerialWorker::readPending()
{
    if (m_port)
        take(m_port, m_splitter);
}

// A port that goes away while open reports ResourceError (unplugged adapter)
// or ReadError (a read notification with nothing to read, e.g. EIO once the
// other end of a pseudo-terminal is gone; it would repeat for ever). The
// device is then closed and reported down.
void SerialWorker::onError(QSerialPort::SerialPortError error)
{
    if (!m_port || (error != QSerialPort::ResourceError && error != QSerialPort::ReadError))
        return;
    emit logLine(QStringLiteral("serial port %1 failed: %2").arg(m_port->portName(), m_port->errorString()));
    QSerialPort *port = m_port;
    m_port = nullptr;
    port->disconnect(this);
    port->deleteLater(); // we are inside one of its signals
    close();
    emit linkDown();
}

void SerialWorker::close()
{
    state().open = false;
    state().connectState = false;
    state().canSend = false;
    state().socketBacklog = 0;
    delete m_port;
    m_port = nullptr;
}

void SerialWorker::send(const QByteArray &bytes)
{
    if (!m_port)
        return;
    if (m_port->write(bytes) < 0)
        emit logLine(QStringLiteral("serial port %1 write failed: %2").arg(m_port->portName(), m_port->errorString()));
    state().socketBacklog = m_port->bytesToWrite();
}
