#include "CapturedLog.h"
#include "EventPayload.h"
#include "CommDevice.h"
#include "DevicesManager.h"
#include "FakeGateway.h"
#include "GwCallbacks.h"

#include "HostConfig.h"
#include "Slog.h"

#include <QDirIterator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>
#include <cstring>

class tst_DevicesManager : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void load_keepsCommunicationTypesAndReadsTheirParameters();
    void load_readsAtMost256Modules();
    void create_data();
    void create();
    void deleteDevice_data();
    void deleteDevice();
    void rename_data();
    void rename();
    void send_data();
    void send();
    void send_refusedByGateway_isLogged_data();
    void send_refusedByGateway_isLogged();
    void event_data();
    void event();
    void event_payloadIsCopiedBeforeTheCallbackReturns();
    void results_reachOnlyTheirDevice();
    void gatewayEvents_data();
    void gatewayEvents();
    void descriptions_unreadable_data();
    void descriptions_unreadable();

private:
    int addDevice(const QString &type, const QString &name);
    void flushDeletes() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
    QStringList boxes() const;

    DevicesManager *m_mgr = nullptr;
    FakeGateway &m_gw = FakeGateway::instance();
    QSignalSpy *m_boxes = nullptr;
};

namespace {
// A copy of the shipped descriptions that a test may break; the manager reads
// it while it exists.
class ModulesCopy
{
public:
    ModulesCopy()
        : m_original(qgetenv("LM_MODULES_DIR"))
    {
        const QString from = QString::fromLocal8Bit(m_original);
        QDirIterator it(from, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString file = it.next();
            const QString relative = QDir(from).relativeFilePath(file);
            QDir(m_dir.path()).mkpath(QFileInfo(relative).path());
            QFile::copy(file, m_dir.filePath(relative));
        }
        qputenv("LM_MODULES_DIR", QFile::encodeName(m_dir.path()));
    }
    ~ModulesCopy() { qputenv("LM_MODULES_DIR", m_original); }
    void write(const QString &relative, const QByteArray &content)
    {
        QFile file(m_dir.filePath(relative));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(content);
    }
    void remove(const QString &relative) { QFile::remove(m_dir.filePath(relative)); }

private:
    QByteArray m_original;
    QTemporaryDir m_dir;
};
} // namespace

void tst_DevicesManager::initTestCase()
{
    HostConfig::setLanguage(QStringLiteral("en"));
    m_mgr = DevicesManager::Instance();
}

void tst_DevicesManager::init()
{
    m_gw.reset();
    m_mgr->LoadDevices(); // empty gateway: no devices
    flushDeletes();
    m_gw.clearCalls();
    m_mgr->sendDataNormalDevice()->setHexEnable(false);
    HostLog::clearCaptured();
    HostLog::setCaptureEnabled(true);
    m_boxes = new QSignalSpy(m_mgr, &DevicesManager::messageBox);
}

void tst_DevicesManager::cleanup()
{
    delete m_boxes;
    HostLog::setCaptureEnabled(false);
}

void tst_DevicesManager::cleanupTestCase()
{
    m_gw.reset();
    m_mgr->LoadDevices();
    flushDeletes();
}

QStringList tst_DevicesManager::boxes() const
{
    QStringList out;
    for (const QList<QVariant> &args : *m_boxes)
        out << QStringLiteral("%1:%2").arg(args.at(0).toInt()).arg(args.at(1).toString());
    return out;
}

int tst_DevicesManager::addDevice(const QString &type, const QString &name)
{
    if (!m_mgr->loadAlgorithmTabXML(type))
        return -1;
    return m_mgr->createCommDevice(type, name);
}

