#include "RecvEvent.h"
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
    QCOMPARE(QList<int>({a->enumIndex(), b->enumIndex(), c->enumIndex()}), QList<int>({1, 3, 4}));
    QCOMPARE(changed.count(), 3);

    QVERIFY(!mgr->createRecvEvent(RecvEventManager::RecvEventType(0)));
    QVERIFY(!mgr->createRecvEvent(RecvEventManager::RecvEventType(5)));
    QCOMPARE(changed.count(), 3);
    RecvEvent *d = mgr->createRecvEvent(RecvEventManager::TextProtocolCompare);
    QCOMPARE(d->eventName(), QStringLiteral("5 Text-ProCompare")); // 3 and 4 were used up
    QCOMPARE(mgr->recvEvents(), QList<RecvEvent *>({a, b, c, d}));
    QCOMPARE(d->parent(), mgr);
}

// QML calls createRecvEvent with plain numbers, keeps what it made and reads
// the list of events.
void tst_RecvEventManager::qml_createsByNumber()
{
    QQmlEngine engine;
    engine.rootContext()->setContextProperty(QStringLiteral("RecvEventManager"), RecvEventManager::Instance());
    QQmlComponent component(&engine);
    component.setData("import QtQml 2.15\nQtObject {\n"
                      "  property var made: RecvEventManager.createRecvEvent(4)\n"
                      "  property int listed: RecvEventManager.recvEvents.length\n"
                      "}\n",
                      QUrl());
    QScopedPointer<QObject> object(component.create());
    QVERIFY2(object, qPrintable(component.errorString()));
    auto *event = qvariant_cast<RecvEvent *>(object->property("made"));
    QVERIFY(event);
    QCOMPARE(event->enumIndex(), 4);
    QVERIFY(event->eventName().endsWith(QLatin1String(" Script")));
    QCOMPARE(event->parent(), RecvEventManager::Instance()); // not collected by the engine
    QCOMPARE(object->property("listed").toInt(), RecvEventManager::Instance()->recvEvents().size());
}

QTEST_MAIN(tst_RecvEventManager)
#include "tst_recveventmanager.moc"
