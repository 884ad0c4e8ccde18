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
    void addEntry_cutsKeyAndValueAt127Bytes();
    void addEntry_fullRecord_refusesTheEntry();
    void value_readsUpToNulWithinField();
};

void tst_GwParamRecord::boundedCopy_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<int>("size");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("exactly size-1") << QByteArray(127, 'a') << 128 << QByteArray(127, 'a');
    QTest::newRow("one too long") << QByteArray(128, 'b') << 128 << QByteArray(127, 'b');
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

// Keys and values arrive cut to 127 bytes; the rest of the field stays zero.
void tst_GwParamRecord::addEntry_cutsKeyAndValueAt127Bytes()
{
    GwParamRecord record;
    QVERIFY(record.isValid());
    QCOMPARE(record.addEntry(QByteArray(130, 'k'), QByteArray(200, 'v')), 0);
    QCOMPARE(record.count(), 1);
    QCOMPARE(record.data()->count, 1);
    QCOMPARE(record.key(0), QByteArray(127, 'k'));
    QCOMPARE(record.value(0), QByteArray(127, 'v'));
    const char *field = record.data()->entries[0].value;
    for (int i = 127; i < GW_PARAM_VALUE_SIZE; ++i)
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