void tst_DevicesManager::load_keepsCommunicationTypesAndReadsTheirParameters()
{
    m_gw.addModule("TcpServerModule", "Line 1");
    m_gw.addModule("InsightModule", "Camera");
    m_gw.addModule("tcpservermodule", "wrong case");
    m_gw.addModule("ProfinetModule", "PLC");
    const int id = m_gw.addModule("TcpClientModule", "Robot");
    m_gw.setParam(id, "TargetPort", "9100");
    m_gw.setParam(id, "ConnectState", "true");
    QSignalSpy changed(m_mgr, &DevicesManager::commDeviceListChanged);
    m_mgr->LoadDevices();
    QCOMPARE(changed.count(), 1);
    const QList<CommDevice *> devices = m_mgr->commDeviceList();
    QCOMPARE(devices.size(), 3);
    QCOMPARE(devices.at(0)->deviceType(), QStringLiteral("TcpServerModule"));
    QCOMPARE(devices.at(0)->deviceName(), QStringLiteral("Line 1"));
    QCOMPARE(devices.at(0)->deviceID(), 1);
    QCOMPARE(devices.at(1)->deviceID(), 4);
    QVERIFY(!devices.at(0)->connectState());
    CommDevice *robot = m_mgr->getDeviceById(id);
    QVERIFY(robot && robot->connectState());
    QString port;
    for (BaseItemProxy *item : m_mgr->getCurrentDeviceItems(id)) {
        if (item->baseData() && item->baseData()->objectName() == QLatin1String("TargetPort"))
            port = item->baseData()->CurValue();
        // A connected device greys out the items that allow it.
        if (item->baseData() && item->baseData()->supportEnable())
            QVERIFY(!item->baseData()->enable());
    }
    QCOMPARE(port, QStringLiteral("9100"));
    // The records of a loaded module are LoadDevices'; a skipped type leaves none.
    const QStringList lines = capturedLogLines();
    const QString loading = QStringLiteral("[CommManager] [LoadDevices] loadAlgorithmTabXML[TcpClientModule]%1, "
                                           "deviceId=%2, deviceName=Robot");
    QCOMPARE(lines.count(loading.arg(QString()).arg(id)), 1);
    QCOMPARE(lines.count(loading.arg(QStringLiteral(" succ")).arg(id)), 1);
    QVERIFY(lines.filter(QStringLiteral("Camera")).isEmpty());
}

void tst_DevicesManager::load_readsAtMost256Modules()
{
    for (int i = 0; i < 260; ++i)
        m_gw.addModule("UdpModule", QByteArray("u") + QByteArray::number(i));
    m_mgr->LoadDevices();
    QCOMPARE(m_gw.lastCall(QStringLiteral("GetAllModules")).number, 256);
    QCOMPARE(m_mgr->commDeviceList().size(), 256);
}

void tst_DevicesManager::create_data()
{
    QTest::addColumn<bool>("idTaken"); // a listed device already has the id the gateway hands out
    QTest::addColumn<bool>("withTemplate");
    QTest::addColumn<quint32>("answer");
    QTest::addColumn<int>("result");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("logLine");
    QTest::newRow("added") << false << true << quint32(0) << 1 << "" << "";
    QTest::newRow("gateway refuses")
        << false << true << quint32(GW_ERR_UNKNOWN_TYPE) << int(GW_ERR_UNKNOWN_TYPE)
        << "Adding the device failed: Unknown device type"
        << "GW_PF_AddModule failed, deviceType[TcpServerModule], DisplayName[通信1], error=e000000c";
    QTest::newRow("no template prepared") << false << false << quint32(0) << int(GW_ERR_NO_TEMPLATE)
                                          << "Adding the device failed: No device template is prepared" << "";
    QTest::newRow("id already listed")
        << true << true << quint32(0) << int(GW_ERR_GENERAL) << "Adding the device failed: the device ID already exists"
        << "AddModule devID[1] == ( Exist devID[1], deviceType[UdpModule], DisplayName[a] )";
}

