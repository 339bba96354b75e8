// The USB GPS receiver as a user meets it, with the synthetic receiver on a
// COM port of the prefix: the search and its notice, the window and its
// five-second refresh, the position in a recording's report, the link's
// return after an event, and a receiver that is pulled out mid-run.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "device/graph_helpers.h"
#include "e2e/harness.h"
#include "support/handle_count.h"
#include "support/synthetic_gps.h"
#include "ui/commands.h"

using namespace e2e;

namespace {

constexpr wchar_t kMainTitle[] = L"MAVU Video Capture Version 2.1";
constexpr wchar_t kRecordingTitle[] = L"MAVU Video Capture -- Recording in progress";
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

size_t Position(const std::wstring& text, const std::wstring& part)
{
    return text.find(part);
}

bool Responds(HWND window)
{
    DWORD_PTR result = 0;
    return SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 5000, &result) != 0;
}

}  // namespace

TEST(Gps, ReceiverAt4800OnCom3IsFoundShownClosedAndFoundAgainWithoutTheNotice)
{
    testsupport::SyntheticGps receiver;
    ASSERT_TRUE(receiver.Start(3, 4800, "steady"));
    std::wstring folder = MakeWorkFolderForCurrentTest();
    Program program(folder);
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(program.WaitReady());
    HWND main = program.MainWindow();
    HWND notice = FindProcessWindow(program.ProcessId(), L"AppUnresponsive", L"Stand by...");
    ASSERT_NE(notice, nullptr);
    GpsWindow gps(program.ProcessId());
    ASSERT_NE(gps.window, nullptr);
    EXPECT_FALSE(IsVisible(gps.window));

    {
        VisibilityWatch watch(notice);
        PostCommand(main, IDM_USB_GPS_RECEIVER);
        ASSERT_TRUE(program.WaitForMessage(L"USB GPS connected", 60000)) << Narrow(program.Messages());
        EXPECT_TRUE(watch.Seen()) << "the full scan shows the notice";
    }
    EXPECT_FALSE(IsVisible(notice));
    std::wstring text = program.Messages();
    size_t attempting = Position(text, kAttempting);
    size_t found = Position(text, L"COM3 at 4800 baud");
    ASSERT_NE(attempting, std::wstring::npos);
    ASSERT_NE(found, std::wstring::npos);
    EXPECT_LT(attempting, found);
    EXPECT_LT(found, Position(text, L"USB GPS connected"));
    // Three rates read garbage first.
    EXPECT_EQ(receiver.ClosedAtRates(), (std::vector<int>{38400, 19200, 9600}));

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

    Click(gps.Button(L"Close"));
    ASSERT_TRUE(program.WaitForMessage(L"GPS connection is closed", 5000));
    EXPECT_FALSE(IsVisible(gps.window));
    ASSERT_TRUE(WaitUntil([&] { return receiver.ClosedAtRates().size() == 4; }, 3000));

    // Again: the remembered port and rate answer at once, with no notice.
    {
        VisibilityWatch watch(notice);
        PostCommand(main, IDM_USB_GPS_RECEIVER);
        ASSERT_TRUE(WaitUntil([&] { return program.CountMessages(L"USB GPS connected") == 2; }, 30000));
        EXPECT_FALSE(watch.Seen());
    }
    EXPECT_EQ(program.CountMessages(L"COM3 at 4800 baud"), 2);
    EXPECT_EQ(receiver.ClosedAtRates(), (std::vector<int>{38400, 19200, 9600, 4800})) << "no other rate was tried";
    ASSERT_TRUE(WaitUntil([&] { return IsVisible(gps.window); }, 10000));

    // The close box ends the link as Close does.
    SendMessageW(gps.window, WM_SYSCOMMAND, SC_CLOSE, 0);
    ASSERT_TRUE(WaitUntil([&] { return program.CountMessages(L"GPS connection is closed") == 2; }, 5000));
    EXPECT_FALSE(IsVisible(gps.window));
    program.Kill();
}

