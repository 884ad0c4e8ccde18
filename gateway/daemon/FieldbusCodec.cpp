#include "FieldbusCodec.h"

#include "GwErrorCodes.h"

#include <charconv>
#include <cstring>

namespace {
constexpr int kFloatBytes = 4;

std::string_view trimmed(std::string_view text)
{
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// from_chars takes a minus sign but no plus sign.
std::string_view withoutPlus(std::string_view text)
{
    return !text.empty() && text.front() == '+' && text.size() > 1 && text[1] != '-' ? text.substr(1) : text;
}

template<typename T>
bool parseWhole(std::string_view text, T *value)
{
    text = withoutPlus(text);
    const char *end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, *value);
    return !text.empty() && result.ec == std::errc() && result.ptr == end;
}

void appendSeparated(std::string &out, const std::string &value, char separator)
{
    if (!out.empty())
        out += separator;
    out += value;
}
} // namespace

int FieldbusCodec::widthOf(int intDataType)
{
    switch (intDataType) {
    case 1: return 2;
    case 2: return 4;
    case 3: return 1;
    default: return 0;
    }
}

FieldbusCodec::ByteOrder FieldbusCodec::byteOrderOf(std::string_view moduleType)
{
    return moduleType == "ProfinetModule" ? ByteOrder::Big : ByteOrder::Little;
}

std::vector<std::string_view> FieldbusCodec::splitValues(std::string_view text, char separator)
{
    std::vector<std::string_view> values;
    if (trimmed(text).empty())
        return values;
    size_t start = 0;
    while (start <= text.size()) {
        const size_t end = text.find(separator, start);
        if (end == std::string_view::npos) {
            // What follows the last separator: a value, or nothing at all.
            if (!trimmed(text.substr(start)).empty())
                values.push_back(trimmed(text.substr(start)));
            break;
        }
        values.push_back(trimmed(text.substr(start, end - start)));
        start = end + 1;
    }
    return values;
}

void FieldbusCodec::appendOrdered(uint64_t value, int size, std::string *out) const
{
    for (int i = 0; i < size; ++i) {
        const int shift = 8 * (m_order == ByteOrder::Big ? size - 1 - i : i);
        out->push_back(char((value >> shift) & 0xff));
    }
}

uint64_t FieldbusCodec::readOrdered(const char *bytes, int size) const
{
    uint64_t value = 0;
    for (int i = 0; i < size; ++i) {
        const int shift = 8 * (m_order == ByteOrder::Big ? size - 1 - i : i);
        value |= uint64_t(uint8_t(bytes[i])) << shift;
    }
    return value;
}

bool FieldbusCodec::appendInt(std::string_view text, std::string *out) const
{
    int64_t value = 0;
    if (m_width < 1 || m_width > 4 || !parseWhole(text, &value))
        return false;
    const int bits = 8 * m_width;
    const int64_t low = -(int64_t(1) << (bits - 1));
    const int64_t high = (int64_t(1) << bits) - 1;
    if (value < low || value > high)
        return false;
    appendOrdered(uint64_t(value), m_width, out);
    return true;
}

bool FieldbusCodec::appendFloat(std::string_view text, std::string *out) const
{
    float value = 0;
    if (!parseWhole(text, &value))
        return false; // not a number, or out of the float's range
    uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    appendOrdered(bits, kFloatBytes, out);
    return true;
}

uint32_t FieldbusCodec::encode(std::string_view text, char separator, bool isFloat, std::string *bytes,
                               int *count) const
{
    const std::vector<std::string_view> values = splitValues(text, separator);
    *count = int(values.size());
    if (values.empty())
        return GW_ERR_INVALID_VALUE;
    std::string out;
    for (std::string_view value : values)
        if (!(isFloat ? appendFloat(value, &out) : appendInt(value, &out)))
            return GW_ERR_INVALID_VALUE;
    *bytes = std::move(out);
    return GW_OK;
}

std::string FieldbusCodec::format(std::string_view bytes, bool isFloat, char separator) const
{
    std::string out;
    const int step = isFloat ? kFloatBytes : m_width;
    if (step < 1)
        return out;
    for (size_t at = 0; at + size_t(step) <= bytes.size(); at += size_t(step)) {
        const uint64_t raw = readOrdered(bytes.data() + at, step);
        if (isFloat) {
            const uint32_t bits = uint32_t(raw);
            float value = 0;
            std::memcpy(&value, &bits, sizeof(value));
            char text[32];
            const auto result = std::to_chars(text, text + sizeof(text), value);
            appendSeparated(out, std::string(text, result.ptr), separator);
        } else {
            // Sign-extend the element.
            const int bits = 8 * step;
            const int64_t value = bits < 64 && (raw >> (bits - 1)) ? int64_t(raw) - (int64_t(1) << bits) : int64_t(raw);
            appendSeparated(out, std::to_string(value), separator);
        }
    }
    return out;
}
