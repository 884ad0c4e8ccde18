// The address table of a fieldbus device against the fake gateway: loading
// by id range, defaults and constraints, the overlap rule, add with rollback,
// change key by key, delete, clear, reading, pushed results and test data.
// The whole suite runs once per device type (PROFINET, EtherNet/IP).
#include "AddressDataSet.h"
#include "AddressDataSetData.h"
#include "CapturedLog.h"
#include "CommDevice.h"
#include "DevicesManager.h"
#include "FakeGateway.h"
#include "HostConfig.h"
#include "Slog.h"

#include <QJsonObject>
#include <QSignalSpy>
#include <QtTest>

using namespace CommunicationControl;

namespace {
const QString kFailed = QStringLiteral("Adding the address failed");

QJsonObject fullAddress(const QString &name, int first, int length)
{
    return QJsonObject{{"AddressName", name},  {"IntDataType", 1},     {"SoftElementAddress", first},
                       {"SoftElementNum", length}, {"OverTime", 500}, {"PollEnable", false},
                       {"Upload", true}};
}

QStringList keysOf(const FakeGwCall &call)
{
    QStringList keys;
    for (const auto &entry : call.entries)
        keys << QString::fromLatin1(entry.first);
    return keys;
}
} // namespace

class tst_AddressDataSet : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase_data();
    void init();
    void cleanup();

    void load_keepsItsIdRange();
    void load_secondLoadReplacesTable();
    void defaults_fromDescriptionFile();
    void constraints_data();
    void constraints();
    void validate_data();
    void validate();
    void checkValidAddress_data();
    void checkValidAddress();
    void add_data();
    void add();
    void change_data();
    void change();
    void deleteAddress_data();
    void deleteAddress();
    void clear_partialFailure_keepsRefusedEntries();
    void synchrodata_data();
    void synchrodata();
    void pushedResult_reachesItsAddressOnly();
    void sendTestData_data();
    void sendTestData();

private:
    AddressDataSetData *table(int addressType) const;
    AddressInfo *addRead(const QString &name, int first, int length);
    int factor() const;

    FakeGateway &m_gw = FakeGateway::instance();
    int m_moduleId = 0;
    QString m_type;
};

void tst_AddressDataSet::initTestCase_data()
{
    QTest::addColumn<QString>("type");
    QTest::newRow("PROFINET") << QStringLiteral("ProfinetModule");
    QTest::newRow("EtherNet/IP") << QStringLiteral("EipModule");
}

void tst_AddressDataSet::init()
{
    QFETCH_GLOBAL(QString, type);
    m_type = type;
    m_gw.reset();
    HostConfig::setLanguage(QStringLiteral("en"));
    m_moduleId = m_gw.addModule(type.toUtf8(), "fieldbus");
    m_gw.setParam(m_moduleId, "ConnectState", "true");
    // One read address, one write address and one read address out of order.
    const int read1 = m_gw.addAddress(m_moduleId, GW_ADDRESS_READ, "first in");
    const int write1 = m_gw.addAddress(m_moduleId, GW_ADDRESS_WRITE, "first out");
    const int read2 = m_gw.addAddress(m_moduleId, GW_ADDRESS_READ, "second in");
    auto params = [this](int id, const char *type, const char *first, const char *num, const char *poll,
                         const char *time, const char *upload) {
        m_gw.setParam(m_moduleId, "IntDataType", type, id);
        m_gw.setParam(m_moduleId, "SoftElementAddress", first, id);
        m_gw.setParam(m_moduleId, "SoftElementNum", num, id);
        m_gw.setParam(m_moduleId, "PollEnable", poll, id);
        m_gw.setParam(m_moduleId, "OverTime", time, id);
        m_gw.setParam(m_moduleId, "Upload", upload, id);
    };
    params(read1, "2", "10", "4", "TRUE", "300", "false");
    params(write1, "1", "0", "8", "false", "1000", "True");
    params(read2, "1", "40", "2", "false", "0", "true");
    DevicesManager::Instance()->LoadDevices();
    m_gw.clearCalls();
    HostLog::setCaptureEnabled(true);
    HostLog::clearCaptured();
}

