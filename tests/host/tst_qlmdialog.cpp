#include "QLmDialog.h"

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
    void buttons_closeUnlessVetoed_data();
    void buttons_closeUnlessVetoed();
};

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

QTEST_MAIN(tst_QLmDialog)
#include "tst_qlmdialog.moc"
