// gatewayd: the local gateway process. Runs the communication devices and
// serves the GW_PF_* client library on 127.0.0.1.
#include "GatewayLog.h"
#include "GatewayServer.h"
#include "GatewayService.h"
#include "GwHopStamps.h"
#include "SignalQuit.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QLockFile>
#include <csignal>
#include <cstdio>

namespace {
// Exit codes besides 0: 1 cannot start, 2 wrong usage.
constexpr int kExitStateDirInUse = 3;

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
    parser.addOption({QStringLiteral("allow-uid"),
                      QStringLiteral("Also admit processes of user id UID (repeatable); the gateway's own user and "
                                     "root always are."),
                      QStringLiteral("UID")});
    parser.addOption({QStringLiteral("log-file"),
                      QStringLiteral("Write the log to FILE, rotated by size (default: standard error)."),
                      QStringLiteral("FILE")});
    parser.process(app);

    bool portOk = false;
    const uint port = parser.value(QStringLiteral("port")).toUInt(&portOk);
    if (!portOk || port > 65535) {
        std::fprintf(stderr, "gatewayd: invalid --port %s\n", qPrintable(parser.value(QStringLiteral("port"))));
        return 2;
    }

    GatewayLog log;
    if (!log.open(parser.value(QStringLiteral("log-file")))) {
        std::fprintf(stderr, "gatewayd: cannot write the log file %s\n",
                     qPrintable(parser.value(QStringLiteral("log-file"))));
        return 1;
    }
    log.install();

    // One gateway per state directory: two would each run the devices and
    // keep a database the other does not see.
    const QString stateDir = parser.value(QStringLiteral("state-dir"));
    QDir().mkpath(stateDir);
    QLockFile lock(QDir(stateDir).filePath(QStringLiteral("gatewayd.lock")));
    lock.setStaleLockTime(0); // held as long as its process lives, however long that is
    if (!lock.tryLock(0)) {
        qint64 pid = 0;
        QString host, application;
        lock.getLockInfo(&pid, &host, &application);
        const QString message = lock.error() == QLockFile::LockFailedError
                                    ? QStringLiteral("another gateway (pid %1) already uses the state directory %2")
                                          .arg(pid)
                                          .arg(QDir(stateDir).absolutePath())
                                    : QStringLiteral("cannot lock the state directory %1").arg(QDir(stateDir).absolutePath());
        if (parser.isSet(QStringLiteral("log-file")))
            qCritical("%s", qPrintable(message));
        std::fprintf(stderr, "gatewayd: %s\n", qPrintable(message));
        return kExitStateDirInUse;
    }

    // SIGTERM, SIGINT and SIGHUP end the event loop, so devices are closed
    // and state is flushed on the way out.
    SignalQuit quitOnSignals;
    GatewayService service;
    service.setSerialExtras(parser.values(QStringLiteral("serial-extra")));
    if (!service.start(stateDir))
        return 1;
    QList<uid_t> allowed;
    for (const QString &text : parser.values(QStringLiteral("allow-uid"))) {
        bool ok = false;
        const uint uid = text.toUInt(&ok);
        if (!ok) {
            std::fprintf(stderr, "gatewayd: invalid --allow-uid %s\n", qPrintable(text));
            return 2;
        }
        allowed.append(uid_t(uid));
    }
    GatewayServer server(service);
    server.setAllowedUids(allowed);
    if (!server.listen(quint16(port))) {
        std::fprintf(stderr, "gatewayd: cannot listen on 127.0.0.1:%u: %s\n", port, qPrintable(server.errorString()));
        return 1;
    }
    qInfo("listening on 127.0.0.1:%u, state directory %s", unsigned(server.port()),
          qPrintable(QDir(stateDir).absolutePath()));
    std::printf("listening on 127.0.0.1:%u\n", unsigned(server.port()));
    std::fflush(stdout);
    const int rc = app.exec();
    service.stop();
#ifdef COMM_HOP_STAMPS
    gwHopDumpToEnvDir("daemon");
#endif
    return rc;
}
