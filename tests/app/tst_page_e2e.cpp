// The module and its page with gatewayd behind them, used as an operator uses
// them: a TCP server is created in the creation dialog, given a port in its
// parameter panel and switched on in the list; a peer's lines show in the
// device's lists and in the receive panel; text typed into the send panel and
// hex sent by the manager reach the peer. A TCP client whose peer goes away is
// switched off. Page steps are clicks and key presses on the module's window;
// the slots run in order and share the server device and its peer.
#include "CommDevice.h"
#include "CommManagerModule.h"
#include "DevicesManager.h"
#include "GatewayProcess.h"
#include "GwParamRecord.h"
#include "GwPlatform.h"
#include "HostConfig.h"
#include "ModuleRegistry.h"
#include "QUICore.h"

#include <QQmlProperty>
#include <QQuickItem>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QtTest>
#include <functional>
#include <memory>

namespace {
using ItemTest = std::function<bool(QQuickItem *)>;

// Depth first over the visual tree (popups included: they live in the overlay).
QQuickItem *findItem(QQuickItem *from, const QString &name, const ItemTest &test = {})
{
    if (!from)
        return nullptr;
    for (QQuickItem *child : from->childItems()) {
        if (child->objectName() == name && child->isVisible() && (!test || test(child)))
            return child;
        if (QQuickItem *found = findItem(child, name, test))
            return found;
    }
    return nullptr;
}

// The texts of the visible items under `from`, one a line.
QString shownText(QQuickItem *from)
{
    QStringList texts;
    for (QQuickItem *child : from->childItems()) {
        if (!child->isVisible())
            continue;
        const QVariant text = child->property("text");
        if (text.isValid())
            texts << text.toString();
        texts << shownText(child);
    }
    return texts.join(QLatin1Char('\n'));
}

QObject *objectProperty(QObject *object, const char *name)
{
    return object ? object->property(name).value<QObject *>() : nullptr;
}

quint32 setParam(int module, const QByteArray &key, const QByteArray &value)
{
    GwParamRecord record;
    record.addEntry(key, value);
    return GW_PF_SetModuleParam(module, record.data(), -1);
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
    void received_textAndHexForms_data();
    void received_textAndHexForms();
    void send_typedTextAndHexReachThePeer();
    void switchOff_closesPeerConnection();
    void tcpClientDevice_lostConnection_turnsSwitchOff();
    void gatewayKilledDuringStream_bannerAndSwitchesOff_thenReloaded();

private:
    QQuickItem *find(const QString &name, const ItemTest &test = {}) const
    {
        return findItem(m_module->contentItem(), name, test);
    }
    bool click(QQuickItem *item);
    bool type(QQuickItem *input, const QString &text);
    QQuickItem *deviceRow() const;
    CommDevice *device() const { return qobject_cast<CommDevice *>(objectProperty(deviceRow(), "device")); }
    DevicesManager *manager() const { return DevicesManager::Instance(); }

    GatewayProcess m_gw;
    quint16 m_devicePort = 0;
    std::shared_ptr<ModuleRegistry> m_registry;
    std::unique_ptr<CommManagerModule> m_module;
    QTcpSocket m_peer;
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
    QObject *launcher = objectProperty(find(QStringLiteral("deviceManagementView")), "messageBoxes");
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
    QTcpServer probe; // a free port
    QVERIFY(probe.listen(QHostAddress::LocalHost));
    const quint16 port = probe.serverPort();
    probe.close();
    QVERIFY(type(findItem(portRow, QStringLiteral("rangeInput")), QString::number(port)));
    QCOMPARE(objectProperty(portRow, "pItemData")->property("currentValue").toInt(), int(port));

    QQuickItem *toggle = findItem(deviceRow(), QStringLiteral("connectSwitch"));
    QVERIFY(click(toggle));
    QTRY_VERIFY(device()->connectState());
    QVERIFY(toggle->property("switchStatus").toBool());
    // The gateway's status events reach the word beside the switch.
    QQuickItem *word = findItem(deviceRow(), QStringLiteral("statusWord"));
    QVERIFY(word);
    QTRY_COMPARE(word->property("text").toString(), QStringLiteral("Listening"));

    m_peer.connectToHost(QHostAddress::LocalHost, port);
    QVERIFY2(m_peer.waitForConnected(3000), qPrintable(m_peer.errorString()));
    m_devicePort = port;
    QTRY_COMPARE(word->property("text").toString(), QStringLiteral("Connected"));
    QTRY_VERIFY(device()->statusDetail().contains(QLatin1String("1 of")));
}

void tst_PageE2E::received_textAndHexForms_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("texts"); // how the device's entries end, one per line
    QTest::addColumn<QStringList>("hexes");
    QTest::newRow("printable") << QByteArray("PART-OK;12.5\r\n") << QStringList{"PART-OK;12.5[0D][0A]"}
                               << QStringList{"[50][41][52][54][2D][4F][4B][3B][31][32][2E][35][0D][0A]"};
    QTest::newRow("control and high bytes") << QByteArray("\x02OK\xff\r\n") << QStringList{"[02]OK[FF][0D][0A]"}
                                            << QStringList{"[02][4F][4B][FF][0D][0A]"};
    QTest::newRow("two lines in one write") << QByteArray("NG;3\r\nEND\r\n")
                                            << QStringList{"NG;3[0D][0A]", "END[0D][0A]"}
                                            << QStringList{"[4E][47][3B][33][0D][0A]", "[45][4E][44][0D][0A]"};
}

