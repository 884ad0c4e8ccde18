// The status of a device as the page shows it: states pushed by the
// gateway's status event, counters and peers read from the gateway, the
// reset and drop-peer requests, and the outcome of a send.
#include "CapturedLog.h"
#include "CommDevice.h"
#include "DevicesManager.h"
#include "DeviceStatus.h"
#include "EventPayload.h"
#include "FakeGateway.h"
#include "GwCallbacks.h"

#include "HostConfig.h"
#include "Slog.h"

#include <QSignalSpy>
#include <QtTest>
#include <cstring>

class tst_DeviceStatus : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void parseCounters_data();
    void parseCounters();
    void parsePeers_data();
    void parsePeers();
    void statusEvent_data();
    void statusEvent();
    void fieldbusDevice_followsItsSwitch();
    void load_readsTheStateOfStreamDevicesOnly();
    void refreshCounters_readsPeersOfAServerOnly_data();
    void refreshCounters_readsPeersOfAServerOnly();
    void resetAndDrop_data();
    void resetAndDrop();
    void send_outcomeShownUnderTheField_data();
    void send_outcomeShownUnderTheField();

private:
    int addDevice(const QString &type);
    QStringList boxes(const QSignalSpy &spy) const;

    DevicesManager *m_mgr = nullptr;
    FakeGateway &m_gw = FakeGateway::instance();
};

void tst_DeviceStatus::initTestCase()
{
    HostConfig::setLanguage(QStringLiteral("en"));
    m_mgr = DevicesManager::Instance();
}

void tst_DeviceStatus::init()
{
    m_gw.reset();
    m_mgr->LoadDevices();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_gw.clearCalls();
    m_mgr->sendDataNormalDevice()->setHexEnable(false);
    HostLog::clearCaptured();
    HostLog::setCaptureEnabled(true);
}

void tst_DeviceStatus::cleanup()
{
    HostLog::setCaptureEnabled(false);
}

void tst_DeviceStatus::cleanupTestCase()
{
    m_gw.reset();
    m_mgr->LoadDevices();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

int tst_DeviceStatus::addDevice(const QString &type)
{
    if (!m_mgr->loadAlgorithmTabXML(type))
        return -1;
    const int id = m_mgr->createCommDevice(type, QStringLiteral("d"));
    m_gw.clearCalls();
    HostLog::clearCaptured();
    return id;
}

QStringList tst_DeviceStatus::boxes(const QSignalSpy &spy) const
{
    QStringList out;
    for (const QList<QVariant> &args : spy)
        out << QStringLiteral("%1:%2").arg(args.at(0).toInt()).arg(args.at(1).toString());
    return out;
}

void tst_DeviceStatus::parseCounters_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QVariantMap>("expected");
    QTest::newRow("all counters") << QByteArray("RxBytes=11;TxBytes=5;Errors=0;Since=2026-05-04T10:15:02")
                                  << QVariantMap{{"RxBytes", 11ULL}, {"TxBytes", 5ULL}, {"Errors", 0ULL},
                                                 {"Since", "2026-05-04T10:15:02"}};
    QTest::newRow("beyond 32 bits") << QByteArray("RxBytes=5000000000")
                                    << QVariantMap{{"RxBytes", 5000000000ULL}};
    QTest::newRow("pairs without a name or =") << QByteArray("=3;junk;;Dropped=2") << QVariantMap{{"Dropped", 2ULL}};
    QTest::newRow("empty") << QByteArray() << QVariantMap();
}

void tst_DeviceStatus::parseCounters()
{
    QFETCH(QByteArray, text);
    QFETCH(QVariantMap, expected);
    QCOMPARE(DeviceStatus::parseCounters(text), expected);
}

void tst_DeviceStatus::parsePeers_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("addresses");
    QTest::newRow("two peers") << QByteArray("127.0.0.1:5000;2026-05-04T10:00:00;12;3;2026-05-04T10:01:00\n"
                                             "10.0.0.2:6000;2026-05-04T10:00:05;0;3;2026-05-04T10:00:05")
                               << QStringList{"127.0.0.1:5000", "10.0.0.2:6000"};
    QTest::newRow("short, long and non-numeric lines skipped")
        << QByteArray("1.2.3.4:1;a;1;2\n1.2.3.4:2;a;1;2;b;c\n1.2.3.4:3;a;x;2;b\n1.2.3.4:4;a;1;2;b")
        << QStringList{"1.2.3.4:4"};
    QTest::newRow("none") << QByteArray() << QStringList();
}

void tst_DeviceStatus::parsePeers()
{
    QFETCH(QByteArray, text);
    QFETCH(QStringList, addresses);
    const QVariantList peers = DeviceStatus::parsePeers(text);
    QStringList got;
    for (const QVariant &peer : peers)
        got << peer.toMap().value("address").toString();
    QCOMPARE(got, addresses); // the fields of a row: tst_devicestatus.qml's peer table
}

