// The address tables of both fieldbus device types against the real gatewayd:
// addresses are added and refused as the gateway's areas say, test data of
// each type is written and read back on the PLC side, a PLC write to an
// address with "Upload" on lands in its history, and the tables come back
// after a gateway restart. The slots run in order and share the devices.
#include "AddressDataSetData.h"
#include "BaseItemProxy.h"
#include "CapturedLog.h"
#include "CommDevice.h"
#include "DevicesManager.h"
#include "GatewayProcess.h"
#include "GwCallbacks.h"
#include "GwParamRecord.h"
#include "GwPlatform.h"
#include "GwPlcSide.h"
#include "HostConfig.h"
#include "Slog.h"

#include <QJsonObject>
#include <QSignalSpy>
#include <QtTest>

using namespace CommunicationControl;

namespace {
QJsonObject address(const QString &name, int type, int first, int length, bool upload)
{
    return QJsonObject{{"AddressName", name},   {"IntDataType", type}, {"SoftElementAddress", first},
                       {"SoftElementNum", length}, {"OverTime", 1000}, {"PollEnable", true},
                       {"Upload", upload}};
}

QByteArray plcRead(int moduleId, int addressId)
{
    char buffer[1024] = {};
    int length = 0;
    const quint32 rc = GW_PLC_ReadAddress(moduleId, addressId, buffer, sizeof buffer, &length);
    return rc == GW_OK ? QByteArray(buffer, length) : "<error " + QByteArray::number(rc, 16) + '>';
}
} // namespace

class tst_AddressDataSetGateway : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void add_bothTypesBothDirections_data();
    void add_bothTypesBothDirections();
    void outsideTheArea_refusedByTheGateway_data();
    void outsideTheArea_refusedByTheGateway();
    void sendTestData_readBackOnThePlcSide_data();
    void sendTestData_readBackOnThePlcSide();
    void plcWrite_withUpload_reachesTheHistory_data();
    void plcWrite_withUpload_reachesTheHistory();
    void restart_rebuildsTheTables_data();
    void restart_rebuildsTheTables();

private:
    AddressDataSetData *table(const QString &type, int addressType) const;
    DevicesManager *manager() const { return DevicesManager::Instance(); }
    void typeColumn();

    GatewayProcess m_gw;
    QMap<QString, int> m_ids; // device type -> module id
};

void tst_AddressDataSetGateway::initTestCase()
{
    QVERIFY2(m_gw.start(), qPrintable(m_gw.error()));
    QCOMPARE(GW_PF_Init(1, "127.0.0.1", m_gw.port(), 101), GW_OK);
    QCOMPARE(GW_PF_SetResultCallback(ResultCallBack, nullptr), GW_OK);
    HostConfig::setLanguage(QStringLiteral("en"));
    for (const QString &type : {QStringLiteral("ProfinetModule"), QStringLiteral("EipModule")}) {
        QVERIFY(manager()->loadAlgorithmTabXML(type));
        const int id = manager()->createCommDevice(type, type + QStringLiteral(" 1"));
        QVERIFY2(id > 0, qPrintable(type));
        m_ids.insert(type, id);
        manager()->getDeviceById(id)->setConnectState(true);
        QVERIFY(manager()->getDeviceById(id)->connectState());
    }
}

void tst_AddressDataSetGateway::cleanupTestCase()
{
    GW_PF_DeInit();
    QVERIFY(m_gw.stop());
}

void tst_AddressDataSetGateway::init()
{
    HostLog::setCaptureEnabled(true);
    HostLog::clearCaptured();
}

void tst_AddressDataSetGateway::typeColumn()
{
    QTest::addColumn<QString>("type");
}

AddressDataSetData *tst_AddressDataSetGateway::table(const QString &type, int addressType) const
{
    CommDevice *device = manager()->getDeviceById(m_ids.value(type));
    for (BaseItemProxy *proxy : device ? device->items() : QVector<BaseItemProxy *>()) {
        auto *data = qobject_cast<AddressDataSetData *>(proxy ? proxy->baseData() : nullptr);
        if (data && data->addressType() == addressType)
            return data;
    }
    return nullptr;
}

void tst_AddressDataSetGateway::add_bothTypesBothDirections_data()
{
    typeColumn();
    QTest::newRow("PROFINET") << "ProfinetModule";
    QTest::newRow("EtherNet/IP") << "EipModule";
}

