// One address entry: the overlap rule, the decoding of received blocks into
// the text and the two bounded histories, and the pacing of the list signals.
#include "AddressInfo.h"

#include <QSignalSpy>
#include <QtTest>

using CommunicationControl::AddressInfo;

class tst_AddressInfo : public QObject
{
    Q_OBJECT
private slots:
    void checkValid_data();
    void checkValid();
    void setDeviceId_keepsOnlyTheFlag_data();
    void setDeviceId_keepsOnlyTheFlag();
    void updateData_decodes_data();
    void updateData_decodes();
    void updateData_text_leavesHistories();
    void updateData_beyondBound_dropsOldest();
    void updateData_paced_notifiesOncePer100ms();
    void updateData_burst_lastEntriesAnnouncedAfterPause();
    void clearDataList_emptiesBoth();
};

void tst_AddressInfo::checkValid_data()
{
    QTest::addColumn<int>("factor");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("newFirst");
    QTest::addColumn<int>("newLength");
    QTest::addColumn<bool>("free");
    // An entry at 10 with 4 elements: [10, 18) on EtherNet/IP, [10, 14) on PROFINET.
    QTest::newRow("eip right after the end") << 2 << 10 << 4 << 18 << 1 << true;
    QTest::newRow("eip last unit taken") << 2 << 10 << 4 << 17 << 1 << false;
    QTest::newRow("eip ends at the start") << 2 << 10 << 4 << 6 << 2 << true;
    QTest::newRow("eip one unit into the start") << 2 << 10 << 4 << 6 << 3 << false;
    QTest::newRow("profinet right after the end") << 1 << 10 << 4 << 14 << 1 << true;
    QTest::newRow("profinet last unit taken") << 1 << 10 << 4 << 13 << 5 << false;
    QTest::newRow("profinet covers the entry") << 1 << 10 << 4 << 0 << 100 << false;
    QTest::newRow("profinet inside the entry") << 1 << 10 << 4 << 11 << 1 << false;
    QTest::newRow("huge length does not wrap") << 2 << 10 << 4 << 0 << 2000000000 << false;
}

void tst_AddressInfo::checkValid()
{
    QFETCH(int, factor);
    QFETCH(int, first);
    QFETCH(int, length);
    QFETCH(int, newFirst);
    QFETCH(int, newLength);
    QFETCH(bool, free);
    AddressInfo entry(nullptr, factor);
    entry.setFirstAddr(first);
    entry.setAddrLength(length);
    QCOMPARE(entry.CheckValid(newFirst, newLength), free);
}

void tst_AddressInfo::setDeviceId_keepsOnlyTheFlag_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("readBack");
    QTest::newRow("negative") << -3 << 1;
    QTest::newRow("zero") << 0 << 0;
}

void tst_AddressInfo::setDeviceId_keepsOnlyTheFlag()
{
    QFETCH(int, id);
    QFETCH(int, readBack);
    AddressInfo entry(nullptr, 1);
    QSignalSpy changed(&entry, &AddressInfo::deviceIdChanged);
    entry.setDeviceId(id);
    QCOMPARE(entry.deviceId(), readBack);
    QCOMPARE(entry.property("deviceId").toInt(), readBack);
    QCOMPARE(changed.count(), 1);
}

void tst_AddressInfo::updateData_decodes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("hex");
    QTest::newRow("nul between letters") << QByteArray("A\0B", 3) << "A[00]B" << "[41][00][42]";
    QTest::newRow("edges of printable") << QByteArray("\x1f \x7e\x7f") << "[1F] ~[7F]" << "[1F][20][7E][7F]";
    QTest::newRow("high bytes unsigned") << QByteArray("\xff\x80") << "[FF][80]" << "[FF][80]";
    QTest::newRow("empty block") << QByteArray() << "" << "";
}