void tst_AddressDataSet::cleanup()
{
    m_gw.reset();
    DevicesManager::Instance()->LoadDevices(); // empty list: the devices go
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

int tst_AddressDataSet::factor() const
{
    return m_type == QLatin1String("ProfinetModule") ? 1 : 2;
}

AddressDataSetData *tst_AddressDataSet::table(int addressType) const
{
    CommDevice *device = DevicesManager::Instance()->getDeviceById(m_moduleId);
    for (BaseItemProxy *proxy : device ? device->items() : QVector<BaseItemProxy *>()) {
        auto *data = qobject_cast<AddressDataSetData *>(proxy ? proxy->baseData() : nullptr);
        if (data && data->addressType() == addressType)
            return data;
    }
    return nullptr;
}

AddressInfo *tst_AddressDataSet::addRead(const QString &name, int first, int length)
{
    AddressDataSetData *read = table(AddressDataSetData::ReadAddress);
    if (!read || !read->addCustomAddress(fullAddress(name, first, length)))
        return nullptr;
    return read->addressList().last();
}

void tst_AddressDataSet::load_keepsItsIdRange()
{
    AddressDataSetData *read = table(AddressDataSetData::ReadAddress);
    AddressDataSetData *write = table(AddressDataSetData::WriteAddress);
    QVERIFY(read && write);
    QCOMPARE(read->moduType(), m_type == QLatin1String("EipModule") ? int(AddressDataSetData::Eip)
                                                                    : int(AddressDataSetData::Profinet));
    QCOMPARE(read->addressList().size(), 2);
    QCOMPARE(write->addressList().size(), 1);
    const AddressInfo *in = read->addressList().at(0);
    QCOMPARE(in->serialNumber(), 1);
    QCOMPARE(in->addrName(), QStringLiteral("first in"));
    QCOMPARE(in->intType(), 1);
    QCOMPARE(in->firstAddr(), 10);
    QCOMPARE(in->addrLength(), 4);
    QCOMPARE(in->timeout(), 300);
    QVERIFY(in->pollEnable()); // "TRUE": the gateway's booleans ignore case
    QVERIFY(!in->uploadEnable());
    QCOMPARE(in->deviceId(), 1);
    QCOMPARE(in->factor(), factor());
    QCOMPARE(read->addressList().at(1)->serialNumber(), 2);
    const AddressInfo *out = write->addressList().at(0);
    QCOMPARE(out->serialNumber(), 1001);
    QVERIFY(out->uploadEnable());

    // The parameters of each address are read with the six keys in slot order.
    m_gw.clearCalls();
    QCOMPARE(read->GwGetModuleParam(), 0);
    const QList<FakeGwCall> reads = m_gw.calls(QStringLiteral("GetAllParam"));
    QCOMPARE(reads.size(), 2); // only this table's ids
    QCOMPARE(reads.at(0).addressId, 1);
    QCOMPARE(reads.at(0).recordCount, 6);
    QCOMPARE(keysOf(reads.at(0)), QStringList({"IntDataType", "SoftElementAddress", "SoftElementNum",
                                                "PollEnable", "OverTime", "Upload"}));
    QCOMPARE(m_gw.lastCall(QStringLiteral("GetModuleAllAddressInfo")).number, 999);
}

void tst_AddressDataSet::load_secondLoadReplacesTable()
{
    AddressDataSetData *read = table(AddressDataSetData::ReadAddress);
    QVERIFY(read);
    m_gw.answerKey(QStringLiteral("GetAllParam"), "IntDataType", GW_ERR_UNKNOWN_ADDRESS);
    QSignalSpy listChanged(read, &AddressDataSetData::addressListChanged);
    // The last call's code is returned; addresses whose parameters fail are skipped.
    QCOMPARE(read->GwGetModuleParam(), int(GW_ERR_UNKNOWN_ADDRESS));
    QCOMPARE(read->addressList().size(), 0);
    QCOMPARE(listChanged.count(), 1);
}

void tst_AddressDataSet::defaults_fromDescriptionFile()
{
    AddressDataSetData *read = table(AddressDataSetData::ReadAddress);
    QVERIFY(read);
    QSignalSpy defaultChanged(read, &AddressDataSetData::addressInfoDefaultChanged);
    QVERIFY(read->loadAdressAlgorithmTabXML(m_type));
    QCOMPARE(defaultChanged.count(), 1);
    const AddressInfo *d = read->addressInfoDefault();
    QVERIFY(d);
    QCOMPARE(d->intType(), 0);     // CurValue 1, 1-based in the file
    QCOMPARE(d->firstAddr(), 100); // DefaultValue, no CurValue
    QCOMPARE(d->addrLength(), 1);
    QCOMPARE(d->timeout(), 1000);
    QVERIFY(d->pollEnable());
    QVERIFY(!d->uploadEnable());
    QVERIFY(read->loadAdressAlgorithmTabXML(m_type));
    QCOMPARE(read->addressInfoDefault(), d); // made once, reused
    QVERIFY(!read->loadAdressAlgorithmTabXML(QStringLiteral("NoSuchModule")));
    QCOMPARE(defaultChanged.count(), 2);
}

void tst_AddressDataSet::constraints_data()
{
    QTest::addColumn<int>("addressType");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<quint32>("answer");
    QTest::addColumn<int>("code");
    QTest::addColumn<QList<int>>("limits");
    QTest::addColumn<QString>("logLine");
    const QList<int> untouched{0, 0, 0};
    QTest::newRow("read, four parts, first ignored") << 1 << QByteArray("999;1;100;10") << quint32(0) << 0
                                                     << QList<int>{1, 100, 10} << QString();
    QTest::newRow("write, empty parts dropped") << 2 << QByteArray(";9;;0;495;;0;") << quint32(0) << 0
                                                << QList<int>{0, 495, 0} << QString();
    QTest::newRow("three parts refused") << 1 << QByteArray("1;100;10") << quint32(0) << int(GW_ERR_PARSE)
                                         << untouched << "[CommManager] [gwGetAddressConstraints] 1;100;10 split ; num !=4";
    QTest::newRow("gateway refuses")
        << 2 << QByteArray("0;0;495;0") << quint32(GW_ERR_UNKNOWN_KEY) << int(GW_ERR_UNKNOWN_KEY) << untouched
        << "[CommManager] [gwGetAddressConstraints] GW_PF_GetModuleParam ReadAddressConstraints or "
           "WriteAddressConstraints failed, error=e000000d";
}

void tst_AddressDataSet::constraints()
{
    QFETCH(int, addressType);
    QFETCH(QByteArray, value);
    QFETCH(quint32, answer);
    QFETCH(int, code);
    QFETCH(QList<int>, limits);
    QFETCH(QString, logLine);
    AddressDataSetData *data = table(addressType);
    QVERIFY(data);
    const QByteArray key = addressType == 1 ? "ReadAddressConstraints" : "WriteAddressConstraints";
    m_gw.setParam(m_moduleId, key, value);
    m_gw.answer(QStringLiteral("GetModuleParam"), answer);
    QList<QByteArray> order;
    connect(data, &AddressDataSetData::softAddressMinChanged, this, [&order] { order << "softAddressMinChanged"; });
    connect(data, &AddressDataSetData::softAddressMaxChanged, this, [&order] { order << "softAddressMaxChanged"; });
    connect(data, &AddressDataSetData::softAddressDefaultChanged, this,
            [&order] { order << "softAddressDefaultChanged"; });

    QCOMPARE(data->gwGetAddressConstraints(), code);
    const FakeGwCall call = m_gw.lastCall(QStringLiteral("GetModuleParam"));
    QCOMPARE(call.addressId, -1);
    QCOMPARE(call.entries.value(0).first, key);
    QCOMPARE(QList<int>({data->softAddressMin(), data->softAddressMax(), data->softAddressDefault()}), limits);
    if (code == 0)
        QCOMPARE(order, QList<QByteArray>({"softAddressMinChanged", "softAddressMaxChanged", "softAddressDefaultChanged"}));
    else
        QVERIFY(order.isEmpty());
    QCOMPARE(capturedLogLines(), logLine.isEmpty() ? QStringList() : QStringList{logLine});
    disconnect(data, nullptr, this, nullptr);
}

void tst_AddressDataSet::validate_data()
{
    QTest::addColumn<QJsonObject>("json");
    QTest::addColumn<quint32>("answer");
    QTest::addColumn<QStringList>("sent");
    QTest::addColumn<bool>("valid");
    QTest::newRow("both") << QJsonObject{{"SoftElementAddress", 12}, {"SoftElementNum", 3}, {"AddressName", "x"}}
                          << quint32(0) << QStringList{"SoftElementAddress=12", "SoftElementNum=3"} << true;
    QTest::newRow("length only") << QJsonObject{{"SoftElementNum", 3}} << quint32(0)
                                 << QStringList{"SoftElementNum=3"} << true;
    QTest::newRow("refused") << QJsonObject{{"SoftElementAddress", 5000}, {"SoftElementNum", 1}}
                             << quint32(GW_ERR_ADDRESS_RANGE) << QStringList{"SoftElementAddress=5000", "SoftElementNum=1"}
                             << false;
}

void tst_AddressDataSet::validate()
{
    QFETCH(QJsonObject, json);
    QFETCH(quint32, answer);
    QFETCH(QStringList, sent);
    QFETCH(bool, valid);
    AddressDataSetData *write = table(AddressDataSetData::WriteAddress);
    QVERIFY(write);
    m_gw.answer(QStringLiteral("ValidateAddressParams"), answer);
    QSignalSpy boxes(write, &BaseItem::messageBox);
    QCOMPARE(write->gwValidateAddressParams(json), valid);
    const FakeGwCall call = m_gw.lastCall(QStringLiteral("ValidateAddressParams"));
    QCOMPARE(call.number, int(GW_ADDRESS_WRITE));
    QStringList pairs;
    for (const auto &e : call.entries)
        pairs << QString::fromLatin1(e.first + '=' + e.second);
    QCOMPARE(pairs, sent);
    QCOMPARE(call.recordCount, sent.size());
    QCOMPARE(boxes.count(), valid ? 0 : 1);
    if (!valid)
        QCOMPARE(boxes.at(0), QVariantList({1, kFailed}));
}

void tst_AddressDataSet::checkValidAddress_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("ignoreFirstEntry");
    QTest::addColumn<QString>("profinet");
    QTest::addColumn<QString>("eip");
    // Read table: 1 "first in" at 10 x4, 2 "second in" at 40 x2.
    QTest::newRow("free between") << 30 << 2 << false << QString() << QString();
    QTest::newRow("after first on profinet only") << 14 << 1 << false << QString() << "1 first in";
    QTest::newRow("both conflict: the later named") << 0 << 100 << false << "2 second in" << "2 second in";
    QTest::newRow("own range ignored when changing") << 10 << 4 << true << QString() << QString();
}

