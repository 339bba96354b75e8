// The accented texts of the file tests are Windows-1252 bytes. Under Wine a
// process's narrow code page follows its Unix locale; the ctest entries and
// tests/heap_check.sh set LC_ALL=C.UTF-8, which Wine reads as English
// (United States) with code page 1252.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

inline testing::AssertionResult NarrowCodePageIs1252()
{
    UINT page = GetACP();
    if (page == 1252)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "the narrow code page is " << page
                                       << ", not 1252: run with LC_ALL=C.UTF-8, as the ctest entries do";
}

// Every byte from 0x20 to 0xFF that stands for a character of its own in the
// narrow code page, in byte order, and those characters as wide text.
struct MappedBytes {
    std::string bytes;
    std::wstring text;
};

inline MappedBytes EveryMappedByte()
{
    MappedBytes mapped;
    for (int value = 0x20; value <= 0xFF; ++value) {
        char byte = static_cast<char>(value);
        wchar_t character = 0;
        if (MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, &byte, 1, &character, 1) == 1) {
            mapped.bytes += byte;
            mapped.text += character;
        }
    }
    return mapped;
}

// The bytes of a text inside a written attribute: the serializer writes the
// markup characters as entities and everything else as it stands.
inline std::string AsAttributeBytes(const std::string& bytes)
{
    std::string escaped;
    for (char byte : bytes) {
        if (byte == '&')
            escaped += "&amp;";
        else if (byte == '<')
            escaped += "&lt;";
        else if (byte == '>')
            escaped += "&gt;";
        else if (byte == '"')
            escaped += "&quot;";
        else
            escaped += byte;
    }
    return escaped;
}
