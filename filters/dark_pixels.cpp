#include "filters/dark_pixels.h"

#include <cstdio>
#include <cstring>

DarkHistograms darkHistograms;
wchar_t darkReportText[kDarkReportTextCapacity];

namespace {

// Two luma samples of a pair go into two tables, summed at the end: a run
// of equal values (a flat background) then doesn't wait on the count it
// just wrote.
void CountLumaRow(const uint8_t* row, int32_t rowStride, uint32_t (&first)[256], uint32_t (&second)[256])
{
    int32_t i = 0;
    for (; i + 4 <= rowStride; i += 4) {
        ++first[row[i]];
        ++second[row[i + 2]];
    }
    for (; i < rowStride; i += 4) {
        ++first[row[i]];
        if (i + 2 < rowStride)
            ++second[row[i + 2]];
    }
}

void CountColourRow(const uint8_t* row, int32_t rowStride, int32_t step, DarkHistograms& histograms)
{
    int32_t i = 0;
    for (; i + step <= rowStride; i += step) {
        ++histograms.b[row[i]];
        ++histograms.g[row[i + 1]];
        ++histograms.r[row[i + 2]];
    }
    // A group cut by the row's end: only the bytes inside the row count.
    for (; i < rowStride; i += step) {
        ++histograms.b[row[i]];
        if (i + 1 < rowStride)
            ++histograms.g[row[i + 1]];
        if (i + 2 < rowStride)
            ++histograms.r[row[i + 2]];
    }
}

}  // namespace

void CountDarkPixels(const uint8_t* frame, size_t frameBytes, PixelLayout layout, int32_t rowStride, int32_t rows,
                     DarkHistograms& histograms)
{
    if (layout == PixelLayout::YUY2) {
        std::memset(histograms.y, 0, sizeof histograms.y);
    } else {
        std::memset(histograms.b, 0, sizeof histograms.b);
        std::memset(histograms.g, 0, sizeof histograms.g);
        std::memset(histograms.r, 0, sizeof histograms.r);
    }
    if (!frame || rowStride <= 0 || rows <= 0 || layout == PixelLayout::Other)
        return;
    size_t wholeRows = frameBytes / static_cast<size_t>(rowStride);
    if (static_cast<size_t>(rows) > wholeRows)
        rows = static_cast<int32_t>(wholeRows);
    if (layout == PixelLayout::YUY2) {
        uint32_t second[256] = {};
        for (int32_t row = 0; row < rows; ++row)
            CountLumaRow(frame + static_cast<size_t>(row) * rowStride, rowStride, histograms.y, second);
        for (int value = 0; value < 256; ++value)
            histograms.y[value] += second[value];
        return;
    }
    int32_t step = layout == PixelLayout::RGB24 ? 3 : 4;
    for (int32_t row = 0; row < rows; ++row)
        CountColourRow(frame + static_cast<size_t>(row) * rowStride, rowStride, step, histograms);
}

uint32_t ChooseDarkValue(const uint32_t (&histogram)[256])
{
    uint32_t best = 0;
    for (uint32_t value = 1; value < kDarkSearchLimit; ++value)
        if (histogram[value] > histogram[best])
            best = value;
    return best;
}

DarkLevels ChooseDarkLevels(const DarkHistograms& histograms, PixelLayout layout, DarkLevels levels)
{
    if (layout == PixelLayout::YUY2) {
        levels.y = ChooseDarkValue(histograms.y);
    } else if (layout != PixelLayout::Other) {
        levels.b = ChooseDarkValue(histograms.b);
        levels.g = ChooseDarkValue(histograms.g);
        levels.r = ChooseDarkValue(histograms.r);
    }
    return levels;
}

std::wstring DarkReportText(PixelLayout layout, const DarkLevels& levels)
{
    wchar_t text[kDarkReportTextCapacity];
    if (layout == PixelLayout::YUY2)
        swprintf(text, kDarkReportTextCapacity, L"Dark pixel value for YUY2 frame: %u\r\n", levels.y);
    else
        swprintf(text, kDarkReportTextCapacity, L"Dark pixel values for RGB frame --  R: %-3u   G: %-3u   B: %-3u\r\n",
                 levels.r, levels.g, levels.b);
    return text;
}

std::vector<std::wstring> DarkHistogramLines(PixelLayout layout, const DarkHistograms& histograms)
{
    std::vector<std::wstring> lines;
    wchar_t line[kDarkReportTextCapacity];
    if (layout == PixelLayout::YUY2) {
        lines.push_back(L"Dark pixel value histogram, YUY2 format");
        for (int value = 0; value < 256; ++value) {
            swprintf(line, kDarkReportTextCapacity, L"%d\t%u", value, histograms.y[value]);
            lines.push_back(line);
        }
        lines.push_back(L" ");
        return lines;
    }
    lines.push_back(L"Dark pixel value histogram, RGB format");
    for (int value = 0; value < 256; ++value) {
        swprintf(line, kDarkReportTextCapacity, L"%d\tR: %-7u\tG: %-7u\tB: %-7u", value, histograms.r[value],
                 histograms.g[value], histograms.b[value]);
        lines.push_back(line);
    }
    return lines;
}
