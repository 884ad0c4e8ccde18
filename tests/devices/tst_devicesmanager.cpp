#include "CEventDispatcher.h"
#include "CommDevice.h"
#include "DevicesManager.h"
#include "FakeGateway.h"
#include "GwCallbacks.h"

#include "HostConfig.h"
#include "Slog.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QtTest>

class tst_DevicesManager : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void load_keepsCommunicationTypesOnly();
    void load_readsAtMost256Modules();
    void load_devicesReadTheirParameters();
    void create_data();
    void create();
    void create_writesEveryParameterOfTheNewDevice();
    void create_twiceWithoutNewTemplate_fails();
    void create_idAlreadyListed_keepsPendingDevice();
    void deleteDevice_data();
    void deleteDevice();
    void rename_data();
    void rename();
    void checkPLCDevice_data();
    void checkPLCDevice();
    void send_data();
    void send();
    void event_data();
    void event();
    void event_payloadIsCopiedBeforeTheCallbackReturns();
    void results_reachOnlyTheirDevice();
    void generateUuid_hasQtsDefaultForm();
    void qml_callsWithDefaultsAndReadsTheList();

private:
    int addDevice(const QString &type, const QString &name);
    void flushDeletes() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
    QStringList boxes() const;

    DevicesManager *m_mgr = nullptr;
    FakeGateway &m_gw = FakeGateway::instance();
    QSignalSpy *m_boxes = nullptr;
};

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

void tst_DevicesManager::load_keepsCommunicationTypesOnly()
{
    m_gw.addModule("TcpServerModule", "Line 1");
    m_gw.addModule("InsightModule", "Camera");
    m_gw.addModule("tcpservermodule", "wrong case");
    m_gw.addModule("ProfinetModule", "PLC");
    m_mgr->LoadDevices();
    const QList<CommDevice *> devices = m_mgr->commDeviceList();
    QCOMPARE(devices.size(), 2);
    QCOMPARE(devices.at(0)->deviceType(), QStringLiteral("TcpServerModule"));
    QCOMPARE(devices.at(0)->deviceName(), QStringLiteral("Line 1"));
    QCOMPARE(devices.at(0)->deviceID(), 1);
    QCOMPARE(devices.at(1)->deviceID(), 4);
}

void tst_DevicesManager::load_readsAtMost256Modules()
{
    for (int i = 0; i < 260; ++i)
        m_gw.addModule("UdpModule", QByteArray("u") + QByteArray::number(i));
    m_mgr->LoadDevices();
    QCOMPARE(m_gw.lastCall(QStringLiteral("GetAllModules")).number, 256);
    QCOMPARE(m_mgr->commDeviceList().size(), 256);
}

void tst_DevicesManager::load_devicesReadTheirParameters()
{
    const int id = m_gw.addModule("TcpClientModule", "Robot");
    m_gw.setParam(id, "TargetPort", "9100");
    m_gw.setParam(id, "ConnectState", "true");
    QSignalSpy changed(m_mgr, &DevicesManager::commDeviceListChanged);
    m_mgr->LoadDevices();
    QCOMPARE(changed.count(), 1);
    CommDevice *device = m_mgr->getDeviceById(id);
    QVERIFY(device);
    QVERIFY(device->connectState());
    const auto items = m_mgr->getCurrentDeviceItems(id);
    QVERIFY(!items.isEmpty());
    QString port;
    for (BaseItemProxy *item : items)
        if (item->baseData() && item->baseData()->objectName() == QLatin1String("TargetPort"))
            port = item->baseData()->CurValue();
    QCOMPARE(port, QStringLiteral("9100"));
    // A connected device greys out the items that allow it.
    for (BaseItemProxy *item : items)
        if (item->baseData() && item->baseData()->supportEnable())
            QVERIFY(!item->baseData()->enable());
}

void tst_DevicesManager::create_data()
{
    QTest::addColumn<quint32>("answer");
    QTest::addColumn<int>("result");
    QTest::addColumn<QStringList>("messages");
    QTest::newRow("added") << quint32(0) << 1 << QStringList();
    QTest::newRow("gateway refuses")
        << quint32(GW_ERR_UNKNOWN_TYPE) << int(GW_ERR_UNKNOWN_TYPE)
        << QStringList{QStringLiteral("2:Adding the device failed: Unknown device type")};
}

