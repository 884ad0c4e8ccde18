// commmanager owns its gateway: however commmanager ends, its gatewayd ends
// with it and the ports are free again; a gateway that dies is started again
// on the same port and folder; a second commmanager on the same state folder
// refuses to start.
#include "GwPlatform.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QtTest>
#include <csignal>
#include <memory>

namespace {
// Running, not a zombie waiting for a parent to reap it.
bool isRunning(qint64 pid)
{
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly))
        return false;
    const QByteArray text = stat.readAll();
    const int close = text.lastIndexOf(')');
    return close > 0 && text.mid(close + 2, 1) != "Z";
}

bool portIsFree(int port)
{
    QTcpServer probe;
    return probe.listen(QHostAddress::LocalHost, quint16(port));
}
} // namespace

class tst_CommManagerLifecycle : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void ending_stopsTheGateway_freesThePorts_data();
    void ending_stopsTheGateway_freesThePorts();
    void deadGateway_startedAgainOnTheSamePort();
    void secondCommManager_onOneStateFolder_refused();
    void help_data();
    void help();
    void serialExtra_offeredByItsGateway();

private:
    // Starts commmanager on m_dir and waits until its page talks to its gateway.
    bool startCommManager(const QStringList &extraArgs = {});
    qint64 gatewayPid() const;
    void addOpenDevice(int devicePort);

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<QProcess> m_app;
    int m_gatewayPort = 0;
};

void tst_CommManagerLifecycle::init()
{
    m_dir.reset(new QTemporaryDir);
    m_app.reset(new QProcess);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
    m_app->setProcessEnvironment(env);
    m_app->setProcessChannelMode(QProcess::SeparateChannels);
    m_app->setReadChannel(QProcess::StandardError); // its log lines
}

void tst_CommManagerLifecycle::cleanup()
{
    GW_PF_DeInit();
    if (m_app->state() != QProcess::NotRunning) {
        m_app->terminate();
        m_app->waitForFinished(15000);
    }
}

bool tst_CommManagerLifecycle::startCommManager(const QStringList &extraArgs)
{
    m_app->start(QStringLiteral(COMMMANAGER_PATH),
                 QStringList{QStringLiteral("--lang"), QStringLiteral("en"), QStringLiteral("--state-dir"), m_dir->path()}
                     + extraArgs);
    static const QRegularExpression initStart(QStringLiteral("GW_PF_Init start, 127\\.0\\.0\\.1:(\\d+)"));
    QByteArray said;
    while (m_app->waitForReadyRead(20000)) {
        said += m_app->readAllStandardError();
        const QRegularExpressionMatch match = initStart.match(QString::fromUtf8(said));
        if (match.hasMatch())
            m_gatewayPort = match.captured(1).toInt();
        // Ready: Init has loaded the devices and set the callbacks.
        if (m_gatewayPort && said.contains("commmanager: the page is ready"))
            return true;
    }
    qWarning("%s", said.constData());
    return false;
}

qint64 tst_CommManagerLifecycle::gatewayPid() const
{
    QFile lock(m_dir->filePath(QStringLiteral("gateway/gatewayd.lock")));
    return lock.open(QIODevice::ReadOnly) ? lock.readLine().trimmed().toLongLong() : 0;
}

// A TCP server device switched on through the page's gateway, holding a port.
void tst_CommManagerLifecycle::addOpenDevice(int devicePort)
{
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", m_gatewayPort, 101), GW_OK);
    int id = 0;
    QCOMPARE(GW_PF_AddModule("TcpServerModule", "held", &id), GW_OK);
    std::unique_ptr<GW_PARAM_RECORD> rec(new GW_PARAM_RECORD{});
    rec->count = 3;
    qstrcpy(rec->entries[0].key, "LocalIP");
    qstrcpy(rec->entries[0].value, "127.0.0.1");
    qstrcpy(rec->entries[1].key, "LocalPort");
    qstrcpy(rec->entries[1].value, QByteArray::number(devicePort).constData());
    qstrcpy(rec->entries[2].key, "ConnectState");
    qstrcpy(rec->entries[2].value, "true");
    QCOMPARE(GW_PF_SetModuleParam(id, rec.get(), -1), GW_OK);
    QVERIFY(!portIsFree(devicePort));
    GW_PF_DeInit();
}

void tst_CommManagerLifecycle::ending_stopsTheGateway_freesThePorts_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<bool>("closesItsPage"); // a normal exit, with the page's DeInit in the log
    QTest::newRow("SIGTERM") << int(SIGTERM) << true;
    QTest::newRow("SIGINT (Ctrl+C)") << int(SIGINT) << true;
    QTest::newRow("SIGHUP") << int(SIGHUP) << true;
    QTest::newRow("SIGKILL") << int(SIGKILL) << false;
}