TEST(Gps, ReceiverOnlyOnCom10IsNotFound)
{
    testsupport::SyntheticGps receiver;
    ASSERT_TRUE(receiver.Start(10, 4800, "steady"));
    std::wstring folder = MakeWorkFolderForCurrentTest();
    Program program(folder);
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(program.WaitReady());
    HWND notice = FindProcessWindow(program.ProcessId(), L"AppUnresponsive", L"Stand by...");
    {
        VisibilityWatch watch(notice);
        PostCommand(program.MainWindow(), IDM_USB_GPS_RECEIVER);
        ASSERT_TRUE(program.WaitForMessage(L"No USB GPS receiver found", 60000)) << Narrow(program.Messages());
        EXPECT_TRUE(watch.Seen());
    }
    EXPECT_FALSE(IsVisible(notice));
    EXPECT_EQ(program.Messages().find(L"USB GPS connected"), std::wstring::npos);
    EXPECT_TRUE(receiver.PortEvents().size() == 1) << "COM10 is never opened";
    // No window comes up afterwards.
    Sleep(6000);
    EXPECT_FALSE(IsVisible(GpsWindow(program.ProcessId()).window));
    program.Kill();
}

TEST(Gps, ManualRecordingTakesOneReadingAndWithoutAutostartTheLinkStaysClosed)
{
    devicetest::SyntheticDevices devices;
    ASSERT_TRUE(devices.Add(L"Sky Cam", L"webcam"));
    testsupport::SyntheticGps receiver;
    ASSERT_TRUE(receiver.Start(3, 4800, "steady"));
    std::wstring folder = MakeWorkFolderForCurrentTest();
    WriteOptions(folder, Option("DefaultRenderer", "VMR9"));
    Program program(folder);
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(program.WaitReady());
    HWND main = program.MainWindow();
    GpsWindow gps(program.ProcessId());
    PostCommand(main, IDM_USB_GPS_RECEIVER);
    ASSERT_TRUE(program.WaitForMessage(L"USB GPS connected", 60000));
    ASSERT_TRUE(WaitUntil([&] { return IsVisible(gps.window); }, 10000));

    HWND start = FindChild(program.RecordControlsWindow(), L"Button", nullptr);
    ASSERT_NE(start, nullptr);
    HWND stop = GetWindow(start, GW_HWNDNEXT);
    Click(start);
    ASSERT_TRUE(WaitUntil([&] { return WindowText(main) == kRecordingTitle; }, 15000));
    // The port is closed for the recording and the window hidden.
    EXPECT_FALSE(IsVisible(gps.window));
    ASSERT_TRUE(WaitUntil([&] { return receiver.ClosedAtRates().size() == 4; }, 3000));
    Sleep(3000);
    Click(stop);
    ASSERT_TRUE(WaitUntil([&] { return WindowText(main) == kMainTitle; }, 15000));
    ASSERT_TRUE(WaitUntil([&] { return !ListFiles(folder + L"\\VideoFiles", L"*.txt").empty(); }, 10000));
    std::vector<std::wstring> reports = ListFiles(folder + L"\\VideoFiles", L"*.txt");
    std::string report = ReadBytes(folder + L"\\VideoFiles\\" + reports[0]);
    EXPECT_NE(report.find("Latitude: 48.070038 N\r"), std::string::npos) << report;
    EXPECT_NE(report.find("Longitude: 11.310000 E\r"), std::string::npos);
    EXPECT_NE(report.find("Altitude: 545.4 M\r"), std::string::npos);
    EXPECT_NE(report.find("Number of satellites: 8\r"), std::string::npos);
    // Without AutostartGPS nothing reconnects.
    Sleep(6000);
    EXPECT_EQ(program.CountMessages(kAttempting), 1);
    EXPECT_FALSE(IsVisible(gps.window));
    EXPECT_EQ(receiver.ClosedAtRates().size(), 4u);
    program.Kill();
}

