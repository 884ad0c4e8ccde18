// The parameter items of every shipped device type against the real gatewayd:
// values written through the item models reach the gateway, survive a restart
// of the gateway and come back into freshly built models; refused values
// change nothing and tell the operator why.
//
// The slots run in declaration order and share the devices made in
// initTestCase: values written first are the ones read back after the restart.
#include "BaseItemProxy.h"
#include "CommDevice.h"
#include "DevicesManager.h"
#include "GatewayProcess.h"
#include "GwParamRecord.h"
#include "GwPlatform.h"
#include "HostConfig.h"
#include "Slog.h"

#include <QMetaProperty>
#include <QSignalSpy>
#include <QtTest>

namespace {
const QStringList kGatewayArgs{QStringLiteral("--serial-extra"), QStringLiteral("/dev/ttyLMTEST0")};

QByteArray gwValue(int moduleId, const QByteArray &key)
{
    GwParamRecord record;
    record.addEntry(key);
    const quint32 rc = GW_PF_GetModuleParam(moduleId, record.data(), -1);
    return rc == GW_OK ? record.value() : "<error " + QByteArray::number(rc, 16) + '>';
}

quint32 setGwValue(int moduleId, const QByteArray &key, const QByteArray &value)
{
    GwParamRecord record;
    record.addEntry(key, value);
    return GW_PF_SetModuleParam(moduleId, record.data(), -1);
}

// A choice is made and shown by its text in the list, as the operator sees it.
QStringList choices(const QObject *data)
{
    return data->property(data->metaObject()->indexOfProperty("enums") >= 0 ? "enums" : "coms").toStringList();
}

QVariant shown(const QObject *data, const char *property)
{
    const QVariant value = data->property(property);
    return qstrcmp(property, "curIndex") == 0 ? QVariant(choices(data).value(value.toInt())) : value;
}

void write(QObject *data, const char *property, const QVariant &input)
{
    if (qstrcmp(property, "curIndex") == 0)
        data->setProperty(property, choices(data).indexOf(input.toString()));
    else
        data->setProperty(property, input);
}
} // namespace

class tst_ItemsGateway : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void write_reachesTheGateway_data();
    void write_reachesTheGateway();
    void refusedValue_leavesModelAndGatewayUnchanged_data();
    void refusedValue_leavesModelAndGatewayUnchanged();
    void restart_reloadsEveryDevice();
    void afterRestart_rebuiltModelShowsStoredValue_data();
    void afterRestart_rebuiltModelShowsStoredValue();

private:
    DevicesManager *manager() const { return DevicesManager::Instance(); }
    BaseItem *item(const QString &type, const QString &key) const;

    GatewayProcess m_gw;
    QMap<QString, int> m_ids; // device type -> gateway module id
};

void tst_ItemsGateway::initTestCase()
{
    QVERIFY2(m_gw.start(kGatewayArgs), qPrintable(m_gw.error()));
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", m_gw.port(), 101), GW_OK);
    HostConfig::setLanguage(QStringLiteral("en"));
    QCOMPARE(manager()->commDevices().size(), 6);
    for (const QString &type : manager()->commDevices()) {
        QVERIFY2(manager()->loadAlgorithmTabXML(type), qPrintable(type));
        const int id = manager()->createCommDevice(type, type + QStringLiteral(" 1"));
        QVERIFY2(id > 0, qPrintable(type));
        m_ids.insert(type, id);
    }
}

void tst_ItemsGateway::cleanupTestCase()
{
    GW_PF_DeInit();
    QVERIFY(m_gw.stop());
}

void tst_ItemsGateway::init()
{
    HostLog::setCaptureEnabled(true);
    HostLog::clearCaptured();
}

BaseItem *tst_ItemsGateway::item(const QString &type, const QString &key) const
{
    const CommDevice *device = manager()->getDeviceById(m_ids.value(type));
    for (const BaseItemProxy *proxy : device ? device->items() : QVector<BaseItemProxy *>())
        if (proxy && proxy->baseData() && proxy->baseData()->objectName() == key)
            return proxy->baseData();
    return nullptr;
}

