// The dark level of a night-sky frame: the most frequent value among the
// dark values, found once per camera start from the first frame of an
// integrating run, and taken off every frame that integration adds.
#pragma once

#include "filters/pixel_loops.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Values at or above this are never a dark level, however common.
constexpr uint32_t kDarkSearchLimit = 75;

// One counter per byte value: luma for YUY2; blue, green and red for RGB24
// and ARGB32.
struct DarkHistograms {
    uint32_t y[256];
    uint32_t b[256];
    uint32_t g[256];
    uint32_t r[256];
};

// The histograms of the last analysis, and the text it composed. Written on
// the streaming thread only.
extern DarkHistograms darkHistograms;
constexpr int kDarkReportTextCapacity = 200;
extern wchar_t darkReportText[kDarkReportTextCapacity];

// Zeroes the histograms of the layout (one for YUY2, three for the others)
// and counts every row of `rowStride` bytes, at every byte position below
// `rowStride`, padding included: YUY2 the bytes at 0 and 2 of each group of
// four, RGB24 the three bytes of each group of three, ARGB32 the first three
// of each group of four. Only the rows that lie wholly inside `frameBytes`
// are read, and a group cut by the end of its row counts the bytes it has
// inside the row, so nothing past the row or the frame is read.
void CountDarkPixels(const uint8_t* frame, size_t frameBytes, PixelLayout layout, int32_t rowStride, int32_t rows,
                     DarkHistograms& histograms);

// The value below kDarkSearchLimit with the most counts; at a tie the lower
// value, and 0 when none below the limit is counted at all.
uint32_t ChooseDarkValue(const uint32_t (&histogram)[256]);

// The dark levels of the layout's histograms: y for YUY2, b, g, r for the
// others; the levels of the other kind are left as they come in.
DarkLevels ChooseDarkLevels(const DarkHistograms& histograms, PixelLayout layout, DarkLevels levels);

// "Dark pixel value for YUY2 frame: ..." or the RGB line with red, green
// and blue.
std::wstring DarkReportText(PixelLayout layout, const DarkLevels& levels);

// The diagnostic listing: a title, one line per value 0 to 255, and for
// YUY2 a closing line of one blank.
std::vector<std::wstring> DarkHistogramLines(PixelLayout layout, const DarkHistograms& histograms);
