// The reader of PROFINET's device description: which bits of which fixed
// address get which text, what a malformed description does, and that the
// shipped description names the bits the gateway drives.
#include "GSDMLXMLHelper.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using CommunicationControl::GSDMLXMLHelper;

namespace {
constexpr char kFile[] = "ProfinetModule/ProfinetModuleFixedAddressParam.xml";

// A description whose ID_Mod_1 holds `io` (Input and/or Output elements)
// and whose primary language holds `texts`.
QByteArray description(const QByteArray &io, const QByteArray &texts = "<Text TextId=\"T\" Value=\"Trigger\"/>",
                       const QByteArray &moduleId = "ID_Mod_1")
{
    return "<ISO15745Profile><ProfileBody><ApplicationProcess><ModuleList>"
           "<ModuleItem ID=\"" + moduleId + "\"><ModuleInfo/><VirtualSubmoduleList><VirtualSubmoduleItem><IOData>"
        + io
        + "</IOData></VirtualSubmoduleItem></VirtualSubmoduleList></ModuleItem>"
          "</ModuleList><ExternalTextList><PrimaryLanguage>"
        + texts + "</PrimaryLanguage></ExternalTextList></ApplicationProcess></ProfileBody></ISO15745Profile>";
}

QByteArray bits(const QByteArray &useAsBits, const QByteArray &children)
{
    return "<DataItem DataType=\"Unsigned8\"" + (useAsBits.isNull() ? QByteArray() : " UseAsBits=\"" + useAsBits + "\"")
        + ">" + children + "</DataItem>";
}

// "key=textId" joined by spaces, in the map's order.
QString joined(const QMap<QString, QString> &map)
{
    QStringList parts;
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        parts << it.key() + QLatin1Char('=') + it.value();
    return parts.join(QLatin1Char(' '));
}
} // namespace

class tst_GSDMLXMLHelper : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void init_bitsAndTexts_data();
    void init_bitsAndTexts();
    void init_failsTriesAgainLater();
    void shippedDescription_namesTheGatewaysBits();

private:
    void writeDescription(const QByteArray &content);

    QTemporaryDir m_dir;
    QByteArray m_shippedDir;
};

void tst_GSDMLXMLHelper::init()
{
    m_shippedDir = qgetenv("LM_MODULES_DIR");
    QVERIFY(QDir(m_dir.path()).mkpath(QStringLiteral("ProfinetModule")));
    qputenv("LM_MODULES_DIR", QFile::encodeName(m_dir.path() + QLatin1Char('/')));
}

void tst_GSDMLXMLHelper::cleanup()
{
    QFile::remove(m_dir.filePath(QLatin1String(kFile)));
    qputenv("LM_MODULES_DIR", m_shippedDir);
}

void tst_GSDMLXMLHelper::writeDescription(const QByteArray &content)
{
    QFile file(m_dir.filePath(QLatin1String(kFile)));
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
}

