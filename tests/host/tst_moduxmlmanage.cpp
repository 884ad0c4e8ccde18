#include "ModuXMLManage.h"
#include "Slog.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <tinyxml2.h>

class tst_ModuXMLManage : public QObject
{
    Q_OBJECT
private slots:
    void parse_data();
    void parse();
    void parse_namedFile_readsThatFile();

private:
    void write(const QString &relative, const QByteArray &content);
    QTemporaryDir m_dir;
};

void tst_ModuXMLManage::write(const QString &relative, const QByteArray &content)
{
    const QString path = m_dir.filePath(relative);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
}

void tst_ModuXMLManage::parse_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("result");
    QTest::addColumn<QStringList>("items"); // "Type:Name" in callback order
    QTest::addColumn<QString>("logged");    // start of the HostXml line, if any

    QTest::newRow("items in document order, tabs walked")
        << QByteArray("<AlgorithmTab><Integer Name=\"A\"><CurValue>1</CurValue></Integer>"
                      "<Tab Name=\"t\"><Boolean Name=\"B\"/><Tab Name=\"inner\"><IPString Name=\"C\"/></Tab></Tab>"
                      "<EndChar Name=\"D\"/></AlgorithmTab>")
        << 0 << QStringList({"Integer:A", "Boolean:B", "IPString:C", "EndChar:D"}) << QString();
    QTest::newRow("empty root") << QByteArray("<Anything/>") << 0 << QStringList() << QString();
    QTest::newRow("malformed") << QByteArray("<AlgorithmTab><Integer Name=\"A\"></AlgorithmTab>") << -1
                               << QStringList() << "[HostXml] [parseFile@";
    QTest::newRow("missing file") << QByteArray() << -1 << QStringList() << "[HostXml] [parseFile@";
}

void tst_ModuXMLManage::parse()
{
    QFETCH(QByteArray, content);
    QFETCH(int, result);
    QFETCH(QStringList, items);
    QFETCH(QString, logged);
    HostLog::clearCaptured();
    HostLog::setCaptureEnabled(true);
    QFile::remove(m_dir.filePath(QStringLiteral("TestModule/TestModuleAlgorithmTab.xml")));
    if (!content.isEmpty())
        write(QStringLiteral("TestModule/TestModuleAlgorithmTab.xml"), content);

    QStringList seen;
    _S_TABXML_EVENTS_ events;
    events.itemCallback = [&seen](void *element, QString type) {
        auto *e = static_cast<tinyxml2::XMLElement *>(element);
        seen << type + QLatin1Char(':') + QString::fromUtf8(e->Attribute("Name"));
    };
    QCOMPARE(ModuXMLManage::Instance()->ParseModuTabXML(QStringLiteral("TestModule"), m_dir.path(), events), result);
    QCOMPARE(seen, items);

    const QList<LogRecord> records = HostLog::captured();
    HostLog::setCaptureEnabled(false);
    if (logged.isEmpty()) {
        QVERIFY(records.isEmpty());
    } else {
        QCOMPARE(records.size(), 1);
        QCOMPARE(records.first().tag, QStringLiteral("HostXml"));
        QVERIFY2(records.first().message.startsWith(logged), qPrintable(records.first().message));
        QVERIFY(records.first().message.contains(QStringLiteral("TestModuleAlgorithmTab.xml")));
    }
}

void tst_ModuXMLManage::parse_namedFile_readsThatFile()
{
    write(QStringLiteral("PnModule/PnModuleAddressAlgorithmTab.xml"),
          "<AlgorithmTab><Integer Name=\"SoftElementAddress\"/></AlgorithmTab>");
    QStringList seen;
    _S_TABXML_EVENTS_ events;
    events.itemCallback = [&seen](void *, QString type) { seen << type; };
    QCOMPARE(ModuXMLManage::Instance()->ParseModuTabXML(QStringLiteral("PnModule"),
                                                        QStringLiteral("PnModuleAddressAlgorithmTab.xml"),
                                                        m_dir.path(), events),
             0);
    QCOMPARE(seen, QStringList({"Integer"}));
    QCOMPARE(ModuXMLManage::Instance()->ParseModuTabXML(QStringLiteral("PnModule"), m_dir.path(), events), -1);
}

QTEST_GUILESS_MAIN(tst_ModuXMLManage)
#include "tst_moduxmlmanage.moc"
