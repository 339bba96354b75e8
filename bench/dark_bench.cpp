// The dark analysis of one frame (histograms and the choice of level),
// against a plain memcpy of the same frame measured in the same run. It runs
// once per camera start, on the first frame of an integrating run, which
// the stream waits for: there is no target, the ratio is reported.
#include "bench/bench_support.h"
#include "filters/dark_pixels.h"

#include <cstdio>
#include <cstring>
#include <vector>

using namespace bench;

int main()
{
    const FrameCase cases[] = {
        {"720x576 YUY2", PixelLayout::YUY2, 720, 576, 2, true},
        {"1920x1080 ARGB32", PixelLayout::ARGB32, 1920, 1080, 4, false},
    };
    const int repeats = 61;
    DarkHistograms histograms;
    std::printf("%-18s %10s %10s %8s\n", "frame", "memcpy us", "dark us", "dark");
    for (const FrameCase& c : cases) {
        int32_t stride = RowStride(c);
        size_t bytes = static_cast<size_t>(stride) * c.height;
        std::vector<uint8_t> frame(bytes), target(bytes);
        FillSky(frame, 11);
        std::vector<double> plains, darks;
        uint32_t chosen = 0;
        for (int r = 0; r < repeats; ++r) {
            double start = Now();
            std::memcpy(target.data(), frame.data(), bytes);
            plains.push_back(Now() - start);

            start = Now();
            CountDarkPixels(frame.data(), bytes, c.layout, stride, c.height, histograms);
            DarkLevels levels = ChooseDarkLevels(histograms, c.layout, DarkLevels{});
            darks.push_back(Now() - start);
            chosen += levels.y + levels.b;
        }
        double plain = Median(plains), dark = Median(darks);
        std::printf("%-18s %10.0f %10.0f %8.2f\n", c.name, plain * 1e6, dark * 1e6, dark / plain);
        // Keeps the choice from being left out as unused.
        if (chosen == 0xFFFFFFFFu)
            std::printf("-\n");
    }
    return 0;
}
