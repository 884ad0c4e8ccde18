#include "GatewayLauncher.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTimer>
#include <cstdio>

GatewayLauncher::GatewayLauncher(QObject *parent) : QObject(parent), m_restartTimer(new QTimer(this))
{
    m_restartTimer->setSingleShot(true);
    m_restartTimer->setInterval(kRestartDelayMs);
    connect(m_restartTimer, &QTimer::timeout, this, &GatewayLauncher::restart);
    connect(&m_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &GatewayLauncher::onFinished);
}

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

bool GatewayLauncher::start(const QString &stateDir, const QStringList &serialExtras)
{
    m_gatewayDir = stateDir + QStringLiteral("/gateway");
    m_serialExtras = serialExtras;
    m_stopping = false;
    QDir().mkpath(m_gatewayDir);
    return launch(0);
}

bool GatewayLauncher::launch(int port)
{
    m_failure = Failure::None;
    QStringList args{QStringLiteral("--port"), QString::number(port), QStringLiteral("--state-dir"), m_gatewayDir,
                     // Its own log beside its database, bounded by size.
                     QStringLiteral("--log-file"), m_gatewayDir + QStringLiteral("/gatewayd.log")};
    for (const QString &extra : qAsConst(m_serialExtras))
        args << QStringLiteral("--serial-extra") << extra;
    m_process.setProcessChannelMode(QProcess::SeparateChannels);
    m_process.start(program(), args);
    if (!m_process.waitForStarted(5000)) {
        m_error = QStringLiteral("cannot start %1: %2").arg(program(), m_process.errorString());
        m_failure = Failure::CannotStart;
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
    m_process.waitForFinished(2000);
    const QString said = QString::fromLocal8Bit(m_process.readAllStandardError()).trimmed();
    static const QRegularExpression busy(
        QStringLiteral("another gateway \\(pid (\\d+)\\) already uses the state directory (.+)$"));
    const QRegularExpressionMatch match = busy.match(said);
    if (m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == kExitStateDirInUse) {
        m_failure = Failure::StateDirInUse;
        m_busyPid = match.hasMatch() ? match.captured(1).toLongLong() : 0;
        m_busyDir = match.hasMatch() ? match.captured(2) : m_gatewayDir;
        m_error = said;
        return false;
    }
    m_failure = Failure::CannotStart;
    m_error = said.isEmpty() ? QStringLiteral("%1 did not report its port; see %2/gatewayd.log").arg(program(), m_gatewayDir)
                             : said;
    stop();
    return false;
}

void GatewayLauncher::onFinished(int exitCode, QProcess::ExitStatus status)
{
    if (m_stopping || m_port == 0)
        return;
    std::fprintf(stderr, "commmanager: the gateway ended (%s %d); starting it again on port %d\n",
                 status == QProcess::CrashExit ? "signal" : "exit code", exitCode, m_port);
    m_restartTimer->start();
}

void GatewayLauncher::restart()
{
    if (m_stopping)
        return;
    const bool ok = launch(m_port);
    if (!ok)
        std::fprintf(stderr, "commmanager: the gateway could not be started again: %s\n", qPrintable(m_error));
    emit restarted(ok);
}

void GatewayLauncher::stop()
{
    m_stopping = true;
    m_restartTimer->stop();
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate(); // SIGTERM: devices closed, state saved
    if (!m_process.waitForFinished(5000)) {
        m_process.kill();
        m_process.waitForFinished(2000);
    }
}
