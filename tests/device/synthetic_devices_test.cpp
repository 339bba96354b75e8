// The synthetic devices as the system sees them: the enumerator lists
// exactly the devices added, by name, and forgets one removed. A device
// pulled as a cable would be: its running filter stops delivering, the
// device leaves the list, and plugged back under the same name it streams
// again. A grabber set to its signal's standard delivers at that rate.
#include "device/graph_helpers.h"
#include "device/test_filters.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace devicetest;

namespace {

std::vector<std::wstring> Sorted(std::vector<std::wstring> names)
{
    std::sort(names.begin(), names.end());
    return names;
}

bool Listed(const std::wstring& name)
{
    std::vector<std::wstring> names = DeviceNames();
    return std::find(names.begin(), names.end(), name) != names.end();
}

// The device's capture pin straight into a test sink, running.
struct SinkGraph {
    TestSink* sink = new TestSink;
    DeviceChain chain;

    SinkGraph() { sink->NonDelegatingAddRef(); }
    ~SinkGraph()
    {
        chain.TearDown();
        sink->NonDelegatingRelease();
    }
    bool Run(const std::wstring& name)
    {
        return chain.Build(name, {sink}) == S_OK && SUCCEEDED(chain.control->Run());
    }
};

}  // namespace

TEST(DevicePull, APulledDeviceStopsDeliveringAndLeavesTheList)
{
    SyntheticDevices devices;
    ASSERT_TRUE(devices.Add(L"Pull Cam", L"webcam"));
    SinkGraph run;
    ASSERT_TRUE(run.Run(L"Pull Cam"));
    Sleep(1500);
    ASSERT_GT(run.sink->Frames().size(), 20u);

    ASSERT_TRUE(devices.Pull(L"Pull Cam"));
    // A frame already on its way may still land.
    Sleep(200);
    size_t atPull = run.sink->Frames().size();
    Sleep(1000);
    EXPECT_EQ(run.sink->Frames().size(), atPull);
    EXPECT_FALSE(Listed(L"Pull Cam"));
}

TEST(DevicePull, PluggedBackUnderTheSameNameTheDeviceStreamsAgain)
{
    SyntheticDevices devices;
    ASSERT_TRUE(devices.Add(L"Pull Cam", L"webcam"));
    ASSERT_TRUE(devices.Add(L"Other Cam", L"webcam"));
    ComPtr<IBaseFilter> old = BindDevice(L"Pull Cam");
    ASSERT_TRUE(old);
    ASSERT_TRUE(devices.Pull(L"Pull Cam"));
    // Pulling one device leaves its neighbour alone.
    EXPECT_TRUE(Listed(L"Other Cam"));
    EXPECT_FALSE(devices.Pull(L"Pull Cam"));

    ASSERT_TRUE(devices.Add(L"Pull Cam", L"webcam"));
    EXPECT_TRUE(Listed(L"Pull Cam"));
    SinkGraph run;
    ASSERT_TRUE(run.Run(L"Pull Cam"));
    EXPECT_NE(run.chain.device.Get(), old.Get());
    Sleep(1500);
    std::vector<ReceivedFrame> frames = run.sink->Frames();
    ASSERT_GT(frames.size(), 20u);
    // A new plugging in counts its frames from the start. A gap is only a
    // slot the camera missed, and it marks the frame after one as a
    // discontinuity.
    EXPECT_LT(frames.front().stamp.counter, 10u);
    for (size_t i = 1; i < frames.size(); ++i) {
        EXPECT_GT(frames[i].stamp.counter, frames[i - 1].stamp.counter);
        if (frames[i].stamp.counter != frames[i - 1].stamp.counter + 1) {
            EXPECT_TRUE(frames[i].discontinuity) << "frame " << i;
        }
    }
}

TEST(DevicePull, ASlowDeviceHoldsTheGraphsStartForItsDelay)
{
    SyntheticDevices devices;
    ASSERT_TRUE(devices.Add(L"Slow Cam", L"webcam", L"ntsc", {.startDelayMs = 1500}));
    SinkGraph run;
    DWORD before = GetTickCount();
    ASSERT_TRUE(run.Run(L"Slow Cam"));
    DWORD took = GetTickCount() - before;
    EXPECT_GE(took, 1400u);
    EXPECT_LT(took, 5000u);
}

TEST(DeviceList, ListsExactlyTheAddedDevicesAndDropsARemovedOne)
{
    SyntheticDevices devices;
    EXPECT_TRUE(DeviceNames().empty());

    ASSERT_TRUE(devices.Add(L"Alpha Cam", L"webcam"));
    ASSERT_TRUE(devices.Add(L"Kamera \u00c4", L"webcam"));
    ASSERT_TRUE(devices.Add(L"Twin Cam", L"bare"));
    ASSERT_TRUE(devices.Add(L"Twin Cam", L"small"));
    EXPECT_EQ(Sorted(DeviceNames()),
              (std::vector<std::wstring>{L"Alpha Cam", L"Kamera \u00c4", L"Twin Cam", L"Twin Cam"}));

    ASSERT_TRUE(devices.Remove(L"Alpha Cam"));
    ASSERT_TRUE(devices.Remove(L"Twin Cam"));
    EXPECT_EQ(Sorted(DeviceNames()), (std::vector<std::wstring>{L"Kamera \u00c4", L"Twin Cam"}));
    EXPECT_FALSE(devices.Remove(L"Alpha Cam"));

    // Plugged back in, it is listed again and can be bound.
    ASSERT_TRUE(devices.Add(L"Alpha Cam", L"webcam"));
    EXPECT_TRUE(BindDevice(L"Alpha Cam"));
}

TEST(AnalogDevice, OnPalTheGrabberDeliversAtPalRate)
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

        // The decoder starts on NTSC_M; the signal is PAL.
        ASSERT_EQ(decoder->put_TVFormat(AnalogVideo_PAL_B), S_OK);
        chain.RunFor(4000);
        size_t frames = sink->Frames().size();
        // About 25 a second, less the moment the stream takes to start.
        EXPECT_GE(frames, 90u);
        EXPECT_LE(frames, 102u);
    }
    EXPECT_EQ(sink->NonDelegatingRelease(), 0u);
}
