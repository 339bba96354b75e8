// A synthetic grabber that can't tell NTSC from PAL: it delivers frames
// only while its decoder is set to the standard of its signal.
#include "device/graph_helpers.h"
#include "device/test_filters.h"

#include <gtest/gtest.h>

using namespace devicetest;

TEST(AnalogDevice, NoFramesOnTheWrongStandardAndPalRateOnPal)
{
    SyntheticDevices devices;
    ASSERT_TRUE(devices.Add(L"USB 2820 Device", L"usb2820", L"pal"));
    auto* sink = new TestSink;
    sink->NonDelegatingAddRef();
    {
        ComPtr<IGraphBuilder> graph;
        ASSERT_EQ(CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IGraphBuilder,
                                   graph.PutVoid()),
                  S_OK);
        ComPtr<IBaseFilter> device = BindDevice(L"USB 2820 Device");
        ASSERT_TRUE(device);
        ASSERT_EQ(SelectFormat(device.Get(), MEDIASUBTYPE_YUY2, 720, 576), S_OK);
        graph->AddFilter(device.Get(), L"Grabber");
        graph->AddFilter(sink, L"Sink");
        ASSERT_EQ(graph->ConnectDirect(FindPin(device.Get(), L"Capture").Get(), FindPin(sink, L"In").Get(), nullptr),
                  S_OK);
        ComPtr<IMediaControl> control;
        ASSERT_EQ(graph->QueryInterface(IID_IMediaControl, control.PutVoid()), S_OK);
        ComPtr<IAMAnalogVideoDecoder> decoder;
        ASSERT_EQ(device->QueryInterface(IID_IAMAnalogVideoDecoder, decoder.PutVoid()), S_OK);

        // Starts on NTSC_M, the signal is PAL.
        ASSERT_TRUE(SUCCEEDED(control->Run()));
        Sleep(2000);
        control->Stop();
        EXPECT_EQ(sink->Frames().size(), 0u);
        long locked = -1;
        EXPECT_EQ(decoder->get_HorizontalLocked(&locked), S_OK);
        EXPECT_EQ(locked, 0);

        ASSERT_EQ(decoder->put_TVFormat(AnalogVideo_PAL_B), S_OK);
        ASSERT_TRUE(SUCCEEDED(control->Run()));
        Sleep(4000);
        control->Stop();
        size_t frames = sink->Frames().size();
        // About 25 a second, less the moment the stream takes to start.
        EXPECT_GE(frames, 90u);
        EXPECT_LE(frames, 102u);
        graph->RemoveFilter(device.Get());
        graph->RemoveFilter(sink);
    }
    EXPECT_EQ(sink->NonDelegatingRelease(), 0u);
}
