// What the benchmarks share: a clock, a frame of night sky, and the median
// of repeated timings.
#pragma once

#include "filters/pixel_loops.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace bench {

// A frame to measure: its packing and size, and whether its rows run from
// the top.
struct FrameCase {
    const char* name;
    PixelLayout layout;
    int width, height, bytesPerPixel;
    bool topDown;
};

inline int32_t RowStride(const FrameCase& c)
{
    return ((c.bytesPerPixel * 8 * c.width + 31) >> 3) & ~3;
}

// Seconds on the performance counter.
inline double Now()
{
    static const double frequency = [] {
        LARGE_INTEGER f;
        QueryPerformanceFrequency(&f);
        return static_cast<double>(f.QuadPart);
    }();
    LARGE_INTEGER t;
    QueryPerformanceCounter(&t);
    return static_cast<double>(t.QuadPart) / frequency;
}

// A night sky: dark noisy background with a few bright spots.
inline void FillSky(std::vector<uint8_t>& frame, unsigned seed)
{
    for (size_t i = 0; i < frame.size(); ++i) {
        seed = seed * 1664525u + 1013904223u;
        frame[i] = static_cast<uint8_t>(28 + (seed >> 24) % 9);
    }
    for (size_t i = 0; i < frame.size(); i += 9973)
        frame[i] = 255;
}

inline double Median(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

}  // namespace bench
