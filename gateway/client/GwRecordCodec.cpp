#include "GwRecordCodec.h"

#include <cstring>

namespace GwRecordCodec {

bool isValid(const GW_PARAM_RECORD *record)
{
    return record && record->count >= 0 && record->count <= GW_PARAM_MAX_ENTRIES;
}

std::string_view fieldText(const char *field, size_t fieldSize)
{
    return std::string_view(field, strnlen(field, fieldSize));
}

bool copyField(char *field, size_t fieldSize, std::string_view text)
{
    if (text.size() >= fieldSize) {
        field[0] = '\0';
        return false;
    }
    std::memcpy(field, text.data(), text.size());
    field[text.size()] = '\0';
    return true;
}

void writeKeys(GwWireWriter &writer, const GW_PARAM_RECORD &record)
{
    writer.u32(uint32_t(record.count));
    for (int i = 0; i < record.count; ++i)
        writer.bytes(fieldText(record.entries[i].key, GW_PARAM_KEY_SIZE));
}

void writePairs(GwWireWriter &writer, const GW_PARAM_RECORD &record)
{
    writer.u32(uint32_t(record.count));
    for (int i = 0; i < record.count; ++i) {
        writer.bytes(fieldText(record.entries[i].key, GW_PARAM_KEY_SIZE));
        writer.bytes(fieldText(record.entries[i].value, GW_PARAM_VALUE_SIZE));
    }
}

uint32_t readPairs(GwWireReader &reader, GW_PARAM_RECORD &record)
{
    const uint32_t count = reader.u32();
    if (!reader.ok())
        return GW_ERR_PROTOCOL;
    if (count > GW_PARAM_MAX_ENTRIES)
        return GW_ERR_BUFFER_TOO_SMALL;
    // Checked in full on a copy of the reader first, so that a bad reply
    // leaves the caller's record as it was.
    GwWireReader check = reader;
    for (uint32_t i = 0; i < count; ++i) {
        const size_t keySize = check.bytes().size();
        const size_t valueSize = check.bytes().size();
        if (!check.ok())
            return GW_ERR_PROTOCOL;
        if (keySize >= GW_PARAM_KEY_SIZE || valueSize >= GW_PARAM_VALUE_SIZE)
            return GW_ERR_BUFFER_TOO_SMALL;
    }
    for (uint32_t i = 0; i < count; ++i) {
        copyField(record.entries[i].key, GW_PARAM_KEY_SIZE, reader.bytes());
        copyField(record.entries[i].value, GW_PARAM_VALUE_SIZE, reader.bytes());
    }
    record.count = int32_t(count);
    return GW_OK;
}

} // namespace GwRecordCodec
