// The gateway process and its client library together: modules, parameters,
// fieldbus addresses, persistence and failures, driven only through GW_PF_*.
#include "GatewayProcess.h"
#include "GwCallbackRecorder.h"
#include "GwPlcSide.h"
#include "GwTestCalls.h"

#include <QElapsedTimer>
#include <QTcpSocket>
#include <QtTest>
#include <atomic>
#include <thread>

using namespace GwTestCalls;

class tst_Gatewayd : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void modules_listedInCreationOrder_badInputRefused();
    void params_invalidValue_refusedAndUnchanged_data();
    void params_invalidValue_refusedAndUnchanged();
    void params_integerOfOpenDevice_pendingReopen();
    void addresses_idsPerDirection_andDelete();
    void validate_rangeInsideConstraints_data();
    void validate_rangeInsideConstraints();
    void writeInt_elementWidths_littleEndian_data();
    void writeInt_elementWidths_littleEndian();
    void plcWrite_uploadPushesResult();
    void restart_modulesParamsAddressesAndOpenStateBack();
    void sigkill_duringBurst_callsFailFast_acknowledgedWritesKept();
    void refusedConnection_failsFast();
    void malformedFrame_dropsOnlyThatClient();
    void reservedPorts_smallBuffer_reportsNeededSize();

private:
    void connectClient();
    GatewayProcess *m_gw = nullptr;
    GwCallbackRecorder m_recorder;
};

void tst_Gatewayd::init()
{
    m_gw = new GatewayProcess;
    QVERIFY2(m_gw->start(), qPrintable(m_gw->error()));
    connectClient();
}

void tst_Gatewayd::connectClient()
{
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", m_gw->port(), 101), GW_OK);
    m_recorder.clear();
    m_recorder.install();
}

void tst_Gatewayd::cleanup()
{
    GW_PF_DeInit();
    delete m_gw;
    m_gw = nullptr;
}

void tst_Gatewayd::modules_listedInCreationOrder_badInputRefused()
{
    const int a = add("TcpServerModule", "first");
    const int b = add("ProfinetModule", "第二");
    const int c = add("UdpModule", "third");
    QVERIFY(a > 0 && b > a && c > b);
    QCOMPARE(GW_PF_DeleteModule(b), GW_OK);
    QCOMPARE(GW_PF_DeleteModule(4242), quint32(GW_ERR_UNKNOWN_MODULE));
    const int d = add("SerialModule", "fourth");
    QVERIFY2(d > c, "a deleted module's id is never given again");
    int id = -1;
    QCOMPARE(GW_PF_AddModule("ModbusModule", "x", &id), quint32(GW_ERR_UNKNOWN_TYPE));
    QCOMPARE(GW_PF_AddModule("UdpModule", "", &id), quint32(GW_ERR_NAME_EMPTY));
    QCOMPARE(GW_PF_AddModule("UdpModule", QByteArray(600, 'n').constData(), &id), quint32(GW_ERR_VALUE_TOO_LONG));

    GW_MODULE_INFO infos[2] = {};
    int count = -1;
    QCOMPARE(GW_PF_GetAllModules(infos, 2, &count), GW_OK);
    QCOMPARE(count, 2);
    QCOMPARE(infos[0].moduleId, a);
    QCOMPARE(QByteArray(infos[0].moduleType), QByteArray("TcpServerModule"));
    QCOMPARE(infos[1].moduleId, c);

    QCOMPARE(GW_PF_UpdateModule(c, "renamed 名"), GW_OK);
    GW_MODULE_INFO all[8] = {};
    QCOMPARE(GW_PF_GetAllModules(all, 8, &count), GW_OK);
    QCOMPARE(count, 3); // the refused ones were not added
    QCOMPARE(QString::fromUtf8(all[1].displayName), QStringLiteral("renamed 名"));
}

