#include "BaseItemProxy.h"
#include "CommDevice.h"
#include "DeviceItemBuilder.h"
#include "FakeGateway.h"

#include "Slog.h"

#include <QDir>
#include <QPointer>
#include <QTemporaryDir>
#include <QtTest>

namespace {
// The parameter keys each device type's gateway module knows.
const QMap<QString, QStringList> &gatewayKeys()
{
    static const QStringList stream = {"EndChar"};
    static const QMap<QString, QStringList> keys = {
        {"TcpClientModule", stream + QStringList{"TargetIP", "TargetPort", "ReconnectInterval", "AutoReconnect"}},
        {"TcpServerModule", stream + QStringList{"LocalIP", "LocalPort", "MaxConnections"}},
        {"UdpModule", stream + QStringList{"LocalIP", "LocalPort", "TargetIP", "TargetPort"}},
        {"SerialModule", stream + QStringList{"PortName", "BaudRate", "DataBits", "Parity", "StopBits", "FlowControl"}},
        {"ProfinetModule", {"StationName", "LocalIP", "Heartbeat", "ReadAddresses", "WriteAddresses", "FixedAddress"}},
        {"EipModule", {"LocalIP", "InputAssembly", "OutputAssembly", "Heartbeat", "ReadAddresses", "WriteAddresses"}},
    };
    return keys;
}
} // namespace

class tst_DeviceItemBuilder : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void deviceTypes_data();
    void deviceTypes();
    void shippedDescription_buildsKnownItems_data();
    void shippedDescription_buildsKnownItems();
    void load_twice_replacesThePendingDevice();
    void load_missingDescription_failsWithLogLine();
    void itemList_otherType_isEmpty();
    void unknownItemType_isSkipped();
    void takePendingDevice_handsOverOwnership();

private:
    void useDir(const QString &dir) { qputenv("LM_MODULES_DIR", QFile::encodeName(dir)); }
    void writeFile(const QString &relative, const QByteArray &content);

    QByteArray m_shippedDir;
    QTemporaryDir m_tmp;
    QObject m_owner;
};

void tst_DeviceItemBuilder::init()
{
    if (m_shippedDir.isEmpty())
        m_shippedDir = qgetenv("LM_MODULES_DIR");
    qputenv("LM_MODULES_DIR", m_shippedDir);
    FakeGateway::instance().reset();
    HostLog::clearCaptured();
    HostLog::setCaptureEnabled(true);
}

void tst_DeviceItemBuilder::cleanup()
{
    HostLog::setCaptureEnabled(false);
    qputenv("LM_MODULES_DIR", m_shippedDir);
}

void tst_DeviceItemBuilder::writeFile(const QString &relative, const QByteArray &content)
{
    const QString path = m_tmp.filePath(relative);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
}

void tst_DeviceItemBuilder::deviceTypes_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("types");
    QTest::newRow("shipped list") << QByteArray() << QStringList({"TcpClientModule", "TcpServerModule", "UdpModule",
                                                                 "SerialModule", "ProfinetModule", "EipModule"});
    QTest::newRow("control device not listed")
        << QByteArray("<R><Items><Name>TcpClientModule</Name><Mode>1</Mode></Items>"
                      "<Items><Mode>0</Mode><Name>UdpModule</Name></Items>"
                      "<Items><Name>SerialModule</Name></Items></R>")
        << QStringList({"UdpModule", "SerialModule"});
    QTest::newRow("insight and unknown names never listed")
        << QByteArray("<R><Items><Name>InsightModule</Name></Items><Items><Name>tcpclientmodule</Name></Items></R>")
        << QStringList();
    QTest::newRow("duplicates kept, later Name wins, other children skipped")
        << QByteArray("<R><Items><Name>EipModule</Name></Items><Other><Name>UdpModule</Name></Other>"
                      "<Items><Name>X</Name><Name>EipModule</Name></Items></R>")
        << QStringList({"EipModule", "EipModule"});
    QTest::newRow("malformed file") << QByteArray("<R><Items><Name>UdpModule</Name></R>") << QStringList();
    QTest::newRow("missing file") << QByteArray("-") << QStringList();
}

void tst_DeviceItemBuilder::deviceTypes()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, types);
    if (!content.isEmpty()) {
        QFile::remove(m_tmp.filePath(QStringLiteral("DeviceItemInfo.xml")));
        if (content != "-")
            writeFile(QStringLiteral("DeviceItemInfo.xml"), content);
        useDir(m_tmp.path());
    }
    DeviceItemBuilder builder(&m_owner);
    QCOMPARE(builder.InitDeviceItemInfoXML(), types);
}

void tst_DeviceItemBuilder::shippedDescription_buildsKnownItems_data()
{
    QTest::addColumn<QString>("type");
    for (auto it = gatewayKeys().cbegin(); it != gatewayKeys().cend(); ++it)
        QTest::newRow(qPrintable(it.key())) << it.key();
}

