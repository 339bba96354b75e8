// Scheduled events recorded by themselves: the countdown, the recording
// centred on the predicted moment, what loading says, stopping by hand, and
// the power countdown.
#include <gtest/gtest.h>

#include "e2e/program_run.h"
#include "e2e/remote_controls.h"
#include "support/code_page.h"
#include "support/ffprobe.h"
#include "support/frame_time_rows.h"
#include "tools/synthcam/sky.h"

#include <regex>

using namespace e2e;

namespace {

// Whether a process has the shut-down privilege enabled in its token. The
// platform starts a process with it present and disabled; only a shut down
// that was really attempted enables it.
bool ShutdownPrivilegeEnabled(DWORD processId)
{
    HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, processId);
    if (!process)
        return false;
    HANDLE token = nullptr;
    bool enabled = false;
    LUID shutdown{};
    if (OpenProcessToken(process, TOKEN_QUERY, &token) &&
        LookupPrivilegeValueW(nullptr, L"SeShutdownPrivilege", &shutdown)) {
        alignas(TOKEN_PRIVILEGES) BYTE buffer[4096];
        DWORD length = 0;
        if (GetTokenInformation(token, TokenPrivileges, buffer, sizeof buffer, &length)) {
            const auto* privileges = reinterpret_cast<const TOKEN_PRIVILEGES*>(buffer);
            for (DWORD i = 0; i < privileges->PrivilegeCount; ++i) {
                const LUID_AND_ATTRIBUTES& entry = privileges->Privileges[i];
                if (entry.Luid.LowPart == shutdown.LowPart && entry.Luid.HighPart == shutdown.HighPart)
                    enabled = (entry.Attributes & SE_PRIVILEGE_ENABLED) != 0;
            }
        }
    }
    if (token)
        CloseHandle(token);
    CloseHandle(process);
    return enabled;
}

uint64_t MsSince2020(const SYSTEMTIME& utc)
{
    FILETIME file;
    SystemTimeToFileTime(&utc, &file);
    return synthcam::UtcMsSince2020(file);
}

// One event 20 s ahead, 10 s long, that asks for a shut down: it is listed, the countdown, the recording, the
// file; then the power countdown, which Cancel stops without a word.
void RecordOneEvent(const Environment& environment, const char* star = "TYC 1", const wchar_t* starName = L"TYC 1",
                    const char* comment = "")
{
    ProgramRun run;
    SYSTEMTIME moment = UtcInSeconds(20);
    WriteEvent(run.folder, L"Vesta_by_hand", moment, 10, "Vesta", star, false, true, comment);
    ASSERT_TRUE(run.devices.Add(L"Sky Cam", L"webcam") && run.Start("", environment));
    if (!environment.empty()) {
        EXPECT_NE(run.program->Messages().find(L"Eastern"), std::wstring::npos) << "the zone is the one asked for";
    }
    ASSERT_TRUE(run.WaitTitle(kPendingTitle, 5000)) << Narrow(WindowText(run.Main()));
    std::wstring text = run.program->Messages();
    EXPECT_NE(text.find(L"    Vesta_by_hand"), std::wstring::npos) << Narrow(text);
    EXPECT_NE(text.find(L"NOTE: computer will shut down 30 seconds after recording ends\r\n"), std::wstring::npos);
    HWND countdown = run.Window(L"CountdownWindow");
    ASSERT_NE(countdown, nullptr);
    EXPECT_TRUE(IsVisible(countdown));
    EXPECT_EQ(WindowText(countdown), L"Event Pending");

    ASSERT_TRUE(run.WaitTitle(kRecordingTitle, 30000));
    // The program titles the main window first and the countdown right after.
    EXPECT_TRUE(WaitUntil([&] { return WindowText(countdown) == L"Recording Event"; }, 2000))
        << Narrow(WindowText(countdown));
    ASSERT_TRUE(run.WaitTitle(kMainTitle, 30000));
    EXPECT_TRUE(WaitUntil([&] { return !IsVisible(countdown); }, 5000));

    HWND power = run.Window(L"Hibernate");
    ASSERT_NE(power, nullptr);
    ASSERT_TRUE(WaitUntil([&] { return IsVisible(power); }, 5000));
    EXPECT_EQ(WindowText(power), L"Shutdown");
    EXPECT_NE(FindChild(power, L"Static", L"Shutdown in"), nullptr);
    EXPECT_NE(FindChild(power, L"Static", L"unless you select Cancel Shutdown"), nullptr);
    HWND cancel = FindChild(power, L"Button", L"Cancel Shutdown");
    ASSERT_NE(cancel, nullptr);
    EXPECT_TRUE(WaitUntil([&] { return FindChild(power, L"Static", L"28") != nullptr; }, 4000));
    std::wstring before = run.program->Messages();
    Click(cancel);
    EXPECT_TRUE(WaitUntil([&] { return !IsVisible(power); }, 3000));
    Sleep(2000);
    EXPECT_EQ(run.program->Messages(), before) << "Cancel says nothing";
    EXPECT_FALSE(IsVisible(power));

    // Named by the event and its nominal start (the moment less half the
    // duration), in UTC.
    SYSTEMTIME nominal = Shifted(moment, -5);
    const std::wstring video = L"Vesta_" + std::wstring(starName) + L"_" + TimeName(nominal) + L".avi";
    ASSERT_EQ(run.Recordings(), Rows{video});

    // Unix tools read the frames by a name of plain letters: a copy, its frame record beside it.
    const std::wstring avi = run.folder + L"\\event.avi", recorded = run.VideoPath(video);
    ASSERT_TRUE(CopyFileW(recorded.c_str(), avi.c_str(), FALSE));
    ASSERT_TRUE(CopyFileW((recorded.substr(0, recorded.size() - 4) + L".frames.csv").c_str(),
                          (run.folder + L"\\event.frames.csv").c_str(), FALSE));
    std::vector<synthcam::FrameStamp> stamps = testsupport::ReadRecordedStamps(Narrow(avi), 640);
    ASSERT_GT(stamps.size(), 200u);
    double startOffset = (static_cast<double>(stamps.front().utcMs) - static_cast<double>(MsSince2020(nominal))) / 1000;
    EXPECT_GE(startOffset, -0.5);
    EXPECT_LE(startOffset, 1.5);
    double length = (static_cast<double>(stamps.back().utcMs) - static_cast<double>(stamps.front().utcMs)) / 1000;
    EXPECT_NEAR(length, 10.0, 1.0);
    // Beside it, each frame's UTC.
    testsupport::ExpectRecordMatchesTheStamps(Narrow(avi), stamps, 1000.0 / 30);

    std::string report = run.ReportOf(video);
    EXPECT_EQ(report.rfind("Event recording: \r\r\n", 0), 0u) << report;
}

}  // namespace

