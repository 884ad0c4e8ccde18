#include "HostConfig.h"
#include "LanguageHelper.h"

#include <QtTest>
#include <atomic>
#include <thread>
#include <vector>

class tst_LanguageHelper : public QObject
{
    Q_OBJECT
private slots:
    void cleanup();
    void translate_data();
    void translate();
    void concurrentReaders_whileLanguageSwitches();
};

void tst_LanguageHelper::cleanup()
{
    HostConfig::setLanguage(QStringLiteral("zh_CN"));
}

void tst_LanguageHelper::translate_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QByteArray>("context");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("expected");

    QTest::newRow("chinese phrase key in english") << "en" << QByteArray("Lumora") << QByteArray("通信管理")
                                                   << "Communication";
    QTest::newRow("error code context") << "en" << QByteArray("ErrorCode") << QByteArray("0xE00000FF")
                                        << "The operation failed";
    QTest::newRow("success code in chinese") << "zh_CN" << QByteArray("ErrorCode") << QByteArray("0x0")
                                             << QString::fromUtf8("成功");
    QTest::newRow("missing key returns itself") << "en" << QByteArray("Lumora") << QByteArray("Lang_NoSuchKey")
                                                << "Lang_NoSuchKey";
    QTest::newRow("missing chinese key returns itself") << "zh_CN" << QByteArray("Lumora")
                                                        << QByteArray("没有的键") << QString::fromUtf8("没有的键");
    QTest::newRow("unknown language falls back to english") << "de" << QByteArray("Lumora")
                                                            << QByteArray("Lang_Delete") << "Delete";
}

void tst_LanguageHelper::translate()
{
    QFETCH(QString, language);
    QFETCH(QByteArray, context);
    QFETCH(QByteArray, key);
    QFETCH(QString, expected);
    HostConfig::setLanguage(language);
    QCOMPARE(LanguageHelper::Translate(context.constData(), key.constData()), expected);
}

// Error texts are also built on the gateway's threads: translating there while
// the GUI thread changes the language must neither race nor mix tables.
void tst_LanguageHelper::concurrentReaders_whileLanguageSwitches()
{
    const QString english = QStringLiteral("Delete");
    const QString chinese = QString::fromUtf8("删除");
    std::atomic<bool> stop{false};
    std::atomic<int> wrong{0};
    std::vector<std::thread> readers;
    for (int t = 0; t < 3; ++t) {
        readers.emplace_back([&] {
            while (!stop.load()) {
                const QString text = LanguageHelper::Translate("Lumora", "Lang_Delete");
                if (text != english && text != chinese)
                    ++wrong;
            }
        });
    }
    int mismatches = 0;
    for (int i = 0; i < 200; ++i) {
        const bool en = i % 2;
        HostConfig::setLanguage(en ? QStringLiteral("en") : QStringLiteral("zh_CN"));
        if (LanguageHelper::Translate("Lumora", "Lang_Delete") != (en ? english : chinese))
            ++mismatches;
    }
    stop = true;
    for (auto &r : readers)
        r.join();
    QCOMPARE(mismatches, 0);
    QCOMPARE(wrong.load(), 0);
}

QTEST_GUILESS_MAIN(tst_LanguageHelper)
#include "tst_languagehelper.moc"
