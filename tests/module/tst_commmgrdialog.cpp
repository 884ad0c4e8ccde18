#include "CommManagerModule.h"
#include "CommMgrDialog.h"
#include "FakeGateway.h"

#include "HostConfig.h"
#include "ModuleRegistry.h"

#include <QApplication>
#include <QPushButton>
#include <QtTest>

class tst_CommMgrDialog : public QObject
{
    Q_OBJECT
private slots:
    void construction_embedsThePageWithoutButtons();
    void init_passesThroughToTheModule_data();
    void init_passesThroughToTheModule();
};

void tst_CommMgrDialog::construction_embedsThePageWithoutButtons()
{
    CommMgrDialog dialog;
    QVERIFY(dialog.module());
    QWidget *container = nullptr;
    for (QWidget *w : dialog.findChildren<QWidget *>())
        if (w->minimumSize() == QSize(1130, 680))
            container = w;
    QVERIFY(container);
    for (QPushButton *button : dialog.findChildren<QPushButton *>())
        QVERIFY(button->isHidden());
    QVERIFY(dialog.windowTitle().isEmpty());
}

void tst_CommMgrDialog::init_passesThroughToTheModule_data()
{
    QTest::addColumn<quint32>("gatewayAnswer");
    QTest::newRow("gateway opens") << quint32(0);
    QTest::newRow("gateway refuses") << quint32(GW_ERR_CONNECT_FAILED);
}

void tst_CommMgrDialog::init_passesThroughToTheModule()
{
    QFETCH(quint32, gatewayAnswer);
    static auto registry = ModuleRegistry::installDefault();
    HostConfig::setGatewayPort(QStringLiteral("4000"));
    FakeGateway::instance().reset();
    FakeGateway::instance().answer(QStringLiteral("Init"), gatewayAnswer);
    CommMgrDialog dialog;
    QCOMPARE(dialog.Init(QStringLiteral("a"), QStringLiteral("b")), int(gatewayAnswer));
    QCOMPARE(dialog.module()->isInited(), gatewayAnswer == 0);
}

QTEST_MAIN(tst_CommMgrDialog)
#include "tst_commmgrdialog.moc"
