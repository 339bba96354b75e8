// Little-endian fields and four-character codes of RIFF files, read from and
// written into plain byte buffers. AVI is little-endian on every platform, so
// the fields are put byte by byte rather than through a cast of a struct.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

constexpr uint32_t Fourcc(const char (&code)[5])
{
    return static_cast<uint32_t>(static_cast<uint8_t>(code[0])) |
        static_cast<uint32_t>(static_cast<uint8_t>(code[1])) << 8 |
        static_cast<uint32_t>(static_cast<uint8_t>(code[2])) << 16 |
        static_cast<uint32_t>(static_cast<uint8_t>(code[3])) << 24;
}

inline uint32_t ReadLe32(const uint8_t* bytes)
{
    return static_cast<uint32_t>(bytes[0]) | static_cast<uint32_t>(bytes[1]) << 8 |
        static_cast<uint32_t>(bytes[2]) << 16 | static_cast<uint32_t>(bytes[3]) << 24;
}

inline void PutLe32(std::vector<uint8_t>& out, uint32_t value)
{
    for (int shift = 0; shift < 32; shift += 8)
        out.push_back(static_cast<uint8_t>(value >> shift));
}

inline void PutLe16(std::vector<uint8_t>& out, uint16_t value)
{
    out.push_back(static_cast<uint8_t>(value));
    out.push_back(static_cast<uint8_t>(value >> 8));
}

// A chunk's data is padded to an even length.
constexpr uint64_t RiffPadded(uint64_t size)
{
    return size + (size & 1);
}
