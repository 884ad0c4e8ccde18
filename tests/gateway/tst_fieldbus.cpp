// Simulated PROFINET and EtherNet/IP devices of the real gateway, driven
// through GW_PF_* from the vision side and GW_PLC_* or gwplc from the PLC
// side: address ids, areas, element conversions, pushes, restarts.
#include "GatewayProcess.h"
#include "GwCallbackRecorder.h"
#include "GwPlcSide.h"
#include "GwTestCalls.h"

#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

using namespace GwTestCalls;

namespace {
const QByteArray kProfinet = "ProfinetModule";
const QByteArray kEip = "EipModule";

QByteArray plcRead(int module, int address)
{
    char buffer[2048];
    int length = 0;
    return GW_PLC_ReadAddress(module, address, buffer, sizeof(buffer), &length) == GW_OK ? QByteArray(buffer, length)
                                                                                          : QByteArray("(refused)");
}

// The settings the module reads back when it loads a table.
Pairs settingsOf(int module, int address)
{
    static const QList<QByteArray> keys{"AddressName", "IntDataType", "SoftElementAddress", "SoftElementNum",
                                        "OverTime",    "PollEnable",  "Upload"};
    Pairs values;
    for (const QByteArray &key : keys)
        values.append({key, get(module, key, address)});
    return values;
}

QList<QPair<int, QByteArray>> listed(int module)
{
    std::unique_ptr<GW_ADDRESS_INFO[]> infos(new GW_ADDRESS_INFO[999]());
    int count = 0;
    QList<QPair<int, QByteArray>> all;
    if (GW_PF_GetModuleAllAddressInfo(module, infos.get(), 999, &count) == GW_OK)
        for (int i = 0; i < count; ++i)
            all.append({infos[i].addressId, QByteArray(infos[i].addressName)});
    return all;
}
} // namespace

class tst_Fieldbus : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void addresses_idsInTheirDirectionsRange_data();
    void addresses_idsInTheirDirectionsRange();
    void area_sameRuleForValidateAndSet_data();
    void area_sameRuleForValidateAndSet();
    void write_convertedToElementsInDeviceOrder_data();
    void write_convertedToElementsInDeviceOrder();
    void write_eachSideItsOwnDirection_onlyWhileOpen_data();
    void write_eachSideItsOwnDirection_onlyWhileOpen();
    void plcWrite_pushedOnlyWithUpload();
    void restart_addressesAndSettingsBack();
    void gwplc_commands_data();
    void gwplc_commands();
    void gwplc_watch_printsEachChange();

private:
    void connectClient();
    // A device of `type`, switched on.
    int openDevice(const QByteArray &type);
    // An address written the way the module adds one: created, then its
    // settings in one record.
    int addAddress(int module, int direction, const Pairs &settings = {});

    GatewayProcess m_gw;
    GwCallbackRecorder m_recorder;
};

void tst_Fieldbus::initTestCase()
{
    QVERIFY2(m_gw.start(), qPrintable(m_gw.error()));
    connectClient();
}

void tst_Fieldbus::connectClient()
{
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", m_gw.port(), 101), GW_OK);
    m_recorder.install();
}

void tst_Fieldbus::cleanupTestCase()
{
    GW_PF_DeInit();
}

void tst_Fieldbus::init()
{
    m_recorder.clear();
}

int tst_Fieldbus::openDevice(const QByteArray &type)
{
    const int id = add(type.constData());
    return id > 0 && set(id, "ConnectState", "true") == GW_OK ? id : -1;
}

int tst_Fieldbus::addAddress(int module, int direction, const Pairs &settings)
{
    int id = -1;
    if (GW_PF_AddModuleAddressPN(module, "address", direction, &id) != GW_OK)
        return -1;
    return settings.isEmpty() || GW_PF_SetModuleParam(module, recordOf(settings).get(), id) == GW_OK ? id : -1;
}

void tst_Fieldbus::addresses_idsInTheirDirectionsRange_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::newRow("PROFINET") << kProfinet;
    QTest::newRow("EtherNet/IP") << kEip;
}