void tst_AddressDataSet::checkValidAddress()
{
    QFETCH(int, first);
    QFETCH(int, length);
    QFETCH(bool, ignoreFirstEntry);
    QFETCH(QString, profinet);
    QFETCH(QString, eip);
    const QString expected = factor() == 1 ? profinet : eip;
    AddressDataSetData *read = table(AddressDataSetData::ReadAddress);
    QVERIFY(read);
    QSignalSpy boxes(read, &BaseItem::messageBox);
    AddressInfo *current = ignoreFirstEntry ? read->addressList().first() : nullptr;
    QCOMPARE(read->checkValidAddress(first, length, current), expected);
    QCOMPARE(boxes.count(), expected.isEmpty() ? 0 : 1);
    if (!expected.isEmpty())
        QCOMPARE(boxes.at(0), QVariantList({1, "Address " + expected + " overlaps an existing address"}));
}

void tst_AddressDataSet::add_data()
{
    QTest::addColumn<QJsonObject>("json");
    QTest::addColumn<QString>("failing");   // function scripted to fail, or empty
    QTest::addColumn<QStringList>("record"); // key=value in the order sent
    QTest::addColumn<QStringList>("calls");  // address calls in order
    QTest::addColumn<QString>("logLine");
    const QStringList full{"IntDataType=2", "SoftElementAddress=60", "SoftElementNum=3", "OverTime=500",
                           "PollEnable=false", "Upload=true"};
    QTest::newRow("all keys") << fullAddress("camera", 60, 3) << QString() << full
                              << QStringList{"AddModuleAddressPN", "SetModuleParam"} << QString();
    QTest::newRow("only the range")
        << QJsonObject{{"AddressName", "r"}, {"SoftElementAddress", 60}, {"SoftElementNum", 3}} << QString()
        << QStringList{"SoftElementAddress=60", "SoftElementNum=3"}
        << QStringList{"AddModuleAddressPN", "SetModuleParam"} << QString();
    QTest::newRow("create refused") << fullAddress("camera", 60, 3) << "AddModuleAddressPN" << QStringList()
                                    << QStringList{"AddModuleAddressPN"}
                                    << "[CommManager] [addCustomAddress] GW_PF_AddModuleAddress failed, moduid=1, "
                                       "addressname=camera. error=e00000ff";
    QTest::newRow("parameters refused: rolled back")
        << fullAddress("camera", 60, 3) << "SetModuleParam" << full
        << QStringList{"AddModuleAddressPN", "SetModuleParam", "DeleteModuleAddress"}
        << "[CommManager] [addCustomAddress] GW_PF_SetModuleParam failed, moduid=1, addressname=camera. error=e00000ff";
}

