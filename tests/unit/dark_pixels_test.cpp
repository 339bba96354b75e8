// The dark level of a frame: what is counted, which value is chosen, the texts, and that nothing past it is read.
#include "filters/dark_pixels.h"

#include "support/guarded_buffer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace {

// A frame of `rows` rows of `stride` bytes, a pattern over and over.
std::vector<uint8_t> Frame(int32_t stride, int32_t rows, const std::vector<uint8_t>& pattern)
{
    std::vector<uint8_t> frame(static_cast<size_t>(stride) * rows);
    for (size_t i = 0; i < frame.size(); ++i)
        frame[i] = pattern[i % pattern.size()];
    return frame;
}

DarkLevels Analyze(const std::vector<uint8_t>& frame, PixelLayout layout, int32_t stride, int32_t rows)
{
    DarkHistograms histograms;
    CountDarkPixels(frame.data(), frame.size(), layout, stride, rows, histograms);
    return ChooseDarkLevels(histograms, layout, DarkLevels{});
}

}  // namespace

TEST(DarkPixels, TheChoiceIsTheCommonestValueBelow75WithTiesToTheLower)
{
    struct Case {
        const char* what;
        PixelLayout layout;
        int32_t stride;
        std::vector<uint8_t> pattern;
        DarkLevels expected;
    };
    // YUY2: luma at 0 and 2, chroma at 1 and 3 (5 here, which a count of chroma would choose).
    const Case kCases[] = {
        {"uniform just below 75", PixelLayout::YUY2, 16, {74, 5, 74, 5}, {74, 0, 0, 0}},
        {"uniform at 75 gives 0", PixelLayout::YUY2, 16, {75, 5, 75, 5}, {0, 0, 0, 0}},
        {"all black", PixelLayout::YUY2, 16, {0, 5, 0, 5}, {0, 0, 0, 0}},
        {"a tie goes to the lower value", PixelLayout::YUY2, 16, {30, 5, 20, 5}, {20, 0, 0, 0}},
        {"most pixels bright, the dark ones still decide", PixelLayout::YUY2, 16,
         {12, 128, 200, 128, 200, 128, 200, 128, 200, 128, 200, 128, 200, 128, 200, 128}, {12, 0, 0, 0}},
        {"RGB24 channels apart", PixelLayout::RGB24, 12, {10, 20, 30}, {0, 10, 20, 30}},
        {"ARGB32 channels apart, alpha not counted", PixelLayout::ARGB32, 16, {11, 22, 33, 1}, {0, 11, 22, 33}},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.what);
        DarkLevels got = Analyze(Frame(c.stride, 4, c.pattern), c.layout, c.stride, 4);
        EXPECT_EQ(std::vector<uint32_t>({got.y, got.b, got.g, got.r}),
                  std::vector<uint32_t>({c.expected.y, c.expected.b, c.expected.g, c.expected.r}));
    }
}

TEST(DarkPixels, EveryByteOfEveryRowCountsPaddingIncludedChromaAndAlphaNot)
{
    // One RGB24 pixel a row: the stride is 4, so byte 3 of each row is
    // padding and counts as blue; the group it starts has nothing more
    // inside the row.
    std::vector<uint8_t> frame = {1, 2, 3, 9, 1, 2, 3, 9};
    DarkHistograms histograms;
    CountDarkPixels(frame.data(), frame.size(), PixelLayout::RGB24, 4, 2, histograms);
    EXPECT_EQ(histograms.b[1], 2u);
    EXPECT_EQ(histograms.b[9], 2u);
    EXPECT_EQ(histograms.g[2], 2u);
    EXPECT_EQ(histograms.r[3], 2u);
    uint32_t total = 0;
    for (int v = 0; v < 256; ++v)
        total += histograms.b[v] + histograms.g[v] + histograms.r[v];
    EXPECT_EQ(total, 8u);

    // YUY2 counts two lumas a pair, into the one histogram.
    frame = {7, 100, 8, 100, 7, 100, 7, 100};
    CountDarkPixels(frame.data(), frame.size(), PixelLayout::YUY2, 8, 1, histograms);
    EXPECT_EQ(histograms.y[7], 3u);
    EXPECT_EQ(histograms.y[8], 1u);
    EXPECT_EQ(histograms.y[100], 0u);
}

TEST(DarkPixels, AnRgb24RowCutMidPixelIsNeverReadPastTheFrame)
{
    // Strides of 4 and 8 bytes cut the last pixel of each row; the frame
    // ends against a page that faults when touched.
    for (int32_t stride : {4, 8, 20}) {
        SCOPED_TRACE(stride);
        const int32_t rows = 3;
        size_t bytes = static_cast<size_t>(stride) * rows;
        GuardedBuffer block(bytes, true);
        std::memset(block.data(), 17, bytes);
        DarkHistograms histograms;
        CountDarkPixels(block.data(), bytes, PixelLayout::RGB24, stride, rows, histograms);
        EXPECT_EQ(histograms.b[17] + histograms.g[17] + histograms.r[17], bytes);
        // A frame shorter than its rows say: only whole rows inside it.
        CountDarkPixels(block.data() + stride, bytes - stride, PixelLayout::RGB24, stride, rows, histograms);
        EXPECT_EQ(histograms.b[17] + histograms.g[17] + histograms.r[17], bytes - stride);
    }
    // Nothing at all, or nonsense, counts nothing.
    DarkHistograms histograms;
    CountDarkPixels(nullptr, 100, PixelLayout::YUY2, 4, 25, histograms);
    EXPECT_EQ(ChooseDarkValue(histograms.y), 0u);
    EXPECT_EQ(histograms.y[0], 0u);
    uint8_t one[4] = {3, 3, 3, 3};
    CountDarkPixels(one, sizeof one, PixelLayout::ARGB32, -4, 1, histograms);
    EXPECT_EQ(histograms.b[3], 0u);
}

TEST(DarkPixels, ReportTextAndHistogramListingReadAsSpecified)
{
    EXPECT_EQ(DarkReportText(PixelLayout::YUY2, DarkLevels{32, 0, 0, 0}), L"Dark pixel value for YUY2 frame: 32\r\n");
    EXPECT_EQ(DarkReportText(PixelLayout::RGB24, DarkLevels{0, 3, 20, 7}),
              L"Dark pixel values for RGB frame --  R: 7     G: 20    B: 3  \r\n");

    DarkHistograms histograms{};
    histograms.y[32] = 1234;
    std::vector<std::wstring> lines = DarkHistogramLines(PixelLayout::YUY2, histograms);
    ASSERT_EQ(lines.size(), 258u);
    EXPECT_EQ(lines[0], L"Dark pixel value histogram, YUY2 format");
    EXPECT_EQ(lines[1], L"0\t0");
    EXPECT_EQ(lines[33], L"32\t1234");
    EXPECT_EQ(lines[256], L"255\t0");
    EXPECT_EQ(lines[257], L" ");

    histograms.r[5] = 1;
    histograms.g[5] = 22;
    histograms.b[5] = 333;
    lines = DarkHistogramLines(PixelLayout::ARGB32, histograms);
    ASSERT_EQ(lines.size(), 257u);
    EXPECT_EQ(lines[0], L"Dark pixel value histogram, RGB format");
    EXPECT_EQ(lines[6], L"5\tR: 1      \tG: 22     \tB: 333    ");
}
