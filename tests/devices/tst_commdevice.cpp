#include "BaseItem.h"
#include "BaseItemProxy.h"
#include "CommDevice.h"
#include "FakeGateway.h"
#include "RecvDataFormat.h"

#include "HostConfig.h"
#include "Slog.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QtTest>

namespace {
// A proxy that records what the device asks of it.
class RecordingProxy : public BaseItemProxy
{
public:
    using BaseItemProxy::BaseItemProxy;
    QStringList calls;
    void CreateControl(tinyxml2::XMLElement *) override {}
    void setDeviceID(int id) override { calls << QStringLiteral("id %1").arg(id); }
    void setModuleParam() override { calls << QStringLiteral("set"); }
    void getModuleParam() override { calls << QStringLiteral("get"); }
    void setItemEnable(bool enable) override { calls << QStringLiteral("enable %1").arg(enable); }
};

QString stripStamp(const QString &entry)
{
    static const QRegularExpression stamp(QStringLiteral("^\\[\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}\\] "));
    return QString(entry).remove(stamp);
}

void receive(CommDevice &device, const QByteArray &bytes, int addressId = -1)
{
    QByteArray copy = bytes;
    device.ProRecvResultData(addressId, copy.data(), copy.size());
}
} // namespace

class tst_CommDevice : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void received_textAndHexForms_data();
    void received_textAndHexForms();
    void received_entriesCarryTheLocalTime();
    void timeStamp_matchesQtAcrossSecondBoundaries();
    void received_250Blocks_keepTheLast200();
    void received_emptyBlock_changesNothing();
    void received_addressBlock_emitsResultOnly();
    void clear_emptiesBothListsAndNotifies();
    void timer_reannouncesListsWithoutData();
    void connectState_parsing_data();
    void connectState_parsing();
    void connectState_readFailure_keepsState();
    void setConnectState_data();
    void setConnectState();
    void setDeviceID_propagatesEvenWhenUnchanged();
    void itemOperations_skipNullAndKeepOrder();

private:
    FakeGateway &m_gw = FakeGateway::instance();
};

void tst_CommDevice::init()
{
    m_gw.reset();
    HostConfig::setLanguage(QStringLiteral("en"));
    HostLog::clearCaptured();
    HostLog::setCaptureEnabled(true);
}

void tst_CommDevice::received_textAndHexForms_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("hex");
    QTest::newRow("CR LF") << QByteArray("AB\r\n") << "AB[0D][0A]" << "[41][42][0D][0A]";
    QTest::newRow("tab, tilde, DEL, high byte") << QByteArray("A\t~\x7F\xFF") << "A[09]~[7F][FF]"
                                                << "[41][09][7E][7F][FF]";
    QTest::newRow("zero byte inside") << QByteArray("A\0B", 3) << "A[00]B" << "[41][00][42]";
    QTest::newRow("space and 0x80") << QByteArray(" \x80") << " [80]" << "[20][80]";
}

void tst_CommDevice::received_textAndHexForms()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QFETCH(QString, hex);
    CommDevice device(QStringLiteral("TcpServerModule"));
    QSignalSpy textChanged(&device, &CommDevice::recvDataListChanged);
    receive(device, bytes);
    QCOMPARE(device.recvDataList().size(), 1);
    QCOMPARE(stripStamp(device.recvDataList().first()), text);
    QCOMPARE(stripStamp(device.recvHexDataList().first()), hex);
    QCOMPARE(textChanged.count(), 0); // appends are silent
}

