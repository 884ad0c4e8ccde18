// The fixed PROFINET addresses of a device against the fake gateway: bit
// entries built from the device description, bit values routed by address
// id, the on-demand read, and the poll switches and heartbeat written to and
// read from the gateway.
#include "CommDevice.h"
#include "FakeGateway.h"
#include "GwErrorCodes.h"
#include "HostConfig.h"
#include "ItemTestSupport.h"
#include "MessageBoxType.h"
#include "ProfinetFixedButton.h"

#include <QDir>
#include <QFile>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>
#include <thread>

using CommunicationControl::ProfinetFixedButton;
using CommunicationControl::AddressInfo;
using CommunicationControl::ProfinetFixedButtonData;

namespace {
constexpr int kModule = 7;

// Read address: Trigger 0.0, Reset 0.3 and a bit whose text id has no text
// at 1.7 (the item between them is not used as bits and takes no byte);
// write address: Ready 0.0 and Heartbeat 0.7.
const char kDescription[] = R"(<ISO15745Profile><ProfileBody><ApplicationProcess><ModuleList>
<ModuleItem ID="ID_Mod_1"><VirtualSubmoduleList><VirtualSubmoduleItem><IOData><Input>
  <DataItem DataType="Unsigned8" UseAsBits="true">
    <BitDataItem BitOffset="0" TextId="T_READY"/><BitDataItem BitOffset="7" TextId="T_BEAT"/></DataItem>
</Input></IOData></VirtualSubmoduleItem></VirtualSubmoduleList></ModuleItem>
<ModuleItem ID="ID_Mod_2"><VirtualSubmoduleList><VirtualSubmoduleItem><IOData><Output>
  <DataItem DataType="Unsigned8" UseAsBits="true">
    <BitDataItem BitOffset="0" TextId="T_TRIGGER"/><BitDataItem BitOffset="3" TextId="T_RESET"/></DataItem>
  <DataItem DataType="Unsigned16"/>
  <DataItem DataType="Unsigned8" UseAsBits="true"><BitDataItem BitOffset="7" TextId="T_UNNAMED"/></DataItem>
</Output></IOData></VirtualSubmoduleItem></VirtualSubmoduleList></ModuleItem>
</ModuleList><ExternalTextList><PrimaryLanguage>
  <Text TextId="T_READY" Value="Ready"/><Text TextId="T_BEAT" Value="Heartbeat"/>
  <Text TextId="T_TRIGGER" Value="Trigger"/><Text TextId="T_RESET" Value="Reset"/>
</PrimaryLanguage></ExternalTextList></ApplicationProcess></ProfileBody></ISO15745Profile>)";

const char kItem[] = R"(<ProfinetFixedButton Name="FixedAddress"><DisplayName>Lang_FixedAddress</DisplayName>
<ItemWidth>340</ItemWidth><ReadAddressId>0</ReadAddressId><WriteAddressId>1000</WriteAddressId>
<WindowTitle>Lang_FixedAddress</WindowTitle><ReadAddressString>Lang_FixedReadAddress</ReadAddressString>
<WriteAddressString>Lang_FixedWriteAddress</WriteAddressString></ProfinetFixedButton>)";

// The values of the entries, joined by spaces.
QString values(const QList<AddressInfo *> &entries)
{
    QStringList all;
    for (const AddressInfo *entry : entries)
        all << entry->data();
    return all.join(QLatin1Char(' '));
}
} // namespace

class tst_ProfinetFixedButton : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void getBit_data();
    void getBit();
    void createControl_entriesPerNamedBit_data();
    void createControl_entriesPerNamedBit();
    void result_routedByAddressId_data();
    void result_routedByAddressId();
    void result_fromGatewayThread_appliedOnGuiThread();
    void synchrodata_readsOneAddress_data();
    void synchrodata_readsOneAddress();
    void setting_gatewayFirstAlwaysNotifies_data();
    void setting_gatewayFirstAlwaysNotifies();
    void gwGetModuleParam_readsSettings_data();
    void gwGetModuleParam_readsSettings();

private:
    ProfinetFixedButtonData *build(const char *xml = kItem, int moduleId = kModule);

    QTemporaryDir m_modules;
    std::unique_ptr<CommDevice> m_device;
};

