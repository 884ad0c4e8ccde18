#pragma once

#include <QProcess>

// The gateway as a child that does not outlive this process: in the child,
// between fork and exec, the kernel is asked to send it SIGTERM when its
// parent dies (a crash or SIGKILL included), so the devices' ports are
// never left held by an orphan. Uses QProcess's setupChildProcess hook,
// which runs in the child whichever way Qt forks (also under emulation).
class GatewayChildProcess : public QProcess
{
public:
    using QProcess::QProcess;

protected:
    void setupChildProcess() override;
};