void tst_Gatewayd::params_invalidValue_refusedAndUnchanged_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("address");
    QTest::addColumn<quint32>("code");
    auto row = [](const char *name, const char *type, const char *key, const QByteArray &value, quint32 code,
                  int address = -1) {
        QTest::newRow(name) << QByteArray(type) << QByteArray(key) << value << address << code;
    };
    // A refusal of each kind through the wire; every key's rule is tst_paramschema's.
    row("port 0", "TcpServerModule", "LocalPort", "0", GW_ERR_INVALID_PORT);
    row("ipv6", "TcpClientModule", "TargetIP", "::1", GW_ERR_INVALID_IP);
    row("local ip not of this host", "TcpServerModule", "LocalIP", "203.0.113.7", GW_ERR_INVALID_VALUE);
    row("unknown key", "UdpModule", "Colour", "red", GW_ERR_UNKNOWN_KEY);
    row("value over the field", "SerialModule", "PortName", QByteArray(600, 'p'), GW_ERR_VALUE_TOO_LONG);
    row("stream device has no addresses", "UdpModule", "LocalPort", "9000", GW_ERR_UNKNOWN_ADDRESS, 5);
    row("connect state not boolean", "UdpModule", "ConnectState", "yes", GW_ERR_INVALID_VALUE);
}

void tst_Gatewayd::params_invalidValue_refusedAndUnchanged()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, value);
    QFETCH(int, address);
    QFETCH(quint32, code);
    const int id = add(type.constData());
    QVERIFY(id > 0);
    const QByteArray before = get(id, key);
    QCOMPARE(set(id, key, value, address), code);
    QCOMPARE(get(id, key), before);
    QCOMPARE(set(id + 100, "EndChar", "\n"), quint32(GW_ERR_UNKNOWN_MODULE));
}

void tst_Gatewayd::params_integerOfOpenDevice_pendingReopen()
{
    const int id = add("EipModule");
    QCOMPARE(set(id, "ConnectState", "true"), GW_OK);
    QCOMPARE(set(id, "Heartbeat", "2000"), quint32(GW_ERR_PENDING_REOPEN));
    QCOMPARE(get(id, "Heartbeat"), QByteArray("2000"));
    QCOMPARE(set(id, "ConnectState", "false"), GW_OK);
    QCOMPARE(set(id, "Heartbeat", "3000"), GW_OK);
}

void tst_Gatewayd::addresses_idsPerDirection_andDelete()
{
    const int id = add("ProfinetModule");
    int read1 = -1, read2 = -1, write1 = -1;
    QCOMPARE(GW_PF_AddModuleAddressPN(id, "in A", GW_ADDRESS_READ, &read1), GW_OK);
    QCOMPARE(GW_PF_AddModuleAddressPN(id, "out A", GW_ADDRESS_WRITE, &write1), GW_OK);
    QCOMPARE(GW_PF_AddModuleAddressPN(id, "in B", GW_ADDRESS_READ, &read2), GW_OK);
    QCOMPARE(read1, 1);
    QCOMPARE(read2, 2);
    QCOMPARE(write1, 1001);
    int unused = -1;
    QCOMPARE(GW_PF_AddModuleAddressPN(id, "sideways", 3, &unused), quint32(GW_ERR_INVALID_ARGUMENT));
    QCOMPARE(GW_PF_AddModuleAddressPN(add("UdpModule"), "x", 1, &unused), quint32(GW_ERR_NOT_SUPPORTED));

    std::unique_ptr<GW_ADDRESS_INFO[]> infos(new GW_ADDRESS_INFO[999]());
    int count = 0;
    QCOMPARE(GW_PF_GetModuleAllAddressInfo(id, infos.get(), 999, &count), GW_OK);
    QCOMPARE(count, 3);
    QCOMPARE(QByteArray(infos[2].addressName), QByteArray("out A"));
    QCOMPARE(get(id, "AddressName", read2), QByteArray("in B"));

    QCOMPARE(GW_PF_DeleteModuleAddress(id, read1), GW_OK);
    QCOMPARE(GW_PF_DeleteModuleAddress(id, read1), quint32(GW_ERR_UNKNOWN_ADDRESS));
    QCOMPARE(GW_PF_DeleteModuleAddress(id, 0), quint32(GW_ERR_NOT_SUPPORTED)); // the fixed read address
    QCOMPARE(GW_PF_AddModuleAddressPN(id, "in C", GW_ADDRESS_READ, &read1), GW_OK);
    QCOMPARE(read1, 1);
}

