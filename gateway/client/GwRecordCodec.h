#pragma once

#include "GwPlatform.h"
#include "GwWireReader.h"
#include "GwWireWriter.h"

#include <string_view>

// Moves parameter records and fixed-size text fields between the caller's
// structures and the wire. Only the entries in use cross the wire.
namespace GwRecordCodec {

// False when the record is missing or its count is outside 0..128.
bool isValid(const GW_PARAM_RECORD *record);
// u32 count, then each entry's key.
void writeKeys(GwWireWriter &writer, const GW_PARAM_RECORD &record);
// u32 count, then each entry's key and value.
void writePairs(GwWireWriter &writer, const GW_PARAM_RECORD &record);
// Reads u32 count and pairs into the record (count set). GW_OK, or
// GW_ERR_PROTOCOL / GW_ERR_BUFFER_TOO_SMALL with the record untouched.
uint32_t readPairs(GwWireReader &reader, GW_PARAM_RECORD &record);
// Copies text into a fixed field with a terminating NUL; false (field left
// empty) when it does not fit.
bool copyField(char *field, size_t fieldSize, std::string_view text);
// The NUL-terminated text of a fixed field, never past its end.
std::string_view fieldText(const char *field, size_t fieldSize);

} // namespace GwRecordCodec
