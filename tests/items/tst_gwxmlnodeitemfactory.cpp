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
    void everyTypeIsRegistered_data();
    void everyTypeIsRegistered();
    void lookup_isCaseSensitive();
    void secondRegistration_isIgnored();
    void namesake_carriesItsTagName_data();
    void namesake_carriesItsTagName();
};

void tst_GwXMLNodeItemFactory::everyTypeIsRegistered_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("qmlName");
    QTest::newRow("AddressDataSet") << "AddressDataSet" << "CommunicationControl::AddressDataSet" << "AddressDataSet.qml";
    QTest::newRow("AddressDataSetA") << "AddressDataSetA" << "CommunicationControl::AddressDataSet" << "AddressDataSet.qml";
    QTest::newRow("Boolean") << "Boolean" << "CommunicationControl::Boolean" << "Boolean.qml";
    QTest::newRow("Category") << "Category" << "CommunicationControl::Category" << "Category.qml";
    QTest::newRow("Enumeration") << "Enumeration" << "CommunicationControl::Enumeration" << "Enumeration.qml";
    QTest::newRow("EnumerationBaudrate") << "EnumerationBaudrate" << "CommunicationControl::Enumeration" << "Enumeration.qml";
    QTest::newRow("IPString") << "IPString" << "CommunicationControl::IPString" << "IPString.qml";
    QTest::newRow("Integer") << "Integer" << "CommunicationControl::Integer" << "Integer.qml";
    QTest::newRow("EndChar") << "EndChar" << "CommunicationControl::EndChar" << "EndChar.qml";
    QTest::newRow("EnumEntryCOM") << "EnumEntryCOM" << "CommunicationControl::EnumEntryCOM" << "EnumEntryCOM.qml";
    QTest::newRow("ReadOnlyText") << "ReadOnlyText" << "CommunicationControl::ReadOnlyText" << "ReadOnlyText.qml";
    QTest::newRow("ProfinetFixedButton") << "ProfinetFixedButton" << "CommunicationControl::ProfinetFixedButton"
                                         << "ProfinetFixedButton.qml";
}

// The registrations live in the shared library and run when it is loaded.
void tst_GwXMLNodeItemFactory::everyTypeIsRegistered()
{
    QFETCH(QString, type);
    QFETCH(QString, className);
    QFETCH(QString, qmlName);
    CommDevice device;
    QObject *created = GwXMLNodeItemFactory::Instance().CreateNodeItem(type, &device);
    QVERIFY(created);
    QCOMPARE(created->parent(), &device);
    QCOMPARE(QString::fromLatin1(created->metaObject()->className()), className);
    auto *proxy = qobject_cast<BaseItemProxy *>(created);
    QVERIFY(proxy);
    QCOMPARE(proxy->qmlName(), qmlName);
    QVERIFY(!proxy->baseData());
}

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
