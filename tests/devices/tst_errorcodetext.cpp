#include "ErrorCodeText.h"

#include "HostConfig.h"

#include <QtTest>

class tst_ErrorCodeText : public QObject
{
    Q_OBJECT
private slots:
    void errorCode_data();
    void errorCode();
};

void tst_ErrorCodeText::errorCode_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("untranslated");
    QTest::newRow("zero is 0x0") << 0 << "0x0" << "Success" << false;
    QTest::newRow("negative code prints its 32-bit pattern") << -1 << "0xFFFFFFFF" << "0xFFFFFFFF" << true;
    QTest::newRow("unknown code stays its key") << int(0xE0001234) << "0xE0001234" << "0xE0001234" << true;
    QTest::newRow("no leading zeros") << 0x2A << "0x2A" << "0x2A" << true;
}

void tst_ErrorCodeText::errorCode()
{
    QFETCH(int, code);
    QFETCH(QString, key);
    QFETCH(QString, text);
    QFETCH(bool, untranslated);
    HostConfig::setLanguage(QStringLiteral("en"));
    QCOMPARE(errorCodeKey(code), key);
    bool flag = !untranslated;
    QCOMPARE(ERRORCODE_TR(code, flag), text);
    QCOMPARE(errorCodeText(code), text);
    QCOMPARE(flag, untranslated);
}

QTEST_GUILESS_MAIN(tst_ErrorCodeText)
#include "tst_errorcodetext.moc"
