#pragma once
// Runs the real gatewayd ($GATEWAYD) for integration tests: on a free loopback
// port, with a temporary state directory that survives restarts of the process
// (a restart keeps the state and takes a new port).

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

class GatewayProcess
{
public:
    ~GatewayProcess();

    // Later arguments win: {"--port", "N"} restarts on a known port.
    bool start(const QStringList &extraArgs = {});
    // SIGTERM and wait: devices closed, state saved.
    bool stop();
    // SIGKILL: nothing saved beyond what was committed.
    void kill();
    int port() const { return m_port; }
    QString stateDir() const { return m_stateDir.path(); }
    qint64 pid() const { return m_process.processId(); }
    QString error() const { return m_error; }
    // Everything the process wrote to stderr so far.
    QByteArray log();

private:
    QTemporaryDir m_stateDir;
    QProcess m_process;
    int m_port = 0;
    QString m_error;
    QByteArray m_log;
};
