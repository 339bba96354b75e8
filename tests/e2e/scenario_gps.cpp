// The USB GPS receiver as a user meets it, with the synthetic receiver on a
// COM port of the prefix: the search and its notice, the window and its
// five-second refresh, the position in a recording's report, the link's
// return after an event, and a receiver that is pulled out mid-run.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <memory>
#include <thread>

#include "e2e/program_run.h"
#include "support/handle_count.h"
#include "support/synthetic_gps.h"
#include "ui/commands.h"

using namespace e2e;

namespace {

constexpr wchar_t kAttempting[] = L"Attempting to connect with USB GPS receiver.  This may take a minute.";

// Watches, from a thread of its own, whether a window ever became visible:
// the program's user-interface thread is busy while the notice is up.
class VisibilityWatch {
public:
    explicit VisibilityWatch(HWND window) : window_(window)
    {
        thread_ = std::thread([this] {
            while (!done_) {
                if (IsVisible(window_))
                    seen_ = true;
                Sleep(5);
            }
        });
    }
    ~VisibilityWatch()
    {
        done_ = true;
        thread_.join();
    }
    bool Seen() const { return seen_; }

private:
    HWND window_;
    std::atomic<bool> done_{false};
    std::atomic<bool> seen_{false};
    std::thread thread_;
};

// The GPS window's controls in the order they were made.
struct GpsWindow {
    HWND window = nullptr;
    std::vector<HWND> controls;

    explicit GpsWindow(DWORD processId)
    {
        window = FindProcessWindow(processId, L"GPSDevice", L"USB GPS Receiver");
        if (window) {
            for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
                controls.push_back(child);
        }
    }
    std::wstring Latitude() const { return controls.size() > 1 ? WindowText(controls[1]) : L""; }
    std::wstring Longitude() const { return controls.size() > 3 ? WindowText(controls[3]) : L""; }
    std::wstring Altitude() const { return controls.size() > 5 ? WindowText(controls[5]) : L""; }
    std::wstring Satellites() const { return controls.size() > 7 ? WindowText(controls[7]) : L""; }
    HWND Button(const wchar_t* text) const { return FindChild(window, L"Button", text); }
};

// One run of the program with the synthetic receiver (4800 baud, steady)
// on a COM port, and the camera when a recording needs one.
struct GpsRun : ProgramRun {
    testsupport::SyntheticGps receiver;
    std::unique_ptr<GpsWindow> gps;

    // The program ends before the receiver goes.
    ~GpsRun() { program.reset(); }
    bool Start(int port, const std::string& options = "", bool camera = false, DWORD readyMs = kStartTimeoutMs)
    {
        if ((camera && !devices.Add(L"Sky Cam", L"webcam")) || !receiver.Start(port, 4800, "steady"))
            return false;
        if (!options.empty())
            WriteOptions(folder, options);
        if (!Run({}, readyMs))
            return false;
        gps = std::make_unique<GpsWindow>(program->ProcessId());
        return gps->window != nullptr;
    }
    HWND Notice() const { return FindProcessWindow(program->ProcessId(), L"AppUnresponsive", L"Stand by..."); }
    // The menu command, and the window that its first tick brings.
    bool Connect()
    {
        PostCommand(Main(), IDM_USB_GPS_RECEIVER);
        return program->WaitForMessage(L"USB GPS connected", 60000) &&
            WaitUntil([&] { return IsVisible(gps->window); }, 10000);
    }
    // The report of the one recording, once it is written.
    std::string Report() const
    {
        std::vector<std::wstring> videos = Recordings();
        return videos.empty() ? "" : ReportOf(videos[0]);
    }
};

// The four lines of the synthetic receiver's fix, as the report's text
// stream writes them.
void ExpectPositionOfTheFix(const std::string& report)
{
    EXPECT_NE(report.find("Latitude: 48.070038 N\r"), std::string::npos) << report;
    EXPECT_NE(report.find("Longitude: 11.310000 E\r"), std::string::npos);
    EXPECT_NE(report.find("Altitude: 545.4 M\r"), std::string::npos);
    EXPECT_NE(report.find("Number of satellites: 8\r"), std::string::npos);
}

}  // namespace

