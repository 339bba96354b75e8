// A recording start writes an AVI that an independent reader accepts, and
// its stop writes the run report beside it.
#include "engine/engine_fixture.h"

#include "e2e/harness.h"
#include "support/ffprobe.h"

#include <regex>

using namespace enginetest;

TEST_F(EngineTest, RecordingWritesTheAviAndTheReport)
{
    ASSERT_TRUE(devices.Add(L"Cam", L"webcam"));
    ScanDevices();
    ASSERT_EQ(videoSources.size(), 1u);
    currentSourceIndex = 0;
    std::string folder = devicetest::WorkFolder("engine-recording");
    std::string avi = folder + "/recording.avi";
    std::string report = folder + "/recording.txt";
    DeleteFileA(avi.c_str());
    DeleteFileA(report.c_str());
    std::wstring path(avi.begin(), avi.end());
    lstrcpyW(player->startRecordingLine, L"Start recording at 12:00:00 (UTC)");
    TakeMessages();

    ASSERT_EQ(player->StartCamera(false, path.c_str()), S_OK);
    std::wstring messages = TakeMessages();
    // This platform's mux has neither the index choice nor the property bag.
    EXPECT_NE(messages.find(L"Cannot configure the AVI Mux filter.  Report this message (see Help->About)\r\n"),
              std::wstring::npos)
        << testing::PrintToString(messages);
    EXPECT_NE(messages.find(L"Cannot add MAVU Video Capture INFO to AVI file.\r\nMAVU Video Playback will not "
                            L"report dropped frames\r\n"),
              std::wstring::npos);
    ASSERT_NE(player->droppedFrames, nullptr);
    Sleep(3000);
    videoSources[0]->isManualRecording = 1;
    ASSERT_EQ(player->StopCamera(true, path.c_str(), RecordingNotes{}), S_OK);
    videoSources[0]->isManualRecording = 0;
    messages = TakeMessages();
    EXPECT_NE(messages.find(L"Video file:  " + path + L"\r\n"), std::wstring::npos);
    // Emptying the graph lets the file go.
    player->RemoveGraphFilters();

    testsupport::ProbedVideo video = testsupport::ProbeVideo(avi);
    ASSERT_TRUE(video.ok) << video.raw;
    EXPECT_EQ(video.width, 640);
    EXPECT_EQ(video.height, 480);
    EXPECT_EQ(video.codecTag, "YUY2");
    EXPECT_NEAR(video.frames, 90, 10);
    std::string bytes = e2e::ReadBytes(path);
    EXPECT_NE(bytes.find("idx1"), std::string::npos);

    // The report: CR LF lines through a text-mode stream come out as CR CR LF.
    std::string text = e2e::ReadBytes(std::wstring(report.begin(), report.end()));
    ASSERT_FALSE(text.empty());
    std::string lines = std::regex_replace(text, std::regex("\r\r\n"), "\n");
    std::smatch counts;
    ASSERT_TRUE(std::regex_search(lines, counts,
                                  std::regex("Number of recorded frames:  (\\d+)\nNumber of dropped frames:  (\\d+)\n")))
        << lines;
    EXPECT_NEAR(std::stoi(counts[1]), video.frames, 2);
    // Line by line, with the two that hold a clock time or a format name
    // matched by pattern.
    std::vector<std::string> expected = {
        "Manual recording",
        "Start recording at 12:00:00 \\(UTC\\)",
        "Stop recording at \\d\\d:\\d\\d:\\d\\d \\(UTC\\)",
        "Video file:  " + std::regex_replace(avi, std::regex("[.]"), "[.]"),
        "Number of recorded frames:  \\d+",
        "Number of dropped frames:  \\d+",
        "Video source device: Cam",
        "Source device format: Digital",
        "Frame rate: 30",
        "Frame size: .*640.*480.*",
        "Format subtype: YUY2",
        "Codec: NONE",
        "Video renderer: VMR9",
    };
    std::vector<std::string> got;
    for (size_t begin = 0, end; (end = lines.find('\n', begin)) != std::string::npos; begin = end + 1)
        got.push_back(lines.substr(begin, end - begin));
    ASSERT_EQ(got.size(), expected.size()) << lines;
    for (size_t i = 0; i < got.size(); ++i)
        EXPECT_TRUE(std::regex_match(got[i], std::regex(expected[i]))) << got[i];
    EXPECT_EQ(lines.back(), '\n');
}
