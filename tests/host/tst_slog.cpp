#include "Slog.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>
#include <thread>
#include <vector>

class tst_Slog : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void record_writesTimestampedLineToFile();
    void longRecord_neverEndsInHalfACharacter_data();
    void longRecord_neverEndsInHalfACharacter();
    void concurrentWriters_loseNoRecord();

private:
    QTemporaryDir m_dir;
};

void tst_Slog::init()
{
    HostLog::setLogFile(m_dir.filePath(QStringLiteral("state/commmanager.log")));
    HostLog::clearCaptured();
    HostLog::setCaptureEnabled(true);
}

void tst_Slog::cleanup()
{
    HostLog::setCaptureEnabled(false);
    HostLog::setLogFile(QString());
    QFile::remove(m_dir.filePath(QStringLiteral("state/commmanager.log")));
}

void tst_Slog::record_writesTimestampedLineToFile()
{
    Slog_LogPrint("CommManager", 4, "hello %s", "file");
    Slog_LogPrint("Other", 2, "second");
    QFile file(HostLog::logFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 2);
    const QRegularExpression line(QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} 4 CommManager hello file$"));
    QVERIFY2(line.match(lines.at(0)).hasMatch(), qPrintable(lines.at(0)));
    QVERIFY(lines.at(1).endsWith(QLatin1String(" 2 Other second")));
}

// The record buffer holds 8191 bytes of text; a three-byte character that
// straddles its end is dropped whole.
void tst_Slog::longRecord_neverEndsInHalfACharacter_data()
{
    QTest::addColumn<int>("prefix");
    QTest::addColumn<int>("expectedChinese");
    QTest::newRow("one byte of the character fits") << 8190 << 0;
    QTest::newRow("two bytes of the character fit") << 8189 << 0;
    QTest::newRow("the character fits exactly") << 8188 << 1;
}

void tst_Slog::longRecord_neverEndsInHalfACharacter()
{
    QFETCH(int, prefix);
    QFETCH(int, expectedChinese);
    const QByteArray text = QByteArray(prefix, 'x') + QByteArray("通信管理");
    Slog_LogPrint("CommManager", 4, "%s", text.constData());
    const QString message = HostLog::captured().value(0).message;
    QCOMPARE(message.count(QLatin1Char('x')), prefix);
    QCOMPARE(message.size(), prefix + expectedChinese);
    QVERIFY(!message.contains(QChar::ReplacementCharacter));

    QFile file(HostLog::logFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray line = file.readAll();
    QVERIFY(line.endsWith(QByteArray(expectedChinese ? "x通\n" : "x\n")));
}

void tst_Slog::concurrentWriters_loseNoRecord()
{
    constexpr int kThreads = 4;
    constexpr int kRecords = 200;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < kRecords; ++i)
                Slog_LogPrint("CommManager", 4, "thread %d record %d", t, i);
        });
    }
    for (auto &t : threads)
        t.join();
    QCOMPARE(HostLog::captured().size(), kThreads * kRecords);
    QFile file(HostLog::logFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll().count('\n'), kThreads * kRecords);
}

QTEST_GUILESS_MAIN(tst_Slog)
#include "tst_slog.moc"