// Read ids 1-999 and write ids 1001-1999, as the device descriptions give
// the two tables; the lowest free id is taken again after a delete.
void tst_Fieldbus::addresses_idsInTheirDirectionsRange()
{
    QFETCH(QByteArray, type);
    const int module = add(type.constData());
    int read1 = -1, write1 = -1, read2 = -1, unused = -1;
    QCOMPARE(GW_PF_AddModuleAddressPN(module, "in A", GW_ADDRESS_READ, &read1), GW_OK);
    QCOMPARE(GW_PF_AddModuleAddressPN(module, "out A", GW_ADDRESS_WRITE, &write1), GW_OK);
    QCOMPARE(GW_PF_AddModuleAddressPN(module, "in B", GW_ADDRESS_READ, &read2), GW_OK);
    QCOMPARE(QList<int>({read1, write1, read2}), QList<int>({1, 1001, 2}));
    QCOMPARE(GW_PF_AddModuleAddressPN(module, "sideways", 3, &unused), quint32(GW_ERR_INVALID_ARGUMENT));
    QCOMPARE(GW_PF_AddModuleAddressPN(add("UdpModule"), "stream", 1, &unused), quint32(GW_ERR_NOT_SUPPORTED));
    QCOMPARE(listed(module), (QList<QPair<int, QByteArray>>{{1, "in A"}, {2, "in B"}, {1001, "out A"}}));

    QCOMPARE(GW_PF_DeleteModuleAddress(module, read1), GW_OK);
    QCOMPARE(GW_PF_DeleteModuleAddress(module, read1), quint32(GW_ERR_UNKNOWN_ADDRESS));
    QCOMPARE(GW_PF_AddModuleAddressPN(module, "in C", GW_ADDRESS_READ, &read1), GW_OK);
    QCOMPARE(read1, 1);
    // PROFINET's fixed addresses 0 and 1000 stay out of the tables.
    const quint32 fixed = type == kProfinet ? GW_ERR_NOT_SUPPORTED : GW_ERR_UNKNOWN_ADDRESS;
    QCOMPARE(GW_PF_DeleteModuleAddress(module, 0), fixed);
    QCOMPARE(GW_PF_DeleteModuleAddress(module, 1000), fixed);
}

void tst_Fieldbus::area_sameRuleForValidateAndSet_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<int>("direction");
    QTest::addColumn<QByteArray>("first"); // null: not in the record
    QTest::addColumn<QByteArray>("count");
    QTest::addColumn<quint32>("code");
    QTest::addColumn<bool>("narrowed"); // read area 10-99, write area 200-299
    const QByteArray none;
    auto row = [](const char *name, const QByteArray &type, int direction, const QByteArray &first,
                  const QByteArray &count, quint32 code, bool narrowed = false) {
        QTest::newRow(name) << type << direction << first << count << code << narrowed;
    };
    // Default areas: PROFINET 0-1439 at one unit per element, EtherNet/IP
    // 0-495 at two.
    row("PROFINET area filled", kProfinet, 1, "1184", "256", GW_OK);
    row("PROFINET one past the end", kProfinet, 1, "1185", "256", GW_ERR_ADDRESS_RANGE);
    row("EtherNet/IP area filled", kEip, 1, "0", "248", GW_OK);
    row("EtherNet/IP counts two units per element", kEip, 2, "2", "248", GW_ERR_ADDRESS_RANGE);
    row("EtherNet/IP last element", kEip, 2, "494", "1", GW_OK);
    row("EtherNet/IP half an element past", kEip, 1, "495", none, GW_ERR_ADDRESS_RANGE);
    row("length alone longer than the area", kEip, 1, none, "249", GW_ERR_ADDRESS_RANGE);
    row("no element", kProfinet, 2, "0", "0", GW_ERR_INVALID_VALUE);
    row("more than one read takes", kProfinet, 1, "0", "257", GW_ERR_INVALID_VALUE);
    row("not a number", kEip, 2, "1x", "1", GW_ERR_INVALID_VALUE);
    row("below the area", kProfinet, 1, "9", "1", GW_ERR_ADDRESS_RANGE, true);
    row("other direction's area", kProfinet, 2, "50", "1", GW_ERR_ADDRESS_RANGE, true);
}