TEST(Gps, ReceiverAt4800OnCom3IsFoundShownClosedFoundAgainWithoutTheNoticeAndHungUpLeavesNoHandle)
{
    GpsRun run;
    ASSERT_TRUE(run.Start(3));
    Program& program = *run.program;
    const GpsWindow& gps = *run.gps;
    HWND notice = run.Notice();
    ASSERT_NE(notice, nullptr);
    EXPECT_FALSE(IsVisible(gps.window));

    {
        VisibilityWatch watch(notice);
        PostCommand(run.Main(), IDM_USB_GPS_RECEIVER);
        ASSERT_TRUE(program.WaitForMessage(L"USB GPS connected", 60000)) << Narrow(program.Messages());
        EXPECT_TRUE(watch.Seen()) << "the full scan shows the notice";
    }
    EXPECT_FALSE(IsVisible(notice));
    std::wstring text = program.Messages();
    size_t attempting = text.find(kAttempting);
    size_t found = text.find(L"COM3 at 4800 baud");
    ASSERT_NE(attempting, std::wstring::npos);
    ASSERT_NE(found, std::wstring::npos);
    EXPECT_LT(attempting, found);
    EXPECT_LT(found, text.find(L"USB GPS connected"));

    // The window comes with the first tick, five seconds on, filled in.
    EXPECT_FALSE(IsVisible(gps.window));
    ASSERT_TRUE(WaitUntil([&] { return IsVisible(gps.window); }, 10000));
    EXPECT_EQ(gps.Latitude(), L" 48.070038 N");
    EXPECT_EQ(gps.Longitude(), L" 11.310000 E");
    EXPECT_EQ(gps.Altitude(), L" 545.4 M");
    EXPECT_EQ(gps.Satellites(), L" 8");
    ASSERT_NE(gps.Button(L"Capture Position"), nullptr);
    EXPECT_FALSE(IsEnabled(gps.Button(L"Capture Position")));
    EXPECT_FALSE(IsEnabled(gps.Button(L"Set Time Difference")));
    TakeScreenshot("gps-window");

    // The close box ends the link as Close does.
    SendMessageW(gps.window, WM_SYSCOMMAND, SC_CLOSE, 0);
    ASSERT_TRUE(program.WaitForMessage(L"GPS connection is closed", 5000));
    EXPECT_FALSE(IsVisible(gps.window));
    ASSERT_TRUE(WaitUntil([&] { return run.receiver.ClosedAtRates().size() == 4; }, 3000));

    // Again: the remembered port and rate answer at once, with no notice.
    {
        VisibilityWatch watch(notice);
        PostCommand(run.Main(), IDM_USB_GPS_RECEIVER);
        ASSERT_TRUE(WaitUntil([&] { return program.CountMessages(L"USB GPS connected") == 2; }, 30000));
        EXPECT_FALSE(watch.Seen());
    }
    EXPECT_EQ(program.CountMessages(L"COM3 at 4800 baud"), 2);
    EXPECT_EQ(run.receiver.ClosedAtRates(), (std::vector<int>{38400, 19200, 9600, 4800})) << "no other rate was tried";
    ASSERT_TRUE(WaitUntil([&] { return IsVisible(gps.window); }, 10000));

    // A second tick, so that what a tick makes once is counted in.
    Sleep(5500);
    long connected = testsupport::ProcessHandleCount(program.ProcessId());
    ASSERT_GT(connected, 0);

    ASSERT_TRUE(run.receiver.HangUp());
    ASSERT_TRUE(program.WaitForMessage(L"Zero bytes read for GPS values refresh", 15000));
    // The ticks read on, on their own threads: the windows answer meanwhile
    // and the values shown stay.
    long most = connected;
    for (int i = 0; i < 10; ++i) {
        EXPECT_TRUE(Answers(run.Main()));
        EXPECT_TRUE(Answers(gps.window));
        most = std::max(most, testsupport::ProcessHandleCount(program.ProcessId()));
        Sleep(2000);
    }
    EXPECT_EQ(gps.Latitude(), L" 48.070038 N");
    EXPECT_EQ(program.Messages().find(L"Cannot find GPGGA string"), std::wstring::npos);

    // Close ends the link: the ticks still reading give up, each with its
    // line, and nothing more comes.
    Click(gps.Button(L"Close"));
    ASSERT_TRUE(WaitUntil([&] { return program.CountMessages(L"GPS connection is closed") == 2; }, 10000));
    ASSERT_TRUE(program.WaitForMessage(L"GPS information is not valid", 15000));
    int zeroReads = 0;
    int notValid = 0;
    ASSERT_TRUE(WaitUntil(
        [&] {
            int zero = program.CountMessages(L"Zero bytes read for GPS values refresh");
            int invalid = program.CountMessages(L"GPS information is not valid");
            bool settled = zero == zeroReads && invalid == notValid;
            zeroReads = zero;
            notValid = invalid;
            return settled;
        },
        30000, 5000));
    Sleep(6000);
    EXPECT_EQ(program.CountMessages(L"GPS information is not valid"), notValid) << "no tick after Close";
    EXPECT_TRUE(Answers(run.Main()));
    long after = testsupport::ProcessHandleCount(program.ProcessId());
    EXPECT_LT(after, connected) << "the port's handle is gone (" << most << " at most while hung up)";
}