void tst_DeviceStatus::statusEvent_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("level");
    QTest::addColumn<QString>("detail");
    QTest::addColumn<QString>("logLine");
    QTest::newRow("connected") << eventPayload({1, GW_DEVICE_CONNECTED}) << "Connected" << "Connected" << "ok"
                               << "gone (x)" << "";
    QTest::newRow("port missing") << eventPayload({1, GW_DEVICE_PORT_MISSING}) << "PortMissing" << "Port missing"
                                  << "fault" << "gone (x)" << "";
    QTest::newRow("unknown state") << eventPayload({1, 42}) << "Closed" << "Off" << "off" << ""
                                   << "[CommManager] [applyStateCode] device 1: unknown state 42 ignored";
    QTest::newRow("unknown module") << eventPayload({9, GW_DEVICE_CONNECTED}) << "Closed" << "Off" << "off" << ""
                                    << "[CommManager] [handleStatusEvent] HandleGWEvent failed, getDeviceById null";
    QTest::newRow("payload without a state") << QByteArray(FakeGateway::modulePayload(1)) << "Closed" << "Off"
                                             << "off" << ""
                                             << "[CommManager] [handleStatusEvent] HandleGWEvent failed, status "
                                                "payload of 4 bytes";
}

// Pushed from a gateway thread, queued to the GUI thread: the state is
// taken from the event, the detail read once; nothing else is polled.
void tst_DeviceStatus::statusEvent()
{
    QFETCH(QByteArray, payload);
    QFETCH(QString, status);
    QFETCH(QString, text);
    QFETCH(QString, level);
    QFETCH(QString, detail);
    QFETCH(QString, logLine);
    QCOMPARE(addDevice(QStringLiteral("SerialModule")), 1);
    m_gw.setParam(1, "StatusDetail", "gone (x)");
    CommDevice *device = m_mgr->getDeviceById(1);
    QSignalSpy changed(device, &CommDevice::statusChanged);
    GW_PF_SetEventCalBack(EventCallBack, nullptr);
    QVERIFY(m_gw.fireEvent(GW_EVENT_DEVICE_STATUS, payload));
    QCoreApplication::processEvents();
    QCOMPARE(device->status(), status);
    QCOMPARE(device->statusText(), text);
    QCOMPARE(device->statusLevel(), level);
    QCOMPARE(device->statusDetail(), detail);
    QCOMPARE(changed.count(), status == QLatin1String("Closed") ? 0 : 1);
    QCOMPARE(m_gw.calls("GetModuleParam").size(), status == QLatin1String("Closed") ? 0 : 1);
    QCOMPARE(device->connectState(), false); // the switch is the connection events' alone
    QCOMPARE(capturedLogLines(), logLine.isEmpty() ? QStringList() : QStringList{logLine});
}

void tst_DeviceStatus::fieldbusDevice_followsItsSwitch()
{
    const int id = addDevice(QStringLiteral("ProfinetModule"));
    CommDevice *device = m_mgr->getDeviceById(id);
    QVERIFY(!device->hasStatus());
    device->updateConState(true);
    QCOMPARE(device->status(), QStringLiteral("Connected"));
    device->refreshCounters();
    QVERIFY(m_gw.calls("GetModuleParam").isEmpty()); // no status keys on a fieldbus device
    device->updateStatus(GW_DEVICE_ERROR);
    QCOMPARE(device->status(), QStringLiteral("Connected"));
    device->updateConState(false);
    QCOMPARE(device->status(), QStringLiteral("Closed"));
}

void tst_DeviceStatus::load_readsTheStateOfStreamDevicesOnly()
{
    const int server = m_gw.addModule("TcpServerModule", "S");
    const int plc = m_gw.addModule("ProfinetModule", "P");
    m_gw.setParam(server, "Status", "Listening");
    m_gw.setParam(server, "StatusDetail", "127.0.0.1:8000, 0 of 8 peers");
    m_gw.setParam(server, "ConnectState", "true");
    m_mgr->LoadDevices();
    QCOMPARE(m_mgr->getDeviceById(server)->status(), QStringLiteral("Listening"));
    QCOMPARE(m_mgr->getDeviceById(server)->statusDetail(), QStringLiteral("127.0.0.1:8000, 0 of 8 peers"));
    for (const FakeGwCall &call : m_gw.calls("GetModuleParam"))
        if (call.moduleId == plc)
            QVERIFY2(call.entries.value(0).first != "Status", "a fieldbus device was asked for its status");
}

void tst_DeviceStatus::refreshCounters_readsPeersOfAServerOnly_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QList<QByteArray>>("keys");
    QTest::addColumn<int>("peers");
    QTest::newRow("TCP server") << "TcpServerModule" << QList<QByteArray>{"StatusDetail", "Counters", "Peers"} << 1;
    QTest::newRow("TCP client") << "TcpClientModule" << QList<QByteArray>{"StatusDetail", "Counters"} << 0;
}

