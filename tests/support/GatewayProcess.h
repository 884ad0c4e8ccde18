#pragma once
// Runs the real gatewayd for integration tests: on a free loopback port,
// with a temporary state directory that survives restarts of the process.
//
//   GatewayProcess gw;                 // path from $GATEWAYD
//   QVERIFY2(gw.start(), qPrintable(gw.error()));
//   GW_PF_Init(1, "127.0.0.1", gw.port(), 101);
//   gw.kill();  gw.start();            // same state directory, new port

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

class GatewayProcess
{
public:
    GatewayProcess();
    ~GatewayProcess();

    bool start(const QStringList &extraArgs = {});
    // SIGTERM and wait: devices closed, state saved.
    bool stop();
    // SIGKILL: nothing saved beyond what was committed.
    void kill();
    bool isRunning() const;
    int port() const { return m_port; }
    qint64 pid() const;
    QString stateDir() const { return m_stateDir.path(); }
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
