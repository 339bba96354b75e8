#include "gps/nmea_scan.h"

namespace {

bool IsSpace(unsigned char byte)
{
    // The "C" locale's white space: a byte of 128 or more is none.
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

bool IsDigit(unsigned char byte)
{
    return byte >= '0' && byte <= '9';
}

void SkipSpace(ByteText text, size_t& at)
{
    while (at < text.length && IsSpace(text.bytes[at]))
        ++at;
}

// An optional sign and digits, at most `width` characters of them (-1: no
// limit). The value wraps modulo 2^32; the caller narrows it.
bool ScanSignedDigits(ByteText text, size_t& at, int width, uint32_t& value)
{
    SkipSpace(text, at);
    size_t position = at;
    int left = width;
    bool negative = false;
    if (position < text.length && left != 0 && (text.bytes[position] == '-' || text.bytes[position] == '+')) {
        negative = text.bytes[position] == '-';
        ++position;
        --left;
    }
    uint32_t number = 0;
    bool digits = false;
    while (position < text.length && left != 0 && IsDigit(text.bytes[position])) {
        number = number * 10u + static_cast<uint32_t>(text.bytes[position] - '0');
        digits = true;
        ++position;
        --left;
    }
    if (!digits)
        return false;
    value = negative ? 0u - number : number;
    at = position;
    return true;
}

}  // namespace

size_t TextLength(const unsigned char* buffer, size_t capacity)
{
    size_t length = 0;
    while (length < capacity && buffer[length] != 0)
        ++length;
    return length;
}

size_t FindByte(ByteText text, size_t from, unsigned char byte)
{
    for (size_t at = from; at < text.length; ++at) {
        if (text.bytes[at] == byte)
            return at;
    }
    return kNotFound;
}

bool ScanUnsignedShort(ByteText text, size_t& at, int width, uint16_t& value)
{
    uint32_t number = 0;
    if (!ScanSignedDigits(text, at, width, number))
        return false;
    value = static_cast<uint16_t>(number);
    return true;
}

bool ScanInt(ByteText text, size_t& at, int32_t& value)
{
    uint32_t number = 0;
    if (!ScanSignedDigits(text, at, -1, number))
        return false;
    value = static_cast<int32_t>(number);
    return true;
}

bool MatchByte(ByteText text, size_t& at, unsigned char byte)
{
    if (at >= text.length || text.bytes[at] != byte)
        return false;
    ++at;
    return true;
}

WholeAndDecimals ScanWholeAndDecimals(ByteText text, size_t at)
{
    WholeAndDecimals value;
    if (ScanInt(text, at, value.whole) && MatchByte(text, at, '.'))
        ScanInt(text, at, value.decimals);
    return value;
}

GgaClock ScanGgaClock(ByteText text, size_t at)
{
    GgaClock clock;
    if (ScanUnsignedShort(text, at, 2, clock.hours) && ScanUnsignedShort(text, at, 2, clock.minutes) &&
        ScanUnsignedShort(text, at, 2, clock.seconds) && MatchByte(text, at, '.'))
        ScanUnsignedShort(text, at, 3, clock.decimals);
    return clock;
}
