// A USB device pulled and plugged back while the program runs: a recording
// goes on in numbered files, the preview moves to another device and back,
// and every change says what happened. The synthetic camera is pulled as a
// cable would be and the test then sends the notification the system would.
#include <gtest/gtest.h>

#include "e2e/program_run.h"
#include "support/ffprobe.h"
#include "support/frame_time_rows.h"
#include "support/recorded_frames.h"
#include "ui/commands.h"
#include "ui/control_ids.h"

#include <memory>
#include <regex>

using namespace e2e;

namespace {

// A pull or a plug that the program took, and said once what it made of.
void ExpectHandled(LRESULT answer, const ProgramRun& run, const std::wstring& line)
{
    EXPECT_EQ(answer, 1);
    EXPECT_EQ(run.Count(line), 1) << Narrow(run.program->Messages());
}

// The picture and the record buttons are up exactly while a device is in
// use.
void ExpectDeviceInUse(const ProgramRun& run, HWND clipping, bool inUse)
{
    EXPECT_EQ(IsVisible(clipping), inUse);
    EXPECT_EQ(IsVisible(run.program->RecordControlsWindow()), inUse);
}

// One file of a recording: its frames' stamps and its report.
struct Piece {
    std::wstring name;
    std::vector<synthcam::FrameStamp> stamps;
    std::string report;
};

Piece ReadPiece(const ProgramRun& run, const std::wstring& name)
{
    Piece piece;
    piece.name = name;
    piece.stamps = testsupport::ReadRecordedStamps(Narrow(run.VideoPath(name)), 640);
    piece.report = run.ReportOf(name);
    return piece;
}

// Every frame the device delivered in the piece's run is there, in order: the stamps number every frame made, so
// the numbers missing are the device's drops; the report counts from just after the start (up to three fewer).
void ExpectNothingLost(const Piece& piece, const char* heading, const std::string& device = "Sky Cam")
{
    SCOPED_TRACE(Narrow(piece.name));
    ASSERT_GT(piece.stamps.size(), 30u);
    // Numbering starts with the camera, so the frames before the first stamp are missing too.
    long missing = testsupport::MissingStampedFrames(piece.stamps);
    ASSERT_GE(missing, 0) << "a frame repeated or out of order";
    missing += static_cast<long>(piece.stamps.front().counter);
    EXPECT_EQ(piece.report.rfind(heading, 0), 0u) << piece.report;
    std::smatch counts;
    ASSERT_TRUE(std::regex_search(piece.report, counts,
                                  std::regex("Number of recorded frames:  (\\d+)\r\r\nNumber of dropped frames:  "
                                             "(\\d+)")))
        << piece.report;
    long recorded = std::stol(counts[1]);
    long dropped = std::stol(counts[2]);
    long inFile = static_cast<long>(piece.stamps.size());
    EXPECT_GE(inFile, recorded);
    EXPECT_LE(inFile, recorded + 3);
    EXPECT_GE(missing, dropped);
    EXPECT_LE(missing, dropped + 3);
    EXPECT_NE(piece.report.find("Video source device: " + device + "\r\r\n"), std::string::npos) << piece.report;
}

// The gap between two pieces holds the time the device was away, and not
// much more: the end of one is the pull, the start of the next is the
// camera's start after the plug.
void ExpectGapOnlyWhileAway(const Piece& before, const Piece& after, uint64_t pulledAt, uint64_t pluggedAt)
{
    SCOPED_TRACE(Narrow(before.name) + " to " + Narrow(after.name));
    ASSERT_FALSE(before.stamps.empty());
    ASSERT_FALSE(after.stamps.empty());
    EXPECT_LE(before.stamps.back().utcMs, pulledAt + 50);
    EXPECT_GE(before.stamps.back().utcMs + 300, pulledAt);
    EXPECT_GE(after.stamps.front().utcMs, pluggedAt);
    EXPECT_LE(after.stamps.front().utcMs, pluggedAt + 3000);
}

// The pieces of a recording, x.avi, x_1.avi, x_2.avi, by the first name.
std::vector<std::wstring> PieceNames(const std::wstring& first, int continuations)
{
    std::vector<std::wstring> names{first};
    std::wstring stem = first.substr(0, first.size() - 4);
    for (int i = 1; i <= continuations; ++i)
        names.push_back(stem + L"_" + std::to_wstring(i) + L".avi");
    return names;
}

}  // namespace