void tst_DevicesManager::create()
{
    QFETCH(bool, idTaken);
    QFETCH(bool, withTemplate);
    QFETCH(quint32, answer);
    QFETCH(int, result);
    QFETCH(QString, message);
    QFETCH(QString, logLine);
    if (idTaken) {
        QCOMPARE(addDevice(QStringLiteral("UdpModule"), QStringLiteral("a")), 1);
        m_gw.setNextModuleId(1);
        m_gw.clearCalls();
    }
    m_gw.answer(QStringLiteral("AddModule"), answer);
    QSignalSpy changed(m_mgr, &DevicesManager::commDeviceListChanged);
    if (withTemplate)
        QVERIFY(m_mgr->loadAlgorithmTabXML(QStringLiteral("TcpServerModule")));
    QCOMPARE(m_mgr->createCommDevice(QStringLiteral("TcpServerModule"), QStringLiteral("通信1")), result);
    QCOMPARE(boxes(), message.isEmpty() ? QStringList() : QStringList{QStringLiteral("2:") + message});
    if (!logLine.isEmpty())
        QVERIFY(HostLog::capturedMessages().last().endsWith(logLine));
    const bool added = result > 0;
    QCOMPARE(changed.count(), added ? 1 : 0);
    QCOMPARE(m_mgr->commDeviceList().size(), added || idTaken ? 1 : 0);
    QCOMPARE(bool(m_mgr->pendingDevice()), withTemplate && !added); // kept for another try
    QCOMPARE(m_gw.modules().size(), idTaken ? 2 : int(added)); // a module made on the gateway stays there
    QCOMPARE(m_gw.calls(QStringLiteral("AddModule")).size(), int(withTemplate));
    if (withTemplate) {
        const FakeGwCall add = m_gw.lastCall(QStringLiteral("AddModule"));
        QCOMPARE(add.text, QByteArray("TcpServerModule"));
        QCOMPARE(QString::fromUtf8(add.text2), QStringLiteral("通信1"));
    }
    if (!added) {
        QVERIFY(m_gw.calls(QStringLiteral("SetModuleParam")).isEmpty());
        return;
    }
    // Every parameter of the new device is written, one record each.
    QCOMPARE(m_gw.setCount(result, "LocalPort", "8000"), 1);
    QCOMPARE(m_gw.setCount(result, "MaxConnections", "8"), 1);
    QCOMPARE(m_gw.setCount(result, "EndChar", "\r\n"), 1);
    for (const FakeGwCall &call : m_gw.calls(QStringLiteral("SetModuleParam"))) {
        QCOMPARE(call.moduleId, result);
        QCOMPARE(call.recordCount, 1);
    }
    QCOMPARE(m_mgr->getDeviceById(result)->deviceName(), QStringLiteral("通信1"));
}

void tst_DevicesManager::deleteDevice_data()
{
    QTest::addColumn<bool>("known");
    QTest::addColumn<quint32>("answer");
    QTest::addColumn<int>("left");
    QTest::addColumn<QStringList>("messages");
    QTest::newRow("deleted") << true << quint32(0) << 0 << QStringList();
    QTest::newRow("gateway refuses") << true << quint32(GW_ERR_BUSY) << 1
                                     << QStringList{QStringLiteral("2:Deleting the device failed")};
    QTest::newRow("unknown id") << false << quint32(0) << 1 << QStringList();
}

void tst_DevicesManager::deleteDevice()
{
    QFETCH(bool, known);
    QFETCH(quint32, answer);
    QFETCH(int, left);
    QFETCH(QStringList, messages);
    const int id = addDevice(QStringLiteral("UdpModule"), QStringLiteral("a"));
    QPointer<CommDevice> device = m_mgr->getDeviceById(id);
    m_gw.answer(QStringLiteral("DeleteModule"), answer);
    m_gw.clearCalls();
    const int rc = m_mgr->deleteCommDevice(known ? id : id + 100);
    QCOMPARE(rc, int(answer));
    QCOMPARE(m_mgr->commDeviceList().size(), left);
    QCOMPARE(m_gw.calls(QStringLiteral("DeleteModule")).size(), known ? 1 : 0);
    QCOMPARE(boxes(), messages);
    flushDeletes();
    QCOMPARE(device.isNull(), left == 0);
    QVERIFY(!m_mgr->checkPLCDevice(uint(id))); // a UDP device, or none at all
}

void tst_DevicesManager::rename_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("known");
    QTest::addColumn<quint32>("answer");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<int>("calls");
    QTest::newRow("renamed") << "Robot 2" << true << quint32(0) << true << QStringList() << 1;
    QTest::newRow("empty name") << "" << true << quint32(0) << false
                                << QStringList{QStringLiteral("2:The name must not be empty")} << 0;
    QTest::newRow("gateway refuses") << "x" << true << quint32(GW_ERR_VALUE_TOO_LONG) << false
                                     << QStringList{QStringLiteral("2:Renaming the device failed")} << 1;
    QTest::newRow("unknown id") << "x" << false << quint32(0) << true << QStringList() << 0;
}

