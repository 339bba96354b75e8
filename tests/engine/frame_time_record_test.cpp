// The frame-time record beside a recording, against the stamps the
// synthetic camera burns into each frame: one row per frame of the file,
// each frame's UTC, and the frames the camera lost.
#include "engine/engine_fixture.h"

#include "support/ffprobe.h"
#include "support/frame_time_rows.h"

using namespace enginetest;

TEST_F(EngineTest, FramesTheCameraDropsShowAsDroppedBeforeTheNextRow)
{
    synthcam::DevicePacing pacing;
    pacing.dropEvery = 7;
    ASSERT_TRUE(UseOneCamera(pacing));
    std::string avi = devicetest::WorkFolder("engine-frame-times-drops") + "/drops.avi";
    std::string report = RecordFor(std::wstring(avi.begin(), avi.end()), 3000);
    std::vector<synthcam::FrameStamp> stamps = testsupport::ReadRecordedStamps(avi, 640);
    ASSERT_GT(stamps.size(), 50u);
    testsupport::ExpectRecordMatchesTheStamps(avi, stamps, 1000.0 / 30);
    testsupport::FrameTimeFile record =
        testsupport::ReadFrameTimeFile(avi.substr(0, avi.size() - 4) + ".frames.csv");
    long dropped = 0;
    for (const testsupport::FrameTimeRow& row : record.rows)
        dropped += row.droppedBefore;
    // One slot in seven: about 13 in 3 s at 30 frames a second.
    EXPECT_GE(dropped, 8) << report;
    // The comment lines say what the rows rest on.
    ASSERT_GE(record.comments.size(), 7u);
    EXPECT_EQ(record.comments[0], "MAVU Video Capture Version 2.1");
    EXPECT_EQ(record.comments[1], "device: Cam");
    EXPECT_EQ(record.comments[4], "time base: computer clock, UTC");
    EXPECT_EQ(record.comments[5].rfind("stream time zero: ", 0), 0u) << record.comments[5];
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
                           std::wstring(avi.begin(), avi.end() - 4) +
                           L".frames.csv\"; the recording goes on without it\r\n";
    std::wstring all = messages + TakeMessages();
    size_t first = all.find(warning);
    EXPECT_NE(first, std::wstring::npos) << testing::PrintToString(all);
    EXPECT_EQ(all.find(warning, first + 1), std::wstring::npos) << "told once";
    testsupport::ProbedVideo video = testsupport::ProbeVideo(avi);
    ASSERT_TRUE(video.ok) << video.raw;
    EXPECT_GT(video.frames, 20);
}
