// Recording by hand with the Start and Stop buttons.
#include <gtest/gtest.h>

#include "e2e/program_run.h"
#include "e2e/remote_probe.h"
#include "support/ffprobe.h"
#include "ui/commands.h"

#include <cstring>
#include <regex>

using namespace e2e;

// Start and Stop: the buttons swap, the AVI and its report are written, and its frames span the time between the
// clicks (that they are those reported is the engine's recording test). While recording, four popups of the main
// menu are grey; File, with Exit, stays open to the user. Another process can't read a menu's state here: the
// probe loaded into the program reads it.
TEST(Recording, ManualRecordingWritesTheAviAndItsReportAndGreysTheMenusMeanwhile)
{
    ProgramRun run;
    ASSERT_TRUE(run.StartWithSkyCam());
    Program& program = *run.program;
    HWND main = run.Main(), start = program.StartButton(), stop = program.StopButton();
    ASSERT_NE(stop, nullptr);
    EXPECT_TRUE(IsEnabled(start));
    EXPECT_FALSE(IsEnabled(stop));
    // The menu bar's popups by position: File stays, the four others grey
    // while a recording runs, and come back after it.
    struct Popup {
        unsigned position;
        const char* name;
        bool greyWhileRecording;
    } popups[] = {{0, "File", false}, {1, "Events", true}, {2, "Display", true}, {3, "Options", true}, {4, "Help", true}};
    for (const Popup& popup : popups)
        EXPECT_FALSE(IsMenuBarPopupGrey(program.ProcessId(), popup.position)) << popup.name << " before";
    Sleep(1000);

    Click(start);
    ASSERT_TRUE(run.WaitTitle(kRecordingTitle, 10000));
    ULONGLONG recordingFrom = GetTickCount64();
    EXPECT_FALSE(IsEnabled(start));
    EXPECT_TRUE(IsEnabled(stop));
    for (const Popup& popup : popups)
        EXPECT_EQ(IsMenuBarPopupGrey(program.ProcessId(), popup.position), popup.greyWhileRecording)
            << popup.name << " while recording";
    // As a user sees it: the File popup, opened by a click on the menu bar.
    POINT corner{0, 0};
    ClientToScreen(main, &corner);
    PostMessageW(main, WM_NCLBUTTONDOWN, HTMENU, MAKELPARAM(corner.x + 12, corner.y - 10));
    HWND menu = WaitForWindow(program.ProcessId(), L"#32768", nullptr, 5000);
    ASSERT_NE(menu, nullptr);
    Sleep(300);
    EXPECT_TRUE(TakeScreenshot("menu-while-recording"));
    PostMessageW(menu, WM_KEYDOWN, VK_ESCAPE, 0);
    PostMessageW(main, WM_KEYDOWN, VK_ESCAPE, 0);
    Sleep(4000);
    double seconds = static_cast<double>(GetTickCount64() - recordingFrom) / 1000;
    Click(stop);
    ASSERT_TRUE(run.WaitTitle(kMainTitle, 10000));
    // Back to preview: Start again, Stop greyed, the menus live.
    EXPECT_TRUE(WaitUntil([&] { return IsEnabled(start) && !IsEnabled(stop); }, 5000));
    for (const Popup& popup : popups)
        EXPECT_FALSE(IsMenuBarPopupGrey(program.ProcessId(), popup.position)) << popup.name << " after";

    std::vector<std::wstring> videos = run.Recordings();
    ASSERT_EQ(videos.size(), 1u);
    EXPECT_TRUE(std::regex_match(Narrow(videos[0]), std::regex(R"(\d\d_\d\d_\d{4}_\d\d_\d\d_\d\d\.avi)")))
        << Narrow(videos[0]);
    std::string report = run.ReportOf(videos[0]);
    EXPECT_EQ(report.rfind("Manual recording\r\r\n", 0), 0u) << report;
    // The file stays open until the graph is emptied at the next start: the preview that followed has done that.
    testsupport::ProbedVideo video = testsupport::ProbeVideo(Narrow(run.VideoPath(videos[0])));
    ASSERT_TRUE(video.ok) << video.raw;
    EXPECT_NEAR(video.frames, 30 * seconds, 20);
    std::wstring text = program.Messages();
    EXPECT_NE(text.find(L"Start recording at "), std::wstring::npos);
    EXPECT_NE(text.find(L"Stop recording at "), std::wstring::npos);
}

// Exit from the menu, or the close box, while a recording runs by hand or
// for an event: the program ends, and the recording is stopped first, with
// its file finished and its report written.
TEST(Recording, ExitOrTheCloseBoxDuringARecordingFinishesItsFileAndReport)
{
    struct Case {
        const char* name;
        bool event;
        bool closeBox;
        const char* reportStart;
    } cases[] = {
        {"by hand, Exit", false, false, "Manual recording\r\r\n"},
        {"by hand, close box", false, true, "Manual recording\r\r\n"},
        {"event, Exit", true, false, "Event recording: "},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        ProgramRun run;
        run.folder = MakeWorkFolder(L"Recording.Exit " + std::wstring(each.name, each.name + std::strlen(each.name)));
        if (each.event)
            WriteEvent(run.folder, L"Exit_event", UtcInSeconds(14), 20, "Exit");
        ASSERT_TRUE(run.StartWithSkyCam());
        if (!each.event) {
            ASSERT_NE(run.program->StartButton(), nullptr);
            Click(run.program->StartButton());
        }
        ASSERT_TRUE(run.WaitTitle(kRecordingTitle, 30000));
        Sleep(3000);
        if (each.closeBox)
            PostMessageW(run.Main(), WM_CLOSE, 0, 0);
        else
            PostCommand(run.Main(), IDM_EXIT);
        ASSERT_TRUE(run.program->WaitExit(30000)) << "the program ends";

        std::vector<std::wstring> avis = run.Recordings();
        ASSERT_EQ(avis.size(), 1u);
        std::string report = run.ReportOf(avis[0]);
        EXPECT_EQ(report.rfind(each.reportStart, 0), 0u) << report;
        EXPECT_NE(report.find("Stop recording at "), std::string::npos) << report;
        testsupport::ProbedVideo video = testsupport::ProbeVideo(Narrow(run.VideoPath(avis[0])));
        ASSERT_TRUE(video.ok) << video.raw;
        EXPECT_GT(video.frames, 60);
    }
}
