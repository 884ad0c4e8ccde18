// The module on the real gateway: devices created, switched, fed and
// renamed through the module's own models, with gatewayd behind them.
#include "CommDevice.h"
#include "CommManagerModule.h"
#include "DevicesManager.h"
#include "GatewayProcess.h"
#include "GwPlatform.h"
#include "HostConfig.h"
#include "ModuleRegistry.h"
#include "QUICore.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>
#include <memory>

namespace {
quint32 setParam(int module, const char *key, const QByteArray &value)
{
    std::unique_ptr<GW_PARAM_RECORD> rec(new GW_PARAM_RECORD{});
    rec->count = 1;
    qstrncpy(rec->entries[0].key, key, GW_PARAM_KEY_SIZE);
    qstrncpy(rec->entries[0].value, value.constData(), GW_PARAM_VALUE_SIZE);
    return GW_PF_SetModuleParam(module, rec.get(), -1);
}

quint16 freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
}
} // namespace

class tst_CommManagerE2E : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();

    void tcpServerDevice_peerBytesReachTheReceiveList();
    void tcpClientDevice_lostConnection_turnsSwitchOff();
    void renameAndDelete_surviveAGatewayRestart();

private:
    int create(const QString &type, const QString &name);
    DevicesManager *manager() const { return DevicesManager::Instance(); }

    GatewayProcess m_gw;
    std::shared_ptr<ModuleRegistry> m_registry;
    std::unique_ptr<CommManagerModule> m_module;
};

void tst_CommManagerE2E::initTestCase()
{
    QVERIFY2(m_gw.start(), qPrintable(m_gw.error()));
    m_registry = ModuleRegistry::installDefault();
    HostConfig::setLanguage(QStringLiteral("en"));
    HostConfig::setGatewayPort(QString::number(m_gw.port()));
    m_module.reset(new CommManagerModule);
    QCOMPARE(m_module->Init(QString(), QString()), 0);
}

void tst_CommManagerE2E::cleanupTestCase()
{
    m_module->DeInit();
    m_module.reset();
    QVERIFY(m_gw.stop());
}

int tst_CommManagerE2E::create(const QString &type, const QString &name)
{
    if (!manager()->loadAlgorithmTabXML(type)) {
        qWarning("no template for %s", qPrintable(type));
        return -1;
    }
    // The new device's id, or the gateway's code.
    const int rc = manager()->createCommDevice(type, name);
    if (rc <= 0 || !manager()->getDeviceById(rc)) {
        qWarning("creating %s failed: %x", qPrintable(type), rc);
        return -1;
    }
    return rc;
}

void tst_CommManagerE2E::tcpServerDevice_peerBytesReachTheReceiveList()
{
    const int id = create(QStringLiteral("TcpServerModule"), QStringLiteral("Line 1"));
    QVERIFY(id > 0);
    const quint16 port = freePort();
    QCOMPARE(setParam(id, "LocalIP", "127.0.0.1"), GW_OK);
    QCOMPARE(setParam(id, "LocalPort", QByteArray::number(port)), GW_OK);
    CommDevice *device = manager()->getDeviceById(id);
    QVERIFY(device);
    device->setConnectState(true);
    QVERIFY(device->connectState());

    QTcpSocket peer;
    peer.connectToHost(QHostAddress::LocalHost, port);
    QVERIFY(peer.waitForConnected(3000));
    peer.write("PART-OK;12.5\r\nNG;3");
    peer.write("\r\nEND\r\n");
    QTRY_COMPARE(device->recvDataList().size(), 3);
    const QStringList texts = device->recvDataList();
    const QStringList hexes = device->recvHexDataList();
    QCOMPARE(hexes.size(), 3);
    const QStringList lines{"PART-OK;12.5", "NG;3", "END"};
    const QStringList hexLines{"[50][41][52][54][2D][4F][4B][3B][31][32][2E][35][0D][0A]", "[4E][47][3B][33][0D][0A]",
                               "[45][4E][44][0D][0A]"};
    for (int i = 0; i < 3; ++i) {
        QVERIFY2(texts[i].endsWith(lines[i] + QStringLiteral("[0D][0A]")), qPrintable(texts[i]));
        QVERIFY2(hexes[i].endsWith(hexLines[i]), qPrintable(hexes[i]));
    }

    QCOMPARE(manager()->gwSendData(id, QStringLiteral("TRIGGER")), 0);
    QByteArray got;
    QTRY_VERIFY((got += peer.readAll()).contains("TRIGGER"));
    manager()->sendDataNormalDevice()->setHexEnable(true);
    QCOMPARE(manager()->gwSendData(id, QStringLiteral("53 54 4F 50 0")), 0); // odd last digit dropped
    manager()->sendDataNormalDevice()->setHexEnable(false);
    QTRY_VERIFY((got += peer.readAll()).endsWith("TRIGGERSTOP"));
    device->setConnectState(false);
    QVERIFY(!device->connectState());
}

void tst_CommManagerE2E::tcpClientDevice_lostConnection_turnsSwitchOff()
{
    QTcpServer listener;
    QVERIFY(listener.listen(QHostAddress::LocalHost));
    const int id = create(QStringLiteral("TcpClientModule"), QStringLiteral("Robot"));
    QVERIFY(id > 0);
    QCOMPARE(setParam(id, "TargetIP", "127.0.0.1"), GW_OK);
    QCOMPARE(setParam(id, "TargetPort", QByteArray::number(listener.serverPort())), GW_OK);
    QCOMPARE(setParam(id, "AutoReconnect", "false"), GW_OK);
    CommDevice *device = manager()->getDeviceById(id);
    device->setConnectState(true);
    QVERIFY(listener.waitForNewConnection(3000));
    QTcpSocket *peer = listener.nextPendingConnection();
    QVERIFY(device->connectState());

    peer->abort();
    listener.close();
    // The gateway reports the loss; the switch goes off and reads off.
    QTRY_VERIFY(!device->connectState());
    QCOMPARE(device->GwGetConnectState(), 0);
    QVERIFY(!device->connectState());
}

void tst_CommManagerE2E::renameAndDelete_surviveAGatewayRestart()
{
    const int keep = create(QStringLiteral("UdpModule"), QStringLiteral("Scanner"));
    const int drop = create(QStringLiteral("ProfinetModule"), QStringLiteral("PLC"));
    QVERIFY(keep > 0 && drop > 0);
    QVERIFY(manager()->changeDeviceName(keep, QStringLiteral("扫码枪")));
    QCOMPARE(manager()->deleteCommDevice(drop), 0);

    // The gateway goes down and comes back on a new port with its state.
    m_module->DeInit();
    QVERIFY(m_gw.stop());
    QVERIFY2(m_gw.start(), qPrintable(m_gw.error()));
    HostConfig::setGatewayPort(QString::number(m_gw.port()));
    QCOMPARE(m_module->Init(QString(), QString()), 0);
    manager()->LoadDevices();
    QStringList names;
    for (CommDevice *device : manager()->commDeviceList())
        names << device->deviceName();
    QVERIFY2(names.contains(QStringLiteral("扫码枪")), qPrintable(names.join(',')));
    QVERIFY(!names.contains(QStringLiteral("PLC")));
    QVERIFY(!manager()->getDeviceById(drop));
}

QTEST_MAIN(tst_CommManagerE2E)
#include "tst_commmanager_e2e.moc"
