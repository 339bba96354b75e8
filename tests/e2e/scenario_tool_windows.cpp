// The Display tools' windows, driven as a user would: Brightness and
// Contrast with a colour effect in the prefix, and Pixel Saturation.
#include <gtest/gtest.h>

#include <windows.h>
#include <commctrl.h>

#include "e2e/program_run.h"
#include "e2e/screen_stamp.h"
#include "support/ffprobe.h"
#include "support/stand_ins.h"
#include "ui/commands.h"
#include "ui/control_ids.h"

using namespace e2e;

namespace {

// The mean level of the picture below the camera's stamp, as the screen
// shows it (the mean of R, G and B); -1 when the screen can't be read.
double PictureLevel(const std::string& name, HWND clipping)
{
    RECT picture = WindowRect(clipping);
    int top = picture.top + 2 * synthcam::kStampRows;
    std::string rgb;
    if (!ReadScreenRgb(name, picture.left, top, picture.right - picture.left, picture.bottom - top, &rgb) ||
        rgb.empty())
        return -1;
    double sum = 0;
    for (char byte : rgb)
        sum += static_cast<uint8_t>(byte);
    return sum / static_cast<double>(rgb.size());
}

}  // namespace

// Where Direct3D draws no picture into the main window, the picture checks skip. With a colour effect in the
// prefix, the brightness slider acts on the preview at once; closing the window puts both values back to the
// middle. The file box shows only when the options allow colour in files. The pixel saturation slider sets the
// threshold of the running filter: at 200 the saturated star is painted, at 255 the picture has no warning
// colour. Save keeps a value as the option and the window open; Remove clears it and closes.
TEST(ToolWindows, BrightnessContrastAndPixelSaturationActOnThePreviewAndSave)
{
    testsupport::RegisteredColorControl colorEffect;
    ProgramRun run;
    ASSERT_TRUE(run.StartWithSkyCam(Option("EnableVideoBrightnessContrast", "TRUE")));
    HWND window = run.Open(IDM_BRIGHTNESS_CONTRAST, L"BrightnessContrast");
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(Size(window).cy, 320);
    EXPECT_TRUE(IsVisible(GetDlgItem(window, kColorInFileBox)));
    HWND brightness = GetDlgItem(window, kBrightnessSlider);
    HWND contrast = GetDlgItem(window, kContrastSlider);
    EXPECT_EQ(SendMessageW(brightness, TBM_GETPOS, 0, 0), 50);
    EXPECT_EQ(SendMessageW(contrast, TBM_GETPOS, 0, 0), 50);
    Sleep(2000);
    bool pictured = PictureShowsIn(run.Clipping());
    double middle = pictured ? PictureLevel("brightness-50", run.Clipping()) : 0;

    MoveSlider(brightness, 90);
    Sleep(1000);
    EXPECT_TRUE(TakeScreenshot("brightness-contrast"));
    if (pictured) {
        double bright = PictureLevel("brightness-90", run.Clipping());
        EXPECT_GT(bright, middle + 40) << "at 50: " << middle;
    }
    EXPECT_EQ(run.program->CountMessages(L"Cannot set"), 0) << Narrow(run.program->Messages());

    // Closing by the menu item: both back to 50, the window hidden.
    SendCommand(run.Main(), IDM_BRIGHTNESS_CONTRAST);
    EXPECT_FALSE(IsVisible(window));
    EXPECT_EQ(SendMessageW(brightness, TBM_GETPOS, 0, 0), 50);
    EXPECT_EQ(SendMessageW(contrast, TBM_GETPOS, 0, 0), 50);
    Sleep(2000);
    if (pictured) {
        EXPECT_NEAR(PictureLevel("brightness-closed", run.Clipping()), middle, 10);
    }

    window = run.Open(IDM_PIXEL_SATURATION, L"PixelSaturation");
    ASSERT_NE(window, nullptr);
    HWND slider = GetDlgItem(window, kSaturationSlider);
    HWND save = GetDlgItem(window, kSaturationSaveButton);
    EXPECT_FALSE(IsEnabled(save));
    if (pictured) {
        EXPECT_EQ(WarningPixels("saturation-255", run.Clipping()), 0) << "no threshold until the slider moves";
    }
    MoveSlider(slider, 200);
    Sleep(500);
    if (pictured) {
        EXPECT_GT(WarningPixels("saturation-200", run.Clipping()), 10);
    }
    EXPECT_TRUE(TakeScreenshot("pixel-saturation"));

    HWND use = GetDlgItem(window, kSaturationUseBox);
    HWND remove = GetDlgItem(window, kSaturationRemoveBox);
    Click(use);
    EXPECT_TRUE(IsEnabled(save));
    Click(remove);
    EXPECT_EQ(SendMessageW(use, BM_GETCHECK, 0, 0), BST_UNCHECKED) << "the boxes exclude each other";
    Click(use);
    EXPECT_EQ(SendMessageW(remove, BM_GETCHECK, 0, 0), BST_UNCHECKED);
    Click(save);
    ASSERT_TRUE(run.program->WaitForMessage(L"Pixel saturation value saved in options file\r\n", 3000));
    EXPECT_TRUE(IsVisible(window));
    EXPECT_FALSE(IsEnabled(save));
    EXPECT_NE(run.OptionsFile().find("<PixelSaturationValue Value=\"200\"/>"), std::string::npos) << run.OptionsFile();

    Click(remove);
    Click(save);
    ASSERT_TRUE(run.program->WaitForMessage(L"Pixel saturation removed from options file\r\n", 3000));
    EXPECT_FALSE(IsVisible(window));
    EXPECT_NE(run.OptionsFile().find("<PixelSaturationValue Value=\"-1\"/>"), std::string::npos) << run.OptionsFile();
    if (pictured) {
        Sleep(500);
        EXPECT_EQ(WarningPixels("saturation-removed", run.Clipping()), 0);
    }
    if (!pictured)
        GTEST_SKIP() << kNoPictureHere;
}