void tst_AddressDataSet::add()
{
    QFETCH(QJsonObject, json);
    QFETCH(QString, failing);
    QFETCH(QStringList, record);
    QFETCH(QStringList, calls);
    QFETCH(QString, logLine);
    AddressDataSetData *read = table(AddressDataSetData::ReadAddress);
    QVERIFY(read);
    if (!failing.isEmpty())
        m_gw.answer(failing, GW_ERR_GENERAL);
    QSignalSpy listChanged(read, &AddressDataSetData::addressListChanged);
    QSignalSpy boxes(read, &BaseItem::messageBox);
    const bool ok = failing.isEmpty();

    QCOMPARE(read->addCustomAddress(json), ok);
    QStringList made;
    for (const FakeGwCall &c : m_gw.calls())
        made << c.function;
    QCOMPARE(made, calls);
    const FakeGwCall create = m_gw.lastCall(QStringLiteral("AddModuleAddressPN"));
    QCOMPARE(create.text, json.value("AddressName").toString().toUtf8());
    QCOMPARE(create.number, int(GW_ADDRESS_READ));
    QCOMPARE(create.addressId, -1); // the id is preset to -1
    if (!record.isEmpty()) {
        const FakeGwCall set = m_gw.lastCall(QStringLiteral("SetModuleParam"));
        QStringList pairs;
        for (const auto &e : set.entries)
            pairs << QString::fromLatin1(e.first + '=' + e.second);
        QCOMPARE(pairs, record);
        QCOMPARE(set.recordCount, record.size());
        QCOMPARE(set.addressId, 3); // ids 1 and 2 are taken by the read table
    }
    if (calls.contains("DeleteModuleAddress"))
        QCOMPARE(m_gw.lastCall(QStringLiteral("DeleteModuleAddress")).addressId, 3);
    QCOMPARE(read->addressList().size(), ok ? 3 : 2);
    QCOMPARE(listChanged.count(), ok ? 1 : 0);
    QCOMPARE(boxes.count(), ok ? 0 : 1);
    if (!ok)
        QCOMPARE(boxes.at(0), QVariantList({2, kFailed}));
    QCOMPARE(capturedLogLines(), logLine.isEmpty() ? QStringList() : QStringList{logLine});
    if (ok) {
        const AddressInfo *entry = read->addressList().last();
        QCOMPARE(entry->serialNumber(), 3);
        QCOMPARE(entry->firstAddr(), 60);
        QCOMPARE(entry->addrLength(), 3);
        QCOMPARE(entry->uploadEnable(), json.contains("Upload"));
        QCOMPARE(entry->factor(), factor());
    }
}

