// The preview's frame tool in a real graph: integration of N = 2 halves the
// rate after the start frame that the dark analysis takes; saturation
// marking paints the saturated star in every frame and leaves the stamp,
// which stays below its threshold, readable.
#include "device/graph_helpers.h"
#include "device/test_filters.h"
#include "filters/mavu_video_transform_filter.h"

#include <gtest/gtest.h>

using namespace devicetest;

namespace {

size_t RunThrough(MavuVideoTransformFilter* tool, TestSink* sink, DWORD ms)
{
    ComPtr<IGraphBuilder> graph;
    CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IGraphBuilder, graph.PutVoid());
    ComPtr<IBaseFilter> device = BindDevice(L"Cam");
    graph->AddFilter(device.Get(), L"Camera");
    graph->AddFilter(tool, L"Tool");
    graph->AddFilter(sink, L"Sink");
    EXPECT_EQ(graph->ConnectDirect(FindPin(device.Get(), L"Capture").Get(), FindPin(tool, L"XForm In").Get(), nullptr),
              S_OK);
    EXPECT_EQ(graph->ConnectDirect(FindPin(tool, L"XForm Out").Get(), FindPin(sink, L"In").Get(), nullptr), S_OK);
    EXPECT_EQ(tool->SetMediaInfo(), S_OK);
    ComPtr<IMediaControl> control;
    graph->QueryInterface(IID_IMediaControl, control.PutVoid());
    control->Run();
    Sleep(ms);
    control->Stop();
    graph->RemoveFilter(device.Get());
    graph->RemoveFilter(tool);
    graph->RemoveFilter(sink);
    return sink->Frames().size();
}

}  // namespace

TEST(FrameTool, IntegrationOfTwoHalvesTheRateAndSaturationKeepsFramesFlowing)
{
    SyntheticDevices devices;
    ASSERT_TRUE(devices.Add(L"Cam", L"webcam"));
    auto* tool = new MavuVideoTransformFilter;
    auto* sink = new TestSink;
    tool->NonDelegatingAddRef();
    sink->NonDelegatingAddRef();

    TransformToolSettings integration;
    integration.frameIntegrationOn = true;
    integration.frameIntegrationCount = 2;
    tool->ConfigureTransformFilter(640 * 480 * 4, integration);
    frameIntegrationCounter = 0;
    darkAnalysisRequested = 1;
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

    EXPECT_EQ(tool->NonDelegatingRelease(), 0u);
    EXPECT_EQ(sink->NonDelegatingRelease(), 0u);
}
