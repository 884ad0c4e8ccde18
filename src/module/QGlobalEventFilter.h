#pragma once
// Lets QML controls see every mouse press, mouse move and wheel turn of the
// application: pop-ups close on a press outside themselves, and the wheel can
// be kept from changing values while a pop-up is open.

#include <QList>
#include <QObject>
#include <QPoint>

class QGlobalEventFilter : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool wheelFilterEnable READ wheelFilterEnable WRITE setWheelFilterEnable NOTIFY wheelFilterEnableChanged DESIGNABLE true FINAL)
    Q_PROPERTY(bool filterEnable READ filterEnable WRITE setFilterEnable NOTIFY filterEnableChanged DESIGNABLE true FINAL)

public:
    explicit QGlobalEventFilter(QObject *parent = nullptr);

    Q_INVOKABLE void registerMonitorObject(QObject *pObject);
    Q_INVOKABLE bool wheelFilterEnable() const { return m_wheelFilterEnable; }
    Q_INVOKABLE void setWheelFilterEnable(bool enable);
    Q_INVOKABLE bool filterEnable() const { return m_filterEnable; }
    Q_INVOKABLE void setFilterEnable(bool enable);

    bool eventFilter(QObject *watched, QEvent *event) override;

    // Half-up rounding of a global position: 2.5 -> 3, -2.5 -> -2.
    static QPoint roundedPosition(const QPointF &pos);

signals:
    void globalMousePressEvent(QPoint globalPos);
    void globalMouseMoveEvent(QPoint globalPos);
    void wheelFilterEnableChanged();
    void filterEnableChanged();

protected:
    // The on-screen keyboard as the input method reports it.
    virtual bool keyboardVisible() const;
    virtual QRectF keyboardRectangle() const;

private:
    bool pressIsOnKeyboard(const QPoint &globalPos) const;

    QList<QObject *> m_monitored;
    bool m_wheelFilterEnable = false;
    bool m_filterEnable = false;
};
