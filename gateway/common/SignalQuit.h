#pragma once

#include <QObject>

class QSocketNotifier;

// Ends the event loop when SIGTERM, SIGINT or SIGHUP arrives, from a normal
// slot rather than the signal handler: the handler only writes a byte to a
// socket pair, whose other end this object watches. The program then leaves
// exec() and closes its devices or its page on the way out as after a
// normal quit. One per process.
class SignalQuit : public QObject
{
    Q_OBJECT
public:
    explicit SignalQuit(QObject *parent = nullptr);
    ~SignalQuit() override;

    // False when the socket pair could not be made; the signals then keep
    // their default action.
    bool isActive() const { return m_notifier != nullptr; }

signals:
    // Emitted on the GUI thread just before the event loop is told to quit.
    void received(int signalNumber);

private:
    void onReadable();

    QSocketNotifier *m_notifier = nullptr;
};