TEST(Gps, ReceiverOnlyOnCom10IsNotFoundAfterAScanThatWaitsOnASilentCom1)
{
    GpsRun run;
    ASSERT_TRUE(run.Start(10));
    // A port that opens and stays silent, as the host's serial port that
    // Wine maps to COM1 does.
    testsupport::SyntheticGps silent;
    ASSERT_TRUE(silent.Start(1, 4800, "silence", true));
    Program& program = *run.program;
    HWND notice = run.Notice();
    {
        VisibilityWatch watch(notice);
        ULONGLONG started = GetTickCount64();
        PostCommand(run.Main(), IDM_USB_GPS_RECEIVER);
        ASSERT_TRUE(program.WaitForMessage(L"No USB GPS receiver found", 60000)) << Narrow(program.Messages());
        // A whole read timeout at each of the four rates on COM1.
        EXPECT_GE(GetTickCount64() - started, 4500u);
        EXPECT_TRUE(watch.Seen());
    }
    EXPECT_FALSE(IsVisible(notice));
    EXPECT_EQ(program.Messages().find(L"USB GPS connected"), std::wstring::npos);
    // The receiver's side sees the last close a moment after the program
    // has reported.
    WaitUntil([&] { return silent.ClosedAtRates().size() >= 4; }, 3000);
    EXPECT_EQ(silent.ClosedAtRates(), (std::vector<int>{38400, 19200, 9600, 4800}));
    // No window comes up afterwards.
    Sleep(6000);
    EXPECT_FALSE(IsVisible(run.gps->window));
}

TEST(Gps, ManualRecordingTakesOneReadingAndWithoutAutostartTheLinkStaysClosed)
{
    GpsRun run;
    ASSERT_TRUE(run.Start(3, Option("DefaultRenderer", "VMR9"), true));
    ASSERT_TRUE(run.Connect());
    HWND stop = run.program->StopButton();
    ASSERT_NE(stop, nullptr);
    Click(run.program->StartButton());
    ASSERT_TRUE(run.WaitTitle(kRecordingTitle, 15000));
    // The port is closed for the recording and the window hidden.
    EXPECT_FALSE(IsVisible(run.gps->window));
    ASSERT_TRUE(WaitUntil([&] { return run.receiver.ClosedAtRates().size() == 4; }, 3000));
    Sleep(3000);
    Click(stop);
    ASSERT_TRUE(run.WaitTitle(kMainTitle, 15000));
    ExpectPositionOfTheFix(run.Report());
    // The reading checked the computer's clock, and the frame-time record
    // says by how much it differs from the receiver's (in step here).
    std::vector<std::wstring> records = ListFiles(run.Videos(), L"*.frames.csv");
    ASSERT_EQ(records.size(), 1u);
    std::string record = ReadFileBytes(run.VideoPath(records[0]));
    double offset = 99;
    size_t at = record.find("# computer clock minus GPS time: ");
    ASSERT_NE(at, std::string::npos) << record.substr(0, 600);
    ASSERT_EQ(std::sscanf(record.c_str() + at + 33, "%lf s", &offset), 1) << record.substr(at, 60);
    EXPECT_NEAR(offset, 0.0, 0.3);
    EXPECT_EQ(run.program->CountMessages(L"WARNING: computer clock is"), 0);
    // Without AutostartGPS nothing reconnects.
    Sleep(6000);
    EXPECT_EQ(run.program->CountMessages(kAttempting), 1);
    EXPECT_FALSE(IsVisible(run.gps->window));
    EXPECT_EQ(run.receiver.ClosedAtRates().size(), 4u);
}

TEST(Gps, EventRecordingCarriesThePositionOfItsStartAndTheLinkReturnsAfterIt)
{
    GpsRun run;
    WriteEvent(run.folder, L"Ceres_HIP_1", UtcInSeconds(30), 6, "Ceres", "HIP 1");
    // The search runs at the end of start-up.
    ASSERT_TRUE(run.Start(3, Option("DefaultRenderer", "VMR9") + Option("AutostartGPS", "TRUE"), true, 40000));
    Program& program = *run.program;
    const GpsWindow& gps = *run.gps;
    ASSERT_TRUE(program.WaitForMessage(L"USB GPS connected", 5000)) << Narrow(program.Messages());
    ASSERT_TRUE(WaitUntil([&] { return IsVisible(gps.window); }, 10000));

    ASSERT_TRUE(run.WaitTitle(kRecordingTitle, 40000));
    EXPECT_TRUE(WaitUntil([&] { return !IsVisible(gps.window); }, 3000));
    // What the receiver says from now on doesn't reach this recording.
    ASSERT_TRUE(run.receiver.SetScript("nofix"));
    bool shownDuringRecording = false;
    WaitUntil(
        [&] {
            shownDuringRecording = shownDuringRecording || IsVisible(gps.window);
            return WindowText(run.Main()) == kMainTitle;
        },
        30000);
    EXPECT_FALSE(shownDuringRecording);
    ASSERT_EQ(WindowText(run.Main()), kMainTitle);
    std::string report = run.Report();
    EXPECT_EQ(report.rfind("Event recording: \r", 0), 0u) << report;
    ExpectPositionOfTheFix(report);

    // AutostartGPS: the link comes back at the end of the recording, on the
    // remembered port, and the window with the receiver's present word.
    ASSERT_TRUE(WaitUntil([&] { return program.CountMessages(L"USB GPS connected") == 2; }, 15000));
    EXPECT_EQ(program.CountMessages(kAttempting), 2);
    ASSERT_TRUE(WaitUntil([&] { return IsVisible(gps.window); }, 10000));
    EXPECT_TRUE(WaitUntil([&] { return gps.Latitude() == L" 0.000000 ,"; }, 6000)) << Narrow(gps.Latitude());
}