TEST(Events, OneEventRecordsCentredOnItsMomentAndCancelStopsItsShutdownCountdown)
{
    RecordOneEvent({});
}

// Local time behind UTC: the deadline is kept in local time. A Wine process
// takes its zone from the Unix TZ of the process that started it, so the
// ctest entry of this scenario runs the whole test program with
// TZ=America/New_York.
TEST(Events, OneEventRecordsCentredOnItsMomentInNewYork)
{
    wchar_t zone[64] = L"";
    GetEnvironmentVariableW(L"TZ", zone, 64);
    if (std::wstring(zone) != L"America/New_York")
        GTEST_SKIP() << "run with TZ=America/New_York (its ctest entry does)";
    RecordOneEvent({{L"TZ", L"America/New_York"}});
}

// An event file edited by hand, in code page 1252 (the ctest entry's
// LC_ALL=C.UTF-8 gives it to the program): its accented comment doesn't keep
// it from being read, and the star's name, read from the same bytes, names the recording.
TEST(Events, HandWrittenEventWithAnAccentedCommentIsListedAndRecorded)
{
    ASSERT_TRUE(NarrowCodePageIs1252());
    RecordOneEvent({}, "V\xE9ga", L"V\u00E9ga", "Occultation pr\xE9vue");
}

// Loading says which of two events within a minute of each other is ignored and passes over one that is over. A
// manual recording during the countdown cancels it, and Stop loads the events again. Stop during the event asks, and
// no reload follows it: the event is not armed again.
TEST(Events, LoadingSaysWhatOverlapsAManualRecordingCancelsTheCountdownUntilStopAndAStoppedEventIsNotArmedAgain)
{
    ProgramRun run;
    WriteEvent(run.folder, L"a_first", UtcInSeconds(40), 30);
    const std::wstring second = WriteEvent(run.folder, L"b_second", UtcInSeconds(80), 10);
    // Centred 5 s ago with 20 s: 5 s of it remain.
    WriteEvent(run.folder, L"c_ending", UtcInSeconds(-5), 20);
    // Which of the two the enumeration gives later decides which is refused.
    std::vector<std::wstring> order = ListFiles(run.folder + L"\\Events", L"*.mef");
    ASSERT_TRUE(run.StartWithSkyCam());
    ASSERT_TRUE(run.program->WaitForMessage(L"Current Event", 5000));
    std::wstring text = run.program->Messages();
    auto firstAt = std::find(order.begin(), order.end(), L"a_first.mef");
    auto secondAt = std::find(order.begin(), order.end(), L"b_second.mef");
    const wchar_t* note =
        L"NOTE: the Event b_second.mef is ignored because it overlaps (within one minute) another Event\r\n";
    if (firstAt < secondAt) {
        EXPECT_NE(text.find(note), std::wstring::npos) << Narrow(text);
        EXPECT_EQ(text.find(L"    b_second"), std::wstring::npos);
    } else {
        EXPECT_EQ(text.find(L"NOTE: the Event"), std::wstring::npos) << Narrow(text);
        EXPECT_NE(text.find(L"    b_second"), std::wstring::npos);
    }
    EXPECT_NE(text.find(L"    a_first"), std::wstring::npos);
    // Over, and nothing said about it.
    EXPECT_EQ(text.find(L"c_ending"), std::wstring::npos);
    ASSERT_TRUE(run.WaitTitle(kPendingTitle, 3000));

    HWND countdown = run.Window(L"CountdownWindow");
    HWND stop = run.program->StopButton();
    Click(run.program->StartButton());
    ASSERT_TRUE(run.WaitTitle(kRecordingTitle, 10000));
    EXPECT_FALSE(IsVisible(countdown));
    Sleep(2000);
    // The second event goes before the reload: where both were taken, the first's stop would arm it.
    ASSERT_TRUE(DeleteFileW(second.c_str()));
    Click(stop);
    // The reload arms the event again.
    ASSERT_TRUE(run.WaitTitle(kPendingTitle, 10000));
    EXPECT_TRUE(IsVisible(countdown));
    EXPECT_EQ(run.Count(L"The following Events are Loaded (scheduled):"), 2);
    std::vector<std::wstring> videos = ListFiles(run.Videos(), L"*.avi");
    ASSERT_EQ(videos.size(), 1u);
    EXPECT_TRUE(std::regex_match(Narrow(videos[0]), std::regex(R"(\d\d_\d\d_\d{4}_\d\d_\d\d_\d\d\.avi)")))
        << "a manual recording's name: " << Narrow(videos[0]);

    ASSERT_TRUE(run.WaitTitle(kRecordingTitle, 60000));
    const int loads = run.Count(L"Current Event Information:");
    // The question is modal: the click is posted, not sent.
    PostMessageW(stop, BM_CLICK, 0, 0);
    HWND box = WaitForWindow(run.program->ProcessId(), L"#32770", L"Attention");
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(MessageBoxText(box), L"Event recording in progress.  Stop now?");
    AnswerMessageBox(box, IDYES);
    ASSERT_TRUE(run.WaitTitle(kMainTitle, 10000));
    ASSERT_TRUE(run.program->WaitForMessage(L"Event recording is manually stopped", 5000));
    Sleep(3000);
    EXPECT_EQ(WindowText(run.Main()), kMainTitle);
    EXPECT_EQ(run.Count(L"Current Event Information:"), loads);
}

