// gatewayd: the local gateway process. Runs the communication devices and
// serves the GW_PF_* client library on 127.0.0.1.
#include "GatewayServer.h"
#include "GatewayService.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <csignal>
#include <cstdio>
#include <sys/socket.h>
#include <unistd.h>

namespace {
int g_signalPipe[2] = {-1, -1};

void onSignal(int)
{
    const char byte = 1;
    (void)!::write(g_signalPipe[1], &byte, 1);
}

// SIGTERM and SIGINT end the event loop from a normal slot, so devices are
// closed and state is flushed on the way out.
void installQuitOnSignal(QCoreApplication &app)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, g_signalPipe) != 0)
        return;
    auto *notifier = new QSocketNotifier(g_signalPipe[0], QSocketNotifier::Read, &app);
    QObject::connect(notifier, &QSocketNotifier::activated, &app, [&app] {
        char byte;
        (void)!::read(g_signalPipe[0], &byte, 1);
        app.quit();
    });
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
}
} // namespace

int main(int argc, char *argv[])
{
    qSetMessagePattern(QStringLiteral("%{time yyyy-MM-dd hh:mm:ss.zzz} gatewayd %{type}: %{message}"));
    // Qt's own event dispatcher rather than GLib's: a request costs a few
    // system calls fewer (no wake-up descriptor written and read per event),
    // which is most of a round trip on loopback.
    qputenv("QT_NO_GLIB", "1");
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("gatewayd"));
    std::signal(SIGPIPE, SIG_IGN);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Lumora communication gateway"));
    parser.addHelpOption();
    parser.addOption({QStringLiteral("port"), QStringLiteral("Port on 127.0.0.1 (0 picks a free one)."),
                      QStringLiteral("N"), QStringLiteral("0")});
    parser.addOption({QStringLiteral("state-dir"), QStringLiteral("Directory of the gateway's database."),
                      QStringLiteral("DIR"), QStringLiteral(".")});
    parser.addOption({QStringLiteral("serial-extra"),
                      QStringLiteral("Extra serial device path to offer (repeatable)."), QStringLiteral("PATH")});
    parser.process(app);

    bool portOk = false;
    const uint port = parser.value(QStringLiteral("port")).toUInt(&portOk);
    if (!portOk || port > 65535) {
        std::fprintf(stderr, "gatewayd: invalid --port %s\n", qPrintable(parser.value(QStringLiteral("port"))));
        return 2;
    }

    installQuitOnSignal(app);
    GatewayService service;
    service.setSerialExtras(parser.values(QStringLiteral("serial-extra")));
    if (!service.start(parser.value(QStringLiteral("state-dir"))))
        return 1;
    GatewayServer server(service);
    if (!server.listen(quint16(port))) {
        std::fprintf(stderr, "gatewayd: cannot listen on 127.0.0.1:%u: %s\n", port, qPrintable(server.errorString()));
        return 1;
    }
    std::printf("listening on 127.0.0.1:%u\n", unsigned(server.port()));
    std::fflush(stdout);
    const int rc = app.exec();
    service.stop();
    return rc;
}
