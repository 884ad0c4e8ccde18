#include "DevicesManager.h"
#include "ErrorCodeText.h"

#include "HostConfig.h"

#include <QtTest>

class tst_ErrorCodeText : public QObject
{
    Q_OBJECT
private slots:
    void errorCode_data();
    void errorCode();
    void qsErrTr_matchesErrorCodeText();
    void qsLMTr_followsTheLanguage_data();
    void qsLMTr_followsTheLanguage();
};

void tst_ErrorCodeText::errorCode_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("untranslated");
    QTest::newRow("zero is 0x0") << "en" << 0 << "0x0" << "Success" << false;
    QTest::newRow("module's general failure") << "en" << int(0xE00000FF) << "0xE00000FF" << "The operation failed" << false;
    QTest::newRow("chinese text") << "zh_CN" << int(0xE0000010) << "0xE0000010" << "端口必须在1到65535之间" << false;
    QTest::newRow("negative code prints its 32-bit pattern") << "en" << -1 << "0xFFFFFFFF" << "0xFFFFFFFF" << true;
    QTest::newRow("unknown code stays its key") << "en" << int(0xE0001234) << "0xE0001234" << "0xE0001234" << true;
    QTest::newRow("no leading zeros") << "en" << 0x2A << "0x2A" << "0x2A" << true;
}

void tst_ErrorCodeText::errorCode()
{
    QFETCH(QString, language);
    QFETCH(int, code);
    QFETCH(QString, key);
    QFETCH(QString, text);
    QFETCH(bool, untranslated);
    HostConfig::setLanguage(language);
    QCOMPARE(errorCodeKey(code), key);
    bool flag = !untranslated;
    QCOMPARE(ERRORCODE_TR(code, flag), text);
    QCOMPARE(flag, untranslated);
}

void tst_ErrorCodeText::qsErrTr_matchesErrorCodeText()
{
    HostConfig::setLanguage(QStringLiteral("en"));
    QCOMPARE(DevicesManager::Instance()->qsErrTr(int(0xE000000A)), QStringLiteral("No device template is prepared"));
}

void tst_ErrorCodeText::qsLMTr_followsTheLanguage_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text");
    QTest::newRow("english label") << "en" << "Lang_Rename" << "Rename";
    QTest::newRow("chinese label") << "zh_CN" << "Lang_Rename" << "重命名";
    QTest::newRow("chinese key in english") << "en" << "通信参数" << "Parameters";
    QTest::newRow("unknown key stays itself") << "zh_CN" << "Lang_NoSuchKey" << "Lang_NoSuchKey";
}

void tst_ErrorCodeText::qsLMTr_followsTheLanguage()
{
    QFETCH(QString, language);
    QFETCH(QString, key);
    QFETCH(QString, text);
    HostConfig::setLanguage(language);
    QCOMPARE(DevicesManager::Instance()->qsLMTr(key), text);
}

QTEST_GUILESS_MAIN(tst_ErrorCodeText)
#include "tst_errorcodetext.moc"
