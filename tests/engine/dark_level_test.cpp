// Frame integration in a camera start: the first frame measures the sky's
// background as the dark level, and the integrated frames that reach the
// renderer have it taken off.
#include "engine/engine_fixture.h"

#include "e2e/harness.h"
#include "filters/dark_pixels.h"
#include "video/capture_settings.h"

using namespace enginetest;

TEST_F(EngineTest, IntegrationMeasuresTheSkyBackgroundAndTakesItOffTheAddedFrames)
{
    ASSERT_TRUE(UseOneCamera());
    frameIntegrationOn = 1;
    frameIntegrationCount = 3;
    ASSERT_EQ(player->StartCamera(false, L""), S_OK) << testing::PrintToString(TakeMessages());
    ASSERT_TRUE(e2e::WaitUntil([] { return darkAnalysisRequested == 0; }, 5000));

    // The background of the synthetic sky lies at 30 to 34; the stamp's
    // black cells (16) and the stars are too few to outnumber it.
    uint32_t dark = darkValueY;
    EXPECT_GE(dark, static_cast<uint32_t>(synthcam::kBackgroundLevel - 2));
    EXPECT_LE(dark, static_cast<uint32_t>(synthcam::kBackgroundLevel + 2));
    EXPECT_EQ(std::wstring(darkReportText), L"Dark pixel value for YUY2 frame: " + std::to_wstring(dark) + L"\r\n");
    // Nothing of it is shown: the measurement stays in its buffer.
    EXPECT_EQ(TakeMessages().find(L"Dark pixel"), std::wstring::npos);

    // Each delivered frame is frame 1 of its group plus frame 2 less the
    // dark level: about the background, where without the subtraction it
    // would be about twice it.
    devicetest::Held<devicetest::TestSink> sink;
    PreviewInto(sink);
    Sleep(2000);
    std::vector<devicetest::ReceivedFrame> frames = sink->Frames();
    EXPECT_NEAR(static_cast<double>(frames.size()), 20, 6) << "one frame of three at 30 a second";
    for (const devicetest::ReceivedFrame& frame : frames) {
        EXPECT_GE(frame.background, synthcam::kBackgroundLevel - 2.0) << "frame " << frame.stamp.counter;
        EXPECT_LE(frame.background, synthcam::kBackgroundLevel + 4.0) << "frame " << frame.stamp.counter;
    }
    player->mediaControl->Stop();
    player->RemoveGraphFilters();
}
