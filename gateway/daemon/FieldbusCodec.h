#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The bytes of a fieldbus address: elements of one width in the device's
// byte order, and the conversion of value lists to and from them. The
// gateway converts the vision side's WriteInt/WriteFloat with it and gwplc
// the PLC side's typed values, so both sides agree on every byte. Plain C++:
// gwplc links it without Qt.
//
// Byte order: a PROFINET device carries its IO data in network order
// (big-endian), as a PROFINET controller (an S7 among them) reads an INT or
// REAL from its input area; EtherNet/IP carries CIP data, which is
// little-endian by definition (an INT of an assembly arrives low byte first).
class FieldbusCodec
{
public:
    enum class ByteOrder { Big, Little };

    FieldbusCodec(int elementWidth, ByteOrder order) : m_width(elementWidth), m_order(order) {}

    // Bytes per element of a 1-based "IntDataType": 1 16-bit, 2 32-bit,
    // 3 8-bit; 0 for any other code.
    static int widthOf(int intDataType);
    static ByteOrder byteOrderOf(std::string_view moduleType);
    // The values of a list such as "1;2;3;": split at the separator, blanks
    // around a value dropped, one final separator ending the list. Empty
    // values are kept ("1;;2;" has three) so that the caller refuses them.
    static std::vector<std::string_view> splitValues(std::string_view text, char separator);

    // Converts a value list to bytes: integers one element each, floats as
    // 32-bit IEEE 754 values (one 32-bit element, two 16-bit or four 8-bit
    // ones). `count` is the number of values in the text in every case.
    // GW_OK, or GW_ERR_INVALID_VALUE for an empty list or a value that is not
    // a number or does not fit: an integer fits when the element holds it as
    // a signed or an unsigned number (16-bit: -32768 to 65535), so that both
    // INT and WORD values can be sent.
    uint32_t encode(std::string_view text, char separator, bool isFloat, std::string *bytes, int *count) const;
    // The whole elements of `bytes` as signed integers, or the whole 32-bit
    // groups as floats, joined by `separator`.
    std::string format(std::string_view bytes, bool isFloat, char separator) const;

    int width() const { return m_width; }

private:
    bool appendInt(std::string_view text, std::string *out) const;
    bool appendFloat(std::string_view text, std::string *out) const;
    void appendOrdered(uint64_t value, int size, std::string *out) const;
    uint64_t readOrdered(const char *bytes, int size) const;

    int m_width;
    ByteOrder m_order;
};
