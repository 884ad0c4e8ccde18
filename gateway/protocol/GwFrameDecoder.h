#pragma once

#include "GwFrame.h"

#include <string>

// Cuts frames out of a byte stream. Bytes are appended as they arrive; next()
// hands out complete frames one by one. A bad header (magic, version, kind,
// or a length above the limit) puts the decoder in the error state for good:
// the connection carrying it cannot be resynchronised and must be dropped.
class GwFrameDecoder
{
public:
    enum class Status { NeedMore, Frame, Error };

    void append(const char *data, size_t size);
    // Room for `size` more bytes, to receive into directly; commit() then
    // takes the `received` bytes that were written there.
    char *prepare(size_t size);
    void commit(size_t received);
    Status next(GwFrame &frame);
    bool hasError() const { return !m_error.empty(); }
    const std::string &error() const { return m_error; }
    // Bytes held that do not yet form a whole frame.
    size_t pending() const { return m_end - m_offset; }

private:
    Status fail(std::string text);
    void compact();

    std::string m_buffer; // bytes [m_offset, m_end) are held; the rest is room
    size_t m_offset = 0;
    size_t m_end = 0;
    std::string m_error;
};
