#include "FakeGateway.h"
#include "Integer.h"
#include "ItemTestSupport.h"

#include "HostConfig.h"
#include "Slog.h"

#include <QSignalSpy>
#include <QtTest>

using namespace CommunicationControl;

class tst_IntegerData : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void build_readsValueLimitsAndStep();
    void setCurrentValue_data();
    void setCurrentValue();
    void read_usesTheDeviceIdAndParsesDecimal();
    void messageTip_data();
    void messageTip();

private:
    FakeGateway &m_gw = FakeGateway::instance();
};

void tst_IntegerData::init()
{
    m_gw.reset();
    HostConfig::setLanguage(QStringLiteral("en"));
}

void tst_IntegerData::build_readsValueLimitsAndStep()
{
    CommDevice device;
    auto *item = buildItem<Integer>(device, "<Integer Name=\"TargetPort\"><CurValue>8000</CurValue>"
                                            "<MinValue>1</MinValue><MaxValue>65535</MaxValue><IncValue>2</IncValue>"
                                            "<DefaultValue>9</DefaultValue></Integer>");
    QVERIFY(item && item->data());
    QCOMPARE(item->data()->currentValue(), 8000);
    QCOMPARE(item->data()->minValue(), 1);
    QCOMPARE(item->data()->maxValue(), 65535);
    QCOMPARE(item->data()->stepValue(), 2);
    QVERIFY(!item->data()->hasMessageTip());
    QVERIFY(m_gw.calls(QStringLiteral("SetModuleParam")).isEmpty()); // not in the gateway yet
}

void tst_IntegerData::setCurrentValue_data()
{
    QTest::addColumn<int>("deviceId");
    QTest::addColumn<int>("value");
    QTest::addColumn<quint32>("answer");
    QTest::addColumn<int>("kept");
    QTest::addColumn<int>("writes");
    QTest::newRow("negative written with a minus") << 3 << -5 << quint32(0) << -5 << 1;
    QTest::newRow("takes effect on reopen counts as accepted") << 3 << 9001 << quint32(GW_ERR_PENDING_REOPEN) << 9001 << 1;
}

void tst_IntegerData::setCurrentValue()
{
    QFETCH(int, deviceId);
    QFETCH(int, value);
    QFETCH(quint32, answer);
    QFETCH(int, kept);
    QFETCH(int, writes);
    CommDevice device;
    auto *item = buildItem<Integer>(device, "<Integer Name=\"TargetPort\"><CurValue>8000</CurValue></Integer>");
    device.setDeviceID(deviceId);
    m_gw.answer(QStringLiteral("SetModuleParam"), answer);
    QSignalSpy changed(item->data(), &IntegerData::currentValueChanged);
    QSignalSpy box(item->data(), &BaseItem::messageBox);
    item->data()->setCurrentValue(value);
    QCOMPARE(item->data()->currentValue(), kept);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_gw.setCount(deviceId, "TargetPort", QByteArray::number(value)), writes);
    QCOMPARE(box.count(), 0);
}

void tst_IntegerData::read_usesTheDeviceIdAndParsesDecimal()
{
    CommDevice device;
    auto *item = buildItem<Integer>(device, "<Integer Name=\"LocalPort\"/>");
    device.setDeviceID(4);
    m_gw.setParam(4, "LocalPort", "-12");
    QCOMPARE(item->data()->GwGetModuleParam(), 0);
    QCOMPARE(item->data()->currentValue(), -12);
    m_gw.answer(QStringLiteral("GetModuleParam"), GW_ERR_TIMEOUT);
    HostLog::setCaptureEnabled(true);
    QCOMPARE(item->data()->GwGetModuleParam(), int(GW_ERR_TIMEOUT));
    HostLog::setCaptureEnabled(false);
    QCOMPARE(item->data()->currentValue(), -12);
    QVERIFY(HostLog::capturedMessages().last().endsWith(QLatin1String("GW_PF_GetModuleParam failed, error=e0000005")));
}

void tst_IntegerData::messageTip_data()
{
    QTest::addColumn<QByteArray>("tip");
    QTest::addColumn<QByteArray>("ports");
    QTest::addColumn<quint32>("answer");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain tip") << QByteArray("Lang_Rename") << QByteArray() << quint32(0) << "Lang_Rename";
    QTest::newRow("reserved ports") << QByteArray("Reserved_Port_Tip") << QByteArray("8000,8001") << quint32(0)
                                    << "Ports in use: 8000,8001";
    QTest::newRow("reserved ports beyond the first buffer") << QByteArray("Reserved_Port_Tip") << QByteArray(1500, '9')
                                                            << quint32(0) << "Ports in use: " + QString(1500, '9');
    QTest::newRow("gateway cannot tell") << QByteArray("Reserved_Port_Tip") << QByteArray() << quint32(GW_ERR_TIMEOUT)
                                         << "Ports in use could not be read";
}

void tst_IntegerData::messageTip()
{
    QFETCH(QByteArray, tip);
    QFETCH(QByteArray, ports);
    QFETCH(quint32, answer);
    QFETCH(QString, expected);
    m_gw.setReservedPorts(ports);
    m_gw.answer(QStringLiteral("GetReservedPorts"), answer);
    CommDevice device;
    const QByteArray xml = "<Integer Name=\"LocalPort\"><MessageTip>" + tip + "</MessageTip></Integer>";
    auto *item = buildItem<Integer>(device, xml.constData());
    QVERIFY(item->data()->hasMessageTip());
    QCOMPARE(item->data()->messageTip(), expected);
}

QTEST_GUILESS_MAIN(tst_IntegerData)
#include "tst_integerdata.moc"