void tst_CommManagerLifecycle::ending_stopsTheGateway_freesThePorts()
{
    QFETCH(int, signal);
    QFETCH(bool, closesItsPage);
    QVERIFY(startCommManager());
    const qint64 gateway = gatewayPid();
    QVERIFY(gateway > 0 && isRunning(gateway));
    QTcpServer reserve;
    QVERIFY(reserve.listen(QHostAddress::LocalHost, 0));
    const int devicePort = reserve.serverPort();
    reserve.close();
    addOpenDevice(devicePort);
    if (QTest::currentTestFailed())
        return;

    QCOMPARE(::kill(pid_t(m_app->processId()), signal), 0);
    QVERIFY(m_app->waitForFinished(20000));
    const QByteArray said = m_app->readAllStandardError();
    if (closesItsPage) {
        QCOMPARE(m_app->exitStatus(), QProcess::NormalExit);
        QVERIFY2(said.contains("CommManagerModule DeInit succ"), said.constData());
    }
    QTRY_VERIFY_WITH_TIMEOUT(!isRunning(gateway), 10000);
    QTRY_VERIFY(portIsFree(m_gatewayPort));
    QTRY_VERIFY(portIsFree(devicePort));
}

void tst_CommManagerLifecycle::deadGateway_startedAgainOnTheSamePort()
{
    QVERIFY(startCommManager());
    const qint64 first = gatewayPid();
    QCOMPARE(::kill(pid_t(first), SIGKILL), 0);
    QTRY_VERIFY_WITH_TIMEOUT(gatewayPid() != first && gatewayPid() > 0 && isRunning(gatewayPid()), 15000);
    // The page's client library finds it on the port it knows and reloads.
    QByteArray said;
    QTRY_VERIFY_WITH_TIMEOUT((said += m_app->readAllStandardError()).contains("gateway restored, reloading the devices"),
                             15000);
    QVERIFY2(said.contains("gateway lost, devices shown as not connected"), said.constData());
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", m_gatewayPort, 101), GW_OK);
}

void tst_CommManagerLifecycle::secondCommManager_onOneStateFolder_refused()
{
    QVERIFY(startCommManager());
    QProcess second;
    second.setProcessEnvironment(m_app->processEnvironment());
    // --screenshot: no message box to wait for; the refusal is on stderr.
    second.start(QStringLiteral(COMMMANAGER_PATH), {QStringLiteral("--lang"), QStringLiteral("en"),
                                                    QStringLiteral("--state-dir"), m_dir->path(),
                                                    QStringLiteral("--screenshot"), m_dir->filePath("x.png")});
    QVERIFY(second.waitForFinished(20000));
    QCOMPARE(second.exitCode(), 5);
    const QByteArray said = second.readAllStandardError();
    QVERIFY2(said.contains(QByteArray("another gateway (pid ") + QByteArray::number(gatewayPid())
                           + ") already uses the state directory"),
             said.constData());
    QVERIFY(!QFile::exists(m_dir->filePath("x.png")));
    QVERIFY(isRunning(gatewayPid())); // the first one's gateway is untouched
}

void tst_CommManagerLifecycle::help_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("the page starts in Chinese") << "The page starts in Chinese unless --lang en is given.";
    QTest::newRow("serial extras, as gatewayd takes them") << "--serial-extra <path>";
}

void tst_CommManagerLifecycle::help()
{
    QFETCH(QString, text);
    QProcess app;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("QT_QPA_PLATFORM")); // --help in a terminal without a display
    env.remove(QStringLiteral("DISPLAY"));
    app.setProcessEnvironment(env);
    app.start(QStringLiteral(COMMMANAGER_PATH), {QStringLiteral("--help")});
    QVERIFY(app.waitForFinished(20000));
    QCOMPARE(app.exitCode(), 0);
    const QString said = QString::fromUtf8(app.readAllStandardOutput()).simplified();
    QVERIFY2(said.contains(text), qPrintable(said));
}

// A pseudo-terminal given to commmanager is in its gateway's serial list.
void tst_CommManagerLifecycle::serialExtra_offeredByItsGateway()
{
    const QString extra = m_dir->filePath(QStringLiteral("ttyTEST0"));
    QVERIFY(startCommManager({QStringLiteral("--serial-extra"), extra}));
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", m_gatewayPort, 101), GW_OK);
    char list[4096] = {};
    int length = 0;
    QCOMPARE(GW_PF_GetSerialList(list, sizeof(list), &length), GW_OK);
    QVERIFY2(QString::fromUtf8(list).split(QLatin1Char('\t')).contains(extra), list);
}

QTEST_GUILESS_MAIN(tst_CommManagerLifecycle)
#include "tst_commmanager_lifecycle.moc"
