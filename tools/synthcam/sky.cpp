#include "tools/synthcam/sky.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace synthcam {
namespace {

struct Star {
    double x, y;  // fractions of the frame
    double peak;  // level above the background at the centre
    double sigma; // in pixels
};

// The last one is the star that dims.
constexpr Star kStars[] = {
    {0.20, 0.30, 400, 2.5},  // saturated
    {0.55, 0.25, 160, 1.6},  {0.75, 0.60, 100, 1.4}, {0.35, 0.70, 60, 1.3},
    {0.85, 0.20, 30, 1.2},   {0.50, 0.55, 150, 1.6},
};
constexpr double kDimmedPeak = 40;
constexpr double kDriftPixelsPerSecond = 2.0;

uint8_t Clamp(double value)
{
    return static_cast<uint8_t>(std::clamp(value, 0.0, 255.0));
}

size_t PixelOffset(Subtype subtype, int width, int height, int x, int y)
{
    int stride = RowStride(subtype, width);
    switch (subtype) {
    case Subtype::YUY2:
        return static_cast<size_t>(y) * stride + x * 2;
    case Subtype::UYVY:
        return static_cast<size_t>(y) * stride + x * 2 + 1;
    case Subtype::RGB24:
        return static_cast<size_t>(height - 1 - y) * stride + x * 3;
    case Subtype::ARGB32:
    case Subtype::RGB32:
        return static_cast<size_t>(height - 1 - y) * stride + x * 4;
    }
    return 0;
}

void SetLevel(uint8_t* frame, Subtype subtype, int width, int height, int x, int y, uint8_t level)
{
    uint8_t* p = frame + PixelOffset(subtype, width, height, x, y);
    switch (subtype) {
    case Subtype::YUY2:
    case Subtype::UYVY:
        p[0] = level;
        break;
    case Subtype::RGB24:
    case Subtype::ARGB32:
    case Subtype::RGB32:
        p[0] = p[1] = p[2] = level;
        break;
    }
}

}  // namespace