void tst_DevicesManager::create()
{
    QFETCH(quint32, answer);
    QFETCH(int, result);
    QFETCH(QStringList, messages);
    m_gw.answer(QStringLiteral("AddModule"), answer);
    QSignalSpy changed(m_mgr, &DevicesManager::commDeviceListChanged);
    QVERIFY(m_mgr->loadAlgorithmTabXML(QStringLiteral("TcpServerModule")));
    QCOMPARE(m_mgr->createCommDevice(QStringLiteral("TcpServerModule"), QStringLiteral("通信1")), result);
    QCOMPARE(boxes(), messages);
    QCOMPARE(changed.count(), answer == 0 ? 1 : 0);
    QCOMPARE(m_mgr->commDeviceList().size(), answer == 0 ? 1 : 0);
    const FakeGwCall add = m_gw.lastCall(QStringLiteral("AddModule"));
    QCOMPARE(add.text, QByteArray("TcpServerModule"));
    QCOMPARE(QString::fromUtf8(add.text2), QStringLiteral("通信1"));
    if (answer) {
        QVERIFY(HostLog::capturedMessages().last().endsWith(QStringLiteral(
            "GW_PF_AddModule failed, deviceType[TcpServerModule], DisplayName[通信1], error=e000000c")));
    }
}

void tst_DevicesManager::create_writesEveryParameterOfTheNewDevice()
{
    const int id = addDevice(QStringLiteral("TcpServerModule"), QStringLiteral("Line"));
    QVERIFY(id > 0);
    QCOMPARE(m_gw.setCount(id, "LocalPort", "8000"), 1);
    QCOMPARE(m_gw.setCount(id, "MaxConnections", "8"), 1);
    QCOMPARE(m_gw.setCount(id, "EndChar", "\r\n"), 1);
    for (const FakeGwCall &call : m_gw.calls(QStringLiteral("SetModuleParam"))) {
        QCOMPARE(call.moduleId, id);
        QCOMPARE(call.recordCount, 1);
    }
    CommDevice *device = m_mgr->getDeviceById(id);
    QVERIFY(device);
    QCOMPARE(device->deviceName(), QStringLiteral("Line"));
    QVERIFY(!m_mgr->pendingDevice());
}

void tst_DevicesManager::create_twiceWithoutNewTemplate_fails()
{
    QVERIFY(addDevice(QStringLiteral("UdpModule"), QStringLiteral("a")) > 0);
    m_boxes->clear();
    QCOMPARE(m_mgr->createCommDevice(QStringLiteral("UdpModule"), QStringLiteral("b")), int(GW_ERR_NO_TEMPLATE));
    QCOMPARE(boxes(), QStringList{QStringLiteral("2:Adding the device failed: No device template is prepared")});
    QCOMPARE(m_gw.calls(QStringLiteral("AddModule")).size(), 1);
}

void tst_DevicesManager::create_idAlreadyListed_keepsPendingDevice()
{
    const int id = addDevice(QStringLiteral("UdpModule"), QStringLiteral("a"));
    m_gw.setNextModuleId(id);
    m_boxes->clear();
    QVERIFY(m_mgr->loadAlgorithmTabXML(QStringLiteral("UdpModule")));
    QCOMPARE(m_mgr->createCommDevice(QStringLiteral("UdpModule"), QStringLiteral("b")), int(GW_ERR_GENERAL));
    QCOMPARE(boxes(), QStringList{QStringLiteral("2:Adding the device failed: the device ID already exists")});
    QVERIFY(m_mgr->pendingDevice());
    QCOMPARE(m_mgr->commDeviceList().size(), 1);
    QCOMPARE(m_gw.modules().size(), 2); // the module made on the gateway is left there
    QVERIFY(HostLog::capturedMessages().filter(QRegularExpression(
        QStringLiteral("AddModule devID\\[%1\\] == \\( Exist devID\\[%1\\], deviceType\\[UdpModule\\], DisplayName\\[a\\] \\)").arg(id))).size() == 1);
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

void tst_DevicesManager::checkPLCDevice_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("plc");
    QTest::newRow("profinet") << "ProfinetModule" << true;
    QTest::newRow("ethernet/ip") << "EipModule" << true;
    QTest::newRow("tcp server") << "TcpServerModule" << false;
    QTest::newRow("serial") << "SerialModule" << false;
}

void tst_DevicesManager::checkPLCDevice()
{
    QFETCH(QString, type);
    QFETCH(bool, plc);
    const int id = addDevice(type, QStringLiteral("d"));
    QCOMPARE(m_mgr->checkPLCDevice(uint(id)), plc);
    QVERIFY(!m_mgr->checkPLCDevice(uint(id + 50)));
}

void tst_DevicesManager::send_data()
{
    QTest::addColumn<QString>("msg");
    QTest::addColumn<bool>("connected");
    QTest::addColumn<bool>("hex");
    QTest::addColumn<int>("dataType");
    QTest::addColumn<QString>("function");
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<int>("result");
    QTest::addColumn<QString>("message");
    QTest::newRow("text") << "hello" << true << false << 2 << "WriteString" << QByteArray("hello") << 0 << "";
    QTest::newRow("hex mode") << "41 42 43" << true << true << 2 << "WriteString" << QByteArray("ABC") << 0 << "";
    QTest::newRow("integers") << "1;2;" << true << false << 0 << "WriteInt" << QByteArray("1;2;") << 0 << "";
    QTest::newRow("floats") << "1.5;" << true << false << 1 << "WriteFloat" << QByteArray("1.5;") << 0 << "";
    QTest::newRow("empty text") << "" << true << false << 2 << "" << QByteArray() << int(GW_ERR_GENERAL)
                                << "2:The text to send is empty";
    QTest::newRow("device not switched on") << "x" << false << false << 2 << "" << QByteArray()
                                            << int(GW_ERR_GENERAL) << "2:Switch the device on first";
}