// GW_PF_ValidateAddressParams answers what SetModuleParam on an address
// then does: the gateway never holds an address outside its area.
void tst_Fieldbus::area_sameRuleForValidateAndSet()
{
    QFETCH(QByteArray, type);
    QFETCH(int, direction);
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, count);
    QFETCH(quint32, code);
    QFETCH(bool, narrowed);
    const int module = add(type.constData());
    if (narrowed) {
        QCOMPARE(set(module, "ReadAddressConstraints", "ReadAddress;10;99;10"), GW_OK);
        QCOMPARE(set(module, "WriteAddressConstraints", "WriteAddress;200;299;200"), GW_OK);
    }
    Pairs pairs;
    if (!first.isNull())
        pairs.append({"SoftElementAddress", first});
    if (!count.isNull())
        pairs.append({"SoftElementNum", count});
    QCOMPARE(GW_PF_ValidateAddressParams(module, recordOf(pairs).get(), direction) & 0xff, code == GW_OK ? 1u : 0u);

    const int address = addAddress(module, direction);
    const Pairs before = settingsOf(module, address);
    QCOMPARE(GW_PF_SetModuleParam(module, recordOf(pairs).get(), address), code);
    if (code != GW_OK)
        QCOMPARE(settingsOf(module, address), before);
}

void tst_Fieldbus::write_convertedToElementsInDeviceOrder_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("intType"); // 1 16-bit, 2 32-bit, 3 8-bit
    QTest::addColumn<int>("elements");
    QTest::addColumn<QByteArray>("call");
    QTest::addColumn<int>("count");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<quint32>("code");
    QTest::addColumn<QByteArray>("hex"); // the address's first bytes afterwards; the rest are zero
    auto row = [](const char *name, const QByteArray &type, const char *intType, int elements, const char *call,
                  int count, const char *text, quint32 code, const char *hex = "") {
        QTest::newRow(name) << type << QByteArray(intType) << elements << QByteArray(call) << count
                            << QByteArray(text) << code << QByteArray(hex);
    };
    // PROFINET big-endian, EtherNet/IP little-endian; every width on both.
    row("PN 16-bit", kProfinet, "1", 4, "int", 2, "1;-2;", GW_OK, "0001fffe");
    row("EIP 16-bit", kEip, "1", 4, "int", 2, "1;-2;", GW_OK, "0100feff");
    row("PN 32-bit", kProfinet, "2", 2, "int", 1, "305419896;", GW_OK, "12345678");
    row("EIP 32-bit", kEip, "2", 2, "int", 1, "305419896;", GW_OK, "78563412");
    row("PN 8-bit", kProfinet, "3", 4, "int", 3, "1;2;255;", GW_OK, "0102ff");
    // An element takes a signed or an unsigned value of its width.
    row("16-bit edges", kProfinet, "1", 2, "int", 2, "65535;-32768;", GW_OK, "ffff8000");
    row("16-bit over", kEip, "1", 2, "int", 1, "65536;", GW_ERR_INVALID_VALUE);
    row("8-bit over", kProfinet, "3", 2, "int", 1, "256;", GW_ERR_INVALID_VALUE);
    row("8-bit under", kProfinet, "3", 2, "int", 1, "-129;", GW_ERR_INVALID_VALUE);
    row("32-bit top", kEip, "2", 1, "int", 1, "4294967295;", GW_OK, "ffffffff");
    row("32-bit over", kEip, "2", 1, "int", 1, "4294967296;", GW_ERR_INVALID_VALUE);
    // A float is 32 bits: one element, or two 16-bit or four 8-bit ones.
    row("EIP float", kEip, "2", 2, "float", 1, "1.5;", GW_OK, "0000c03f");
    row("PN float on 16-bit", kProfinet, "1", 2, "float", 1, "-2;", GW_OK, "c0000000");
    row("EIP float on 16-bit", kEip, "1", 2, "float", 1, "-2;", GW_OK, "000000c0");
    row("PN float on 8-bit", kProfinet, "3", 4, "float", 1, "0.5;", GW_OK, "3f000000");
    row("floats past the address", kProfinet, "1", 3, "float", 2, "1;2;", GW_ERR_VALUE_TOO_LONG);
    row("float out of range", kEip, "2", 1, "float", 1, "1e40;", GW_ERR_INVALID_VALUE);
    // The count and the text must agree; an empty value is refused.
    row("count disagrees", kProfinet, "1", 4, "int", 3, "1;2;", GW_ERR_COUNT_MISMATCH);
    row("empty value", kProfinet, "1", 4, "int", 3, "1;;2;", GW_ERR_INVALID_VALUE);
    row("more values than elements", kEip, "1", 2, "int", 3, "1;2;3;", GW_ERR_VALUE_TOO_LONG);
    row("text", kProfinet, "1", 2, "string", 0, "AB", GW_OK, "4142");
    row("text longer than the address", kEip, "2", 1, "string", 0, "ABCDE", GW_ERR_VALUE_TOO_LONG);
}

