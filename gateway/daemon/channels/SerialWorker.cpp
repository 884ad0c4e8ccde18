#include "SerialWorker.h"

#include "GwErrorCodes.h"

#include <QSerialPort>

quint32 SerialWorker::open(const StreamChannel::Params &params)
{
    close();
    const QString name = QString::fromUtf8(params.value("PortName"));
    if (name.isEmpty())
        return GW_ERR_OPEN_FAILED;
    m_splitter = FrameSplitter(params.value("EndChar"));
    m_port = new QSerialPort(name, this);
    const bool settingsOk = m_port->setBaudRate(intParam(params, "BaudRate", 9600))
        && m_port->setDataBits(QSerialPort::DataBits(intParam(params, "DataBits", 8)))
        && m_port->setParity(QSerialPort::Parity(intParam(params, "Parity", 0)))
        && m_port->setStopBits(QSerialPort::StopBits(intParam(params, "StopBits", 1)))
        && m_port->setFlowControl(QSerialPort::FlowControl(intParam(params, "FlowControl", 0)));
    if (!m_port->open(QIODevice::ReadWrite) || !settingsOk) {
        emit logLine(QStringLiteral("cannot open serial port %1: %2").arg(name, m_port->errorString()));
        delete m_port;
        m_port = nullptr;
        return GW_ERR_OPEN_FAILED;
    }
    // Settings applied before open are re-applied by open; check they took.
    connect(m_port, &QSerialPort::readyRead, this, [this] { deliver(m_splitter, m_port->readAll()); });
    connect(m_port, &QSerialPort::errorOccurred, this, &SerialWorker::onError);
    connect(m_port, &QSerialPort::bytesWritten, this, [this] { state().socketBacklog = m_port->bytesToWrite(); });
    state().open = true;
    state().connectState = true;
    state().canSend = true;
    emit linkUp();
    return GW_OK;
}

void SerialWorker::onError()
{
    if (!m_port || m_port->error() != QSerialPort::ResourceError)
        return;
    emit logLine(QStringLiteral("serial port %1 failed: %2").arg(m_port->portName(), m_port->errorString()));
    m_port->disconnect(this);
    m_port->deleteLater();
    m_port = nullptr;
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
    m_port->write(bytes);
    state().socketBacklog = m_port->bytesToWrite();
}
