// The space a recording will take: duration times frame rate times the uncompressed frame size.
#include "video/recording_estimate.h"

#include <gtest/gtest.h>

#include <limits>

TEST(RecordingEstimate, FrameSizesPadEachRowToFourBytes)
{
    struct Row {
        int32_t width, height;
        VideoSubtype subtype;
        uint64_t bytes;
    } rows[] = {
        {640, 480, SubtypeYUY2, 614400},
        {640, 480, SubtypeRGB24, 921600},
        // 641 pixels of three bytes make 1923, padded to 1924.
        {641, 480, SubtypeRGB24, 1924 * 480},
        // A top-down picture has as many rows.
        {640, -480, SubtypeARGB32, 1228800},
        // MJPG counts as the YUY2 frame it decodes to.
        {1280, 720, SubtypeMJPG, 1843200},
        {0, 480, SubtypeYUY2, 0},
        {-640, 480, SubtypeYUY2, 0},
        // The largest sizes don't wrap.
        {INT32_MAX, INT32_MIN, SubtypeARGB32, 4ull * INT32_MAX * (1ull << 31)},
    };
    for (const Row& row : rows)
        EXPECT_EQ(UncompressedFrameBytes(row.width, row.height, row.subtype), row.bytes)
            << row.width << "x" << row.height << " subtype " << row.subtype;
}

TEST(RecordingEstimate, DurationTimesRateTimesFrameUpToTenHoursAndSaturatingBeyond)
{
    constexpr uint64_t kHour = 3600000;
    constexpr uint64_t kMost = std::numeric_limits<uint64_t>::max();
    struct Row {
        uint64_t durationMs;
        int64_t frameTime;
        uint64_t frameBytes;
        uint64_t bytes;
    } rows[] = {
        {10000, 333333, 614400, 301 * 614400ull},  // 300.0003 frames: a part is a whole frame
        {10000, 400000, 614400, 250 * 614400ull},  // 25 a second
        {10 * kHour, 333333, 8294400, 8957968588800ull},
        // No frame time: 30 a second.
        {1000, 0, 1000, 30 * 1000ull},
        {1000, -5, 1000, 30 * 1000ull},
        {0, 333333, 614400, 0},
        // Impossible figures saturate instead of wrapping.
        {kMost / 10000 + 1, 333333, 1, kMost},
        {36000000, 1, kMost / 2, kMost},
    };
    for (const Row& row : rows)
        EXPECT_EQ(EstimatedRecordingBytes(row.durationMs, row.frameTime, row.frameBytes), row.bytes)
            << row.durationMs << " ms at " << row.frameTime << ", " << row.frameBytes << " bytes";
}

TEST(RecordingEstimate, MegabytesRoundUp)
{
    EXPECT_EQ(WholeMegabytes(0), 0u);
    EXPECT_EQ(WholeMegabytes(1u << 20), 1u);
    EXPECT_EQ(WholeMegabytes((1u << 20) + 1), 2u);
}
