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
    void setItemEnable(bool enable) override { calls << QStringLiteral("enable %1").arg(enable); }
};

const QString kStampFormat = QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz");

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
    void timeStamp_matchesQtAcrossSecondBoundaries();
    void received_250Blocks_keepTheLast200UntilCleared();
    void received_emptyBlock_changesNothing();
    void received_addressBlock_emitsResultOnly();
    void timer_reannouncesListsWithoutData();
    void getConnectState_data();
    void getConnectState();
    void setConnectState_data();
    void setConnectState();

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
}

// Both forms of an entry carry the same local time, as Qt formats it.
void tst_CommDevice::received_textAndHexForms()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QFETCH(QString, hex);
    CommDevice device(QStringLiteral("TcpServerModule"));
    QSignalSpy textChanged(&device, &CommDevice::recvDataListChanged);
    const QString before = QDateTime::currentDateTime().toString(kStampFormat);
    receive(device, bytes);
    const QString after = QDateTime::currentDateTime().toString(kStampFormat);
    QCOMPARE(device.recvDataList().size(), 1);
    const QString entry = device.recvDataList().first();
    QCOMPARE(stripStamp(entry), text);
    QCOMPARE(stripStamp(device.recvHexDataList().first()), hex);
    QVERIFY2(before <= entry.mid(1, 23) && entry.mid(1, 23) <= after, qPrintable(before + " " + entry + " " + after));
    QCOMPARE(device.recvHexDataList().first().left(26), entry.left(26));
    QCOMPARE(textChanged.count(), 0); // appends are silent
}

// The cached text of the current second must follow the clock: every stamp
// lies between Qt's own formatting just before and just after it (the format
// sorts like the time), and a second rolls over in the stamps as well.
void tst_CommDevice::timeStamp_matchesQtAcrossSecondBoundaries()
{
    QSet<QString> seconds;
    QElapsedTimer guard;
    guard.start();
    while (seconds.size() < 2 && guard.elapsed() < 5000) {
        const QString before = QDateTime::currentDateTime().toString(kStampFormat);
        const QString stamp = RecvDataFormat::timeStamp();
        const QString after = QDateTime::currentDateTime().toString(kStampFormat);
        QCOMPARE(stamp.size(), 23);
        QVERIFY2(before <= stamp && stamp <= after, qPrintable(before + " " + stamp + " " + after));
        seconds.insert(stamp.left(19));
    }
    QVERIFY(seconds.size() >= 2);
}

void tst_CommDevice::received_250Blocks_keepTheLast200UntilCleared()
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
    QSignalSpy textChanged(&device, &CommDevice::recvDataListChanged);
    QSignalSpy hexChanged(&device, &CommDevice::recvHexDataListChanged);
    device.clearRecvDatas();
    QVERIFY(device.recvDataList().isEmpty());
    QVERIFY(device.recvHexDataList().isEmpty());
    QCOMPARE(textChanged.count(), 1);
    QCOMPARE(hexChanged.count(), 1);
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

void tst_CommDevice::timer_reannouncesListsWithoutData()
{
    CommDevice device;
    QCOMPARE(device.Init(), 0);
    QSignalSpy text(&device, &CommDevice::recvDataListChanged);
    QSignalSpy hex(&device, &CommDevice::recvHexDataListChanged);
    QTRY_VERIFY_WITH_TIMEOUT(text.count() >= 2, 3000);
    QVERIFY(hex.count() >= 1);
}

void tst_CommDevice::getConnectState_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<quint32>("answer");
    QTest::addColumn<bool>("before");
    QTest::addColumn<bool>("state");
    QTest::addColumn<QString>("logLine");
    QTest::newRow("true") << QByteArray("true") << quint32(0) << false << true
                          << "[7]TcpClientModule ConnectState=true(true)";
    QTest::newRow("True") << QByteArray("True") << quint32(0) << false << true
                          << "[7]TcpClientModule ConnectState=True(true)";
    QTest::newRow("TRUE is not true") << QByteArray("TRUE") << quint32(0) << true << false
                                      << "[7]TcpClientModule ConnectState=TRUE(false)";
    QTest::newRow("empty") << QByteArray() << quint32(0) << true << false << "[7]TcpClientModule ConnectState=(false)";
    QTest::newRow("read fails: state kept, no box") << QByteArray("false") << quint32(GW_ERR_TIMEOUT) << true << true
                                                    << "GW_PF_GetModuleParam failed, error=e0000005";
}

void tst_CommDevice::getConnectState()
{
    QFETCH(QByteArray, value);
    QFETCH(quint32, answer);
    QFETCH(bool, before);
    QFETCH(bool, state);
    QFETCH(QString, logLine);
    CommDevice device(QStringLiteral("TcpClientModule"));
    auto *item = new RecordingProxy(&device);
    device.AddDeviceItem(item);
    device.AddDeviceItem(nullptr); // never listed, never called
    device.setDeviceID(7);
    device.updateConState(before);
    QCOMPARE(item->calls, QStringList{QStringLiteral("id 7")});
    QCOMPARE(device.items().size(), 1);
    item->calls.clear();
    m_gw.setParam(7, "ConnectState", value);
    m_gw.answer(QStringLiteral("GetModuleParam"), answer);
    QSignalSpy changed(&device, &CommDevice::connectStateChanged);
    QSignalSpy box(&device, &CommDevice::messageBox);
    QCOMPARE(device.GwGetConnectState(), int(answer));
    QCOMPARE(device.connectState(), state);
    QCOMPARE(changed.count(), answer ? 0 : 1);
    QCOMPARE(item->calls, answer ? QStringList() : QStringList{QStringLiteral("enable %1").arg(state)});
    QCOMPARE(box.count(), 0);
    const FakeGwCall call = m_gw.lastCall(QStringLiteral("GetModuleParam"));
    QCOMPARE(call.moduleId, 7);
    QCOMPARE(call.addressId, -1);
    QCOMPARE(call.recordCount, 1);
    QCOMPARE(call.entries.first().first, QByteArray("ConnectState"));
    QVERIFY(HostLog::capturedMessages().last().endsWith(logLine));
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

QTEST_GUILESS_MAIN(tst_CommDevice)
#include "tst_commdevice.moc"
