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
    QTest::addColumn<bool>("readIsMessage"); // each read ends with a boundary (a datagram)
    using L = QList<QByteArray>;
    auto row = [](const char *name, const char *endChar, int maxFrame, const L &reads, const L &frames, int dropped,
                  bool readIsMessage = false) {
        QTest::newRow(name) << QByteArray(endChar) << maxFrame << reads << frames << dropped << readIsMessage;
    };
    row("CR LF lines in one read", "\r\n", 64, {"a\r\nbc\r\n"}, {"a\r\n", "bc\r\n"}, 0);
    row("frame over many reads", "\r\n", 64, {"he", "llo", " world\r\n"}, {"hello world\r\n"}, 0);
    row("end sequence split across reads", "\r\n", 64, {"abc\r", "\ndef\r", "\n"}, {"abc\r\n", "def\r\n"}, 0);
    row("three-byte end split twice", "END", 64, {"xE", "N", "Dy"}, {"xEND"}, 0);
    row("single end byte", ";", 64, {"1;2;3"}, {"1;", "2;"}, 0);
    row("lone CR is data", "\r\n", 64, {"a\rb\r\n"}, {"a\rb\r\n"}, 0);
    row("no end char, chunks as they come", "", 4, {"abcdefghij", "k"}, {"abcd", "efgh", "ij", "k"}, 0);
    row("over-long run dropped, next frame kept", "\n", 8, {"0123456789", "abc\nok\n"}, {"ok\n"}, 1);
    row("over-long single read dropped", "\n", 4, {"abcdefgh\nxy\n"}, {"xy\n"}, 1);
    row("over-long run ends with split end", "\r\n", 4, {"abcdefgh\r", "\nok\r\n"}, {"ok\r\n"}, 1);
    row("frame of exactly the limit", "\n", 4, {"abc\n"}, {"abc\n"}, 0);
    row("end split across reads makes frame too long", "\r\n", 4, {"abc\r", "\nok\r\n"}, {"ok\r\n"}, 1);
    row("over-long run over many reads counted once", "\n", 4, {"abc", "def", "ghi", "jk\n", "z\n"}, {"z\n"}, 1);
    row("two over-long runs", "\n", 4, {"abcdefg\nhijklmn\nok\n"}, {"ok\n"}, 2);
    row("no end char, read of exactly the limit", "", 4, {"abcd"}, {"abcd"}, 0);
    row("empty read", "\n", 8, {""}, {}, 0);
    row("message without end is a frame of its own", "\r\n", 64, {"ab", "c\r\nd", "e\r\n"},
        {"ab", "c\r\n", "d", "e\r\n"}, 0, true);
    row("end split across messages is not joined", "\r\n", 64, {"a\r", "\nb"}, {"a\r", "\nb"}, 0, true);
    row("over-long message stays dropped", "\n", 4, {"abcdefg", "x\n"}, {"x\n"}, 1, true);
}

void tst_FrameSplitter::feed()
{
    QFETCH(QByteArray, endChar);
    QFETCH(int, maxFrame);
    QFETCH(QList<QByteArray>, reads);
    QFETCH(QList<QByteArray>, frames);
    QFETCH(int, dropped);
    QFETCH(bool, readIsMessage);
    FrameSplitter splitter(endChar, maxFrame);
    QList<QByteArray> got;
    for (const QByteArray &read : reads) {
        splitter.feed(read.constData(), read.size(), got);
        if (readIsMessage)
            splitter.flush(got);
    }
    QCOMPARE(got, frames);
    QCOMPARE(int(splitter.dropped()), dropped);
    QVERIFY(splitter.pending() <= maxFrame);
}

QTEST_APPLESS_MAIN(tst_FrameSplitter)
#include "tst_framesplitter.moc"