// The add dialog's order: defaults, constraints, validation, overlap, add.
void tst_AddressDataSetGateway::add_bothTypesBothDirections()
{
    QFETCH(QString, type);
    for (int direction : {1, 2}) {
        AddressDataSetData *data = table(type, direction);
        QVERIFY(data);
        QVERIFY(data->loadAdressAlgorithmTabXML(type));
        QCOMPARE(data->gwGetAddressConstraints(), 0);
        QCOMPARE(data->softAddressMin(), 0);
        QCOMPARE(data->softAddressMax(), type == QLatin1String("ProfinetModule") ? 1439 : 495);
        // 16-bit text/int address at 0, 32-bit float address right after it.
        const QJsonObject first = address(QStringLiteral("text"), 0, 0, 4, true);
        const QJsonObject second = address(QStringLiteral("float"), 1, 4 * data->factor(), 2, true);
        for (const QJsonObject &json : {first, second}) {
            QVERIFY(data->gwValidateAddressParams(json));
            QCOMPARE(data->checkValidAddress(json.value("SoftElementAddress").toInt(),
                                             json.value("SoftElementNum").toInt()),
                     QString());
            QVERIFY(data->addCustomAddress(json));
        }
        QCOMPARE(data->addressList().size(), 2);
        const int low = direction == 1 ? GW_PLC_READ_ID_FIRST : GW_PLC_WRITE_ID_FIRST;
        const int high = direction == 1 ? GW_PLC_READ_ID_LAST : GW_PLC_WRITE_ID_LAST;
        for (const AddressInfo *entry : data->addressList())
            QVERIFY2(entry->serialNumber() >= low && entry->serialNumber() <= high,
                     qPrintable(QString::number(entry->serialNumber())));
    }
    QCOMPARE(capturedLogLines(), QStringList());
}

void tst_AddressDataSetGateway::outsideTheArea_refusedByTheGateway_data()
{
    typeColumn();
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("length");
    QTest::newRow("PROFINET past 1439") << "ProfinetModule" << 1439 << 2;
    QTest::newRow("EtherNet/IP past 495") << "EipModule" << 494 << 2;
    QTest::newRow("PROFINET 257 elements") << "ProfinetModule" << 100 << 257;
}

void tst_AddressDataSetGateway::outsideTheArea_refusedByTheGateway()
{
    QFETCH(QString, type);
    QFETCH(int, first);
    QFETCH(int, length);
    AddressDataSetData *data = table(type, 2);
    QVERIFY(data);
    QSignalSpy boxes(data, &BaseItem::messageBox);
    QVERIFY(!data->gwValidateAddressParams(address(QStringLiteral("x"), 0, first, length, false)));
    QCOMPARE(boxes.value(0), QVariantList({1, QStringLiteral("Adding the address failed")}));
    // Changing an address there is written key by key, the first address
    // first: a key the gateway refuses is said once, the keys it took stay,
    // and the table shows what the gateway holds.
    AddressInfo *entry = data->addressList().first();
    boxes.clear();
    QVERIFY(!data->changeCustomAddress(entry, QJsonObject{{"SoftElementAddress", first}, {"SoftElementNum", length}}));
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.at(0), QVariantList({2, QStringLiteral("Invalid address parameters")}));
    const int id = m_ids.value(type);
    QByteArray stored;
    QCOMPARE(GwParamRecord::readOne(id, "SoftElementAddress", stored, entry->serialNumber()), GW_OK);
    QCOMPARE(stored.toInt(), entry->firstAddr());
    QCOMPARE(GwParamRecord::readOne(id, "SoftElementNum", stored, entry->serialNumber()), GW_OK);
    QCOMPARE(stored.toInt(), entry->addrLength());
    QVERIFY(data->changeCustomAddress(entry, QJsonObject{{"SoftElementAddress", 0}, {"SoftElementNum", 4}}));
    QCOMPARE(QList<int>({entry->firstAddr(), entry->addrLength()}), QList<int>({0, 4}));
    HostLog::clearCaptured(); // the refused keys are logged; their text is the unit test's
}

void tst_AddressDataSetGateway::sendTestData_readBackOnThePlcSide_data()
{
    typeColumn();
    QTest::addColumn<QString>("dataType");
    QTest::addColumn<int>("index"); // 0: four 16-bit elements, 1: two 32-bit elements
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("plc");
    QTest::newRow("PROFINET string") << "ProfinetModule" << "string" << 0 << "OK" << QByteArray("OK\0\0\0\0\0\0", 8);
    QTest::newRow("PROFINET int big-endian") << "ProfinetModule" << "int" << 0 << "258;1"
                                             << QByteArray("\x01\x02\x00\x01\0\0\0\0", 8);
    QTest::newRow("PROFINET float") << "ProfinetModule" << "float" << 1 << "1.5"
                                    << QByteArray("\x3f\xc0\x00\x00\0\0\0\0", 8);
    QTest::newRow("EtherNet/IP int little-endian") << "EipModule" << "int" << 0 << "258;1"
                                                   << QByteArray("\x02\x01\x01\x00\0\0\0\0", 8);
    QTest::newRow("EtherNet/IP float") << "EipModule" << "float" << 1 << "1.5;2"
                                       << QByteArray("\x00\x00\xc0\x3f\x00\x00\x00\x40", 8);
}

