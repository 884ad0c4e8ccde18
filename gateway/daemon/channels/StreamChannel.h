#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>

class ChannelStatus;

// A stream device of the gateway: TCP client, TCP server, UDP or serial port.
// Each channel runs its sockets or port on a worker object in its own thread;
// the methods below may be called from any thread and never wait on a peer.
//
// The switch rule. The page shows a device's switch from "ConnectState", turns
// it off on event 2 (linkDown) and writes "true"/"false" when the operator
// flips it. So that the switch always tells whether the device is working and
// always stops it:
//  - TCP server, UDP, serial: "ConnectState" is isOpen(). linkUp when opened
//    (listening / bound / port open); linkDown only when the device fails by
//    itself (port removed, listener error) and the channel is then closed.
//  - TCP client: linkUp on every established connection. When an established
//    connection is lost, linkDown fires and "ConnectState" reads false; with
//    "AutoReconnect" true the channel keeps retrying every
//    "ReconnectInterval" in the background and a reconnection fires linkUp
//    (switch on again); with it false the channel closes. Failed attempts
//    before a first connection fire nothing and "ConnectState" stays true, so
//    an operator who switched it on sees it on and stops it with one flip.
//    Writing false always stops every retry.
class StreamChannel : public QObject
{
    Q_OBJECT
public:
    using Params = QMap<QByteArray, QByteArray>;

    // The channel for a stream module type ("TcpClientModule",
    // "TcpServerModule", "UdpModule", "SerialModule", "InsightModule" as a
    // plain TCP client), or nullptr for a type that has none.
    static StreamChannel *create(const QByteArray &moduleType, QObject *parent = nullptr);

    explicit StreamChannel(QObject *parent = nullptr) : QObject(parent) {}
    ~StreamChannel() override = default;

    // Opens with the module's parameters: every key of its type's
    // ParamSchema, each value checked by it (ParamReader says why the
    // channel checks no rule of its own). May block briefly (bind, open a
    // port), never on a peer. GW_OK, or GW_ERR_PORT_IN_USE /
    // GW_ERR_OPEN_FAILED / GW_ERR_INVALID_VALUE (a key missing, no serial
    // port named) with nothing left open.
    virtual quint32 open(const Params &params) = 0;
    // Closes everything and stops retries; idempotent; emits nothing.
    virtual void close() = 0;
    virtual bool isOpen() const = 0;
    // What "ConnectState" reads (see the switch rule above).
    virtual bool connectState() const = 0;
    // Queues bytes without blocking: to every peer (server), to the target
    // (UDP), through the connection or port. GW_ERR_NOT_OPEN when closed or
    // nobody is connected, GW_ERR_BUSY when the bounded send buffer is full.
    virtual quint32 write(const QByteArray &bytes) = 0;
    // Local ports held while open (listening or bound).
    virtual QList<quint16> reservedPorts() const = 0;
    // Frames lost because the bounded frame size was exceeded.
    virtual quint64 droppedFrames() const = 0;
    // State, counters and peers, readable from any thread; nullptr for a
    // device that keeps none.
    virtual ChannelStatus *status() { return nullptr; }
    // Disconnects one peer of a server ("a.b.c.d:port"). Waits for the
    // worker, never for a peer. GW_OK, GW_ERR_INVALID_VALUE when no such
    // peer is connected, GW_ERR_NOT_SUPPORTED for a device without peers.
    virtual quint32 dropPeer(const QString &address);

    // Flow control. A channel stops reading from its peers while more than
    // kMaxInFlightBytes of its frames wait for the consumer, or while input
    // is held for every channel (the gateway's clients do not keep up); the
    // peers' own buffers then fill and TCP slows them down, so nothing is
    // dropped and nothing grows. The consumer reports each batch it has
    // handled with framesTaken(); resumeInput() makes a held channel read
    // again.
    static constexpr qint64 kMaxInFlightBytes = 4 * 1024 * 1024;
    // A device thread keeps its read and push buffers between batches up to
    // this size; a larger one, left by a burst, is freed after use.
    static constexpr qint64 kKeptBufferBytes = 1024 * 1024;
    static void holdAllInput(bool hold);
    static bool allInputHeld();
    virtual void framesTaken(qint64 bytes) = 0;
    virtual void resumeInput() = 0;
    static qint64 bytesOf(const QList<QByteArray> &frames);

signals:
    // Emitted from the worker thread; connect with a queued connection.
    void linkUp();
    void linkDown();
    // The device's state changed (an eGW_DEVICE_STATE).
    void statusChanged(int state);
    // Every frame of one read, in order, each cut after the end sequence.
    void framesReceived(const QList<QByteArray> &frames);
    // A line for the gateway's log (refused peers, dropped frames, errors).
    void logLine(const QString &text);
};
