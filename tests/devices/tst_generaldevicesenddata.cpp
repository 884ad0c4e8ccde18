#include "GeneralDeviceSendData.h"

#include <QSignalSpy>
#include <QtTest>

class tst_GeneralDeviceSendData : public QObject
{
    Q_OBJECT
private slots:
    void hexToString_data();
    void hexToString();
    void setters_notifyAsTheViewExpects();
};

void tst_GeneralDeviceSendData::hexToString_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("output");
    QTest::addColumn<bool>("null");
    QTest::newRow("pairs with blanks") << "41 42 43" << "ABC" << false;
    QTest::newRow("odd tail dropped") << "4 1 4" << "A" << false;
    QTest::newRow("cut at zero byte") << "41 42 00 43" << "AB" << false;
    QTest::newRow("lower case") << "6a6B" << "jk" << false;
    QTest::newRow("other separators skipped by the decoder") << "41,,42" << "AB" << false;
    QTest::newRow("high byte as Latin-1") << "E9" << QString(QChar(0xE9)) << false;
    QTest::newRow("empty input") << "" << "" << true;
    QTest::newRow("only blanks") << "   " << "" << true;
}

void tst_GeneralDeviceSendData::hexToString()
{
    QFETCH(QString, input);
    QFETCH(QString, output);
    QFETCH(bool, null);
    const QString result = GeneralDeviceSendData::hexToString(input);
    QCOMPARE(result, output);
    QCOMPARE(result.isNull(), null);
}

void tst_GeneralDeviceSendData::setters_notifyAsTheViewExpects()
{
    GeneralDeviceSendData data;
    QCOMPARE(data.text(), QStringLiteral("TestData"));
    QVERIFY(!data.hexEnable());
    QSignalSpy text(&data, &GeneralDeviceSendData::textChanged);
    QSignalSpy hex(&data, &GeneralDeviceSendData::hexEnableChanged);
    data.setText(QStringLiteral("hello"));
    data.setHexEnable(false);
    QCOMPARE(data.text(), QStringLiteral("hello"));
    QCOMPARE(text.count(), 0); // the field already shows what it stored
    QCOMPARE(hex.count(), 1);  // always re-announced
}

QTEST_GUILESS_MAIN(tst_GeneralDeviceSendData)
#include "tst_generaldevicesenddata.moc"
