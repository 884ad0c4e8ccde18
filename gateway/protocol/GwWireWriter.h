#pragma once

#include "GwFrame.h"

#include <cstdint>
#include <string>
#include <string_view>

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the wire format is written in host order");

// Builds one frame: the header is reserved up front and its length patched
// by finish(), so a frame is assembled in a single buffer.
class GwWireWriter
{
public:
    GwWireWriter(GwFrameKind kind, uint32_t seq);
    // Appends the frame to `buffer` (frames already written stay in front);
    // finish() hands back the whole buffer.
    GwWireWriter(GwFrameKind kind, uint32_t seq, std::string &&buffer);

    GwWireWriter &u16(uint16_t value);
    GwWireWriter &u32(uint32_t value);
    GwWireWriter &i32(int32_t value);
    // u32 length, then the bytes.
    GwWireWriter &bytes(std::string_view value);

    size_t payloadSize() const { return m_frame.size() - m_start - kGwHeaderSize; }
    // The finished frame; the writer is empty afterwards.
    std::string finish();

private:
    friend class GwReplyWriter; // fills in a reply's code and drops its answer

    // Writes `value` at `offset` bytes from the start of this frame.
    void putU32(size_t offset, uint32_t value);
    // Keeps only the first `size` bytes of the payload.
    void truncatePayload(size_t size);

    std::string m_frame;
    size_t m_start = 0; // where this frame's header begins
};
