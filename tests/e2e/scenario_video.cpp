// The program with a synthetic webcam: the camera starts at start-up with
// the renderer the options name.
#include <gtest/gtest.h>

#include "e2e/program_run.h"
#include "e2e/screen_stamp.h"
#include "ui/commands.h"

using namespace e2e;

// Through VMR9 the picture is the format's size, the record buttons are up
// and start-up says only that the colour effect is missing. Where Direct3D
// draws into the clipping window at all, the camera's stamp read off the
// screen counts on from one screenshot to the next and shows the UTC of the
// moment, and the Display menu's Pixel Saturation toggles the warning colour
// on the saturated star and takes it away.
TEST(Video, Vmr9PreviewIsSizedLiveAndTogglesPixelSaturation)
{
    ProgramRun run;
    ASSERT_TRUE(run.StartWithSkyCam(Option("PixelSaturationValue", "200")));
    // The stream is up a moment after the graph runs.
    Sleep(2000);
    std::wstring text = run.program->Messages();
    EXPECT_EQ(text.find(L"SEVERE"), std::wstring::npos) << Narrow(text);
    EXPECT_EQ(text.find(L"WARNING"), std::wstring::npos) << Narrow(text);
    EXPECT_EQ(text.find(L"There is no video capture device"), std::wstring::npos);
    EXPECT_EQ(run.Count(L"\r\nThe DMO color control filter is not installed - no brightness/contrast\r\n"), 1);

    HWND clipping = run.Clipping();
    EXPECT_TRUE(IsVisible(clipping));
    EXPECT_EQ(Size(clipping).cx, 640);
    EXPECT_EQ(Size(clipping).cy, 480);
    RECT client{};
    GetClientRect(run.Main(), &client);
    EXPECT_GE(client.right, 640);
    EXPECT_GE(client.bottom, 480);
    EXPECT_TRUE(IsVisible(run.program->RecordControlsWindow()));
    EXPECT_TRUE(TakeScreenshot("webcam-preview-vmr9"));

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