void tst_DevicesManager::rename()
{
    QFETCH(QString, name);
    QFETCH(bool, known);
    QFETCH(quint32, answer);
    QFETCH(bool, result);
    QFETCH(QStringList, messages);
    QFETCH(int, calls);
    const int id = addDevice(QStringLiteral("UdpModule"), QStringLiteral("a"));
    CommDevice *device = m_mgr->getDeviceById(id);
    QSignalSpy nameChanged(device, &CommDevice::deviceNameChanged);
    m_gw.answer(QStringLiteral("UpdateModule"), answer);
    QCOMPARE(m_mgr->changeDeviceName(known ? id : id + 1, name), result);
    QCOMPARE(boxes(), messages);
    QCOMPARE(m_gw.calls(QStringLiteral("UpdateModule")).size(), calls);
    const bool renamed = known && result;
    QCOMPARE(device->deviceName(), renamed ? name : QStringLiteral("a"));
    QCOMPARE(nameChanged.count(), renamed ? 1 : 0);
}

void tst_DevicesManager::send_data()
{
    QTest::addColumn<QString>("msg");
    QTest::addColumn<bool>("connected");
    QTest::addColumn<bool>("hex");
    QTest::addColumn<int>("dataType");
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<QString>("message"); // a refusal's box; nothing is sent then
    QTest::newRow("text") << "hello" << true << false << 2 << QByteArray("hello") << "";
    QTest::newRow("integers") << "1;2;" << true << false << 0 << QByteArray("1;2;") << "";
    QTest::newRow("floats") << "1.5;" << true << false << 1 << QByteArray("1.5;") << "";
    QTest::newRow("hex: pairs with blanks") << "41 42 43" << true << true << 2 << QByteArray("ABC") << "";
    QTest::newRow("hex: high byte is Latin-1, sent as UTF-8") << "E9" << true << true << 2 << QByteArray("\xC3\xA9")
                                                              << "";
    QTest::newRow("hex: only blanks send an empty text") << "   " << true << true << 2 << QByteArray() << "";
    QTest::newRow("empty text") << "" << true << false << 2 << QByteArray() << "The text to send is empty";
    QTest::newRow("device not switched on")
        << "x" << false << false << 2 << QByteArray() << "Switch the device on first";
}

void tst_DevicesManager::send()
{
    QFETCH(QString, msg);
    QFETCH(bool, connected);
    QFETCH(bool, hex);
    QFETCH(int, dataType);
    QFETCH(QByteArray, sent);
    QFETCH(QString, message);
    const QString function = QStringList{"WriteInt", "WriteFloat", "WriteString"}.at(dataType);
    const int id = addDevice(QStringLiteral("TcpServerModule"), QStringLiteral("d"));
    m_mgr->getDeviceById(id)->updateConState(connected);
    m_mgr->sendDataNormalDevice()->setHexEnable(hex);
    QCOMPARE(m_mgr->gwSendData(id, msg, -1, dataType, 2), message.isEmpty() ? 0 : int(GW_ERR_GENERAL));
    QCOMPARE(boxes(), message.isEmpty() ? QStringList() : QStringList{QStringLiteral("2:") + message});
    QCOMPARE(m_gw.calls(function).size(), message.isEmpty() ? 1 : 0);
    if (message.isEmpty()) {
        const FakeGwCall call = m_gw.lastCall(function);
        QCOMPARE(call.moduleId, id);
        QCOMPARE(call.addressId, -1);
        QCOMPARE(call.text, sent);
        if (dataType != 2)
            QCOMPARE(call.number, 2); // the value count
    }
}

void tst_DevicesManager::send_refusedByGateway_isLogged_data()
{
    QTest::addColumn<int>("dataType");
    QTest::addColumn<QString>("function");
    QTest::newRow("integers") << 0 << "WriteInt";
    QTest::newRow("floats") << 1 << "WriteFloat";
    QTest::newRow("text") << 2 << "WriteString";
}

void tst_DevicesManager::send_refusedByGateway_isLogged()
{
    QFETCH(int, dataType);
    QFETCH(QString, function);
    const int id = addDevice(QStringLiteral("TcpServerModule"), QStringLiteral("d"));
    m_mgr->getDeviceById(id)->updateConState(true);
    m_gw.answer(function, GW_ERR_WRITE_FAILED);
    HostLog::clearCaptured();
    QCOMPARE(m_mgr->gwSendData(id, QStringLiteral("1"), 4, dataType), int(GW_ERR_WRITE_FAILED));
    QCOMPARE(capturedLogLines(), QStringList{QStringLiteral("[CommManager] [gwSendData] GW_PF_%1 failed, moduid=%2, "
                                                            "addressId=4, error=e0000017")
                                                 .arg(function)
                                                 .arg(id)});
}

