// The page as an operator uses it, with gatewayd behind it: a TCP server is
// created in the creation dialog, given a port in its parameter panel and
// switched on in the list; a peer's lines show in the receive panel and the
// send panel's text reaches the peer. Every step is a click or key press on
// the window the module shows.
#include "CommManagerModule.h"
#include "GatewayProcess.h"
#include "HostConfig.h"
#include "ModuleRegistry.h"
#include "QUICore.h"

#include <QQmlProperty>
#include <QQuickItem>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>
#include <functional>
#include <memory>

namespace {
using ItemTest = std::function<bool(QQuickItem *)>;

// Depth first over the visual tree (popups included: they live in the overlay).
QQuickItem *findItem(QQuickItem *from, const QString &name, const ItemTest &test = {})
{
    for (QQuickItem *child : from->childItems()) {
        if (child->objectName() == name && child->isVisible() && (!test || test(child)))
            return child;
        if (QQuickItem *found = findItem(child, name, test))
            return found;
    }
    return nullptr;
}

QStringList shownTexts(QQuickItem *from)
{
    QStringList texts;
    for (QQuickItem *child : from->childItems()) {
        if (!child->isVisible())
            continue;
        const QVariant text = child->property("text");
        if (text.isValid())
            texts << text.toString();
        texts << shownTexts(child);
    }
    return texts;
}

bool anyContains(const QStringList &texts, const QString &part)
{
    for (const QString &text : texts) {
        if (text.contains(part))
            return true;
    }
    return false;
}

QObject *objectProperty(QObject *object, const char *name)
{
    return object ? object->property(name).value<QObject *>() : nullptr;
}

quint16 freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
}
} // namespace

class tst_PageE2E : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();

    void createDialog_tcpServer_addsSelectedRow();
    void portAndSwitch_serverAcceptsPeer();
    void receivePanel_showsPeerLine_asTextAndHex_data();
    void receivePanel_showsPeerLine_asTextAndHex();
    void sendPanel_typedText_reachesPeer();
    void switchOff_closesPeerConnection();

private:
    QQuickItem *find(const QString &name, const ItemTest &test = {}) const
    {
        return findItem(m_module->contentItem(), name, test);
    }
    bool click(QQuickItem *item);
    bool type(QQuickItem *input, const QString &text);
    QQuickItem *deviceRow() const;

    GatewayProcess m_gw;
    std::shared_ptr<ModuleRegistry> m_registry;
    std::unique_ptr<CommManagerModule> m_module;
    QTcpSocket m_peer;
    quint16 m_port = 0;
};

void tst_PageE2E::initTestCase()
{
    QVERIFY2(m_gw.start(), qPrintable(m_gw.error()));
    m_registry = ModuleRegistry::installDefault();
    HostConfig::setLanguage(QStringLiteral("en"));
    HostConfig::setGatewayPort(QString::number(m_gw.port()));
    QUICore::setInteractive(false);
    m_module.reset(new CommManagerModule);
    QCOMPARE(m_module->Init(QString(), QString()), 0);
    m_module->show();
    m_module->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(m_module.get()));
    QVERIFY(find(QStringLiteral("deviceManagementView")));
}

// Whatever went wrong on the page shows as a message box; none may be left.
void tst_PageE2E::cleanup()
{
    QStringList texts;
    for (const MessageBoxRecord &box : QUICore::shownMessageBoxes())
        texts << box.text;
    QUICore::clearShownMessageBoxes();
    QQuickItem *view = find(QStringLiteral("deviceManagementView"));
    QObject *launcher = objectProperty(view, "messageBoxes");
    QVERIFY(launcher);
    for (const QVariant &box : launcher->property("openBoxes").toList())
        texts << box.value<QObject *>()->property("msgText").toString();
    QMetaObject::invokeMethod(launcher, "closeAll");
    QVERIFY2(texts.isEmpty(), qPrintable(texts.join(QStringLiteral(" | "))));
}

void tst_PageE2E::cleanupTestCase()
{
    if (m_module) {
        m_module->DeInit();
        m_module.reset();
    }
    QVERIFY(m_gw.stop());
}

bool tst_PageE2E::click(QQuickItem *item)
{
    if (!item)
        return false;
    const QPointF centre = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
    QTest::mouseClick(m_module.get(), Qt::LeftButton, Qt::NoModifier, centre.toPoint());
    return true;
}

// Clicks into a text field, replaces its text and presses Enter.
bool tst_PageE2E::type(QQuickItem *input, const QString &text)
{
    if (!click(input) || !input->hasActiveFocus())
        return false;
    QTest::keyClick(m_module.get(), Qt::Key_A, Qt::ControlModifier); // select all
    for (const QChar c : text) // no keyClicks() for windows
        QTest::keyClick(m_module.get(), c.toLatin1());
    QTest::keyClick(m_module.get(), Qt::Key_Return);
    return input->property("text").toString() == text;
}

// The list row of the created device ("Line 1").
QQuickItem *tst_PageE2E::deviceRow() const
{
    QQuickItem *list = find(QStringLiteral("deviceList"));
    QQuickItem *name = list ? findItem(list, QStringLiteral("deviceName"), [](QQuickItem *text) {
        return text->property("text").toString() == QLatin1String("Line 1");
    }) : nullptr;
    return name ? name->parentItem()->parentItem() : nullptr;
}

