#include "video/recording_estimate.h"

#include <limits>

namespace {

uint32_t BitsPerPixel(VideoSubtype subtype)
{
    switch (subtype) {
    case SubtypeRGB24:
        return 24;
    case SubtypeARGB32:
        return 32;
    default:
        return 16;
    }
}

}  // namespace

uint64_t UncompressedFrameBytes(int32_t width, int32_t height, VideoSubtype subtype)
{
    // A negative height is a top-down picture of that many rows; a negative
    // width is no picture.
    uint64_t w = width > 0 ? static_cast<uint64_t>(width) : 0;
    uint64_t h = height < 0 ? static_cast<uint64_t>(-static_cast<int64_t>(height)) : static_cast<uint64_t>(height);
    uint64_t rowBytes = (w * BitsPerPixel(subtype) + 31) / 32 * 4;
    return rowBytes * h;
}

uint64_t EstimatedRecordingBytes(uint64_t durationMs, int64_t frameTime100ns, uint64_t frameBytes)
{
    constexpr uint64_t kMost = std::numeric_limits<uint64_t>::max();
    if (durationMs > kMost / 10000)
        return kMost;
    // Without a frame time, 30 frames a second.
    uint64_t ticks = frameTime100ns > 0 ? durationMs * 10000 : durationMs * 30;
    uint64_t frameTime = frameTime100ns > 0 ? static_cast<uint64_t>(frameTime100ns) : 1000;
    uint64_t frames = (ticks + frameTime - 1) / frameTime;
    if (frameBytes != 0 && frames > kMost / frameBytes)
        return kMost;
    return frames * frameBytes;
}

uint64_t WholeMegabytes(uint64_t bytes)
{
    return bytes / (1u << 20) + (bytes % (1u << 20) != 0 ? 1 : 0);
}