TEST(HotPlug, PullAndReplugTwiceDuringAnEventGoesOnInNumberedFilesAndEndsOnTime)
{
    ProgramRun run;
    ASSERT_TRUE(run.devices.Add(L"Sky Cam", L"webcam"));
    // Centred 22 s ahead with 20 s: the recording runs from about 12 s to
    // 32 s from now. The next event waits to be armed after it.
    SYSTEMTIME moment = UtcInSeconds(22);
    WriteEvent(run.folder, L"Vesta", moment, 20, "Vesta");
    WriteEvent(run.folder, L"Later", UtcInSeconds(300), 4, "Later");
    ASSERT_TRUE(run.Start());
    ASSERT_TRUE(run.WaitTitle(kRecordingTitle, 30000));
    uint64_t recordingFrom = synthcam::UtcMsSince2020Now();
    Sleep(4000);

    std::vector<uint64_t> pulled, plugged;
    for (int round = 1; round <= 2; ++round) {
        pulled.push_back(synthcam::UtcMsSince2020Now());
        ASSERT_EQ(run.Pull(L"Sky Cam"), 1);
        EXPECT_EQ(run.Count(L"Active video capture device \"Sky Cam\" disconnected while recording\r\n"), round);
        // The piece stops with its report; the recording stays on.
        EXPECT_EQ(ListFiles(run.Videos(), L"*.txt").size(), static_cast<size_t>(round));
        EXPECT_EQ(WindowText(run.Main()), kRecordingTitle);
        Sleep(2000);
        plugged.push_back(synthcam::UtcMsSince2020Now());
        ASSERT_EQ(run.Plug(L"Sky Cam"), 1);
        EXPECT_EQ(run.Count(L"Active video capture device \"Sky Cam\" reconnected for recording\r\n"), round);
        EXPECT_EQ(run.Count(L"Start recording at "), round + 1);
        Sleep(3000);
    }

    // The end timer ends the event on time, 20.45 s after the deadline.
    ASSERT_TRUE(WaitUntil([&] { return WindowText(run.Main()) != kRecordingTitle; }, 30000, 20));
    uint64_t endedAt = synthcam::UtcMsSince2020Now();
    EXPECT_NEAR(static_cast<double>(endedAt - recordingFrom) / 1000, 20.5, 1.5);
    // And the next event is armed as usual.
    EXPECT_TRUE(run.WaitTitle(kPendingTitle, 10000));
    std::vector<std::wstring> videos = run.Recordings(3);
    EXPECT_EQ(run.Count(L"Current Event Information:"), 2);
    ASSERT_EQ(videos.size(), 3u);
    std::vector<std::wstring> names = PieceNames(videos[0], 2);
    EXPECT_EQ(videos, names);
    EXPECT_EQ(videos[0].rfind(L"Vesta_", 0), 0u);
    std::vector<Piece> pieces;
    for (const std::wstring& name : names) {
        testsupport::ProbedVideo video = testsupport::ProbeVideo(Narrow(run.VideoPath(name)));
        ASSERT_TRUE(video.ok) << video.raw;
        pieces.push_back(ReadPiece(run, name));
        EXPECT_EQ(video.frames, static_cast<int>(pieces.back().stamps.size()));
        ExpectNothingLost(pieces.back(), "Event recording: \r\r\n");
        // Each piece has its frame-time record beside it.
        testsupport::ExpectRecordMatchesTheStamps(Narrow(run.VideoPath(name)), pieces.back().stamps, 1000.0 / 30);
    }
    for (int i = 0; i < 2; ++i)
        ExpectGapOnlyWhileAway(pieces[i], pieces[i + 1], pulled[i], plugged[i]);
    EXPECT_LE(pieces[2].stamps.back().utcMs, endedAt);
    EXPECT_GE(pieces[2].stamps.back().utcMs + 1000, endedAt);
}

