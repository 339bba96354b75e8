// Pure rules of the video engine: device names, frame rates, usable formats, magnified sizes.
#include "video/device_names.h"
#include "video/video_format.h"
#include "video/frame_size.h"

#include <gtest/gtest.h>

#include <string>

TEST(VideoRules, CleanDeviceNameSkipsTheCharacterThatSlidesIntoTheGap)
{
    struct Row {
        const wchar_t* in;
        const wchar_t* out;
    } rows[] = {
        {L"USB 2861 Device", L"USB 2861 Device"},
        {L"Kamera \u00c4 1", L"Kamera  1"},
        {L"Kamera \u00e4\u00f6 2", L"Kamera \u00f6 2"},
        {L"\u00e4\u00f6\u00fc", L"\u00f6"},
        {L"tab\there", L"tabhere"},
        {L"", L""},
        {L"end\u00e9", L"end"},
    };
    for (const Row& row : rows) {
        wchar_t name[64];
        wcscpy(name, row.in);
        CleanDeviceName(name);
        EXPECT_EQ(std::wstring(name), row.out) << testing::PrintToString(std::wstring(row.in));
    }
}

TEST(VideoRules, FrameRatesRoundToWholeFramesAndUsableFormatsAreLargeEnough)
{
    EXPECT_EQ(FrameRateFromAvgTimePerFrame(333333), 30u);
    EXPECT_EQ(FrameRateFromAvgTimePerFrame(333667), 30u);  // 29.97
    EXPECT_EQ(FrameRateFromAvgTimePerFrame(400000), 25u);
    EXPECT_EQ(FrameRateFromAvgTimePerFrame(0), 0u);

    VideoFormat format{};
    format.frameRate = 30;
    format.width = 640;
    format.height = 480;
    EXPECT_TRUE(IsUsableVideoFormat(format));
    format.height = -480;  // top-down
    EXPECT_FALSE(IsUsableVideoFormat(format));
    format.height = 480;
    format.width = 639;
    EXPECT_FALSE(IsUsableVideoFormat(format));
    format.width = 640;
    format.frameRate = 0;
    EXPECT_FALSE(IsUsableVideoFormat(format));
    EXPECT_TRUE(IsUsableCaptureSubtype(MEDIASUBTYPE_YUY2));
    EXPECT_TRUE(IsUsableCaptureSubtype(MEDIASUBTYPE_MJPG));
    EXPECT_FALSE(IsUsableCaptureSubtype(MEDIASUBTYPE_ARGB32));
    EXPECT_FALSE(IsUsableCaptureSubtype(MEDIASUBTYPE_UYVY));
}

TEST(VideoRules, MagnifiedSizesCutTowardZero)
{
    const int32_t expected[5] = {641, 320, 480, 961, 1282};
    for (int32_t choice = 0; choice < 5; ++choice)
        EXPECT_EQ(MagnifiedSize(641, choice), expected[choice]) << choice;
    EXPECT_EQ(MagnifiedSize(-3, 1), -1);
}
