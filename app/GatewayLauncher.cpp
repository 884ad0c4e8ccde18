#include "GatewayLauncher.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

GatewayLauncher::~GatewayLauncher()
{
    stop();
}

QString GatewayLauncher::program()
{
    const QString fromEnv = qEnvironmentVariable("GATEWAYD");
    if (!fromEnv.isEmpty())
        return fromEnv;
    const QString beside = QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("gatewayd"));
    if (QFileInfo(beside).isExecutable())
        return beside;
    return QStringLiteral(GATEWAYD_BUILD_PATH);
}

bool GatewayLauncher::start(const QString &stateDir)
{
    const QString gatewayDir = stateDir + QStringLiteral("/gateway");
    QDir().mkpath(gatewayDir);
    // The gateway's own log goes to a file beside its database.
    m_process.setStandardErrorFile(gatewayDir + QStringLiteral("/gatewayd.log"), QIODevice::Append);
    m_process.start(program(), {QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--state-dir"), gatewayDir});
    if (!m_process.waitForStarted(5000)) {
        m_error = QStringLiteral("cannot start %1: %2").arg(program(), m_process.errorString());
        return false;
    }
    static const QRegularExpression listening(QStringLiteral("^listening on 127\\.0\\.0\\.1:(\\d+)"));
    while (m_process.canReadLine() || m_process.waitForReadyRead(10000)) {
        if (!m_process.canReadLine())
            continue;
        const QRegularExpressionMatch match = listening.match(QString::fromUtf8(m_process.readLine()));
        if (match.hasMatch()) {
            m_port = match.captured(1).toInt();
            return true;
        }
    }
    m_error = QStringLiteral("%1 did not report its port; see %2/gatewayd.log").arg(program(), gatewayDir);
    stop();
    return false;
}

void GatewayLauncher::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate(); // SIGTERM: devices closed, state saved
    if (!m_process.waitForFinished(5000)) {
        m_process.kill();
        m_process.waitForFinished(2000);
    }
}
