// The parameter items of every shipped device type against the real gatewayd:
// values written through the item models reach the gateway, survive a restart
// of the gateway (as do a rename and a delete) and come back into freshly built
// models; refused values change nothing and tell the operator why.
// The slots run in declaration order and share the devices made in
// initTestCase: values written first are the ones read back after the restart.
#include "BaseItemProxy.h"
#include "CapturedLog.h"
#include "CommDevice.h"
#include "DevicesManager.h"
#include "GatewayProcess.h"
#include "GwParamRecord.h"
#include "GwPlatform.h"
#include "MessageBoxType.h"
#include "HostConfig.h"
#include "Slog.h"

#include <QMetaProperty>
#include <QSignalSpy>
#include <QtTest>

namespace {
const QStringList kGatewayArgs{QStringLiteral("--serial-extra"), QStringLiteral("/dev/ttyLMTEST0")};

QByteArray gwValue(int moduleId, const QByteArray &key)
{
    QByteArray value;
    const quint32 rc = GwParamRecord::readOne(moduleId, key, value);
    return rc == GW_OK ? value : "<error " + QByteArray::number(rc, 16) + '>';
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
    // The current row's item, as named by its "type", "key" and "property" columns.
    struct Row {
        BaseItem *data = nullptr;
        int id = 0;
        QByteArray key;
        QByteArray property;
        QVariant input;
    };
    Row fetchRow() const;
    DevicesManager *manager() const { return DevicesManager::Instance(); }

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

tst_ItemsGateway::Row tst_ItemsGateway::fetchRow() const
{
    QFETCH(QString, type);
    QFETCH(QString, key);
    QFETCH(QByteArray, property);
    QFETCH(QVariant, input);
    Row row{nullptr, m_ids.value(type), key.toUtf8(), property, input};
    const CommDevice *device = manager()->getDeviceById(row.id);
    for (const BaseItemProxy *proxy : device ? device->items() : QVector<BaseItemProxy *>())
        if (proxy && proxy->baseData() && proxy->baseData()->objectName() == key)
            row.data = proxy->baseData();
    return row;
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
    row("TcpServerModule", "LocalIP", "ipString", "127.0.0.1", "127.0.0.1");
    row("TcpServerModule", "LocalPort", "currentValue", 9200, "9200");
    row("TcpServerModule", "EndChar", "curValue", "#\\r", "#\r");
    row("UdpModule", "LocalPort", "currentValue", 9300, "9300");
    row("UdpModule", "TargetIP", "ipString", "192.168.1.10", "192.168.1.10");
    row("SerialModule", "PortName", "curIndex", "/dev/ttyLMTEST0", "/dev/ttyLMTEST0");
    row("SerialModule", "BaudRate", "curIndex", "115200", "115200");
    row("SerialModule", "DataBits", "curIndex", "7", "7");
    row("SerialModule", "Parity", "curIndex", "Even", "2");
    row("SerialModule", "StopBits", "curIndex", "1.5", "3");
    row("SerialModule", "FlowControl", "curIndex", "Hardware (RTS/CTS)", "1");
    row("ProfinetModule", "Heartbeat", "currentValue", 2000, "2000");
    row("EipModule", "LocalIP", "ipString", "127.0.0.1", "127.0.0.1");
    row("EipModule", "InputAssembly", "currentValue", 101, "101");
}

void tst_ItemsGateway::write_reachesTheGateway()
{
    QFETCH(QByteArray, stored);
    const Row row = fetchRow();
    QVERIFY(row.data);
    QVERIFY2(gwValue(row.id, row.key) != stored, "the gateway holds the new value already");
    QSignalSpy boxes(row.data, &BaseItem::messageBox);

    write(row.data, row.property, row.input);
    QCOMPARE(gwValue(row.id, row.key), stored);
    QCOMPARE(shown(row.data, row.property), row.input);
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
    auto row = [](const char *name, const char *type, const char *key, const char *property, const QVariant &input,
                  const char *error, const char *logLine) {
        QTest::newRow(name) << type << key << QByteArray(property) << input << error << logLine;
    };
    const char badIp[] = "Not a valid IPv4 address";
    row("target port 70000", "TcpClientModule", "TargetPort", "currentValue", 70000,
        "The port must be between 1 and 65535",
        "[CommManager] [GwSetModuleParam] GW_PF_SetModuleParam failed, error=e0000010");
    row("target address with leading zeros", "TcpClientModule", "TargetIP", "ipString", "192.168.001.10", badIp,
        "[CommManager] [setIPString] 192.168.001.10 is not ipv4");
}

void tst_ItemsGateway::refusedValue_leavesModelAndGatewayUnchanged()
{
    QFETCH(QString, error);
    QFETCH(QString, logLine);
    const Row row = fetchRow();
    QVERIFY(row.data);
    const QByteArray before = gwValue(row.id, row.key);
    const QVariant shownBefore = shown(row.data, row.property);
    QCOMPARE(shownBefore.toString().toUtf8(), before);
    const QMetaObject *meta = row.data->metaObject();
    const QMetaMethod notify = meta->property(meta->indexOfProperty(row.property)).notifySignal();
    QSignalSpy notified(row.data, QByteArray('2' + notify.methodSignature()).constData());
    QSignalSpy boxes(row.data, &BaseItem::messageBox);

    write(row.data, row.property, row.input);
    QCOMPARE(gwValue(row.id, row.key), before);
    QCOMPARE(shown(row.data, row.property), shownBefore);
    QCOMPARE(notified.count(), 1); // the bound field snaps back
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.first().at(0).toInt(), int(MessageBoxType::Error));
    QCOMPARE(boxes.first().at(1).toString(), error);
    QVERIFY2(capturedLogLines().count(logLine) == 1, qPrintable(capturedLogLines().join('\n')));
}

void tst_ItemsGateway::restart_reloadsEveryDevice()
{
    // The station name has no editor; the gateway's own value must still show.
    QCOMPARE(GwParamRecord::writeOne(m_ids.value("ProfinetModule"), "StationName", "line-7-plc"), GW_OK);
    // A rename and a delete are the gateway's to keep as well.
    QVERIFY(manager()->changeDeviceName(m_ids.value("UdpModule"), QStringLiteral("扫码枪")));
    QVERIFY(manager()->loadAlgorithmTabXML(QStringLiteral("EipModule")));
    const int dropped = manager()->createCommDevice(QStringLiteral("EipModule"), QStringLiteral("PLC"));
    QVERIFY(dropped > 0);
    QCOMPARE(manager()->deleteCommDevice(dropped), 0);

    QCOMPARE(GW_PF_DeInit(), GW_OK);
    QVERIFY(m_gw.stop());
    QVERIFY2(m_gw.start(kGatewayArgs), qPrintable(m_gw.error()));
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", m_gw.port(), 101), GW_OK);
    HostLog::clearCaptured();
    manager()->LoadDevices();
    QCOMPARE(manager()->commDeviceList().size(), m_ids.size());
    QVERIFY(!manager()->getDeviceById(dropped));
    for (auto it = m_ids.cbegin(); it != m_ids.cend(); ++it) {
        const CommDevice *device = manager()->getDeviceById(it.value());
        QVERIFY2(device && device->deviceType() == it.key(), qPrintable(it.key()));
        // Every item of the shipped description has its model and a key.
        for (const BaseItemProxy *proxy : device->items())
            QVERIFY2(proxy && proxy->baseData() && !proxy->baseData()->objectName().isEmpty(), qPrintable(it.key()));
    }
    QCOMPARE(manager()->getDeviceById(m_ids.value("UdpModule"))->deviceName(), QStringLiteral("扫码枪"));
    // Every item read its key from the gateway: the descriptions name only known keys.
    const QStringList failures = HostLog::capturedMessages().filter(QStringLiteral("failed"));
    QVERIFY2(failures.isEmpty(), qPrintable(failures.join('\n')));
}

void tst_ItemsGateway::afterRestart_rebuiltModelShowsStoredValue_data()
{
    write_reachesTheGateway_data();
    QTest::newRow("ProfinetModule StationName") << "ProfinetModule" << "StationName" << QByteArray("curValue")
                                                << QVariant("line-7-plc") << QByteArray("line-7-plc");
}

void tst_ItemsGateway::afterRestart_rebuiltModelShowsStoredValue()
{
    QFETCH(QByteArray, stored);
    const Row row = fetchRow();
    QVERIFY(row.data);
    QCOMPARE(gwValue(row.id, row.key), stored);
    QCOMPARE(shown(row.data, row.property), row.input);
}

QTEST_GUILESS_MAIN(tst_ItemsGateway)
#include "tst_items_gateway.moc"