void tst_AddressDataSet::change_data()
{
    QTest::addColumn<QJsonObject>("json");
    QTest::addColumn<QByteArray>("refusedKey");
    QTest::addColumn<QStringList>("written"); // one call per key, in this order
    QTest::addColumn<bool>("ok");
    QTest::newRow("every key in order")
        << QJsonObject{{"Upload", true}, {"PollEnable", false}, {"OverTime", 9}, {"SoftElementNum", 2},
                       {"SoftElementAddress", 20}, {"IntDataType", 0}, {"AddressName", "renamed"}}
        << QByteArray() << QStringList{"AddressName=renamed", "IntDataType=1", "SoftElementAddress=20",
                                       "SoftElementNum=2", "OverTime=9", "PollEnable=false", "Upload=true"}
        << true;
    QTest::newRow("refused first address: later keys still written")
        << QJsonObject{{"SoftElementAddress", 2000}, {"SoftElementNum", 2}} << QByteArray("SoftElementAddress")
        << QStringList{"SoftElementAddress=2000", "SoftElementNum=2"} << false;
}

void tst_AddressDataSet::change()
{
    QFETCH(QJsonObject, json);
    QFETCH(QByteArray, refusedKey);
    QFETCH(QStringList, written);
    QFETCH(bool, ok);
    AddressDataSetData *read = table(AddressDataSetData::ReadAddress);
    QVERIFY(read);
    AddressInfo *entry = read->addressList().first();
    if (!refusedKey.isEmpty())
        m_gw.answerKey(QStringLiteral("SetModuleParam"), refusedKey, GW_ERR_ADDRESS_RANGE);
    QSignalSpy boxes(read, &BaseItem::messageBox);

    QCOMPARE(read->changeCustomAddress(entry, json), ok);
    QStringList pairs;
    for (const FakeGwCall &c : m_gw.calls(QStringLiteral("SetModuleParam"))) {
        QCOMPARE(c.recordCount, 1);
        QCOMPARE(c.addressId, 1);
        pairs << QString::fromLatin1(c.entries.value(0).first + '=' + c.entries.value(0).second);
    }
    QCOMPARE(pairs, written);
    QCOMPARE(entry->addrLength(), 2);                   // accepted keys are kept
    QCOMPARE(entry->firstAddr(), ok ? 20 : 10);         // a refused one is not
    QCOMPARE(boxes.count(), ok ? 0 : 1);
    if (!ok) {
        QCOMPARE(boxes.at(0), QVariantList({2, QStringLiteral("Invalid address parameters")}));
        QCOMPARE(capturedLogLines(),
                 QStringList{"[CommManager] [gwSetAddressParam] GW_PF_SetModuleParam failed, moduid=1, "
                             "key=SoftElementAddress, value=2000. error=e0000019"});
    } else {
        QCOMPARE(entry->addrName(), QStringLiteral("renamed"));
        QCOMPARE(entry->intType(), 0);
    }
    boxes.clear();
    QVERIFY(!read->changeCustomAddress(nullptr, json));
    QCOMPARE(boxes.value(0), QVariantList({2, QStringLiteral("The address does not exist")}));
}

