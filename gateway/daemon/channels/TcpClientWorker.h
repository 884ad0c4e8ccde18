#pragma once

#include "StreamWorker.h"

#include <QElapsedTimer>
#include <QHostAddress>

class QTcpSocket;
class QTimer;

// Connects to "TargetIP":"TargetPort" and keeps trying every
// "ReconnectInterval" ms while open (the switch rule is in StreamChannel.h).
// State: "Opening" on the first attempt, "Connected", "Reconnecting" after a
// failed attempt or a lost connection (detail: attempt number, next try and
// the system's error text).
class TcpClientWorker : public StreamWorker
{
    Q_OBJECT
public:
    using StreamWorker::StreamWorker;

    quint32 open(const StreamChannel::Params &params) override;
    void close() override;
    void send(const QByteArray &bytes) override;
    void flushOutput() override;
    void readPending() override;

private:
    void createSocket();
    void retry();
    void connectNow();
    void onConnected();
    void onDisconnected();
    void onError();
    QString targetText() const;
    QString nextTryText() const;
    void updateBacklog();

    QTcpSocket *m_socket = nullptr;
    QTimer *m_retry = nullptr;
    QElapsedTimer m_attempt; // since the pending connection attempt began
    QHostAddress m_target;
    quint16 m_port = 0;
    bool m_autoReconnect = true;
    bool m_established = false;
    bool m_hadConnection = false; // connected at least once since opened
    int m_failedAttempts = 0;     // since the last connection
    QByteArray m_endChar;
    FrameSplitter m_splitter;
};
