// The Video Input Device window, driven as a user would with two synthetic
// cameras: a choice takes effect at once, Cancel puts the old device back,
// Ignore and Restore move a device between the lists, OK writes the choice
// into the options file.
// "Side Cam" has a saved configuration at 800x600, "Sky Cam" runs at its
// first format, 640x480, so the picture's size tells which device runs.
#include <gtest/gtest.h>

#include <windows.h>

#include "e2e/program_run.h"
#include "e2e/remote_probe.h"
#include "ui/commands.h"
#include "ui/control_ids.h"

using namespace e2e;

namespace {

const std::string kSideCamAt800 = Option("VConfig", "Side Cam|15|800x600|YUY2|0|50|0|64|3|0|DIGITAL");
constexpr wchar_t kRestoredLine[] = L"Input devices settings are restored\r\n";

struct SelectRun : ProgramRun {
    // Sky Cam, then Side Cam, through VMR9.
    bool Start()
    {
        return devices.Add(L"Sky Cam", L"webcam") && devices.Add(L"Side Cam", L"webcam") &&
            ProgramRun::Start(kSideCamAt800);
    }
    Rows Devices() const { return RowsOf(kSelectDeviceList); }
    Rows Ignored() const { return RowsOf(kSelectDeviceIgnoredList); }
    int Selected() const { return ProgramRun::Selected(kSelectDeviceList); }
    bool DefaultChecked() const { return Checked(kSelectDeviceDefaultBox); }
    bool Open()
    {
        return ProgramRun::Open(IDM_SELECT_INPUT_DEVICE, L"SelectVideoDeviceClassName") &&
            WindowText(window) == L"Video Input Device";
    }
    // A click on a row of the device list.
    void ChooseRow(int row) const { Choose(kSelectDeviceList, row); }
    void SelectIgnoredRow(int row) const { SendMessageW(Item(kSelectDeviceIgnoredList), LB_SETCURSEL, row, 0); }
    // The picture's size, once the camera has restarted.
    bool WaitPicture(int width, int height) const
    {
        return WaitUntil(
            [&] {
                SIZE size = Size(Clipping());
                return size.cx == width && size.cy == height;
            },
            10000);
    }
};

// The main window's outer size less its client size.
SIZE Frame(HWND main)
{
    RECT client{};
    GetClientRect(main, &client);
    SIZE outer = Size(main);
    return {outer.cx - client.right, outer.cy - client.bottom};
}

}  // namespace

