// What every item kind does against the gateway, one row per kind: the record
// it writes for a value, and the log line of a refused write and of a failed
// read, which names the function the item's callers know.
#include "Boolean.h"
#include "CapturedLog.h"
#include "Category.h"
#include "EndChar.h"
#include "EnumEntryCOM.h"
#include "Enumeration.h"
#include "FakeGateway.h"
#include "IPString.h"
#include "Integer.h"
#include "ItemTestSupport.h"
#include "MessageBoxType.h"
#include "ReadOnlyText.h"

#include "HostConfig.h"

#include <QSignalSpy>
#include <QtTest>

class tst_ItemKinds : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void gatewayFailures_data();
    void gatewayFailures();
    void deviceNotCreated_valueWrittenOnCreation_data();
    void deviceNotCreated_valueWrittenOnCreation();

private:
    // One row per kind: its element, the QML property the operator edits and
    // the value entered, the record that value writes, and the text a refused
    // write logs. The kinds without a value to enter come last, unless left out.
    static void kindRows(bool withoutValue);
    // The current row's item, built on device; null when it cannot be built.
    static BaseItem *rowItem(CommDevice &device);

    FakeGateway &m_gw = FakeGateway::instance();
};

namespace {
const QString kReadFailed =
    QStringLiteral("[CommManager] [GwGetModuleParam] GW_PF_GetModuleParam failed, error=e0000005");
const QString kWriteFailed =
    QStringLiteral("[CommManager] [GwSetModuleParam] GW_PF_SetModuleParam failed, error=e000000f");
} // namespace

void tst_ItemKinds::init()
{
    m_gw.reset();
    m_gw.setSerialList("/dev/ttyS0\t/dev/ttyS1");
    HostConfig::setLanguage(QStringLiteral("en"));
    HostLog::clearCaptured();
    HostLog::setCaptureEnabled(true);
}

void tst_ItemKinds::cleanup()
{
    HostLog::setCaptureEnabled(false);
}

void tst_ItemKinds::kindRows(bool withoutValue)
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("input");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QString>("writeLog");
    QTest::newRow("Integer") << QByteArray("<Integer Name=\"TargetPort\"><CurValue>8000</CurValue></Integer>")
                             << QByteArray("currentValue") << QVariant(9100) << QByteArray("TargetPort")
                             << QByteArray("9100") << kWriteFailed;
    QTest::newRow("Boolean") << QByteArray("<Boolean Name=\"AutoReconnect\"><CurValue>false</CurValue></Boolean>")
                             << QByteArray("curValue") << QVariant(true) << QByteArray("AutoReconnect")
                             << QByteArray("true") << kWriteFailed;
    QTest::newRow("EndChar") << QByteArray("<EndChar Name=\"EndChar\"><CurValue>\\r\\n</CurValue></EndChar>")
                             << QByteArray("curValue") << QVariant(QStringLiteral("\\n")) << QByteArray("EndChar")
                             << QByteArray("\n") << kWriteFailed;
    QTest::newRow("IPString") << QByteArray("<IPString Name=\"TargetIP\"/>") << QByteArray("ipString")
                              << QVariant(QStringLiteral("10.0.0.2")) << QByteArray("TargetIP")
                              << QByteArray("10.0.0.2") << kWriteFailed;
    QTest::newRow("Enumeration")
        << QByteArray("<Enumeration Name=\"Parity\"><CurValue>0</CurValue><EnumEntrys>"
                      "<EnumEntry Name=\"None\"><Value>0</Value></EnumEntry>"
                      "<EnumEntry Name=\"Odd\"><Value>3</Value></EnumEntry></EnumEntrys></Enumeration>")
        << QByteArray("curIndex") << QVariant(1) << QByteArray("Parity") << QByteArray("3")
        << "[CommManager] [SetModuleParam] GwSetModuleParam [Parity=3] failed, error=e000000f";
    QTest::newRow("EnumEntryCOM") << QByteArray("<EnumEntryCOM Name=\"PortName\"/>") << QByteArray("curIndex")
                                  << QVariant(2) << QByteArray("PortName") << QByteArray("/dev/ttyS1")
                                  << "[CommManager] [SetModuleParam] GwSetModuleParam [/dev/ttyS1] failed, error=e000000f";
    if (!withoutValue)
        return;
    QTest::newRow("ReadOnlyText") << QByteArray("<ReadOnlyText Name=\"MacAddress\"/>") << QByteArray() << QVariant()
                                  << QByteArray("MacAddress") << QByteArray() << QString();
    QTest::newRow("Category") << QByteArray("<Category Name=\"Lang_BasicParams\"/>") << QByteArray() << QVariant()
                              << QByteArray() << QByteArray() << QString();
}

