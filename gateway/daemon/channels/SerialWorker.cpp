#include "SerialWorker.h"

#include "GwErrorCodes.h"
#include "ParamReader.h"

#include <QSerialPort>
#include <QTimer>

quint32 SerialWorker::open(const StreamChannel::Params &params)
{
    close();
    // The line settings are QSerialPort's own codes.
    ParamReader in(params);
    m_settings.name = QString::fromUtf8(in.text("PortName")).trimmed();
    m_settings.baudRate = in.integer("BaudRate");
    m_settings.dataBits = QSerialPort::DataBits(in.integer("DataBits"));
    m_settings.parity = QSerialPort::Parity(in.integer("Parity"));
    m_settings.stopBits = QSerialPort::StopBits(in.integer("StopBits"));
    m_settings.flowControl = QSerialPort::FlowControl(in.integer("FlowControl"));
    m_endChar = in.text("EndChar");
    m_splitter = FrameSplitter(m_endChar);
    if (!in.ok() || m_settings.name.isEmpty()) // no port chosen yet
        return GW_ERR_INVALID_VALUE;
    QString error;
    if (!openPort(&error)) {
        emit logLine(QStringLiteral("cannot open serial port %1: %2").arg(m_settings.name, error));
        status().addError();
        setStatus(GW_DEVICE_ERROR, QStringLiteral("%1: %2").arg(m_settings.name, error));
        return GW_ERR_OPEN_FAILED;
    }
    state().open = true;
    state().connectState = true;
    state().canSend = true;
    setStatus(GW_DEVICE_CONNECTED, settingsText());
    emit linkUp();
    return GW_OK;
}

bool SerialWorker::openPort(QString *error)
{
    m_port = new QSerialPort(this);
    m_port->setPortName(m_settings.name);
    // Applied after opening so that a setting the device refuses is reported.
    const bool opened = m_port->open(QIODevice::ReadWrite);
    const bool settingsOk = opened && m_port->setBaudRate(m_settings.baudRate)
        && m_port->setDataBits(m_settings.dataBits) && m_port->setParity(m_settings.parity)
        && m_port->setStopBits(m_settings.stopBits) && m_port->setFlowControl(m_settings.flowControl);
    if (!settingsOk) {
        *error = m_port->errorString();
        delete m_port; // closes it if it was opened
        m_port = nullptr;
        return false;
    }
    m_port->setReadBufferSize(kReadBufferSize);
    connect(m_port, &QSerialPort::readyRead, this, &SerialWorker::readPending);
    connect(m_port, &QSerialPort::errorOccurred, this, &SerialWorker::onError);
    connect(m_port, &QSerialPort::bytesWritten, this, [this] { state().socketBacklog = m_port->bytesToWrite(); });
    return true;
}

void SerialWorker::readPending()
{
    if (m_port)
        take(m_port, m_splitter);
}

// A port that goes away while open reports ResourceError (unplugged adapter)
// or ReadError (a read notification with nothing to read, e.g. EIO once the
// other end of a pseudo-terminal is gone; it would repeat for ever). The
// port is closed, the device reported down and the port tried again until
// it is back.
void SerialWorker::onError(QSerialPort::SerialPortError error)
{
    if (!m_port || (error != QSerialPort::ResourceError && error != QSerialPort::ReadError))
        return;
    const QString reason = m_port->errorString();
    emit logLine(QStringLiteral("serial port %1 failed: %2").arg(m_port->portName(), reason));
    QSerialPort *port = m_port;
    m_port = nullptr;
    port->disconnect(this);
    port->deleteLater(); // we are inside one of its signals
    state().connectState = false;
    state().canSend = false;
    state().socketBacklog = 0;
    m_splitter = FrameSplitter(m_endChar); // a half frame from before is gone
    status().addError();
    if (!m_reopen) {
        m_reopen = new QTimer(this);
        m_reopen->setInterval(kReopenIntervalMs);
        connect(m_reopen, &QTimer::timeout, this, &SerialWorker::tryReopen);
    }
    m_reopen->start();
    setStatus(GW_DEVICE_PORT_MISSING, QStringLiteral("%1 gone (%2); waiting for it").arg(m_settings.name, reason));
    emit linkDown();
}

void SerialWorker::tryReopen()
{
    if (!state().open || m_port)
        return;
    QString error;
    if (!openPort(&error))
        return; // still missing; the detail keeps why it went
    m_reopen->stop();
    emit logLine(QStringLiteral("serial port %1 back, reopened").arg(m_settings.name));
    status().addReconnect();
    state().connectState = true;
    state().canSend = true;
    setStatus(GW_DEVICE_CONNECTED, settingsText());
    emit linkUp();
}

QString SerialWorker::settingsText() const
{
    return QStringLiteral("%1, %2 baud").arg(m_settings.name).arg(m_settings.baudRate);
}

void SerialWorker::close()
{
    state().open = false;
    state().connectState = false;
    state().canSend = false;
    state().socketBacklog = 0;
    if (m_reopen)
        m_reopen->stop();
    delete m_port;
    m_port = nullptr;
    setStatus(GW_DEVICE_CLOSED, QString());
}

void SerialWorker::send(const QByteArray &bytes)
{
    if (!m_port)
        return;
    if (m_port->write(bytes) < 0) {
        status().addError();
        emit logLine(QStringLiteral("serial port %1 write failed: %2").arg(m_port->portName(), m_port->errorString()));
    } else {
        countSent(bytes.size());
    }
    state().socketBacklog = m_port->bytesToWrite();
}