void tst_Gatewayd::validate_rangeInsideConstraints_data()
{
    QTest::addColumn<int>("direction");
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("count");
    QTest::addColumn<bool>("valid");
    // Constraints set below: read 10..99, write 200..299.
    QTest::newRow("inside") << 1 << QByteArray("10") << QByteArray("90") << true;
    QTest::newRow("one past the end") << 1 << QByteArray("10") << QByteArray("91") << false;
    QTest::newRow("below the minimum") << 1 << QByteArray("9") << QByteArray("1") << false;
    QTest::newRow("write range") << 2 << QByteArray("299") << QByteArray("1") << true;
    QTest::newRow("read value in write range") << 2 << QByteArray("50") << QByteArray("1") << false;
    QTest::newRow("zero length") << 1 << QByteArray("20") << QByteArray("0") << false;
    QTest::newRow("unknown direction") << 7 << QByteArray("20") << QByteArray("1") << false;
}

void tst_Gatewayd::validate_rangeInsideConstraints()
{
    QFETCH(int, direction);
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, count);
    QFETCH(bool, valid);
    const int id = add("EipModule");
    QCOMPARE(set(id, "ReadAddressConstraints", "InputAssembly;10;99;10"), GW_OK);
    QCOMPARE(set(id, "WriteAddressConstraints", "OutputAssembly;200;299;200"), GW_OK);
    auto rec = record("SoftElementAddress", first);
    rec->count = 2;
    qstrncpy(rec->entries[1].key, "SoftElementNum", GW_PARAM_KEY_SIZE);
    qstrncpy(rec->entries[1].value, count.constData(), GW_PARAM_VALUE_SIZE);
    QCOMPARE(GW_PF_ValidateAddressParams(id, rec.get(), direction) & 0xff, valid ? 1u : 0u);
}

void tst_Gatewayd::writeInt_elementWidths_littleEndian_data()
{
    QTest::addColumn<QByteArray>("intType");
    QTest::addColumn<int>("count");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<quint32>("code");
    QTest::addColumn<QByteArray>("bytes");
    auto row = [](const char *name, const char *intType, int count, const char *text, quint32 code, const char *hex) {
        QTest::newRow(name) << QByteArray(intType) << count << QByteArray(text) << code << QByteArray::fromHex(hex);
    };
    row("16-bit", "1", 2, "1;-2;", GW_OK, "0100feff");
    row("32-bit", "2", 1, "305419896;", GW_OK, "78563412");
    row("8-bit", "3", 3, "1;2;255;", GW_OK, "0102ff");
    row("count disagrees", "1", 3, "1;2;", GW_ERR_COUNT_MISMATCH, "");
    row("8-bit overflow", "3", 1, "256;", GW_ERR_INVALID_VALUE, "");
    row("more than the address holds", "1", 5, "1;2;3;4;5;", GW_ERR_VALUE_TOO_LONG, "");
}