void tst_DevicesManager::event_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<bool>("state");
    QTest::addColumn<QString>("logLine");
    const QByteArray known = FakeGateway::modulePayload(1);
    QTest::newRow("connection up") << 1 << known << true << "";
    QTest::newRow("connection down") << 2 << known << false << "";
    QTest::newRow("type 0 ignored") << 0 << known << false << "";
    QTest::newRow("type 3 ignored") << 3 << known << false << "";
    QTest::newRow("unknown module") << 1 << FakeGateway::modulePayload(77) << false
                                    << "HandleGWEvent failed, getDeviceById null";
    QTest::newRow("two-byte payload") << 1 << QByteArray("\x01\x00", 2) << false
                                      << "HandleGWEvent failed, payload of 2 bytes has no module id";
}

void tst_DevicesManager::event()
{
    QFETCH(int, type);
    QFETCH(QByteArray, payload);
    QFETCH(bool, state);
    QFETCH(QString, logLine);
    QCOMPARE(addDevice(QStringLiteral("TcpServerModule"), QStringLiteral("d")), 1);
    GW_PF_SetEventCalBack(EventCallBack, nullptr);
    CommDevice *device = m_mgr->getDeviceById(1);
    HostLog::clearCaptured();
    QVERIFY(m_gw.fireEvent(type, payload)); // from a gateway thread, queued to this one
    QCoreApplication::processEvents();
    QCOMPARE(device->connectState(), state);
    const QStringList lines = HostLog::capturedMessages();
    if (logLine.isEmpty()) {
        QVERIFY2(lines.isEmpty(), qPrintable(lines.join(QLatin1Char('\n'))));
    } else {
        QCOMPARE(lines.size(), 1);
        QVERIFY(lines.first().endsWith(logLine));
    }
}

// The gateway may reuse its buffer as soon as the callback returns; the queued
// event must carry its own copy.
void tst_DevicesManager::event_payloadIsCopiedBeforeTheCallbackReturns()
{
    QCOMPARE(addDevice(QStringLiteral("TcpServerModule"), QStringLiteral("d")), 1);
    HostLog::clearCaptured();
    QByteArray payload = FakeGateway::modulePayload(1);
    QCOMPARE(EventCallBack(GW_EVENT_CONNECTED, payload.data(), nullptr, payload.size()), 0);
    payload.fill('\xFF');
    EventCallBack(GW_EVENT_CONNECTED, nullptr, nullptr, 4); // no bytes behind the length
    QCoreApplication::processEvents();
    QVERIFY(m_mgr->getDeviceById(1)->connectState());
    const QStringList lines = HostLog::capturedMessages();
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines.first().endsWith(QLatin1String("HandleGWEvent failed, payload of 0 bytes has no module id")));
}

void tst_DevicesManager::results_reachOnlyTheirDevice()
{
    const int a = addDevice(QStringLiteral("TcpServerModule"), QStringLiteral("a"));
    const int b = addDevice(QStringLiteral("UdpModule"), QStringLiteral("b"));
    GW_PF_SetResultCallback(ResultCallBack, nullptr);
    QVERIFY(m_gw.fireResult(b, -1, "hi\r\n"));
    QVERIFY(m_gw.fireResult(99, -1, "nobody"));
    QVERIFY(m_gw.fireResult(a, -1, QByteArray()));
    m_mgr->HandleGWResult(a, -1, nullptr, 5);
    QVERIFY(m_mgr->getDeviceById(a)->recvDataList().isEmpty());
    QCOMPARE(m_mgr->getDeviceById(b)->recvDataList().size(), 1);
    QVERIFY(m_mgr->getDeviceById(b)->recvDataList().first().endsWith(QLatin1String("] hi[0D][0A]")));
    QVERIFY(HostLog::capturedMessages().filter(QStringLiteral("HandleGW")).isEmpty());
}

