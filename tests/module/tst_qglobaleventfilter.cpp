#include "QGlobalEventFilter.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QSignalSpy>
#include <QWheelEvent>
#include <QtTest>

namespace {
// A filter whose on-screen keyboard the test controls.
class KeyboardFilter : public QGlobalEventFilter
{
public:
    bool visible = false;
    QRectF rect;

protected:
    bool keyboardVisible() const override { return visible; }
    QRectF keyboardRectangle() const override { return rect; }
};

bool sendPress(QObject *target, const QPointF &global)
{
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(1, 1), QPointF(1, 1), global, Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &press);
    return press.isAccepted();
}

// Records whether a wheel event reached it.
struct Probe : QObject {
    bool seen = false;
    bool event(QEvent *e) override
    {
        if (e->type() == QEvent::Wheel)
            seen = true;
        return QObject::event(e);
    }
};

// True when the wheel event reached the target object.
bool wheelReaches(Probe *target)
{
    Probe *probe = target;
    probe->seen = false;
    QWheelEvent wheel(QPointF(1, 1), QPointF(5, 5), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(target, &wheel);
    return probe->seen;
}

} // namespace

class tst_QGlobalEventFilter : public QObject
{
    Q_OBJECT
private slots:
    void disabled_emitsNothingAndLetsWheelPass();
    void press_emitsRoundedGlobalPosition_data();
    void press_emitsRoundedGlobalPosition();
    void move_emitsRoundedGlobalPosition();
    void wheel_swallowedOnlyWithBothFlags_data();
    void wheel_swallowedOnlyWithBothFlags();
    void press_onVisibleKeyboard_emitsNothing_data();
    void press_onVisibleKeyboard_emitsNothing();
    void instances_actIndependently();

private:
    Probe m_target;
};

void tst_QGlobalEventFilter::disabled_emitsNothingAndLetsWheelPass()
{
    QGlobalEventFilter filter;
    filter.setWheelFilterEnable(true);
    QSignalSpy pressed(&filter, &QGlobalEventFilter::globalMousePressEvent);
    sendPress(&m_target, QPointF(10, 10));
    QCOMPARE(pressed.count(), 0);
    QVERIFY(wheelReaches(&m_target));
}

void tst_QGlobalEventFilter::press_emitsRoundedGlobalPosition_data()
{
    QTest::addColumn<QPointF>("global");
    QTest::addColumn<QPoint>("expected");
    QTest::newRow("whole pixels") << QPointF(10, 20) << QPoint(10, 20);
    QTest::newRow("halves round up") << QPointF(2.5, 7.5) << QPoint(3, 8);
    QTest::newRow("negative halves round up") << QPointF(-2.5, -0.5) << QPoint(-2, 0);
    QTest::newRow("below half rounds down") << QPointF(3.49, -3.51) << QPoint(3, -4);
}

void tst_QGlobalEventFilter::press_emitsRoundedGlobalPosition()
{
    QFETCH(QPointF, global);
    QFETCH(QPoint, expected);
    QGlobalEventFilter filter;
    filter.setFilterEnable(true);
    QSignalSpy pressed(&filter, &QGlobalEventFilter::globalMousePressEvent);
    sendPress(&m_target, global);
    QCOMPARE(pressed.count(), 1);
    QCOMPARE(pressed.first().first().toPoint(), expected);
}

void tst_QGlobalEventFilter::move_emitsRoundedGlobalPosition()
{
    QGlobalEventFilter filter;
    filter.setFilterEnable(true);
    QSignalSpy moved(&filter, &QGlobalEventFilter::globalMouseMoveEvent);
    QSignalSpy pressed(&filter, &QGlobalEventFilter::globalMousePressEvent);
    QMouseEvent move(QEvent::MouseMove, QPointF(1, 1), QPointF(1, 1), QPointF(4.5, 9.2), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&m_target, &move);
    QCOMPARE(moved.count(), 1);
    QCOMPARE(moved.first().first().toPoint(), QPoint(5, 9));
    QCOMPARE(pressed.count(), 0);
}

void tst_QGlobalEventFilter::wheel_swallowedOnlyWithBothFlags_data()
{
    QTest::addColumn<bool>("filterEnable");
    QTest::addColumn<bool>("wheelFilterEnable");
    QTest::addColumn<bool>("reaches");
    QTest::newRow("both set") << true << true << false;
    QTest::newRow("wheel filter off") << true << false << true;
    QTest::newRow("filter off") << false << true << true;
}

void tst_QGlobalEventFilter::wheel_swallowedOnlyWithBothFlags()
{
    QFETCH(bool, filterEnable);
    QFETCH(bool, wheelFilterEnable);
    QFETCH(bool, reaches);
    QGlobalEventFilter filter;
    filter.setFilterEnable(filterEnable);
    filter.setWheelFilterEnable(wheelFilterEnable);
    QCOMPARE(wheelReaches(&m_target), reaches);
}

void tst_QGlobalEventFilter::press_onVisibleKeyboard_emitsNothing_data()
{
    QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        QSKIP("no primary screen on this platform");
    const QSize size = screen->size();
    // A 400 x 200 keyboard is drawn centred on the bottom edge of the screen.
    const QPointF onKeyboard(size.width() / 2.0, size.height() - 50.0);
    QTest::addColumn<bool>("visible");
    QTest::addColumn<QPointF>("global");
    QTest::addColumn<int>("emitted");
    QTest::newRow("visible keyboard, press on it") << true << onKeyboard << 0;
    QTest::newRow("hidden keyboard, same press") << false << onKeyboard << 1;
    QTest::newRow("visible keyboard, press above it") << true << QPointF(size.width() / 2.0, 10.0) << 1;
}

void tst_QGlobalEventFilter::press_onVisibleKeyboard_emitsNothing()
{
    QFETCH(bool, visible);
    QFETCH(QPointF, global);
    QFETCH(int, emitted);
    KeyboardFilter filter;
    filter.visible = visible;
    filter.rect = QRectF(0, 0, 400, 200); // reported position is replaced by the drawn one
    filter.setFilterEnable(true);
    QSignalSpy pressed(&filter, &QGlobalEventFilter::globalMousePressEvent);
    sendPress(&m_target, global);
    QCOMPARE(pressed.count(), emitted);
}

void tst_QGlobalEventFilter::instances_actIndependently()
{
    QGlobalEventFilter open;
    QGlobalEventFilter closed;
    open.setFilterEnable(true);
    QSignalSpy openPressed(&open, &QGlobalEventFilter::globalMousePressEvent);
    QSignalSpy closedPressed(&closed, &QGlobalEventFilter::globalMousePressEvent);
    sendPress(&m_target, QPointF(3, 3));
    QCOMPARE(openPressed.count(), 1);
    QCOMPARE(closedPressed.count(), 0);
    {
        QGlobalEventFilter swallowing;
        swallowing.setFilterEnable(true);
        swallowing.setWheelFilterEnable(true);
        QVERIFY(!wheelReaches(&m_target));
    }
    QVERIFY(wheelReaches(&m_target)); // gone with its filter
}

QTEST_MAIN(tst_QGlobalEventFilter)
#include "tst_qglobaleventfilter.moc"