void tst_Gatewayd::writeInt_elementWidths_littleEndian()
{
    QFETCH(QByteArray, intType);
    QFETCH(int, count);
    QFETCH(QByteArray, text);
    QFETCH(quint32, code);
    QFETCH(QByteArray, bytes);
    const int id = add("ProfinetModule");
    int address = -1;
    QCOMPARE(GW_PF_AddModuleAddressPN(id, "out", GW_ADDRESS_WRITE, &address), GW_OK);
    QCOMPARE(set(id, "IntDataType", intType, address), GW_OK);
    QCOMPARE(set(id, "SoftElementNum", "4", address), GW_OK);
    QCOMPARE(GW_PF_WriteInt(id, address, 1, "0;"), quint32(GW_ERR_NOT_OPEN));
    QCOMPARE(set(id, "ConnectState", "true"), GW_OK);
    QCOMPARE(GW_PF_WriteInt(id, address, count, text.constData()), code);

    char buffer[1024] = {};
    int length = 0;
    QCOMPARE(GW_PLC_ReadAddress(id, address, buffer, sizeof(buffer), &length), GW_OK);
    const int width = intType == "2" ? 4 : intType == "3" ? 1 : 2;
    QCOMPARE(length, 4 * width);
    const QByteArray expected = bytes + QByteArray(4 * width - bytes.size(), '\0');
    QCOMPARE(QByteArray(buffer, length), expected);
    QCOMPARE(GW_PF_ReadData(id, address, sizeof(buffer), &length, buffer), GW_OK);
    QCOMPARE(QByteArray(buffer, length), expected);
}

void tst_Gatewayd::plcWrite_uploadPushesResult()
{
    const int id = add("ProfinetModule");
    int quiet = -1, upload = -1;
    QCOMPARE(GW_PF_AddModuleAddressPN(id, "quiet", GW_ADDRESS_READ, &quiet), GW_OK);
    QCOMPARE(GW_PF_AddModuleAddressPN(id, "upload", GW_ADDRESS_READ, &upload), GW_OK);
    QCOMPARE(set(id, "Upload", "true", upload), GW_OK);
    QCOMPARE(set(id, "ConnectState", "true"), GW_OK);
    QTRY_COMPARE(m_recorder.eventCount(GW_EVENT_CONNECTED, id), 1);

    QCOMPARE(GW_PLC_WriteAddress(id, quiet, "\x01\x02", 2), GW_OK);
    QCOMPARE(GW_PLC_WriteAddress(id, upload, "\x0a\x0b", 2), GW_OK);
    QCOMPARE(GW_PLC_WriteAddress(id, upload, "\x01\x02\x03", 3), quint32(GW_ERR_VALUE_TOO_LONG));
    QTRY_COMPARE(m_recorder.results().size(), 1);
    const auto result = m_recorder.results().first();
    QCOMPARE(result.moduleId, id);
    QCOMPARE(result.addressId, upload);
    QCOMPARE(result.data, QByteArray("\x0a\x0b", 2));
    char buffer[16];
    int length = 0;
    QCOMPARE(GW_PF_ReadData(id, quiet, sizeof(buffer), &length, buffer), GW_OK);
    QCOMPARE(QByteArray(buffer, length), QByteArray("\x01\x02", 2));
}

void tst_Gatewayd::restart_modulesParamsAddressesAndOpenStateBack()
{
    const int pn = add("ProfinetModule", "station 站");
    const int udp = add("UdpModule", "udp");
    int address = -1;
    QCOMPARE(GW_PF_AddModuleAddressPN(pn, "in", GW_ADDRESS_READ, &address), GW_OK);
    QCOMPARE(set(pn, "SoftElementNum", "12", address), GW_OK);
    QCOMPARE(set(pn, "ConnectState", "true"), GW_OK);
    QCOMPARE(set(udp, "TargetPort", "4321"), GW_OK);

    GW_PF_DeInit();
    QVERIFY(m_gw->stop());
    QVERIFY2(m_gw->start(), qPrintable(m_gw->error()));
    connectClient();

    GW_MODULE_INFO infos[4] = {};
    int count = 0;
    QCOMPARE(GW_PF_GetAllModules(infos, 4, &count), GW_OK);
    QCOMPARE(count, 2);
    QCOMPARE(QString::fromUtf8(infos[0].displayName), QStringLiteral("station 站"));
    QCOMPARE(infos[0].state, 1);
    QCOMPARE(get(pn, "ConnectState"), QByteArray("true"));
    QCOMPARE(get(pn, "SoftElementNum", address), QByteArray("12"));
    QCOMPARE(get(udp, "TargetPort"), QByteArray("4321"));
    QVERIFY(add("UdpModule") > udp);
}

