// The page's colours and font sizes come from its theme (Theme.qml): no other
// QML file of the page writes a colour or a font size of its own.
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QtTest>

class tst_QmlTheme : public QObject
{
    Q_OBJECT
private slots:
    void noLiteralOutsideTheTheme_data();
    void noLiteralOutsideTheTheme();
};

void tst_QmlTheme::noLiteralOutsideTheTheme_data()
{
    QTest::addColumn<QString>("path");
    const QDir dir(QStringLiteral(COMM_QML_DIR));
    const QStringList files = dir.entryList({QStringLiteral("*.qml"), QStringLiteral("*.js")}, QDir::Files);
    QVERIFY(files.contains(QStringLiteral("Theme.qml")));
    for (const QString &file : files) {
        if (file != QLatin1String("Theme.qml"))
            QTest::newRow(qPrintable(file)) << dir.filePath(file);
    }
}

void tst_QmlTheme::noLiteralOutsideTheTheme()
{
    QFETCH(QString, path);
    // "#RRGGBB" anywhere, a colour named in a colour property (transparent is
    // no colour), a number given as a font size.
    static const QRegularExpression literal(
        QStringLiteral(R"("#[0-9A-Fa-f]{3,8}"|[cC]olor\s*:\s*"(?!transparent")|(pixelSize|pointSize|fontSize)\s*:\s*\d)"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    QStringList found;
    int line = 0;
    while (!file.atEnd()) {
        const QString text = QString::fromUtf8(file.readLine());
        ++line;
        if (literal.match(text).hasMatch())
            found << QStringLiteral("%1: %2").arg(line).arg(text.trimmed());
    }
    QVERIFY2(found.isEmpty(), qPrintable(found.join(QLatin1Char('\n'))));
}

QTEST_GUILESS_MAIN(tst_QmlTheme)

#include "tst_qmltheme.moc"
