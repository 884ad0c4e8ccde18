#pragma once

#include "GatewayChildProcess.h"

#include <QObject>
#include <QString>
#include <QStringList>

class QTimer;

// Starts the gateway process for the standalone app, keeps it running and
// stops it on exit. The gateway listens on a free loopback port, which it
// prints on its first line; its database and log live in the given state
// folder. When it dies while the app runs, a new one is started on the same
// folder and port after kRestartDelayMs (just before the client library's
// third reconnection attempt, 300 ms after the loss), so the library finds it
// again and the page recovers by itself.
class GatewayLauncher : public QObject
{
    Q_OBJECT
public:
    enum class Failure { None, CannotStart, StateDirInUse };
    // gatewayd's exit code when another gateway holds the state folder.
    static constexpr int kExitStateDirInUse = 3;
    static constexpr int kRestartDelayMs = 250;

    explicit GatewayLauncher(QObject *parent = nullptr);
    ~GatewayLauncher() override;

    // Starts gatewayd and waits for its port (at most 10 s); false with
    // error() and failure() set when it cannot be started.
    bool start(const QString &stateDir, const QStringList &serialExtras = {});
    // SIGTERM and wait: devices closed, state saved. No restart after it.
    void stop();
    int port() const { return m_port; }
    qint64 pid() const { return m_process.processId(); }
    QString error() const { return m_error; }
    Failure failure() const { return m_failure; }
    // With StateDirInUse: the folder and the process that holds it.
    QString busyStateDir() const { return m_busyDir; }
    qint64 busyPid() const { return m_busyPid; }

    // $GATEWAYD, else gatewayd beside this program, else the build tree's.
    static QString program();

signals:
    // The gateway died and a new one was started (`ok`) or could not be.
    void restarted(bool ok);

private:
    bool launch(int port);
    void onFinished(int exitCode, QProcess::ExitStatus status);
    void restart();

    GatewayChildProcess m_process;
    QTimer *m_restartTimer;
    QString m_gatewayDir;
    QStringList m_serialExtras;
    int m_port = 0;
    bool m_stopping = false;
    QString m_error;
    Failure m_failure = Failure::None;
    QString m_busyDir;
    qint64 m_busyPid = 0;
};
