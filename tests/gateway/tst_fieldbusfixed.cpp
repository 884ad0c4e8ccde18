// The fixed addresses of the real gateway's simulated PROFINET device: which
// of their settings can change, the pushes of the fixed read address, the
// heartbeat bit of the fixed write address and its interval, and what
// survives a restart.
#include "GatewayProcess.h"
#include "GwCallbackRecorder.h"
#include "GwPlcSide.h"
#include "GwTestCalls.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QtTest>
#include <algorithm>

using namespace GwTestCalls;

namespace {
constexpr int kRead = GW_PLC_FIXED_READ_ID;
constexpr int kWrite = GW_PLC_FIXED_WRITE_ID;
constexpr char kHeartbeatMask = char(0x80);

QByteArray plcRead(int module, int address)
{
    char buffer[256];
    int length = 0;
    return GW_PLC_ReadAddress(module, address, buffer, sizeof(buffer), &length) == GW_OK ? QByteArray(buffer, length)
                                                                                          : QByteArray();
}

bool heartbeatBit(int module)
{
    const QByteArray bytes = plcRead(module, kWrite);
    return !bytes.isEmpty() && (bytes.at(0) & kHeartbeatMask);
}

// The times (ms since start) at which the heartbeat bit changed, watched as
// a PLC would, every 2 ms, until `flips` changes were seen or `withinMs`
// passed.
QList<qint64> heartbeatFlips(int module, int flips, int withinMs = 10000)
{
    QList<qint64> at;
    QElapsedTimer clock;
    clock.start();
    bool last = heartbeatBit(module);
    while (at.size() < flips && clock.elapsed() < withinMs) {
        QTest::qWait(2);
        const bool now = heartbeatBit(module);
        if (now != last)
            at.append(clock.elapsed());
        last = now;
    }
    return at;
}

double meanPeriod(const QList<qint64> &flips)
{
    return flips.size() < 2 ? 0.0 : double(flips.last() - flips.first()) / double(flips.size() - 1);
}
} // namespace

class tst_FieldbusFixed : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void fixedAddress_onlyPollEnableChanges_data();
    void fixedAddress_onlyPollEnableChanges();
    void plcWrite_fixedReadPushedWithItsPollEnable_data();
    void plcWrite_fixedReadPushedWithItsPollEnable();
    void heartbeat_newIntervalAppliesAtOnce();
    void heartbeat_stopsWithPollEnableOrClose_data();
    void heartbeat_stopsWithPollEnableOrClose();
    void visionWrite_keepsTheHeartbeatBit();
    void restart_fixedPollEnableBack();
    void gwplc_watchShowsTheFixedAddresses();

private:
    void connectClient();
    int openProfinet();

    GatewayProcess m_gw;
    GwCallbackRecorder m_recorder;
};

void tst_FieldbusFixed::initTestCase()
{
    QVERIFY2(m_gw.start(), qPrintable(m_gw.error()));
    connectClient();
}

void tst_FieldbusFixed::connectClient()
{
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", m_gw.port(), 101), GW_OK);
    m_recorder.install();
}

void tst_FieldbusFixed::cleanupTestCase()
{
    GW_PF_DeInit();
}

void tst_FieldbusFixed::init()
{
    m_recorder.clear();
}

int tst_FieldbusFixed::openProfinet()
{
    const int id = add("ProfinetModule");
    return id > 0 && set(id, "ConnectState", "true") == GW_OK ? id : -1;
}

void tst_FieldbusFixed::fixedAddress_onlyPollEnableChanges_data()
{
    QTest::addColumn<int>("address");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<quint32>("code");
    QTest::newRow("read poll off") << kRead << QByteArray("PollEnable") << QByteArray("false") << GW_OK;
    QTest::newRow("write poll off") << kWrite << QByteArray("PollEnable") << QByteArray("false") << GW_OK;
    QTest::newRow("poll not a boolean") << kWrite << QByteArray("PollEnable") << QByteArray("1")
                                        << quint32(GW_ERR_INVALID_VALUE);
    QTest::newRow("size") << kRead << QByteArray("SoftElementNum") << QByteArray("4") << quint32(GW_ERR_NOT_SUPPORTED);
    QTest::newRow("upload") << kRead << QByteArray("Upload") << QByteArray("true") << quint32(GW_ERR_NOT_SUPPORTED);
}

