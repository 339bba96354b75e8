// A camera started and stopped again and again, in preview and recording,
// as a night of events does it: nothing it made stays behind. On this
// platform a VMR9 kept from build to build grew by a Direct3D device, with
// its thread, at each build; let go with frames still queued for drawing,
// it could deadlock inside Direct3D.
#include "engine/engine_fixture.h"

#include "support/handle_count.h"
#include "video/capture_settings.h"

#include <cstdio>

using namespace enginetest;

TEST_F(EngineTest, RestartsInPreviewAndRecordingLeaveNoThreadBehind)
{
    ASSERT_TRUE(UseOneCamera());
    std::string folder = devicetest::WorkFolder("restart-leak");
    std::vector<long> threads, handles;
    for (int cycle = 0; cycle < 6; ++cycle) {
        std::string avi = folder + "/cycle" + std::to_string(cycle) + ".avi";
        std::wstring path(avi.begin(), avi.end());
        // An event: a recording, then the preview again.
        ASSERT_EQ(player->StartCamera(false, path.c_str()), S_OK) << testing::PrintToString(TakeMessages());
        Sleep(700);
        ASSERT_EQ(player->StopCamera(true, path.c_str(), RecordingNotes{}), S_OK);
        ASSERT_EQ(player->StartCamera(false, L""), S_OK) << testing::PrintToString(TakeMessages());
        Sleep(500);
        ASSERT_EQ(player->StopCamera(false, L"", RecordingNotes{}), S_OK);
        Sleep(300);
        threads.push_back(testsupport::ProcessThreadCount(GetCurrentProcessId()));
        handles.push_back(testsupport::ProcessHandleCount(GetCurrentProcessId()));
        std::printf("after cycle %d: %ld threads, %ld handles\n", cycle + 1, threads.back(), handles.back());
    }
    EXPECT_LE(threads.back(), threads[1] + 1);
    EXPECT_LE(handles.back(), handles[1] + 5);
}
