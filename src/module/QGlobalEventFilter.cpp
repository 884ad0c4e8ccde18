#include "QGlobalEventFilter.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputMethod>
#include <QMouseEvent>
#include <QScreen>
#include <cmath>

QGlobalEventFilter::QGlobalEventFilter(QObject *parent)
    : QObject(parent)
{
    if (QCoreApplication *app = QCoreApplication::instance())
        app->installEventFilter(this);
}

void QGlobalEventFilter::registerMonitorObject(QObject *pObject)
{
    if (pObject)
        m_monitored.append(pObject);
}

void QGlobalEventFilter::setWheelFilterEnable(bool enable)
{
    m_wheelFilterEnable = enable;
    emit wheelFilterEnableChanged();
}

void QGlobalEventFilter::setFilterEnable(bool enable)
{
    m_filterEnable = enable;
    emit filterEnableChanged();
}

QPoint QGlobalEventFilter::roundedPosition(const QPointF &pos)
{
    return QPoint(int(std::floor(pos.x() + 0.5)), int(std::floor(pos.y() + 0.5)));
}

bool QGlobalEventFilter::keyboardVisible() const
{
    const QInputMethod *inputMethod = QGuiApplication::inputMethod();
    return inputMethod && inputMethod->isVisible();
}

QRectF QGlobalEventFilter::keyboardRectangle() const
{
    const QInputMethod *inputMethod = QGuiApplication::inputMethod();
    return inputMethod ? inputMethod->keyboardRectangle() : QRectF();
}

// The on-screen keyboard is drawn centred on the primary screen, standing on
// its bottom edge; a press on it must not close pop-ups.
bool QGlobalEventFilter::pressIsOnKeyboard(const QPoint &globalPos) const
{
    if (!keyboardVisible())
        return false;
    QRect keyboard = keyboardRectangle().toRect();
    if (QScreen *screen = QGuiApplication::primaryScreen()) {
        const QSize size = screen->size();
        keyboard.moveTo((size.width() - keyboard.width()) / 2, size.height() - keyboard.height());
    }
    return keyboard.contains(globalPos);
}

bool QGlobalEventFilter::eventFilter(QObject *watched, QEvent *event)
{
    if (!m_filterEnable)
        return QObject::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const QPoint pos = roundedPosition(static_cast<QMouseEvent *>(event)->screenPos());
        if (!pressIsOnKeyboard(pos))
            emit globalMousePressEvent(pos);
        break;
    }
    case QEvent::MouseMove:
        emit globalMouseMoveEvent(roundedPosition(static_cast<QMouseEvent *>(event)->screenPos()));
        break;
    case QEvent::Wheel:
        if (m_wheelFilterEnable)
            return true;
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