void tst_AddressDataSet::deleteAddress_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<quint32>("answer");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<int>("left");
    QTest::newRow("existing") << 2 << quint32(0) << true << 1;
    QTest::newRow("not in the table") << 1001 << quint32(0) << true << 2;
    QTest::newRow("refused") << 1 << quint32(GW_ERR_GENERAL) << false << 2;
}

void tst_AddressDataSet::deleteAddress()
{
    QFETCH(int, id);
    QFETCH(quint32, answer);
    QFETCH(bool, ok);
    QFETCH(int, left);
    AddressDataSetData *read = table(AddressDataSetData::ReadAddress);
    QVERIFY(read);
    m_gw.answer(QStringLiteral("DeleteModuleAddress"), answer);
    QSignalSpy listChanged(read, &AddressDataSetData::addressListChanged);
    QSignalSpy boxes(read, &BaseItem::messageBox);
    QCOMPARE(read->delCustomAddress(id), ok);
    QCOMPARE(read->addressList().size(), left);
    QCOMPARE(m_gw.calls(QStringLiteral("DeleteModuleAddress")).size(), left == 2 && ok ? 0 : 1);
    QCOMPARE(listChanged.count(), left == 1 ? 1 : 0);
    QCOMPARE(boxes.count(), ok ? 0 : 1);
    if (!ok) {
        QCOMPARE(boxes.at(0), QVariantList({2, QStringLiteral("Deleting the device failed")}));
        QCOMPARE(capturedLogLines(), QStringList{"[CommManager] [delCustomAddress] GW_PF_DeleteModuleAddress "
                                                 "failed, moduid=1, addressId=1. error=e00000ff"});
    }
}

