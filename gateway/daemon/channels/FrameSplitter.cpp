#include "FrameSplitter.h"

#include <cstring>

FrameSplitter::FrameSplitter(QByteArray endSequence, int maxFrame)
    : m_end(std::move(endSequence)), m_maxFrame(maxFrame > 0 ? maxFrame : kDefaultMaxFrame)
{
}

void FrameSplitter::appendPartial(const char *data, int size)
{
    if (m_discarding) {
        // Only the bytes that could begin the end sequence matter now.
        m_partial = (m_partial + QByteArray::fromRawData(data, size)).right(m_end.size() - 1);
        return;
    }
    if (m_partial.size() + size > m_maxFrame) {
        // Keep the tail that could still start the end sequence.
        const int keep = qMin(m_end.size() - 1, m_partial.size() + size);
        QByteArray tail = (m_partial + QByteArray::fromRawData(data, size)).right(keep);
        m_partial = tail;
        m_discarding = true;
        ++m_dropped;
        return;
    }
    m_partial.append(data, size);
}

void FrameSplitter::flush(QList<QByteArray> &frames)
{
    if (!m_discarding && !m_partial.isEmpty())
        frames.append(m_partial);
    m_partial.clear();
    m_discarding = false;
}

int FrameSplitter::feed(const char *data, int size, QList<QByteArray> &frames)
{
    const quint64 droppedBefore = m_dropped;
    if (size <= 0)
        return 0;
    if (m_end.isEmpty()) {
        for (int offset = 0; offset < size; offset += m_maxFrame)
            frames.append(QByteArray(data + offset, qMin(m_maxFrame, size - offset)));
        return 0;
    }
    const int endSize = m_end.size();
    int start = 0;
    // An end sequence split across reads: look at the held tail plus the new bytes.
    if (!m_partial.isEmpty() && endSize > 1) {
        const int lookback = qMin(endSize - 1, m_partial.size());
        const QByteArray joint = m_partial.right(lookback) + QByteArray::fromRawData(data, qMin(size, endSize - 1));
        const int at = joint.indexOf(m_end);
        if (at >= 0) {
            const int fromNew = at + endSize - lookback;
            // The end of an over-long run was counted when the run began.
            if (!m_discarding) {
                if (m_partial.size() + fromNew <= m_maxFrame)
                    frames.append(m_partial + QByteArray(data, fromNew));
                else
                    ++m_dropped;
            }
            m_partial.clear();
            m_discarding = false;
            start = fromNew;
        }
    }
    const char *end = m_end.constData();
    while (start < size) {
        const void *hit = memmem(data + start, size_t(size - start), end, size_t(endSize));
        if (!hit) {
            appendPartial(data + start, size - start);
            break;
        }
        const int stop = int(static_cast<const char *>(hit) - data) + endSize;
        if (m_discarding) {
            m_discarding = false;
            m_partial.clear();
        } else if (m_partial.isEmpty()) {
            if (stop - start <= m_maxFrame)
                frames.append(QByteArray(data + start, stop - start));
            else
                ++m_dropped;
        } else if (m_partial.size() + stop - start <= m_maxFrame) {
            frames.append(m_partial + QByteArray(data + start, stop - start));
            m_partial.clear();
        } else {
            ++m_dropped;
            m_partial.clear();
        }
        start = stop;
    }
    return int(m_dropped - droppedBefore);
}
