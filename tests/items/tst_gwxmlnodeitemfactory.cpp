#include "BaseItemProxy.h"
#include "CommDevice.h"
#include "GwXMLNodeItemFactory.h"

#include <QtTest>
#include <memory>
#include <tinyxml2.h>

namespace {
QObject *createDummy(QObject *parent)
{
    return new QObject(parent);
}
} // namespace

class tst_GwXMLNodeItemFactory : public QObject
{
    Q_OBJECT
private slots:
    void lookup_isCaseSensitive();
    void secondRegistration_isIgnored();
    void namesake_carriesItsTagName_data();
    void namesake_carriesItsTagName();
};

void tst_GwXMLNodeItemFactory::lookup_isCaseSensitive()
{
    CommDevice device;
    QVERIFY(!GwXMLNodeItemFactory::Instance().CreateNodeItem(QStringLiteral("integer"), &device));
    QVERIFY(!GwXMLNodeItemFactory::Instance().CreateNodeItem(QStringLiteral("INTEGER"), &device));
    QVERIFY(!GwXMLNodeItemFactory::Instance().CreateNodeItem(QString(), &device));
    QVERIFY(device.children().isEmpty());
}

void tst_GwXMLNodeItemFactory::secondRegistration_isIgnored()
{
    GwXMLNodeItemFactory::Instance().RegisterNodeItemType(QStringLiteral("Integer"), createDummy);
    CommDevice device;
    QObject *created = GwXMLNodeItemFactory::Instance().CreateNodeItem(QStringLiteral("Integer"), &device);
    QVERIFY(qobject_cast<BaseItemProxy *>(created));
}

void tst_GwXMLNodeItemFactory::namesake_carriesItsTagName_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("typeName");
    QTest::newRow("baud rate") << QByteArray("<EnumerationBaudrate Name=\"BaudRate\"><EnumEntrys/></EnumerationBaudrate>")
                               << "EnumerationBaudrate";
    QTest::newRow("write table") << QByteArray("<AddressDataSetA Name=\"WriteAddresses\"/>") << "AddressDataSetA";
}

void tst_GwXMLNodeItemFactory::namesake_carriesItsTagName()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, typeName);
    tinyxml2::XMLDocument doc;
    QCOMPARE(doc.Parse(xml.constData()), tinyxml2::XML_SUCCESS);
    CommDevice device;
    auto *proxy = qobject_cast<BaseItemProxy *>(
        GwXMLNodeItemFactory::Instance().CreateNodeItem(typeName, &device));
    QVERIFY(proxy);
    proxy->CreateControl(doc.RootElement());
    QVERIFY(proxy->baseData());
    QCOMPARE(proxy->baseData()->info().typeName, typeName);
    QCOMPARE(proxy->baseData()->parent(), &device);
}

QTEST_GUILESS_MAIN(tst_GwXMLNodeItemFactory)
#include "tst_gwxmlnodeitemfactory.moc"