void tst_AddressInfo::updateData_decodes()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QFETCH(QString, hex);
    AddressInfo entry(nullptr, 1);
    QSignalSpy dataChanged(&entry, &AddressInfo::dataChanged);
    entry.UpdateData(bytes);
    QCOMPARE(entry.data(), text);
    QCOMPARE(dataChanged.count(), 1);
    QCOMPARE(entry.dataList().size(), 1);
    QCOMPARE(entry.hexDataList().size(), 1);
    const QString textEntry = entry.dataList().first();
    const QString hexEntry = entry.hexDataList().first();
    static const QRegularExpression stamped(
        QStringLiteral("^\\[\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}\\] "));
    QVERIFY2(stamped.match(textEntry).hasMatch(), qPrintable(textEntry));
    QCOMPARE(textEntry.mid(26), text);
    QCOMPARE(hexEntry.mid(26), hex);
    QCOMPARE(textEntry.left(26), hexEntry.left(26)); // one time stamp for both
}

void tst_AddressInfo::updateData_text_leavesHistories()
{
    AddressInfo entry(nullptr, 1);
    entry.UpdateData(QByteArray("x"));
    QSignalSpy dataChanged(&entry, &AddressInfo::dataChanged);
    QSignalSpy listChanged(&entry, &AddressInfo::dataListChanged);
    entry.UpdateData(QStringLiteral("shown as it is [00]"));
    QCOMPARE(entry.data(), QStringLiteral("shown as it is [00]"));
    QCOMPARE(dataChanged.count(), 1);
    QCOMPARE(listChanged.count(), 0);
    QCOMPARE(entry.dataList().size(), 1);
}

void tst_AddressInfo::updateData_beyondBound_dropsOldest()
{
    AddressInfo entry(nullptr, 2);
    for (int i = 0; i <= AddressInfo::kMaxHistory; ++i) // 201 blocks
        entry.UpdateData(QByteArray::number(i));
    const QStringList text = entry.dataList();
    const QStringList hex = entry.hexDataList();
    QCOMPARE(text.size(), 200);
    QCOMPARE(hex.size(), 200);
    QCOMPARE(text.first().mid(26), QStringLiteral("1"));
    QCOMPARE(text.last().mid(26), QStringLiteral("200"));
    QCOMPARE(hex.first().mid(26), QStringLiteral("[31]"));
}

void tst_AddressInfo::updateData_paced_notifiesOncePer100ms()
{
    AddressInfo entry(nullptr, 1);
    QSignalSpy listChanged(&entry, &AddressInfo::dataListChanged);
    QSignalSpy hexChanged(&entry, &AddressInfo::hexDataListChanged);
    entry.UpdateData(QByteArray("early")); // within 100 ms of construction: silent
    QCOMPARE(listChanged.count(), 0);
    QTest::qWait(120); // the pending announcement fires once
    QCOMPARE(listChanged.count(), 1);
    QTest::qWait(120);
    entry.UpdateData(QByteArray("a"));
    entry.UpdateData(QByteArray("b")); // right after: no second announcement
    QCOMPARE(listChanged.count(), 2);
    QCOMPARE(hexChanged.count(), 2);
    QCOMPARE(entry.dataList().size(), 3); // the list grows all the same
}

void tst_AddressInfo::updateData_burst_lastEntriesAnnouncedAfterPause()
{
    AddressInfo entry(nullptr, 1);
    QTest::qWait(120);
    QSignalSpy listChanged(&entry, &AddressInfo::dataListChanged);
    for (int i = 0; i < 5; ++i)
        entry.UpdateData(QByteArray::number(i));
    QCOMPARE(listChanged.count(), 1);
    // Without a later update the rest of the burst would never be announced.
    QTRY_COMPARE_WITH_TIMEOUT(listChanged.count(), 2, 1000);
    QTest::qWait(150);
    QCOMPARE(listChanged.count(), 2);
}

void tst_AddressInfo::clearDataList_emptiesBoth()
{
    AddressInfo entry(nullptr, 1);
    entry.UpdateData(QByteArray("a"));
    QSignalSpy listChanged(&entry, &AddressInfo::dataListChanged);
    QSignalSpy hexChanged(&entry, &AddressInfo::hexDataListChanged);
    entry.clearDataList();
    QVERIFY(entry.dataList().isEmpty());
    QVERIFY(entry.hexDataList().isEmpty());
    QCOMPARE(entry.data(), QStringLiteral("a")); // the last text stays shown
    QCOMPARE(listChanged.count(), 1);
    QCOMPARE(hexChanged.count(), 1);
}

QTEST_GUILESS_MAIN(tst_AddressInfo)
#include "tst_addressinfo.moc"
