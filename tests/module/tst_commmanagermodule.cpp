#include "CapturedLog.h"
#include "CommManagerModule.h"
#include "FakeGateway.h"

#include "ContextModel.h"
#include "HostConfig.h"
#include "ModuleRegistry.h"
#include "QUICore.h"
#include "Slog.h"

#include <QQmlContext>
#include <QQuickItem>
#include <QRegularExpression>
#include <QtTest>

namespace {
const QString kPage = QStringLiteral("qrc:/QmlFiles/CommManagerModuleDialog.qml");
}

class tst_CommManagerModule : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void init_succeeds_registersAndShowsThePage();
    void init_failure_data();
    void init_failure();
    void init_hostAlreadyKnowsModule_addsNothing();
    void init_portNotANumber_passesPortZero();
    void repeatedInitOrDeInit_callsNothing();
    void deInit_thenInit();
    void hostSignal_deInitialisesAndHides_data();
    void hostSignal_deInitialisesAndHides();
    void viewHide_emitsCloseClicked();

private:
    int linesContaining(const QString &text) const { return HostLog::capturedMessages().filter(text).size(); }

    std::shared_ptr<ModuleRegistry> m_registry;
    FakeGateway &m_gw = FakeGateway::instance();
};

void tst_CommManagerModule::initTestCase()
{
    m_registry = ModuleRegistry::installDefault();
    HostConfig::setLanguage(QStringLiteral("en"));
}

void tst_CommManagerModule::init()
{
    m_gw.reset();
    m_registry->clearModules();
    m_registry->clearForcedAnswers();
    HostConfig::setGatewayPort(QStringLiteral("5678"));
    QUICore::clearShownMessageBoxes();
    HostLog::clearCaptured();
    HostLog::setCaptureEnabled(true);
}

void tst_CommManagerModule::cleanup()
{
    HostLog::setCaptureEnabled(false);
}

void tst_CommManagerModule::init_succeeds_registersAndShowsThePage()
{
    CommManagerModule module;
    QCOMPARE(module.Init(QString(), QString()), 0);
    QVERIFY(module.isInited());
    // The host now knows the module.
    QCOMPARE(m_registry->modules().size(), 1);
    QCOMPARE(m_registry->modules().first().moduleId, 10999);
    QCOMPARE(QString::fromUtf8(m_registry->modules().first().displayName), QStringLiteral("通信管理"));
    // The gateway was opened on the host's port, the devices loaded, and the
    // gateway's callbacks now reach the module.
    const FakeGwCall initCall = m_gw.lastCall(QStringLiteral("Init"));
    QCOMPARE(initCall.text, QByteArray("127.0.0.1"));
    QCOMPARE(initCall.number, 5678);
    QCOMPARE(initCall.moduleId, 1);    // first argument
    QCOMPARE(initCall.addressId, 101); // dongle type
    QCOMPARE(m_gw.calls(QStringLiteral("GetAllModules")).size(), 1);
    QVERIFY(m_gw.fireEvent(GW_EVENT_NONE, FakeGateway::modulePayload(1)));
    QVERIFY(m_gw.fireResult(1, -1, "x"));
    const QRegularExpression start(
        QStringLiteral("^\\[CommManager\\] \\[Init@\\d+\\] GW_PF_Init start, 127\\.0\\.0\\.1:5678, dongle type=101$"));
    QCOMPARE(HostLog::capturedMessages().filter(start).size(), 1);

    QCOMPARE(module.source(), QUrl(kPage));
    QVERIFY(module.rootObject());
    QCOMPARE(module.rootContext()->contextProperty("MainWindow").value<QObject *>(), &module);
    const Qt::WindowFlags onTop = Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;
    QCOMPARE(module.flags() & onTop, onTop);
    QCOMPARE(module.resizeMode(), QQuickView::SizeRootObjectToView);
    QVERIFY(QUICore::shownMessageBoxes().isEmpty());
}