void tst_ProfinetFixedButton::initTestCase()
{
    // The description is read once per process: this one for every case.
    QVERIFY(QDir(m_modules.path()).mkpath(QStringLiteral("ProfinetModule")));
    QFile file(m_modules.filePath(QStringLiteral("ProfinetModule/ProfinetModuleFixedAddressParam.xml")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(kDescription);
    file.close();
    qputenv("LM_MODULES_DIR", QFile::encodeName(m_modules.path() + QLatin1Char('/')));
    HostConfig::setLanguage(QStringLiteral("en"));
}

void tst_ProfinetFixedButton::init()
{
    FakeGateway::instance().reset();
    m_device.reset(new CommDevice(QStringLiteral("ProfinetModule")));
}

void tst_ProfinetFixedButton::cleanup()
{
    m_device.reset();
}

ProfinetFixedButtonData *tst_ProfinetFixedButton::build(const char *xml, int moduleId)
{
    auto *proxy = buildItem<ProfinetFixedButton>(*m_device, xml);
    if (!proxy || !proxy->data())
        return nullptr;
    m_device->setDeviceID(moduleId);
    proxy->setDeviceID(moduleId);
    FakeGateway::instance().clearCalls();
    return proxy->data();
}

void tst_ProfinetFixedButton::getBit_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("n");
    QTest::addColumn<int>("bit");
    const QByteArray two("\x81\x02", 2);
    QTest::newRow("lowest bit of the first byte") << two << 0 << 1;
    QTest::newRow("highest bit of the first byte") << two << 7 << 1;
    QTest::newRow("second byte counts from its lowest bit") << two << 9 << 1;
    QTest::newRow("one past the bytes") << two << 16 << -1;
    QTest::newRow("negative") << two << -1 << -1;
    QTest::newRow("no bytes") << QByteArray() << 0 << -1;
}

void tst_ProfinetFixedButton::getBit()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, n);
    QFETCH(int, bit);
    QCOMPARE(ProfinetFixedButtonData::getBit(bytes, n), bit);
}

void tst_ProfinetFixedButton::createControl_entriesPerNamedBit_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<int>("readId");
    QTest::addColumn<int>("writeId");
    QTest::addColumn<QString>("title");
    QTest::newRow("shipped item") << QByteArray(kItem) << 0 << 1000 << QStringLiteral("Fixed Addresses");
    QTest::newRow("own ids") << QByteArray("<ProfinetFixedButton Name=\"F\"><ReadAddressId>5</ReadAddressId>"
                                           "<WriteAddressId>1005</WriteAddressId></ProfinetFixedButton>")
                             << 5 << 1005 << QString();
    QTest::newRow("no ids: the gateway's fixed ids")
        << QByteArray("<ProfinetFixedButton Name=\"F\"/>") << 0 << 1000 << QString();
}

// Every named bit of each address, in key order, under that address's id;
// a bit whose text id has no text shows the text id.
void tst_ProfinetFixedButton::createControl_entriesPerNamedBit()
{
    QFETCH(QByteArray, xml);
    QFETCH(int, readId);
    QFETCH(int, writeId);
    QFETCH(QString, title);
    ProfinetFixedButtonData *data = build(xml.constData());
    QVERIFY(data);
    QCOMPARE(data->readAddressId(), readId);
    QCOMPARE(data->writeAddressId(), writeId);
    QCOMPARE(data->windowTitle(), title);
    QStringList read, write;
    for (const AddressInfo *entry : data->readFixedAddressList()) {
        read << entry->fixedAddress() + QLatin1Char('=') + entry->addrName();
        QCOMPARE(entry->serialNumber(), readId);
        QCOMPARE(entry->deviceId(), 1);
    }
    for (const AddressInfo *entry : data->writeFixedAddressList()) {
        write << entry->fixedAddress() + QLatin1Char('=') + entry->addrName();
        QCOMPARE(entry->serialNumber(), writeId);
    }
    QCOMPARE(read, QStringList({"0.0=Trigger", "0.3=Reset", "1.7=T_UNNAMED"}));
    QCOMPARE(write, QStringList({"0.0=Ready", "0.7=Heartbeat"}));
}

void tst_ProfinetFixedButton::result_routedByAddressId_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("read");
    QTest::addColumn<QString>("write");
    QTest::newRow("read address") << 0 << QByteArray("\x09\x80", 2) << "1 1 1" << " ";
    QTest::newRow("read address, second byte missing") << 0 << QByteArray("\x08") << "0 1 -1" << " ";
    QTest::newRow("write address") << 1000 << QByteArray("\x80") << "  " << "0 1";
    QTest::newRow("write address, no bytes") << 1000 << QByteArray() << "  " << "-1 -1";
    QTest::newRow("an ordinary address") << 3 << QByteArray("\xff\xff", 2) << "  " << " ";
}

