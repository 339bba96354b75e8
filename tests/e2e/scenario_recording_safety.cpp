// What a recording has captured survives: a stop at full HD on a busy
// computer, a second camera plugged in mid-event, a camera pulled and never
// returned, and a program killed mid-recording.
#include <gtest/gtest.h>

#include "e2e/program_run.h"
#include "e2e/remote_probe.h"
#include "support/ffprobe.h"
#include "support/recorded_frames.h"
#include "tools/synthcam/sky.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

using namespace e2e;

namespace {

// Keeps one core busy for a while from the Unix side, as another program
// would; it ends by itself.
void KeepOneCoreBusy(int seconds)
{
    char command[128];
    std::snprintf(command, sizeof command, "timeout %d sh -c 'while :; do :; done' >/dev/null 2>&1 &", seconds);
    RunUnix(command);
}

}  // namespace

// A 14 s event at 1920x1080 YUY2, 30 frames a second, with one core kept
// busy: the event ends, its report is written, ffprobe reads the file, and
// every frame the camera delivered is in the file or counted as dropped.
TEST(RecordingSafety, FullHdEventUnderLoadEndsWithItsReportAndAReadableFile)
{
    for (int attempt = 1; attempt <= 3; ++attempt) {
        SCOPED_TRACE(attempt);
        ProgramRun run;
        run.folder = MakeWorkFolder(L"RecordingSafety.FullHd" + std::to_wstring(attempt));
        ASSERT_TRUE(run.devices.Add(L"Sky Cam", L"hd"));
        WriteEvent(run.folder, L"hd_event", UtcInSeconds(18), 14, "HD");
        ASSERT_TRUE(run.Start());
        KeepOneCoreBusy(45);
        ASSERT_TRUE(run.WaitTitle(kRecordingTitle, 30000)) << Narrow(run.program->Messages());
        ASSERT_TRUE(run.WaitTitle(kMainTitle, 60000)) << "the event never ended";
        std::vector<std::wstring> videos = run.Recordings(1, 20000);
        ASSERT_EQ(videos.size(), 1u);
        std::wstring avi = run.VideoPath(videos[0]);
        std::string report = run.ReportOf(videos[0]);
        EXPECT_NE(report.find("Frame size: 1920x1080"), std::string::npos) << report;

        EXPECT_TRUE(run.program->Exit()) << "the program closes on request";
        run.program->Kill();

        testsupport::ProbedVideo probed = testsupport::ProbeVideo(Narrow(avi));
        ASSERT_TRUE(probed.ok) << probed.raw;
        EXPECT_EQ(probed.width, 1920);
        EXPECT_EQ(probed.height, 1080);
        std::vector<synthcam::FrameStamp> stamps = testsupport::ReadRecordedStamps(Narrow(avi), 1920);
        ASSERT_GT(stamps.size(), 100u);
        long missing = testsupport::MissingStampedFrames(stamps);
        long dropped = testsupport::ReportedDroppedFrames(report);
        std::printf("run %d: %zu frames in the file, %ld missing, %ld dropped in the report\n", attempt, stamps.size(),
                    missing, dropped);
        EXPECT_GE(missing, 0);
        EXPECT_LE(missing, dropped) << report;
    }
}

namespace {

// The "HH:MM:SS" after "Stop recording at " in a report, as milliseconds of the UTC day; -1 when the line is missing.
long long StopLineMsOfDay(const std::string& report)
{
    size_t at = report.find("Stop recording at ");
    unsigned h = 0, m = 0, s = 0;
    if (at == std::string::npos || std::sscanf(report.c_str() + at + 18, "%2u:%2u:%2u", &h, &m, &s) != 3)
        return -1;
    return ((h * 60ll + m) * 60 + s) * 1000;
}

long long MsOfDay(uint64_t msSince2020)
{
    return static_cast<long long>(msSince2020 % 86400000ull);
}

}  // namespace

