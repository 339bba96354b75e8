// Recording by hand with the Start and Stop buttons.
#include <gtest/gtest.h>

#include "device/graph_helpers.h"
#include "e2e/harness.h"
#include "support/ffprobe.h"

#include <regex>

using namespace e2e;

namespace {

constexpr wchar_t kMainTitle[] = L"MAVU Video Capture Version 2.1";
constexpr wchar_t kRecordingTitle[] = L"MAVU Video Capture -- Recording in progress";

}  // namespace

TEST(Recording, ManualStartWaitStopWritesTheAviAndItsReport)
{
    devicetest::SyntheticDevices devices;
    ASSERT_TRUE(devices.Add(L"Sky Cam", L"webcam"));
    std::wstring folder = MakeWorkFolderForCurrentTest();
    WriteOptions(folder, Option("DefaultRenderer", "VMR9"));
    Program program(folder);
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(program.WaitReady());
    HWND main = program.MainWindow();
    HWND start = FindChild(program.RecordControlsWindow(), L"Button", nullptr);
    ASSERT_NE(start, nullptr);
    HWND stop = GetWindow(start, GW_HWNDNEXT);
    ASSERT_NE(stop, nullptr);
    EXPECT_TRUE(IsEnabled(start));
    EXPECT_FALSE(IsEnabled(stop));
    Sleep(1000);

    Click(start);
    ASSERT_TRUE(WaitUntil([&] { return WindowText(main) == kRecordingTitle; }, 10000));
    EXPECT_FALSE(IsEnabled(start));
    EXPECT_TRUE(IsEnabled(stop));
    Sleep(5000);
    Click(stop);
    ASSERT_TRUE(WaitUntil([&] { return WindowText(main) == kMainTitle; }, 10000));
    ASSERT_TRUE(WaitUntil([&] { return !ListFiles(folder + L"\\VideoFiles", L"*.txt").empty(); }, 10000));
    // Back to preview: Start again, Stop greyed.
    EXPECT_TRUE(WaitUntil([&] { return IsEnabled(start) && !IsEnabled(stop); }, 5000));

    std::vector<std::wstring> videos = ListFiles(folder + L"\\VideoFiles", L"*.avi");
    ASSERT_EQ(videos.size(), 1u);
    EXPECT_TRUE(std::regex_match(Narrow(videos[0]), std::regex(R"(\d\d_\d\d_\d{4}_\d\d_\d\d_\d\d\.avi)")))
        << Narrow(videos[0]);
    std::string report = ReadBytes(folder + L"\\VideoFiles\\" + videos[0].substr(0, videos[0].size() - 4) + L".txt");
    EXPECT_EQ(report.rfind("Manual recording\r\r\n", 0), 0u) << report;
    std::smatch recorded;
    ASSERT_TRUE(std::regex_search(report, recorded, std::regex("Number of recorded frames:  (\\d+)")));
    // The file stays open until the graph is emptied at the next start:
    // the preview that followed has done that.
    testsupport::ProbedVideo video = testsupport::ProbeVideo(Narrow(folder + L"\\VideoFiles\\" + videos[0]));
    ASSERT_TRUE(video.ok) << video.raw;
    EXPECT_NEAR(video.frames, std::stoi(recorded[1]), 2);
    EXPECT_NEAR(video.frames, 150, 20);
    std::wstring text = program.Messages();
    EXPECT_NE(text.find(L"Start recording at "), std::wstring::npos);
    EXPECT_NE(text.find(L"Stop recording at "), std::wstring::npos);
    program.Kill();
}