void tst_ProfinetFixedButton::result_routedByAddressId()
{
    QFETCH(int, id);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, read);
    QFETCH(QString, write);
    ProfinetFixedButtonData *data = build();
    QVERIFY(data);
    // Through the device's signal, as a gateway result arrives.
    emit m_device->deviceResultChanged(id, bytes);
    QCOMPARE(values(data->readFixedAddressList()), read);
    QCOMPARE(values(data->writeFixedAddressList()), write);
}

// The device emits results on the gateway's thread: the entries change
// later, on the GUI thread that the view reads them on.
void tst_ProfinetFixedButton::result_fromGatewayThread_appliedOnGuiThread()
{
    ProfinetFixedButtonData *data = build();
    QVERIFY(data);
    AddressInfo *trigger = data->readFixedAddressList().first();
    QThread *changedOn = nullptr;
    connect(trigger, &AddressInfo::dataChanged, this, [&] { changedOn = QThread::currentThread(); },
            Qt::DirectConnection);
    std::thread gateway([this] { emit m_device->deviceResultChanged(0, QByteArray("\x01", 1)); });
    gateway.join();
    QCOMPARE(trigger->data(), QString());
    QTRY_COMPARE(trigger->data(), QStringLiteral("1"));
    QCOMPARE(changedOn, QThread::currentThread());
}

void tst_ProfinetFixedButton::synchrodata_readsOneAddress_data()
{
    QTest::addColumn<bool>("bRead");
    QTest::addColumn<quint32>("answer");
    QTest::addColumn<QString>("read");
    QTest::addColumn<QString>("write");
    QTest::newRow("read address") << true << GW_OK << "1 0 1" << " ";
    QTest::newRow("write address") << false << GW_OK << "  " << "1 0";
    QTest::newRow("refused: nothing shown") << true << quint32(GW_ERR_NOT_OPEN) << "  " << " ";
}

void tst_ProfinetFixedButton::synchrodata_readsOneAddress()
{
    QFETCH(bool, bRead);
    QFETCH(quint32, answer);
    QFETCH(QString, read);
    QFETCH(QString, write);
    ProfinetFixedButtonData *data = build();
    QVERIFY(data);
    FakeGateway &gw = FakeGateway::instance();
    gw.setAddressData(kModule, 0, QByteArray("\x01\x80", 2));
    gw.setAddressData(kModule, 1000, QByteArray("\x01"));
    gw.answer(QStringLiteral("ReadData"), answer);
    data->synchrodata(bRead);
    QCOMPARE(gw.calls(QStringLiteral("ReadData")).size(), 1);
    QCOMPARE(gw.lastCall(QStringLiteral("ReadData")).addressId, bRead ? 0 : 1000);
    QCOMPARE(gw.lastCall(QStringLiteral("ReadData")).number, 1024);
    QCOMPARE(values(data->readFixedAddressList()), read);
    QCOMPARE(values(data->writeFixedAddressList()), write);
}

void tst_ProfinetFixedButton::setting_gatewayFirstAlwaysNotifies_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("input");
    QTest::addColumn<int>("address");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<quint32>("answer");
    QTest::addColumn<int>("moduleId"); // 0: the device is not created yet
    auto row = [](const char *name, const char *property, const QVariant &input, int address, const char *key,
                  const char *text, quint32 answer, int moduleId = kModule) {
        QTest::newRow(name) << QByteArray(property) << input << address << QByteArray(key) << QByteArray(text)
                            << answer << moduleId;
    };
    row("read poll on", "readPollEnable", true, 0, "PollEnable", "true", GW_OK);
    row("write poll on", "writePollEnable", true, 1000, "PollEnable", "true", GW_OK);
    row("heartbeat", "writeHeartBeat", 250, -1, "Heartbeat", "250", GW_OK);
    row("read poll refused", "readPollEnable", true, 0, "PollEnable", "true", GW_ERR_NOT_SUPPORTED);
    row("heartbeat refused", "writeHeartBeat", 50, -1, "Heartbeat", "50", GW_ERR_INVALID_VALUE);
    row("heartbeat pending reopen is a refusal", "writeHeartBeat", 300, -1, "Heartbeat", "300",
        GW_ERR_PENDING_REOPEN);
    row("device not created yet", "writePollEnable", true, 1000, "PollEnable", "", GW_OK, 0);
}

