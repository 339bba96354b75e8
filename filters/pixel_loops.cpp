#include "filters/pixel_loops.h"

#include <uuids.h>

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
    for (int32_t row = 0; row < geometry.height; ++row)
        std::memcpy(DestinationRow(destination, geometry, row), source + static_cast<size_t>(row) * geometry.rowStride,
                    static_cast<size_t>(geometry.rowStride));
}

void AddFrame(uint8_t* destination, uint8_t* source, const FrameGeometry& geometry, PixelLayout layout,
              const DarkLevels& dark)
{
    for (int32_t row = 0; row < geometry.height; ++row) {
        uint8_t* in = source + static_cast<size_t>(row) * geometry.rowStride;
        uint8_t* out = DestinationRow(destination, geometry, row);
        switch (layout) {
        case PixelLayout::YUY2: {
            int32_t end = UsableBytes(geometry.rowStride, 4);
            for (int32_t i = 0; i < end; i += 4) {
                AddSample(out[i], in[i], dark.y);
                AddSample(out[i + 2], in[i + 2], dark.y);
            }
            break;
        }
        case PixelLayout::RGB24:
        case PixelLayout::ARGB32: {
            int32_t step = layout == PixelLayout::RGB24 ? 3 : 4;
            int32_t end = UsableBytes(geometry.rowStride, step);
            for (int32_t i = 0; i < end; i += step) {
                AddSample(out[i], in[i], dark.b);
                AddSample(out[i + 1], in[i + 1], dark.g);
                AddSample(out[i + 2], in[i + 2], dark.r);
            }
            break;
        }
        case PixelLayout::Other:
            return;
        }
    }
}

void MarkSaturatedPixels(uint8_t* frame, const FrameGeometry& geometry, PixelLayout layout, uint8_t threshold)
{
    for (int32_t row = 0; row < geometry.height; ++row) {
        uint8_t* p = frame + static_cast<size_t>(row) * geometry.rowStride;
        switch (layout) {
        case PixelLayout::YUY2: {
            int32_t end = UsableBytes(geometry.rowStride, 4);
            for (int32_t i = 0; i < end; i += 4) {
                if (p[i] >= threshold || p[i + 2] >= threshold) {
                    p[i] = 0x6A;
                    p[i + 1] = 0xCA;
                    p[i + 2] = 0x6A;
                    p[i + 3] = 0xDE;
                }
            }
            break;
        }
        case PixelLayout::RGB24: {
            int32_t end = UsableBytes(geometry.rowStride, 3);
            for (int32_t i = 0; i < end; i += 3) {
                if (p[i] >= threshold || p[i + 1] >= threshold || p[i + 2] >= threshold) {
                    p[i] = 0xE1;
                    p[i + 1] = 0x00;
                    p[i + 2] = 0xE1;
                }
            }
            break;
        }
        case PixelLayout::ARGB32: {
            unsigned limit = 3u * threshold;
            int32_t end = UsableBytes(geometry.rowStride, 4);
            for (int32_t i = 0; i < end; i += 4) {
                if (static_cast<unsigned>(p[i]) + p[i + 1] + p[i + 2] >= limit) {
                    p[i] = 0xE1;
                    p[i + 1] = 0x00;
                    p[i + 2] = 0xE1;
                }
            }
            break;
        }
        case PixelLayout::Other:
            return;
        }
    }
}