BaseItem *tst_ItemKinds::rowItem(CommDevice &device)
{
    QFETCH(QByteArray, xml);
    BaseItemProxy *proxy = buildItem<BaseItemProxy>(device, xml.constData());
    return proxy ? proxy->baseData() : nullptr;
}

void tst_ItemKinds::gatewayFailures_data()
{
    kindRows(true);
}

// A refused write is logged once with the kind's own text and shown once; a
// failed read is logged by GwGetModuleParam. A heading has no value to read.
void tst_ItemKinds::gatewayFailures()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, input);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, written);
    QFETCH(QString, writeLog);
    CommDevice device;
    BaseItem *item = rowItem(device);
    QVERIFY(item);
    device.setDeviceID(3);
    if (!property.isEmpty()) {
        m_gw.answer(QStringLiteral("SetModuleParam"), GW_ERR_INVALID_VALUE);
        QSignalSpy boxes(item, &BaseItem::messageBox);
        HostLog::clearCaptured();
        QVERIFY(item->setProperty(property.constData(), input));
        const FakeGwCall write = m_gw.lastCall(QStringLiteral("SetModuleParam"));
        QCOMPARE(write.moduleId, 3);
        QCOMPARE(write.entries, (QList<QPair<QByteArray, QByteArray>>{{key, written}}));
        QCOMPARE(capturedLogLines(), QStringList{writeLog});
        QCOMPARE(boxes.count(), 1);
        QCOMPARE(boxes.first().at(0).toInt(), int(MessageBoxType::Error));
    }
    m_gw.answer(QStringLiteral("GetModuleParam"), GW_ERR_TIMEOUT);
    HostLog::clearCaptured();
    const int reads = m_gw.calls(QStringLiteral("GetModuleParam")).size();
    QCOMPARE(item->GwGetModuleParam(), key.isEmpty() ? 0 : int(GW_ERR_TIMEOUT));
    QCOMPARE(m_gw.calls(QStringLiteral("GetModuleParam")).size(), reads + (key.isEmpty() ? 0 : 1));
    QCOMPARE(capturedLogLines(), key.isEmpty() ? QStringList() : QStringList{kReadFailed});
}

void tst_ItemKinds::deviceNotCreated_valueWrittenOnCreation_data()
{
    kindRows(false);
}

// On the Create dialog the items belong to a device the gateway does not know
// yet (module id 0): a value is taken without a gateway call, which the
// gateway would refuse ("The device does not exist"), and written when the
// device is created.
void tst_ItemKinds::deviceNotCreated_valueWrittenOnCreation()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, input);
    CommDevice device;
    BaseItem *item = rowItem(device);
    QVERIFY(item);
    m_gw.answer(QStringLiteral("SetModuleParam"), GW_ERR_UNKNOWN_MODULE);
    QSignalSpy boxes(item, &BaseItem::messageBox);
    QVERIFY(item->setProperty(property.constData(), input));
    QCOMPARE(item->property(property.constData()), input);
    QVERIFY(m_gw.calls(QStringLiteral("SetModuleParam")).isEmpty());
    QCOMPARE(boxes.count(), 0);
    m_gw.answer(QStringLiteral("SetModuleParam"), GW_OK);
    device.setDeviceID(5);
    device.setModuleParams();
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, written);
    QCOMPARE(m_gw.setCount(5, key, written), 1);
}

QTEST_GUILESS_MAIN(tst_ItemKinds)
#include "tst_itemkinds.moc"
