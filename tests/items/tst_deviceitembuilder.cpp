#include "BaseItemProxy.h"
#include "CommDevice.h"
#include "DeviceItemBuilder.h"
#include "FakeGateway.h"
#include "GwXMLNodeItemFactory.h"

#include "Slog.h"

#include <QDir>
#include <QPointer>
#include <QTemporaryDir>
#include <QtTest>

namespace {
QObject *createDummy(QObject *parent)
{
    return new QObject(parent);
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
    void load_twice_replacesThePendingDevice();
    void load_missingDescription_failsWithLogLine();
    void itemTypes_exactTagNameFirstRegistration();

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
    QVERIFY(builder.itemList(QStringLiteral("TcpServerModule")).isEmpty());
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

// Tags are looked up case-sensitively; tags without a creator are skipped; a
// second registration of a tag does not replace the first creator.
void tst_DeviceItemBuilder::itemTypes_exactTagNameFirstRegistration()
{
    GwXMLNodeItemFactory::Instance().RegisterNodeItemType(QStringLiteral("Integer"), createDummy);
    writeFile(QStringLiteral("OddModule/OddModuleAlgorithmTab.xml"),
              "<AlgorithmTab><integer Name=\"A\"/><INTEGER Name=\"A\"/><Integer Name=\"B\"><CurValue>-5</CurValue></Integer>"
              "<Integer/><EnumerationBaudrate Name=\"BaudRate\"><EnumEntrys/></EnumerationBaudrate>"
              "<AddressDataSetA Name=\"WriteAddresses\"/></AlgorithmTab>");
    useDir(m_tmp.path());
    DeviceItemBuilder builder(&m_owner);
    QVERIFY(builder.loadAlgorithmTabXML(QStringLiteral("OddModule")));
    const auto items = builder.itemList(QStringLiteral("OddModule"));
    QCOMPARE(items.size(), 4);
    QCOMPARE(items.at(0)->baseData()->objectName(), QStringLiteral("B"));
    QCOMPARE(items.at(0)->baseData()->CurValue(), QStringLiteral("-5"));
    QCOMPARE(items.at(1)->baseData()->objectName(), QString()); // no "Name": an empty key
    // Namesakes of other item kinds carry their own tag name.
    QCOMPARE(items.at(2)->baseData()->info().typeName, QStringLiteral("EnumerationBaudrate"));
    QCOMPARE(items.at(3)->baseData()->info().typeName, QStringLiteral("AddressDataSetA"));
    QCOMPARE(items.at(3)->baseData()->parent(), builder.pendingDevice());
    QVERIFY(HostLog::capturedMessages().filter(QStringLiteral("CreateControlItems<Integer Name=B>")).size() == 1);
}

QTEST_GUILESS_MAIN(tst_DeviceItemBuilder)
#include "tst_deviceitembuilder.moc"
