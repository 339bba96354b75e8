// The dark level of a frame, over plain buffers: what is counted, which value
// is chosen, the texts, and that nothing past the frame is read.
#include "filters/dark_pixels.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <vector>

namespace {

// A frame of `rows` rows of `stride` bytes, each byte from fill(row, offset).
std::vector<uint8_t> Frame(int32_t stride, int32_t rows, const std::function<uint8_t(int32_t, int32_t)>& fill)
{
    std::vector<uint8_t> frame(static_cast<size_t>(stride) * rows);
    for (int32_t row = 0; row < rows; ++row)
        for (int32_t i = 0; i < stride; ++i)
            frame[static_cast<size_t>(row) * stride + i] = fill(row, i);
    return frame;
}

DarkLevels Analyze(const std::vector<uint8_t>& frame, PixelLayout layout, int32_t stride, int32_t rows)
{
    DarkHistograms histograms;
    CountDarkPixels(frame.data(), frame.size(), layout, stride, rows, histograms);
    return ChooseDarkLevels(histograms, layout, DarkLevels{});
}

// A block whose end touches a page that can't be read: a read past the
// block faults at once.
class GuardedBlock {
public:
    explicit GuardedBlock(size_t bytes)
    {
        SYSTEM_INFO system;
        GetSystemInfo(&system);
        size_t page = system.dwPageSize;
        size_t pages = (bytes + page - 1) / page;
        base_ =
            static_cast<uint8_t*>(VirtualAlloc(nullptr, (pages + 1) * page, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE));
        DWORD old = 0;
        VirtualProtect(base_ + pages * page, page, PAGE_NOACCESS, &old);
        data_ = base_ + pages * page - bytes;
    }
    ~GuardedBlock() { VirtualFree(base_, 0, MEM_RELEASE); }
    uint8_t* data() const { return data_; }

private:
    uint8_t* base_ = nullptr;
    uint8_t* data_ = nullptr;
};

struct ChoiceCase {
    const char* what;
    std::vector<uint8_t> frame;
    PixelLayout layout;
    int32_t stride;
    int32_t rows;
    DarkLevels expected;
};

}  // namespace

TEST(DarkPixels, TheChoiceIsTheCommonestValueBelow75WithTiesToTheLower)
{
    // YUY2: luma at 0 and 2, chroma at 1 and 3 (here 5, which a count of
    // chroma would choose).
    auto yuy2 = [](uint8_t luma0, uint8_t luma2) {
        return [=](int32_t, int32_t i) { return i % 4 == 0 ? luma0 : i % 4 == 2 ? luma2 : uint8_t{5}; };
    };
    const ChoiceCase cases[] = {
        {"uniform below 75", Frame(16, 4, yuy2(40, 40)), PixelLayout::YUY2, 16, 4, {40, 0, 0, 0}},
        {"uniform just below 75", Frame(16, 4, yuy2(74, 74)), PixelLayout::YUY2, 16, 4, {74, 0, 0, 0}},
        {"uniform at 75 gives 0", Frame(16, 4, yuy2(75, 75)), PixelLayout::YUY2, 16, 4, {0, 0, 0, 0}},
        {"uniform bright gives 0", Frame(16, 4, yuy2(200, 200)), PixelLayout::YUY2, 16, 4, {0, 0, 0, 0}},
        {"all black", Frame(16, 4, yuy2(0, 0)), PixelLayout::YUY2, 16, 4, {0, 0, 0, 0}},
        {"a tie goes to the lower value", Frame(16, 4, yuy2(30, 20)), PixelLayout::YUY2, 16, 4, {20, 0, 0, 0}},
        {"most pixels bright, the dark ones still decide",
         Frame(16, 4, [](int32_t row, int32_t i) { return uint8_t(i % 2                    ? 128
                                                                      : row == 0 && i == 0 ? 12
                                                                                           : 200); }),
         PixelLayout::YUY2,
         16,
         4,
         {12, 0, 0, 0}},
        {"RGB24 channels apart",
         Frame(12, 3, [](int32_t, int32_t i) { return uint8_t(i % 3 == 0       ? 10
                                                                  : i % 3 == 1 ? 20
                                                                               : 30); }),
         PixelLayout::RGB24,
         12,
         3,
         {0, 10, 20, 30}},
        {"ARGB32 channels apart, alpha not counted",
         Frame(16, 3,
               [](int32_t, int32_t i) {
                   return uint8_t(i % 4 == 0 ? 11 : i % 4 == 1 ? 22 : i % 4 == 2 ? 33 : 1);
               }),
         PixelLayout::ARGB32,
         16,
         3,
         {0, 11, 22, 33}},
    };
    for (const ChoiceCase& c : cases) {
        SCOPED_TRACE(c.what);
        DarkLevels got = Analyze(c.frame, c.layout, c.stride, c.rows);
        EXPECT_EQ(got.y, c.expected.y);
        EXPECT_EQ(got.b, c.expected.b);
        EXPECT_EQ(got.g, c.expected.g);
        EXPECT_EQ(got.r, c.expected.r);
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
        GuardedBlock block(bytes);
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