TEST(Gps, EventRecordingCarriesThePositionOfItsStartAndTheLinkReturnsAfterIt)
{
    devicetest::SyntheticDevices devices;
    ASSERT_TRUE(devices.Add(L"Sky Cam", L"webcam"));
    testsupport::SyntheticGps receiver;
    ASSERT_TRUE(receiver.Start(3, 4800, "steady"));
    std::wstring folder = MakeWorkFolderForCurrentTest();
    WriteOptions(folder, Option("DefaultRenderer", "VMR9") + Option("AutostartGPS", "TRUE"));
    WriteEvent(folder, L"Ceres_HIP_1", UtcInSeconds(30), 6, "Ceres", "HIP 1");
    Program program(folder);
    ASSERT_TRUE(program.Start());
    // The search runs at the end of start-up.
    ASSERT_TRUE(program.WaitReady(40000));
    ASSERT_TRUE(program.WaitForMessage(L"USB GPS connected", 5000)) << Narrow(program.Messages());
    HWND main = program.MainWindow();
    GpsWindow gps(program.ProcessId());
    ASSERT_TRUE(WaitUntil([&] { return IsVisible(gps.window); }, 10000));

    ASSERT_TRUE(WaitUntil([&] { return WindowText(main) == kRecordingTitle; }, 40000));
    EXPECT_TRUE(WaitUntil([&] { return !IsVisible(gps.window); }, 3000));
    // What the receiver says from now on doesn't reach this recording.
    ASSERT_TRUE(receiver.SetScript("nofix"));
    bool shownDuringRecording = false;
    WaitUntil(
        [&] {
            shownDuringRecording = shownDuringRecording || IsVisible(gps.window);
            return WindowText(main) == kMainTitle;
        },
        30000);
    EXPECT_FALSE(shownDuringRecording);
    ASSERT_EQ(WindowText(main), kMainTitle);
    ASSERT_TRUE(WaitUntil([&] { return !ListFiles(folder + L"\\VideoFiles", L"*.txt").empty(); }, 10000));
    std::vector<std::wstring> reports = ListFiles(folder + L"\\VideoFiles", L"*.txt");
    std::string report = ReadBytes(folder + L"\\VideoFiles\\" + reports[0]);
    EXPECT_EQ(report.rfind("Event recording: \r", 0), 0u) << report;
    EXPECT_NE(report.find("Latitude: 48.070038 N\r"), std::string::npos) << report;
    EXPECT_NE(report.find("Longitude: 11.310000 E\r"), std::string::npos);
    EXPECT_NE(report.find("Altitude: 545.4 M\r"), std::string::npos);
    EXPECT_NE(report.find("Number of satellites: 8\r"), std::string::npos);

    // AutostartGPS: the link comes back at the end of the recording, on the
    // remembered port, and the window with the receiver's present word.
    ASSERT_TRUE(WaitUntil([&] { return program.CountMessages(L"USB GPS connected") == 2; }, 15000));
    EXPECT_EQ(program.CountMessages(kAttempting), 2);
    ASSERT_TRUE(WaitUntil([&] { return IsVisible(gps.window); }, 10000));
    EXPECT_TRUE(WaitUntil([&] { return gps.Latitude() == L" 0.000000 ,"; }, 6000)) << Narrow(gps.Latitude());
    program.Kill();
}

TEST(Gps, HangUpMidRunKeepsTheProgramAnsweringAndItsHandlesLevel)
{
    testsupport::SyntheticGps receiver;
    ASSERT_TRUE(receiver.Start(3, 4800, "steady"));
    std::wstring folder = MakeWorkFolderForCurrentTest();
    Program program(folder);
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(program.WaitReady());
    HWND main = program.MainWindow();
    GpsWindow gps(program.ProcessId());
    PostCommand(main, IDM_USB_GPS_RECEIVER);
    ASSERT_TRUE(program.WaitForMessage(L"USB GPS connected", 60000));
    ASSERT_TRUE(WaitUntil([&] { return IsVisible(gps.window); }, 10000));
    // A second tick, so that what a tick makes once is counted in.
    Sleep(5500);
    long connected = testsupport::ProcessHandleCount(program.ProcessId());
    ASSERT_GT(connected, 0);

    ASSERT_TRUE(receiver.HangUp());
    ASSERT_TRUE(program.WaitForMessage(L"Zero bytes read for GPS values refresh", 15000));
    // The ticks read on, on their own threads: the windows answer meanwhile
    // and the values shown stay.
    long most = connected;
    for (int i = 0; i < 10; ++i) {
        EXPECT_TRUE(Responds(main));
        EXPECT_TRUE(Responds(gps.window));
        most = std::max(most, testsupport::ProcessHandleCount(program.ProcessId()));
        Sleep(2000);
    }
    EXPECT_EQ(gps.Latitude(), L" 48.070038 N");
    EXPECT_EQ(program.Messages().find(L"Cannot find GPGGA string"), std::wstring::npos);

    // Close ends the link: the ticks still reading give up, each with its
    // line, and nothing more comes.
    Click(gps.Button(L"Close"));
    ASSERT_TRUE(program.WaitForMessage(L"GPS connection is closed", 10000));
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
    EXPECT_TRUE(Responds(main));
    long after = testsupport::ProcessHandleCount(program.ProcessId());
    EXPECT_LT(after, connected) << "the port's handle is gone (" << most << " at most while hung up)";
    program.Kill();
}
