// Qt Quick Test harness of the page: the QML files come from the module's
// resources (qrc:/QmlFiles), the module's QML names are backed by the real
// models over the fake gateway; the host's part (developer switch, warnings
// log) is TestHost.
#include "DevicesManager.h"
#include "FakeGateway.h"
#include "FakeMainWindow.h"
#include "QGlobalEventFilter.h"
#include "QmlTestGateway.h"
#include "QmlTestHost.h"
#include "RecvEventManager.h"

#include "HostConfig.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQml>
#include <QtQuickTest>

class Setup : public QObject
{
    Q_OBJECT
public slots:
    void applicationAvailable()
    {
        HostConfig::setLanguage(QStringLiteral("en"));
        FakeGateway::instance().reset();
    }

    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->rootContext()->setContextProperty(QStringLiteral("MainWindow"), &m_window);
        qmlRegisterSingletonInstance("comm.devicesManager", 1, 0, "DevicesManager", DevicesManager::Instance());
        qmlRegisterType<QGlobalEventFilter>("comm.GlobalEventFilter", 1, 0, "GlobalEventFilter");
        qmlRegisterSingletonInstance("comm.recvEventManager", 1, 0, "RecvEventManager", RecvEventManager::Instance());
        qmlRegisterSingletonInstance("test.gateway", 1, 0, "TestGateway", &m_gateway);
        qmlRegisterSingletonInstance("test.host", 1, 0, "TestHost", &m_host);
        m_host.attach(engine);
    }

    void cleanupTestCase() { FakeGateway::instance().reset(); }

private:
    QmlTestGateway m_gateway;
    QmlTestHost m_host;
    FakeMainWindow m_window;
};

QUICK_TEST_MAIN_WITH_SETUP(tst_qml, Setup)

#include "tst_qml.moc"