void tst_PageE2E::createDialog_tcpServer_addsSelectedRow()
{
    QVERIFY(click(find(QStringLiteral("createButton"))));
    QQuickItem *typeBox = find(QStringLiteral("typeBox"));
    QVERIFY(typeBox);
    const QStringList types = QQmlProperty::read(typeBox, QStringLiteral("comboBoxListModel")).toStringList();
    const int tcpServer = types.indexOf(QStringLiteral("TcpServerModule"));
    QVERIFY2(tcpServer >= 0, qPrintable(types.join(',')));
    QVERIFY(click(findItem(typeBox, QStringLiteral("comboArea"))));
    QTRY_VERIFY(find(QStringLiteral("comboItem%1").arg(tcpServer)));
    QVERIFY(click(find(QStringLiteral("comboItem%1").arg(tcpServer))));
    QTRY_COMPARE(findItem(typeBox, QStringLiteral("comboText"))->property("text").toString(),
                 QStringLiteral("TCP Server"));
    QCOMPARE(find(QStringLiteral("nameField"))->property("text").toString(), QStringLiteral("TcpServer1"));

    QVERIFY(type(find(QStringLiteral("nameField")), QStringLiteral("Line 1")));
    QVERIFY(click(find(QStringLiteral("createConfirm"))));
    QTRY_VERIFY(!find(QStringLiteral("typeBox"))); // the dialog closed

    QQuickItem *row = nullptr;
    QTRY_VERIFY((row = deviceRow()));
    QCOMPARE(findItem(row, QStringLiteral("deviceType"))->property("text").toString(), QStringLiteral("TCP Server"));
    QVERIFY(row->property("selected").toBool());
    QVERIFY(!findItem(row, QStringLiteral("connectSwitch"))->property("switchStatus").toBool());
}

void tst_PageE2E::portAndSwitch_serverAcceptsPeer()
{
    // The parameter row labelled "Local Port" in the selected device's panel.
    QQuickItem *label = nullptr;
    QTRY_VERIFY((label = findItem(find(QStringLiteral("itemPanel")), QStringLiteral("itemLabel"), [](QQuickItem *text) {
                     return text->property("text").toString() == QLatin1String("Local Port");
                 })));
    QQuickItem *portRow = label->parentItem();
    m_port = freePort();
    QVERIFY(type(findItem(portRow, QStringLiteral("rangeInput")), QString::number(m_port)));
    QCOMPARE(objectProperty(portRow, "pItemData")->property("currentValue").toInt(), int(m_port));

    QQuickItem *row = deviceRow();
    QVERIFY(row);
    QQuickItem *toggle = findItem(row, QStringLiteral("connectSwitch"));
    QVERIFY(click(toggle));
    QTRY_VERIFY(objectProperty(row, "device")->property("connectState").toBool());
    QVERIFY(toggle->property("switchStatus").toBool());

    m_peer.connectToHost(QHostAddress::LocalHost, m_port);
    QVERIFY2(m_peer.waitForConnected(3000), qPrintable(m_peer.errorString()));
}

void tst_PageE2E::receivePanel_showsPeerLine_asTextAndHex_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("asText");
    QTest::addColumn<QString>("asHex");
    QTest::newRow("printable") << QByteArray("PART-OK;12.5\r\n") << QStringLiteral("PART-OK;12.5")
                               << QStringLiteral("[50][41][52][54][2D][4F][4B][3B][31][32][2E][35]");
    QTest::newRow("control and high bytes") << QByteArray("\x02OK\xff\r\n") << QStringLiteral("[02]OK[FF]")
                                            << QStringLiteral("[02][4F][4B][FF]");
}

void tst_PageE2E::receivePanel_showsPeerLine_asTextAndHex()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, asText);
    QFETCH(QString, asHex);
    QVERIFY(m_peer.state() == QAbstractSocket::ConnectedState);
    QQuickItem *list = find(QStringLiteral("recvList"));
    QQuickItem *hexBox = find(QStringLiteral("recvHexCheck"));
    QVERIFY(list && hexBox);
    QVERIFY(!hexBox->property("checked").toBool());

    m_peer.write(line);
    QTRY_VERIFY2(anyContains(shownTexts(list), asText), qPrintable(shownTexts(list).join('\n')));
    QVERIFY(!anyContains(shownTexts(list), asHex));

    QVERIFY(click(hexBox));
    QVERIFY(hexBox->property("checked").toBool());
    QTRY_VERIFY2(anyContains(shownTexts(list), asHex), qPrintable(shownTexts(list).join('\n')));
    QVERIFY(!anyContains(shownTexts(list), asText));
    QVERIFY(click(hexBox));
    QTRY_VERIFY(anyContains(shownTexts(list), asText));
}

void tst_PageE2E::sendPanel_typedText_reachesPeer()
{
    QVERIFY(m_peer.state() == QAbstractSocket::ConnectedState);
    m_peer.readAll();
    QVERIFY(type(find(QStringLiteral("sendField")), QStringLiteral("TRIGGER 7")));
    QVERIFY(click(find(QStringLiteral("sendButton"))));
    QByteArray got;
    QTRY_VERIFY2((got += m_peer.readAll()).contains("TRIGGER 7"), got.constData());
}

void tst_PageE2E::switchOff_closesPeerConnection()
{
    QVERIFY(m_peer.state() == QAbstractSocket::ConnectedState);
    QQuickItem *row = deviceRow();
    QVERIFY(row);
    QQuickItem *toggle = findItem(row, QStringLiteral("connectSwitch"));
    QVERIFY(click(toggle));
    QTRY_VERIFY(!objectProperty(row, "device")->property("connectState").toBool());
    QVERIFY(!toggle->property("switchStatus").toBool());
    QTRY_COMPARE(m_peer.state(), QAbstractSocket::UnconnectedState);
}

QTEST_MAIN(tst_PageE2E)

#include "tst_page_e2e.moc"
