#include "GwFrameDecoder.h"

#include <algorithm>
#include <cstring>

namespace {
uint32_t readU32(const char *p)
{
    uint32_t v = 0;
    std::memcpy(&v, p, sizeof(v));
    return v; // little-endian hosts only (checked in GwWireWriter.h)
}
} // namespace

void GwFrameDecoder::append(const char *data, size_t size)
{
    if (hasError() || size == 0)
        return;
    std::memcpy(prepare(size), data, size);
    commit(size);
}

char *GwFrameDecoder::prepare(size_t size)
{
    compact();
    if (m_buffer.size() < m_end + size)
        m_buffer.resize(m_end + size);
    return &m_buffer[m_end];
}

void GwFrameDecoder::commit(size_t received)
{
    if (!hasError())
        m_end += std::min(received, m_buffer.size() - m_end);
}

GwFrameDecoder::Status GwFrameDecoder::next(GwFrame &frame)
{
    if (hasError())
        return Status::Error;
    if (pending() < kGwHeaderSize)
        return Status::NeedMore;
    const char *h = m_buffer.data() + m_offset;
    if (uint8_t(h[0]) != kGwMagic0 || uint8_t(h[1]) != kGwMagic1)
        return fail("bad magic");
    if (uint8_t(h[2]) != kGwProtocolVersion)
        return fail("unsupported protocol version " + std::to_string(uint8_t(h[2])));
    if (!gwIsKnownFrameKind(uint8_t(h[3])))
        return fail("unknown frame kind " + std::to_string(uint8_t(h[3])));
    const uint32_t length = readU32(h + kGwLengthOffset);
    if (length > kGwMaxPayload)
        return fail("frame of " + std::to_string(length) + " bytes exceeds the limit");
    if (pending() < kGwHeaderSize + length)
        return Status::NeedMore;
    frame.kind = GwFrameKind(uint8_t(h[3]));
    frame.seq = readU32(h + kGwSeqOffset);
    frame.payload.assign(h + kGwHeaderSize, length);
    m_offset += kGwHeaderSize + length;
    return Status::Frame;
}

GwFrameDecoder::Status GwFrameDecoder::fail(std::string text)
{
    m_error = std::move(text);
    m_buffer.clear();
    m_offset = m_end = 0;
    return Status::Error;
}

void GwFrameDecoder::compact()
{
    // Drop consumed bytes once they dominate, so the buffer does not creep.
    if (m_offset == m_end) {
        m_offset = m_end = 0;
    } else if (m_offset > 64 * 1024 && m_offset * 2 > m_end) {
        std::memmove(&m_buffer[0], &m_buffer[m_offset], m_end - m_offset);
        m_end -= m_offset;
        m_offset = 0;
    }
}