// The fixed addresses keep their layout; their poll switch is what the page
// edits, read back as it was written.
void tst_FieldbusFixed::fixedAddress_onlyPollEnableChanges()
{
    QFETCH(int, address);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, value);
    QFETCH(quint32, code);
    const int module = add("ProfinetModule");
    const QByteArray before = get(module, key, address);
    QCOMPARE(get(module, "PollEnable", address), QByteArray("true"));
    QCOMPARE(set(module, key, value, address), code);
    QCOMPARE(get(module, key, address), code == GW_OK ? value : before);
    QCOMPARE(plcRead(module, address).size(), 64);
}

void tst_FieldbusFixed::plcWrite_fixedReadPushedWithItsPollEnable_data()
{
    QTest::addColumn<QByteArray>("pollEnable");
    QTest::addColumn<int>("pushes");
    QTest::newRow("poll on (default)") << QByteArray() << 1;
    QTest::newRow("poll off") << QByteArray("false") << 0;
}

void tst_FieldbusFixed::plcWrite_fixedReadPushedWithItsPollEnable()
{
    QFETCH(QByteArray, pollEnable);
    QFETCH(int, pushes);
    const int module = openProfinet();
    if (!pollEnable.isEmpty())
        QCOMPARE(set(module, "PollEnable", pollEnable, kRead), GW_OK);
    QCOMPARE(GW_PLC_WriteAddress(module, kRead, "\x05\x80", 2), GW_OK);
    // A later push of an ordinary address marks the end of what came before.
    int marker = -1;
    QCOMPARE(GW_PF_AddModuleAddressPN(module, "marker", GW_ADDRESS_READ, &marker), GW_OK);
    QCOMPARE(set(module, "Upload", "true", marker), GW_OK);
    QCOMPARE(GW_PLC_WriteAddress(module, marker, "\x01", 1), GW_OK);
    QTRY_COMPARE(m_recorder.results().size(), pushes + 1);
    if (pushes) {
        const GwCallbackRecorder::Result first = m_recorder.results().first();
        QCOMPARE(first.addressId, kRead);
        QCOMPARE(first.moduleId, module);
        QCOMPARE(first.data, QByteArray("\x05\x80", 2).leftJustified(64, '\0'));
    }
    QCOMPARE(m_recorder.results().last().addressId, marker);
}

// What a PLC watching the fixed write address sees: the heartbeat bit
// changes every interval, within 20 %; a new interval of an open device
// applies at once (GW_OK, not "pending reopen").
void tst_FieldbusFixed::heartbeat_newIntervalAppliesAtOnce()
{
    const int interval = 300;
    const int module = openProfinet();
    QCOMPARE(set(module, "Heartbeat", QByteArray::number(interval)), GW_OK);
    heartbeatFlips(module, 1); // in step with the timer from here
    const QList<qint64> flips = heartbeatFlips(module, 6);
    QCOMPARE(flips.size(), 6);
    const double period = meanPeriod(flips);
    QVERIFY2(qAbs(period - interval) <= 0.2 * interval,
             qPrintable(QStringLiteral("mean period %1 ms for %2 ms").arg(period).arg(interval)));
}

void tst_FieldbusFixed::heartbeat_stopsWithPollEnableOrClose_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<int>("address");
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("write address poll off") << QByteArray("PollEnable") << kWrite << QByteArray("false");
    QTest::newRow("device closed") << QByteArray("ConnectState") << -1 << QByteArray("false");
}

