// commmanager: the standalone host of the communication page. It sets up the
// host stand-ins (configuration, log file, command service), opens the module
// and shows the page.
#include "CommManagerModule.h"
#include "ErrorCodeText.h"
#include "GatewayLauncher.h"
#include "SignalQuit.h"

#include "HostConfig.h"
#include "ModuleRegistry.h"
#include "QUICore.h"
#include "Slog.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QMessageBox>
#include <QQmlContext>
#include <QQuickWindow>
#include <QStandardPaths>
#include <QTimer>
#include <cstdio>

namespace {
QString defaultStateDir()
{
    const QByteArray xdg = qgetenv("XDG_STATE_HOME");
    const QString base = xdg.isEmpty() ? QDir::homePath() + QStringLiteral("/.local/state") : QString::fromLocal8Bit(xdg);
    return base + QStringLiteral("/lumora");
}

// Writes the page to a PNG once it has been drawn twice, then quits.
void screenshotWhenDrawn(CommManagerModule &module, const QString &file)
{
    auto *frames = new int(0);
    QObject::connect(&module, &QQuickWindow::frameSwapped, &module, [&module, file, frames] {
        if (++*frames != 2)
            return;
        const QImage image = module.grabWindow();
        const bool ok = !image.isNull() && image.save(file);
        std::fprintf(ok ? stdout : stderr, ok ? "screenshot written to %s\n" : "cannot write screenshot %s\n",
                     qPrintable(file));
        delete frames;
        QCoreApplication::exit(ok ? 0 : 3);
    });
    QTimer::singleShot(20000, &module, [] {
        std::fprintf(stderr, "the page was not drawn within 20 s\n");
        QCoreApplication::exit(4);
    });
}
} // namespace

int main(int argc, char *argv[])
{
    // --help prints and exits: it needs no display, also in a terminal without one.
    for (int i = 1; i < argc; ++i) {
        const QByteArray arg(argv[i]);
        if ((arg == "--help" || arg == "-h" || arg == "-?" || arg == "--help-all")
            && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "minimal");
    }
    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("commmanager"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Lumora communication manager"));
    parser.addHelpOption();
    QCommandLineOption lang(QStringLiteral("lang"),
                            QStringLiteral("Language of the page: en or zh. The page starts in Chinese unless "
                                           "--lang en is given."),
                            QStringLiteral("lang"), QStringLiteral("zh"));
    QCommandLineOption port(QStringLiteral("gateway-port"),
                            QStringLiteral("Port of a running gateway (default: start one)."), QStringLiteral("port"));
    QCommandLineOption stateDir(QStringLiteral("state-dir"), QStringLiteral("Folder for the log and the gateway state."),
                                QStringLiteral("dir"), defaultStateDir());
    QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                  QStringLiteral("Render the page once, write it to FILE and exit."),
                                  QStringLiteral("file"));
    QCommandLineOption serialExtra(QStringLiteral("serial-extra"),
                                   QStringLiteral("Extra serial device path for the gateway to offer, such as a "
                                                  "pseudo-terminal (repeatable; passed to gatewayd)."),
                                   QStringLiteral("path"));
    parser.addOptions({lang, port, stateDir, screenshot, serialExtra});
    parser.process(app);

    HostConfig::setLanguage(parser.value(lang).startsWith(QLatin1String("zh")) ? QStringLiteral("zh_CN")
                                                                                : QStringLiteral("en"));
    HostLog::setLogFile(parser.value(stateDir) + QStringLiteral("/commmanager.log"));
    HostLog::setStderrLevel(4);
    // SIGTERM, SIGINT (Ctrl+C) and SIGHUP close the page and stop the
    // gateway as the close button does.
    SignalQuit quitOnSignals;
    QObject::connect(&quitOnSignals, &SignalQuit::received, [](int signalNumber) {
        std::fprintf(stderr, "commmanager: signal %d received, closing\n", signalNumber);
    });
    GatewayLauncher gateway;
    if (parser.isSet(port)) {
        HostConfig::setGatewayPort(parser.value(port));
    } else if (gateway.start(parser.value(stateDir), parser.values(serialExtra))) {
        HostConfig::setGatewayPort(QString::number(gateway.port()));
    } else {
        std::fprintf(stderr, "commmanager: %s\n", qPrintable(gateway.error()));
        if (gateway.failure() == GatewayLauncher::Failure::StateDirInUse) {
            // Two gateways on one folder would each keep their own devices:
            // say so instead of showing a page that half works.
            if (!parser.isSet(screenshot)) {
                QMessageBox box(QMessageBox::Critical, QStringLiteral("Lumora"),
                                lumoraTr(QStringLiteral("Lang_GatewayStateDirInUse"))
                                    .arg(gateway.busyStateDir())
                                    .arg(gateway.busyPid()),
                                QMessageBox::Ok);
                box.setTextFormat(Qt::PlainText); // a folder name is not markup
                // Above the other commmanager's page, which stays on top.
                box.setWindowFlag(Qt::WindowStaysOnTopHint);
                box.exec();
            }
            return 5;
        }
        return 2;
    }
    auto registry = ModuleRegistry::installDefault();
    QUICore::setInteractive(!parser.isSet(screenshot));
    if (qEnvironmentVariableIsEmpty("LM_MODULES_DIR"))
        qputenv("LM_MODULES_DIR", QByteArray(COMM_MODULES_SOURCE_DIR));

    CommManagerModule module;
    // LM_DEV_PAGES=1 (or a tab: recvMsg, sendMsg, trigger, respond, heart)
    // shows developers the switched-off pages; operators never set it.
    module.rootContext()->setContextProperty(QStringLiteral("LmDevPages"), qEnvironmentVariable("LM_DEV_PAGES"));
    if (const int rc = module.Init(QString(), QString())) {
        std::fprintf(stderr, "commmanager: the communication module could not start (code 0x%X); see %s\n",
                     unsigned(rc), qPrintable(HostLog::logFile()));
        return 2;
    }
    std::fprintf(stderr, "commmanager: the page is ready\n");
    QObject::connect(&module, &CommManagerModule::Sig_closeClicked, &app, &QCoreApplication::quit);
    if (parser.isSet(screenshot))
        screenshotWhenDrawn(module, parser.value(screenshot));
    module.show();
    const int rc = app.exec();
    module.DeInit();
    return rc;
}
