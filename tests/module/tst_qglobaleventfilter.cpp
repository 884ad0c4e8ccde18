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

protected:
    bool keyboardVisible() const override { return visible; }
    // The reported position is replaced by the drawn one: centred on the
    // bottom edge of the primary screen.
    QRectF keyboardRectangle() const override { return QRectF(0, 0, 400, 200); }
};

// Records whether a wheel event reached it.
struct Probe : QObject {
    bool seen = false;
    bool event(QEvent *e) override
    {
        seen |= e->type() == QEvent::Wheel;
        return QObject::event(e);
    }
};

// True when a wheel event sent to the probe reached it.
bool wheelReaches(Probe &probe)
{
    probe.seen = false;
    QWheelEvent wheel(QPointF(1, 1), QPointF(5, 5), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&probe, &wheel);
    return probe.seen;
}
} // namespace

class tst_QGlobalEventFilter : public QObject
{
    Q_OBJECT
private slots:
    void mouse_emitsRoundedGlobalPosition_data();
    void mouse_emitsRoundedGlobalPosition();
    void wheel_swallowedOnlyWithBothFlags_data();
    void wheel_swallowedOnlyWithBothFlags();

private:
    Probe m_target;
};

void tst_QGlobalEventFilter::mouse_emitsRoundedGlobalPosition_data()
{
    QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        QSKIP("no primary screen on this platform");
    const QSize size = screen->size();
    const QPointF onKeyboard(size.width() / 2.0, size.height() - 50.0);
    const QPoint onKeyboardRounded = onKeyboard.toPoint();
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("press");    // else a move
    QTest::addColumn<bool>("keyboard"); // the on-screen keyboard is shown
    QTest::addColumn<QPointF>("global");
    QTest::addColumn<bool>("emitted");
    QTest::addColumn<QPoint>("expected");
    QTest::newRow("whole pixels") << true << true << false << QPointF(10, 20) << true << QPoint(10, 20);
    QTest::newRow("halves round up") << true << true << false << QPointF(2.5, 7.5) << true << QPoint(3, 8);
    QTest::newRow("negative halves round up") << true << true << false << QPointF(-2.5, -0.5) << true << QPoint(-2, 0);
    QTest::newRow("below half rounds down") << true << true << false << QPointF(3.49, -3.51) << true << QPoint(3, -4);
    QTest::newRow("move") << true << false << false << QPointF(4.5, 9.2) << true << QPoint(5, 9);
    QTest::newRow("disabled filter, press") << false << true << false << QPointF(10, 10) << false << QPoint();
    QTest::newRow("disabled filter, move") << false << false << false << QPointF(10, 10) << false << QPoint();
    QTest::newRow("press on the shown keyboard") << true << true << true << onKeyboard << false << QPoint();
    QTest::newRow("press where a hidden keyboard would be")
        << true << true << false << onKeyboard << true << onKeyboardRounded;
    QTest::newRow("press above the shown keyboard")
        << true << true << true << QPointF(onKeyboard.x(), 10.0) << true << QPoint(onKeyboardRounded.x(), 10);
    QTest::newRow("move over the shown keyboard") << true << false << true << onKeyboard << true << onKeyboardRounded;
}

void tst_QGlobalEventFilter::mouse_emitsRoundedGlobalPosition()
{
    QFETCH(bool, enabled);
    QFETCH(bool, press);
    QFETCH(bool, keyboard);
    QFETCH(QPointF, global);
    QFETCH(bool, emitted);
    QFETCH(QPoint, expected);
    KeyboardFilter filter;
    filter.visible = keyboard;
    filter.setFilterEnable(enabled);
    QSignalSpy pressed(&filter, &QGlobalEventFilter::globalMousePressEvent);
    QSignalSpy moved(&filter, &QGlobalEventFilter::globalMouseMoveEvent);
    const Qt::MouseButton button = press ? Qt::LeftButton : Qt::NoButton;
    QMouseEvent event(press ? QEvent::MouseButtonPress : QEvent::MouseMove, QPointF(1, 1), QPointF(1, 1), global,
                      button, button, Qt::NoModifier);
    QCoreApplication::sendEvent(&m_target, &event);
    QSignalSpy &hit = press ? pressed : moved;
    QCOMPARE(hit.count(), emitted ? 1 : 0);
    if (emitted)
        QCOMPARE(hit.first().first().toPoint(), expected);
    QCOMPARE((press ? moved : pressed).count(), 0);
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
    QCOMPARE(wheelReaches(m_target), reaches);
}

QTEST_MAIN(tst_QGlobalEventFilter)
#include "tst_qglobaleventfilter.moc"
