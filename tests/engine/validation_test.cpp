// Device validation and format discovery against the synthetic profiles.
#include "engine/engine_fixture.h"

#include "video/device_list.h"

using namespace enginetest;

TEST_F(EngineTest, ValidationAcceptsAndRefusesTheProfilesWithTheirMessages)
{
    ASSERT_TRUE(devices.Add(L"Cam", L"webcam"));
    ASSERT_TRUE(devices.Add(L"Small", L"small"));
    ASSERT_TRUE(devices.Add(L"Decoder", L"pald"));
    ASSERT_TRUE(devices.Add(L"Auto", L"autobright"));
    ASSERT_TRUE(devices.Add(L"Kamera \u00c4 1", L"webcam"));
    ScanDevices();
    std::wstring messages = TakeMessages();

    EXPECT_NE(messages.find(L"Video device source information has no frame rate entriesDevice \"Small\" cannot be "
                            L"used for video capture\r\n"),
              std::wstring::npos)
        << testing::PrintToString(messages);
    EXPECT_NE(messages.find(L"Decoder  has unsupported properties.  Only PAL_B and NTSC_M have properties "
                            L"supportDevice \"Decoder\" cannot be used for video capture\r\n"),
              std::wstring::npos);
    EXPECT_EQ(Source(L"Small"), nullptr);
    EXPECT_EQ(Source(L"Decoder"), nullptr);

    VideoSourceInfo* automatic = Source(L"Auto");
    ASSERT_NE(automatic, nullptr);
    EXPECT_EQ(automatic->contrast.maximum, 100);

    // A character above 126 goes (the rest of the rule is the unit table's).
    EXPECT_NE(Source(L"Kamera  1"), nullptr);

    VideoSourceInfo* camera = Source(L"Cam");
    ASSERT_NE(camera, nullptr);
    EXPECT_EQ(camera->autoDetectCapable, 0);
    EXPECT_EQ(camera->brightness.minimum, -64);
    EXPECT_EQ(camera->savedSubtype, SubtypeYUY2);
}

TEST_F(EngineTest, DiscoveryGroupsUsableFormatsByRateInOrderOfDiscovery)
{
    ASSERT_TRUE(devices.Add(L"Cam", L"webcam"));
    ASSERT_TRUE(devices.Add(L"USB 2820 Device", L"usb2820", L"ntsc"));
    ScanDevices();
    TakeMessages();

    auto describe = [](const VideoSourceInfo* source) {
        std::vector<std::wstring> groups;
        for (const VideoFormatsByFrameRate* group : source->frameRates) {
            std::wstring text = std::wstring(group->frameRateText) + L":";
            for (const VideoFormat* format : group->formats)
                text += std::wstring(L" ") + SubtypeName(format->subtype) + L" " + std::to_wstring(format->width) +
                        L"x" + std::to_wstring(format->height);
            groups.push_back(text);
        }
        return groups;
    };
    // Under 640 by 480 and ARGB32 are left out; 1280x720 at 10 and the
    // 15-a-second formats form their own groups after the first rate seen.
    ASSERT_NE(Source(L"Cam"), nullptr);
    EXPECT_EQ(describe(Source(L"Cam")),
              (std::vector<std::wstring>{L"30: YUY2 640x480 RGB24 640x480", L"10: YUY2 1280x720 RGB24 1280x720",
                                         L"15: YUY2 640x480 YUY2 800x600"}));
    ASSERT_NE(Source(L"USB 2820 Device"), nullptr);
    EXPECT_EQ(describe(Source(L"USB 2820 Device")),
              (std::vector<std::wstring>{L"30: YUY2 720x480 YUY2 640x480", L"25: YUY2 720x576 YUY2 640x480"}));
}
