// The program with a synthetic webcam: the camera starts at start-up with
// the renderer the options name, and the Display tools without a colour
// effect: Magnify, Brightness and Contrast, Frame Integration, and Pixel
// Saturation from the menu.
#include <gtest/gtest.h>

#include "e2e/program_run.h"
#include "e2e/screen_stamp.h"
#include "support/recorded_frames.h"
#include "ui/commands.h"
#include "ui/control_ids.h"

using namespace e2e;

// Through VMR9 the main window holds the picture, and start-up says only that the colour effect is missing. Magnify
// x 2.0 doubles the picture and the main window follows; closing the window puts the picture back. The window opens
// with " None" selected. Without colour in files the Brightness and Contrast window is the smaller one and has no file
// box; without a colour effect on the platform the camera still runs. Frame Integration's counts outside 2 to 30 are
// refused with the line, and the box shows "2"; 30 and 4 are taken. A recording turns the tool off, and its file holds
// every frame as the camera made it. (What the integrated preview shows, the background taken off the added frames, is
// the engine's dark level test.) Where Direct3D draws into the clipping window at all, the camera's stamp read off the
// screen counts on from one screenshot to the next and shows the UTC of the moment, and the Display menu's Pixel
// Saturation toggles the warning colour on the saturated star and takes it away.
TEST(Video, Vmr9PreviewIsSizedTheToolsWithoutTheEffectActAndThePreviewIsLiveAndTogglesPixelSaturation)
{
    ProgramRun run;
    ASSERT_TRUE(run.StartWithSkyCam(Option("PixelSaturationValue", "200")));
    // The stream is up a moment after the graph runs.
    Sleep(2000);
    std::wstring text = run.program->Messages();
    EXPECT_EQ(text.find(L"SEVERE"), std::wstring::npos) << Narrow(text);
    EXPECT_EQ(text.find(L"WARNING"), std::wstring::npos) << Narrow(text);
    EXPECT_EQ(run.Count(L"\r\nThe DMO color control filter is not installed - no brightness/contrast\r\n"), 1);

    // The picture's size and the record buttons at start-up: the SelectDevice and HotPlug scenarios.
    HWND clipping = run.Clipping();
    RECT client{};
    GetClientRect(run.Main(), &client);
    EXPECT_GE(client.right, 640);
    EXPECT_GE(client.bottom, 480);
    EXPECT_TRUE(TakeScreenshot("webcam-preview-vmr9"));

    HWND window = run.Open(IDM_MAGNIFY, L"Magnify");
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(SendMessageW(GetDlgItem(window, kMagnifyNoneRadio), BM_GETCHECK, 0, 0), BST_CHECKED);
    EXPECT_EQ(SendMessageW(GetDlgItem(window, kMagnifyHalfRadio), BM_GETCHECK, 0, 0), BST_UNCHECKED);
    Click(GetDlgItem(window, kMagnifyDoubleRadio));
    EXPECT_EQ(Size(run.Clipping()).cy, 960);  // its width: the SelectDevice scenario
    Sleep(1000);
    EXPECT_TRUE(TakeScreenshot("magnify"));
    Click(GetDlgItem(window, kMagnifyHalfRadio));
    EXPECT_EQ(Size(run.Clipping()).cx, 320);
    SendMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_FALSE(IsVisible(window));
    EXPECT_EQ(Size(run.Clipping()).cx, 640);

    window = run.Open(IDM_BRIGHTNESS_CONTRAST, L"BrightnessContrast");
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(Size(window).cy, 270);
    EXPECT_FALSE(IsVisible(GetDlgItem(window, kColorInFileBox)));
    SendMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_FALSE(IsVisible(window));
    EXPECT_TRUE(IsVisible(run.program->RecordControlsWindow()));

    window = run.Open(IDM_FRAME_INTEGRATION, L"FrameIntegration");
    ASSERT_NE(window, nullptr);
    HWND box = GetDlgItem(window, kIntegrationCountBox);
    EXPECT_EQ(WindowText(box), L"2");
    EXPECT_TRUE(TakeScreenshot("frame-integration"));
    int refused = 0;
    for (const wchar_t* count : {L"31", L"1", L"", L"99", L"30", L"4"}) {
        SendMessageW(box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(count));
        Click(GetDlgItem(window, kIntegrationStartButton));
        const bool inRange = count == std::wstring(L"30") || count == std::wstring(L"4");
        refused += inRange ? 0 : 1;
        EXPECT_EQ(WindowText(box), inRange ? count : L"2") << Narrow(count);
        EXPECT_EQ(run.Count(L"Frame count must be a value from 2 to 30"), refused) << Narrow(count);
    }
    EXPECT_TRUE(IsVisible(window)) << "the window stays for another count";
    Sleep(2000);
    ManualRecording recording = RecordByHand(*run.program);
    ASSERT_FALSE(recording.avi.empty());
    EXPECT_FALSE(IsVisible(window)) << "the recording turned the tool off";
    std::vector<synthcam::FrameStamp> stamps = testsupport::ReadRecordedStamps(Narrow(recording.avi), 640);
    ASSERT_GT(stamps.size(), 30u);
    // Integrating four would leave three frames out of every four.
    long missing = testsupport::MissingStampedFrames(stamps);
    EXPECT_GE(missing, 0);
    EXPECT_LE(missing, testsupport::ReportedDroppedFrames(recording.report)) << recording.report;

    // The renderer draws two pixels in and one down in the clipping window.
    RECT picture = WindowRect(clipping);
    int x = picture.left + 2, y = picture.top + 1;
    synthcam::FrameStamp first{}, second{};
    uint64_t before = synthcam::UtcMsSince2020Now();
    ASSERT_TRUE(ReadStampOnScreen("preview-live-1", x, y, 1, &first));
    Sleep(1000);
    uint64_t secondBefore = synthcam::UtcMsSince2020Now();
    ASSERT_TRUE(ReadStampOnScreen("preview-live-2", x, y, 1, &second));
    uint64_t secondAfter = synthcam::UtcMsSince2020Now();
    if (!PictureShowsIn(clipping))
        GTEST_SKIP() << kNoPictureHere;
    EXPECT_GT(first.utcMs, before - 1000);
    EXPECT_GT(second.counter, first.counter);
    EXPECT_GE(second.counter - first.counter, 20u) << "about 30 frames a second";
    EXPECT_GT(second.utcMs, first.utcMs);
    // The stamp shows the moment of the screenshot, within a second.
    EXPECT_GE(second.utcMs + 1000, secondBefore);
    EXPECT_LE(second.utcMs, secondAfter + 1000);

    // The saved value alone paints nothing; the menu item restarts the camera with the tool, and again without.
    EXPECT_EQ(WarningPixels("saturation-before", clipping), 0);
    SendCommand(run.Main(), IDM_PIXEL_SATURATION);
    Sleep(2500);
    EXPECT_GT(WarningPixels("saturation-on", clipping), 10);
    SendCommand(run.Main(), IDM_PIXEL_SATURATION);
    Sleep(2500);
    EXPECT_EQ(WarningPixels("saturation-off", clipping), 0);
    EXPECT_EQ(run.program->Messages().find(L"SEVERE"), std::wstring::npos) << Narrow(run.program->Messages());
}