// Every entry the gateway deleted goes (later, by the event loop); one that it
// refused stays; one signal at the end and no message box either way.
void tst_AddressDataSet::clear_partialFailure_keepsRefusedEntries()
{
    AddressDataSetData *read = table(AddressDataSetData::ReadAddress);
    QVERIFY(read);
    QPointer<AddressInfo> gone = read->addressList().at(1);
    QSignalSpy listChanged(read, &AddressDataSetData::addressListChanged);
    QSignalSpy boxes(read, &BaseItem::messageBox);
    QVERIFY(read->clearAllCustomAddress());
    QCOMPARE(read->addressList().size(), 0);
    QCOMPARE(listChanged.count(), 1);
    QVERIFY(gone); // deleted later, by the event loop
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!gone);

    // Two more, then a refusing gateway: both stay.
    QVERIFY(addRead(QStringLiteral("a"), 0, 1));
    QVERIFY(addRead(QStringLiteral("b"), 50, 1));
    m_gw.answer(QStringLiteral("DeleteModuleAddress"), GW_ERR_UNKNOWN_ADDRESS);
    listChanged.clear();
    HostLog::clearCaptured();
    QVERIFY(!read->clearAllCustomAddress());
    QCOMPARE(read->addressList().size(), 2);
    QCOMPARE(listChanged.count(), 1);
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(capturedLogLines().size(), 2);
    QVERIFY(capturedLogLines().at(0).startsWith("[CommManager] [clearAllCustomAddress] GW_PF_DeleteModuleAddress failed"));
}

void tst_AddressDataSet::synchrodata_data()
{
    QTest::addColumn<bool>("open");
    QTest::addColumn<quint32>("answer");
    QTest::addColumn<int>("reads");
    QTest::addColumn<QString>("shown");
    QTest::newRow("open device") << true << quint32(0) << 2 << "A[00]B";
    QTest::newRow("switched off: nothing read") << false << quint32(0) << 0 << "";
    QTest::newRow("read fails: skipped silently") << true << quint32(GW_ERR_NOT_OPEN) << 2 << "";
}

void tst_AddressDataSet::synchrodata()
{
    QFETCH(bool, open);
    QFETCH(quint32, answer);
    QFETCH(int, reads);
    QFETCH(QString, shown);
    AddressDataSetData *read = table(AddressDataSetData::ReadAddress);
    QVERIFY(read);
    DevicesManager::Instance()->getDeviceById(m_moduleId)->updateConState(open);
    m_gw.setAddressData(m_moduleId, 1, QByteArray("A\0B", 3));
    m_gw.answer(QStringLiteral("ReadData"), answer);
    QSignalSpy boxes(read, &BaseItem::messageBox);
    read->synchrodata();
    const QList<FakeGwCall> calls = m_gw.calls(QStringLiteral("ReadData"));
    QCOMPARE(calls.size(), reads);
    if (reads) {
        QCOMPARE(calls.at(0).addressId, 1);
        QCOMPARE(calls.at(0).number, 1024);
    }
    QCOMPARE(read->addressList().first()->data(), shown);
    QCOMPARE(boxes.count(), open ? 0 : 1);
    if (!open)
        QCOMPARE(boxes.at(0), QVariantList({2, QStringLiteral("Switch the device on first")}));
}