void tst_DevicesManager::send()
{
    QFETCH(QString, msg);
    QFETCH(bool, connected);
    QFETCH(bool, hex);
    QFETCH(int, dataType);
    QFETCH(QString, function);
    QFETCH(QByteArray, sent);
    QFETCH(int, result);
    QFETCH(QString, message);
    const int id = addDevice(QStringLiteral("TcpServerModule"), QStringLiteral("d"));
    m_mgr->getDeviceById(id)->updateConState(connected);
    m_mgr->sendDataNormalDevice()->setHexEnable(hex);
    QCOMPARE(m_mgr->gwSendData(id, msg, -1, dataType, 2), result);
    QCOMPARE(boxes(), message.isEmpty() ? QStringList() : QStringList{message});
    if (!function.isEmpty()) {
        const FakeGwCall call = m_gw.lastCall(function);
        QCOMPARE(call.moduleId, id);
        QCOMPARE(call.addressId, -1);
        QCOMPARE(call.text, sent);
        if (dataType != 2)
            QCOMPARE(call.number, 2);
    } else {
        QVERIFY(m_gw.calls(QStringLiteral("WriteString")).isEmpty());
    }
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
    m_gw.setCallbacks(EventCallBack, nullptr, ResultCallBack, nullptr);
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
    m_gw.setCallbacks(EventCallBack, nullptr, ResultCallBack, nullptr);
    QVERIFY(m_gw.fireResult(b, -1, "hi\r\n"));
    QVERIFY(m_gw.fireResult(99, -1, "nobody"));
    QVERIFY(m_gw.fireResult(a, -1, QByteArray()));
    m_mgr->HandleGWResult(a, -1, nullptr, 5);
    QVERIFY(m_mgr->getDeviceById(a)->recvDataList().isEmpty());
    QCOMPARE(m_mgr->getDeviceById(b)->recvDataList().size(), 1);
    QVERIFY(m_mgr->getDeviceById(b)->recvDataList().first().endsWith(QLatin1String("] hi[0D][0A]")));
    QVERIFY(HostLog::capturedMessages().filter(QStringLiteral("HandleGW")).isEmpty());
}

void tst_DevicesManager::generateUuid_hasQtsDefaultForm()
{
    const QString uuid = m_mgr->generateUuid();
    QVERIFY(QRegularExpression(QStringLiteral("^\\{[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}\\}$"))
                .match(uuid).hasMatch());
    QVERIFY(uuid != m_mgr->generateUuid());
}

// What the page does: calls with the defaults left out, reads the device list
// and its devices' properties, and creates a CommDevice by its import.
void tst_DevicesManager::qml_callsWithDefaultsAndReadsTheList()
{
    const int id = addDevice(QStringLiteral("TcpServerModule"), QStringLiteral("Line"));
    m_mgr->getDeviceById(id)->updateConState(true);
    QQmlEngine engine;
    engine.rootContext()->setContextProperty(QStringLiteral("DevicesManager"), m_mgr);
    QQmlComponent component(&engine);
    component.setData("import QtQml 2.15\n"
                      "import lm.cpp.CommDevice 1.0\n"
                      "QtObject {\n"
                      "  property int sent: DevicesManager.gwSendData(1, 'hi')\n"
                      "  property int count: DevicesManager.commDeviceList.length\n"
                      "  property string name: DevicesManager.commDeviceList[0].deviceName\n"
                      "  property bool plc: DevicesManager.checkPLCDevice(1)\n"
                      "  property QtObject spare: CommDevice { deviceType: 'UdpModule' }\n"
                      "}\n",
                      QUrl());
    QScopedPointer<QObject> object(component.create());
    QVERIFY2(object, qPrintable(component.errorString()));
    QCOMPARE(object->property("sent").toInt(), 0);
    const FakeGwCall call = m_gw.lastCall(QStringLiteral("WriteString"));
    QCOMPARE(call.moduleId, id);
    QCOMPARE(call.addressId, -1);
    QCOMPARE(call.text, QByteArray("hi"));
    QCOMPARE(object->property("count").toInt(), 1);
    QCOMPARE(object->property("name").toString(), QStringLiteral("Line"));
    QCOMPARE(object->property("plc").toBool(), false);
}

QTEST_MAIN(tst_DevicesManager)
#include "tst_devicesmanager.moc"
