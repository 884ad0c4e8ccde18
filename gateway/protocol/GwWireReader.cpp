#include "GwWireReader.h"

#include <cstring>

bool GwWireReader::take(size_t size, const char **out)
{
    if (!m_ok || m_data.size() - m_pos < size) {
        m_ok = false;
        return false;
    }
    *out = m_data.data() + m_pos;
    m_pos += size;
    return true;
}

uint16_t GwWireReader::u16()
{
    const char *p = nullptr;
    uint16_t v = 0;
    if (take(sizeof(v), &p))
        std::memcpy(&v, p, sizeof(v));
    return v;
}

uint32_t GwWireReader::u32()
{
    const char *p = nullptr;
    uint32_t v = 0;
    if (take(sizeof(v), &p))
        std::memcpy(&v, p, sizeof(v));
    return v;
}

int32_t GwWireReader::i32()
{
    return int32_t(u32());
}

std::string_view GwWireReader::bytes()
{
    const uint32_t size = u32();
    const char *p = nullptr;
    if (!take(size, &p))
        return {};
    return std::string_view(p, size);
}
