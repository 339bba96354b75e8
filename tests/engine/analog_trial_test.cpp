// The analog standard found by trial on the two named grabbers: a decoder on
// the signal's standard draws frames, one on the other standard none. The
// trial counts frames through VMR7; this platform's VMR7 can't count, so the
// tests that need the count put the stand-in renderer under VMR7's class id.
#include "engine/engine_fixture.h"

#include "tools/vmr7standin/registration.h"
#include "video/analog_standard.h"
#include "video/device_hot_plug.h"

using namespace enginetest;

namespace {

long DecoderStandard(VideoSourceInfo* source)
{
    ComPtr<IAMAnalogVideoDecoder> decoder;
    long standard = 0;
    if (FAILED(source->baseFilter->QueryInterface(IID_IAMAnalogVideoDecoder, decoder.PutVoid())) ||
        FAILED(decoder->get_TVFormat(&standard)))
        return -1;
    return standard;
}

const VideoFormatsByFrameRate* SelectedGroup(VideoSourceInfo* source)
{
    return source->frameRates[source->currentFrameRateIndex];
}

}  // namespace

class AnalogTrialTest : public EngineTest {
protected:
    // One grabber, listed and validated with the stand-in in place; null
    // when it wasn't accepted.
    VideoSourceInfo* ValidateOne(const wchar_t* name, const wchar_t* profile, const wchar_t* signal,
                                 long frameLimit = 0)
    {
        if (!standIn.Installed() || !devices.Add(name, profile, signal, {.frameLimit = frameLimit}))
            return nullptr;
        ScanDevices();
        return Source(name);
    }

    vmr7standin::StandInRegistration standIn;
};

// What validation makes of one grabber: a PAL signal found on a named
// grabber, an NTSC one kept without a line, a named grabber without 720x576
// at 25 warned of and left on NTSC, and another grabber not tried at all;
// six frames drawn in the trial count as PAL, five as NTSC.
TEST_F(AnalogTrialTest, ValidationTriesTheNamedGrabbersAndChoosesTheGroupOfTheStandardFound)
{
    const struct {
        const wchar_t* name;
        const wchar_t* profile;
        const wchar_t* signal;
        const wchar_t* messages;
        DeviceStandard standard;
        int32_t autoDetect, autoDetectCapable;
        const wchar_t* rate;
        const wchar_t* format;
        long decoder;
        long frameLimit = 0;
    } rows[] = {
        {L"USB 2861 Device", L"usb2861", L"ntsc", L"", StandardNTSC, 1, 1, L"30", L"720x480", kDecoderNtscM},
        {L"USB 2820 Device", L"grabber480", L"pal",
         L"WARNING: PAL analog formats cannot be found during call to TestAnalogDeviceFormat\r\n", StandardNTSC, 0, 1,
         L"30", L"720x480", kDecoderNtscM},
        {L"Other Grabber", L"usb2820", L"pal", L"", StandardNTSC, 0, 0, L"30", L"720x480", kDecoderNtscM},
        {L"USB 2820 Device", L"usb2820", L"pal",
         L"Auto Detect: device \"USB 2820 Device\" format changed from NTSC to PAL\r\n", StandardPAL, 1, 1, L"25",
         L"720x576", kDecoderPalB, 6},
        {L"USB 2861 Device", L"usb2861", L"pal", L"", StandardNTSC, 1, 1, L"30", L"720x480", kDecoderNtscM, 5},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << "row " << &row - rows);
        devicetest::SyntheticDevices fresh;
        TearDown();
        SetUp();
        VideoSourceInfo* grabber = ValidateOne(row.name, row.profile, row.signal, row.frameLimit);
        ASSERT_NE(grabber, nullptr);
        EXPECT_EQ(TakeMessages(), row.messages);
        EXPECT_EQ(grabber->deviceStandard, row.standard);
        EXPECT_EQ(grabber->autoDetect, row.autoDetect);
        EXPECT_EQ(grabber->autoDetectCapable, row.autoDetectCapable);
        EXPECT_STREQ(SelectedGroup(grabber)->frameRateText, row.rate);
        ASSERT_NE(SelectedFormatOf(grabber), nullptr);
        EXPECT_STREQ(SelectedFormatOf(grabber)->videoFormatName, row.format);
        EXPECT_EQ(DecoderStandard(grabber), row.decoder);
        // Only the rate of the standard in use can be chosen.
        for (const VideoFormatsByFrameRate* group : grabber->frameRates)
            EXPECT_EQ(group->enabled, std::wstring(group->frameRateText) == row.rate ? 1 : 0) << group->frameRateText;
    }
}

