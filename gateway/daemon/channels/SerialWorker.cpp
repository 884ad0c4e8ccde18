#include "SerialWorker.h"

#include "GwErrorCodes.h"

#include <QSerialPort>
#include <algorithm>

namespace {
struct LineSettings {
    int baudRate = 9600;
    int dataBits = 8;
    int parity = 0;
    int stopBits = 1;
    int flowControl = 0;
};

bool oneOf(int value, std::initializer_list<int> allowed)
{
    return std::find(allowed.begin(), allowed.end(), value) != allowed.end();
}

// The line settings as QSerialPort's codes; false for a value it has no code for.
bool readSettings(const StreamChannel::Params &params, LineSettings &s)
{
    const auto intParam = &StreamWorker::intParam;
    return intParam(params, "BaudRate", 9600, 1, 100000000, s.baudRate)
        && intParam(params, "DataBits", 8, 5, 8, s.dataBits) && intParam(params, "Parity", 0, 0, 5, s.parity)
        && oneOf(s.parity, {QSerialPort::NoParity, QSerialPort::EvenParity, QSerialPort::OddParity,
                            QSerialPort::SpaceParity, QSerialPort::MarkParity})
        && intParam(params, "StopBits", 1, 1, 3, s.stopBits) && intParam(params, "FlowControl", 0, 0, 2, s.flowControl);
}
} // namespace

quint32 SerialWorker::open(const StreamChannel::Params &params)
{
    close();
    const QString name = QString::fromUtf8(params.value("PortName")).trimmed();
    LineSettings line;
    if (name.isEmpty() || !readSettings(params, line))
        return GW_ERR_INVALID_VALUE;
    m_splitter = FrameSplitter(params.value("EndChar"));
    m_port = new QSerialPort(this);
    m_port->setPortName(name);
    // Applied after opening so that a setting the device refuses is reported.
    const bool opened = m_port->open(QIODevice::ReadWrite);
    const bool settingsOk = opened && m_port->setBaudRate(line.baudRate)
        && m_port->setDataBits(QSerialPort::DataBits(line.dataBits))
        && m_port->setParity(QSerialPort::Parity(line.parity))
        && m_port->setStopBits(QSerialPort::StopBits(line.stopBits))
        && m_port->setFlowControl(QSerialPort::FlowControl(line.flowControl));
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
