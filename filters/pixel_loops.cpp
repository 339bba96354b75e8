#include "filters/pixel_loops.h"

#include <uuids.h>

#include <emmintrin.h>
#include <xmmintrin.h>

#include <cstring>

PixelLayout PixelLayoutOf(const GUID& subtype)
{
    if (subtype == MEDIASUBTYPE_YUY2)
        return PixelLayout::YUY2;
    if (subtype == MEDIASUBTYPE_RGB24)
        return PixelLayout::RGB24;
    if (subtype == MEDIASUBTYPE_ARGB32)
        return PixelLayout::ARGB32;
    return PixelLayout::Other;
}

namespace {

uint8_t* DestinationRow(uint8_t* destination, const FrameGeometry& geometry, int32_t row)
{
    int32_t target = geometry.topDown ? row : geometry.height - 1 - row;
    return destination + static_cast<size_t>(target) * geometry.rowStride;
}

inline void AddSample(uint8_t& destination, uint8_t& source, uint32_t dark)
{
    if (source <= dark)
        return;
    uint8_t rest = static_cast<uint8_t>(source - dark);
    source = rest;
    unsigned sum = static_cast<unsigned>(destination) + rest;
    destination = static_cast<uint8_t>(sum < 256 ? sum : 255);
}

// The whole pixels of a row: a pixel is worked on only when all its bytes
// lie inside the row.
inline int32_t UsableBytes(int32_t rowStride, int32_t step)
{
    return rowStride - rowStride % step;
}

}  // namespace

void CopyFrame(uint8_t* destination, const uint8_t* source, size_t byteCount, const FrameGeometry& geometry)
{
    if (geometry.topDown) {
        std::memcpy(destination, source, byteCount);
        return;
    }
    for (int32_t row = 0; row < geometry.height; ++row) {
        // The destination runs backwards row by row: the next row is asked
        // for ahead, as the processor's own prefetch won't.
        if (row + 1 < geometry.height) {
            const uint8_t* next = DestinationRow(destination, geometry, row + 1);
            for (int32_t i = 0; i < geometry.rowStride; i += 64)
                _mm_prefetch(reinterpret_cast<const char*>(next + i), _MM_HINT_T0);
        }
        std::memcpy(DestinationRow(destination, geometry, row), source + static_cast<size_t>(row) * geometry.rowStride,
                    static_cast<size_t>(geometry.rowStride));
    }
}

namespace {

// Sixteen bytes of dark levels in the packing's byte order, starting at a
// pixel boundary; 255 where a byte is never worked on (nothing exceeds it).
struct DarkPattern {
    __m128i vectors[3];
    int count;  // vectors per whole-pixel block: 1, or 3 for RGB24's 48 bytes
};

uint8_t Level(uint32_t dark)
{
    return static_cast<uint8_t>(dark > 255 ? 255 : dark);
}

DarkPattern MakeDarkPattern(PixelLayout layout, const DarkLevels& dark)
{
    alignas(16) uint8_t bytes[48];
    const uint8_t y = Level(dark.y), b = Level(dark.b), g = Level(dark.g), r = Level(dark.r);
    for (int i = 0; i < 48; ++i) {
        switch (layout) {
        case PixelLayout::YUY2:
            bytes[i] = (i % 4 == 0 || i % 4 == 2) ? y : 255;
            break;
        case PixelLayout::RGB24:
            bytes[i] = i % 3 == 0 ? b : i % 3 == 1 ? g : r;
            break;
        default:
            bytes[i] = i % 4 == 0 ? b : i % 4 == 1 ? g : i % 4 == 2 ? r : 255;
            break;
        }
    }
    DarkPattern pattern;
    pattern.count = layout == PixelLayout::RGB24 ? 3 : 1;
    for (int k = 0; k < 3; ++k)
        pattern.vectors[k] = _mm_load_si128(reinterpret_cast<const __m128i*>(bytes + 16 * k));
    return pattern;
}

// Sixteen samples at once: the part above the dark level is added into the
// destination with saturation and left in the source; samples at or below
// it are untouched on both sides.
inline void AddBlock(uint8_t* destination, uint8_t* source, __m128i dark)
{
    __m128i in = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source));
    __m128i out = _mm_loadu_si128(reinterpret_cast<const __m128i*>(destination));
    __m128i rest = _mm_subs_epu8(in, dark);
    __m128i none = _mm_cmpeq_epi8(rest, _mm_setzero_si128());
    __m128i kept = _mm_or_si128(rest, _mm_and_si128(none, in));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(source), kept);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(destination), _mm_adds_epu8(out, rest));
}

inline __m128i Masked(const uint8_t* bytes, __m128i mask)
{
    return _mm_and_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)), mask);
}

// Whether any looked-at byte of a block reaches the threshold; the bytes
// not looked at are masked to 0, which reaches no threshold above 0.
inline bool AnyAtLeast(const uint8_t* bytes, int32_t block, __m128i mask, __m128i threshold)
{
    __m128i top = _mm_max_epu8(_mm_max_epu8(Masked(bytes, mask), Masked(bytes + 16, mask)), Masked(bytes + 32, mask));
    if (block == 64)
        top = _mm_max_epu8(top, Masked(bytes + 48, mask));
    __m128i reached = _mm_cmpeq_epi8(_mm_max_epu8(top, threshold), top);
    return _mm_movemask_epi8(reached) != 0;
}

