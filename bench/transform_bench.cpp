// The frame tool's per-frame work, each against a plain memcpy of the same
// frame measured in the same run: saturation marking, integration add and
// the copy (which turns bottom-up frames over row by row).
//
// Targets: marking and copy at most 1.5 times memcpy, add at most 2.5 times.
#include "bench/bench_support.h"
#include "filters/pixel_loops.h"

#include <cstdio>
#include <cstring>
#include <vector>

using namespace bench;

int main()
{
    const FrameCase cases[] = {
        {"720x576 YUY2", PixelLayout::YUY2, 720, 576, 2, true},
        {"1280x720 RGB24", PixelLayout::RGB24, 1280, 720, 3, false},
        {"1920x1080 ARGB32", PixelLayout::ARGB32, 1920, 1080, 4, false},
    };
    const int repeats = 61;
    bool allMet = true;
    std::printf("%-18s %10s %8s %8s %8s\n", "frame", "memcpy us", "mark", "add", "copy");
    for (const FrameCase& c : cases) {
        int32_t stride = RowStride(c);
        size_t bytes = static_cast<size_t>(stride) * c.height;
        FrameGeometry geometry{stride, c.height, c.topDown};
        std::vector<uint8_t> pristine(bytes), source(bytes), target(bytes), accumulator(bytes, 0);
        FillSky(pristine, 7);

        // Each repeat times all four in turn, so that whatever else the
        // machine does meanwhile falls on all of them alike.
        std::vector<double> plains, copies, marks, adds;
        for (int r = 0; r < repeats; ++r) {
            double start = Now();
            std::memcpy(target.data(), pristine.data(), bytes);
            plains.push_back(Now() - start);

            start = Now();
            CopyFrame(target.data(), pristine.data(), bytes, geometry);
            copies.push_back(Now() - start);

            std::memcpy(target.data(), pristine.data(), bytes);
            start = Now();
            MarkSaturatedPixels(target.data(), geometry, c.layout, 250);
            marks.push_back(Now() - start);

            // Each frame arrives fresh; the add takes the dark level off it.
            std::memcpy(source.data(), pristine.data(), bytes);
            start = Now();
            AddFrame(accumulator.data(), source.data(), geometry, c.layout, DarkLevels{30, 30, 30, 30});
            adds.push_back(Now() - start);
        }
        double plain = Median(plains), copy = Median(copies), mark = Median(marks), add = Median(adds);
        double markRatio = mark / plain, addRatio = add / plain, copyRatio = copy / plain;
        bool met = markRatio <= 1.5 && copyRatio <= 1.5 && addRatio <= 2.5;
        allMet = allMet && met;
        std::printf("%-18s %10.0f %8.2f %8.2f %8.2f  %s\n", c.name, plain * 1e6, markRatio, addRatio, copyRatio,
                    met ? "met" : "MISSED");
    }
    std::printf("targets: mark and copy <= 1.50, add <= 2.50 times memcpy: %s\n", allMet ? "all met" : "missed");
    return allMet ? 0 : 1;
}
