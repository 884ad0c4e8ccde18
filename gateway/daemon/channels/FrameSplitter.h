#pragma once

#include <QByteArray>
#include <QList>

// Cuts a byte stream into frames that end with the end sequence (which stays
// in the frame). A frame may arrive over many reads, and so may the end
// sequence itself. A run longer than the frame limit without an end sequence
// is dropped up to and including the next end sequence and counted, so a
// peer that never ends a frame cannot grow memory. Dropping the whole run
// (rather than delivering its first part as a frame) keeps every delivered
// frame a complete one ending with the end sequence, or with a boundary that
// the transport marks (flush()). Without an end sequence, bytes are delivered
// as they arrive, in chunks of at most the limit.
class FrameSplitter
{
public:
    static constexpr int kDefaultMaxFrame = 64 * 1024;

    explicit FrameSplitter(QByteArray endSequence = {}, int maxFrame = kDefaultMaxFrame);

    // Appends the frames completed by these bytes to `frames`; returns the
    // number of frames dropped by this call.
    int feed(const char *data, int size, QList<QByteArray> &frames);
    // Ends the frame in progress where the transport marks a boundary (the
    // end of a datagram): the bytes held become a frame of their own,
    // without the end sequence. An over-long run stays dropped.
    void flush(QList<QByteArray> &frames);
    quint64 dropped() const { return m_dropped; }
    int maxFrame() const { return m_maxFrame; }
    int pending() const { return m_partial.size(); }

private:
    void appendPartial(const char *data, int size);

    QByteArray m_end;
    int m_maxFrame;
    QByteArray m_partial;
    bool m_discarding = false; // inside an over-long run, until its end
    quint64 m_dropped = 0;
};
