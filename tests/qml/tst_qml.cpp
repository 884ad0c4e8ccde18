// Qt Quick Test harness of the page: the QML files come from the module's
// resources (qrc:/QmlFiles), the module's QML names are backed by the real
// models over the fake gateway.
#include "DevicesManager.h"
#include "FakeGateway.h"
#include "FakeMainWindow.h"
#include "QGlobalEventFilter.h"
#include "QmlTestGateway.h"

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
        qmlRegisterSingletonInstance("test.gateway", 1, 0, "TestGateway", &m_gateway);
    }

    void cleanupTestCase() { FakeGateway::instance().reset(); }

private:
    QmlTestGateway m_gateway;
    FakeMainWindow m_window;
};

QUICK_TEST_MAIN_WITH_SETUP(tst_qml, Setup)

#include "tst_qml.moc"
