#include "GatewayProcess.h"

#include <QRegularExpression>

GatewayProcess::~GatewayProcess()
{
    stop();
}

bool GatewayProcess::start(const QStringList &extraArgs)
{
    const QString program = qEnvironmentVariable("GATEWAYD");
    if (program.isEmpty()) {
        m_error = QStringLiteral("GATEWAYD is not set");
        return false;
    }
    // A test built with a sanitizer may give the gateway process its own
    // options (its Qt event delivery is not what such a test examines).
    const QString childTsan = qEnvironmentVariable("GATEWAYD_TSAN_OPTIONS");
    if (!childTsan.isEmpty()) {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("TSAN_OPTIONS"), childTsan);
        m_process.setProcessEnvironment(env);
    }
    m_process.start(program, QStringList{QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--state-dir"),
                                         m_stateDir.path()}
                                 + extraArgs);
    if (!m_process.waitForStarted(5000)) {
        m_error = m_process.errorString();
        return false;
    }
    static const QRegularExpression listening(QStringLiteral("^listening on 127\\.0\\.0\\.1:(\\d+)$"));
    while (m_process.waitForReadyRead(10000) || m_process.canReadLine()) {
        if (!m_process.canReadLine())
            continue;
        const QString line = QString::fromUtf8(m_process.readLine()).trimmed();
        const QRegularExpressionMatch match = listening.match(line);
        if (match.hasMatch()) {
            m_port = match.captured(1).toInt();
            return true;
        }
    }
    m_error = QStringLiteral("gatewayd did not report its port: ") + QString::fromUtf8(log());
    return false;
}

bool GatewayProcess::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return true;
    m_process.terminate();
    if (m_process.waitForFinished(10000))
        return m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
    kill();
    return false;
}

void GatewayProcess::kill()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished(10000);
}

QByteArray GatewayProcess::log()
{
    m_log += m_process.readAllStandardError();
    return m_log;
}