// What the vision side writes is what the PLC reads, element by element;
// a refused write leaves the address as it was.
void tst_Fieldbus::write_convertedToElementsInDeviceOrder()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, intType);
    QFETCH(int, elements);
    QFETCH(QByteArray, call);
    QFETCH(int, count);
    QFETCH(QByteArray, text);
    QFETCH(quint32, code);
    QFETCH(QByteArray, hex);
    const int module = openDevice(type);
    const int address = addAddress(module, GW_ADDRESS_WRITE,
                                   {{"IntDataType", intType}, {"SoftElementNum", QByteArray::number(elements)}});
    QVERIFY(address > 0);
    const int size = elements * (intType == "2" ? 4 : intType == "3" ? 1 : 2);
    QCOMPARE(GW_PF_WriteString(module, address, "~"), GW_OK);
    const QByteArray before = plcRead(module, address);

    const quint32 rc = call == "string" ? GW_PF_WriteString(module, address, text.constData())
        : call == "float"               ? GW_PF_WriteFloat(module, address, count, text.constData())
                                        : GW_PF_WriteInt(module, address, count, text.constData());
    QCOMPARE(rc, code);
    const QByteArray expected = code == GW_OK ? QByteArray::fromHex(hex).leftJustified(size, '\0') : before;
    QCOMPARE(plcRead(module, address).toHex(), expected.toHex());
    char buffer[1024];
    int length = 0;
    QCOMPARE(GW_PF_ReadData(module, address, sizeof(buffer), &length, buffer), GW_OK);
    QCOMPARE(QByteArray(buffer, length).toHex(), expected.toHex());
}

void tst_Fieldbus::write_eachSideItsOwnDirection_onlyWhileOpen_data()
{
    QTest::addColumn<bool>("fromPlc");
    QTest::addColumn<int>("direction");
    QTest::addColumn<bool>("open");
    QTest::addColumn<quint32>("code");
    QTest::newRow("vision to write address") << false << GW_ADDRESS_WRITE << true << GW_OK;
    QTest::newRow("vision to read address") << false << GW_ADDRESS_READ << true << quint32(GW_ERR_WRONG_DIRECTION);
    QTest::newRow("vision, device off") << false << GW_ADDRESS_WRITE << false << quint32(GW_ERR_NOT_OPEN);
    QTest::newRow("PLC to read address") << true << GW_ADDRESS_READ << true << GW_OK;
    QTest::newRow("PLC to write address") << true << GW_ADDRESS_WRITE << true << quint32(GW_ERR_WRONG_DIRECTION);
    QTest::newRow("PLC, device off") << true << GW_ADDRESS_READ << false << quint32(GW_ERR_NOT_OPEN);
}

void tst_Fieldbus::write_eachSideItsOwnDirection_onlyWhileOpen()
{
    QFETCH(bool, fromPlc);
    QFETCH(int, direction);
    QFETCH(bool, open);
    QFETCH(quint32, code);
    const int module = open ? openDevice(kEip) : add(kEip.constData());
    const int address = addAddress(module, direction);
    const quint32 rc = fromPlc ? GW_PLC_WriteAddress(module, address, "\x05", 1)
                               : GW_PF_WriteInt(module, address, 1, "5;");
    QCOMPARE(rc, code);
    QCOMPARE(plcRead(module, address), code == GW_OK ? QByteArray("\x05\x00", 2) : QByteArray(2, '\0'));
}