void tst_FieldbusFixed::heartbeat_stopsWithPollEnableOrClose()
{
    QFETCH(QByteArray, key);
    QFETCH(int, address);
    QFETCH(QByteArray, value);
    const int module = add("ProfinetModule");
    QCOMPARE(set(module, "Heartbeat", "100"), GW_OK);
    QCOMPARE(set(module, "ConnectState", "true"), GW_OK);
    QCOMPARE(heartbeatFlips(module, 2).size(), 2);
    QCOMPARE(set(module, key, value, address), GW_OK);
    QCOMPARE(heartbeatFlips(module, 1, 400).size(), 0);
    if (key == "PollEnable") {
        QCOMPARE(set(module, key, "true", address), GW_OK);
        QCOMPARE(heartbeatFlips(module, 2).size(), 2);
    }
}

// The vision side's bytes reach the PLC, but the heartbeat bit stays the
// gateway's.
void tst_FieldbusFixed::visionWrite_keepsTheHeartbeatBit()
{
    const int module = add("ProfinetModule");
    QCOMPARE(set(module, "Heartbeat", "100"), GW_OK);
    QCOMPARE(set(module, "ConnectState", "true"), GW_OK);
    QTRY_VERIFY(heartbeatBit(module));
    QCOMPARE(set(module, "PollEnable", "false", kWrite), GW_OK);
    const bool held = heartbeatBit(module);
    QCOMPARE(GW_PF_WriteString(module, kWrite, "\x01\x02"), GW_OK);
    QCOMPARE(plcRead(module, kWrite).left(2).toHex(), QByteArray(held ? "8102" : "0102"));
    QCOMPARE(GW_PF_WriteString(module, kWrite, "\xff"), GW_OK);
    QCOMPARE(plcRead(module, kWrite).left(2).toHex(), QByteArray(held ? "ff00" : "7f00"));
}

void tst_FieldbusFixed::restart_fixedPollEnableBack()
{
    const int module = add("ProfinetModule");
    QCOMPARE(set(module, "PollEnable", "false", kRead), GW_OK);
    QCOMPARE(set(module, "Heartbeat", "750"), GW_OK);
    GW_PF_DeInit();
    QVERIFY(m_gw.stop());
    QVERIFY2(m_gw.start(), qPrintable(m_gw.error()));
    connectClient();
    QCOMPARE(get(module, "PollEnable", kRead), QByteArray("false"));
    QCOMPARE(get(module, "PollEnable", kWrite), QByteArray("true"));
    QCOMPARE(get(module, "Heartbeat"), QByteArray("750"));
}

// A module-wide watch includes both fixed addresses: the PLC's own write to
// the read address and the gateway's heartbeat on the write address.
void tst_FieldbusFixed::gwplc_watchShowsTheFixedAddresses()
{
    const int module = add("ProfinetModule");
    QCOMPARE(set(module, "Heartbeat", "100"), GW_OK);
    QCOMPARE(set(module, "ConnectState", "true"), GW_OK);
    QProcess gwplc;
    gwplc.start(qEnvironmentVariable("GWPLC"),
                {"--port", QString::number(m_gw.port()), "watch", QString::number(module), "--cycle", "5"});
    QByteArray out;
    auto seen = [&](const QByteArray &what) {
        out += gwplc.readAllStandardOutput();
        return out.contains(what);
    };
    QCOMPARE(GW_PLC_WriteAddress(module, kRead, "\x0a\x0b", 2), GW_OK);
    QTRY_VERIFY(seen(" 0 0a 0b 00"));
    QTRY_VERIFY(seen(" 1000 80 00"));
    QTRY_VERIFY(seen(" 1000 00 00"));
    gwplc.terminate();
    QVERIFY(gwplc.waitForFinished(5000));
    QCOMPARE(gwplc.exitCode(), 0);
}

QTEST_GUILESS_MAIN(tst_FieldbusFixed)
#include "tst_fieldbusfixed.moc"
