#include "GatewayLog.h"

#include <QMutexLocker>
#include <cstdio>

namespace {
GatewayLog *g_installed = nullptr;

void handler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (g_installed)
        g_installed->write(type, context, message);
}
} // namespace

GatewayLog::~GatewayLog()
{
    uninstall();
    flush();
}

bool GatewayLog::open(const QString &path, qint64 maxBytes)
{
    QMutexLocker lock(&m_mutex);
    m_path = path;
    m_maxBytes = maxBytes;
    if (path.isEmpty())
        return true;
    m_file.setFileName(path);
    return m_file.open(QIODevice::WriteOnly | QIODevice::Append);
}

void GatewayLog::install()
{
    g_installed = this;
    qInstallMessageHandler(handler);
}

void GatewayLog::uninstall()
{
    if (g_installed != this)
        return;
    qInstallMessageHandler(nullptr);
    g_installed = nullptr;
}

void GatewayLog::write(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    QMutexLocker lock(&m_mutex);
    if (message == m_last) {
        ++m_repeats;
        return;
    }
    if (m_repeats > 0)
        writeLine(QByteArrayLiteral("last message repeated ") + QByteArray::number(m_repeats) + " times\n");
    m_repeats = 0;
    m_last = message;
    writeLine(qFormatLogMessage(type, context, message).toUtf8() + '\n');
}

void GatewayLog::flush()
{
    QMutexLocker lock(&m_mutex);
    if (m_repeats > 0)
        writeLine(QByteArrayLiteral("last message repeated ") + QByteArray::number(m_repeats) + " times\n");
    m_repeats = 0;
    m_last.clear();
}

void GatewayLog::writeLine(const QByteArray &line)
{
    if (!m_file.isOpen()) {
        std::fwrite(line.constData(), 1, size_t(line.size()), stderr);
        std::fflush(stderr);
        return;
    }
    if (m_file.size() > 0 && m_file.size() + line.size() > m_maxBytes)
        rotate();
    m_file.write(line);
    m_file.flush();
}

// gatewayd.log -> .1 -> .2 ... ; the oldest beyond kKeptFiles is removed.
void GatewayLog::rotate()
{
    m_file.close();
    QFile::remove(m_path + QLatin1Char('.') + QString::number(kKeptFiles));
    for (int i = kKeptFiles - 1; i >= 1; --i)
        QFile::rename(m_path + QLatin1Char('.') + QString::number(i), m_path + QLatin1Char('.') + QString::number(i + 1));
    QFile::rename(m_path, m_path + QStringLiteral(".1"));
    m_file.open(QIODevice::WriteOnly | QIODevice::Append);
}
