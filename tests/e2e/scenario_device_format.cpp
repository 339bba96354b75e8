// The Device Properties window, driven as a user would: a frame size chosen
// in its list restarts the camera at that size, the sliders set the
// device's picture properties, Set Default Values and Cancel put them back,
// OK with Save writes the device's configuration for the next start, and a
// grabber's standard is chosen by hand. Property values are read back from
// the synthetic camera itself.
#include <gtest/gtest.h>

#include <windows.h>
#include <commctrl.h>
#include <dshow.h>

#include <memory>
#include <string>
#include <vector>

#include "e2e/program_run.h"
#include "e2e/remote_probe.h"
#include "support/ffprobe.h"
#include "tools/synthcam/registry.h"
#include "tools/vmr7standin/registration.h"
#include "ui/commands.h"
#include "ui/control_ids.h"

using namespace e2e;

namespace {

constexpr wchar_t kRestored[] = L"Input device properties are restored\r\n";
constexpr int kBrightnessRow = 0;
constexpr int kContrastRow = 1;

struct FormatRun : ProgramRun {
    std::wstring device;

    bool Start(const wchar_t* name, const wchar_t* profile, const wchar_t* signal = L"ntsc",
               const std::string& options = "")
    {
        device = name;
        return devices.Add(name, profile, signal) && ProgramRun::Start(options);
    }
    HWND Open() { return ProgramRun::Open(IDM_DEVICE_PROPERTIES, L"DeviceFormat"); }
    HWND Slider(int row) const { return Item(kFormatFirstPropertySlider + row); }
    HWND Label(int row) const { return Item(kFormatFirstPropertyLabel + row); }
    // The row of that text chosen.
    void ChooseText(int listId, const wchar_t* text) const
    {
        Rows rows = RowsOf(listId);
        for (size_t row = 0; row < rows.size(); ++row)
            if (rows[row] == text) {
                Choose(listId, static_cast<int>(row));
                return;
            }
        ADD_FAILURE() << "no row " << Narrow(text);
    }
    int SliderPosition(int row) const { return static_cast<int>(SendMessageW(Slider(row), TBM_GETPOS, 0, 0)); }
    long DeviceValue(long property) const
    {
        long value = -99999;
        EXPECT_TRUE(synthcam::PublishedPropertyValue(device, property, &value));
        return value;
    }
    SIZE Picture() const { return Size(Clipping()); }
    // A grabber on PAL as the window shows it; under Auto Detect the radios are grey.
    void ExpectPal(bool autoDetect) const
    {
        EXPECT_EQ(Checked(kFormatAutoDetectBox), autoDetect);
        EXPECT_EQ(IsEnabled(Item(kFormatNtscRadio)), !autoDetect);
        EXPECT_EQ(IsEnabled(Item(kFormatPalRadio)), !autoDetect);
        EXPECT_TRUE(Checked(kFormatPalRadio));
        EXPECT_FALSE(Checked(kFormatNtscRadio));
        EXPECT_EQ(RowsOf(kFormatFrameRateList), Rows{L"25"});
        EXPECT_EQ(RowsOf(kFormatFrameSizeList)[Selected(kFormatFrameSizeList)], L"720x576");
    }
};

}  // namespace