// A notification while the event's camera starts is dropped, and the next
// one finds the change. The camera then pulled and never returned: one
// report, written at the pull, whose stop time is that of the last frame;
// the event's end and the program's exit leave it as it is.
TEST(RecordingSafety, ANotificationDuringTheCameraStartWaitsAndACameraPulledKeepsTheOneReportOfItsLastFrame)
{
    ProgramRun run;
    // A camera that takes three seconds to start: the event's recording
    // starts it on the countdown's thread, and the window stays free.
    ASSERT_TRUE(run.devices.Add(L"Sky Cam", L"webcam", L"ntsc", {.startDelayMs = 3000}));
    ASSERT_TRUE(run.devices.Add(L"Spare Cam", L"webcam"));
    WriteEvent(run.folder, L"pulled", UtcInSeconds(20), 14, "Pulled");
    ASSERT_TRUE(run.Start());
    ASSERT_TRUE(run.WaitTitle(kRecordingTitle, 30000));
    Sleep(500);
    ASSERT_EQ(run.Count(L"Start recording at "), 0) << "the camera is still starting";
    std::wstring before = run.program->Messages();
    EXPECT_EQ(run.Pull(L"Spare Cam"), 0);
    EXPECT_EQ(run.program->Messages(), before);
    ASSERT_TRUE(run.program->WaitForMessage(L"Start recording at ", 10000));
    EXPECT_EQ(run.Count(L"Spare Cam"), 0);
    // The change waited for the next notification.
    EXPECT_EQ(SendDeviceChange(run.Main()), 1);
    EXPECT_EQ(run.Count(L"Inactive video capture device \"Spare Cam\" disconnected\r\n"), 1);
    EXPECT_EQ(WindowText(run.Main()), kRecordingTitle);
    Sleep(4000);
    ASSERT_TRUE(run.devices.Pull(L"Sky Cam"));
    // The system's word comes a moment after the cable goes.
    Sleep(1500);
    EXPECT_EQ(SendDeviceChange(run.Main()), 1);
    std::vector<std::wstring> videos = run.Recordings();
    ASSERT_EQ(videos.size(), 1u);
    std::string atPull = run.ReportOf(videos[0]);

    ASSERT_TRUE(run.WaitTitle(kMainTitle, 30000)) << "the event ends on time";
    Sleep(1000);
    EXPECT_EQ(ListFiles(run.Videos(), L"*.txt").size(), 1u);
    EXPECT_EQ(run.ReportOf(videos[0]), atPull) << "the event's end leaves the report alone";
    EXPECT_TRUE(run.program->Exit());
    run.program->Kill();
    EXPECT_EQ(run.ReportOf(videos[0]), atPull) << "the exit leaves the report alone";

    std::vector<synthcam::FrameStamp> stamps = testsupport::ReadRecordedStamps(Narrow(run.VideoPath(videos[0])), 640);
    ASSERT_GT(stamps.size(), 60u);
    long long stop = StopLineMsOfDay(atPull);
    ASSERT_GE(stop, 0) << atPull;
    // The line has whole seconds; the last frame came within that second.
    long long last = MsOfDay(stamps.back().utcMs);
    EXPECT_LE(std::llabs(stop + 500 - last), 1000) << atPull;
    size_t at = atPull.find("Number of recorded frames:  ");
    ASSERT_NE(at, std::string::npos) << atPull;
    long recorded = std::atol(atPull.c_str() + at + 28);
    EXPECT_NEAR(static_cast<double>(recorded), static_cast<double>(stamps.size()), 2) << atPull;
    EXPECT_EQ(atPull.find(":  -"), std::string::npos) << "no negative count: " << atPull;
}

