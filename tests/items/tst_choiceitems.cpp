// Value items with text forms (IP address, end characters) and the choice items.
#include "EndChar.h"
#include "EnumEntryCOM.h"
#include "Enumeration.h"
#include "FakeGateway.h"
#include "IPString.h"
#include "ItemTestSupport.h"

#include "HostConfig.h"

#include <QSignalSpy>
#include <QtTest>

using namespace CommunicationControl;

namespace {
const char kParity[] = "<Enumeration Name=\"Parity\"><CurValue>2</CurValue><EnumEntrys>"
                       "<EnumEntry Name=\"None\"><DisplayName>Lang_ParityNone</DisplayName><Value>0</Value></EnumEntry>"
                       "<EnumEntryStr Name=\"Even\"><DisplayName>Lang_ParityEven</DisplayName><Value>2</Value></EnumEntryStr>"
                       "<EnumEntry Name=\"Hidden\"><Value>9</Value><DeviceType>1</DeviceType></EnumEntry>"
                       "<EnumEntry Name=\"Odd\"><Value>3</Value><DeviceType>0</DeviceType></EnumEntry>"
                       "</EnumEntrys></Enumeration>";
}

class tst_ChoiceItems : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void isIPv4_data();
    void isIPv4();
    void ipString_onlyLocalKeysOfferTheHostList();
    void endChar_conversions_data();
    void endChar_conversions();
    void endChar_buildReadsValueAndLength();
    void enumeration_entries_unknownReadKeepsIndex();
    void enumeration_setCurIndex_data();
    void enumeration_setCurIndex();
    void com_listStartsWithPrompt_emptyAnswerKeepsIt();
    void com_storedPortMissing_staysSelected();

private:
    FakeGateway &m_gw = FakeGateway::instance();
};

void tst_ChoiceItems::init()
{
    m_gw.reset();
    HostConfig::setLanguage(QStringLiteral("en"));
}

void tst_ChoiceItems::isIPv4_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::newRow("canonical") << "192.168.1.10" << true;
    QTest::newRow("any address") << "0.0.0.0" << true;
    QTest::newRow("leading zeros") << "192.168.001.10" << false;
    QTest::newRow("trailing blank") << "192.168.1.10 " << false;
    QTest::newRow("leading blank") << " 192.168.1.10" << false;
    QTest::newRow("ipv6") << "::1" << false;
}

void tst_ChoiceItems::isIPv4()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    QCOMPARE(IPStringData::IsIPv4(text), valid);
}

void tst_ChoiceItems::ipString_onlyLocalKeysOfferTheHostList()
{
    CommDevice device;
    auto *item = buildItem<IPString>(device, "<IPString Name=\"TargetIP\"/>");
    QVERIFY(!item->data()->isHostIP());
    auto *local = buildItem<IPString>(device, "<IPString Name=\"LocalIP\"/>");
    QVERIFY(local->data()->isHostIP());
    QCOMPARE(local->data()->ipList(), QStringList({"0.0.0.0", "127.0.0.1"}));
    QCOMPARE(m_gw.lastCall(QStringLiteral("GetLocalIpList")).number, 512); // the buffer's whole size
}

void tst_ChoiceItems::endChar_conversions_data()
{
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("CR LF") << "\\r\\n" << QByteArray("\r\n");
    QTest::newRow("text and LF") << "END\\n" << QByteArray("END\n");
    QTest::newRow("other escapes stay") << "\\t\\\\" << QByteArray("\\t\\\\");
    QTest::newRow("lone backslash") << "a\\" << QByteArray("a\\");
    QTest::newRow("empty") << "" << QByteArray();
}

void tst_ChoiceItems::endChar_conversions()
{
    QFETCH(QString, shown);
    QFETCH(QByteArray, bytes);
    char buffer[32];
    endCharQString2byte(shown, buffer, sizeof(buffer));
    QCOMPARE(QByteArray(buffer), bytes);
    QCOMPARE(endCharByte2QString(bytes.constData()), shown);
}