void tst_CommManagerModule::init_failure_data()
{
    QTest::addColumn<int>("kind"); // the host command that fails, or -1: the gateway refuses
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("errorCode");
    QTest::addColumn<QString>("logLine");
    QTest::addColumn<QString>("boxText");

    QTest::newRow("module list query fails") << int(ModuleRegistry::ModuleListQuery) << 0 << int(0x8000000A)
        << "query communication failed.error=-2147483638,status=0,message=nope"
        << "Querying the communication module failed: 0x8000000A";
    QTest::newRow("module list query fails with a translated code")
        << int(ModuleRegistry::ModuleListQuery) << 2 << int(0xE0000004)
        << "query communication failed.error=-536870908,status=2,message=nope"
        << "Querying the communication module failed: The gateway cannot be reached";
    QTest::newRow("add module refused")
        << int(ModuleRegistry::AddModule) << 3 << 77 << "add communication module failed.error=77,status=3,message=nope"
        << "Creating the communication module failed";
    QTest::newRow("port query refused") << int(ModuleRegistry::RunParamQuery) << 3 << 78
        << "GetProxyInitPort faile.error=78,status=3,message=nope" << "Reading the gateway port failed";
    QTest::newRow("gateway refuses init") << -1 << 0 << int(0xE0000004)
        << "GW_PF_Init failed,127.0.0.1:5678, dongle type=101. error=e0000004" << "Connecting to the gateway failed";
}

void tst_CommManagerModule::init_failure()
{
    QFETCH(int, kind);
    QFETCH(int, status);
    QFETCH(int, errorCode);
    QFETCH(QString, logLine);
    QFETCH(QString, boxText);
    if (kind >= 0)
        m_registry->forceAnswer(ModuleRegistry::CommandKind(kind), status, errorCode, QStringLiteral("nope"));
    else
        m_gw.answer(QStringLiteral("Init"), quint32(errorCode));

    CommManagerModule module;
    QCOMPARE(module.Init(QString(), QString()), errorCode);
    QVERIFY(!module.isInited());
    QCOMPARE(capturedLogLines().count(QStringLiteral("[CommManager] [Init] ") + logLine), 1);
    QCOMPARE(QUICore::shownMessageBoxes().size(), 1);
    QCOMPARE(QUICore::shownMessageBoxes().first().text, boxText);
    QCOMPARE(QUICore::shownMessageBoxes().first().type, 0);
    // No callback is registered, no device loaded and no page shown after a failure.
    QVERIFY(!m_gw.fireEvent(GW_EVENT_NONE, FakeGateway::modulePayload(1)));
    QVERIFY(!m_gw.fireResult(1, -1, "x"));
    QVERIFY(m_gw.calls(QStringLiteral("GetAllModules")).isEmpty());
    QVERIFY(module.source().isEmpty());
    QVERIFY(!module.rootContext()->contextProperty("MainWindow").isValid());
}

void tst_CommManagerModule::init_hostAlreadyKnowsModule_addsNothing()
{
    CommManagerModule first;
    QCOMPARE(first.Init(QString(), QString()), 0);
    HostLog::clearCaptured();
    const int addsBefore = m_registry->executedCount(ModuleRegistry::AddModule);

    CommManagerModule second;
    QCOMPARE(second.Init(QString(), QString()), 0);
    QCOMPARE(m_registry->executedCount(ModuleRegistry::AddModule), addsBefore);
    const QStringList lines = capturedLogLines();
    const int existed = lines.indexOf(QStringLiteral("[CommManager] [Init] communication already existed. moduleID=10999"));
    QVERIFY(existed >= 0);
    QCOMPARE(HostLog::captured().at(existed).level, 2);
}