// Lost: every device shows not connected and its items are editable again,
// the banner says so; reconnecting: the banner names the attempt; restored:
// the list is read from the gateway again (which may have changed meanwhile)
// and the banner says the gateway is back. A short reconnecting payload is
// logged and changes nothing.
void tst_DevicesManager::gatewayEvents_data()
{
    QTest::addColumn<QList<int>>("types");
    QTest::addColumn<QByteArray>("lastPayload");
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("banner");
    QTest::addColumn<bool>("connected");
    QTest::addColumn<int>("reloads");
    QTest::addColumn<QString>("logLine");
    const QByteArray none;
    QTest::newRow("lost") << QList<int>{GW_EVENT_GATEWAY_LOST} << none << int(GatewayStatus::Lost)
                          << "The gateway is not reachable. Every device is shown as not connected until it is back."
                          << false << 0 << "gateway lost, devices shown as not connected";
    QTest::newRow("reconnecting")
        << QList<int>{GW_EVENT_GATEWAY_LOST, GW_EVENT_GATEWAY_RECONNECTING} << eventPayload({3, 800})
        << int(GatewayStatus::Reconnecting) << "Reconnecting to the gateway: attempt 3 failed, next in 0.8 s."
        << false << 0 << "";
    QTest::newRow("reconnecting without its fields")
        << QList<int>{GW_EVENT_GATEWAY_LOST, GW_EVENT_GATEWAY_RECONNECTING} << QByteArray("\x03\0\0\0", 4)
        << int(GatewayStatus::Lost)
        << "The gateway is not reachable. Every device is shown as not connected until it is back." << false << 0
        << "gateway reconnecting event of 4 bytes, 8 expected";
    QTest::newRow("restored") << QList<int>{GW_EVENT_GATEWAY_LOST, GW_EVENT_GATEWAY_RESTORED} << none
                              << int(GatewayStatus::Restored)
                              << "The gateway is back; the device list was read again." << true << 1
                              << "gateway restored, reloading the devices";
}

void tst_DevicesManager::gatewayEvents()
{
    QFETCH(QList<int>, types);
    QFETCH(QByteArray, lastPayload);
    QFETCH(int, state);
    QFETCH(QString, banner);
    QFETCH(bool, connected);
    QFETCH(int, reloads);
    QFETCH(QString, logLine);
    const int id = addDevice(QStringLiteral("TcpServerModule"), QStringLiteral("d"));
    m_mgr->getDeviceById(id)->setConnectState(true);
    QVERIFY(m_mgr->getDeviceById(id)->connectState());
    // What the gateway runs when it is back: the device on, and one more.
    m_gw.addModule("UdpModule", "added meanwhile");
    GW_PF_SetEventCalBack(EventCallBack, nullptr);
    m_gw.clearCalls();
    GatewayStatus *status = m_mgr->gatewayStatus();
    for (int i = 0; i < types.size(); ++i) {
        HostLog::clearCaptured();
        QVERIFY(m_gw.fireEvent(types.at(i), i + 1 == types.size() ? lastPayload : QByteArray()));
        QCoreApplication::processEvents();
    }
    flushDeletes();
    QCOMPARE(int(status->state()), state);
    QCOMPARE(status->text(), banner);
    QVERIFY(status->bannerVisible());
    QCOMPARE(m_gw.calls(QStringLiteral("GetAllModules")).size(), reloads);
    const QList<CommDevice *> devices = m_mgr->commDeviceList();
    QCOMPARE(devices.size(), reloads ? 2 : 1);
    QCOMPARE(m_mgr->getDeviceById(id)->connectState(), connected);
    const QStringList lines = HostLog::capturedMessages().filter(QStringLiteral("gateway"));
    if (logLine.isEmpty())
        QVERIFY2(lines.isEmpty(), qPrintable(lines.join(QLatin1Char('\n'))));
    else
        QVERIFY2(lines.size() == 1 && lines.first().endsWith(logLine), qPrintable(lines.join(QLatin1Char('\n'))));
    // The next event of a connection still reaches its device.
    if (reloads) {
        QVERIFY(m_gw.fireEvent(GW_EVENT_DISCONNECTED, FakeGateway::modulePayload(id)));
        QCoreApplication::processEvents();
        QVERIFY(!m_mgr->getDeviceById(id)->connectState());
    }
    QVERIFY(m_gw.fireEvent(GW_EVENT_GATEWAY_RESTORED, QByteArray())); // back to normal for the next row
    QCoreApplication::processEvents();
    flushDeletes();
}

