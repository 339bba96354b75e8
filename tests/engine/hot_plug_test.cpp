// The scan of a device change against synthetic devices pulled and plugged
// back: what it finds, what it marks and what it validates. What a recording
// keeps of a device that went away is the HotPlug scenarios'.
#include "engine/engine_fixture.h"

#include "video/device_hot_plug.h"
#include "video/device_list.h"

using namespace enginetest;

namespace {

// The index the last scan gave.
int32_t scanned = -2;

ConnectResult Scan()
{
    scanned = -2;
    return UpdateSourceVideoInfoList(&scanned);
}

}  // namespace

TEST_F(EngineTest, ScansFindEachPullAndReturnByNameAndBindTheReturnedDeviceAfresh)
{
    ASSERT_TRUE(devices.Add(L"Cam A", L"webcam"));
    ASSERT_TRUE(devices.Add(L"Cam B", L"webcam"));
    ScanDevices();
    ASSERT_EQ(videoSources.size(), 2u);
    currentSourceIndex = 0;
    videoSources[0]->isActive = 1;
    TakeMessages();

    IBaseFilter* pulledFilter = videoSources[0]->baseFilter;
    ASSERT_TRUE(devices.Pull(L"Cam A"));
    EXPECT_EQ(Scan(), ActiveDeviceRemoved);
    EXPECT_EQ(scanned, 0);

    ASSERT_TRUE(devices.Add(L"Cam A", L"webcam"));
    videoSources[0]->isActive = 0;
    EXPECT_EQ(Scan(), KnownDeviceReturned);
    EXPECT_EQ(scanned, 0);
    // The old filter is let go unreleased; the next use binds the device
    // that is attached now.
    ASSERT_EQ(GetVideoSourceBaseFilter(videoSources[0]), S_OK);
    EXPECT_NE(videoSources[0]->baseFilter, pulledFilter);
    EXPECT_EQ(TakeMessages(), L"");
}

TEST_F(EngineTest, ANewDeviceIsValidatedAndAppendedAndAnUnusableOneIsReportedOnce)
{
    ASSERT_TRUE(devices.Add(L"Cam", L"webcam"));
    ScanDevices();
    TakeMessages();

    ASSERT_TRUE(devices.Add(L"Second Cam", L"bare"));
    EXPECT_EQ(Scan(), NewDeviceAppended);
    EXPECT_EQ(scanned, 1);
    ASSERT_EQ(videoSources.size(), 2u);
    EXPECT_STREQ(videoSources[1]->name, L"Second Cam");
    EXPECT_EQ(videoSources[1]->seenAttached, 1);
    EXPECT_EQ(videoSources[1]->deviceStandard, StandardDigital);
    EXPECT_FALSE(videoSources[1]->frameRates.empty());

    ASSERT_TRUE(devices.Add(L"Tiny", L"small"));
    EXPECT_EQ(Scan(), NothingToDo);
    EXPECT_EQ(scanned, -1);
    EXPECT_EQ(TakeMessages(),
              L"Video device source information has no frame rate entriesDevice \"Tiny\" cannot be "
              L"used for video capture\r\n");
    ASSERT_TRUE(devices.Pull(L"Tiny"));
    EXPECT_EQ(Scan(), NothingToDo);
    ASSERT_TRUE(devices.Add(L"Tiny", L"small"));
    EXPECT_EQ(Scan(), NothingToDo);
    EXPECT_EQ(TakeMessages(), L"");
    EXPECT_EQ(videoSources.size(), 2u);
    EXPECT_EQ(unusableDeviceNames, (std::vector<std::wstring>{L"Tiny"}));
}

TEST_F(EngineTest, AScanWithoutAPlaceForItsIndexSaysSoAndDoesNothing)
{
    EXPECT_EQ(UpdateSourceVideoInfoList(nullptr), NothingToDo);
    EXPECT_EQ(TakeMessages(), L"Logic error: attempt to get base filter from a NULL pointer to VideoSourceInfo\r\n");
    // With no device at all and none attached, nothing changed.
    int32_t index = 5;
    EXPECT_EQ(UpdateSourceVideoInfoList(&index), NothingToDo);
    EXPECT_EQ(index, -1);
}
