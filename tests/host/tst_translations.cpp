// Every user text key that the code, the QML pages and the device descriptions
// use, and every gateway error code, has a finished English and Chinese text.
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QXmlStreamReader>
#include <QtTest>

namespace {
struct TsFile {
    QMap<QString, QSet<QString>> keys; // context -> sources with a finished translation
    QStringList problems;
};

TsFile readTs(const QString &path)
{
    TsFile ts;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        ts.problems << QStringLiteral("cannot open %1").arg(path);
        return ts;
    }
    QXmlStreamReader xml(&file);
    QString context, source;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("source")) {
            source = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            const bool unfinished = xml.attributes().value(QLatin1String("type")) == QLatin1String("unfinished");
            const QString text = xml.readElementText();
            if (unfinished || text.isEmpty())
                ts.problems << QStringLiteral("%1/%2 has no finished translation").arg(context, source);
            else
                ts.keys[context].insert(source);
        }
    }
    if (xml.hasError())
        ts.problems << QStringLiteral("%1: %2").arg(path, xml.errorString());
    return ts;
}

// key -> the file that uses it
using Usage = QMap<QString, QString>;

// "0xe000000a" or "0xE000000A" -> "0xE000000A", the key form of an error code.
QString errorCodeKey(const QString &literal)
{
    bool ok = false;
    const quint32 value = literal.toUInt(&ok, 16);
    return ok ? QStringLiteral("0x") + QString::number(value, 16).toUpper() : QString();
}

void collect(const QString &root, const QStringList &filters, const QList<QRegularExpression> &patterns, Usage &out,
             QString (*toKey)(const QString &) = nullptr)
{
    QDirIterator it(root, filters, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QString text = QString::fromUtf8(file.readAll());
        for (const QRegularExpression &re : patterns) {
            auto matches = re.globalMatch(text);
            while (matches.hasNext()) {
                const QString found = matches.next().captured(1).trimmed();
                const QString key = toKey ? toKey(found) : found;
                if (!key.isEmpty() && !out.contains(key))
                    out.insert(key, QDir(QStringLiteral(COMM_SOURCE_DIR)).relativeFilePath(path));
            }
        }
    }
}
} // namespace

class tst_Translations : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void usedKeys_haveFinishedTranslations_data();
    void usedKeys_haveFinishedTranslations();

private:
    Usage m_lumora;
    Usage m_errorCodes;
    QMap<QString, TsFile> m_files;
};

void tst_Translations::initTestCase()
{
    const QString src = QStringLiteral(COMM_SOURCE_DIR);
    for (const QString &lang : {QStringLiteral("en"), QStringLiteral("zh_CN")})
        m_files.insert(lang, readTs(src + QStringLiteral("/translations/commmanager_%1.ts").arg(lang)));

    const QList<QRegularExpression> code = {
        QRegularExpression(QStringLiteral("(?:qsLMTr|lumoraTr)\\(\\s*(?:QStringLiteral\\(|QString\\()?\\s*\"([^\"]+)\"")),
        QRegularExpression(QStringLiteral("(?:qsLMTr|lumoraTr)\\(\\s*'([^']+)'")),
        QRegularExpression(QStringLiteral("Translate\\(\\s*\"Lumora\"\\s*,\\s*\"([^\"]+)\"")),
        // Keys kept in tables and translated later (menus, tabs): any literal
        // that has the form of a key.
        QRegularExpression(QStringLiteral("[\"']((?:Lang_|Lnag_|RunParam_|Tab_)[^\"'\\n]+)[\"']")),
    };
    collect(src + QStringLiteral("/src"), {"*.cpp", "*.h", "*.qml", "*.js"}, code, m_lumora);
    collect(src + QStringLiteral("/app"), {"*.cpp", "*.h"}, code, m_lumora);
    const QList<QRegularExpression> xml = {
        QRegularExpression(QStringLiteral("<(?:DisplayName|Description|WindowTitle|ReadAddressString|WriteAddressString)>([^<]+)</")),
        QRegularExpression(QStringLiteral("<Category\\s[^>]*Name=\"([^\"]+)\"")),
    };
    collect(src + QStringLiteral("/data/modules"), {"*AlgorithmTab.xml"}, xml, m_lumora);
    // The device type names are shown translated in the device list.
    collect(src + QStringLiteral("/data/modules"), {"DeviceItemInfo.xml"},
            {QRegularExpression(QStringLiteral("<Name>([^<]+)</Name>"))}, m_lumora);

    // Error codes written as literals where a text is asked for.
    const QList<QRegularExpression> codeLiterals = {
        QRegularExpression(QStringLiteral("(?:qsErrTr|ERRORCODE_TR)\\(\\s*(?:quint32\\(|int\\()?\\s*0[xX]([0-9A-Fa-f]+)")),
        QRegularExpression(QStringLiteral("Translate\\(\\s*\"ErrorCode\"\\s*,\\s*\"0[xX]([0-9A-Fa-f]+)\"")),
    };
    collect(src + QStringLiteral("/src"), {"*.cpp", "*.h", "*.qml", "*.js"}, codeLiterals, m_errorCodes, errorCodeKey);

    QFile codes(src + QStringLiteral("/gateway/include/GwErrorCodes.h"));
    QVERIFY(codes.open(QIODevice::ReadOnly));
    auto defines = QRegularExpression(QStringLiteral("#define\\s+GW_\\w+\\s+0x([0-9A-Fa-f]+)u"))
                       .globalMatch(QString::fromUtf8(codes.readAll()));
    while (defines.hasNext()) {
        const quint32 value = defines.next().captured(1).toUInt(nullptr, 16);
        m_errorCodes.insert(QStringLiteral("0x") + QString::number(value, 16).toUpper(),
                            QStringLiteral("gateway/include/GwErrorCodes.h"));
    }
    QVERIFY(m_errorCodes.size() > 10);
    QVERIFY2(m_lumora.size() >= 5, "the key scan found almost nothing: check its patterns");
}

void tst_Translations::usedKeys_haveFinishedTranslations_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("english") << "en";
    QTest::newRow("chinese") << "zh_CN";
}

void tst_Translations::usedKeys_haveFinishedTranslations()
{
    QFETCH(QString, language);
    const TsFile ts = m_files.value(language);
    QVERIFY2(ts.problems.isEmpty(), qPrintable(ts.problems.join(QLatin1Char('\n'))));
    QStringList missing;
    for (auto it = m_lumora.cbegin(); it != m_lumora.cend(); ++it)
        if (!ts.keys.value(QStringLiteral("Lumora")).contains(it.key()))
            missing << QStringLiteral("Lumora/%1 (used in %2)").arg(it.key(), it.value());
    for (auto it = m_errorCodes.cbegin(); it != m_errorCodes.cend(); ++it)
        if (!ts.keys.value(QStringLiteral("ErrorCode")).contains(it.key()))
            missing << QStringLiteral("ErrorCode/%1 (%2)").arg(it.key(), it.value());
    QVERIFY2(missing.isEmpty(), qPrintable(missing.join(QLatin1Char('\n'))));
}

QTEST_GUILESS_MAIN(tst_Translations)
#include "tst_translations.moc"