void tst_DevicesManager::descriptions_unreadable_data()
{
    QTest::addColumn<QString>("file");        // below the modules directory
    QTest::addColumn<QByteArray>("content");  // empty: the file is removed
    QTest::addColumn<QString>("brokenType");  // the type no longer offered, if any
    QTest::addColumn<QString>("message");

    QTest::newRow("type description not well-formed")
        << "UdpModule/UdpModuleAlgorithmTab.xml" << QByteArray("<AlgorithmTab>\n<Tab>\n<Integer Name=\"x\">\n</Tab>\n")
        << "UdpModule"
        << "The device description UdpModule/UdpModuleAlgorithmTab.xml cannot be read: line 3 "
           "(XML_ERROR_MISMATCHED_ELEMENT).";
    QTest::newRow("type description missing")
        << "SerialModule/SerialModuleAlgorithmTab.xml" << QByteArray() << "SerialModule"
        << "The device description SerialModule/SerialModuleAlgorithmTab.xml is missing or cannot be opened.";
    QTest::newRow("type list not well-formed")
        << "DeviceItemInfo.xml" << QByteArray("<Root>\n  <Items><Name>UdpModule</Name>\n</Root>") << QString()
        << "The device description DeviceItemInfo.xml cannot be read: line 2 (XML_ERROR_MISMATCHED_ELEMENT).";
}

// A description that cannot be read is named with its line, its type is no
// longer offered, and the devices of that type that the gateway runs stay on
// the page, apart from the list and without parameters.
void tst_DevicesManager::descriptions_unreadable()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QString, brokenType);
    QFETCH(QString, message);

    const int udp = m_gw.addModule("UdpModule", "Scanner");
    const int serial = m_gw.addModule("SerialModule", "Printer");
    const QStringList allTypes = m_mgr->commDevices();
    {
        ModulesCopy modules;
        if (content.isEmpty())
            modules.remove(file);
        else
            modules.write(file, content);
        QSignalSpy problems(m_mgr, &DevicesManager::descriptionProblemsChanged);
        QSignalSpy offered(m_mgr, &DevicesManager::commDevicesChanged);
        m_mgr->checkDescriptions();
        QCOMPARE(problems.count(), 1);
        QCOMPARE(m_mgr->descriptionProblems(), QStringList{message});
        QCOMPARE(m_mgr->commDevices(), allTypes); // the list the file gives stays as it is
        QStringList expectedOffer = allTypes;
        expectedOffer.removeAll(brokenType);
        QCOMPARE(m_mgr->offeredDeviceTypes(), expectedOffer);
        QCOMPARE(offered.count(), brokenType.isEmpty() ? 0 : 1);
        QCOMPARE(capturedLogLines().filter(QStringLiteral("cannot be read, line")).size(), 1);

        QSignalSpy unreadable(m_mgr, &DevicesManager::unreadableDevicesChanged);
        m_mgr->LoadDevices();
        flushDeletes();
        QList<int> listed;
        for (CommDevice *device : m_mgr->commDeviceList())
            listed << device->deviceID();
        const QVariantList apart = m_mgr->unreadableDevices();
        if (brokenType.isEmpty()) {
            QCOMPARE(listed, (QList<int>{udp, serial}));
            QVERIFY(apart.isEmpty());
        } else {
            const int brokenId = brokenType == QLatin1String("UdpModule") ? udp : serial;
            QCOMPARE(listed, QList<int>{brokenId == udp ? serial : udp});
            QCOMPARE(apart.size(), 1);
            const QVariantMap entry = apart.first().toMap();
            QCOMPARE(entry.value("deviceID").toInt(), brokenId);
            QCOMPARE(entry.value("deviceType").toString(), brokenType);
            QCOMPARE(entry.value("problem").toString(), message);
            QCOMPARE(unreadable.count(), 1);
            QCOMPARE(capturedLogLines().filter(QStringLiteral("listed without parameters")).size(), 1);
        }
        QVERIFY(m_boxes->isEmpty()); // the page names the problems, not a model message
    }
    // Mended: offered again, and the device is back in the list.
    m_mgr->checkDescriptions();
    QVERIFY(m_mgr->descriptionProblems().isEmpty());
    QCOMPARE(m_mgr->offeredDeviceTypes(), allTypes);
    m_mgr->LoadDevices();
    flushDeletes();
    QCOMPARE(m_mgr->commDeviceList().size(), 2);
    QVERIFY(m_mgr->unreadableDevices().isEmpty());
}

QTEST_MAIN(tst_DevicesManager)
#include "tst_devicesmanager.moc"