void tst_DeviceItemBuilder::shippedDescription_buildsKnownItems()
{
    QFETCH(QString, type);
    DeviceItemBuilder builder(&m_owner);
    QVERIFY(builder.loadAlgorithmTabXML(type));
    const QVector<BaseItemProxy *> items = builder.itemList(type);
    QVERIFY(items.size() >= 3);
    QStringList keys;
    for (BaseItemProxy *item : items) {
        QVERIFY(item);
        QVERIFY2(item->baseData(), qPrintable(item->qmlName()));
        const QString key = item->baseData()->objectName();
        QVERIFY(!key.isEmpty());
        if (item->baseData()->info().typeName != QLatin1String("Category"))
            keys << key;
    }
    for (const QString &key : keys)
        QVERIFY2(gatewayKeys().value(type).contains(key), qPrintable(type + QLatin1Char('/') + key));
    // Every log line of the build names only registered types.
    for (const QString &line : HostLog::capturedMessages())
        QVERIFY2(!line.contains(QLatin1String("failed")), qPrintable(line));
}

void tst_DeviceItemBuilder::load_twice_replacesThePendingDevice()
{
    DeviceItemBuilder builder(&m_owner);
    QVERIFY(builder.loadAlgorithmTabXML(QStringLiteral("TcpServerModule")));
    QPointer<CommDevice> first = builder.pendingDevice();
    QPointer<BaseItemProxy> firstItem = builder.itemList(QStringLiteral("TcpServerModule")).value(0);
    QVERIFY(first && firstItem);
    QVERIFY(builder.loadAlgorithmTabXML(QStringLiteral("UdpModule")));
    QVERIFY(!first);
    QVERIFY(!firstItem);
    QCOMPARE(builder.pendingDevice()->deviceType(), QStringLiteral("UdpModule"));
    QCOMPARE(builder.pendingDevice()->parent(), &m_owner);
    QVERIFY(HostLog::capturedMessages().filter(QStringLiteral("loadAlgorithmTabXML[UdpModule]")).size() == 1);
}

void tst_DeviceItemBuilder::load_missingDescription_failsWithLogLine()
{
    useDir(m_tmp.path());
    DeviceItemBuilder builder(&m_owner);
    QVERIFY(!builder.loadAlgorithmTabXML(QStringLiteral("NoSuchModule")));
    QVERIFY(HostLog::capturedMessages().last().endsWith(
        QLatin1String("[NoSuchModule]ParseModuTabXML failed, error=0xffffffff")));
    QVERIFY(builder.pendingDevice()); // kept as the device under construction
}

void tst_DeviceItemBuilder::itemList_otherType_isEmpty()
{
    DeviceItemBuilder builder(&m_owner);
    QVERIFY(builder.itemList(QStringLiteral("TcpServerModule")).isEmpty());
    QVERIFY(builder.loadAlgorithmTabXML(QStringLiteral("TcpServerModule")));
    QVERIFY(builder.itemList(QStringLiteral("UdpModule")).isEmpty());
    QVERIFY(!builder.itemList(QStringLiteral("TcpServerModule")).isEmpty());
}

void tst_DeviceItemBuilder::unknownItemType_isSkipped()
{
    writeFile(QStringLiteral("OddModule/OddModuleAlgorithmTab.xml"),
              "<AlgorithmTab><integer Name=\"A\"/><Integer Name=\"B\"><CurValue>-5</CurValue></Integer>"
              "<Integer/></AlgorithmTab>");
    useDir(m_tmp.path());
    DeviceItemBuilder builder(&m_owner);
    QVERIFY(builder.loadAlgorithmTabXML(QStringLiteral("OddModule")));
    const auto items = builder.itemList(QStringLiteral("OddModule"));
    QCOMPARE(items.size(), 2);
    QCOMPARE(items.at(0)->baseData()->objectName(), QStringLiteral("B"));
    QCOMPARE(items.at(0)->baseData()->CurValue(), QStringLiteral("-5"));
    QCOMPARE(items.at(1)->baseData()->objectName(), QString()); // no "Name": an empty key
    QVERIFY(HostLog::capturedMessages().filter(QStringLiteral("CreateControlItems<Integer Name=B>")).size() == 1);
}

void tst_DeviceItemBuilder::takePendingDevice_handsOverOwnership()
{
    DeviceItemBuilder builder(&m_owner);
    QVERIFY(builder.loadAlgorithmTabXML(QStringLiteral("SerialModule")));
    std::unique_ptr<CommDevice> device(builder.takePendingDevice());
    QVERIFY(device);
    QVERIFY(!builder.pendingDevice());
    builder.destroyPendingDevice(); // nothing to destroy
    QCOMPARE(device->deviceType(), QStringLiteral("SerialModule"));
}

QTEST_GUILESS_MAIN(tst_DeviceItemBuilder)
#include "tst_deviceitembuilder.moc"