// Each pull and plug of a device not in use gives its line: an ignored one comes and goes, and a notification
// that finds nothing says nothing. The Video Input Device window, open meanwhile, follows in its lists; the default
// device takes over as soon as it comes, new to the program as it is, and is shown selected. The next device takes
// over from a pulled one; the device chosen in the window is the one in use, so the one it replaced goes as
// inactive; with none left the picture goes, and comes back with a device plugged. The default takes over again when
// it comes back, and a manual recording with it, pulled and plugged back, goes on under the manual name.
TEST(HotPlug, EachChangeGivesItsLineTheNextDeviceTakesOverTheDefaultWhenItComesAndItsRecordingGoesOnPastAPull)
{
    ProgramRun run;
    for (const wchar_t* name : {L"Sky Cam", L"Spare Cam", L"Hidden Cam"})
        ASSERT_TRUE(run.devices.Add(name, L"webcam"));
    ASSERT_TRUE(run.Start(Option("DefaultVideoSource", "Main Cam") + Option("ExcludedVideoSource", "Hidden Cam")));
    HWND clipping = run.Clipping();
    ASSERT_NE(clipping, nullptr);
    ExpectDeviceInUse(run, clipping, true);
    ASSERT_NE(run.Open(IDM_SELECT_INPUT_DEVICE, L"SelectVideoDeviceClassName"), nullptr);
    EXPECT_EQ(run.RowsOf(kSelectDeviceList), (Rows{L"Sky Cam", L"Spare Cam"}));
    EXPECT_EQ(run.RowsOf(kSelectDeviceIgnoredList), Rows{L"Hidden Cam"});

    ExpectHandled(run.Pull(L"Hidden Cam"), run, L"Ignored video capture device \"Hidden Cam\" disconnected\r\n");
    EXPECT_EQ(run.RowsOf(kSelectDeviceIgnoredList), Rows{});
    // Nothing left to find.
    std::wstring before = run.program->Messages();
    ASSERT_EQ(SendDeviceChange(run.Main()), 1);
    EXPECT_EQ(run.program->Messages(), before);
    ExpectHandled(run.Plug(L"Hidden Cam"), run, L"Ignored video capture device \"Hidden Cam\" connected\r\n");
    EXPECT_EQ(run.RowsOf(kSelectDeviceIgnoredList), Rows{L"Hidden Cam"});

    ExpectHandled(run.Plug(L"Main Cam"), run, L"Video capture device \"Main Cam\" connected as the default\r\n");
    EXPECT_EQ(run.RowsOf(kSelectDeviceList), (Rows{L"Sky Cam", L"Spare Cam", L"Main Cam"}));
    EXPECT_EQ(run.Selected(kSelectDeviceList), 2);
    ExpectHandled(run.Pull(L"Main Cam"), run, L"Active video capture device \"Main Cam\" disconnected\r\n");
    EXPECT_EQ(run.RowsOf(kSelectDeviceList), (Rows{L"Sky Cam", L"Spare Cam"}));
    EXPECT_EQ(run.Selected(kSelectDeviceList), 0);
    EXPECT_FALSE(run.Checked(kSelectDeviceDefaultBox));
    EXPECT_TRUE(IsVisible(run.window));
    ExpectDeviceInUse(run, clipping, true);

    run.Choose(kSelectDeviceList, 1);
    Click(run.Item(kSelectDeviceOkButton));
    ExpectHandled(run.Pull(L"Sky Cam"), run, L"Inactive video capture device \"Sky Cam\" disconnected\r\n");
    ExpectHandled(run.Pull(L"Spare Cam"), run, L"Active video capture device \"Spare Cam\" disconnected\r\n");
    EXPECT_EQ(run.Count(L"There is no video capture device connected to the computer\r\n"), 1);
    ExpectDeviceInUse(run, clipping, false);

    // Plugged back, the device is taken up again and the preview returns.
    ExpectHandled(run.Plug(L"Sky Cam"), run, L"Video capture device \"Sky Cam\" connected\r\n");
    ExpectDeviceInUse(run, clipping, true);
    // Another known device coming back doesn't take over.
    ExpectHandled(run.Plug(L"Spare Cam"), run, L"Video capture device \"Spare Cam\" connected\r\n");

    ASSERT_EQ(run.Plug(L"Main Cam"), 1);
    EXPECT_EQ(run.Count(L"Video capture device \"Main Cam\" connected as the default\r\n"), 2);
    HWND start = run.program->StartButton();
    HWND stop = run.program->StopButton();
    Click(start);
    ASSERT_TRUE(run.WaitTitle(kRecordingTitle, 10000));
    Sleep(3000);
    uint64_t pulledAt = synthcam::UtcMsSince2020Now();
    ExpectHandled(run.Pull(L"Main Cam"), run,
                  L"Active video capture device \"Main Cam\" disconnected while recording\r\n");
    // The user can still stop: Stop stays enabled, Start grey.
    EXPECT_TRUE(IsEnabled(stop));
    EXPECT_FALSE(IsEnabled(start));
    EXPECT_TRUE(IsVisible(run.program->RecordControlsWindow()));
    Sleep(1500);
    uint64_t pluggedAt = synthcam::UtcMsSince2020Now();
    ExpectHandled(run.Plug(L"Main Cam"), run,
                  L"Active video capture device \"Main Cam\" reconnected for recording\r\n");
    Sleep(3000);
    Click(stop);
    ASSERT_TRUE(run.WaitTitle(kMainTitle, 10000));
    std::vector<std::wstring> videos = run.Recordings(2);
    ASSERT_EQ(videos.size(), 2u);
    EXPECT_TRUE(std::regex_match(Narrow(videos[0]), std::regex(R"(\d\d_\d\d_\d{4}_\d\d_\d\d_\d\d\.avi)")))
        << Narrow(videos[0]);
    EXPECT_EQ(videos, PieceNames(videos[0], 1));
    Piece first = ReadPiece(run, videos[0]);
    Piece second = ReadPiece(run, videos[1]);
    ExpectNothingLost(first, "Manual recording\r\r\n", "Main Cam");
    ExpectNothingLost(second, "Manual recording\r\r\n", "Main Cam");
    ExpectGapOnlyWhileAway(first, second, pulledAt, pluggedAt);
    // After the stop a new recording starts from a fresh name again.
    EXPECT_TRUE(WaitUntil([&] { return IsEnabled(start) && !IsEnabled(stop); }, 5000));
}
