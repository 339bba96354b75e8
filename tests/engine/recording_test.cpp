// A recording start writes an AVI that an independent reader accepts, and
// its stop writes the run report beside it, line by line.
#include "engine/engine_fixture.h"

#include "e2e/harness.h"
#include "support/ffprobe.h"
#include "support/frame_time_rows.h"

#include <regex>

using namespace enginetest;

namespace {

struct Recorded {
    std::wstring messages;   // what the start reported
    bool hadFrameCounts;     // the source offered IAMDroppedFrames
    std::string avi;
    std::string reportLines; // the report with "\n" line ends
};

std::string Escaped(const std::string& text)
{
    return std::regex_replace(text, std::regex(R"([.\\()])"), R"(\$&)");
}

}  // namespace

class RecordingTest : public EngineTest {
protected:
    // Records about three seconds from the one device of that profile, as a
    // manual recording, and reads back the report.
    void Record(const wchar_t* profile, const char* folderName, Recorded& recorded)
    {
        ASSERT_TRUE(devices.Add(L"Cam", profile));
        ScanDevices();
        ASSERT_EQ(videoSources.size(), 1u);
        currentSourceIndex = 0;
        std::string folder = devicetest::WorkFolder(folderName);
        recorded.avi = folder + "/recording.avi";
        std::wstring path(recorded.avi.begin(), recorded.avi.end());
        lstrcpyW(player->startRecordingLine, L"Start recording at 12:00:00 (UTC)");
        recorded.reportLines = RecordFor(path, 3000, &recorded.messages);
        recorded.hadFrameCounts = player->droppedFrames != nullptr;
    }

    // The report against its pattern, line by line to the last line end;
    // the clock times and the path are the only lines not matched to the
    // letter.
    static void ExpectReportLines(const Recorded& recorded, const std::string& countLines)
    {
        std::string expected = "Manual recording\n" + Escaped("Start recording at 12:00:00 (UTC)") +
                               "\n" R"(Stop recording at \d\d:\d\d:\d\d \(UTC\))" "\nVideo file:  " +
                               Escaped(recorded.avi) + "\n" + countLines +
                               "Video source device: Cam\nSource device format: Digital\nFrame rate: 30\n"
                               "Frame size: 640x480\nFormat subtype: YUY2\nCodec: NONE\nVideo renderer: VMR9\n";
        EXPECT_TRUE(std::regex_match(recorded.reportLines, std::regex(expected))) << recorded.reportLines;
    }
};

TEST_F(RecordingTest, RecordingWritesTheAviAndTheReport)
{
    Recorded recorded;
    Record(L"webcam", "engine-recording", recorded);
    // This platform's mux has neither the index choice nor the property bag.
    EXPECT_NE(recorded.messages.find(L"Cannot configure the AVI Mux filter.  Report this message (see Help->About)\r\n"),
              std::wstring::npos)
        << testing::PrintToString(recorded.messages);
    EXPECT_NE(recorded.messages.find(L"Cannot add MAVU Video Capture INFO to AVI file.\r\nMAVU Video Playback will not "
                                     L"report dropped frames\r\n"),
              std::wstring::npos);
    ASSERT_TRUE(recorded.hadFrameCounts);

    testsupport::ProbedVideo video = testsupport::ProbeVideo(recorded.avi);
    ASSERT_TRUE(video.ok) << video.raw;
    EXPECT_EQ(video.width, 640);
    EXPECT_EQ(video.height, 480);
    EXPECT_EQ(video.codecTag, "YUY2");
    EXPECT_NEAR(video.frames, 90, 10);
    std::string bytes = e2e::ReadBytes(std::wstring(recorded.avi.begin(), recorded.avi.end()));
    EXPECT_NE(bytes.find("idx1"), std::string::npos);

    std::smatch counts;
    ASSERT_TRUE(std::regex_search(recorded.reportLines, counts,
                                  std::regex("Number of recorded frames:  (\\d+)\nNumber of dropped frames:  (\\d+)\n")))
        << recorded.reportLines;
    EXPECT_NEAR(std::stoi(counts[1]), video.frames, 2);
    ExpectReportLines(recorded, R"(Number of recorded frames:  \d+\nNumber of dropped frames:  \d+\n)");
    testsupport::ExpectRecordMatchesTheStamps(recorded.avi, testsupport::ReadRecordedStamps(recorded.avi, 640),
                                              1000.0 / 30);
}

// A source without IAMDroppedFrames still records; its report says the
// counts aren't to be had and gives none.
TEST_F(RecordingTest, ADeviceWithoutFrameCountsRecordsAndItsReportSaysSo)
{
    Recorded recorded;
    Record(L"bare", "engine-recording-bare", recorded);
    EXPECT_FALSE(recorded.hadFrameCounts);

    testsupport::ProbedVideo video = testsupport::ProbeVideo(recorded.avi);
    ASSERT_TRUE(video.ok) << video.raw;
    EXPECT_NEAR(video.frames, 90, 10);
    EXPECT_EQ(recorded.reportLines.find("Number of"), std::string::npos) << recorded.reportLines;
    ExpectReportLines(recorded, "Total frame count and dropped frame count are not avaiable\n");
}
