#pragma once

#include <QProcess>
#include <QString>

// Starts the gateway process for the standalone app and stops it on exit.
// The gateway listens on a free loopback port, which it prints on its first
// line; its database and log live in the given state folder.
class GatewayLauncher
{
public:
    GatewayLauncher() = default;
    ~GatewayLauncher();

    // Starts gatewayd and waits for its port (at most 10 s); false with
    // error() set when it cannot be started.
    bool start(const QString &stateDir);
    void stop();
    int port() const { return m_port; }
    QString error() const { return m_error; }

    // $GATEWAYD, else gatewayd beside this program, else the build tree's.
    static QString program();

private:
    QProcess m_process;
    int m_port = 0;
    QString m_error;
};
