#include "GwParamRecord.h"

#include <QtTest>
#include <cstring>

class tst_GwParamRecord : public QObject
{
    Q_OBJECT
private slots:
    void boundedCopy_data();
    void boundedCopy();
    void boundedCopy_missingArguments_copiesNothing();
    void addEntry_cutsKeyAndValueAt127Bytes_data();
    void addEntry_cutsKeyAndValueAt127Bytes();
    void addEntry_fullRecord_refusesTheEntry();
    void setEntry_fixedSlots_leaveCountToCaller();
    void value_readsUpToNulWithinField();
};

void tst_GwParamRecord::boundedCopy_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<int>("size");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("fits") << QByteArray("ConnectState") << 128 << QByteArray("ConnectState");
    QTest::newRow("exactly size-1") << QByteArray(127, 'a') << 128 << QByteArray(127, 'a');
    QTest::newRow("one too long") << QByteArray(128, 'b') << 128 << QByteArray(127, 'b');
    QTest::newRow("200 bytes") << QByteArray(200, 'c') << 128 << QByteArray(127, 'c');
    QTest::newRow("empty source") << QByteArray("") << 128 << QByteArray("");
    QTest::newRow("size one holds only the NUL") << QByteArray("xyz") << 1 << QByteArray("");
}

void tst_GwParamRecord::boundedCopy()
{
    QFETCH(QByteArray, source);
    QFETCH(int, size);
    QFETCH(QByteArray, expected);
    QByteArray dst(size + 8, '#'); // guard bytes after the field must survive
    GwParamRecord::boundedCopy(dst.data(), size, source.constData(), source.size());
    QCOMPARE(QByteArray(dst.constData()), expected);
    QCOMPARE(dst.mid(size), QByteArray(8, '#'));
}

void tst_GwParamRecord::boundedCopy_missingArguments_copiesNothing()
{
    char dst[8];
    std::memset(dst, '#', sizeof(dst));
    GwParamRecord::boundedCopy(dst, sizeof(dst), nullptr, 3);
    GwParamRecord::boundedCopy(dst, 0, "abc", 3);
    GwParamRecord::boundedCopy(nullptr, sizeof(dst), "abc", 3);
    QCOMPARE(QByteArray(dst, sizeof(dst)), QByteArray(8, '#'));
}

void tst_GwParamRecord::addEntry_cutsKeyAndValueAt127Bytes_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("storedValue");
    QTest::newRow("short value") << QByteArray("TargetPort") << QByteArray("8000") << QByteArray("8000");
    QTest::newRow("200-byte value arrives as 127")
        << QByteArray("EndChar") << QByteArray(200, 'v') << QByteArray(127, 'v');
    QTest::newRow("negative number") << QByteArray("Offset") << QByteArray("-5") << QByteArray("-5");
    QTest::newRow("empty value") << QByteArray("PortName") << QByteArray() << QByteArray();
}

void tst_GwParamRecord::addEntry_cutsKeyAndValueAt127Bytes()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, storedValue);
    GwParamRecord record;
    QVERIFY(record.isValid());
    QCOMPARE(record.addEntry(key, value), 0);
    QCOMPARE(record.count(), 1);
    QCOMPARE(record.data()->count, 1);
    QCOMPARE(record.key(0), key);
    QCOMPARE(record.value(0), storedValue);
    // The rest of the value field stays zero.
    const char *field = record.data()->entries[0].value;
    for (int i = storedValue.size(); i < GW_PARAM_VALUE_SIZE; ++i)
        QCOMPARE(field[i], '\0');
}

void tst_GwParamRecord::addEntry_fullRecord_refusesTheEntry()
{
    GwParamRecord record;
    for (int i = 0; i < GW_PARAM_MAX_ENTRIES; ++i)
        QCOMPARE(record.addEntry(QByteArray("k") + QByteArray::number(i), "v"), i);
    QCOMPARE(record.addEntry("overflow", "v"), -1);
    QCOMPARE(record.count(), GW_PARAM_MAX_ENTRIES);
    QCOMPARE(record.key(GW_PARAM_MAX_ENTRIES - 1), QByteArray("k127"));
}

void tst_GwParamRecord::setEntry_fixedSlots_leaveCountToCaller()
{
    GwParamRecord record;
    record.setEntry(1, "SoftElementAddress", "100");
    record.setEntry(2, "SoftElementNum", "4");
    QCOMPARE(record.count(), 0);
    record.setCount(2);
    QCOMPARE(record.data()->count, 2);
    QCOMPARE(record.key(0), QByteArray());
    QCOMPARE(record.value(2), QByteArray("4"));
    record.setEntry(GW_PARAM_MAX_ENTRIES, "out", "of range"); // ignored, no write past the array
    record.setCount(1000);
    QCOMPARE(record.count(), GW_PARAM_MAX_ENTRIES);
}

void tst_GwParamRecord::value_readsUpToNulWithinField()
{
    GwParamRecord record;
    record.addEntry("ConnectState");
    // The gateway fills the whole 640-byte field without a NUL: read stays inside it.
    std::memset(record.data()->entries[0].value, 'x', GW_PARAM_VALUE_SIZE);
    QCOMPARE(record.value(0).size(), GW_PARAM_VALUE_SIZE);
    std::memcpy(record.data()->entries[0].value, "True\0rest", 9);
    QCOMPARE(record.value(0), QByteArray("True"));
}

QTEST_GUILESS_MAIN(tst_GwParamRecord)
#include "tst_gwparamrecord.moc"