void tst_ItemsGateway::write_reachesTheGateway_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("input");
    QTest::addColumn<QByteArray>("stored");
    auto row = [](const char *type, const char *key, const char *property, const QVariant &input,
                  const QByteArray &stored) {
        QTest::addRow("%s %s", type, key) << type << key << QByteArray(property) << input << stored;
    };
    row("TcpClientModule", "TargetIP", "ipString", "10.1.2.3", "10.1.2.3");
    row("TcpClientModule", "TargetPort", "currentValue", 9100, "9100");
    row("TcpClientModule", "AutoReconnect", "curValue", false, "false");
    row("TcpClientModule", "ReconnectInterval", "currentValue", 2500, "2500");
    row("TcpClientModule", "EndChar", "curValue", "\\n", "\n");
    row("TcpServerModule", "LocalIP", "ipString", "127.0.0.1", "127.0.0.1");
    row("TcpServerModule", "LocalPort", "currentValue", 9200, "9200");
    row("TcpServerModule", "MaxConnections", "currentValue", 4, "4");
    row("TcpServerModule", "EndChar", "curValue", "#\\r", "#\r");
    row("UdpModule", "LocalIP", "ipString", "127.0.0.1", "127.0.0.1");
    row("UdpModule", "LocalPort", "currentValue", 9300, "9300");
    row("UdpModule", "TargetIP", "ipString", "192.168.1.10", "192.168.1.10");
    row("UdpModule", "TargetPort", "currentValue", 9301, "9301");
    row("UdpModule", "EndChar", "curValue", ";", ";");
    row("SerialModule", "PortName", "curIndex", "/dev/ttyLMTEST0", "/dev/ttyLMTEST0");
    row("SerialModule", "BaudRate", "curIndex", "115200", "115200");
    row("SerialModule", "DataBits", "curIndex", "7", "7");
    row("SerialModule", "Parity", "curIndex", "Even", "2");
    row("SerialModule", "StopBits", "curIndex", "1.5", "3");
    row("SerialModule", "FlowControl", "curIndex", "Hardware (RTS/CTS)", "1");
    row("SerialModule", "EndChar", "curValue", "\\r", "\r");
    row("ProfinetModule", "LocalIP", "ipString", "127.0.0.1", "127.0.0.1");
    row("ProfinetModule", "Heartbeat", "currentValue", 2000, "2000");
    row("EipModule", "LocalIP", "ipString", "127.0.0.1", "127.0.0.1");
    row("EipModule", "InputAssembly", "currentValue", 101, "101");
    row("EipModule", "OutputAssembly", "currentValue", 151, "151");
    row("EipModule", "Heartbeat", "currentValue", 500, "500");
}

void tst_ItemsGateway::write_reachesTheGateway()
{
    QFETCH(QString, type);
    QFETCH(QString, key);
    QFETCH(QByteArray, property);
    QFETCH(QVariant, input);
    QFETCH(QByteArray, stored);
    BaseItem *data = item(type, key);
    QVERIFY(data);
    const int id = m_ids.value(type);
    QVERIFY2(gwValue(id, key.toUtf8()) != stored, "the gateway holds the new value already");
    QSignalSpy boxes(data, &BaseItem::messageBox);

    write(data, property, input);
    QCOMPARE(gwValue(id, key.toUtf8()), stored);
    QCOMPARE(shown(data, property), input);
    QCOMPARE(boxes.count(), 0);
    QVERIFY2(HostLog::capturedMessages().filter(QStringLiteral("failed")).isEmpty(),
             qPrintable(HostLog::capturedMessages().join('\n')));
}