// Only a PLC write to an address with "Upload" on reaches the result
// callback, every time, with the address's id and its whole content; the
// vision side's own writes are not echoed back.
void tst_Fieldbus::plcWrite_pushedOnlyWithUpload()
{
    const int module = openDevice(kProfinet);
    const int quiet = addAddress(module, GW_ADDRESS_READ, {{"SoftElementNum", "2"}});
    const int upload = addAddress(module, GW_ADDRESS_READ, {{"SoftElementNum", "2"}, {"Upload", "true"}});
    const int output = addAddress(module, GW_ADDRESS_WRITE, {{"Upload", "true"}});
    QVERIFY(quiet > 0 && upload > 0 && output > 0);

    QCOMPARE(GW_PLC_WriteAddress(module, quiet, "\x01\x02", 2), GW_OK);
    QCOMPARE(GW_PF_WriteInt(module, output, 1, "7;"), GW_OK);
    QCOMPARE(GW_PLC_WriteAddress(module, upload, "\x0a\x0b", 2), GW_OK);
    QCOMPARE(GW_PLC_WriteAddress(module, upload, "\x0a\x0b", 2), GW_OK);
    // Pushes keep their order: had the earlier writes pushed, they would be here first.
    QTRY_COMPARE(m_recorder.results().size(), 2);
    for (const GwCallbackRecorder::Result &result : m_recorder.results()) {
        QCOMPARE(result.moduleId, module);
        QCOMPARE(result.addressId, upload);
        QCOMPARE(result.data, QByteArray("\x0a\x0b\x00\x00", 4));
    }
    char buffer[16];
    int length = 0;
    QCOMPARE(GW_PF_ReadData(module, quiet, sizeof(buffer), &length, buffer), GW_OK);
    QCOMPARE(QByteArray(buffer, length), QByteArray("\x01\x02\x00\x00", 4));
}

// Addresses of both directions with every setting changed, one renamed,
// come back after a restart; the device is open again and still pushes.
void tst_Fieldbus::restart_addressesAndSettingsBack()
{
    const Pairs changed{{"IntDataType", "2"}, {"SoftElementAddress", "20"}, {"SoftElementNum", "3"},
                        {"OverTime", "250"},  {"PollEnable", "false"},     {"Upload", "true"}};
    QList<int> modules;
    QMap<int, QList<QPair<int, QByteArray>>> lists;
    QMap<QPair<int, int>, Pairs> settings;
    for (const QByteArray &type : {kProfinet, kEip}) {
        const int module = openDevice(type);
        const int read = addAddress(module, GW_ADDRESS_READ, changed);
        const int write = addAddress(module, GW_ADDRESS_WRITE, changed);
        QCOMPARE(set(module, "AddressName", "renamed 名", write), GW_OK);
        modules.append(module);
        lists.insert(module, listed(module));
        for (int address : {read, write})
            settings.insert({module, address}, settingsOf(module, address));
    }

    GW_PF_DeInit();
    QVERIFY(m_gw.stop());
    QVERIFY2(m_gw.start(), qPrintable(m_gw.error()));
    connectClient();

    for (int module : modules) {
        QCOMPARE(listed(module), lists.value(module));
        QCOMPARE(listed(module).last().second, QByteArray("renamed 名"));
    }
    for (auto it = settings.cbegin(); it != settings.cend(); ++it)
        QCOMPARE(settingsOf(it.key().first, it.key().second), it.value());
    QCOMPARE(GW_PLC_WriteAddress(modules.first(), 1, "\x01", 1), GW_OK);
    QTRY_COMPARE(m_recorder.results().size(), 1);
    QCOMPARE(m_recorder.results().first().data.size(), 12);
    QCOMPARE(addAddress(modules.first(), GW_ADDRESS_READ), 2);
}

void tst_Fieldbus::gwplc_commands_data()
{
    QTest::addColumn<QStringList>("args"); // %M module, %R read address, %W write address
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("output");  // in stdout; null: not checked
    QTest::addColumn<QByteArray>("readHex"); // the read address afterwards; null: not checked
    const QByteArray any;
    auto row = [](const char *name, const QString &args, int exitCode, const QByteArray &output,
                  const QByteArray &readHex) {
        QTest::newRow(name) << args.split(' ') << exitCode << output << readHex;
    };
    // The device is PROFINET (big-endian); both addresses hold four 16-bit elements.
    row("hex", "write %M %R 0a0b", 0, any, "0a0b000000000000");
    row("integers", "write %M %R --int 1,-2", 0, any, "0001fffe00000000");
    row("floats", "write %M %R --float 1.5", 0, any, "3fc0000000000000");
    row("text", "write %M %R --text AB", 0, any, "4142000000000000");
    row("read hex", "read %M %W", 0, "00 07 ff ff 00 00 00 00\n", any);
    row("read integers", "read %M %W --int", 0, "7,-1,0,0\n", any);
    row("list", "list", 0,
        "module %M ProfinetModule \"device\" open\n"
        "  fixed read 0: 32 x 16-bit, poll on\n"
        "  fixed write 1000: 32 x 16-bit, poll on\n"
        "  read %R \"address\": 4 x 16-bit at 0, upload off\n"
        "  write %W \"address\": 4 x 16-bit at 0, upload off\n",
        any);
    row("help", "--help", 0, any, any);
    row("refused by the gateway", "write %M %W 01", 1, any, any);
    row("odd hex", "write %M %R 0a0", 2, any, "0000000000000000");
    row("integer too wide", "write %M %R --int 70000", 2, any, "0000000000000000");
    row("no command", "--cycle 5", 2, any, any);
    row("unknown option", "read %M %R --hex", 2, any, any);
    row("no gateway", "--port %P read %M %R", 3, any, any);
}