void tst_CommDevice::received_entriesCarryTheLocalTime()
{
    CommDevice device;
    const QDateTime before = QDateTime::currentDateTime();
    receive(device, "x");
    const QDateTime after = QDateTime::currentDateTime();
    const QString entry = device.recvDataList().first();
    const QDateTime stamp = QDateTime::fromString(entry.mid(1, 23), QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"));
    QVERIFY2(stamp.isValid(), qPrintable(entry));
    QVERIFY(stamp >= before.addMSecs(-1) && stamp <= after.addMSecs(1));
    QCOMPARE(entry.mid(1, 23), device.recvHexDataList().first().mid(1, 23));
    // Same text as Qt's own formatting of that moment.
    QCOMPARE(entry.mid(1, 23), stamp.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz")));
}

// The cached text of the current second must follow the clock: every stamp
// lies between Qt's own formatting just before and just after it (the format
// sorts like the time), and a second rolls over in the stamps as well.
void tst_CommDevice::timeStamp_matchesQtAcrossSecondBoundaries()
{
    const QString format = QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz");
    QSet<QString> seconds;
    QElapsedTimer guard;
    guard.start();
    while (seconds.size() < 2 && guard.elapsed() < 5000) {
        const QString before = QDateTime::currentDateTime().toString(format);
        const QString stamp = RecvDataFormat::timeStamp();
        const QString after = QDateTime::currentDateTime().toString(format);
        QCOMPARE(stamp.size(), 23);
        QVERIFY2(before <= stamp && stamp <= after, qPrintable(before + " " + stamp + " " + after));
        seconds.insert(stamp.left(19));
    }
    QVERIFY(seconds.size() >= 2);
}

void tst_CommDevice::received_250Blocks_keepTheLast200()
{
    CommDevice device;
    for (int i = 1; i <= 250; ++i)
        receive(device, QByteArray::number(i));
    const QStringList text = device.recvDataList();
    const QStringList hex = device.recvHexDataList();
    QCOMPARE(text.size(), 200);
    QCOMPARE(hex.size(), 200);
    QCOMPARE(stripStamp(text.first()), QStringLiteral("51"));
    QCOMPARE(stripStamp(text.last()), QStringLiteral("250"));
    QCOMPARE(stripStamp(hex.first()), QStringLiteral("[35][31]"));
}

void tst_CommDevice::received_emptyBlock_changesNothing()
{
    CommDevice device;
    QSignalSpy result(&device, &CommDevice::deviceResultChanged);
    QByteArray bytes("abc");
    device.ProRecvResultData(-1, bytes.data(), 0);
    device.ProRecvResultData(-1, nullptr, 3);
    device.ProRecvResultData(5, bytes.data(), -1);
    QVERIFY(device.recvDataList().isEmpty());
    QCOMPARE(result.count(), 0);
}

void tst_CommDevice::received_addressBlock_emitsResultOnly()
{
    CommDevice device;
    QSignalSpy result(&device, &CommDevice::deviceResultChanged);
    receive(device, QByteArray("\x01\x02", 2), 5);
    QCOMPARE(result.count(), 1);
    QCOMPARE(result.first().at(0).toInt(), 5);
    QCOMPARE(result.first().at(1).toByteArray(), QByteArray("\x01\x02", 2));
    QVERIFY(device.recvDataList().isEmpty());
    QVERIFY(device.recvHexDataList().isEmpty());
}

void tst_CommDevice::clear_emptiesBothListsAndNotifies()
{
    CommDevice device;
    receive(device, "abc");
    QSignalSpy text(&device, &CommDevice::recvDataListChanged);
    QSignalSpy hex(&device, &CommDevice::recvHexDataListChanged);
    device.clearRecvDatas();
    QVERIFY(device.recvDataList().isEmpty());
    QVERIFY(device.recvHexDataList().isEmpty());
    QCOMPARE(text.count(), 1);
    QCOMPARE(hex.count(), 1);
}

void tst_CommDevice::timer_reannouncesListsWithoutData()
{
    CommDevice device;
    QCOMPARE(device.Init(), 0);
    QSignalSpy text(&device, &CommDevice::recvDataListChanged);
    QSignalSpy hex(&device, &CommDevice::recvHexDataListChanged);
    QTRY_VERIFY_WITH_TIMEOUT(text.count() >= 2, 3000);
    QVERIFY(hex.count() >= 1);
}

void tst_CommDevice::connectState_parsing_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("state");
    QTest::newRow("true") << QByteArray("true") << true;
    QTest::newRow("True") << QByteArray("True") << true;
    QTest::newRow("TRUE is not true") << QByteArray("TRUE") << false;
    QTest::newRow("1 is not true") << QByteArray("1") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void tst_CommDevice::connectState_parsing()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, state);
    CommDevice device(QStringLiteral("TcpClientModule"));
    auto *item = new RecordingProxy(&device);
    device.AddDeviceItem(item);
    device.setDeviceID(7);
    item->calls.clear();
    m_gw.setParam(7, "ConnectState", value);
    QSignalSpy changed(&device, &CommDevice::connectStateChanged);
    QCOMPARE(device.GwGetConnectState(), 0);
    QCOMPARE(device.connectState(), state);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(item->calls, QStringList{QStringLiteral("enable %1").arg(state)});
    const FakeGwCall call = m_gw.lastCall(QStringLiteral("GetModuleParam"));
    QCOMPARE(call.moduleId, 7);
    QCOMPARE(call.addressId, -1);
    QCOMPARE(call.recordCount, 1);
    QCOMPARE(call.entries.first().first, QByteArray("ConnectState"));
    const QString line = QStringLiteral("[7]TcpClientModule ConnectState=%1(%2)")
                             .arg(QString::fromUtf8(value), state ? "true" : "false");
    QVERIFY(HostLog::capturedMessages().last().endsWith(line));
}