void tst_AddressDataSetGateway::sendTestData_readBackOnThePlcSide()
{
    QFETCH(QString, type);
    QFETCH(QString, dataType);
    QFETCH(int, index);
    QFETCH(QString, text);
    QFETCH(QByteArray, plc);
    AddressDataSetData *data = table(type, 2);
    QVERIFY(data);
    AddressInfo *entry = data->addressList().at(index);
    QSignalSpy boxes(data, &BaseItem::messageBox);
    data->sendTestData(dataType, entry, text);
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.at(0), QVariantList({3, QStringLiteral("Sent")}));
    QCOMPARE(plcRead(m_ids.value(type), entry->serialNumber()), plc);
    // Reading on demand shows the same bytes in the table.
    data->synchrodata();
    QCOMPARE(entry->hexDataList().size() > 0, true);
    QString hex;
    for (unsigned char b : plc)
        hex += QStringLiteral("[%1]").arg(b, 2, 16, QLatin1Char('0')).toUpper();
    QCOMPARE(entry->hexDataList().last().mid(26), hex);
}

void tst_AddressDataSetGateway::plcWrite_withUpload_reachesTheHistory_data()
{
    typeColumn();
    QTest::newRow("PROFINET") << "ProfinetModule";
    QTest::newRow("EtherNet/IP") << "EipModule";
}

void tst_AddressDataSetGateway::plcWrite_withUpload_reachesTheHistory()
{
    QFETCH(QString, type);
    AddressDataSetData *data = table(type, 1);
    QVERIFY(data);
    AddressInfo *entry = data->addressList().first();
    QVERIFY(entry->uploadEnable());
    const int before = entry->dataList().size();
    const QByteArray bytes("PLC\n", 4);
    QCOMPARE(GW_PLC_WriteAddress(m_ids.value(type), entry->serialNumber(), bytes.constData(), bytes.size()), GW_OK);
    QTRY_COMPARE(entry->dataList().size(), before + 1);
    QCOMPARE(entry->data(), QStringLiteral("PLC[0A][00][00][00][00]"));
    // Without "Upload" the page sees the data only when it reads.
    QVERIFY(data->changeCustomAddress(entry, QJsonObject{{"Upload", false}}));
    QCOMPARE(GW_PLC_WriteAddress(m_ids.value(type), entry->serialNumber(), "X", 1), GW_OK);
    QTest::qWait(200);
    QCOMPARE(entry->dataList().size(), before + 1);
    data->synchrodata();
    QCOMPARE(entry->data().left(1), QStringLiteral("X"));
}

void tst_AddressDataSetGateway::restart_rebuildsTheTables_data()
{
    typeColumn();
    QTest::newRow("PROFINET") << "ProfinetModule";
    QTest::newRow("EtherNet/IP") << "EipModule";
}

void tst_AddressDataSetGateway::restart_rebuildsTheTables()
{
    QFETCH(QString, type);
    static bool restarted = false;
    if (!restarted) {
        GW_PF_DeInit();
        QVERIFY(m_gw.stop());
        QVERIFY2(m_gw.start(), qPrintable(m_gw.error()));
        QCOMPARE(GW_PF_Init(1, "127.0.0.1", m_gw.port(), 101), GW_OK);
        manager()->LoadDevices();
        restarted = true;
    }
    for (int direction : {1, 2}) {
        AddressDataSetData *data = table(type, direction);
        QVERIFY(data);
        QCOMPARE(data->moduType(), type == QLatin1String("EipModule") ? 1 : 2);
        QCOMPARE(data->addressList().size(), 2);
        const AddressInfo *text = data->addressList().at(0);
        const AddressInfo *real = data->addressList().at(1);
        QCOMPARE(text->addrName(), QStringLiteral("text"));
        QCOMPARE(QList<int>({text->intType(), text->firstAddr(), text->addrLength(), text->timeout()}),
                 QList<int>({0, 0, 4, 1000}));
        QCOMPARE(real->addrName(), QStringLiteral("float"));
        QCOMPARE(QList<int>({real->intType(), real->firstAddr(), real->addrLength()}),
                 QList<int>({1, 4 * data->factor(), 2}));
        QCOMPARE(text->uploadEnable(), direction == 2); // read's was switched off above
        QVERIFY(text->pollEnable());
    }
}

QTEST_GUILESS_MAIN(tst_AddressDataSetGateway)
#include "tst_addressdataset_gateway.moc"
