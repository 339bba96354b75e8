// The program with a synthetic webcam: the camera starts at start-up with
// the renderer the options name.
#include <gtest/gtest.h>

#include "device/graph_helpers.h"
#include "e2e/harness.h"
#include "e2e/screen_stamp.h"

using namespace e2e;

namespace {

const char kHeader[] = "<?xml version='1.0'?>\r\n<!--MAVU Video Capture Version 2.1-->\r\n<Root>\r\n";

std::wstring StartWithRenderer(Program& program, const char* renderer)
{
    if (renderer)
        WriteBytes(program.Folder() + L"\\MAVU_options_capture.xml",
                   std::string(kHeader) + "\t<DefaultRenderer Value=\"" + renderer + "\"/>\r\n</Root>\r\n");
    EXPECT_TRUE(program.Start());
    EXPECT_TRUE(program.WaitReady());
    // The stream is up a moment after the graph runs.
    Sleep(2000);
    return program.Messages();
}

}  // namespace

TEST(Video, WebcamPreviewWithVmr9SizesTheWindowToTheFormat)
{
    devicetest::SyntheticDevices devices;
    ASSERT_TRUE(devices.Add(L"Sky Cam", L"webcam"));
    Program program(MakeWorkFolderForCurrentTest());
    std::wstring text = StartWithRenderer(program, "VMR9");
    EXPECT_EQ(text.find(L"SEVERE"), std::wstring::npos) << Narrow(text);
    EXPECT_EQ(text.find(L"WARNING"), std::wstring::npos) << Narrow(text);
    EXPECT_EQ(text.find(L"There is no video capture device"), std::wstring::npos);

    HWND clipping = FindChild(program.MainWindow(), L"MavuVideoRecordWindow");
    ASSERT_NE(clipping, nullptr);
    EXPECT_TRUE(IsVisible(clipping));
    RECT picture = WindowRect(clipping);
    EXPECT_EQ(picture.right - picture.left, 640);
    EXPECT_EQ(picture.bottom - picture.top, 480);
    RECT client{};
    GetClientRect(program.MainWindow(), &client);
    EXPECT_GE(client.right, 640);
    EXPECT_GE(client.bottom, 480);
    EXPECT_TRUE(IsVisible(program.RecordControlsWindow()));
    EXPECT_TRUE(TakeScreenshot("webcam-preview-vmr9"));
    program.Kill();
}

// The preview is live in the main window: the camera's stamp, read off the
// screen inside the clipping window, counts on from one screenshot to the
// next and shows the UTC of the moment, where Direct3D draws into that child
// window at all.
TEST(Video, PreviewIsLiveInTheMainWindow)
{
    devicetest::SyntheticDevices devices;
    ASSERT_TRUE(devices.Add(L"Sky Cam", L"webcam"));
    Program program(MakeWorkFolderForCurrentTest());
    std::wstring text = StartWithRenderer(program, "VMR9");
    EXPECT_EQ(text.find(L"SEVERE"), std::wstring::npos) << Narrow(text);
    HWND clipping = FindChild(program.MainWindow(), L"MavuVideoRecordWindow");
    ASSERT_NE(clipping, nullptr);
    // The renderer draws two pixels in and one down in the clipping window.
    RECT picture = WindowRect(clipping);
    int x = picture.left + 2, y = picture.top + 1;

    synthcam::FrameStamp first{}, second{};
    uint64_t before = synthcam::UtcMsSince2020Now();
    ASSERT_TRUE(ReadStampOnScreen("preview-live-1", x, y, 1, &first));
    Sleep(1000);
    uint64_t second_before = synthcam::UtcMsSince2020Now();
    ASSERT_TRUE(ReadStampOnScreen("preview-live-2", x, y, 1, &second));
    uint64_t second_after = synthcam::UtcMsSince2020Now();
    if (!PictureShowsIn(clipping)) {
        program.Kill();
        GTEST_SKIP() << kNoPictureHere;
    }
    EXPECT_GT(first.utcMs, before - 1000);
    EXPECT_GT(second.counter, first.counter);
    EXPECT_GE(second.counter - first.counter, 20u) << "about 30 frames a second";
    EXPECT_GT(second.utcMs, first.utcMs);
    // The stamp shows the moment of the screenshot, within a second.
    EXPECT_GE(second.utcMs + 1000, second_before);
    EXPECT_LE(second.utcMs, second_after + 1000);
    program.Kill();
}