// A webcam's window: its name in the title, "Digital" in place of the standards, its rates and sizes (none under
// 640x480: those are never offered), the brightness slider over the device's range at its value. A slider acts on
// the device at once; 15 frames and 800x600 chosen restart the camera at that rate and size, and OK keeps them for
// the next recording without writing anything. Sliders act by page and by a dragged thumb, but not at the thumb's
// release; Set Default Values puts device and sliders to the defaults; Cancel puts back the size and the values of
// the opening. Then OK with Save writes the device's VConfig; the box is still ticked at the next opening; the close
// box keeps a change without restoring anything; and the next start-up puts the saved size and brightness on the
// device. The camera then pulled out while the window is open: what the window still offers finds no device, says so
// where the setter does, and the program goes on. Then a saved configuration whose standard is none of the four
// words leaves the device of unknown format: opening says so and fills nothing, so the window shows as it was made.
// Last, a device without picture properties: the group holds "Set Default Values" alone, which then says it can't.
TEST(DeviceFormat, AWebcamsSlidersSizesCancelAndSaveActAndTheDeviceGoneOrOfUnknownFormatLeavesTheWindowHarmless)
{
    FormatRun run;
    ASSERT_TRUE(run.Start(L"Sky Cam", L"webcam"));
    ASSERT_NE(run.Open(), nullptr);
    EXPECT_EQ(WindowText(run.window), L"Sky Cam Properties");
    EXPECT_EQ(WindowRect(run.window).right - WindowRect(run.window).left, 550);
    EXPECT_TRUE(IsVisible(run.Item(kFormatDigitalLabel)));
    for (int id : {kFormatAutoDetectBox, kFormatStandardFrame, kFormatNtscRadio, kFormatPalRadio})
        EXPECT_FALSE(IsVisible(run.Item(id))) << id;
    // The media subtype field is filled and never shown.
    EXPECT_FALSE(IsVisible(run.Item(kFormatSubtypeField)));
    EXPECT_EQ(WindowText(run.Item(kFormatSubtypeField)), L"YUY2");
    EXPECT_EQ(run.RowsOf(kFormatFrameRateList), (Rows{L"30", L"10", L"15"}));
    EXPECT_EQ(run.Selected(kFormatFrameRateList), 0);
    // YUY2 and RGB24 of one size both stand in the list.
    EXPECT_EQ(run.RowsOf(kFormatFrameSizeList), (Rows{L"640x480", L"640x480"}));
    EXPECT_EQ(run.Selected(kFormatFrameSizeList), 0);
    for (int row = 0; row < 6; ++row)
        EXPECT_TRUE(IsVisible(run.Slider(row))) << row;
    EXPECT_EQ(WindowText(run.Label(5)), L"Gain");
    // The device's range: -64 to 64, at its value 0.
    EXPECT_EQ(SendMessageW(run.Slider(kBrightnessRow), TBM_GETRANGEMIN, 0, 0), -64);
    EXPECT_EQ(SendMessageW(run.Slider(kBrightnessRow), TBM_GETRANGEMAX, 0, 0), 64);
    EXPECT_EQ(run.SliderPosition(kBrightnessRow), 0);
    EXPECT_EQ(run.SliderPosition(kContrastRow), 50);
    Sleep(1000);
    EXPECT_TRUE(TakeScreenshot("device-properties-webcam"));

    MoveSlider(run.Slider(kBrightnessRow), 12);
    EXPECT_EQ(run.DeviceValue(VideoProcAmp_Brightness), 12);
    // The webcam's 800x600 is offered at 15 frames only.
    run.ChooseText(kFormatFrameRateList, L"15");
    EXPECT_EQ(run.RowsOf(kFormatFrameSizeList), (Rows{L"640x480", L"800x600"}));
    run.ChooseText(kFormatFrameSizeList, L"800x600");
    EXPECT_EQ(run.Picture().cx, 800);
    EXPECT_EQ(run.Picture().cy, 600);
    Click(run.Item(kFormatOkButton));
    EXPECT_FALSE(IsVisible(run.window));
    EXPECT_EQ(run.program->CountMessages(kRestored), 0);
    ExpectRecordedAt(*run.program, 800, 600, "15", "Digital");
    EXPECT_EQ(run.OptionsFile().find("VConfig"), std::string::npos);

    ASSERT_NE(run.Open(), nullptr);
    EXPECT_EQ(run.SliderPosition(kBrightnessRow), 12);
    DragSlider(run.Slider(kBrightnessRow), -20);
    EXPECT_EQ(run.DeviceValue(VideoProcAmp_Brightness), -20);
    DragSlider(run.Slider(kBrightnessRow), 40, TB_THUMBPOSITION);
    EXPECT_EQ(run.DeviceValue(VideoProcAmp_Brightness), -20);
    MoveSlider(run.Slider(kContrastRow), 80);
    EXPECT_EQ(run.DeviceValue(VideoProcAmp_Contrast), 80);
    MoveSlider(run.Slider(5), 70);

    Click(run.Item(kFormatDefaultsButton));
    EXPECT_EQ(run.DeviceValue(VideoProcAmp_Brightness), 0);
    EXPECT_EQ(run.DeviceValue(VideoProcAmp_Contrast), 50);
    EXPECT_EQ(run.DeviceValue(VideoProcAmp_Gain), 0);
    EXPECT_EQ(run.Count(L"Unable to set"), 0);
    EXPECT_EQ(run.SliderPosition(kBrightnessRow), 0);
    EXPECT_EQ(run.SliderPosition(kContrastRow), 50);

    MoveSlider(run.Slider(kBrightnessRow), 25);
    run.ChooseText(kFormatFrameSizeList, L"640x480");
    EXPECT_EQ(run.Picture().cx, 640);
    Click(run.Item(kFormatCancelButton));
    EXPECT_FALSE(IsVisible(run.window));
    ASSERT_TRUE(run.program->WaitForMessage(kRestored, 3000));
    EXPECT_EQ(run.DeviceValue(VideoProcAmp_Brightness), 12);
    EXPECT_EQ(run.Picture().cx, 800);

    ASSERT_NE(run.Open(), nullptr);
    EXPECT_FALSE(run.Checked(kFormatSaveBox));
    // Another rate and size than the window opened with.
    run.ChooseText(kFormatFrameRateList, L"10");
    run.ChooseText(kFormatFrameSizeList, L"1280x720");
    MoveSlider(run.Slider(kBrightnessRow), 20);
    Click(run.Item(kFormatSaveBox));
    Click(run.Item(kFormatOkButton));
    EXPECT_FALSE(IsVisible(run.window));
    std::string file = run.OptionsFile();
    EXPECT_NE(file.find("<VConfig Value=\"Sky Cam|10|1280x720|YUY2|20|50|0|64|3|0|DIGITAL\"/>"), std::string::npos)
        << file;

    ASSERT_NE(run.Open(), nullptr);
    EXPECT_TRUE(run.Checked(kFormatSaveBox));
    MoveSlider(run.Slider(kContrastRow), 70);
    SendMessageW(run.window, WM_CLOSE, 0, 0);
    EXPECT_FALSE(IsVisible(run.window));
    EXPECT_EQ(run.DeviceValue(VideoProcAmp_Contrast), 70);
    EXPECT_EQ(run.program->CountMessages(kRestored), 1) << "the Cancel's alone";

    // A new program binds the device anew, at its defaults, and applies the
    // saved configuration.
    ASSERT_TRUE(run.Run());
    EXPECT_EQ(run.Picture().cx, 1280);
    EXPECT_EQ(run.Picture().cy, 720);
    EXPECT_EQ(run.DeviceValue(VideoProcAmp_Brightness), 20);
    EXPECT_EQ(run.DeviceValue(VideoProcAmp_Contrast), 50);
    ASSERT_NE(run.Open(), nullptr);
    EXPECT_EQ(run.SliderPosition(kBrightnessRow), 20);
    EXPECT_EQ(run.RowsOf(kFormatFrameRateList)[run.Selected(kFormatFrameRateList)], L"10");
    EXPECT_EQ(run.RowsOf(kFormatFrameSizeList)[run.Selected(kFormatFrameSizeList)], L"1280x720");

    ASSERT_EQ(run.Pull(L"Sky Cam"), 1);
    MoveSlider(run.Slider(kBrightnessRow), 30);
    EXPECT_TRUE(
        run.program->WaitForMessage(L"Logic error: setting property value for unknown current device\r\n", 3000))
        << Narrow(run.program->Messages());
    run.Choose(kFormatFrameRateList, 2);
    run.Choose(kFormatFrameSizeList, 1);
    Click(run.Item(kFormatDefaultsButton));
    Click(run.Item(kFormatAutoDetectBox));
    Click(run.Item(kFormatPalRadio));
    Click(run.Item(kFormatCancelButton));
    EXPECT_TRUE(run.program->WaitForMessage(kRestored, 3000));
    EXPECT_TRUE(run.program->IsRunning());
    ASSERT_NE(run.Open(), nullptr);
    SendMessageW(run.window, WM_CLOSE, 0, 0);
    EXPECT_FALSE(IsVisible(run.window));
    EXPECT_TRUE(run.program->IsRunning());
    run.program->Kill();

    ASSERT_TRUE(
        run.Start(L"Sky Cam", L"webcam", L"ntsc", Option("VConfig", "Sky Cam|30|640x480|YUY2|0|50|0|64|3|0|NONE")));
    ASSERT_NE(run.Open(), nullptr);
    EXPECT_EQ(run.Count(L"Device has an unknown format; properties cannot be set\r\n"), 1);
    EXPECT_EQ(WindowText(run.window), L" Properties");
    EXPECT_EQ(run.RowsOf(kFormatFrameRateList).size(), 0u);
    EXPECT_EQ(SendMessageW(run.Slider(kBrightnessRow), TBM_GETRANGEMAX, 0, 0), 100);
    EXPECT_EQ(run.SliderPosition(kBrightnessRow), 50);
    EXPECT_EQ(run.SliderPosition(kContrastRow), 5);
    Click(run.Item(kFormatCancelButton));
    EXPECT_FALSE(IsVisible(run.window));
    EXPECT_TRUE(run.program->WaitForMessage(kRestored, 3000));

    // A device without picture properties plugged in, then the camera pulled so that it takes over.
    ASSERT_TRUE(run.devices.Add(L"Bare Cam", L"bare"));
    ASSERT_EQ(SendDeviceChange(run.Main()), 1);
    ASSERT_EQ(run.Pull(L"Sky Cam"), 1);
    ASSERT_NE(run.Open(), nullptr);
    for (int row = 0; row < 6; ++row) {
        EXPECT_FALSE(IsVisible(run.Slider(row))) << row;
        EXPECT_FALSE(IsVisible(run.Label(row))) << row;
    }
    HWND button = run.Item(kFormatDefaultsButton);
    EXPECT_TRUE(IsVisible(button));
    RECT group = WindowRect(run.Item(kFormatPropertiesGroup));
    RECT inside = WindowRect(button);
    EXPECT_GT(inside.top, group.top);
    EXPECT_LT(inside.bottom, group.bottom);
    EXPECT_LT(group.bottom - inside.bottom, 40);
    Click(button);
    EXPECT_TRUE(run.program->WaitForMessage(L"Unable to set current device properties to defaults\r\n", 3000));
}