void tst_PageE2E::received_textAndHexForms()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, texts);
    QFETCH(QStringList, hexes);
    QVERIFY(m_peer.state() == QAbstractSocket::ConnectedState);
    CommDevice *dev = device();
    QQuickItem *list = find(QStringLiteral("recvList"));
    QQuickItem *hexBox = find(QStringLiteral("recvHexCheck"));
    QVERIFY(dev && list && hexBox);
    QVERIFY(!hexBox->property("checked").toBool());
    const int before = dev->recvDataList().size();

    m_peer.write(bytes);
    QTRY_COMPARE(dev->recvDataList().size(), before + texts.size());
    QCOMPARE(dev->recvHexDataList().size(), before + texts.size());
    const QStringList gotTexts = dev->recvDataList().mid(before);
    const QStringList gotHexes = dev->recvHexDataList().mid(before);
    for (int i = 0; i < texts.size(); ++i) {
        QVERIFY2(gotTexts[i].endsWith(texts[i]), qPrintable(gotTexts[i]));
        QVERIFY2(gotHexes[i].endsWith(hexes[i]), qPrintable(gotHexes[i]));
        QTRY_VERIFY2(shownText(list).contains(gotTexts[i]), qPrintable(shownText(list)));
        QVERIFY(!shownText(list).contains(gotHexes[i]));
    }

    QVERIFY(click(hexBox));
    QVERIFY(hexBox->property("checked").toBool());
    for (int i = 0; i < texts.size(); ++i) {
        QTRY_VERIFY2(shownText(list).contains(gotHexes[i]), qPrintable(shownText(list)));
        QVERIFY(!shownText(list).contains(gotTexts[i]));
    }
    QVERIFY(click(hexBox));
    QTRY_VERIFY(shownText(list).contains(gotTexts.last()));
}

void tst_PageE2E::send_typedTextAndHexReachThePeer()
{
    QVERIFY(m_peer.state() == QAbstractSocket::ConnectedState);
    m_peer.readAll();
    QVERIFY(type(find(QStringLiteral("sendField")), QStringLiteral("TRIGGER 7")));
    QVERIFY(click(find(QStringLiteral("sendButton"))));
    QByteArray got;
    QTRY_VERIFY2((got += m_peer.readAll()).contains("TRIGGER 7"), got.constData());
    QCOMPARE(find(QStringLiteral("sendOutcome"))->property("text").toString(), QStringLiteral("Sent 9 bytes"));

    manager()->sendDataNormalDevice()->setHexEnable(true);
    QCOMPARE(manager()->gwSendData(device()->deviceID(), QStringLiteral("53 54 4F 50 0")), 0); // odd last digit dropped
    manager()->sendDataNormalDevice()->setHexEnable(false);
    QTRY_VERIFY2((got += m_peer.readAll()).endsWith("TRIGGER 7STOP"), got.constData());
}

void tst_PageE2E::switchOff_closesPeerConnection()
{
    QVERIFY(m_peer.state() == QAbstractSocket::ConnectedState);
    QQuickItem *toggle = findItem(deviceRow(), QStringLiteral("connectSwitch"));
    QVERIFY(click(toggle));
    QTRY_VERIFY(!device()->connectState());
    QVERIFY(!toggle->property("switchStatus").toBool());
    QTRY_COMPARE(m_peer.state(), QAbstractSocket::UnconnectedState);
}

