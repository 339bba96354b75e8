// The frame tool's pixel work on small buffers.
#include "filters/pixel_loops.h"

#include <gtest/gtest.h>

#include <vector>

TEST(PixelLoops, SaturationLeavesAnotherPackingAlone)
{
    std::vector<uint8_t> frame{255, 255, 255, 255};
    MarkSaturatedPixels(frame.data(), FrameGeometry{4, 1, true}, PixelLayout::Other, 0);
    EXPECT_EQ(frame, (std::vector<uint8_t>{255, 255, 255, 255}));
}

TEST(PixelLoops, BottomUpFramesArriveUpsideDownInACopy)
{
    // Two RGB24 rows of one pixel (stride 4).
    FrameGeometry bottomUp{4, 2, false};
    std::vector<uint8_t> frame = {1, 2, 3, 0, 4, 5, 6, 0};
    std::vector<uint8_t> copy(8, 0);
    CopyFrame(copy.data(), frame.data(), frame.size(), bottomUp);
    EXPECT_EQ(copy, (std::vector<uint8_t>{4, 5, 6, 0, 1, 2, 3, 0}));

    // Top-down is one block copy.
    std::vector<uint8_t> straight(8, 0);
    CopyFrame(straight.data(), frame.data(), frame.size(), FrameGeometry{4, 2, true});
    EXPECT_EQ(straight, frame);
}

namespace {

// The rules written out byte by byte, for comparison with the block loops.
void ReferenceAdd(std::vector<uint8_t>& out, std::vector<uint8_t>& in, const FrameGeometry& g, PixelLayout layout,
                  const DarkLevels& dark)
{
    int step = layout == PixelLayout::RGB24 ? 3 : 4;
    for (int row = 0; row < g.height; ++row) {
        uint8_t* s = in.data() + row * g.rowStride;
        uint8_t* d = out.data() + (g.topDown ? row : g.height - 1 - row) * g.rowStride;
        for (int i = 0; i + step <= g.rowStride; i += step) {
            for (int k = 0; k < 3; ++k) {
                if (layout == PixelLayout::YUY2 && k != 0 && k != 2)
                    continue;
                uint32_t level = layout == PixelLayout::YUY2 ? dark.y : k == 0 ? dark.b : k == 1 ? dark.g : dark.r;
                if (s[i + k] <= level)
                    continue;
                s[i + k] = static_cast<uint8_t>(s[i + k] - level);
                unsigned sum = d[i + k] + s[i + k];
                d[i + k] = static_cast<uint8_t>(sum < 256 ? sum : 255);
            }
        }
    }
}

void ReferenceMark(std::vector<uint8_t>& frame, const FrameGeometry& g, PixelLayout layout, uint8_t t)
{
    int step = layout == PixelLayout::RGB24 ? 3 : 4;
    for (int row = 0; row < g.height; ++row) {
        uint8_t* p = frame.data() + row * g.rowStride;
        for (int i = 0; i + step <= g.rowStride; i += step) {
            uint8_t* q = p + i;
            bool hit = layout == PixelLayout::YUY2    ? (q[0] >= t || q[2] >= t)
                       : layout == PixelLayout::RGB24 ? (q[0] >= t || q[1] >= t || q[2] >= t)
                                                      : (q[0] + q[1] + q[2] >= 3 * t);
            if (!hit)
                continue;
            if (layout == PixelLayout::YUY2) {
                q[0] = 0x6A, q[1] = 0xCA, q[2] = 0x6A, q[3] = 0xDE;
            } else {
                q[0] = 0xE1, q[1] = 0x00, q[2] = 0xE1;
            }
        }
    }
}

}  // namespace

TEST(PixelLoops, BlockLoopsAgreeWithTheByteRulesOnRandomFrames)
{
    unsigned seed = 1;
    auto next = [&] {
        seed = seed * 1664525u + 1013904223u;
        return static_cast<uint8_t>(seed >> 24);
    };
    struct Shape {
        PixelLayout layout;
        int width, height, bytesPerPixel;
        bool topDown;
    };
    // RGB24 two wide: two bytes of padding a row, which cut a third pixel.
    const Shape shapes[] = {{PixelLayout::YUY2, 38, 5, 2, true},   {PixelLayout::YUY2, 720, 3, 2, true},
                            {PixelLayout::RGB24, 37, 4, 3, false}, {PixelLayout::RGB24, 641, 3, 3, true},
                            {PixelLayout::RGB24, 2, 5, 3, true},   {PixelLayout::ARGB32, 33, 4, 4, false},
                            {PixelLayout::ARGB32, 640, 2, 4, true}};
    for (const Shape& shape : shapes) {
        SCOPED_TRACE(shape.width);
        int stride = ((shape.bytesPerPixel * 8 * shape.width + 31) >> 3) & ~3;
        FrameGeometry g{stride, shape.height, shape.topDown};
        size_t bytes = static_cast<size_t>(stride) * shape.height;
        for (uint32_t darkLevel : {0u, 10u, 128u, 255u, 300u}) {
            std::vector<uint8_t> in(bytes), acc(bytes);
            for (auto& b : in)
                b = next();
            for (auto& b : acc)
                b = next();
            std::vector<uint8_t> refIn = in, refAcc = acc;
            DarkLevels dark{darkLevel, darkLevel / 2, darkLevel, darkLevel / 3};
            AddFrame(acc.data(), in.data(), g, shape.layout, dark);
            ReferenceAdd(refAcc, refIn, g, shape.layout, dark);
            EXPECT_EQ(acc, refAcc);
            EXPECT_EQ(in, refIn);
        }
        for (int t : {0, 50, 200, 255}) {
            std::vector<uint8_t> frame(bytes);
            for (auto& b : frame)
                b = next() / 2 + (next() % 16 == 0 ? 128 : 0);
            std::vector<uint8_t> reference = frame;
            MarkSaturatedPixels(frame.data(), g, shape.layout, static_cast<uint8_t>(t));
            ReferenceMark(reference, g, shape.layout, static_cast<uint8_t>(t));
            EXPECT_EQ(frame, reference) << "threshold " << t;
        }
    }
}