void tst_AddressDataSet::pushedResult_reachesItsAddressOnly()
{
    AddressDataSetData *read = table(AddressDataSetData::ReadAddress);
    AddressDataSetData *write = table(AddressDataSetData::WriteAddress);
    QVERIFY(read && write);
    CommDevice *device = DevicesManager::Instance()->getDeviceById(m_moduleId);
    QByteArray block("\x01\x02", 2);
    device->ProRecvResultData(2, block.data(), block.size()); // queued to the table
    QTRY_COMPARE(read->addressList().at(1)->data(), QStringLiteral("[01][02]"));
    QCOMPARE(read->addressList().at(0)->data(), QString());
    QCOMPARE(write->addressList().at(0)->data(), QString());
    device->ProRecvResultData(77, block.data(), block.size()); // no such address: nothing happens
    QCoreApplication::processEvents();
    QCOMPARE(read->addressList().at(1)->dataList().size(), 1);
}

void tst_AddressDataSet::sendTestData_data()
{
    QTest::addColumn<QString>("dataType");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("nullAddress");
    QTest::addColumn<QString>("function"); // the write made, or empty
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("boxType");
    QTest::addColumn<QString>("message");
    const QString illegal = QStringLiteral("The text contains invalid characters");
    const QString sentOk = QStringLiteral("Sent");
    QTest::newRow("no address") << "int" << "1" << true << "" << QByteArray() << 0 << 2 << "No address selected";
    QTest::newRow("empty text") << "int" << "" << false << "" << QByteArray() << 0 << 2 << "The text to send is empty";
    QTest::newRow("string ignores case") << "String" << "OK;" << false << "WriteString" << QByteArray("OK;") << 0
                                         << 3 << sentOk;
    QTest::newRow("int list") << "int" << "1;2" << false << "WriteInt" << QByteArray("1;2;") << 2 << 3 << sentOk;
    QTest::newRow("int trailing separator") << "int" << "1;2;" << false << "" << QByteArray() << 0 << 2 << illegal;
    QTest::newRow("int empty value counted") << "int" << "1;;2" << false << "WriteInt" << QByteArray("1;;2;") << 3
                                             << 3 << sentOk;
    QTest::newRow("int with a sign") << "int" << "-1" << false << "" << QByteArray() << 0 << 2 << illegal;
    QTest::newRow("float list") << "float" << "1.5;2" << false << "WriteFloat" << QByteArray("1.5;2;") << 2 << 3
                                << sentOk;
    QTest::newRow("float empty value refused") << "float" << "1;;2" << false << "" << QByteArray() << 0 << 2
                                               << illegal;
    QTest::newRow("float comma refused") << "float" << "1,5" << false << "" << QByteArray() << 0 << 2 << illegal;
    QTest::newRow("float two points refused") << "float" << "1.2.3" << false << "" << QByteArray() << 0 << 2
                                              << illegal;
    QTest::newRow("unknown type fails") << "bool" << "1" << false << "" << QByteArray() << 0 << 2
                                        << "Sending failed";
}

void tst_AddressDataSet::sendTestData()
{
    QFETCH(QString, dataType);
    QFETCH(QString, text);
    QFETCH(bool, nullAddress);
    QFETCH(QString, function);
    QFETCH(QByteArray, sent);
    QFETCH(int, count);
    QFETCH(int, boxType);
    QFETCH(QString, message);
    AddressDataSetData *write = table(AddressDataSetData::WriteAddress);
    QVERIFY(write);
    QSignalSpy boxes(write, &BaseItem::messageBox);
    write->sendTestData(dataType, nullAddress ? nullptr : write->addressList().first(), text);
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.at(0), QVariantList({boxType, message}));
    int writes = 0;
    for (const char *f : {"WriteString", "WriteInt", "WriteFloat"})
        writes += m_gw.calls(QString::fromLatin1(f)).size();
    QCOMPARE(writes, function.isEmpty() ? 0 : 1);
    if (!function.isEmpty()) {
        const FakeGwCall call = m_gw.lastCall(function);
        QCOMPARE(call.moduleId, m_moduleId);
        QCOMPARE(call.addressId, 1001);
        QCOMPARE(call.text, sent);
        QCOMPARE(call.number, count);
    }
}

QTEST_MAIN(tst_AddressDataSet)
#include "tst_addressdataset.moc"
