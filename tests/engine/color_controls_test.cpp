// The brightness tool's colour filters: without the "Color Control" effect
// (as the platform is) the tool says so at each start and the camera runs;
// with the test stand-in registered, the sliders' values reach the effect
// and change the preview's frames and, with the file box, the recording.
#include "engine/engine_fixture.h"

#include "support/ffprobe.h"
#include "support/stand_ins.h"
#include "video/capture_settings.h"
#include "video/codecs.h"

#include <algorithm>

using namespace enginetest;

namespace {

constexpr wchar_t kNotInstalled[] = L"\r\nThe DMO color control filter is not installed - no brightness/contrast\r\n";

// The effect's keys as its users know them, written out apart from the
// program's own.
constexpr GUID kValueFormat = {0x174fb0ec, 0x2695, 0x476c, {0x88, 0xaa, 0xd2, 0xb4, 0x1c, 0xe7, 0x5e, 0x67}};
constexpr PROPERTYKEY kBrightness = {kValueFormat, 1};
constexpr PROPERTYKEY kContrast = {kValueFormat, 2};

int32_t ValueIn(IPropertyStore* store, const PROPERTYKEY& key)
{
    PROPVARIANT value;
    PropVariantInit(&value);
    EXPECT_EQ(store->GetValue(key, &value), S_OK);
    EXPECT_EQ(value.vt, VT_I4);
    int32_t number = value.lVal;
    PropVariantClear(&value);
    return number;
}

// The median background level of the frames a sink received, or of a
// recording's frames.
double Median(std::vector<double> levels)
{
    if (levels.empty())
        return -1;
    std::sort(levels.begin(), levels.end());
    return levels[levels.size() / 2];
}

double MedianBackground(const std::vector<devicetest::ReceivedFrame>& frames)
{
    std::vector<double> levels;
    for (const devicetest::ReceivedFrame& frame : frames)
        levels.push_back(frame.background);
    return Median(levels);
}

// The sky's background lies at 30 to 34.
constexpr double kSky = synthcam::kBackgroundLevel;

const std::vector<std::string> kPreviewWithColor = {
    "Cam.Capture -> Smart Tee.Input",
    "Color Control Render.out0 -> VMR9.VMR Input0",
    "Smart Tee.Preview -> Color Control Render.in0",
};

}  // namespace

class ColorControlTest : public EngineTest {
protected:
    void StartWebcamWithTheTool()
    {
        ASSERT_TRUE(UseOneCamera());
        brightnessContrastOn = 1;
    }
};

TEST_F(ColorControlTest, WithoutTheEffectTheToolSaysSoAtEachStartAndTheCameraRuns)
{
    // A player's construction looks once.
    RemakePlayer();
    EXPECT_EQ(TakeMessages(), kNotInstalled);
    EXPECT_FALSE(player->renderColorFilter);
    EXPECT_FALSE(player->captureColorFilter);
    StartWebcamWithTheTool();
    for (int start = 0; start < 2; ++start) {
        ASSERT_EQ(player->StartCamera(false, L""), S_OK);
        EXPECT_EQ(TakeMessages(), kNotInstalled) << "start " << start;
        EXPECT_EQ(Connections(),
                  (std::vector<std::string>{"Cam.Capture -> Smart Tee.Input", "Smart Tee.Preview -> VMR9.VMR Input0"}));
        EXPECT_EQ(player->graphState, GraphRunning);
    }
    player->SetColorControls(50, 50);
    EXPECT_EQ(TakeMessages(),
              L"Logic error: attemp to set render brightness control with NULL property store cache\r\n");
    EXPECT_EQ(player->StopCamera(false, L"", RecordingNotes{}), S_OK);
}

