#include "BaseItem.h"
#include "BaseItemProxy.h"
#include "CommDevice.h"

#include "HostConfig.h"

#include <QSignalSpy>
#include <QtTest>
#include <tinyxml2.h>

namespace {
// An item whose current value the test sets directly.
class ValueItem : public BaseItem
{
public:
    ValueItem(const QString &name, QObject *parent, bool supportChangeEnable = false, bool visible = true)
        : BaseItem(info(name, supportChangeEnable, visible), parent)
    {
    }
    QString value;
    QString CurValue() const override { return value; }

private:
    static _S_Comm_BasicDefaultInfo_ info(const QString &name, bool support, bool visible)
    {
        _S_Comm_BasicDefaultInfo_ i;
        i.name = name;
        i.displayName = QStringLiteral("Lang_Rename");
        i.description = QStringLiteral("Lang_Delete");
        i.supportChangeEnable = support;
        i.customVisible = visible;
        return i;
    }
};

QList<S_TriggersNodeInfo> parseTriggers(const char *xml)
{
    tinyxml2::XMLDocument doc;
    if (doc.Parse(xml) != tinyxml2::XML_SUCCESS)
        return {};
    QList<S_TriggersNodeInfo> triggers;
    for (auto *t = doc.RootElement()->FirstChildElement("Trigger"); t; t = t->NextSiblingElement("Trigger")) {
        S_TriggersNodeInfo trigger;
        BaseItemProxy::ParseTriggerElement(t, trigger);
        triggers.append(trigger);
    }
    return triggers;
}

S_TriggersNodeInfo trigger(const QString &expected, const QString &operation, const QString &param,
                           const QString &target)
{
    S_TriggersNodeInfo t;
    t.conditions.insert(QStringLiteral("CurValue"), expected);
    S_SetterNodeInfo s;
    s.operation = operation;
    s.params = param;
    s.targetName = target;
    t.setters.append(s);
    return t;
}
} // namespace

using Triggers = QList<S_TriggersNodeInfo>;
Q_DECLARE_METATYPE(Triggers)

class tst_BaseItem : public QObject
{
    Q_OBJECT
private slots:
    void setEnable_respectsAlwaysDisable();
    void setSupportEnable_data();
    void setSupportEnable();
    void texts_areTranslated();
    void evaluation_data();
    void evaluation();
    void parseSetters_laterSetterKeepsEarlierFields();
    void parseTrigger_valueAndPropertyPairs();
};

void tst_BaseItem::setEnable_respectsAlwaysDisable()
{
    CommDevice device;
    ValueItem item(QStringLiteral("A"), &device);
    QSignalSpy changed(&item, &BaseItem::enableChanged);
    item.setAlwaysDisable(true);
    QVERIFY(!item.enable());
    item.setEnable(true);
    QVERIFY(!item.enable());
    QCOMPARE(changed.count(), 2);
    item.setAlwaysDisable(false); // stores only
    QCOMPARE(changed.count(), 2);
    item.setEnable(true);
    QVERIFY(item.enable());
}

void tst_BaseItem::setSupportEnable_data()
{
    QTest::addColumn<bool>("supportChangeEnable");
    QTest::addColumn<bool>("flag");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<int>("notifications");
    QTest::newRow("connected greys out a supporting item") << true << true << false << 1;
    QTest::newRow("connected leaves other items alone") << false << true << true << 0;
    QTest::newRow("stopped enables a supporting item") << true << false << true << 1;
    QTest::newRow("stopped enables every item") << false << false << true << 1;
}

void tst_BaseItem::setSupportEnable()
{
    QFETCH(bool, supportChangeEnable);
    QFETCH(bool, flag);
    QFETCH(bool, enabled);
    QFETCH(int, notifications);
    CommDevice device;
    ValueItem item(QStringLiteral("A"), &device, supportChangeEnable);
    QSignalSpy changed(&item, &BaseItem::enableChanged);
    item.setSupportEnable(flag);
    QCOMPARE(item.enable(), enabled);
    QCOMPARE(changed.count(), notifications);
}

void tst_BaseItem::texts_areTranslated()
{
    HostConfig::setLanguage(QStringLiteral("zh_CN"));
    CommDevice device;
    ValueItem item(QStringLiteral("A"), &device);
    QCOMPARE(item.displayName(), QStringLiteral("重命名"));
    QCOMPARE(item.description(), QStringLiteral("删除"));
    QCOMPARE(item.objectName(), QStringLiteral("A"));
}

