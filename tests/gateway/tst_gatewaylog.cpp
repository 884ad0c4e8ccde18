// gatewayd's log: rotation by size with a few files kept, and a repeated
// line written once with its count.
#include "GatewayLog.h"

#include <QTemporaryDir>
#include <QtTest>

class tst_GatewayLog : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void repeats_data();
    void repeats();
    void rotation_keepsAFewBoundedFiles();

private:
    static QStringList lines(const QString &path);
};

void tst_GatewayLog::initTestCase()
{
    qSetMessagePattern(QStringLiteral("%{type}: %{message}"));
}

QStringList tst_GatewayLog::lines(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void tst_GatewayLog::repeats_data()
{
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<QStringList>("written");
    QTest::newRow("distinct lines as they are") << QStringList{"a", "b", "a"}
                                                << QStringList{"warning: a", "warning: b", "warning: a"};
    QTest::newRow("a burst counted before the next line")
        << QStringList{"refused", "refused", "refused", "other"}
        << QStringList{"warning: refused", "last message repeated 2 times", "warning: other"};
    QTest::newRow("a burst at the end counted on close")
        << QStringList{"x", "refused", "refused"}
        << QStringList{"warning: x", "warning: refused", "last message repeated 1 times"};
}

void tst_GatewayLog::repeats()
{
    QFETCH(QStringList, messages);
    QFETCH(QStringList, written);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("gatewayd.log"));
    {
        GatewayLog log;
        QVERIFY(log.open(path));
        log.install();
        for (const QString &message : messages)
            qWarning("%s", qPrintable(message));
    }
    QCOMPARE(lines(path), written);
}

void tst_GatewayLog::rotation_keepsAFewBoundedFiles()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("gatewayd.log"));
    const qint64 maxBytes = 1000;
    GatewayLog log;
    QVERIFY(log.open(path, maxBytes));
    log.install();
    for (int i = 0; i < 500; ++i)
        qWarning("connection %d refused: not the gateway's user", i); // distinct: no collapsing
    log.uninstall();
    QStringList kept = QDir(dir.path()).entryList(QDir::Files, QDir::Name);
    QCOMPARE(kept, (QStringList{"gatewayd.log", "gatewayd.log.1", "gatewayd.log.2", "gatewayd.log.3"}));
    for (const QString &name : kept)
        QVERIFY2(QFileInfo(dir.filePath(name)).size() <= maxBytes, qPrintable(name));
    // The newest line is in the current file, the one before the oldest kept
    // file's first line in the rotated .1 ... .3 in order.
    QVERIFY(lines(path).last().endsWith(QLatin1String("connection 499 refused: not the gateway's user")));
    const int firstOf1 = lines(path + QStringLiteral(".1")).first().section(QLatin1Char(' '), 2, 2).toInt();
    const int lastOf2 = lines(path + QStringLiteral(".2")).last().section(QLatin1Char(' '), 2, 2).toInt();
    QCOMPARE(firstOf1, lastOf2 + 1);
}

QTEST_GUILESS_MAIN(tst_GatewayLog)
#include "tst_gatewaylog.moc"