void tst_PageE2E::tcpClientDevice_lostConnection_turnsSwitchOff()
{
    QTcpServer listener;
    QVERIFY(listener.listen(QHostAddress::LocalHost));
    QVERIFY(manager()->loadAlgorithmTabXML(QStringLiteral("TcpClientModule")));
    const int id = manager()->createCommDevice(QStringLiteral("TcpClientModule"), QStringLiteral("Robot"));
    CommDevice *device = manager()->getDeviceById(id);
    QVERIFY(device);
    QCOMPARE(setParam(id, "TargetIP", "127.0.0.1"), GW_OK);
    QCOMPARE(setParam(id, "TargetPort", QByteArray::number(listener.serverPort())), GW_OK);
    QCOMPARE(setParam(id, "AutoReconnect", "false"), GW_OK);
    device->setConnectState(true);
    QVERIFY(listener.waitForNewConnection(3000));
    QTcpSocket *peer = listener.nextPendingConnection();
    QVERIFY(device->connectState());

    peer->abort();
    listener.close();
    // The gateway reports the loss; the switch goes off and reads off.
    QTRY_VERIFY(!device->connectState());
    QCOMPARE(device->GwGetConnectState(), 0);
    QVERIFY(!device->connectState());
    QTRY_COMPARE(device->status(), QStringLiteral("Closed"));
    QVERIFY2(device->statusDetail().contains(QLatin1String("lost")), qPrintable(device->statusDetail()));
}

// kill -9 of the gateway while a peer streams into "Line 1": the banner
// tells the operator, every switch shows off; the gateway started again on
// its port and folder runs the device as before, and the page, reloaded,
// shows it on and receives from it again. No message box on the way.
void tst_PageE2E::gatewayKilledDuringStream_bannerAndSwitchesOff_thenReloaded()
{
    QVERIFY(m_devicePort);
    QQuickItem *toggle = findItem(deviceRow(), QStringLiteral("connectSwitch"));
    QVERIFY(click(toggle));
    QTRY_VERIFY(device()->connectState());
    QTcpSocket peer;
    peer.connectToHost(QHostAddress::LocalHost, m_devicePort);
    QVERIFY(peer.waitForConnected(3000));
    QTimer streaming;
    connect(&streaming, &QTimer::timeout, &peer, [&peer] { peer.write("tick\r\n"); });
    streaming.start(5);
    QTRY_VERIFY(device()->recvDataList().size() > 3);

    const int gatewayPort = m_gw.port();
    m_gw.kill();
    QQuickItem *banner = nullptr;
    QTRY_VERIFY((banner = find(QStringLiteral("gatewayBanner"))));
    QTRY_VERIFY(shownText(banner).contains(QLatin1String("Every device is shown as not connected"))
                || shownText(banner).startsWith(QLatin1String("Reconnecting to the gateway: attempt")));
    QVERIFY(!device()->connectState());
    QVERIFY(!findItem(deviceRow(), QStringLiteral("connectSwitch"))->property("switchStatus").toBool());
    streaming.stop();

    QVERIFY2(m_gw.start({QStringLiteral("--port"), QString::number(gatewayPort)}), qPrintable(m_gw.error()));
    QTRY_VERIFY_WITH_TIMEOUT(shownText(banner).startsWith(QLatin1String("The gateway is back; the device list was read again.")),
                             10000);
    QTRY_VERIFY(deviceRow() && device()->connectState());
    QVERIFY(findItem(deviceRow(), QStringLiteral("connectSwitch"))->property("switchStatus").toBool());
    // The selected device's parameters are those of the device read again.
    QTRY_VERIFY(findItem(find(QStringLiteral("itemPanel")), QStringLiteral("itemLabel"), [](QQuickItem *text) {
        return text->property("text").toString() == QLatin1String("Local Port");
    }));
    QTcpSocket again;
    again.connectToHost(QHostAddress::LocalHost, m_devicePort);
    QVERIFY(again.waitForConnected(3000));
    again.write("after restart\r\n");
    QTRY_VERIFY(!device()->recvDataList().filter(QStringLiteral("after restart")).isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(!banner->isVisible(), 10000);
}

QTEST_MAIN(tst_PageE2E)
#include "tst_page_e2e.moc"
