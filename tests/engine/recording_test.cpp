// A recording start writes an AVI that an independent reader accepts, and
// its stop writes the run report beside it, line by line, and the
// frame-time record, against the stamps the synthetic camera burns into
// each frame: one row per frame of the file, each frame's UTC, and the
// frames the camera lost.
#include "engine/engine_fixture.h"

#include "e2e/harness.h"
#include "support/ffprobe.h"
#include "support/frame_time_rows.h"

#include <regex>

using namespace enginetest;

namespace {

std::string Escaped(const std::string& text)
{
    return std::regex_replace(text, std::regex(R"([.\\()])"), R"(\$&)");
}

}  // namespace

// About three seconds from the one device of each profile, as a manual
// recording. The report against its pattern, line by line to the last line
// end; the clock times and the path are the only lines not matched to the
// letter. A source without IAMDroppedFrames still records; its report says
// the counts aren't to be had and gives none. Frames the camera drops show
// as dropped before the next row of the record.
TEST_F(EngineTest, RecordingWritesTheAviAndTheReport)
{
    const char* withCounts = R"(Number of recorded frames:  (\d+)\nNumber of dropped frames:  \d+\n)";
    const struct {
        const wchar_t* profile;
        const char* file;
        bool frameCounts;  // the source offers IAMDroppedFrames
        const char* countLines;
        synthcam::DevicePacing pacing;
        int frames;  // about, in 3 s
        long leastDropped;  // in the record
    } rows[] = {
        {L"webcam", "recording.avi", true, withCounts, {}, 90, 0},
        {L"bare", "bare.avi", false, "Total frame count and dropped frame count are not avaiable\n", {}, 90, 0},
        // One slot in seven: about 13 in 3 s at 30 frames a second.
        {L"webcam", "drops.avi", true, withCounts, {.dropEvery = 7}, 77, 8},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.file);
        devicetest::SyntheticDevices fresh;
        TearDown();
        SetUp();
        ASSERT_TRUE(UseOneCamera(row.profile, row.pacing));
        std::string avi = devicetest::WorkFolder("engine-recording") + "/" + row.file;
        std::wstring messages;
        lstrcpyW(player->startRecordingLine, L"Start recording at 12:00:00 (UTC)");
        std::string report = RecordFor(std::wstring(avi.begin(), avi.end()), 3000, &messages);
        EXPECT_EQ(player->droppedFrames != nullptr, row.frameCounts);
        // This platform's mux has neither the index choice nor the property bag.
        EXPECT_NE(messages.find(L"Cannot configure the AVI Mux filter.  Report this message (see Help->About)\r\n"),
                  std::wstring::npos)
            << testing::PrintToString(messages);
        EXPECT_NE(messages.find(L"Cannot add MAVU Video Capture INFO to AVI file.\r\nMAVU Video Playback will not "
                                L"report dropped frames\r\n"),
                  std::wstring::npos);

        testsupport::ProbedVideo video = testsupport::ProbeVideo(avi);
        ASSERT_TRUE(video.ok) << video.raw;
        EXPECT_EQ(video.width, 640);
        EXPECT_EQ(video.height, 480);
        EXPECT_EQ(video.codecTag, "YUY2");
        EXPECT_NEAR(video.frames, row.frames, 10);
        std::string bytes = ReadFileBytes(std::wstring(avi.begin(), avi.end()));
        EXPECT_NE(bytes.find("idx1"), std::string::npos);

        std::string expected = "Manual recording\n" + Escaped("Start recording at 12:00:00 (UTC)") + "\n" +
            R"(Stop recording at \d\d:\d\d:\d\d \(UTC\))" + "\nVideo file:  " + Escaped(avi) + "\n" + row.countLines +
            "Video source device: Cam\nSource device format: Digital\nFrame rate: 30\n"
            "Frame size: 640x480\nFormat subtype: YUY2\nCodec: NONE\nVideo renderer: VMR9\n";
        std::smatch counts;
        ASSERT_TRUE(std::regex_match(report, counts, std::regex(expected))) << report;
        if (row.frameCounts) {
            EXPECT_NEAR(std::stoi(counts[1]), video.frames, 2);
        }
        testsupport::ExpectRecordMatchesTheStamps(avi, testsupport::ReadRecordedStamps(avi, 640), 1000.0 / 30);
        testsupport::FrameTimeFile record =
            testsupport::ReadFrameTimeFile(avi.substr(0, avi.size() - 4) + ".frames.csv");
        long dropped = 0;
        for (const testsupport::FrameTimeRow& frame : record.rows)
            dropped += frame.droppedBefore;
        EXPECT_GE(dropped, row.leastDropped) << report;
        // The comment lines say what the rows rest on.
        ASSERT_GE(record.comments.size(), 7u);
        EXPECT_EQ(record.comments[0], "MAVU Video Capture Version 2.1");
        EXPECT_EQ(record.comments[1], "device: Cam");
    }
}

// A record that can't be made (its name is taken by a folder) is told of
// once, and the recording goes on.
TEST_F(EngineTest, ARecordThatCannotBeWrittenIsToldOnceAndTheRecordingGoesOn)
{
    ASSERT_TRUE(UseOneCamera());
    std::string folder = devicetest::WorkFolder("engine-frame-times-unwritable");
    std::string avi = folder + "/blocked.avi";
    CreateDirectoryA((folder + "/blocked.frames.csv").c_str(), nullptr);
    std::wstring messages;
    std::string report = RecordFor(std::wstring(avi.begin(), avi.end()), 1500, &messages);
    std::wstring warning = L"WARNING: cannot write the frame-time record \"" +
        std::wstring(avi.begin(), avi.end() - 4) + L".frames.csv\"; the recording goes on without it\r\n";
    std::wstring all = messages + TakeMessages();
    size_t first = all.find(warning);
    EXPECT_NE(first, std::wstring::npos) << testing::PrintToString(all);
    EXPECT_EQ(all.find(warning, first + 1), std::wstring::npos) << "told once";
    testsupport::ProbedVideo video = testsupport::ProbeVideo(avi);
    ASSERT_TRUE(video.ok) << video.raw;
    EXPECT_GT(video.frames, 20);
}
