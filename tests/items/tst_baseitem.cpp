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
    void evaluation_conditionIgnoresCase();
    void evaluation_unknownTargetDoesNothing();
    void evaluation_shownByEarlierMatchIsNotHiddenAgain();
    void evaluation_onlyFirstConditionCountsWithoutAnyMatch();
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
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("param");
    QTest::addColumn<bool>("matched");
    QTest::addColumn<bool>("own");
    QTest::addColumn<bool>("targetBefore");
    QTest::addColumn<bool>("targetAfter");
    QTest::addColumn<int>("notifications");
    // VisibleOperation without parameters: shows on a match, hides otherwise,
    // but does not show a target while the owner itself is hidden.
    QTest::newRow("visible, empty, matched, shown owner") << "VisibleOperation" << "" << true << true << false << true << 1;
    QTest::newRow("visible, empty, matched, hidden owner") << "VisibleOperation" << "" << true << false << false << false << 0;
    QTest::newRow("visible, empty, not matched, hidden owner") << "VisibleOperation" << "" << false << false << true << false << 1;
    QTest::newRow("visible, True, matched, shown owner") << "VisibleOperation" << "True" << true << true << false << true << 1;
    QTest::newRow("visible, True, matched, hidden owner") << "VisibleOperation" << "True" << true << false << false << false << 0;
    QTest::newRow("visible, other text, matched, hidden owner") << "VisibleOperation" << "False" << true << false << true << false << 1;
    QTest::newRow("visible, True, not matched, hidden owner") << "VisibleOperation" << "True" << false << false << true << false << 1;
    QTest::newRow("visible, other text, not matched, shown owner") << "VisibleOperation" << "no" << false << true << false << true << 1;
    QTest::newRow("visible, other text, not matched, hidden owner") << "VisibleOperation" << "no" << false << false << false << false << 0;
    QTest::newRow("hidden, empty, matched") << "HiddenOperation" << "" << true << false << true << false << 1;
    QTest::newRow("hidden, empty, not matched, shown owner") << "HiddenOperation" << "" << false << true << false << true << 1;
    QTest::newRow("hidden, empty, not matched, hidden owner") << "HiddenOperation" << "" << false << false << true << true << 0;
    QTest::newRow("hidden with parameters is skipped") << "HiddenOperation" << "True" << true << true << true << true << 0;
    QTest::newRow("unknown operation") << "visibleOperation" << "" << true << true << false << false << 0;
}

void tst_BaseItem::evaluation()
{
    QFETCH(QString, operation);
    QFETCH(QString, param);
    QFETCH(bool, matched);
    QFETCH(bool, own);
    QFETCH(bool, targetBefore);
    QFETCH(bool, targetAfter);
    QFETCH(int, notifications);
    CommDevice device;
    ValueItem owner(QStringLiteral("Owner"), &device, false, own);
    ValueItem target(QStringLiteral("Target"), &device, false, targetBefore);
    owner.value = QStringLiteral("1");
    owner.SetTriggers({trigger(matched ? QStringLiteral("1") : QStringLiteral("2"), operation, param,
                               QStringLiteral("Target"))});
    QSignalSpy changed(&target, &BaseItem::visibilityChanged);
    owner.TriggerAssociatedEvents();
    QCOMPARE(target.visibility(), targetAfter);
    QCOMPARE(changed.count(), notifications);
}

void tst_BaseItem::evaluation_conditionIgnoresCase()
{
    CommDevice device;
    ValueItem owner(QStringLiteral("Owner"), &device);
    ValueItem target(QStringLiteral("Target"), &device, false, false);
    owner.value = QStringLiteral("true");
    owner.SetTriggers({trigger(QStringLiteral("TRUE"), QStringLiteral("VisibleOperation"), QString(),
                               QStringLiteral("Target"))});
    owner.TriggerAssociatedEvents();
    QVERIFY(target.visibility());
}

void tst_BaseItem::evaluation_unknownTargetDoesNothing()
{
    CommDevice device;
    ValueItem owner(QStringLiteral("Owner"), &device);
    ValueItem other(QStringLiteral("Other"), &device, false, false);
    owner.SetTriggers({trigger(QString(), QStringLiteral("VisibleOperation"), QString(), QStringLiteral("Nobody"))});
    QSignalSpy changed(&other, &BaseItem::visibilityChanged);
    owner.TriggerAssociatedEvents();
    QCOMPARE(changed.count(), 0);
}

void tst_BaseItem::evaluation_shownByEarlierMatchIsNotHiddenAgain()
{
    CommDevice device;
    ValueItem owner(QStringLiteral("Owner"), &device);
    ValueItem target(QStringLiteral("Target"), &device, false, false);
    owner.value = QStringLiteral("Hardware");
    owner.SetTriggers({trigger(QStringLiteral("Hardware"), QStringLiteral("VisibleOperation"), QString(),
                               QStringLiteral("Target")),
                       trigger(QStringLiteral("Software"), QStringLiteral("VisibleOperation"), QString(),
                               QStringLiteral("Target"))});
    owner.TriggerAssociatedEvents();
    QVERIFY(target.visibility());
}

void tst_BaseItem::evaluation_onlyFirstConditionCountsWithoutAnyMatch()
{
    CommDevice device;
    ValueItem owner(QStringLiteral("Owner"), &device);
    ValueItem target(QStringLiteral("Target"), &device, false, false);
    owner.value = QStringLiteral("5");
    S_TriggersNodeInfo t = trigger(QStringLiteral("5"), QStringLiteral("VisibleOperation"), QString(),
                                   QStringLiteral("Target"));
    t.conditions.insert(QStringLiteral("AValue"), QStringLiteral("x")); // sorts before CurValue
    owner.SetTriggers({t});
    owner.TriggerAssociatedEvents();
    QVERIFY(!target.visibility());
    t.anyMatch = true;
    owner.SetTriggers({t});
    owner.TriggerAssociatedEvents();
    QVERIFY(target.visibility());
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
