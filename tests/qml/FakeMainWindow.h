#pragma once
// Stands in for the module window ("MainWindow") in the QML tests: records
// what the page asks of it.

#include <QObject>

class FakeMainWindow : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int x MEMBER m_x NOTIFY xChanged)
    Q_PROPERTY(int y MEMBER m_y NOTIFY yChanged)
    Q_PROPERTY(int hideCount READ hideCount NOTIFY hideCountChanged)

public:
    using QObject::QObject;

    int hideCount() const { return m_hideCount; }
    Q_INVOKABLE void ViewHide() { ++m_hideCount; emit hideCountChanged(); }
    Q_INVOKABLE void requestActivate() {}
    Q_INVOKABLE void repaintWindow() {}
    Q_INVOKABLE void reset() { m_x = 0; m_y = 0; m_hideCount = 0; }

signals:
    void xChanged();
    void yChanged();
    void hideCountChanged();

private:
    int m_x = 0;
    int m_y = 0;
    int m_hideCount = 0;
};
