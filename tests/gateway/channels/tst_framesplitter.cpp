#include "FrameSplitter.h"

#include <QtTest>

class tst_FrameSplitter : public QObject
{
    Q_OBJECT
private slots:
    void feed_data();
    void feed();
};

void tst_FrameSplitter::feed_data()
{
    QTest::addColumn<QByteArray>("endChar");
    QTest::addColumn<int>("maxFrame");
    QTest::addColumn<QList<QByteArray>>("reads");
    QTest::addColumn<QList<QByteArray>>("frames");
    QTest::addColumn<int>("dropped");
    using L = QList<QByteArray>;
    QTest::newRow("CR LF lines in one read") << QByteArray("\r\n") << 64 << L{"a\r\nbc\r\n"} << L{"a\r\n", "bc\r\n"} << 0;
    QTest::newRow("frame over many reads") << QByteArray("\r\n") << 64 << L{"he", "llo", " world\r\n"}
                                           << L{"hello world\r\n"} << 0;
    QTest::newRow("end sequence split across reads") << QByteArray("\r\n") << 64 << L{"abc\r", "\ndef\r", "\n"}
                                                     << L{"abc\r\n", "def\r\n"} << 0;
    QTest::newRow("three-byte end split twice") << QByteArray("END") << 64 << L{"xE", "N", "Dy"} << L{"xEND"} << 0;
    QTest::newRow("single end byte") << QByteArray(";") << 64 << L{"1;2;3"} << L{"1;", "2;"} << 0;
    QTest::newRow("lone CR is data") << QByteArray("\r\n") << 64 << L{"a\rb\r\n"} << L{"a\rb\r\n"} << 0;
    QTest::newRow("no end char, chunks as they come") << QByteArray() << 4 << L{"abcdefghij", "k"}
                                                      << L{"abcd", "efgh", "ij", "k"} << 0;
    QTest::newRow("over-long run dropped, next frame kept") << QByteArray("\n") << 8 << L{"0123456789", "abc\nok\n"}
                                                            << L{"ok\n"} << 1;
    QTest::newRow("over-long single read dropped") << QByteArray("\n") << 4 << L{"abcdefgh\nxy\n"} << L{"xy\n"} << 1;
    QTest::newRow("over-long run ends with split end") << QByteArray("\r\n") << 4 << L{"abcdefgh\r", "\nok\r\n"}
                                                       << L{"ok\r\n"} << 1;
    QTest::newRow("frame of exactly the limit") << QByteArray("\n") << 4 << L{"abc\n"} << L{"abc\n"} << 0;
    QTest::newRow("end split across reads makes frame too long")
        << QByteArray("\r\n") << 4 << L{"abc\r", "\nok\r\n"} << L{"ok\r\n"} << 1;
    QTest::newRow("over-long run over many reads counted once")
        << QByteArray("\n") << 4 << L{"abc", "def", "ghi", "jk\n", "z\n"} << L{"z\n"} << 1;
    QTest::newRow("two over-long runs") << QByteArray("\n") << 4 << L{"abcdefg\nhijklmn\nok\n"} << L{"ok\n"} << 2;
    QTest::newRow("no end char, read of exactly the limit") << QByteArray() << 4 << L{"abcd"} << L{"abcd"} << 0;
    QTest::newRow("empty read") << QByteArray("\n") << 8 << L{""} << L{} << 0;
}

void tst_FrameSplitter::feed()
{
    QFETCH(QByteArray, endChar);
    QFETCH(int, maxFrame);
    QFETCH(QList<QByteArray>, reads);
    QFETCH(QList<QByteArray>, frames);
    QFETCH(int, dropped);
    FrameSplitter splitter(endChar, maxFrame);
    QList<QByteArray> got;
    for (const QByteArray &read : reads)
        splitter.feed(read.constData(), read.size(), got);
    QCOMPARE(got, frames);
    QCOMPARE(int(splitter.dropped()), dropped);
    QVERIFY(splitter.pending() <= maxFrame);
}

QTEST_APPLESS_MAIN(tst_FrameSplitter)
#include "tst_framesplitter.moc"