// A row chosen restarts the preview on that device at once and the main window takes its size; Cancel, or the
// close box, brings the first device back. Ignoring the device in use hands the picture to the other; with both
// ignored the picture and the record buttons go until Restore brings a device back; Restore puts the device back
// in the list, and the first device is taken again. Opening either device window turns
// Magnify off; while it is open "Magnify...", "Select Input Device..." and "Device Properties..." are grey, and
// closing it by any of its ways enables them again. The menu is read from inside the program (another process
// can't read it here).
// Then OK writes the ignored names and the default into the options file, and
// says nothing. Clearing the default box on the default device takes the
// flag off for this run only: the name stays in the file, and the device is
// the default again at the next start.
TEST(SelectDevice, ChoosingIgnoringEitherDeviceWindowsGreyItemsAndOkWritesTheIgnoredAndDefaultNames)
{
    SelectRun run;
    ASSERT_TRUE(run.Start());
    ASSERT_TRUE(run.WaitPicture(640, 480));
    SIZE frame = Frame(run.Main());
    RECT home = WindowRect(run.Main());
    ASSERT_TRUE(run.Open());
    EXPECT_EQ(run.Devices(), (Rows{L"Sky Cam", L"Side Cam"}));
    EXPECT_EQ(run.Ignored(), Rows{});
    EXPECT_EQ(run.Selected(), 0);
    EXPECT_FALSE(run.DefaultChecked());
    Sleep(1000);
    EXPECT_TRUE(TakeScreenshot("select-device-window"));

    run.ChooseRow(1);
    EXPECT_TRUE(run.WaitPicture(800, 600));
    SIZE main = Size(run.Main());
    EXPECT_EQ(main.cx, 800 + frame.cx);
    EXPECT_EQ(main.cy, 600 + frame.cy);
    EXPECT_TRUE(IsVisible(run.window)) << "a choice doesn't close the window";
    // Choosing the device already in use does nothing.
    std::wstring before = run.program->Messages();
    run.ChooseRow(1);
    EXPECT_EQ(run.program->Messages(), before);

    Click(run.Item(kSelectDeviceCancelButton));
    EXPECT_FALSE(IsVisible(run.window));
    EXPECT_TRUE(run.WaitPicture(640, 480));
    EXPECT_EQ(Size(run.Main()).cx, 640 + frame.cx);
    EXPECT_EQ(WindowRect(run.Main()).left, home.left) << "the wider window was pushed left to stay on the screen";
    EXPECT_EQ(run.Count(kRestoredLine), 1) << Narrow(run.program->Messages());

    // The close box is a Cancel too, and puts the main window back where
    // it stood when the window opened.
    ASSERT_TRUE(run.Open());
    run.ChooseRow(1);
    EXPECT_TRUE(run.WaitPicture(800, 600));
    SetWindowPos(run.Main(), nullptr, home.left + 200, home.top + 100, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    SendMessageW(run.window, WM_SYSCOMMAND, SC_CLOSE, 0);
    EXPECT_FALSE(IsVisible(run.window));
    EXPECT_TRUE(run.WaitPicture(640, 480));
    EXPECT_EQ(run.Count(kRestoredLine), 2);
    RECT back = WindowRect(run.Main());
    EXPECT_EQ(back.left, home.left);
    EXPECT_EQ(back.top, home.top);

    ASSERT_TRUE(run.Open());
    Click(run.Item(kSelectDeviceIgnoreButton));
    EXPECT_EQ(run.Count(L"Device \"Sky Cam\" is ignored\r\n"), 1) << Narrow(run.program->Messages());
    EXPECT_EQ(run.Devices(), Rows{L"Side Cam"});
    EXPECT_EQ(run.Ignored(), Rows{L"Sky Cam"});
    EXPECT_EQ(run.Selected(), 0);
    EXPECT_TRUE(run.WaitPicture(800, 600));

    // The other one ignored too: nothing to choose, no picture, no record buttons, and Ignore with nothing to ignore
    // does nothing.
    HWND clipping = run.Clipping();
    Click(run.Item(kSelectDeviceIgnoreButton));
    EXPECT_EQ(run.Devices(), Rows{});
    EXPECT_EQ(run.Ignored(), (Rows{L"Sky Cam", L"Side Cam"}));
    EXPECT_FALSE(run.DefaultChecked());
    EXPECT_FALSE(IsVisible(run.program->RecordControlsWindow()));
    EXPECT_FALSE(IsVisible(clipping));
    before = run.program->Messages();
    Click(run.Item(kSelectDeviceIgnoreButton));
    EXPECT_EQ(run.program->Messages(), before);

    // Restore with nothing selected in the ignored list changes nothing.
    SendMessageW(run.Item(kSelectDeviceIgnoredList), LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
    Click(run.Item(kSelectDeviceRestoreButton));
    EXPECT_EQ(run.Ignored(), (Rows{L"Sky Cam", L"Side Cam"}));
    EXPECT_EQ(run.Count(L"is restored"), 0);

    // Restored, a device brings the picture and the record buttons back.
    run.SelectIgnoredRow(1);
    Click(run.Item(kSelectDeviceRestoreButton));
    EXPECT_EQ(run.Count(L"Device \"Side Cam\" is restored\r\n"), 1) << Narrow(run.program->Messages());
    EXPECT_EQ(run.Devices(), Rows{L"Side Cam"});
    EXPECT_EQ(run.Selected(), 0);
    EXPECT_TRUE(IsVisible(run.program->RecordControlsWindow()));
    EXPECT_TRUE(IsVisible(clipping));
    EXPECT_TRUE(IsEnabled(run.program->StartButton()));

    run.SelectIgnoredRow(0);
    Click(run.Item(kSelectDeviceRestoreButton));
    EXPECT_EQ(run.Count(L"Device \"Sky Cam\" is restored\r\n"), 1) << Narrow(run.program->Messages());
    EXPECT_EQ(run.Devices(), (Rows{L"Sky Cam", L"Side Cam"}));
    EXPECT_EQ(run.Ignored(), Rows{});
    EXPECT_EQ(run.Selected(), 0) << "the first device that isn't ignored is taken";
    Click(run.Item(kSelectDeviceOkButton));
    EXPECT_FALSE(IsVisible(run.window));
    ASSERT_TRUE(run.WaitPicture(640, 480));

    const struct {
        unsigned command;
        const wchar_t* className;
        int ok;
        int cancel;
    } deviceWindows[] = {
        {IDM_SELECT_INPUT_DEVICE, L"SelectVideoDeviceClassName", kSelectDeviceOkButton, kSelectDeviceCancelButton},
        {IDM_DEVICE_PROPERTIES, L"DeviceFormat", kFormatOkButton, kFormatCancelButton},
    };
    DWORD id = run.program->ProcessId();
    const unsigned kThree[] = {IDM_MAGNIFY, IDM_SELECT_INPUT_DEVICE, IDM_DEVICE_PROPERTIES};
    auto expectGrey = [&](bool grey, const char* when) {
        for (unsigned command : kThree)
            EXPECT_EQ(IsMenuItemGrey(id, command), grey) << when << ", command " << command;
    };
    expectGrey(false, "before opening");

    for (const auto& device : deviceWindows) {
        SCOPED_TRACE(Narrow(device.className));
        SendCommand(run.Main(), IDM_MAGNIFY);
        HWND magnify = run.Window(L"Magnify");
        ASSERT_TRUE(magnify && IsVisible(magnify));
        Click(GetDlgItem(magnify, kMagnifyDoubleRadio));
        ASSERT_EQ(Size(run.Clipping()).cx, 1280);
        // OK, Cancel, then the close box (0).
        for (int button : {device.ok, device.cancel, 0}) {
            ASSERT_NE(run.ProgramRun::Open(device.command, device.className), nullptr);
            EXPECT_FALSE(IsVisible(magnify)) << button;
            EXPECT_EQ(Size(run.Clipping()).cx, 640) << button;
            expectGrey(true, "open");
            if (button)
                Click(run.Item(button));
            else
                SendMessageW(run.window, WM_SYSCOMMAND, SC_CLOSE, 0);
            expectGrey(false, "closed");
            EXPECT_FALSE(IsVisible(magnify)) << button;
            EXPECT_EQ(Size(run.Clipping()).cx, 640) << button;
        }
    }

    ASSERT_TRUE(run.Open());
    Click(run.Item(kSelectDeviceIgnoreButton));
    ASSERT_EQ(run.Devices(), Rows{L"Side Cam"});
    EXPECT_FALSE(run.DefaultChecked());
    Click(run.Item(kSelectDeviceDefaultBox));
    EXPECT_TRUE(run.DefaultChecked());
    before = run.program->Messages();
    Click(run.Item(kSelectDeviceOkButton));
    EXPECT_FALSE(IsVisible(run.window));
    std::string file = run.OptionsFile();
    EXPECT_NE(file.find("\t<DefaultVideoSource Value=\"Side Cam\"/>\r\n"
                        "\t<ExcludedVideoSource Value=\"Sky Cam\"/>\r\n"),
              std::string::npos)
        << file;
    EXPECT_EQ(run.program->Messages(), before) << "OK reports no line";

    // The next start takes the default and leaves the ignored one out.
    ASSERT_TRUE(run.Run());
    ASSERT_TRUE(run.WaitPicture(800, 600));
    ASSERT_TRUE(run.Open());
    EXPECT_EQ(run.Devices(), Rows{L"Side Cam"});
    EXPECT_EQ(run.Ignored(), Rows{L"Sky Cam"});
    EXPECT_TRUE(run.DefaultChecked());
    Click(run.Item(kSelectDeviceDefaultBox));
    EXPECT_FALSE(run.DefaultChecked());
    run.SelectIgnoredRow(0);
    Click(run.Item(kSelectDeviceRestoreButton));
    Click(run.Item(kSelectDeviceOkButton));
    file = run.OptionsFile();
    EXPECT_NE(file.find("\t<DefaultVideoSource Value=\"Side Cam\"/>\r\n"), std::string::npos) << file;
    EXPECT_EQ(file.find("<ExcludedVideoSource"), std::string::npos) << file;

    ASSERT_TRUE(run.Run());
    EXPECT_TRUE(run.WaitPicture(800, 600)) << "the default device again";
}
