// The recording option windows: each sets its options, saves them with its
// line, and the program acts on them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <regex>

#include "e2e/program_run.h"
#include "e2e/remote_controls.h"
#include "support/stand_ins.h"
#include "ui/commands.h"
#include "ui/control_ids.h"

using namespace e2e;

namespace {

constexpr wchar_t kAllowedCharacters[] =
    L"Allowed characters are 'a' thru 'z', 'A' thru 'Z', '0' thru '9', '-', '_' or blank\r\n";
constexpr wchar_t kFileOptionsSaved[] = L"File options saved in options file\r\n";
constexpr wchar_t kSaveWarning[] =
    L"WARNING: cannot save MAVU_optionsVC.xml file in process directory - write protected?\r\n";

int UtcSecondsOfDay()
{
    SYSTEMTIME now{};
    GetSystemTime(&now);
    return now.wHour * 3600 + now.wMinute * 60 + now.wSecond;
}

// "HH:mm:ss" within three seconds of the UTC clock, across midnight too.
bool ShowsUtcClockNow(const std::wstring& text)
{
    unsigned hours = 0, minutes = 0, seconds = 0;
    if (text.size() != 8 || swscanf(text.c_str(), L"%2u:%2u:%2u", &hours, &minutes, &seconds) != 3)
        return false;
    const int shown = static_cast<int>(hours * 3600 + minutes * 60 + seconds);
    const int apart = std::abs(shown - UtcSecondsOfDay()) % 86400;
    return std::min(apart, 86400 - apart) <= 3;
}

// The computer's name as this platform keeps it for the running session;
// a test gives the computer another name and puts the old one back.
class ComputerName {
public:
    explicit ComputerName(const wchar_t* name)
    {
        DWORD size = sizeof saved_;
        RegGetValueW(HKEY_LOCAL_MACHINE, kKey, L"ComputerName", RRF_RT_REG_SZ, nullptr, saved_, &size);
        Set(name);
    }
    ~ComputerName() { Set(saved_); }

private:
    static constexpr const wchar_t* kKey = L"System\\CurrentControlSet\\Control\\ComputerName\\ActiveComputerName";
    static void Set(const wchar_t* name)
    {
        RegSetKeyValueW(HKEY_LOCAL_MACHINE, kKey, L"ComputerName", REG_SZ, name,
                        static_cast<DWORD>((wcslen(name) + 1) * sizeof(wchar_t)));
    }
    wchar_t saved_[64] = L"";
};

void Type(HWND window, int id, const wchar_t* text)
{
    SendMessageW(GetDlgItem(window, id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
}

}  // namespace

// The File Options window: a slash typed into the video prefix is taken out again with its line, the log prefix
// takes twenty characters and no more, and Host Name gives the computer's name, its disallowed characters taken
// out with a line, in lower case, as the global prefix. Save stores them, the default folder as no folder, and
// the next recording carries the prefix. A folder chosen in the platform's folder picker is where the next
// recording goes, and, too long for its value, shows whole in a pop-up while the mouse rests on it; Use Default,
// then Save, stores no folder again. The Codec Selector lists what the trial connected for the camera's format. The
// test compressor chosen for YUY2 with the save box is written as the pair, and the next recording goes through it;
// at the next opening the last row of that name is the selected one.
TEST(OptionWindows, FileOptionsPrefixesHostNameAndFolderAndTheCodecPairAreFilteredSavedAndUsed)
{
    // The computer named for the running server as this platform would ("Lab+PC#1.local").
    ComputerName renamed(L"LAB_PC#1");
    testsupport::RegisteredTestCompressor compressor;
    ProgramRun run;
    ASSERT_TRUE(run.StartWithSkyCam());
    HWND window = run.Open(IDM_FILE_OPTIONS, L"FileOptions");
    ASSERT_NE(window, nullptr);
    Type(window, kFileVideoPrefixEdit, L"a/b");
    EXPECT_EQ(WindowText(GetDlgItem(window, kFileVideoPrefixEdit)), L"ab");
    EXPECT_EQ(WindowText(GetDlgItem(window, kFileVideoPattern)), L"ab_mm_dd_yyyy_hh_mm_ss.avi");
    ASSERT_TRUE(run.program->WaitForMessage(kAllowedCharacters, 3000));
    Type(window, kFileLogPrefixEdit, L"");
    SendMessageW(GetDlgItem(window, kFileLogPrefixEdit), EM_REPLACESEL, FALSE,
                 reinterpret_cast<LPARAM>(L"abcdefghijklmnopqrstuvwxyz"));
    EXPECT_EQ(WindowText(GetDlgItem(window, kFileLogPrefixEdit)), L"abcdefghijklmnopqrst");
    Click(GetDlgItem(window, kFileHostNameButton));
    EXPECT_EQ(WindowText(GetDlgItem(window, kFileGlobalPrefixEdit)), L"lab_pc1");
    ASSERT_TRUE(run.program->WaitForMessage(
        L"One or more characters removed from computer name to have valid global event file name prefix\r\n", 3000));
    Click(GetDlgItem(window, kFileSaveButton));
    ASSERT_TRUE(run.program->WaitForMessage(kFileOptionsSaved, 3000));
    EXPECT_FALSE(IsVisible(window));
    std::string file = run.OptionsFile();
    EXPECT_NE(file.find(Option("VideoNamePrefix", "ab")), std::string::npos) << file;
    EXPECT_NE(file.find(Option("LogfileNamePrefix", "abcdefghijklmnopqrst")), std::string::npos) << file;
    EXPECT_NE(file.find(Option("EventFileGlobalPrefix", "lab_pc1")), std::string::npos) << file;
    const std::string prefixed = Narrow(RecordByHand(*run.program).avi);
    EXPECT_TRUE(std::regex_search(prefixed, std::regex(R"(\\ab_\d\d_\d\d_\d{4}_\d\d_\d\d_\d\d\.avi$)"))) << prefixed;

    // A folder too long for its value.
    std::wstring chosen = run.folder + L"\\Chosen" + std::wstring(60, L'x');
    CreateDirectoryW(chosen.c_str(), nullptr);
    window = run.Open(IDM_FILE_OPTIONS, L"FileOptions");
    ASSERT_NE(window, nullptr);
    PostMessageW(GetDlgItem(window, kFileVideoSelectFolder), BM_CLICK, 0, 0);
    HWND picker = WaitForWindow(run.program->ProcessId(), L"#32770");
    ASSERT_NE(picker, nullptr);
    EXPECT_EQ(WindowText(picker), L"Select Folder");
    // The folder typed into the picker's name box, then Open.
    HWND name = GetDlgItem(picker, 1152);
    ASSERT_NE(name, nullptr);
    SendMessageW(name, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(chosen.c_str()));
    PostMessageW(GetDlgItem(picker, IDOK), BM_CLICK, 0, 0);
    ASSERT_TRUE(WaitUntil([&] { return !IsWindow(picker) || !IsVisible(picker); }, 10000));
    HWND shown = GetDlgItem(window, kFileVideoFolder);
    const std::wstring ending = L"\\Chosen" + std::wstring(60, L'x') + L"\\";
    auto endsWithChosen = [&] {
        std::wstring text = WindowText(shown);
        return text.size() > ending.size() && text.substr(text.size() - ending.size()) == ending;
    };
    ASSERT_TRUE(WaitUntil(endsWithChosen, 5000)) << Narrow(WindowText(shown));
    const std::wstring whole = WindowText(shown);

    POINT inVideoFolder{200, 155};
    ClientToScreen(window, &inVideoFolder);
    SetCursorPos(inVideoFolder.x - 5, inVideoFolder.y);
    Sleep(100);
    SetCursorPos(inVideoFolder.x, inVideoFolder.y);
    HWND popup = WaitForWindow(run.program->ProcessId(), L"Static", whole.c_str(), 3000);
    EXPECT_NE(popup, nullptr);
    EXPECT_TRUE(TakeScreenshot("file-options-path"));
    POINT away{470, 100};
    ClientToScreen(window, &away);
    SetCursorPos(away.x, away.y);
    EXPECT_TRUE(WaitUntil([&] { return popup && !IsVisible(popup); }, 3000));

    Click(GetDlgItem(window, kFileSaveButton));
    ASSERT_TRUE(WaitUntil([&] { return run.Count(kFileOptionsSaved) == 2; }, 3000));
    EXPECT_NE(run.OptionsFile().find(Option("VideoDirectory", Narrow(whole).c_str())), std::string::npos)
        << run.OptionsFile();
    EXPECT_FALSE(RecordByHand(*run.program, 2000, chosen).avi.empty());

    // Use Default, then Save: no folder is stored, though the default is a
    // folder like any other.
    window = run.Open(IDM_FILE_OPTIONS, L"FileOptions");
    ASSERT_NE(window, nullptr);
    Click(GetDlgItem(window, kFileVideoUseDefault));
    std::wstring defaultFolder = WindowText(shown);
    EXPECT_EQ(defaultFolder.substr(defaultFolder.size() - 11), L"VideoFiles\\");
    Click(GetDlgItem(window, kFileSaveButton));
    ASSERT_TRUE(WaitUntil([&] { return run.Count(kFileOptionsSaved) == 3; }, 3000));
    EXPECT_NE(run.OptionsFile().find(Option("VideoDirectory", "")), std::string::npos) << run.OptionsFile();

    window = run.Open(IDM_CODEC, L"CodecSelector");
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(WindowText(GetDlgItem(window, kCodecSubtypeLabel)), L"YUY2 format");
    HWND list = GetDlgItem(window, kCodecList);
    // "NONE", then the compressor registered twice under one name.
    ASSERT_EQ(ListRows(list), (Rows{L"NONE", L"MAVU Test Compressor", L"MAVU Test Compressor"}));
    EXPECT_EQ(run.Selected(kCodecList), LB_ERR) << "no pair names any of them yet";
    EXPECT_EQ(run.program->CountMessages(L"WARNING"), 0) << Narrow(run.program->Messages());

    // OK with no row chosen.
    Click(GetDlgItem(window, kCodecOkButton));
    ASSERT_TRUE(run.program->WaitForMessage(L"Selected Codec index is not valid\r\n", 3000));
    EXPECT_FALSE(IsVisible(window));

    window = run.Open(IDM_CODEC, L"CodecSelector");
    ASSERT_NE(window, nullptr);
    HWND ok = GetDlgItem(window, kCodecOkButton);
    HWND save = GetDlgItem(window, kCodecSaveBox);
    EXPECT_EQ(WindowText(ok), L"OK");
    Click(save);
    EXPECT_EQ(WindowText(ok), L"Save");
    Click(save);
    EXPECT_EQ(WindowText(ok), L"OK");
    Click(save);
    SendMessageW(list, LB_SETCURSEL, 1, 0);
    Click(ok);
    ASSERT_TRUE(run.program->WaitForMessage(L"Codec / format pairing saved in options file\r\n", 3000));
    EXPECT_FALSE(IsVisible(window));
    EXPECT_NE(run.OptionsFile().find(Option("SubtypeCodecPair", "YUY2|MAVU Test Compressor")), std::string::npos)
        << run.OptionsFile();

    ManualRecording recording = RecordByHand(*run.program);
    ASSERT_FALSE(recording.avi.empty());
    EXPECT_NE(recording.report.find("Codec: MAVU Test Compressor"), std::string::npos) << recording.report;

    window = run.Open(IDM_CODEC, L"CodecSelector");
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(run.Selected(kCodecList), 2) << "the last row naming a paired codec";
    EXPECT_FALSE(run.Checked(kCodecSaveBox));
    Click(GetDlgItem(window, kCodecCancelButton));
    EXPECT_FALSE(IsVisible(window));
}

// Event Pending's radios change the countdown's heading at once; Cancel goes back to what the options say, and
// Save stores the choice. Save in Miscellaneous Options is there only while a box differs from its option. An
// options file that can't be written gives the warning at each save, and the values stay in force for the run.
TEST(OptionWindows, EventPendingSwitchesTheCountdownAndMiscellaneousSavesOnlyChangesAndAFailedWriteWarns)
{
    ProgramRun run;
    // The countdown shows about the event's distance, the clock the time of
    // day: an event an hour ahead, or two when the clock itself reads about
    // one o'clock, keeps the two texts apart.
    const int eventAhead = std::abs(UtcSecondsOfDay() - 3600) < 300 ? 7200 : 3600;
    WriteEvent(run.folder, L"later", UtcInSeconds(eventAhead), 10);
    ASSERT_TRUE(run.StartWithSkyCam());
    HWND countdown = run.Window(L"CountdownWindow");
    ASSERT_TRUE(WaitUntil([&] { return IsVisible(countdown); }, 5000));
    HWND heading = FindChild(countdown, L"Static", L"Countdown to recording start time:");
    ASSERT_NE(heading, nullptr);

    HWND window = run.Open(IDM_EVENT_PENDING, L"EventPending");
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(run.Checked(kPendingCountdownRadio));
    Click(GetDlgItem(window, kPendingUtcRadio));
    EXPECT_EQ(WindowText(heading), L"         Computer time (UTC):");
    // The next tick shows the clock.
    HWND value = GetWindow(heading, GW_HWNDNEXT);
    ASSERT_TRUE(WaitUntil([&] { return ShowsUtcClockNow(WindowText(value)); }, 3000)) << Narrow(WindowText(value));
    EXPECT_TRUE(TakeScreenshot("event-pending"));
    Click(GetDlgItem(window, kPendingCancelButton));
    EXPECT_EQ(WindowText(heading), L"Countdown to recording start time:");

    window = run.Open(IDM_EVENT_PENDING, L"EventPending");
    Click(GetDlgItem(window, kPendingUtcRadio));
    Click(GetDlgItem(window, kPendingSaveBox));
    EXPECT_EQ(WindowText(GetDlgItem(window, kPendingOkButton)), L"Save");
    Click(GetDlgItem(window, kPendingOkButton));
    ASSERT_TRUE(run.program->WaitForMessage(L"Event Option saved in options file\r\n", 3000));
    EXPECT_NE(run.OptionsFile().find(Option("EventPendingDisplay", "UTC")), std::string::npos) << run.OptionsFile();
    EXPECT_EQ(WindowText(heading), L"         Computer time (UTC):");
    run.program->Kill();

    // The options come from the read-only fallback file; where the program writes its options stands a folder, so no
    // write can succeed (root would write through a read-only attribute or folder).
    ASSERT_TRUE(DeleteFileW((run.folder + L"\\MAVU_options_capture.xml").c_str()));
    ASSERT_TRUE(CreateDirectoryW((run.folder + L"\\MAVU_options_capture.xml").c_str(), nullptr));
    ASSERT_TRUE(WriteFileBytes(run.folder + L"\\MAVU_options.xml",
                           "<?xml version='1.0'?>\r\n<!--MAVU Video Capture Version 2.1-->\r\n<Root>\r\n" +
                               Option("AutostartGPS", "FALSE") + "</Root>\r\n"));
    ASSERT_TRUE(run.Run());
    window = run.Open(IDM_MISCELLANEOUS, L"MiscellaneousOptions");
    ASSERT_NE(window, nullptr);
    HWND save = GetDlgItem(window, kMiscSaveButton);
    HWND gps = GetDlgItem(window, kMiscGpsBox);
    EXPECT_FALSE(IsEnabled(save));
    Click(gps);
    EXPECT_TRUE(IsEnabled(save));
    Click(gps);
    EXPECT_FALSE(IsEnabled(save)) << "the box put back";
    Click(gps);
    Click(save);
    ASSERT_TRUE(run.program->WaitForMessage(L"Miscellaneous options saved in options file\r\n", 3000));
    std::wstring text = run.program->Messages();
    size_t warning = text.find(kSaveWarning);
    ASSERT_NE(warning, std::wstring::npos) << Narrow(text);
    EXPECT_LT(warning, text.find(L"Miscellaneous options saved in options file"));
    // Still in force: the box opens checked.
    window = run.Open(IDM_MISCELLANEOUS, L"MiscellaneousOptions");
    EXPECT_TRUE(Checked(gps));
    // Every save warns.
    Click(GetDlgItem(window, kMiscCancelButton));
    window = run.Open(IDM_DURATION_DEFAULT, L"DefaultDuration");
    Click(GetDlgItem(window, kDurationSaveButton));
    ASSERT_TRUE(WaitUntil([&] { return run.program->CountMessages(kSaveWarning) == 2; }, 3000));
    EXPECT_EQ(run.program->CountMessages(L"No Options File"), 0);
}

// OK puts a renderer in force with a restart; the next recording's report
// names it. Save writes it. VMR7, whose quality interface this platform's
// lacks, is refused at the restart.
TEST(OptionWindows, PerformanceChangesTheRendererAndRestarts)
{
    ProgramRun run;
    ASSERT_TRUE(run.devices.Add(L"Sky Cam", L"webcam"));
    const bool evrTakesYuy2 = devicetest::RendererConnectsTo(CLSID_EnhancedVideoRenderer, L"Sky Cam");
    WriteOptions(run.folder, "");
    ASSERT_TRUE(run.Run());
    // The default renderer, the EVR, shows the camera where the platform's EVR takes YUY2, and where it doesn't
    // the program says it can't.
    Sleep(2000);
    std::wstring text = run.program->Messages();
    EXPECT_EQ(text.find(L"SEVERE: cannot render preview stream\r\n") != std::wstring::npos, !evrTakesYuy2)
        << "the EVR takes YUY2 here: " << evrTakesYuy2 << "\n" << Narrow(text);
    EXPECT_EQ(text.find(L"WARNING: cannot render video stream\r\n") != std::wstring::npos, !evrTakesYuy2);
    HWND window = run.Open(IDM_PERFORMANCE, L"Performance");
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(run.Checked(kPerformanceEvrRadio));
    Click(GetDlgItem(window, kPerformanceVmr9Radio));
    int severe = run.program->CountMessages(L"SEVERE");
    Click(GetDlgItem(window, kPerformanceOkButton));
    EXPECT_FALSE(IsVisible(window));
    Sleep(1500);
    EXPECT_EQ(run.program->CountMessages(L"SEVERE"), severe) << "the camera restarted with VMR9";
    std::string report = RecordByHand(*run.program).report;
    EXPECT_NE(report.find("Video renderer: VMR9"), std::string::npos) << report;
    EXPECT_EQ(run.OptionsFile().find("DefaultRenderer"), std::string::npos) << "OK alone writes nothing";

    window = run.Open(IDM_PERFORMANCE, L"Performance");
    EXPECT_TRUE(run.Checked(kPerformanceVmr9Radio));
    Click(GetDlgItem(window, kPerformanceSaveButton));
    ASSERT_TRUE(run.program->WaitForMessage(L"Performance Options saved in options file\r\n", 3000));
    EXPECT_NE(run.OptionsFile().find(Option("DefaultRenderer", "VMR9")), std::string::npos) << run.OptionsFile();

    window = run.Open(IDM_PERFORMANCE, L"Performance");
    Click(GetDlgItem(window, kPerformanceVmr7Radio));
    Click(GetDlgItem(window, kPerformanceOkButton));
    EXPECT_TRUE(run.program->WaitForMessage(
        L"WARNING: cannot add video rendering filter to filter graph while attempting to start camera\r\n", 3000))
        << Narrow(run.program->Messages());
}