void tst_DeviceStatus::refreshCounters_readsPeersOfAServerOnly()
{
    QFETCH(QString, type);
    QFETCH(QList<QByteArray>, keys);
    QFETCH(int, peers);
    const int id = addDevice(type);
    m_gw.setParam(id, "Counters", "RxBytes=7;TxBytes=0");
    m_gw.setParam(id, "Peers", "127.0.0.1:5000;2026-05-04T10:00:00;7;0;2026-05-04T10:00:01");
    CommDevice *device = m_mgr->getDeviceById(id);
    QSignalSpy counters(device, &CommDevice::countersChanged);
    device->refreshCounters();
    device->refreshCounters(); // unchanged: no second notification
    QList<QByteArray> asked;
    for (const FakeGwCall &call : m_gw.calls("GetModuleParam"))
        asked << call.entries.value(0).first;
    QCOMPARE(asked, keys + keys);
    QCOMPARE(counters.count(), 1);
    QCOMPARE(device->counters().value("RxBytes").toULongLong(), 7ULL);
    QCOMPARE(device->peers().size(), peers);
}

void tst_DeviceStatus::resetAndDrop_data()
{
    QTest::addColumn<bool>("drop");
    QTest::addColumn<quint32>("answer");
    QTest::addColumn<QString>("logLine");
    QTest::addColumn<QStringList>("boxes");
    QTest::newRow("reset") << false << quint32(GW_OK) << "[CommManager] [resetCounters] device 1: counters reset"
                           << QStringList();
    QTest::newRow("reset refused")
        << false << quint32(GW_ERR_UNKNOWN_MODULE)
        << "[CommManager] [resetCounters] GW_PF_SetModuleParam failed, moduid=1, key=ResetCounters, error=e000000b"
        << QStringList{"2:" + DevicesManager::Instance()->qsErrTr(int(GW_ERR_UNKNOWN_MODULE))};
    QTest::newRow("drop") << true << quint32(GW_OK)
                          << "[CommManager] [dropPeer] device 1: peer 127.0.0.1:5000 dropped" << QStringList();
    QTest::newRow("drop of a peer already gone")
        << true << quint32(GW_ERR_INVALID_VALUE)
        << "[CommManager] [dropPeer] GW_PF_SetModuleParam failed, moduid=1, DropPeer=127.0.0.1:5000, error=e000000f"
        << QStringList{"2:" + DevicesManager::Instance()->qsErrTr(int(GW_ERR_INVALID_VALUE))};
}

// A request is one gateway write; when accepted the counters are read
// again, when refused the operator sees the translated error.
void tst_DeviceStatus::resetAndDrop()
{
    QFETCH(bool, drop);
    QFETCH(quint32, answer);
    QFETCH(QString, logLine);
    QFETCH(QStringList, boxes);
    QCOMPARE(addDevice(QStringLiteral("TcpServerModule")), 1);
    CommDevice *device = m_mgr->getDeviceById(1);
    QSignalSpy box(device, &CommDevice::messageBox);
    m_gw.answer("SetModuleParam", answer);
    if (drop)
        device->dropPeer(QStringLiteral("127.0.0.1:5000"));
    else
        device->resetCounters();
    const QList<FakeGwCall> writes = m_gw.calls("SetModuleParam");
    QCOMPARE(writes.size(), 1);
    QCOMPARE(writes.first().entries.value(0),
             drop ? qMakePair(QByteArray("DropPeer"), QByteArray("127.0.0.1:5000"))
                  : qMakePair(QByteArray("ResetCounters"), QByteArray("true")));
    QCOMPARE(m_gw.calls("GetModuleParam").isEmpty(), answer != GW_OK);
    QCOMPARE(capturedLogLines(), QStringList{logLine});
    QCOMPARE(this->boxes(box), boxes);
}

void tst_DeviceStatus::send_outcomeShownUnderTheField_data()
{
    QTest::addColumn<quint32>("answer");
    QTest::addColumn<QString>("outcome");
    QTest::addColumn<bool>("failed");
    QTest::newRow("sent") << quint32(GW_OK) << "Sent 5 bytes" << false;
    QTest::newRow("no peer connected") << quint32(GW_ERR_NOT_OPEN)
                                       << DevicesManager::Instance()->qsErrTr(int(GW_ERR_NOT_OPEN)) << true;
}

void tst_DeviceStatus::send_outcomeShownUnderTheField()
{
    QFETCH(quint32, answer);
    QFETCH(QString, outcome);
    QFETCH(bool, failed);
    const int id = addDevice(QStringLiteral("TcpServerModule"));
    CommDevice *device = m_mgr->getDeviceById(id);
    device->updateConState(true);
    QSignalSpy changed(device, &CommDevice::sendOutcomeChanged);
    QSignalSpy managerBoxes(m_mgr, &DevicesManager::messageBox);
    m_gw.answer("WriteString", answer);
    QCOMPARE(m_mgr->gwSendData(id, QStringLiteral("hello")), int(answer));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(device->sendOutcome(), outcome);
    QCOMPARE(device->sendFailed(), failed);
    QVERIFY(!outcome.startsWith(QLatin1String("0x"))); // translated, not the bare code
    QCOMPARE(managerBoxes.count(), 0);                 // shown once, under the field
    QCOMPARE(capturedLogLines().size(), failed ? 1 : 0);
}

QTEST_MAIN(tst_DeviceStatus)
#include "tst_devicestatus.moc"