void tst_Fieldbus::gwplc_commands()
{
    QFETCH(QStringList, args);
    QFETCH(int, exitCode);
    QFETCH(QByteArray, output);
    QFETCH(QByteArray, readHex);
    const int module = openDevice(kProfinet);
    const int read = addAddress(module, GW_ADDRESS_READ, {{"SoftElementNum", "4"}});
    const int write = addAddress(module, GW_ADDRESS_WRITE, {{"SoftElementNum", "4"}});
    QCOMPARE(GW_PF_WriteInt(module, write, 2, "7;65535;"), GW_OK);
    const QList<QPair<QString, int>> ids{{"%M", module}, {"%R", read}, {"%W", write}, {"%P", freePort()}};
    for (const auto &id : ids) {
        args.replaceInStrings(id.first, QString::number(id.second));
        output.replace(id.first.toLatin1(), QByteArray::number(id.second));
    }

    QProcess gwplc;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("GATEWAY_PORT"), QString::number(m_gw.port()));
    gwplc.setProcessEnvironment(env);
    gwplc.start(qEnvironmentVariable("GWPLC"), args);
    QVERIFY(gwplc.waitForFinished(10000));
    const QByteArray err = gwplc.readAllStandardError();
    QCOMPARE(gwplc.exitCode(), exitCode);
    const QByteArray out = gwplc.readAllStandardOutput();
    QVERIFY2(output.isNull() || out.contains(output), out.constData());
    // Every failure says why on stderr.
    QCOMPARE(err.startsWith("gwplc: "), exitCode != 0);
    if (!readHex.isNull())
        QCOMPARE(plcRead(module, read).toHex(), readHex);
}

// A module-wide watch prints each address once at the start and then each
// change of any of them, a new address included, until SIGTERM.
void tst_Fieldbus::gwplc_watch_printsEachChange()
{
    const int module = openDevice(kEip);
    const int read = addAddress(module, GW_ADDRESS_READ);
    const int write = addAddress(module, GW_ADDRESS_WRITE);
    QProcess gwplc;
    gwplc.start(qEnvironmentVariable("GWPLC"), {"--port", QString::number(m_gw.port()), "watch",
                                                 QString::number(module), "--cycle", "5", "--int"});
    QByteArray out;
    auto lineFor = [&](int address, const QByteArray &shown) {
        out += gwplc.readAllStandardOutput();
        const QRegularExpression line(QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} %1 %2$")
                                          .arg(address)
                                          .arg(QString::fromLatin1(shown)),
                                      QRegularExpression::MultilineOption);
        return line.match(QString::fromLatin1(out)).hasMatch();
    };
    QTRY_VERIFY(lineFor(read, "0") && lineFor(write, "0"));
    QCOMPARE(GW_PF_WriteInt(module, write, 1, "300;"), GW_OK);
    QTRY_VERIFY(lineFor(write, "300"));
    QCOMPARE(GW_PLC_WriteAddress(module, read, "\xff\xff", 2), GW_OK);
    QTRY_VERIFY(lineFor(read, "-1"));
    const int added = addAddress(module, GW_ADDRESS_WRITE);
    QTRY_VERIFY(lineFor(added, "0"));
    QCOMPARE(GW_PF_DeleteModuleAddress(module, added), GW_OK);
    QTRY_VERIFY(lineFor(added, "deleted"));

    gwplc.terminate();
    QVERIFY(gwplc.waitForFinished(5000));
    QCOMPARE(gwplc.exitStatus(), QProcess::NormalExit);
    QCOMPARE(gwplc.exitCode(), 0);
    out += gwplc.readAllStandardOutput();
    QCOMPARE(out.count('\n'), 6);
}

QTEST_GUILESS_MAIN(tst_Fieldbus)
#include "tst_fieldbus.moc"
