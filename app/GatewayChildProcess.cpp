#include "GatewayChildProcess.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

void GatewayChildProcess::setupChildProcess()
{
    // Only async-signal-safe calls here: this runs in the forked child.
    const pid_t parent = ::getppid();
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent) // the parent died before the request took hold
        ::raise(SIGTERM);
}