// SIGKILL during a burst of writes: the call in flight and the ones after it
// fail at once, Init is refused while the gateway is down, and after a
// restart no acknowledged write is lost.
void tst_Gatewayd::sigkill_duringBurst_callsFailFast_acknowledgedWritesKept()
{
    const int id = add("EipModule");
    std::atomic<int> acknowledged{0};
    std::thread writer([&] {
        for (int i = 1; i <= 100000; ++i) {
            if (set(id, "Heartbeat", QByteArray::number(100 + i)) != GW_OK)
                return;
            acknowledged = i;
        }
    });
    QTRY_VERIFY(acknowledged.load() >= 20);
    QElapsedTimer timer;
    timer.start();
    m_gw->kill();
    writer.join();
    const int last = acknowledged.load();
    QVERIFY(set(id, "Heartbeat", "500") != GW_OK);
    GW_MODULE_INFO infos[2];
    int count = 0;
    QVERIFY(GW_PF_GetAllModules(infos, 2, &count) != GW_OK);
    QVERIFY2(timer.elapsed() < 2000, "a dead gateway answers at once");

    QCOMPARE(GW_PF_DeInit(), GW_OK);
    QVERIFY(GW_PF_Init(1, "127.0.0.1", m_gw->port(), 101) != GW_OK);
    QVERIFY2(m_gw->start(), qPrintable(m_gw->error()));
    connectClient();
    const int stored = get(id, "Heartbeat").toInt() - 100;
    // The write in flight may or may not have landed; none acknowledged is lost.
    QVERIFY2(stored == last || stored == last + 1, qPrintable(QStringLiteral("%1 vs %2").arg(stored).arg(last)));
}

void tst_Gatewayd::refusedConnection_failsFast()
{
    GW_PF_DeInit();
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", freePort(), 101), quint32(GW_ERR_CONNECT_FAILED));
    QCOMPARE(GW_PF_DeleteModule(1), quint32(GW_ERR_NOT_INITIALISED));
    QCOMPARE(GW_PF_Init(1, "not an address", m_gw->port(), 101), quint32(GW_ERR_CONNECT_FAILED));
    connectClient();
}

void tst_Gatewayd::malformedFrame_dropsOnlyThatClient()
{
    QTcpSocket rogue;
    rogue.connectToHost(QHostAddress::LocalHost, quint16(m_gw->port()));
    QVERIFY(rogue.waitForConnected(2000));
    rogue.write(QByteArray("GW\x01\x01") + QByteArray(4, '\0') + QByteArray("\xff\xff\xff\x7f", 4));
    QVERIFY(rogue.waitForDisconnected(5000));
    QTRY_VERIFY(m_gw->log().contains("malformed frame"));
    QVERIFY(add("TcpServerModule") > 0);
}

void tst_Gatewayd::reservedPorts_smallBuffer_reportsNeededSize()
{
    char small[2] = {};
    int needed = 0;
    QCOMPARE(GW_PF_GetReservedPorts(small, sizeof(small), &needed), quint32(GW_ERR_BUFFER_TOO_SMALL));
    QVERIFY(needed > 2);
    QByteArray buffer(needed, '\0');
    QCOMPARE(GW_PF_GetReservedPorts(buffer.data(), needed, &needed), GW_OK);
    QVERIFY2(QByteArray(buffer.constData()).split(',').contains(QByteArray::number(m_gw->port())),
             "the gateway's own port is reserved");
}

QTEST_GUILESS_MAIN(tst_Gatewayd)
#include "tst_gatewayd.moc"
