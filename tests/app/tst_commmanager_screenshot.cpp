// The standalone program draws the page: commmanager --screenshot, run under
// a virtual X server in both languages, writes a PNG of the whole page. The
// pictures stay in the build tree (artefacts/page-<lang>.png) for a look.
#include <QImage>
#include <QProcess>
#include <QSet>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

namespace {
// The page's root item is 1130 x 680; the title bar is 32 high and dark, the
// navigation bar on the left 97 wide and grey.
constexpr QSize kPageSize(1130, 680);
constexpr int kTitleHeight = 32;
const QRgb kTitleColour = qRgb(0x26, 0x26, 0x26);
const QRgb kNavigationColour = qRgb(0x33, 0x33, 0x33);

int distinctColours(const QImage &image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        const QRgb *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            colours.insert(line[x] | 0xFF000000u);
    }
    return colours.size();
}
} // namespace

class tst_CommManagerScreenshot : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void screenshot_data();
    void screenshot();
    void languages_changeTheTitleBar();

private:
    QString m_xvfbRun;
    QHash<QString, QImage> m_pages;
};

void tst_CommManagerScreenshot::initTestCase()
{
    // Without a virtual display nothing is drawn; that is a broken machine,
    // not a reason to pass.
    m_xvfbRun = QStandardPaths::findExecutable(QStringLiteral("xvfb-run"));
    QVERIFY2(!m_xvfbRun.isEmpty(), "xvfb-run not found: run scripts/bootstrap (packages xvfb, xauth)");
    QVERIFY(QDir().mkpath(QStringLiteral(ARTEFACT_DIR)));
}

void tst_CommManagerScreenshot::screenshot_data()
{
    QTest::addColumn<QString>("lang");
    QTest::newRow("en") << QStringLiteral("en");
    QTest::newRow("zh") << QStringLiteral("zh");
}

void tst_CommManagerScreenshot::screenshot()
{
    QFETCH(QString, lang);
    const QString file = QStringLiteral(ARTEFACT_DIR "/page-%1.png").arg(lang);
    QFile::remove(file);
    QTemporaryDir stateDir;
    QVERIFY(stateDir.isValid());

    QProcess app;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    app.setProcessEnvironment(env);
    // timeout(1) runs its command in a process group of its own and ends the
    // whole group (X server, program, gateway) if the program hangs.
    app.start(QStringLiteral("timeout"),
              {QStringLiteral("-k"), QStringLiteral("5"), QStringLiteral("100"), m_xvfbRun, QStringLiteral("-a"),
               QStringLiteral("-s"), QStringLiteral("-screen 0 1280x800x24"), QStringLiteral(COMMMANAGER_PATH),
               QStringLiteral("--screenshot"), file, QStringLiteral("--lang"), lang, QStringLiteral("--state-dir"),
               stateDir.path()});
    QVERIFY2(app.waitForFinished(120000), "commmanager did not finish within 120 s");
    const QByteArray output = app.readAllStandardOutput() + app.readAllStandardError();
    QVERIFY2(app.exitStatus() == QProcess::NormalExit && app.exitCode() == 0, output.constData());
    QVERIFY2(output.contains("screenshot written to"), output.constData());

    QImage page(file);
    QVERIFY2(!page.isNull(), qPrintable(file));
    qInfo("page picture: %s", qPrintable(file));
    QCOMPARE(page.size(), kPageSize);
    page = page.convertToFormat(QImage::Format_RGB32);
    QVERIFY2(distinctColours(page) >= 64, qPrintable(QString::number(distinctColours(page))));
    QCOMPARE(page.pixel(kPageSize.width() / 2, 2) | 0xFF000000u, kTitleColour);
    QCOMPARE(page.pixel(40, kPageSize.height() - 4) | 0xFF000000u, kNavigationColour);
    m_pages.insert(lang, page);
}

// The title text follows the language: the two title bars must differ.
void tst_CommManagerScreenshot::languages_changeTheTitleBar()
{
    QVERIFY2(m_pages.size() == 2, "a picture is missing; see its row");
    const QRect title(0, 0, kPageSize.width(), kTitleHeight);
    QVERIFY(m_pages.value(QStringLiteral("en")).copy(title) != m_pages.value(QStringLiteral("zh")).copy(title));
}

QTEST_GUILESS_MAIN(tst_CommManagerScreenshot)

#include "tst_commmanager_screenshot.moc"