TEST_F(ColorControlTest, SliderPositionsReachTheEffectMappedAndThePreviewChangesByThem)
{
    testsupport::RegisteredColorControl effect;
    StartWebcamWithTheTool();
    TakeMessages();
    // The start makes the filters it finds missing while the tool is on.
    ASSERT_EQ(player->StartCamera(false, L""), S_OK);
    EXPECT_EQ(TakeMessages().find(kNotInstalled), std::wstring::npos);
    ASSERT_TRUE(player->renderColorStore);
    ASSERT_TRUE(player->captureColorStore);
    EXPECT_EQ(Connections(), kPreviewWithColor);

    // The brightness slider's position, mapped as the mapping's own test has it, goes to both filters.
    player->SetColorControls(100, -1);
    EXPECT_EQ(ValueIn(player->renderColorStore.Get(), kBrightness), 127);
    EXPECT_EQ(ValueIn(player->captureColorStore.Get(), kBrightness), 127);
    EXPECT_EQ(ValueIn(player->renderColorStore.Get(), kContrast), 0);
    // A negative slider leaves its value alone.
    player->SetColorControls(-1, 40);
    EXPECT_EQ(ValueIn(player->renderColorStore.Get(), kBrightness), 127);
    EXPECT_EQ(ValueIn(player->renderColorStore.Get(), kContrast), -26);
    EXPECT_TRUE(TakeMessages().empty());

    // The preview's frames, taken where the renderer stood: the median background of a second of them at those
    // slider positions.
    devicetest::Held<devicetest::TestSink> sink;
    PreviewInto(sink);
    auto backgroundAt = [&](int32_t brightness, int32_t contrast) {
        player->SetColorControls(brightness, contrast);
        Sleep(300);
        sink->Clear();
        Sleep(1000);
        EXPECT_GT(sink->Frames().size(), 15u);
        return MedianBackground(sink->Frames());
    };
    EXPECT_NEAR(backgroundAt(50, 50), kSky, 2.5);
    EXPECT_NEAR(backgroundAt(75, -1), kSky + 63, 2.5);
    // Contrast: a gain of 255/128 above black (16).
    EXPECT_NEAR(backgroundAt(50, 100), (kSky - 16) * 255 / 128 + 16, 3);
    player->mediaControl->Stop();
    player->RemoveGraphFilters();
}

TEST_F(ColorControlTest, WithTheFileBoxTheRecordingChangesAndTheContrastSliderMovesTheFilesBrightness)
{
    testsupport::RegisteredColorControl effect;
    StartWebcamWithTheTool();
    ASSERT_EQ(player->CreateColorControlFilters(), S_OK);
    std::string folder = devicetest::WorkFolder("engine-color");

    // Without the box the file gets the camera's own picture.
    player->SetColorControls(100, 50);
    std::string plain = folder + "/plain.avi";
    RecordFor(std::wstring(plain.begin(), plain.end()), 2000, nullptr, [&] {
        EXPECT_EQ(Connections(),
                  (std::vector<std::string>{
                      "AVI Mux.AVI Out -> File Writer.in",
                      "Cam.Capture -> Smart Tee.Input",
                      "Capture Queue.Out -> AVI Mux.Input 01",
                      "Color Control Render.out0 -> Preview Queue.In",
                      "Preview Queue.Out -> VMR9.VMR Input0",
                      "Smart Tee.Capture -> Capture Queue.In",
                      "Smart Tee.Preview -> Color Control Render.in0",
                  }));
    });
    EXPECT_NEAR(Median(testsupport::ReadRecordedBackgrounds(plain, 640, 480)), kSky, 2.5);

    // With it, the file's own filter stands on the capture branch. The
    // contrast slider at 100 writes 127 under the file filter's brightness
    // key, and its contrast stays: the file comes out 127 brighter, not
    // with twice the contrast.
    colorInCaptureFile = 1;
    player->SetColorControls(50, 100);
    EXPECT_EQ(ValueIn(player->captureColorStore.Get(), kBrightness), 127);
    EXPECT_EQ(ValueIn(player->captureColorStore.Get(), kContrast), 0);
    EXPECT_EQ(ValueIn(player->renderColorStore.Get(), kBrightness), 0);
    EXPECT_EQ(ValueIn(player->renderColorStore.Get(), kContrast), 127);
    std::string colored = folder + "/colored.avi";
    std::string report = RecordFor(std::wstring(colored.begin(), colored.end()), 2000, nullptr, [&] {
        EXPECT_EQ(Connections(),
                  (std::vector<std::string>{
                      "AVI Mux.AVI Out -> File Writer.in",
                      "Cam.Capture -> Smart Tee.Input",
                      "Capture Queue.Out -> AVI Mux.Input 01",
                      "Color Control Capture.out0 -> Capture Queue.In",
                      "Color Control Render.out0 -> Preview Queue.In",
                      "Preview Queue.Out -> VMR9.VMR Input0",
                      "Smart Tee.Capture -> Color Control Capture.in0",
                      "Smart Tee.Preview -> Color Control Render.in0",
                  }));
    });
    EXPECT_NE(report.find("Codec: NONE"), std::string::npos) << report;
    testsupport::ProbedVideo video = testsupport::ProbeVideo(colored);
    ASSERT_TRUE(video.ok) << video.raw;
    EXPECT_EQ(video.codecTag, "YUY2");
    EXPECT_NEAR(video.frames, 60, 10);
    EXPECT_NEAR(Median(testsupport::ReadRecordedBackgrounds(colored, 640, 480)), kSky + 127, 2.5);
}
