// The frame tool's pixel work on small buffers.
#include "filters/pixel_loops.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// A YUY2 frame of one row: pairs of (Y0 U Y1 V).
std::vector<uint8_t> Yuy2Row(std::initializer_list<uint8_t> lumas)
{
    std::vector<uint8_t> row;
    auto it = lumas.begin();
    while (it != lumas.end()) {
        uint8_t y0 = *it++;
        uint8_t y1 = it != lumas.end() ? *it++ : 0;
        row.insert(row.end(), {y0, 128, y1, 128});
    }
    return row;
}

constexpr uint8_t kMarkedYuy2[4] = {0x6A, 0xCA, 0x6A, 0xDE};

bool IsMarkedPair(const std::vector<uint8_t>& row, size_t pair)
{
    return std::equal(kMarkedYuy2, kMarkedYuy2 + 4, row.begin() + static_cast<long>(pair * 4));
}

}  // namespace

TEST(PixelLoops, SaturationMarksAtOrAboveTheThresholdPerPacking)
{
    // YUY2: a luma equal to the threshold counts, and marks its whole pair.
    std::vector<uint8_t> row = Yuy2Row({99, 100, 101, 50, 10, 20});
    FrameGeometry oneRow{static_cast<int32_t>(row.size()), 1, true};
    MarkSaturatedPixels(row.data(), oneRow, PixelLayout::YUY2, 100);
    EXPECT_TRUE(IsMarkedPair(row, 0));
    EXPECT_TRUE(IsMarkedPair(row, 1));
    EXPECT_FALSE(IsMarkedPair(row, 2));

    // t = 255: only full white.
    row = Yuy2Row({254, 254, 255, 0});
    MarkSaturatedPixels(row.data(), oneRow, PixelLayout::YUY2, 255);
    EXPECT_FALSE(IsMarkedPair(row, 0));
    EXPECT_TRUE(IsMarkedPair(row, 1));

    // RGB24 marks on any one channel; ARGB32 on the mean of three.
    std::vector<uint8_t> rgb = {255, 0, 0, 10, 10, 10};
    MarkSaturatedPixels(rgb.data(), FrameGeometry{6, 1, false}, PixelLayout::RGB24, 100);
    EXPECT_EQ(rgb, (std::vector<uint8_t>{0xE1, 0x00, 0xE1, 10, 10, 10}));
    std::vector<uint8_t> argb = {255, 0, 0, 77, 100, 100, 100, 66};
    MarkSaturatedPixels(argb.data(), FrameGeometry{8, 1, false}, PixelLayout::ARGB32, 100);
    EXPECT_EQ(argb, (std::vector<uint8_t>{255, 0, 0, 77, 0xE1, 0x00, 0xE1, 66}));

    // Anything else is left alone.
    std::vector<uint8_t> other = {255, 255, 255, 255};
    MarkSaturatedPixels(other.data(), FrameGeometry{4, 1, true}, PixelLayout::Other, 0);
    EXPECT_EQ(other, (std::vector<uint8_t>{255, 255, 255, 255}));
}

TEST(PixelLoops, MarkingNeverReadsPastARowWhosePaddingCutsAPixel)
{
    // Two RGB24 pixels and two bytes of padding; the buffer ends with the row.
    std::vector<uint8_t> frame = {1, 1, 1, 2, 2, 2, 255, 255};
    MarkSaturatedPixels(frame.data(), FrameGeometry{8, 1, false}, PixelLayout::RGB24, 200);
    EXPECT_EQ(frame, (std::vector<uint8_t>{1, 1, 1, 2, 2, 2, 255, 255}));
}

TEST(PixelLoops, IntegrationAddsAboveTheDarkLevelAndSaturates)
{
    FrameGeometry geometry{4, 1, true};
    // N = 3 with dark 10: frame 1 copied, frame 2 added less the dark level.
    std::vector<uint8_t> accumulator(4, 0);
    std::vector<uint8_t> frame = {100, 128, 100, 128};
    CopyFrame(accumulator.data(), frame.data(), frame.size(), geometry);
    std::vector<uint8_t> second = {100, 128, 100, 128};
    AddFrame(accumulator.data(), second.data(), geometry, PixelLayout::YUY2, DarkLevels{10, 0, 0, 0});
    EXPECT_EQ(accumulator, (std::vector<uint8_t>{190, 128, 190, 128}));
    // The source keeps what was added: the dark level is taken off in place.
    EXPECT_EQ(second, (std::vector<uint8_t>{90, 128, 90, 128}));

    // A sum past 255 stays at 255; a luma equal to the dark level adds nothing.
    std::vector<uint8_t> bright = {200, 128, 10, 128};
    AddFrame(accumulator.data(), bright.data(), geometry, PixelLayout::YUY2, DarkLevels{10, 0, 0, 0});
    EXPECT_EQ(accumulator, (std::vector<uint8_t>{255, 128, 190, 128}));
    EXPECT_EQ(bright, (std::vector<uint8_t>{190, 128, 10, 128}));

    // RGB24 uses a level per channel, in blue, green, red order.
    std::vector<uint8_t> rgbSum = {0, 0, 0};
    std::vector<uint8_t> rgb = {50, 50, 50};
    AddFrame(rgbSum.data(), rgb.data(), FrameGeometry{3, 1, true}, PixelLayout::RGB24, DarkLevels{0, 5, 10, 60});
    EXPECT_EQ(rgbSum, (std::vector<uint8_t>{45, 40, 0}));
}

TEST(PixelLoops, BottomUpFramesArriveUpsideDownInCopyAndAdd)
{
    // Two RGB24 rows of one pixel (stride 4).
    FrameGeometry bottomUp{4, 2, false};
    std::vector<uint8_t> frame = {1, 2, 3, 0, 4, 5, 6, 0};
    std::vector<uint8_t> copy(8, 0);
    CopyFrame(copy.data(), frame.data(), frame.size(), bottomUp);
    EXPECT_EQ(copy, (std::vector<uint8_t>{4, 5, 6, 0, 1, 2, 3, 0}));

    std::vector<uint8_t> sum(8, 0);
    AddFrame(sum.data(), frame.data(), bottomUp, PixelLayout::RGB24, DarkLevels{});
    EXPECT_EQ(sum, (std::vector<uint8_t>{4, 5, 6, 0, 1, 2, 3, 0}));

    // Top-down is one block copy.
    std::vector<uint8_t> straight(8, 0);
    CopyFrame(straight.data(), frame.data(), frame.size(), FrameGeometry{4, 2, true});
    EXPECT_EQ(straight, frame);
}
