// Reading numbers and commas out of the receiver's bytes the way the C
// library's sscanf reads them ("%2hu", "%d", a literal '.'), but over a text
// with a known end: nothing at or past the end is ever read, so a sentence
// cut short, a missing zero byte or a position past the end gives the end of
// the text and never a read outside the buffer.
#pragma once

#include <cstddef>
#include <cstdint>

// The bytes of a text and where it ends. Positions at or past `length` read
// as the end of the text.
struct ByteText {
    const unsigned char* bytes;
    size_t length;
};

constexpr size_t kNotFound = SIZE_MAX;

// Length of the text up to the first zero byte, at most `capacity`.
size_t TextLength(const unsigned char* buffer, size_t capacity);

// The first `byte` at or after `from`, or kNotFound.
size_t FindByte(ByteText text, size_t from, unsigned char byte);

// "%Nhu": skips white space, then takes at most `width` characters of an
// optional sign and digits. A minus sign negates in 16 bits, as the library
// does. On success `at` moves behind the number; without a digit it fails
// and `value` is left alone.
bool ScanUnsignedShort(ByteText text, size_t& at, int width, uint16_t& value);

// "%d": skips white space, an optional sign, then every digit. Numbers past
// 32 bits wrap around as the platform's library wraps them.
bool ScanInt(ByteText text, size_t& at, int32_t& value);

// A literal character of a format: the next byte must be it, with no white
// space skipped.
bool MatchByte(ByteText text, size_t& at, unsigned char byte);

// "%d.%d" from `at`: a whole part and the digits behind the point as an
// integer, each zero where the scan stops.
struct WholeAndDecimals {
    int32_t whole = 0;
    int32_t decimals = 0;
};
WholeAndDecimals ScanWholeAndDecimals(ByteText text, size_t at);

// "%2hu%2hu%2hu.%3hu" from `at`: hours, minutes, seconds and the decimals as
// an integer, each zero where the scan stops.
struct GgaClock {
    uint16_t hours = 0;
    uint16_t minutes = 0;
    uint16_t seconds = 0;
    uint16_t decimals = 0;
};
GgaClock ScanGgaClock(ByteText text, size_t at);