void tst_ChoiceItems::endChar_buildReadsValueAndLength()
{
    CommDevice device;
    auto *item = buildItem<EndChar>(device, "<EndChar Name=\"EndChar\"><CurValue>\\r\\n</CurValue><MaxLen>8</MaxLen></EndChar>");
    QCOMPARE(item->data()->curValue(), QStringLiteral("\\r\\n"));
    QCOMPARE(item->data()->maxLength(), 8);
}

void tst_ChoiceItems::enumeration_entries_unknownReadKeepsIndex()
{
    CommDevice device;
    auto *item = buildItem<Enumeration>(device, kParity);
    QCOMPARE(item->data()->enums(), QStringList({"None", "Even", "Odd"}));
    QCOMPARE(item->data()->curIndex(), 1); // CurValue 2 names "Even"
    device.setDeviceID(6);
    m_gw.setParam(6, "Parity", "42");
    QCOMPARE(item->data()->GwGetModuleParam(), 0);
    QCOMPARE(item->data()->curIndex(), 1);
}

void tst_ChoiceItems::enumeration_setCurIndex_data()
{
    QTest::addColumn<int>("moduleId");
    QTest::addColumn<quint32>("answer");
    QTest::addColumn<int>("chosen");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("writes");
    QTest::newRow("written") << 6 << quint32(0) << 2 << 2 << 1;
    QTest::newRow("refused keeps the old index") << 6 << quint32(GW_ERR_INVALID_VALUE) << 2 << 1 << 1;
    QTest::newRow("reopen answer is a refusal here") << 6 << quint32(GW_ERR_PENDING_REOPEN) << 2 << 1 << 1;
    QTest::newRow("module id 0 takes any index unwritten") << 0 << quint32(0) << 7 << 7 << 0;
}

void tst_ChoiceItems::enumeration_setCurIndex()
{
    QFETCH(int, moduleId);
    QFETCH(quint32, answer);
    QFETCH(int, chosen);
    QFETCH(int, index);
    QFETCH(int, writes);
    CommDevice device;
    auto *item = buildItem<Enumeration>(device, kParity);
    device.setDeviceID(moduleId);
    m_gw.answer(QStringLiteral("SetModuleParam"), answer);
    QSignalSpy changed(item->data(), &EnumerationData::curIndexChanged);
    item->data()->setCurIndex(chosen);
    QCOMPARE(item->data()->curIndex(), index);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_gw.setCount(moduleId, "Parity", "3"), writes);
}

void tst_ChoiceItems::com_listStartsWithPrompt_emptyAnswerKeepsIt()
{
    m_gw.setSerialList("/dev/ttyS0\t\t/dev/ttyUSB0\t", -1);
    CommDevice device;
    auto *item = buildItem<EnumEntryCOM>(device, "<EnumEntryCOM Name=\"PortName\"/>");
    const QStringList listed{"Select...", "/dev/ttyS0", "/dev/ttyUSB0"};
    QCOMPARE(item->data()->coms(), listed);
    QCOMPARE(item->data()->curIndex(), 0);
    m_gw.setSerialList(QByteArray());
    item->data()->getComList();
    QCOMPARE(item->data()->coms(), listed);
}

void tst_ChoiceItems::com_storedPortMissing_staysSelected()
{
    m_gw.setSerialList("/dev/ttyS0");
    CommDevice device;
    auto *item = buildItem<EnumEntryCOM>(device, "<EnumEntryCOM Name=\"PortName\"/>");
    device.setDeviceID(9);
    m_gw.setParam(9, "PortName", "/dev/ttyUSB7");
    QCOMPARE(item->data()->GwGetModuleParam(), 0);
    QCOMPARE(item->data()->coms().last(), QStringLiteral("/dev/ttyUSB7"));
    QCOMPARE(item->data()->curIndex(), item->data()->coms().size() - 1);
    QVERIFY(m_gw.calls(QStringLiteral("SetModuleParam")).isEmpty()); // reading never writes
}

QTEST_GUILESS_MAIN(tst_ChoiceItems)
#include "tst_choiceitems.moc"
