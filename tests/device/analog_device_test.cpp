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
        DeviceChain chain;
        ASSERT_EQ(chain.Build(L"USB 2820 Device", {sink}, MEDIASUBTYPE_YUY2, 720, 576), S_OK);
        ComPtr<IAMAnalogVideoDecoder> decoder;
        ASSERT_EQ(chain.device->QueryInterface(IID_IAMAnalogVideoDecoder, decoder.PutVoid()), S_OK);

        // Starts on NTSC_M, the signal is PAL.
        chain.RunFor(2000);
        EXPECT_EQ(sink->Frames().size(), 0u);
        long locked = -1;
        EXPECT_EQ(decoder->get_HorizontalLocked(&locked), S_OK);
        EXPECT_EQ(locked, 0);

        ASSERT_EQ(decoder->put_TVFormat(AnalogVideo_PAL_B), S_OK);
        chain.RunFor(4000);
        size_t frames = sink->Frames().size();
        // About 25 a second, less the moment the stream takes to start.
        EXPECT_GE(frames, 90u);
        EXPECT_LE(frames, 102u);
    }
    EXPECT_EQ(sink->NonDelegatingRelease(), 0u);
}
