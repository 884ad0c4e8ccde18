#include "GwWireWriter.h"

#include <cstring>

GwWireWriter::GwWireWriter(GwFrameKind kind, uint32_t seq)
{
    m_frame.reserve(64);
    m_frame.resize(kGwHeaderSize);
    m_frame[0] = char(kGwMagic0);
    m_frame[1] = char(kGwMagic1);
    m_frame[2] = char(kGwProtocolVersion);
    m_frame[3] = char(kind);
    std::memcpy(&m_frame[4], &seq, sizeof(seq));
}

GwWireWriter &GwWireWriter::u16(uint16_t value)
{
    m_frame.append(reinterpret_cast<const char *>(&value), sizeof(value));
    return *this;
}

GwWireWriter &GwWireWriter::u32(uint32_t value)
{
    m_frame.append(reinterpret_cast<const char *>(&value), sizeof(value));
    return *this;
}

GwWireWriter &GwWireWriter::i32(int32_t value)
{
    m_frame.append(reinterpret_cast<const char *>(&value), sizeof(value));
    return *this;
}

GwWireWriter &GwWireWriter::bytes(std::string_view value)
{
    u32(uint32_t(value.size()));
    m_frame.append(value.data(), value.size());
    return *this;
}

std::string GwWireWriter::finish()
{
    const uint32_t length = uint32_t(payloadSize());
    std::memcpy(&m_frame[8], &length, sizeof(length));
    return std::move(m_frame);
}