uint64_t UtcMsSince2020(const FILETIME& time)
{
    // 2020-01-01 00:00 UTC in FILETIME units.
    constexpr uint64_t k2020 = 132223104000000000ULL;
    uint64_t ticks = (static_cast<uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
    return ticks < k2020 ? 0 : (ticks - k2020) / 10000;
}

uint64_t UtcMsSince2020Now()
{
    FILETIME now;
    GetSystemTimePreciseAsFileTime(&now);
    return UtcMsSince2020(now);
}

void SkyPainter::Configure(Subtype subtype, int width, int height)
{
    subtype_ = subtype;
    width_ = width;
    height_ = height < 0 ? -height : height;
    size_t pixels = static_cast<size_t>(width_) * height_;
    noise_.resize(pixels * 2 + width_);
    uint32_t seed = 12345;
    for (uint8_t& value : noise_) {
        seed = seed * 1664525u + 1013904223u;
        value = static_cast<uint8_t>(kBackgroundLevel - 2 + (seed >> 24) % 5);
    }
    luma_.assign(pixels, 0);
}

void SkyPainter::Paint(uint8_t* frame, const FrameStamp& stamp, const PictureAdjust& adjust)
{
    if (width_ <= 0 || height_ <= 0)
        return;
    size_t pixels = static_cast<size_t>(width_) * height_;
    // Noise that changes from frame to frame without a random draw per pixel.
    size_t shift = (static_cast<size_t>(stamp.counter) * 7919u) % pixels;
    std::memcpy(luma_.data(), noise_.data() + shift, pixels);

    double seconds = static_cast<double>(stamp.utcMs) / 1000.0;
    int secondOfMinute = static_cast<int>((stamp.utcMs / 1000) % 60);
    bool dimmed = secondOfMinute >= kDimSecond && secondOfMinute < kDimSecond + kDimSeconds;
    double drift = std::fmod(seconds * kDriftPixelsPerSecond, static_cast<double>(width_));
    size_t starCount = sizeof(kStars) / sizeof(kStars[0]);
    for (size_t s = 0; s < starCount; ++s) {
        const Star& star = kStars[s];
        double peak = (s == starCount - 1 && dimmed) ? kDimmedPeak : star.peak;
        double cx = std::fmod(star.x * width_ + drift, static_cast<double>(width_));
        double cy = star.y * height_;
        int radius = static_cast<int>(std::ceil(star.sigma * 3));
        for (int y = static_cast<int>(cy) - radius; y <= static_cast<int>(cy) + radius; ++y) {
            if (y < 0 || y >= height_)
                continue;
            for (int x = static_cast<int>(cx) - radius; x <= static_cast<int>(cx) + radius; ++x) {
                if (x < 0 || x >= width_)
                    continue;
                double dx = x - cx, dy = y - cy;
                double add = peak * std::exp(-(dx * dx + dy * dy) / (2 * star.sigma * star.sigma));
                uint8_t& level = luma_[static_cast<size_t>(y) * width_ + x];
                level = Clamp(level + add);
            }
        }
    }

    if (adjust.offset != lutFor_.offset || adjust.gain != lutFor_.gain) {
        for (int level = 0; level < 256; ++level)
            lut_[level] = Clamp((level - 16) * adjust.gain + 16 + adjust.offset);
        lutFor_ = adjust;
    }

    int stride = RowStride(subtype_, width_);
    for (int y = 0; y < height_; ++y) {
        const uint8_t* in = luma_.data() + static_cast<size_t>(y) * width_;
        switch (subtype_) {
        case Subtype::YUY2: {
            uint8_t* out = frame + static_cast<size_t>(y) * stride;
            for (int x = 0; x < width_; ++x) {
                out[2 * x] = lut_[in[x]];
                out[2 * x + 1] = 128;
            }
            break;
        }
        case Subtype::UYVY: {
            uint8_t* out = frame + static_cast<size_t>(y) * stride;
            for (int x = 0; x < width_; ++x) {
                out[2 * x] = 128;
                out[2 * x + 1] = lut_[in[x]];
            }
            break;
        }
        case Subtype::RGB24: {
            uint8_t* out = frame + static_cast<size_t>(height_ - 1 - y) * stride;
            for (int x = 0; x < width_; ++x)
                out[3 * x] = out[3 * x + 1] = out[3 * x + 2] = lut_[in[x]];
            break;
        }
        case Subtype::ARGB32:
        case Subtype::RGB32: {
            uint8_t* out = frame + static_cast<size_t>(height_ - 1 - y) * stride;
            for (int x = 0; x < width_; ++x) {
                out[4 * x] = out[4 * x + 1] = out[4 * x + 2] = lut_[in[x]];
                out[4 * x + 3] = 255;
            }
            break;
        }
        }
    }
    WriteFrameStamp(frame, subtype_, width_, height_, stamp);
}

int StampCellWidth(int width)
{
    return std::min(4, width / kStampCells);
}

void WriteFrameStamp(uint8_t* frame, Subtype subtype, int width, int height, const FrameStamp& stamp)
{
    height = height < 0 ? -height : height;
    int cell = StampCellWidth(width);
    if (cell < 1 || height < kStampRows)
        return;
    uint64_t bits = (static_cast<uint64_t>(stamp.counter & 0xFFFFFF) << 40) | (stamp.utcMs & 0xFFFFFFFFFFULL);
    for (int c = 0; c < kStampCells; ++c) {
        uint8_t level = (bits >> (63 - c)) & 1 ? kStampWhite : kStampBlack;
        for (int y = 0; y < kStampRows; ++y)
            for (int x = c * cell; x < (c + 1) * cell; ++x)
                SetLevel(frame, subtype, width, height, x, y, level);
    }
}

bool ReadFrameStamp(const uint8_t* frame, Subtype subtype, int width, int height, FrameStamp* stamp)
{
    height = height < 0 ? -height : height;
    int cell = StampCellWidth(width);
    if (cell < 1 || height < kStampRows)
        return false;
    uint64_t bits = 0;
    for (int c = 0; c < kStampCells; ++c) {
        uint8_t level = LumaAt(frame, subtype, width, height, c * cell + cell / 2, kStampRows / 2);
        bits = (bits << 1) | (level > (kStampWhite + kStampBlack) / 2 ? 1u : 0u);
    }
    stamp->counter = static_cast<uint32_t>(bits >> 40);
    stamp->utcMs = bits & 0xFFFFFFFFFFULL;
    return true;
}

bool ReadStampFromLuma(const uint8_t* plane, int planeStride, int frameWidth, FrameStamp* stamp)
{
    int cell = StampCellWidth(frameWidth);
    if (cell < 1)
        return false;
    uint64_t bits = 0;
    for (int c = 0; c < kStampCells; ++c) {
        uint8_t level = plane[static_cast<size_t>(kStampRows / 2) * planeStride + c * cell + cell / 2];
        bits = (bits << 1) | (level > (kStampWhite + kStampBlack) / 2 ? 1u : 0u);
    }
    stamp->counter = static_cast<uint32_t>(bits >> 40);
    stamp->utcMs = bits & 0xFFFFFFFFFFULL;
    return true;
}

uint8_t LumaAt(const uint8_t* frame, Subtype subtype, int width, int height, int x, int y)
{
    height = height < 0 ? -height : height;
    const uint8_t* p = frame + PixelOffset(subtype, width, height, x, y);
    switch (subtype) {
    case Subtype::YUY2:
    case Subtype::UYVY:
        return p[0];
    default:
        return p[1];
    }
}

}  // namespace synthcam