TEST(Events, ShutdownAtTheEndOfTheCountIsWhatThePlatformGives)
{
    ProgramRun run;
    WriteEvent(run.folder, L"power", UtcInSeconds(10), 4, "", "", false, true);
    // The next event is armed as the count begins, and its requests are the
    // ones the count's end acts on. Its hibernate request is dropped at
    // arming here, as this platform can't hibernate (said at start-up); its
    // shut down stays.
    WriteEvent(run.folder, L"sleepy", UtcInSeconds(600), 4, "", "", true, true);
    ASSERT_TRUE(run.StartWithSkyCam());
    ASSERT_TRUE(run.program->WaitForMessage(L"Computer cannot be placed into hibernation", 5000));
    HWND power = run.Window(L"Hibernate");
    ASSERT_TRUE(WaitUntil([&] { return IsVisible(power); }, 30000));
    EXPECT_EQ(WindowText(power), L"Shutdown");
    // Nothing has been tried during the count.
    EXPECT_FALSE(ShutdownPrivilegeEnabled(run.program->ProcessId()));
    // Thirty seconds, then the privilege is enabled and the shut down refused by this platform without a line.
    ASSERT_TRUE(WaitUntil([&] { return !IsVisible(power); }, 40000));
    EXPECT_TRUE(WaitUntil([&] { return ShutdownPrivilegeEnabled(run.program->ProcessId()); }, 2000));
    Sleep(3000);
    std::wstring text = run.program->Messages();
    EXPECT_EQ(text.find(L"shut down computer"), std::wstring::npos) << Narrow(text);
    EXPECT_NE(text.find(L"Hibernation is not supported even though Event requests it"), std::wstring::npos);
    EXPECT_EQ(text.find(L"NOTE: computer will be placed in hibernate"), std::wstring::npos);
    EXPECT_EQ(run.Count(L"NOTE: computer will shut down 30 seconds after recording ends\r\n"), 2);
    EXPECT_TRUE(run.program->IsRunning());
}