void tst_CommManagerModule::init_portNotANumber_passesPortZero()
{
    HostConfig::setGatewayPort(QStringLiteral("gateway"));
    m_gw.answer(QStringLiteral("Init"), GW_ERR_CONNECT_FAILED);
    CommManagerModule module;
    QCOMPARE(module.Init(QString(), QString()), int(GW_ERR_CONNECT_FAILED));
    QCOMPARE(m_gw.lastCall(QStringLiteral("Init")).number, 0);
    QCOMPARE(linesContaining("GW_PF_Init start, 127.0.0.1:gateway, dongle type=101"), 1);
}

// DeInit before Init, and Init once initialised, return at once.
void tst_CommManagerModule::repeatedInitOrDeInit_callsNothing()
{
    CommManagerModule module;
    module.DeInit();
    module.DeInit();
    QVERIFY(m_gw.calls().isEmpty());
    QCOMPARE(linesContaining("CommManagerModule already DeInited, leave"), 2);
    QCOMPARE(module.Init(QString(), QString()), 0);
    m_gw.clearCalls();
    QCOMPARE(module.Init(QString(), QString()), 0);
    QVERIFY(m_gw.calls().isEmpty());
    QVERIFY(HostLog::capturedMessages().last().endsWith(QLatin1String("CommManagerModule already Inited, leave")));
}

// A refused DeInit leaves everything as it was; after an accepted one the
// page is unloaded, and the next Init opens the gateway and loads it again.
void tst_CommManagerModule::deInit_thenInit()
{
    CommManagerModule module;
    QCOMPARE(module.Init(QString(), QString()), 0);
    m_gw.answer(QStringLiteral("DeInit"), GW_ERR_CONNECTION_LOST);
    module.DeInit();
    QVERIFY(module.isInited());
    QCOMPARE(module.source(), QUrl(kPage));
    QCOMPARE(linesContaining("CommManagerModule DeInit failed error=e0000006, leave"), 1);

    m_gw.answer(QStringLiteral("DeInit"), GW_OK);
    module.DeInit();
    QVERIFY(!module.isInited());
    QVERIFY(module.source().isEmpty());
    QVERIFY(!module.rootObject());
    QCOMPARE(linesContaining("CommManagerModule DeInit succ, leave"), 1);

    QCOMPARE(module.Init(QString(), QString()), 0);
    QCOMPARE(module.source(), QUrl(kPage));
    QVERIFY(module.rootObject());
    QCOMPARE(m_gw.calls(QStringLiteral("GetAllModules")).size(), 2);
    QCOMPARE(m_gw.calls(QStringLiteral("Init")).size(), 2);
}

void tst_CommManagerModule::hostSignal_deInitialisesAndHides_data()
{
    QTest::addColumn<bool>("seized");
    QTest::newRow("solution loads, page shown") << false;
    QTest::newRow("server seized, page shown") << true;
}

void tst_CommManagerModule::hostSignal_deInitialisesAndHides()
{
    QFETCH(bool, seized);
    CommManagerModule module;
    QCOMPARE(module.Init(QString(), QString()), 0);
    module.show();
    ContextModel *context = QUICore::QUICoreInstance()->contextModel();
    if (seized)
        emit context->Sig_ServerSeized(QStringLiteral("other client"));
    else
        emit context->Sig_loadSolBegin(QStringLiteral("solution"));
    QVERIFY(!module.isInited());
    QVERIFY(!module.isVisible());
    QCOMPARE(m_gw.calls(QStringLiteral("DeInit")).size(), 1);
    const QString name = seized ? QStringLiteral("Sig_ServerSeized") : QStringLiteral("Sig_loadSolBegin");
    QCOMPARE(linesContaining(name + " callback enter"), 1);
    QCOMPARE(linesContaining(name + " callback leave"), 1);
}

void tst_CommManagerModule::viewHide_emitsCloseClicked()
{
    CommManagerModule module;
    QSignalSpy closed(&module, &CommManagerModule::Sig_closeClicked);
    module.show();
    module.ViewHide();
    QVERIFY(!module.isVisible());
    QCOMPARE(closed.count(), 1);
}

QTEST_MAIN(tst_CommManagerModule)
#include "tst_commmanagermodule.moc"
