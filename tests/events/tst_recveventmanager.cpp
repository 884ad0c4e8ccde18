#include "RecvEvent.h"
#include "RecvEvent4ByteMatchCompare.h"
#include "RecvEvent4Script.h"
#include "RecvEvent4TextProtocolParse.h"
#include "RecvEventManager.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QtTest>

class tst_RecvEventManager : public QObject
{
    Q_OBJECT
private slots:
    void create_numbersAndNamesAcrossInvalidTypes();
    void newEvent_hasItsDefaults_data();
    void newEvent_hasItsDefaults();
    void setters_notifyAsEachKindDoes();
    void qml_typesImportUnderTheirOwnUri_data();
    void qml_typesImportUnderTheirOwnUri();
    void qml_createsByNumber();
};

// One manager per process: this test runs first and sees the numbering from 0.
void tst_RecvEventManager::create_numbersAndNamesAcrossInvalidTypes()
{
    RecvEventManager *mgr = RecvEventManager::Instance();
    QSignalSpy changed(mgr, &RecvEventManager::recvEventsChanged);
    RecvEvent *a = mgr->createRecvEvent(RecvEventManager::TextProtocolParse);
    RecvEvent *b = mgr->createRecvEvent(RecvEventManager::ByteMatchCompare);
    RecvEvent *c = mgr->createRecvEvent(RecvEventManager::Script);
    QVERIFY(a && b && c);
    QCOMPARE(a->eventName(), QStringLiteral("0 Text-ProParse"));
    QCOMPARE(b->eventName(), QStringLiteral("1 Byte-ProMatch"));
    QCOMPARE(c->eventName(), QStringLiteral("2 Script"));
    QCOMPARE(c->eventID(), 2);
    QCOMPARE(changed.count(), 3);

    QVERIFY(!mgr->createRecvEvent(RecvEventManager::RecvEventType(0)));
    QVERIFY(!mgr->createRecvEvent(RecvEventManager::RecvEventType(5)));
    QCOMPARE(changed.count(), 3);
    RecvEvent *d = mgr->createRecvEvent(RecvEventManager::TextProtocolCompare);
    QCOMPARE(d->eventName(), QStringLiteral("5 Text-ProCompare")); // 3 and 4 were used up
    QCOMPARE(mgr->recvEvents(), QList<RecvEvent *>({a, b, c, d}));
    QCOMPARE(d->parent(), mgr);
}

void tst_RecvEventManager::newEvent_hasItsDefaults_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("parse") << 1;
    QTest::newRow("compare") << 2;
    QTest::newRow("byte match") << 3;
    QTest::newRow("script") << 4;
}

void tst_RecvEventManager::newEvent_hasItsDefaults()
{
    QFETCH(int, type);
    RecvEvent *event = RecvEventManager::Instance()->createRecvEvent(RecvEventManager::RecvEventType(type));
    QVERIFY(event);
    QCOMPARE(event->enumIndex(), type);
    QCOMPARE(event->bindDeviceID(), -1);
    QCOMPARE(event->splitChars(),
             QStringList({",", ";", "_", "\\r", "\\n", "\\r\\n"}));
    QCOMPARE(event->splitChars().at(5).size(), 4); // backslash-r-backslash-n as text
}

void tst_RecvEventManager::setters_notifyAsEachKindDoes()
{
    auto *parse = qobject_cast<RecvEvent4TextProtocolParse *>(
        RecvEventManager::Instance()->createRecvEvent(RecvEventManager::TextProtocolParse));
    auto *bytes = qobject_cast<RecvEvent4ByteMatchCompare *>(
        RecvEventManager::Instance()->createRecvEvent(RecvEventManager::ByteMatchCompare));
    QVERIFY(parse && bytes);
    QSignalSpy splitChar(parse, &RecvEvent4TextProtocolParse::splitCharChanged);
    QSignalSpy rule(bytes, &RecvEvent4ByteMatchCompare::matchRuleChanged);
    QSignalSpy kind(parse, &RecvEvent::enumIndexChanged);
    QSignalSpy bound(parse, &RecvEvent::bindDeviceIDChanged);
    parse->setSplitChar(QStringLiteral(";")); // unchanged, still announced
    bytes->setMatchRule(0);
    parse->setEnumIndex(1);                    // unchanged: silent
    parse->setBindDeviceID(7);                 // stores only
    QCOMPARE(splitChar.count(), 1);
    QCOMPARE(rule.count(), 1);
    QCOMPARE(kind.count(), 0);
    QCOMPARE(bound.count(), 0);
    QCOMPARE(parse->bindDeviceID(), 7);
    parse->setEnumIndex(2);
    QCOMPARE(kind.count(), 1);
}

void tst_RecvEventManager::qml_typesImportUnderTheirOwnUri_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("kind");
    QTest::newRow("base") << "RecvEvent" << 0;
    QTest::newRow("parse") << "RecvEvent4TextProtocolParse" << 1;
    QTest::newRow("compare") << "RecvEvent4TextProtocolCompare" << 2;
    QTest::newRow("byte match") << "RecvEvent4ByteMatchCompare" << 3;
    QTest::newRow("script") << "RecvEvent4Script" << 4;
}

void tst_RecvEventManager::qml_typesImportUnderTheirOwnUri()
{
    QFETCH(QString, type);
    QFETCH(int, kind);
    RecvEventManager::Instance(); // registers the types
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData(QStringLiteral("import lm.cpp.%1 1.0\n%1 {}\n").arg(type).toUtf8(), QUrl());
    QScopedPointer<QObject> object(component.create());
    QVERIFY2(object, qPrintable(component.errorString()));
    QCOMPARE(object->property("enumIndex").toInt(), kind);
}

// The page calls createRecvEvent with plain numbers.
void tst_RecvEventManager::qml_createsByNumber()
{
    QQmlEngine engine;
    engine.rootContext()->setContextProperty(QStringLiteral("RecvEventManager"), RecvEventManager::Instance());
    QQmlComponent component(&engine);
    component.setData("import QtQml 2.15\nQtObject { property var made: RecvEventManager.createRecvEvent(4) }\n",
                      QUrl());
    QScopedPointer<QObject> object(component.create());
    QVERIFY2(object, qPrintable(component.errorString()));
    auto *event = qvariant_cast<RecvEvent *>(object->property("made"));
    QVERIFY(event);
    QCOMPARE(event->enumIndex(), 4);
    QVERIFY(event->eventName().endsWith(QLatin1String(" Script")));
    QCOMPARE(event->parent(), RecvEventManager::Instance()); // not collected by the engine
}

QTEST_MAIN(tst_RecvEventManager)
#include "tst_recveventmanager.moc"