void tst_BaseItem::evaluation_data()
{
    QTest::addColumn<QString>("value"); // the owner's current value
    QTest::addColumn<bool>("own");
    QTest::addColumn<bool>("targetBefore");
    QTest::addColumn<Triggers>("triggers");
    QTest::addColumn<bool>("targetAfter");
    QTest::addColumn<int>("notifications");
    const QString show = QStringLiteral("VisibleOperation");
    const QString hide = QStringLiteral("HiddenOperation");
    // One trigger on "Target" that matches the owner's value "1" or not.
    auto one = [](bool matched, const QString &operation, const QString &param) {
        return Triggers{trigger(matched ? "1" : "2", operation, param, "Target")};
    };
    // VisibleOperation without parameters: shows on a match, hides otherwise,
    // but does not show a target while the owner itself is hidden.
    QTest::newRow("visible, empty, matched, shown owner") << "1" << true << false << one(true, show, "") << true << 1;
    QTest::newRow("visible, empty, matched, hidden owner") << "1" << false << false << one(true, show, "") << false << 0;
    QTest::newRow("visible, empty, not matched, hidden owner") << "1" << false << true << one(false, show, "") << false << 1;
    QTest::newRow("visible, True, matched, shown owner") << "1" << true << false << one(true, show, "True") << true << 1;
    QTest::newRow("visible, True, matched, hidden owner") << "1" << false << false << one(true, show, "True") << false << 0;
    QTest::newRow("visible, other text, matched, hidden owner") << "1" << false << true << one(true, show, "False") << false << 1;
    QTest::newRow("visible, True, not matched, hidden owner") << "1" << false << true << one(false, show, "True") << false << 1;
    QTest::newRow("visible, other text, not matched, shown owner") << "1" << true << false << one(false, show, "no") << true << 1;
    QTest::newRow("visible, other text, not matched, hidden owner") << "1" << false << false << one(false, show, "no") << false << 0;
    QTest::newRow("hidden, empty, matched") << "1" << false << true << one(true, hide, "") << false << 1;
    QTest::newRow("hidden, empty, not matched, shown owner") << "1" << true << false << one(false, hide, "") << true << 1;
    QTest::newRow("hidden, empty, not matched, hidden owner") << "1" << false << true << one(false, hide, "") << true << 0;
    QTest::newRow("hidden with parameters is skipped") << "1" << true << true << one(true, hide, "True") << true << 0;
    QTest::newRow("unknown operation") << "1" << true << false << one(true, "visibleOperation", "") << false << 0;
    S_TriggersNodeInfo firstOfTwo = trigger("5", show, "", "Target");
    firstOfTwo.conditions.insert("AValue", "x"); // sorts before CurValue
    S_TriggersNodeInfo anyOfTwo = firstOfTwo;
    anyOfTwo.anyMatch = true;
    QTest::newRow("condition ignores case") << "true" << true << false << Triggers{trigger("TRUE", show, "", "Target")}
                                            << true << 1;
    QTest::newRow("unknown target does nothing") << "" << true << false << Triggers{trigger("", show, "", "Nobody")}
                                                 << false << 0;
    QTest::newRow("shown by an earlier match is not hidden again")
        << "Hardware" << true << false
        << Triggers{trigger("Hardware", show, "", "Target"), trigger("Software", show, "", "Target")} << true << 1;
    QTest::newRow("without any-match only the first condition counts")
        << "5" << true << false << Triggers{firstOfTwo} << false << 1;
    QTest::newRow("with any-match one condition suffices") << "5" << true << false << Triggers{anyOfTwo} << true << 1;
}

void tst_BaseItem::evaluation()
{
    QFETCH(QString, value);
    QFETCH(bool, own);
    QFETCH(bool, targetBefore);
    QFETCH(Triggers, triggers);
    QFETCH(bool, targetAfter);
    QFETCH(int, notifications);
    CommDevice device;
    ValueItem owner(QStringLiteral("Owner"), &device, false, own);
    ValueItem target(QStringLiteral("Target"), &device, false, targetBefore);
    owner.value = value;
    owner.SetTriggers(triggers);
    QSignalSpy changed(&target, &BaseItem::visibilityChanged);
    owner.TriggerAssociatedEvents();
    QCOMPARE(target.visibility(), targetAfter);
    QCOMPARE(changed.count(), notifications);
}

void tst_BaseItem::parseSetters_laterSetterKeepsEarlierFields()
{
    const auto triggers = parseTriggers(
        "<Triggers><Trigger><Value>True</Value><Property>CurValue</Property><Setters>"
        "<Setter><TargetName>ReconnectInterval</TargetName><OperationName>VisibleOperation</OperationName></Setter>"
        "<Setter><PropertyName>HiddenOperation</PropertyName><Value>x</Value></Setter>"
        "</Setters></Trigger></Triggers>");
    QCOMPARE(triggers.size(), 1);
    const auto setters = triggers.first().setters;
    QCOMPARE(setters.size(), 2);
    QCOMPARE(setters.at(0).targetName, QStringLiteral("ReconnectInterval"));
    QCOMPARE(setters.at(0).operation, QStringLiteral("VisibleOperation"));
    QCOMPARE(setters.at(1).targetName, QStringLiteral("ReconnectInterval"));
    QCOMPARE(setters.at(1).operation, QStringLiteral("HiddenOperation"));
    QCOMPARE(setters.at(1).params, QStringLiteral("x"));
}

void tst_BaseItem::parseTrigger_valueAndPropertyPairs()
{
    const auto triggers = parseTriggers(
        "<Triggers><Trigger><Property>CurValue</Property><Value>2</Value></Trigger>"
        "<Trigger><Value>7</Value></Trigger></Triggers>");
    QCOMPARE(triggers.size(), 2);
    QCOMPARE(triggers.at(0).conditions.value(QStringLiteral("CurValue")), QStringLiteral("2"));
    QCOMPARE(triggers.at(0).conditions.size(), 1);
    // A Value before any Property stores under the empty property name.
    QCOMPARE(triggers.at(1).conditions.value(QString()), QStringLiteral("7"));
    BaseItemProxy::ParseTriggerElement(nullptr, const_cast<S_TriggersNodeInfo &>(triggers.at(0)));
}

QTEST_GUILESS_MAIN(tst_BaseItem)
#include "tst_baseitem.moc"
