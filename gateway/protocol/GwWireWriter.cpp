#include "GwWireWriter.h"

#include <cstring>

GwWireWriter::GwWireWriter(GwFrameKind kind, uint32_t seq) : GwWireWriter(kind, seq, std::string())
{
}

GwWireWriter::GwWireWriter(GwFrameKind kind, uint32_t seq, std::string &&buffer)
    : m_frame(std::move(buffer)), m_start(m_frame.size())
{
    if (m_frame.capacity() < m_start + 64)
        m_frame.reserve(m_start + 64); // never a shrink of a buffer reserved by the caller
    m_frame.resize(m_start + kGwHeaderSize);
    char *header = &m_frame[m_start];
    header[0] = char(kGwMagic0);
    header[1] = char(kGwMagic1);
    header[2] = char(kGwProtocolVersion);
    header[3] = char(kind);
    putU32(kGwSeqOffset, seq);
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
    putU32(kGwLengthOffset, uint32_t(payloadSize()));
    return std::move(m_frame);
}

void GwWireWriter::putU32(size_t offset, uint32_t value)
{
    std::memcpy(&m_frame[m_start + offset], &value, sizeof(value));
}

void GwWireWriter::truncatePayload(size_t size)
{
    if (size < payloadSize())
        m_frame.resize(m_start + kGwHeaderSize + size);
}
