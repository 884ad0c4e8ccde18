// The fixed PROFINET addresses of a page device against the real gatewayd:
// the bits of the fixed read address follow the bytes the PLC side writes,
// pushed through the result callback, and the page's heartbeat setting makes
// the heartbeat bit of the fixed write address toggle at that interval, as
// the page's data sync sees it.
#include "BaseItemProxy.h"
#include "CommDevice.h"
#include "DevicesManager.h"
#include "GatewayProcess.h"
#include "GwCallbacks.h"
#include "GwParamRecord.h"
#include "GwPlatform.h"
#include "GwPlcSide.h"
#include "HostConfig.h"
#include "ProfinetFixedButtonData.h"

#include <QElapsedTimer>
#include <QtTest>

using CommunicationControl::AddressInfo;
using CommunicationControl::ProfinetFixedButtonData;

namespace {
// The values of the entries whose names are given, in that order.
QStringList valuesOf(const QList<AddressInfo *> &entries, const QStringList &names)
{
    QStringList values;
    for (const QString &name : names) {
        QString value = QStringLiteral("(none)");
        for (const AddressInfo *entry : entries)
            if (entry->addrName() == name)
                value = entry->data();
        values << value;
    }
    return values;
}
} // namespace

class tst_ProfinetFixedGateway : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();

    void plcWrite_bitsFollowTheBytes_data();
    void plcWrite_bitsFollowTheBytes();
    void heartbeat_bitTogglesAtTheSetInterval();

private:
    GatewayProcess m_gw;
    int m_id = -1;
    ProfinetFixedButtonData *m_data = nullptr;
};

void tst_ProfinetFixedGateway::initTestCase()
{
    QVERIFY2(m_gw.start(), qPrintable(m_gw.error()));
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", m_gw.port(), 101), GW_OK);
    GW_PF_SetResultCallback(ResultCallBack, nullptr);
    HostConfig::setLanguage(QStringLiteral("en"));
    DevicesManager *manager = DevicesManager::Instance();
    QVERIFY(manager->loadAlgorithmTabXML(QStringLiteral("ProfinetModule")));
    m_id = manager->createCommDevice(QStringLiteral("ProfinetModule"), QStringLiteral("PN 1"));
    QVERIFY(m_id > 0);
    QCOMPARE(GwParamRecord::writeOne(m_id, "ConnectState", "true"), GW_OK);
    for (BaseItemProxy *proxy : manager->getDeviceById(m_id)->items())
        if (auto *data = qobject_cast<ProfinetFixedButtonData *>(proxy ? proxy->baseData() : nullptr))
            m_data = data;
    QVERIFY(m_data);
    QCOMPARE(m_data->readFixedAddressList().size(), 10);
    QCOMPARE(m_data->writeFixedAddressList().size(), 14);
}

void tst_ProfinetFixedGateway::cleanupTestCase()
{
    GW_PF_DeInit();
    QVERIFY(m_gw.stop());
}

void tst_ProfinetFixedGateway::plcWrite_bitsFollowTheBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("values"); // Trigger, Reset, Job change request, Illumination on, PLC heartbeat
    QTest::newRow("trigger") << QByteArray("\x01", 1) << QStringList({"1", "0", "0", "0", "0"});
    QTest::newRow("reset and job change") << QByteArray("\x06", 1) << QStringList({"0", "1", "1", "0", "0"});
    QTest::newRow("second byte") << QByteArray("\x00\x03", 2) << QStringList({"0", "0", "0", "1", "1"});
    QTest::newRow("all clear") << QByteArray("\x00", 1) << QStringList({"0", "0", "0", "0", "0"});
}

void tst_ProfinetFixedGateway::plcWrite_bitsFollowTheBytes()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, values);
    const QStringList names{"Trigger", "Reset", "Job change request", "Illumination on", "PLC heartbeat"};
    // Marks the entries so that the push, not an earlier one, is seen.
    for (AddressInfo *entry : m_data->readFixedAddressList())
        entry->UpdateData(QStringLiteral("?"));
    QCOMPARE(GW_PLC_WriteAddress(m_id, GW_PLC_FIXED_READ_ID, bytes.constData(), bytes.size()), GW_OK);
    QTRY_COMPARE(valuesOf(m_data->readFixedAddressList(), names), values);
}

// The page sets the interval and reads the write address every 5 ms with its
// data sync; the mean time between changes of the heartbeat bit is the
// interval within 20 %.
void tst_ProfinetFixedGateway::heartbeat_bitTogglesAtTheSetInterval()
{
    const int interval = 200;
    m_data->setWriteHeartBeat(interval);
    QCOMPARE(m_data->writeHeartBeat(), interval);
    AddressInfo *heartbeat = nullptr;
    for (AddressInfo *entry : m_data->writeFixedAddressList())
        if (entry->fixedAddress() == QLatin1String("0.7"))
            heartbeat = entry;
    QVERIFY(heartbeat);
    QCOMPARE(heartbeat->addrName(), QStringLiteral("Heartbeat"));

    QList<qint64> flips;
    QElapsedTimer clock;
    clock.start();
    m_data->synchrodata(false);
    QString last = heartbeat->data();
    while (flips.size() < 6 && clock.elapsed() < 20 * interval) {
        QTest::qWait(5);
        m_data->synchrodata(false);
        if (heartbeat->data() != last)
            flips.append(clock.elapsed());
        last = heartbeat->data();
    }
    QCOMPARE(flips.size(), 6);
    const double period = double(flips.last() - flips.first()) / double(flips.size() - 1);
    QVERIFY2(qAbs(period - interval) <= 0.2 * interval,
             qPrintable(QStringLiteral("mean period %1 ms for %2 ms").arg(period).arg(interval)));
}

QTEST_GUILESS_MAIN(tst_ProfinetFixedGateway)
#include "tst_profinetfixed_gateway.moc"