void tst_CommDevice::connectState_readFailure_keepsState()
{
    CommDevice device;
    device.setDeviceID(3);
    device.updateConState(true);
    m_gw.answer(QStringLiteral("GetModuleParam"), GW_ERR_TIMEOUT);
    QSignalSpy box(&device, &CommDevice::messageBox);
    QCOMPARE(device.GwGetConnectState(), int(GW_ERR_TIMEOUT));
    QVERIFY(device.connectState());
    QCOMPARE(box.count(), 0);
    QVERIFY(HostLog::capturedMessages().last().endsWith(QLatin1String("GW_PF_GetModuleParam failed, error=e0000005")));
}

void tst_CommDevice::setConnectState_data()
{
    QTest::addColumn<bool>("request");
    QTest::addColumn<quint32>("answer");
    QTest::addColumn<bool>("state");
    QTest::addColumn<int>("boxes");
    QTest::newRow("start accepted") << true << quint32(0) << true << 0;
    QTest::newRow("start refused springs back") << true << quint32(GW_ERR_PORT_IN_USE) << false << 1;
    QTest::newRow("stop accepted") << false << quint32(0) << false << 0;
}

void tst_CommDevice::setConnectState()
{
    QFETCH(bool, request);
    QFETCH(quint32, answer);
    QFETCH(bool, state);
    QFETCH(int, boxes);
    CommDevice device;
    device.setDeviceID(4);
    device.updateConState(!request);
    m_gw.answer(QStringLiteral("SetModuleParam"), answer);
    QSignalSpy changed(&device, &CommDevice::connectStateChanged);
    QSignalSpy box(&device, &CommDevice::messageBox);
    device.setConnectState(request);
    QCOMPARE(device.connectState(), state);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_gw.setCount(4, "ConnectState", request ? "true" : "false"), 1);
    QCOMPARE(box.count(), boxes);
    if (boxes) {
        QCOMPARE(box.first().at(0).toInt(), 2);
        QCOMPARE(box.first().at(1).toString(), QStringLiteral("The port is already in use"));
        QVERIFY(HostLog::capturedMessages().last().endsWith(QLatin1String("GwSetModuleParam failed, error=e0000015")));
    }
}

void tst_CommDevice::setDeviceID_propagatesEvenWhenUnchanged()
{
    CommDevice device;
    auto *first = new RecordingProxy(&device);
    auto *second = new RecordingProxy(&device);
    device.AddDeviceItem(first);
    device.AddDeviceItem(nullptr);
    device.AddDeviceItem(second);
    device.setDeviceID(9);
    QSignalSpy changed(&device, &CommDevice::deviceIDChanged);
    device.setDeviceID(9);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(first->calls, QStringList({"id 9", "id 9"}));
    QCOMPARE(second->calls, QStringList({"id 9", "id 9"}));
    QCOMPARE(device.items().size(), 2);
}

void tst_CommDevice::itemOperations_skipNullAndKeepOrder()
{
    CommDevice device;
    auto *item = new RecordingProxy(&device);
    device.AddDeviceItem(item);
    device.setModuleParams();
    device.getModuleParams();
    device.setItemsEnable(false);
    QCOMPARE(item->calls, QStringList({"set", "get", "enable 0"}));
}

QTEST_GUILESS_MAIN(tst_CommDevice)
#include "tst_commdevice.moc"
