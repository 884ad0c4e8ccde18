#include "GeneralDeviceSendData.h"

#include <QtTest>

class tst_GeneralDeviceSendData : public QObject
{
    Q_OBJECT
private slots:
    void hexConversion_data();
    void hexConversion();
};

// Both directions of the send panel's field, as ticking ("to hex") and
// unticking ("from hex") the hex box rewrite it; gwSendData decodes the same way.
void tst_GeneralDeviceSendData::hexConversion_data()
{
    QTest::addColumn<bool>("toHex");
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("expected");
    QTest::newRow("to hex: letters, blank separated") << true << "AB" << "41 42";
    QTest::newRow("to hex: control characters padded to two digits") << true << "A\r\n" << "41 0D 0A";
    QTest::newRow("to hex: a character above U+00FF keeps all its digits") << true << QString::fromUtf8("A中")
                                                                           << "41 4E2D";
    QTest::newRow("to hex: empty") << true << "" << "";
    QTest::newRow("from hex: blanks anywhere") << false << "4 1 4 2" << "AB";
    QTest::newRow("from hex: odd last digit dropped") << false << "41 424" << "AB";
    QTest::newRow("from hex: lower case") << false << "6a 6B" << "jk";
    QTest::newRow("from hex: a pair that is not hexadecimal is skipped") << false << "41 ZZ 42" << "AB";
    QTest::newRow("from hex: a zero byte ends the text") << false << "41 42 00 43" << "AB";
    QTest::newRow("from hex: a code above FF comes back as its bytes") << false << "41 4E2D" << "AN-";
}

void tst_GeneralDeviceSendData::hexConversion()
{
    QFETCH(bool, toHex);
    QFETCH(QString, input);
    QFETCH(QString, expected);
    QCOMPARE(toHex ? GeneralDeviceSendData::stringToHex(input) : GeneralDeviceSendData::hexToString(input), expected);
}

QTEST_GUILESS_MAIN(tst_GeneralDeviceSendData)
#include "tst_generaldevicesenddata.moc"
