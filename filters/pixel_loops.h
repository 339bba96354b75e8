// The per-pixel work of the preview's frame tool, over plain buffers:
// copying a frame (turning a bottom-up picture over), adding a frame into
// an accumulator above the dark level, and marking saturated pixels.
#pragma once

#include <guiddef.h>

#include <cstddef>
#include <cstdint>

enum class PixelLayout { YUY2, RGB24, ARGB32, Other };

PixelLayout PixelLayoutOf(const GUID& subtype);

struct FrameGeometry {
    int32_t rowStride = 0;
    int32_t height = 0;  // rows, positive
    bool topDown = false;
};

// Dark levels subtracted before adding: luma for YUY2; blue, green, red for
// RGB24 and ARGB32.
struct DarkLevels {
    uint32_t y = 0, b = 0, g = 0, r = 0;
};

// Copy mode: a top-down frame in one block of byteCount bytes; a bottom-up
// one row by row into reversed rows, so it arrives upside down.
void CopyFrame(uint8_t* destination, const uint8_t* source, size_t byteCount, const FrameGeometry& geometry);

// Add mode: each sample above its dark level has the level taken off in
// the source and the rest added into the destination, saturating at 255.
// Destination rows run backwards for a bottom-up frame. YUY2 chroma and the
// fourth byte of ARGB32 are left alone.
void AddFrame(uint8_t* destination, uint8_t* source, const FrameGeometry& geometry, PixelLayout layout,
              const DarkLevels& dark);

// Paints pixels at or above the threshold in the warning colour: YUY2 if
// either luma of a pair reaches it, RGB24 if any channel does, ARGB32 if
// the sum of the three channels reaches three times it.
void MarkSaturatedPixels(uint8_t* frame, const FrameGeometry& geometry, PixelLayout layout, uint8_t threshold);