void tst_ItemsGateway::refusedValue_leavesModelAndGatewayUnchanged_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("input");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("logLine");
    const QString badPort = QStringLiteral("The port must be between 1 and 65535");
    const QString badIp = QStringLiteral("Not a valid IPv4 address");
    QTest::newRow("target port 70000") << "TcpClientModule" << "TargetPort" << QByteArray("currentValue")
                                       << QVariant(70000) << badPort
                                       << "GW_PF_SetModuleParam failed, [TargetPort=70000] error=e0000010";
    QTest::newRow("local port 70000") << "UdpModule" << "LocalPort" << QByteArray("currentValue") << QVariant(70000)
                                      << badPort << "GW_PF_SetModuleParam failed, [LocalPort=70000] error=e0000010";
    QTest::newRow("target address with leading zeros")
        << "TcpClientModule" << "TargetIP" << QByteArray("ipString") << QVariant("192.168.001.10") << badIp
        << "192.168.001.10 is not ipv4";
    QTest::newRow("target address with a trailing blank")
        << "UdpModule" << "TargetIP" << QByteArray("ipString") << QVariant("192.168.1.10 ") << badIp
        << "192.168.1.10  is not ipv4";
    QTest::newRow("host address with leading zeros") << "TcpServerModule" << "LocalIP" << QByteArray("ipString")
                                                     << QVariant("127.000.0.1") << badIp << "127.000.0.1 is not ipv4";
}

void tst_ItemsGateway::refusedValue_leavesModelAndGatewayUnchanged()
{
    QFETCH(QString, type);
    QFETCH(QString, key);
    QFETCH(QByteArray, property);
    QFETCH(QVariant, input);
    QFETCH(QString, error);
    QFETCH(QString, logLine);
    BaseItem *data = item(type, key);
    QVERIFY(data);
    const int id = m_ids.value(type);
    const QByteArray before = gwValue(id, key.toUtf8());
    const QVariant shownBefore = shown(data, property);
    QCOMPARE(shownBefore.toString().toUtf8(), before);
    const QMetaProperty meta = data->metaObject()->property(data->metaObject()->indexOfProperty(property));
    QSignalSpy notified(data, QByteArray('2' + meta.notifySignal().methodSignature()).constData());
    QSignalSpy boxes(data, &BaseItem::messageBox);

    write(data, property, input);
    QCOMPARE(gwValue(id, key.toUtf8()), before);
    QCOMPARE(shown(data, property), shownBefore);
    QCOMPARE(notified.count(), 1); // the bound field snaps back
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.first().at(0).toInt(), 2);
    QCOMPARE(boxes.first().at(1).toString(), error);
    QVERIFY2(HostLog::capturedMessages().filter(logLine).size() == 1,
             qPrintable(HostLog::capturedMessages().join('\n')));
}

void tst_ItemsGateway::restart_reloadsEveryDevice()
{
    // The station name has no editor; the gateway's own value must still show.
    QCOMPARE(setGwValue(m_ids.value("ProfinetModule"), "StationName", "line-7-plc"), GW_OK);
    QCOMPARE(GW_PF_DeInit(), GW_OK);
    QVERIFY(m_gw.stop());
    QVERIFY2(m_gw.start(kGatewayArgs), qPrintable(m_gw.error()));
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", m_gw.port(), 101), GW_OK);
    manager()->LoadDevices();
    QCOMPARE(manager()->commDeviceList().size(), m_ids.size());
    for (auto it = m_ids.cbegin(); it != m_ids.cend(); ++it) {
        const CommDevice *device = manager()->getDeviceById(it.value());
        QVERIFY2(device && device->deviceType() == it.key(), qPrintable(it.key()));
    }
}

void tst_ItemsGateway::afterRestart_rebuiltModelShowsStoredValue_data()
{
    write_reachesTheGateway_data();
    QTest::newRow("ProfinetModule StationName") << "ProfinetModule" << "StationName" << QByteArray("curValue")
                                                << QVariant("line-7-plc") << QByteArray("line-7-plc");
}

void tst_ItemsGateway::afterRestart_rebuiltModelShowsStoredValue()
{
    QFETCH(QString, type);
    QFETCH(QString, key);
    QFETCH(QByteArray, property);
    QFETCH(QVariant, input);
    QFETCH(QByteArray, stored);
    const BaseItem *data = item(type, key);
    QVERIFY(data);
    QCOMPARE(gwValue(m_ids.value(type), key.toUtf8()), stored);
    QCOMPARE(shown(data, property), input);
}

QTEST_GUILESS_MAIN(tst_ItemsGateway)
#include "tst_items_gateway.moc"
