// The preview's frame tool in a real graph: integration of N = 2 halves the
// rate after the start frame that the dark analysis takes; saturation
// marking paints the saturated star in every frame and leaves the stamp,
// which stays below its threshold, readable.
#include "device/graph_helpers.h"
#include "device/test_filters.h"
#include "filters/dark_pixels.h"
#include "filters/mavu_video_transform_filter.h"
#include "support/report_lines.h"

#include <gtest/gtest.h>

using namespace devicetest;

namespace {

void RunThrough(MavuVideoTransformFilter* tool, TestSink* sink, DWORD ms, REFGUID subtype = MEDIASUBTYPE_YUY2)
{
    DeviceChain chain;
    ASSERT_EQ(chain.Build(L"Cam", {tool, sink}, subtype), S_OK);
    EXPECT_EQ(tool->SetMediaInfo(), S_OK);
    chain.RunFor(ms);
}

}  // namespace

// The tool and a sink behind it, each held by the test alone at the end.
class FrameTool : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(devices.Add(L"Cam", L"webcam")); }
    // Integration of that many frames, as a camera start asks for it.
    void ConfigureIntegration(uint32_t frames)
    {
        TransformToolSettings integration;
        integration.frameIntegrationOn = true;
        integration.frameIntegrationCount = frames;
        tool->ConfigureTransformFilter(640 * 480 * 4, integration);
        frameIntegrationCounter = 0;
        darkAnalysisRequested = 1;
    }

    SyntheticDevices devices;
    Held<MavuVideoTransformFilter> tool;
    Held<TestSink> sink;
};

TEST_F(FrameTool, IntegrationOfTwoHalvesTheRateAndSaturationKeepsFramesFlowing)
{
    ConfigureIntegration(2);
    RunThrough(tool, sink, 2000);
    std::vector<ReceivedFrame> frames = sink->Frames();
    ASSERT_GE(frames.size(), 20u);
    // Each delivered frame is the first of its pair: every other number.
    for (size_t i = 1; i < frames.size(); ++i)
        EXPECT_EQ(frames[i].stamp.counter - frames[i - 1].stamp.counter, 2u);
    EXPECT_EQ(frames.front().stamp.counter % 2, 1u) << "frame 0 went to the dark analysis";
    tool->FreeAccumulator();

    sink->Clear();
    TransformToolSettings saturation;
    saturation.pixelSaturationOn = true;
    saturation.pixelSaturationValue = 250;
    tool->ConfigureTransformFilter(0, saturation);
    RunThrough(tool, sink, 1000);
    EXPECT_GE(sink->Frames().size(), 20u);
    EXPECT_EQ(tool->saturationValue.load(), 250);
    for (const ReceivedFrame& frame : sink->Frames()) {
        // The sky's brightest star is saturated: its core is painted.
        EXPECT_GT(frame.warningPairs, 4u) << "frame " << frame.stamp.counter;
        // The stamp's white cells (235) stay below the threshold and read back.
        EXPECT_GT(frame.stamp.utcMs, 0u);
    }
    // The same picture without the tool has no pair of the warning colour.
    sink->Clear();
    tool->ConfigureTransformFilter(0, TransformToolSettings{});
    RunThrough(tool, sink, 500);
    ASSERT_FALSE(sink->Frames().empty());
    for (const ReceivedFrame& frame : sink->Frames())
        EXPECT_EQ(frame.warningPairs, 0u);
}

TEST_F(FrameTool, DarkAnalysisMeasuresEachRgbChannelAndLeavesTheLumaLevel)
{
    ConfigureIntegration(3);
    // The diagnostic listing, which nothing in the program asks for.
    tool->showDarkPixelHistogram = true;
    testsupport::TakeReportedLines();
    darkValueY = 7;
    darkValueB = darkValueG = darkValueR = 99;
    RunThrough(tool, sink, 1500, MEDIASUBTYPE_RGB24);
    EXPECT_EQ(darkAnalysisRequested.load(), 0);
    // The grey sky has the same background in each channel.
    for (uint32_t level : {darkValueB.load(), darkValueG.load(), darkValueR.load()}) {
        EXPECT_GE(level, static_cast<uint32_t>(synthcam::kBackgroundLevel - 2));
        EXPECT_LE(level, static_cast<uint32_t>(synthcam::kBackgroundLevel + 2));
    }
    EXPECT_EQ(darkValueY.load(), 7u) << "an RGB measurement leaves the luma level as it was";
    std::vector<testsupport::ReportedLine> lines = testsupport::TakeReportedLines();
    ASSERT_EQ(lines.size(), 257u);
    EXPECT_EQ(lines[0].text, L"Dark pixel value histogram, RGB format");
    for (const testsupport::ReportedLine& line : lines)
        EXPECT_FALSE(line.withTimeStamp);
    EXPECT_EQ(std::wstring(darkReportText).rfind(L"Dark pixel values for RGB frame --  R: ", 0), 0u);
    // The added frames have the level taken off: about one background, not
    // two, in the rows without stars.
    std::vector<ReceivedFrame> frames = sink->Frames();
    ASSERT_GE(frames.size(), 8u);
    for (const ReceivedFrame& frame : frames)
        EXPECT_NEAR(frame.background, synthcam::kBackgroundLevel + 1.0, 3.0) << "frame " << frame.stamp.counter;
    tool->FreeAccumulator();
}

TEST(FrameToolAnalysis, AFormatOutsideTheThreeIsReportedAndMeasuresNothing)
{
    Held<MavuVideoTransformFilter> tool;
    testsupport::TakeReportedLines();
    darkValueY = 5;
    // Not connected: the filter knows no format.
    uint8_t frame[64] = {};
    tool->AnalyzeDarkPixels(frame, sizeof frame);
    std::vector<testsupport::ReportedLine> lines = testsupport::TakeReportedLines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].text, L"Frame integration not supported for this device format\r\n");
    EXPECT_TRUE(lines[0].withTimeStamp);
    EXPECT_EQ(darkValueY.load(), 5u);
}