void tst_GSDMLXMLHelper::init_bitsAndTexts_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("readBits");
    QTest::addColumn<QString>("writeBits");
    QTest::addColumn<QString>("textOfT");

    const QByteArray bit0 = "<BitDataItem BitOffset=\"0\" TextId=\"T\"/>";
    const QByteArray bit3 = "<BitDataItem BitOffset=\"3\" TextId=\"U\"/>";
    auto row = [](const char *name, const QByteArray &content, bool ok, const char *read, const char *write,
                  const char *textOfT = "Trigger") {
        QTest::newRow(name) << content << ok << QString::fromUtf8(read) << QString::fromUtf8(write)
                            << QString::fromUtf8(textOfT);
    };
    row("output to the read address", description("<Output>" + bits("true", bit0 + bit3) + "</Output>"), true,
        "0.0=T 0.3=U", "");
    row("input to the write address", description("<Input>" + bits("True", bit0) + "</Input>"), true, "", "0.0=T");
    row("both directions count bytes apart",
        description("<Input>" + bits("true", bit0) + bits("true", bit3) + "</Input><Output>" + bits("true", bit3)
                    + "</Output>"),
        true, "0.3=U", "0.0=T 1.3=U");
    row("item not used as bits neither names nor counts",
        description("<Output>" + bits(QByteArray(), bit0) + bits("false", bit0) + bits("TRUE", bit0)
                    + "<DataItem DataType=\"Unsigned16\"/>" + bits("true", bit3) + "</Output>"),
        true, "0.3=U", "");
    row("bit without offset or text id skipped",
        description("<Output>" + bits("true", "<BitDataItem TextId=\"T\"/><BitDataItem BitOffset=\"1\" TextId=\"\"/>"
                                                  "<BitDataItem BitOffset=\"2\" TextId=\"T\"/>")
                    + "</Output>"),
        true, "0.2=T", "");
    row("second module's bits join", description("<Output>" + bits("true", bit0) + "</Output>", {}, "ID_Mod_2"), true,
        "0.0=T", "", "");
    row("other module skipped", description("<Output>" + bits("true", bit0) + "</Output>", {}, "ID_Mod_3"), true, "",
        "", "");
    row("later text replaces earlier",
        description("", "<Text TextId=\"T\" Value=\"Old\"/><Text TextId=\"T\" Value=\"New\"/>"
                        "<Text TextId=\"T\" Value=\"\"/>"),
        true, "", "", "New");
    row("not XML", "<ISO15745Profile><ProfileBody>", false, "", "", "");
    row("no ProfileBody", "<ISO15745Profile><ApplicationProcess/></ISO15745Profile>", false, "", "", "");
    row("no ApplicationProcess", "<ISO15745Profile><ProfileBody/></ISO15745Profile>", false, "", "", "");
    row("module item without IOData",
        "<r><ProfileBody><ApplicationProcess><ModuleList><ModuleItem ID=\"ID_Mod_1\"/></ModuleList>"
        "</ApplicationProcess></ProfileBody></r>",
        false, "", "", "");
    row("text list without a language",
        "<r><ProfileBody><ApplicationProcess><ExternalTextList/></ApplicationProcess></ProfileBody></r>", false, "",
        "", "");
}

void tst_GSDMLXMLHelper::init_bitsAndTexts()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, ok);
    QFETCH(QString, readBits);
    QFETCH(QString, writeBits);
    QFETCH(QString, textOfT);
    writeDescription(content);
    GSDMLXMLHelper helper;
    QCOMPARE(helper.Init(), ok);
    if (!ok)
        return;
    QCOMPARE(joined(helper.readBitMap()), readBits);
    QCOMPARE(joined(helper.writeBitMap()), writeBits);
    QCOMPARE(helper.PrimaryLanguage(QStringLiteral("T")), textOfT);
    QCOMPARE(helper.PrimaryLanguage(QStringLiteral("unknown")), QString());
}

// A missing or broken file is read again by the next Init, from nothing;
// once read, the file is not read again.
void tst_GSDMLXMLHelper::init_failsTriesAgainLater()
{
    GSDMLXMLHelper helper;
    QVERIFY(!helper.Init());
    writeDescription(description("<Output>" + bits("true", "<BitDataItem BitOffset=\"4\" TextId=\"T\"/>")
                                 + "</Output><Input/><Output>"));
    QVERIFY(!helper.Init());
    writeDescription(description("<Output>" + bits("true", "<BitDataItem BitOffset=\"1\" TextId=\"T\"/>") + "</Output>"));
    QVERIFY(helper.Init());
    QCOMPARE(joined(helper.readBitMap()), QStringLiteral("0.1=T"));
    QVERIFY(QFile::remove(m_dir.filePath(QLatin1String(kFile))));
    QVERIFY(helper.Init());
    QCOMPARE(helper.PrimaryLanguage(QStringLiteral("T")), QStringLiteral("Trigger"));
}

// The gateway toggles bit 7 of the fixed write address's first byte as the
// heartbeat, and the page shows every bit of both addresses by name.
void tst_GSDMLXMLHelper::shippedDescription_namesTheGatewaysBits()
{
    qputenv("LM_MODULES_DIR", m_shippedDir);
    GSDMLXMLHelper helper;
    QVERIFY(helper.Init());
    QCOMPARE(helper.PrimaryLanguage(helper.writeBitMap().value(QStringLiteral("0.7"))), QStringLiteral("Heartbeat"));
    QCOMPARE(helper.PrimaryLanguage(helper.readBitMap().value(QStringLiteral("0.0"))), QStringLiteral("Trigger"));
    for (const auto *map : {&helper.readBitMap(), &helper.writeBitMap()})
        for (const QString &textId : *map)
            QVERIFY2(!helper.PrimaryLanguage(textId).isEmpty(), qPrintable(textId));
}

QTEST_GUILESS_MAIN(tst_GSDMLXMLHelper)
#include "tst_gsdmlxmlhelper.moc"