namespace {

// Pixels of the saturation warning colour (magenta on the screen) in the
// picture of the clipping window.
int WarningPixelsOnScreen(const std::string& name, HWND clipping)
{
    RECT picture = WindowRect(clipping);
    std::string rgb;
    if (!ReadScreenRgb(name, picture.left, picture.top, picture.right - picture.left, picture.bottom - picture.top,
                       &rgb))
        return -1;
    int count = 0;
    for (size_t i = 0; i + 2 < rgb.size(); i += 3) {
        auto red = static_cast<uint8_t>(rgb[i]), green = static_cast<uint8_t>(rgb[i + 1]),
             blue = static_cast<uint8_t>(rgb[i + 2]);
        count += red > 200 && green < 80 && blue > 200;
    }
    return count;
}

}  // namespace

// The Display menu's Pixel Saturation toggles the tool and restarts the
// camera: the saturated star turns to the warning colour in the preview,
// and back when the item is chosen again.
TEST(Video, PixelSaturationTogglePaintsTheSaturatedStarAndTakesItAway)
{
    devicetest::SyntheticDevices devices;
    ASSERT_TRUE(devices.Add(L"Sky Cam", L"webcam"));
    Program program(MakeWorkFolderForCurrentTest());
    WriteOptions(program.Folder(), Option("DefaultRenderer", "VMR9") + Option("PixelSaturationValue", "200"));
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(program.WaitReady());
    HWND clipping = FindChild(program.MainWindow(), L"MavuVideoRecordWindow");
    ASSERT_NE(clipping, nullptr);
    Sleep(2000);
    if (!PictureShowsIn(clipping)) {
        program.Kill();
        GTEST_SKIP() << kNoPictureHere;
    }
    EXPECT_EQ(WarningPixelsOnScreen("saturation-before", clipping), 0);

    constexpr unsigned kPixelSaturation = 33103;
    SendCommand(program.MainWindow(), kPixelSaturation);
    Sleep(2500);
    EXPECT_GT(WarningPixelsOnScreen("saturation-on", clipping), 10);

    SendCommand(program.MainWindow(), kPixelSaturation);
    Sleep(2500);
    EXPECT_EQ(WarningPixelsOnScreen("saturation-off", clipping), 0);
    std::wstring text = program.Messages();
    EXPECT_EQ(text.find(L"SEVERE"), std::wstring::npos) << Narrow(text);
    program.Kill();
}

// The default renderer, the EVR, shows a YUY2 camera where the platform's
// EVR takes YUY2, and where it doesn't the program says it can't.
TEST(Video, TheEvrShowsAYuy2CameraOrThePlatformsRefusalIsSaid)
{
    devicetest::SyntheticDevices devices;
    ASSERT_TRUE(devices.Add(L"Sky Cam", L"webcam"));
    const bool evrTakesYuy2 = devicetest::RendererConnectsTo(CLSID_EnhancedVideoRenderer, L"Sky Cam");
    Program program(MakeWorkFolderForCurrentTest());
    std::wstring text = StartWithRenderer(program, nullptr);
    EXPECT_EQ(text.find(L"SEVERE: cannot render preview stream\r\n") != std::wstring::npos, !evrTakesYuy2)
        << "the EVR takes YUY2 here: " << evrTakesYuy2 << "\n" << Narrow(text);
    EXPECT_EQ(text.find(L"WARNING: cannot render video stream\r\n") != std::wstring::npos, !evrTakesYuy2);
    program.Kill();
}

TEST(Video, Vmr7WithoutQualityInterfaceIsRefused)
{
    devicetest::SyntheticDevices devices;
    ASSERT_TRUE(devices.Add(L"Sky Cam", L"webcam"));
    Program program(MakeWorkFolderForCurrentTest());
    std::wstring text = StartWithRenderer(program, "VMR7");
    EXPECT_NE(text.find(L"WARNING: cannot add video rendering filter to filter graph while attempting to start "
                        L"camera\r\n"),
              std::wstring::npos)
        << Narrow(text);
    program.Kill();
}
