// The system device enumerator lists exactly the synthetic devices added,
// by name, and forgets one that is removed (an unplug).
#include "device/graph_helpers.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace devicetest;

namespace {

std::vector<std::wstring> Sorted(std::vector<std::wstring> names)
{
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

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

TEST(DeviceList, EachProfileGivesItsInterfacesAndFormats)
{
    SyntheticDevices devices;
    ASSERT_TRUE(devices.Add(L"Cam", L"webcam"));
    ASSERT_TRUE(devices.Add(L"Bare", L"bare"));
    ASSERT_TRUE(devices.Add(L"USB 2861 Device", L"usb2861", L"pal"));
    ASSERT_TRUE(devices.Add(L"Decoder", L"pald"));
    ASSERT_TRUE(devices.Add(L"Auto", L"autobright"));
    ASSERT_TRUE(devices.Add(L"Two Pins", L"preview"));

    ComPtr<IBaseFilter> webcam = BindDevice(L"Cam");
    ASSERT_TRUE(webcam);
    ComPtr<IAMVideoProcAmp> procAmp;
    ASSERT_EQ(webcam->QueryInterface(IID_IAMVideoProcAmp, procAmp.PutVoid()), S_OK);
    long minimum, maximum, step, defaultValue, flags, value;
    ASSERT_EQ(procAmp->GetRange(VideoProcAmp_Brightness, &minimum, &maximum, &step, &defaultValue, &flags), S_OK);
    EXPECT_EQ(minimum, -64);
    EXPECT_EQ(maximum, 64);
    EXPECT_EQ(procAmp->Set(VideoProcAmp_Brightness, 20, VideoProcAmp_Flags_Manual), S_OK);
    EXPECT_EQ(procAmp->Get(VideoProcAmp_Brightness, &value, &flags), S_OK);
    EXPECT_EQ(value, 20);
    EXPECT_EQ(procAmp->Set(VideoProcAmp_Brightness, 65, VideoProcAmp_Flags_Manual), E_INVALIDARG);
    ComPtr<IAMAnalogVideoDecoder> decoder;
    EXPECT_EQ(webcam->QueryInterface(IID_IAMAnalogVideoDecoder, decoder.PutVoid()), E_NOINTERFACE);
    ComPtr<IPin> capture = FindPin(webcam.Get(), L"Capture");
    ASSERT_TRUE(capture);
    ComPtr<IKsPropertySet> properties;
    ASSERT_EQ(capture->QueryInterface(IID_IKsPropertySet, properties.PutVoid()), S_OK);
    GUID category = GUID_NULL;
    DWORD returned = 0;
    ASSERT_EQ(properties->Get(AMPROPSETID_Pin, AMPROPERTY_PIN_CATEGORY, nullptr, 0, &category, sizeof(category),
                              &returned),
              S_OK);
    EXPECT_EQ(category, PIN_CATEGORY_CAPTURE);
    ComPtr<IAMStreamConfig> config;
    ASSERT_EQ(capture->QueryInterface(IID_IAMStreamConfig, config.PutVoid()), S_OK);
    int count = 0, size = 0;
    ASSERT_EQ(config->GetNumberOfCapabilities(&count, &size), S_OK);
    EXPECT_EQ(count, 10);
    EXPECT_EQ(size, static_cast<int>(sizeof(VIDEO_STREAM_CONFIG_CAPS)));

    ComPtr<IBaseFilter> bare = BindDevice(L"Bare");
    ASSERT_TRUE(bare);
    EXPECT_EQ(bare->QueryInterface(IID_IAMVideoProcAmp, procAmp.PutVoid()), E_NOINTERFACE);
    ComPtr<IAMDroppedFrames> dropped;
    EXPECT_EQ(FindPin(bare.Get(), L"Capture")->QueryInterface(IID_IAMDroppedFrames, dropped.PutVoid()),
              E_NOINTERFACE);

    ComPtr<IBaseFilter> grabber = BindDevice(L"USB 2861 Device");
    ASSERT_TRUE(grabber);
    ASSERT_EQ(grabber->QueryInterface(IID_IAMAnalogVideoDecoder, decoder.PutVoid()), S_OK);
    long standard = 0;
    EXPECT_EQ(decoder->get_TVFormat(&standard), S_OK);
    EXPECT_EQ(standard, AnalogVideo_NTSC_M);
    EXPECT_EQ(decoder->put_TVFormat(AnalogVideo_PAL_B), S_OK);
    EXPECT_EQ(decoder->get_TVFormat(&standard), S_OK);
    EXPECT_EQ(standard, AnalogVideo_PAL_B);

    ComPtr<IBaseFilter> pald = BindDevice(L"Decoder");
    ASSERT_EQ(pald->QueryInterface(IID_IAMAnalogVideoDecoder, decoder.PutVoid()), S_OK);
    EXPECT_EQ(decoder->get_TVFormat(&standard), S_OK);
    EXPECT_EQ(standard, AnalogVideo_PAL_D);

    ComPtr<IBaseFilter> automatic = BindDevice(L"Auto");
    ASSERT_EQ(automatic->QueryInterface(IID_IAMVideoProcAmp, procAmp.PutVoid()), S_OK);
    EXPECT_EQ(procAmp->Get(VideoProcAmp_Brightness, &value, &flags), S_OK);
    EXPECT_EQ(flags, VideoProcAmp_Flags_Auto);
    EXPECT_EQ(procAmp->Get(VideoProcAmp_Contrast, &value, &flags), S_OK);
    EXPECT_EQ(flags, VideoProcAmp_Flags_Manual);

    ComPtr<IBaseFilter> twoPins = BindDevice(L"Two Pins");
    ComPtr<IPin> preview = FindPin(twoPins.Get(), L"Preview");
    ASSERT_TRUE(preview);
    ASSERT_EQ(preview->QueryInterface(IID_IKsPropertySet, properties.PutVoid()), S_OK);
    ASSERT_EQ(properties->Get(AMPROPSETID_Pin, AMPROPERTY_PIN_CATEGORY, nullptr, 0, &category, sizeof(category),
                              &returned),
              S_OK);
    EXPECT_EQ(category, PIN_CATEGORY_PREVIEW);
}
