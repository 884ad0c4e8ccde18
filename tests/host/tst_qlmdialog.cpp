#include "QLmDialog.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

namespace {
class VetoDialog : public QLmDialog
{
public:
    bool allowAccept = true;
    bool allowClose = true;

protected:
    bool PreAccept() override { return allowAccept; }
    bool PreClose() override { return allowClose; }
};

QPushButton *button(QDialog &dialog, const QString &text)
{
    for (QPushButton *b : dialog.findChildren<QPushButton *>())
        if (b->text() == text)
            return b;
    return nullptr;
}
} // namespace

class tst_QLmDialog : public QObject
{
    Q_OBJECT
private slots:
    void showBtn_data();
    void showBtn();
    void buttons_closeUnlessVetoed_data();
    void buttons_closeUnlessVetoed();
    void setContainer_putsWidgetInBody();
};

void tst_QLmDialog::showBtn_data()
{
    QTest::addColumn<bool>("showOk");
    QTest::addColumn<bool>("showCancel");
    QTest::newRow("both") << true << true;
    QTest::newRow("ok only") << true << false;
    QTest::newRow("cancel only") << false << true;
    QTest::newRow("none (embedded page)") << false << false;
}

void tst_QLmDialog::showBtn()
{
    QFETCH(bool, showOk);
    QFETCH(bool, showCancel);
    QLmDialog dialog;
    dialog.ShowBtn(showOk, showCancel);
    QVERIFY(button(dialog, QStringLiteral("OK")));
    QVERIFY(button(dialog, QStringLiteral("Cancel")));
    QCOMPARE(button(dialog, QStringLiteral("OK"))->isVisibleTo(&dialog), showOk);
    QCOMPARE(button(dialog, QStringLiteral("Cancel"))->isVisibleTo(&dialog), showCancel);
}

void tst_QLmDialog::buttons_closeUnlessVetoed_data()
{
    QTest::addColumn<QString>("buttonText");
    QTest::addColumn<bool>("allowed");
    QTest::addColumn<int>("finishedCount");
    QTest::addColumn<int>("result");
    QTest::newRow("ok accepts") << "OK" << true << 1 << int(QDialog::Accepted);
    QTest::newRow("ok vetoed stays open") << "OK" << false << 0 << -1;
    QTest::newRow("cancel rejects") << "Cancel" << true << 1 << int(QDialog::Rejected);
    QTest::newRow("cancel vetoed stays open") << "Cancel" << false << 0 << -1;
}

void tst_QLmDialog::buttons_closeUnlessVetoed()
{
    QFETCH(QString, buttonText);
    QFETCH(bool, allowed);
    QFETCH(int, finishedCount);
    QFETCH(int, result);
    VetoDialog dialog;
    dialog.allowAccept = allowed;
    dialog.allowClose = allowed;
    dialog.setResult(-1);
    QSignalSpy finished(&dialog, &QDialog::finished);
    QPushButton *b = button(dialog, buttonText);
    QVERIFY(b);
    b->click();
    QCOMPARE(finished.count(), finishedCount);
    QCOMPARE(dialog.result(), result);
}

void tst_QLmDialog::setContainer_putsWidgetInBody()
{
    QLmDialog dialog;
    auto *page = new QLabel(QStringLiteral("page"));
    dialog.SetContainer(page);
    dialog.SetContainer(nullptr);
    QVERIFY(dialog.isAncestorOf(page));
    QVERIFY(page->isVisibleTo(&dialog));
    dialog.resize(400, 300);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    // The body takes the room above the button row.
    QVERIFY(page->height() > button(dialog, QStringLiteral("OK"))->height());
    QVERIFY(page->geometry().bottom() < button(dialog, QStringLiteral("OK"))->geometry().top());
}

QTEST_MAIN(tst_QLmDialog)
#include "tst_qlmdialog.moc"