TEST_F(AnalogTrialTest, ADecoderLeftOnPalUnderAnNtscSignalIsFoundWrongAndPutBack)
{
    VideoSourceInfo* grabber = ValidateOne(L"USB 2861 Device", L"usb2861", L"ntsc");
    ASSERT_NE(grabber, nullptr);
    TakeMessages();
    ComPtr<IAMAnalogVideoDecoder> decoder;
    ASSERT_EQ(grabber->baseFilter->QueryInterface(IID_IAMAnalogVideoDecoder, decoder.PutVoid()), S_OK);
    ASSERT_EQ(decoder->put_TVFormat(kDecoderPalB), S_OK);
    grabber->deviceStandard = StandardPAL;
    player->AutoSetAnalogDeviceFormat(grabber);
    EXPECT_EQ(TakeMessages(), L"Auto Detect: device \"USB 2861 Device\" format changed from PAL to NTSC\r\n");
    EXPECT_EQ(grabber->deviceStandard, StandardNTSC);
    EXPECT_STREQ(SelectedGroup(grabber)->frameRateText, L"30");
    EXPECT_EQ(DecoderStandard(grabber), kDecoderNtscM);
}

TEST_F(AnalogTrialTest, AGrabberPluggedInLaterIsTriedAsItIsValidated)
{
    ASSERT_TRUE(standIn.Installed());
    ASSERT_TRUE(devices.Add(L"Cam", L"webcam"));
    ScanDevices();
    TakeMessages();
    ASSERT_TRUE(devices.Add(L"USB 2820 Device", L"usb2820", L"pal"));
    int32_t index = -1;
    EXPECT_EQ(UpdateSourceVideoInfoList(&index), NewDeviceAppended);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(TakeMessages(), L"Auto Detect: device \"USB 2820 Device\" format changed from NTSC to PAL\r\n");
    EXPECT_EQ(videoSources[1]->deviceStandard, StandardPAL);
}

TEST_F(AnalogTrialTest, TheStandardSetByHandGoesToTheCurrentDevicesDecoder)
{
    ASSERT_TRUE(devices.Add(L"Cam", L"webcam"));
    ASSERT_TRUE(devices.Add(L"Other Grabber", L"usb2820", L"ntsc"));
    ScanDevices();
    TakeMessages();
    EXPECT_EQ(player->SetAnalogDeviceFormat(StandardPAL), E_FAIL);
    EXPECT_EQ(TakeMessages(),
              L"Logic error: current source index is out-of-range in call to SetAnalogDeviceFormat\r\n");
    currentSourceIndex = 1;
    EXPECT_EQ(player->SetAnalogDeviceFormat(StandardPAL), S_OK);
    EXPECT_EQ(DecoderStandard(videoSources[1]), kDecoderPalB);
    // The record is the caller's to change.
    EXPECT_EQ(videoSources[1]->deviceStandard, StandardNTSC);
    EXPECT_EQ(player->SetAnalogDeviceFormat(StandardDigital), E_FAIL);
    EXPECT_EQ(TakeMessages(), L"Logic error: input device format is not analog in call to SetAnalogDeviceFormat\r\n");
    currentSourceIndex = 0;
    EXPECT_EQ(player->SetAnalogDeviceFormat(StandardPAL), E_FAIL);
    EXPECT_EQ(TakeMessages(), L"WARNING: analog video decoder interface is NULL in SetAnalogDeviceFormat\r\n");
}

// This platform's VMR7 has no IQualProp: the first trial can't make the
// renderer, and a later one finds the renderer made but can't count.
TEST_F(EngineTest, WithThePlatformsVmr7TheTrialCannotCountAndSaysSo)
{
    ASSERT_TRUE(devices.Add(L"USB 2820 Device", L"usb2820", L"pal"));
    ScanDevices();
    VideoSourceInfo* grabber = Source(L"USB 2820 Device");
    ASSERT_NE(grabber, nullptr);
    EXPECT_EQ(TakeMessages(),
              L"WARNING: cannot add video rendering filter to filter graph during call to "
              L"TestAnalogDeviceFormat\r\nWARNING: call to TestAnalogDeviceFormat failed in "
              L"AutoSetAnalogDeviceFormat\r\n");
    // A failed trial changes nothing: the first group, as discovered.
    EXPECT_EQ(grabber->deviceStandard, StandardNTSC);
    EXPECT_EQ(grabber->autoDetect, 1);
    EXPECT_EQ(grabber->currentFrameRateIndex, 0u);
    for (const VideoFormatsByFrameRate* group : grabber->frameRates)
        EXPECT_EQ(group->enabled, 1) << group->frameRateText;

    int32_t changed = 7;
    EXPECT_EQ(player->TestAnalogDeviceFormat(grabber, &changed), E_FAIL);
    EXPECT_EQ(changed, 0);
    EXPECT_EQ(TakeMessages(),
              L"Logic error: unexpected NULL pointer to IQualProp interface in TestAnalogDeviceFormat\r\n");
    EXPECT_EQ(grabber->autoDetect, 0);
    EXPECT_EQ(DecoderStandard(grabber), kDecoderNtscM);
}