// A grabber's standard, found at start-up by trial with a renderer that counts frames (PAL): the camera runs at
// 720x576, Auto Detect is ticked and the radios grey; clearing the box changes nothing else. Chosen by hand, NTSC
// puts the camera on 30 frames; ticking Auto Detect again runs the trial, which finds PAL once more and says so,
// with the radios grey. PAL chosen by hand after NTSC is recorded at 720x576 and 25 frames. A click on the one row
// of the rate list takes the row as the group's index, so the sizes shown are the 30-frame group's; NTSC by hand
// is recorded as NTSC.
TEST(DeviceFormat, AGrabbersStandardIsFoundByTrialFoundAgainByTickingAutoDetectAndChosenByHand)
{
    vmr7standin::StandInRegistration standIn;
    ASSERT_TRUE(standIn.Installed());
    constexpr wchar_t kPalFound[] = L"Auto Detect: device \"USB 2820 Device\" format changed from NTSC to PAL\r\n";
    FormatRun run;
    ASSERT_TRUE(run.Start(L"USB 2820 Device", L"usb2820", L"pal"));
    EXPECT_EQ(run.program->CountMessages(kPalFound), 1) << Narrow(run.program->Messages());
    EXPECT_EQ(run.Picture().cy, 576);
    ASSERT_NE(run.Open(), nullptr);
    EXPECT_FALSE(IsVisible(run.Item(kFormatDigitalLabel)));
    for (int id : {kFormatAutoDetectBox, kFormatStandardFrame, kFormatNtscRadio, kFormatPalRadio})
        EXPECT_TRUE(IsVisible(run.Item(id))) << id;
    run.ExpectPal(true);
    // Brightness, contrast, hue and saturation only.
    EXPECT_TRUE(IsVisible(run.Slider(3)));
    EXPECT_FALSE(IsVisible(run.Slider(4)));
    EXPECT_FALSE(IsVisible(run.Slider(5)));
    EXPECT_EQ(SendMessageW(run.Slider(kBrightnessRow), TBM_GETRANGEMAX, 0, 0), 255);
    EXPECT_EQ(SendMessageW(run.Slider(kBrightnessRow), TBM_GETTIC, 0, 0), 25);
    Sleep(1000);
    EXPECT_TRUE(TakeScreenshot("device-properties-grabber"));

    std::wstring before = run.program->Messages();
    Click(run.Item(kFormatAutoDetectBox));
    EXPECT_FALSE(run.Checked(kFormatAutoDetectBox));
    EXPECT_TRUE(IsEnabled(run.Item(kFormatNtscRadio)));
    EXPECT_TRUE(IsEnabled(run.Item(kFormatPalRadio)));
    Sleep(500);
    EXPECT_EQ(run.program->Messages(), before);

    Click(run.Item(kFormatNtscRadio));
    EXPECT_TRUE(run.Checked(kFormatNtscRadio));
    EXPECT_EQ(run.RowsOf(kFormatFrameRateList), Rows{L"30"});
    EXPECT_EQ(run.RowsOf(kFormatFrameSizeList)[run.Selected(kFormatFrameSizeList)], L"720x480");
    Click(run.Item(kFormatAutoDetectBox));
    EXPECT_EQ(run.program->CountMessages(kPalFound), 2) << Narrow(run.program->Messages());
    run.ExpectPal(true);

    Click(run.Item(kFormatAutoDetectBox));
    Click(run.Item(kFormatNtscRadio));
    Click(run.Item(kFormatPalRadio));
    Sleep(1000);
    EXPECT_TRUE(TakeScreenshot("device-properties-grabber-pal"));
    run.ExpectPal(false);
    Click(run.Item(kFormatOkButton));
    ExpectRecordedAt(*run.program, 720, 576, "25", "PAL");

    ASSERT_NE(run.Open(), nullptr);
    run.Choose(kFormatFrameRateList, 0);
    EXPECT_EQ(run.RowsOf(kFormatFrameSizeList), (Rows{L"720x480", L"640x480"}));
    // NTSC by hand is recorded as NTSC, at 720x480 and 30 frames (none come: the signal is PAL).
    Click(run.Item(kFormatNtscRadio));
    Click(run.Item(kFormatOkButton));
    ExpectRecordedAt(*run.program, 720, 480, "30", "NTSC", false);
}
