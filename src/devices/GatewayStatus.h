#pragma once
// The module's view of its gateway connection, from the client library's
// gateway-level events: what the banner on the page says and whether it is
// shown. Lives on the GUI thread; DevicesManager feeds it the events.

#include "GwPlatform.h"

#include <QObject>
#include <QString>
#include <QTimer>

class GatewayStatus : public QObject
{
    Q_OBJECT
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    Q_PROPERTY(QString text READ text NOTIFY stateChanged)
    Q_PROPERTY(bool bannerVisible READ bannerVisible NOTIFY stateChanged)
    Q_PROPERTY(bool restored READ isRestored NOTIFY stateChanged)

public:
    enum State { Online, Lost, Reconnecting, Restored };
    Q_ENUM(State)

    // How long "restored" stays on the page before the banner goes.
    static constexpr int kRestoredShownMs = 4000;

    explicit GatewayStatus(QObject *parent = nullptr);

    State state() const { return m_state; }
    QString text() const;
    bool bannerVisible() const { return m_state != Online; }
    bool isRestored() const { return m_state == Restored; }
    int attempt() const { return m_attempt; }

    // Takes a gateway-level event (lost, reconnecting, restored); false for
    // any other type, which is left to its own handling. A reconnecting
    // event shorter than its two fields is logged and changes nothing.
    bool handleEvent(eGW_EVENT_TYPE type, const char *data, int dataLen);

signals:
    void stateChanged();

private:
    void setState(State state);

    State m_state = Online;
    int m_attempt = 0;
    int m_nextTryMs = 0;
    QTimer m_restoredTimer;
};