// The gateway is written first; the value is kept only when it accepted,
// and the view is notified either way (so a refused switch flips back).
void tst_ProfinetFixedButton::setting_gatewayFirstAlwaysNotifies()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, input);
    QFETCH(int, address);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, text);
    QFETCH(quint32, answer);
    QFETCH(int, moduleId);
    ProfinetFixedButtonData *data = build(kItem, moduleId);
    QVERIFY(data);
    const QVariant before = data->property(property.constData());
    const QMetaProperty meta = data->metaObject()->property(data->metaObject()->indexOfProperty(property));
    QSignalSpy changed(data, meta.notifySignal());
    QSignalSpy boxes(data, &BaseItem::messageBox);
    FakeGateway &gw = FakeGateway::instance();
    gw.answer(QStringLiteral("SetModuleParam"), answer);
    QVERIFY(data->setProperty(property.constData(), input));
    const QList<FakeGwCall> calls = gw.calls(QStringLiteral("SetModuleParam"));
    QCOMPARE(calls.size(), moduleId ? 1 : 0);
    if (moduleId) {
        QCOMPARE(calls.first().addressId, address);
        QCOMPARE(calls.first().entries, (QList<QPair<QByteArray, QByteArray>>{{key, text}}));
    }
    const bool kept = answer == GW_OK;
    QCOMPARE(data->property(property.constData()), kept ? input : before);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(boxes.count(), kept ? 0 : 1);
    if (!kept)
        QCOMPARE(boxes.first().at(0).toInt(), int(MessageBoxType::Error));
}

void tst_ProfinetFixedButton::gwGetModuleParam_readsSettings_data()
{
    QTest::addColumn<QByteArray>("readPoll");
    QTest::addColumn<QByteArray>("heartbeat");
    QTest::addColumn<QByteArray>("refusedKey");
    QTest::addColumn<int>("rc");
    QTest::addColumn<bool>("readPollShown");
    QTest::addColumn<int>("heartbeatShown");
    QTest::newRow("all read") << QByteArray("True") << QByteArray("750") << QByteArray() << 0 << true << 750;
    QTest::newRow("poll off") << QByteArray("false") << QByteArray("100") << QByteArray() << 0 << false << 100;
    QTest::newRow("poll reads refused") << QByteArray("true") << QByteArray("750") << QByteArray("PollEnable") << 0
                                        << false << 750;
    QTest::newRow("heartbeat refused") << QByteArray("true") << QByteArray("750") << QByteArray("Heartbeat")
                                       << int(GW_ERR_UNKNOWN_KEY) << true << 1000;
    QTest::newRow("heartbeat not a number") << QByteArray("true") << QByteArray("fast") << QByteArray()
                                            << int(GW_ERR_PARSE) << true << 1000;
}

void tst_ProfinetFixedButton::gwGetModuleParam_readsSettings()
{
    QFETCH(QByteArray, readPoll);
    QFETCH(QByteArray, heartbeat);
    QFETCH(QByteArray, refusedKey);
    QFETCH(int, rc);
    QFETCH(bool, readPollShown);
    QFETCH(int, heartbeatShown);
    ProfinetFixedButtonData *data = build();
    QVERIFY(data);
    FakeGateway &gw = FakeGateway::instance();
    gw.setParam(kModule, "PollEnable", readPoll, 0);
    gw.setParam(kModule, "PollEnable", "true", 1000);
    gw.setParam(kModule, "Heartbeat", heartbeat);
    if (!refusedKey.isEmpty())
        gw.answerKey(QStringLiteral("GetModuleParam"), refusedKey, GW_ERR_UNKNOWN_KEY);
    QSignalSpy heartbeatChanged(data, &ProfinetFixedButtonData::writeHeartBeatChanged);
    QSignalSpy pollChanged(data, &ProfinetFixedButtonData::readPollEnableChanged);
    QCOMPARE(data->GwGetModuleParam(), rc);
    QCOMPARE(data->readPollEnable(), readPollShown);
    QCOMPARE(data->writePollEnable(), refusedKey != "PollEnable");
    QCOMPARE(data->writeHeartBeat(), heartbeatShown);
    QCOMPARE(pollChanged.count(), refusedKey == "PollEnable" ? 0 : 1);
    QCOMPARE(heartbeatChanged.count(), rc == 0 ? 1 : 0);
    QList<int> addresses;
    for (const FakeGwCall &call : gw.calls(QStringLiteral("GetModuleParam")))
        addresses << call.addressId;
    QCOMPARE(addresses, QList<int>({0, 1000, -1}));
}

QTEST_GUILESS_MAIN(tst_ProfinetFixedButton)
#include "tst_profinetfixedbutton.moc"
