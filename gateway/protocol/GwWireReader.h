#pragma once

#include <cstdint>
#include <string_view>

// Reads the fields of one payload. Every read checks the bytes left; the
// first short read makes ok() false for good and later reads return zeros,
// so a decoder reads all its fields and checks ok() once at the end.
class GwWireReader
{
public:
    explicit GwWireReader(std::string_view payload) : m_data(payload) {}

    uint16_t u16();
    uint32_t u32();
    int32_t i32();
    // A u32 length, then that many bytes; empty (and not ok) when short.
    std::string_view bytes();

    bool ok() const { return m_ok; }
    // All fields read and nothing left over.
    bool done() const { return m_ok && m_pos == m_data.size(); }

private:
    bool take(size_t size, const char **out);

    std::string_view m_data;
    size_t m_pos = 0;
    bool m_ok = true;
};
