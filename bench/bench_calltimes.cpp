// The slowest calls a healthy gateway answers, to choose the client
// library's call time-out with margin. On the real gateway, in one run:
//  - baseline: a one-key GW_PF_GetModuleParam;
//  - switching a serial device on and off over a pseudo-terminal (the port
//    is opened and configured inside the call);
//  - switching a TCP server device on and off (bind and listen in the call);
//  - GW_PF_GetAllModules and the whole first read of 256 modules
//    (GetAllModules and every module's GetAllParam), after a restart of the
//    gateway, as LoadDevices reads a full gateway;
//  - GW_PF_AddModule while 256 modules are stored.
// Each figure: median and maximum in milliseconds, and the maximum as a
// multiple of the baseline's median. Needs $GATEWAYD.
#include "BenchSupport.h"
#include "GatewayProcess.h"
#include "GwPlatform.h"

#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <pty.h>
#include <unistd.h>
#include <vector>

namespace {
using Clock = std::chrono::steady_clock;

struct Figure {
    double medianMs = 0;
    double maxMs = 0;
};

Figure measure(int rounds, const std::function<void()> &call)
{
    std::vector<double> ms;
    for (int i = 0; i < rounds; ++i) {
        const auto start = Clock::now();
        call();
        ms.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    std::sort(ms.begin(), ms.end());
    return {ms[ms.size() / 2], ms.back()};
}

void report(const char *what, const Figure &f, const Figure &baseline)
{
    std::printf("%-58s median %8.3f ms  max %8.3f ms  (max = %.0fx baseline median)\n", what, f.medianMs, f.maxMs,
                f.maxMs / baseline.medianMs);
}

void check(quint32 rc, const char *what)
{
    if (rc != GW_OK && rc != GW_ERR_PENDING_REOPEN) {
        std::fprintf(stderr, "%s failed: 0x%X\n", what, unsigned(rc));
        std::exit(1);
    }
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    GatewayProcess gateway;
    if (!gateway.start()) {
        std::fprintf(stderr, "cannot start the gateway: %s\n", qPrintable(gateway.error()));
        return 1;
    }
    check(GW_PF_Init(1, "127.0.0.1", gateway.port(), 101), "GW_PF_Init");
    int tcp = 0;
    check(GW_PF_AddModule("TcpServerModule", "tcp", &tcp), "AddModule");
    check(BenchSupport::setModuleParam(tcp, "LocalIP", "127.0.0.1"), "LocalIP");
    check(BenchSupport::setModuleParam(tcp, "LocalPort", QByteArray::number(BenchSupport::freeLoopbackPort())),
          "LocalPort");
    std::unique_ptr<GW_PARAM_RECORD> one(new GW_PARAM_RECORD{});
    one->count = 1;
    qstrcpy(one->entries[0].key, "LocalPort");
    const Figure baseline = measure(2000, [&] { GW_PF_GetModuleParam(tcp, one.get(), -1); });
    report("baseline: GetModuleParam, one key", baseline, baseline);

    report("TCP server switched on (bind, listen)", measure(50, [&] {
               check(BenchSupport::setModuleParam(tcp, "ConnectState", "true"), "on");
               BenchSupport::setModuleParam(tcp, "ConnectState", "false");
           }),
           baseline);

    int master = -1, slave = -1;
    char name[256] = {};
    if (openpty(&master, &slave, name, nullptr, nullptr) == 0) {
        ::close(slave);
        int serial = 0;
        check(GW_PF_AddModule("SerialModule", "serial", &serial), "AddModule serial");
        check(BenchSupport::setModuleParam(serial, "PortName", name), "PortName");
        Figure open = measure(50, [&] {
            check(BenchSupport::setModuleParam(serial, "ConnectState", "true"), "serial on");
            BenchSupport::setModuleParam(serial, "ConnectState", "false");
        });
        report("serial port switched on and off (pseudo-terminal)", open, baseline);
        GW_PF_DeleteModule(serial);
    } else {
        std::printf("serial: no pseudo-terminal pair, not measured\n");
    }

    for (int i = 1; i < 256; ++i) {
        int id = 0;
        check(GW_PF_AddModule(i % 2 ? "UdpModule" : "TcpClientModule", "m", &id), "AddModule");
    }
    std::unique_ptr<GW_MODULE_INFO[]> modules(new GW_MODULE_INFO[256]());
    std::unique_ptr<GW_PARAM_RECORD> all(new GW_PARAM_RECORD{});
    int count = 0;
    report("GetAllModules, 256 modules", measure(50, [&] { GW_PF_GetAllModules(modules.get(), 256, &count); }),
           baseline);
    report("AddModule and DeleteModule beside 256 modules", measure(50, [&] {
               int id = 0;
               check(GW_PF_AddModule("UdpModule", "extra", &id), "AddModule");
               GW_PF_DeleteModule(id);
           }),
           baseline);

    // A restarted gateway loads its 256 modules from its database; the first
    // full read is what a page does when it reconnects.
    GW_PF_DeInit();
    gateway.stop();
    const auto restartAt = Clock::now();
    if (!gateway.start()) {
        std::fprintf(stderr, "cannot restart the gateway: %s\n", qPrintable(gateway.error()));
        return 1;
    }
    std::printf("%-58s %8.3f ms\n", "gateway start to listening, 256 modules stored",
                std::chrono::duration<double, std::milli>(Clock::now() - restartAt).count());
    check(GW_PF_Init(1, "127.0.0.1", gateway.port(), 101), "GW_PF_Init");
    Figure slowestOne;
    const Figure firstRead = measure(1, [&] {
        check(GW_PF_GetAllModules(modules.get(), 256, &count), "GetAllModules");
        for (int i = 0; i < count; ++i) {
            std::memset(all.get(), 0, sizeof(GW_PARAM_RECORD));
            const Figure f = measure(1, [&] { GW_PF_GetAllParam(modules[size_t(i)].moduleId, all.get(), -1); });
            slowestOne.maxMs = std::max(slowestOne.maxMs, f.maxMs);
        }
    });
    report("first read after restart: GetAllModules + 256 GetAllParam", firstRead, baseline);
    report("  its slowest single call", slowestOne, baseline);
    GW_PF_DeInit();
    gateway.stop();
    return 0;
}