void MarkPixel(uint8_t* p, PixelLayout layout, uint8_t threshold)
{
    switch (layout) {
    case PixelLayout::YUY2:
        if (p[0] >= threshold || p[2] >= threshold) {
            p[0] = 0x6A;
            p[1] = 0xCA;
            p[2] = 0x6A;
            p[3] = 0xDE;
        }
        break;
    case PixelLayout::RGB24:
        if (p[0] >= threshold || p[1] >= threshold || p[2] >= threshold) {
            p[0] = 0xE1;
            p[1] = 0x00;
            p[2] = 0xE1;
        }
        break;
    case PixelLayout::ARGB32:
        if (static_cast<unsigned>(p[0]) + p[1] + p[2] >= 3u * threshold) {
            p[0] = 0xE1;
            p[1] = 0x00;
            p[2] = 0xE1;
        }
        break;
    case PixelLayout::Other:
        break;
    }
}

int StepOf(PixelLayout layout)
{
    return layout == PixelLayout::RGB24 ? 3 : 4;
}

}  // namespace

void AddFrame(uint8_t* destination, uint8_t* source, const FrameGeometry& geometry, PixelLayout layout,
              const DarkLevels& dark)
{
    if (layout == PixelLayout::Other)
        return;
    const DarkPattern pattern = MakeDarkPattern(layout, dark);
    const int32_t step = StepOf(layout);
    // Whole pixels per block: 48 bytes of RGB24 (three patterns), 64 of the
    // four-byte packings (one pattern four times).
    const int32_t block = pattern.count == 3 ? 48 : 64;
    const __m128i d0 = pattern.vectors[0];
    const __m128i d1 = pattern.count == 3 ? pattern.vectors[1] : d0;
    const __m128i d2 = pattern.count == 3 ? pattern.vectors[2] : d0;
    const int32_t end = UsableBytes(geometry.rowStride, step);
    for (int32_t row = 0; row < geometry.height; ++row) {
        uint8_t* in = source + static_cast<size_t>(row) * geometry.rowStride;
        uint8_t* out = DestinationRow(destination, geometry, row);
        // A bottom-up frame's destination rows run backwards through memory,
        // which the processor's own prefetch doesn't follow: the next row is
        // asked for while this one is worked on.
        const uint8_t* nextOut = row + 1 < geometry.height ? DestinationRow(destination, geometry, row + 1) : out;
        int32_t i = 0;
        for (; i + block <= end; i += block) {
            _mm_prefetch(reinterpret_cast<const char*>(nextOut + i), _MM_HINT_T0);
            AddBlock(out + i, in + i, d0);
            AddBlock(out + i + 16, in + i + 16, d1);
            AddBlock(out + i + 32, in + i + 32, d2);
            if (block == 64)
                AddBlock(out + i + 48, in + i + 48, d0);
        }
        for (; i < end; i += step) {
            if (layout == PixelLayout::YUY2) {
                AddSample(out[i], in[i], dark.y);
                AddSample(out[i + 2], in[i + 2], dark.y);
            } else {
                AddSample(out[i], in[i], dark.b);
                AddSample(out[i + 1], in[i + 1], dark.g);
                AddSample(out[i + 2], in[i + 2], dark.r);
            }
        }
    }
}

void MarkSaturatedPixels(uint8_t* frame, const FrameGeometry& geometry, PixelLayout layout, uint8_t threshold)
{
    if (layout == PixelLayout::Other)
        return;
    // A pixel can only be marked if one of its looked-at bytes reaches the
    // threshold (for ARGB32: the sum of three reaches three times it only if
    // the largest reaches it). Blocks without such a byte are passed over.
    alignas(16) uint8_t maskBytes[16];
    for (int i = 0; i < 16; ++i)
        maskBytes[i] = layout == PixelLayout::YUY2     ? ((i % 4 == 0 || i % 4 == 2) ? 0xFF : 0)
                       : layout == PixelLayout::ARGB32 ? (i % 4 == 3 ? 0 : 0xFF)
                                                       : 0xFF;
    const __m128i mask = _mm_load_si128(reinterpret_cast<const __m128i*>(maskBytes));
    const __m128i limit = _mm_set1_epi8(static_cast<char>(threshold));
    const int32_t step = StepOf(layout);
    const int32_t block = layout == PixelLayout::RGB24 ? 48 : 64;
    const int32_t end = UsableBytes(geometry.rowStride, step);
    for (int32_t row = 0; row < geometry.height; ++row) {
        uint8_t* p = frame + static_cast<size_t>(row) * geometry.rowStride;
        int32_t i = 0;
        for (; i + block <= end; i += block) {
            if (!AnyAtLeast(p + i, block, mask, limit))
                continue;
            for (int32_t j = 0; j < block; j += step)
                MarkPixel(p + i + j, layout, threshold);
        }
        for (; i < end; i += step)
            MarkPixel(p + i, layout, threshold);
    }
}
