// The program with a synthetic webcam: the camera starts at start-up with
// the renderer the options name.
#include <gtest/gtest.h>

#include "device/graph_helpers.h"
#include "e2e/harness.h"

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

TEST(Video, EvrTakesNoYuy2OnThisPlatformAndSaysSo)
{
    devicetest::SyntheticDevices devices;
    ASSERT_TRUE(devices.Add(L"Sky Cam", L"webcam"));
    Program program(MakeWorkFolderForCurrentTest());
    std::wstring text = StartWithRenderer(program, nullptr);
    EXPECT_NE(text.find(L"SEVERE: cannot render preview stream\r\n"), std::wstring::npos) << Narrow(text);
    EXPECT_NE(text.find(L"WARNING: cannot render video stream\r\n"), std::wstring::npos);
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