// The program killed mid-event and started again at once: the cut file is
// repaired with its report and a line in User Messages, and the rest of the
// event goes to another file. A second capture device plugged in then
// restarts the camera, as a device change does; what was recorded stays in
// that file with its report, and the rest of the event goes on in the next.
// The recording camera pulled after that and plugged back: its file ends at
// the pull and the event goes on in one more.
TEST(RecordingSafety, AKilledRecordingIsRepairedAtTheNextStartAndTheEventGoesOnPastASecondCameraAndAPull)
{
    ProgramRun run;
    ASSERT_TRUE(run.devices.Add(L"Sky Cam", L"webcam"));
    WriteEvent(run.folder, L"cut", UtcInSeconds(30), 40, "CUT", "STAR");
    // The second camera is the default device: it doesn't take over from the recording.
    ASSERT_TRUE(run.Start(Option("DefaultVideoSource", "Other Cam")));
    ASSERT_TRUE(run.WaitTitle(kRecordingTitle, 30000));
    Sleep(10000);
    uint64_t killedAt = synthcam::UtcMsSince2020Now();
    run.program->Kill();
    std::vector<std::wstring> cut = ListFiles(run.Videos(), L"*.avi");
    ASSERT_EQ(cut.size(), 1u);
    EXPECT_TRUE(ListFiles(run.Videos(), L"*.txt").empty());

    ASSERT_TRUE(run.Run());
    Program& again = *run.program;
    std::wstring line = L"WARNING: recording \"VideoFiles\\" + cut[0] + L"\" was cut short and has been repaired: ";
    ASSERT_TRUE(again.WaitForMessage(line, 5000)) << Narrow(again.Messages());
    ASSERT_TRUE(run.WaitTitle(kRecordingTitle, 10000));
    uint64_t resumed = synthcam::UtcMsSince2020Now();
    Sleep(6000);
    uint64_t plugged = synthcam::UtcMsSince2020Now();
    ASSERT_EQ(run.Plug(L"Other Cam"), 1);
    EXPECT_EQ(run.Count(L"Video capture device \"Other Cam\" connected\r\n"), 1) << Narrow(again.Messages());
    // The restart leaves the buttons and menus as the recording has them,
    // and the recording camera's pull and return after it are the recording's.
    Sleep(5000);
    EXPECT_FALSE(IsEnabled(again.StartButton()));
    EXPECT_TRUE(IsEnabled(again.StopButton()));
    EXPECT_TRUE(IsMenuBarPopupGrey(again.ProcessId(), 1)) << "Events";
    uint64_t pulled = synthcam::UtcMsSince2020Now();
    ASSERT_EQ(run.Pull(L"Sky Cam"), 1);
    ASSERT_TRUE(again.WaitForMessage(L"Active video capture device \"Sky Cam\" disconnected while recording\r\n", 5000))
        << Narrow(again.Messages());
    ASSERT_EQ(run.Plug(L"Sky Cam"), 1);
    ASSERT_TRUE(again.WaitForMessage(L"Active video capture device \"Sky Cam\" reconnected for recording\r\n", 5000))
        << Narrow(again.Messages());
    // An event taken up late records for its whole duration from then on.
    ASSERT_TRUE(run.WaitTitle(kMainTitle, 60000));
    std::vector<std::wstring> videos = run.Recordings(4);
    std::string messages = Narrow(again.Messages());
    again.Kill();

    ASSERT_EQ(videos.size(), 4u);
    EXPECT_EQ(videos[0], cut[0]);
    std::wstring stem = cut[0].substr(0, cut[0].size() - 4);
    EXPECT_EQ(videos[1], stem + L"_1.avi");
    EXPECT_EQ(videos[2], stem + L"_2.avi");
    EXPECT_EQ(videos[3], stem + L"_3.avi");

    std::wstring repaired = run.Videos() + L"\\" + cut[0];
    testsupport::ProbedVideo probed = testsupport::ProbeVideo(Narrow(repaired));
    ASSERT_TRUE(probed.ok) << probed.raw;
    std::vector<synthcam::FrameStamp> stamps = testsupport::ReadRecordedStamps(Narrow(repaired), 640);
    ASSERT_FALSE(stamps.empty());
    size_t beforeKill = 0;
    for (const synthcam::FrameStamp& stamp : stamps)
        beforeKill += stamp.utcMs <= killedAt ? 1 : 0;
    // The camera makes a frame each 33.3 ms from the event's start.
    double made = static_cast<double>(killedAt - stamps.front().utcMs) / (1000.0 / 30);
    std::printf("killed after %.0f frames; %zu of them in the repaired file\n", made, beforeKill);
    EXPECT_GE(static_cast<double>(beforeKill), 0.9 * made);
    EXPECT_GE(made, 9 * 30.0) << "the file starts at the event's start";
    std::string report = run.ReportOf(cut[0]);
    EXPECT_NE(report.find("Number of recorded frames:  " + std::to_string(stamps.size())), std::string::npos) << report;
    EXPECT_NE(messages.find(std::to_string(stamps.size()) + " frames recovered"), std::string::npos) << messages;

    std::vector<synthcam::FrameStamp> first = testsupport::ReadRecordedStamps(Narrow(run.VideoPath(videos[1])), 640);
    std::vector<synthcam::FrameStamp> rest = testsupport::ReadRecordedStamps(Narrow(run.VideoPath(videos[2])), 640);
    ASSERT_GT(first.size(), 100u);
    ASSERT_GT(rest.size(), 100u);
    EXPECT_GT(first.front().utcMs, killedAt);
    // The file before the plug holds its seconds up to the plug, from the start on.
    EXPECT_LE(first.front().utcMs, resumed + 1000);
    EXPECT_GE(first.back().utcMs + 1000, plugged);
    EXPECT_LE(first.back().utcMs, plugged + 1000);
    EXPECT_GT(rest.front().utcMs, first.back().utcMs);
    EXPECT_LE(rest.back().utcMs, pulled + 1000);
    std::vector<synthcam::FrameStamp> back = testsupport::ReadRecordedStamps(Narrow(run.VideoPath(videos[3])), 640);
    ASSERT_GT(back.size(), 100u);
    EXPECT_GT(back.front().utcMs, pulled);
    for (size_t i = 1; i < videos.size(); ++i) {
        std::string piece = run.ReportOf(videos[i]);
        EXPECT_EQ(piece.rfind("Event recording: \r\r\n", 0), 0u) << piece;
        EXPECT_NE(piece.find(Narrow(videos[i])), std::string::npos) << piece;
    }
}
