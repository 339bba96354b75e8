// A device's picture properties: set, reset to the default and reapplied
// from a saved configuration, each read back from the device itself; a
// property on automatic is left out; a device without any refuses them.
#include "engine/engine_fixture.h"

#include "persistence/options_file.h"
#include "video/device_properties.h"
#include "video/video_configuration.h"

using namespace enginetest;

namespace {

struct DeviceValue {
    long value = 0;
    long flags = 0;
};

DeviceValue ReadFromDevice(IBaseFilter* device, long property)
{
    DeviceValue read;
    ComPtr<IAMVideoProcAmp> procAmp;
    EXPECT_EQ(device->QueryInterface(IID_IAMVideoProcAmp, procAmp.PutVoid()), S_OK);
    if (procAmp) {
        EXPECT_EQ(procAmp->Get(property, &read.value, &read.flags), S_OK);
    }
    return read;
}

const long kProperties[6] = {VideoProcAmp_Brightness, VideoProcAmp_Contrast,  VideoProcAmp_Hue,
                             VideoProcAmp_Saturation, VideoProcAmp_Sharpness, VideoProcAmp_Gain};

}  // namespace

class DevicePropertiesTest : public EngineTest {
protected:
    void TearDown() override
    {
        for (VideoConfiguration* configuration : videoConfigurations)
            delete configuration;
        videoConfigurations.clear();
        EngineTest::TearDown();
    }

    // A configuration as the options file holds it, known before the
    // devices are listed, as at start-up.
    void SaveConfiguration(const wchar_t* value)
    {
        auto* configuration = new VideoConfiguration{};
        ASSERT_TRUE(SplitVConfig(value, *configuration));
        videoConfigurations.push_back(configuration);
    }
};

TEST_F(DevicePropertiesTest, BrightnessIsSetResetAndReappliedFromASavedConfiguration)
{
    SaveConfiguration(L"Cam|30|640x480|YUY2|33|60|10|70|5|20|DIGITAL");
    VideoSourceInfo* source = UseOneCamera();
    ASSERT_NE(source, nullptr);
    ASSERT_TRUE(source->brightness.available);
    EXPECT_EQ(source->brightness.defaultValue, 0);
    EXPECT_EQ(source->hasConfiguration, 1);

    EXPECT_EQ(SetPropertyValue(VideoProcAmp_Brightness, 20), S_OK);
    EXPECT_EQ(source->brightness.value, 20);
    EXPECT_EQ(ReadFromDevice(source->baseFilter, VideoProcAmp_Brightness).value, 20);
    EXPECT_EQ(ReadFromDevice(source->baseFilter, VideoProcAmp_Brightness).flags, VideoProcAmp_Flags_Manual);

    EXPECT_EQ(SetPropertyToDefault(VideoProcAmp_Brightness), S_OK);
    EXPECT_EQ(source->brightness.value, 0);
    EXPECT_EQ(ReadFromDevice(source->baseFilter, VideoProcAmp_Brightness).value, 0);

    // A value the device refuses (one past its maximum of 64) leaves the
    // record as it was.
    EXPECT_TRUE(FAILED(SetPropertyValue(VideoProcAmp_Brightness, 65)));
    EXPECT_EQ(source->brightness.value, 0);
    EXPECT_NE(TakeMessages().find(L"WARNING: cannot manually set property value\r\n"), std::wstring::npos);

    ApplySavedConfigurations();
    const long saved[6] = {33, 60, 10, 70, 5, 20};
    for (int i = 0; i < 6; ++i) {
        DeviceValue read = ReadFromDevice(source->baseFilter, kProperties[i]);
        EXPECT_EQ(read.value, saved[i]) << "property " << kProperties[i];
        EXPECT_EQ(read.flags, VideoProcAmp_Flags_Manual);
    }
    EXPECT_EQ(source->brightness.value, 33);
    EXPECT_TRUE(TakeMessages().empty());
}

TEST_F(DevicePropertiesTest, APropertyOnAutomaticIsLeftOutAndHasNoDefaultToReturnTo)
{
    SaveConfiguration(L"Auto|30|640x480|YUY2|40|60|X|70|5|20|DIGITAL");
    VideoSourceInfo* source = UseOneCamera(L"autobright", {}, L"Auto");
    ASSERT_NE(source, nullptr);
    EXPECT_FALSE(source->brightness.available);
    EXPECT_EQ(source->brightness.defaultValue, kNoValue);

    ApplySavedConfigurations();
    // The saved 40 isn't forced onto the automatic brightness.
    DeviceValue brightness = ReadFromDevice(source->baseFilter, VideoProcAmp_Brightness);
    EXPECT_EQ(brightness.value, 0);
    EXPECT_EQ(brightness.flags, VideoProcAmp_Flags_Auto);
    EXPECT_EQ(ReadFromDevice(source->baseFilter, VideoProcAmp_Contrast).value, 60);
    // A saved X is no value: the device refuses it, the walk goes on.
    EXPECT_EQ(source->hue.value, kNoValue);
    EXPECT_EQ(TakeMessages(), L"WARNING: unable to manually set an individual device property\r\n");
    EXPECT_EQ(ReadFromDevice(source->baseFilter, VideoProcAmp_Saturation).value, 70);

    EXPECT_EQ(SetPropertyToDefault(VideoProcAmp_Brightness), S_OK);
    EXPECT_EQ(ReadFromDevice(source->baseFilter, VideoProcAmp_Brightness).flags, VideoProcAmp_Flags_Auto);
}

TEST_F(DevicePropertiesTest, TheBareDeviceHasNoneAndItsDefaultsFailWithTheirLineAndSilentlyWithoutADevice)
{
    VideoSourceInfo* source = UseOneCamera(L"bare", {}, L"Bare");
    // That it offers none: the Device Properties scenario of a device without picture properties.
    ASSERT_NE(source, nullptr);
    EXPECT_EQ(SetPropertyValue(VideoProcAmp_Brightness, 1), E_NOINTERFACE);
    EXPECT_EQ(ApplyDeviceProperties(0), E_FAIL);
    EXPECT_EQ(TakeMessages(), L"WARNING: attempt to set device properties such as brightness and contrast failed\r\n");
    // Its Set Default Values line: the Device Properties scenario of a device without picture properties.
    currentSourceIndex = kNoSource;
    EXPECT_EQ(SetPropertiesToDefaults(), E_FAIL);
    EXPECT_TRUE(TakeMessages().empty());
}
