// The installed codecs, the trial against the current device and format,
// and a recording through the codec paired with the format's subtype.
#include "engine/engine_fixture.h"

#include "support/ffprobe.h"
#include "support/frame_time_rows.h"
#include "support/recorded_frames.h"
#include "support/stand_ins.h"
#include "tools/standins/test_compressor.h"
#include "video/codec_choice.h"
#include "video/codecs.h"

#include <algorithm>

using namespace enginetest;

namespace {

std::vector<std::wstring> Names(const std::vector<CodecRecord*>& codecs)
{
    std::vector<std::wstring> names;
    for (const CodecRecord* codec : codecs)
        names.push_back(codec->name);
    return names;
}

HRESULT RestartPreview()
{
    return CurrentVideoPlayer()->StartCamera(false, L"");
}

}  // namespace

class CodecTest : public EngineTest {
protected:
    // The trial for the webcam's format of that subtype and size.
    std::vector<std::wstring> Trial(VideoSubtype subtype, int width = 640, int height = 480)
    {
        EXPECT_TRUE(SelectFormat(videoSources[0], subtype, width, height));
        EXPECT_EQ(player->StartCamera(false, L""), S_OK);
        TakeMessages();
        EXPECT_EQ(player->GetCodecsForSourceDevice(RestartPreview), S_OK) << testing::PrintToString(TakeMessages());
        EXPECT_EQ(usableCodecs.size(), usableCodecIndexes.size());
        for (size_t i = 0; i < usableCodecs.size(); ++i)
            EXPECT_EQ(installedCodecs[usableCodecIndexes[i]], usableCodecs[i]);
        // The camera is back.
        EXPECT_EQ(player->graphState, GraphRunning);
        return Names(usableCodecs);
    }
};

// The test compressor registered, a player made after it, and the webcam as
// the current device.
class CompressorTest : public CodecTest {
protected:
    void SetUp() override
    {
        CodecTest::SetUp();
        compressor = std::make_unique<testsupport::RegisteredTestCompressor>();
        RemakePlayer();
        ASSERT_TRUE(UseOneCamera());
    }
    void TearDown() override
    {
        CodecTest::TearDown();
        compressor.reset();
    }

    std::unique_ptr<testsupport::RegisteredTestCompressor> compressor;
};

TEST_F(CodecTest, TheListIsNoneThenTheCompressorCategoryInEnumeratorOrderDuplicatesKept)
{
    // As the prefix is (Wine's own compressors), then with a compressor
    // registered twice under one name: two records.
    for (bool withCompressor : {false, true}) {
        std::unique_ptr<testsupport::RegisteredTestCompressor> compressor;
        if (withCompressor) {
            compressor = std::make_unique<testsupport::RegisteredTestCompressor>();
            RemakePlayer();
        }
        std::vector<std::wstring> expected = devicetest::DeviceNames(CLSID_VideoCompressorCategory);
        expected.insert(expected.begin(), L"NONE");
        EXPECT_EQ(Names(installedCodecs), expected);
        EXPECT_EQ(std::count(expected.begin(), expected.end(), std::wstring(standins::kTestCompressorName)),
                  withCompressor ? 2 : 0);
        EXPECT_EQ(installedCodecs[0]->filter, nullptr);
        for (size_t i = 1; i < installedCodecs.size(); ++i)
            EXPECT_NE(installedCodecs[i]->filter, nullptr);
    }
}

TEST_F(CompressorTest, TheTrialListsAYuy2OnlyCompressorForYuy2AndNotForRgb24)
{
    EXPECT_EQ(Trial(SubtypeRGB24), std::vector<std::wstring>{L"NONE"});
    // None of Wine's own compressors takes a format of the camera at either size.
    // Its input pin has a name of its own: pins go by direction.
    EXPECT_EQ(Trial(SubtypeYUY2, 1280, 720),
              (std::vector<std::wstring>{L"NONE", standins::kTestCompressorName, standins::kTestCompressorName}));
    // No scratch file is written: the trial graph never runs.
    EXPECT_EQ(GetFileAttributesW(L"bogus.avi"), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(player->StopCamera(false, L"", RecordingNotes{}), S_OK);
}

// A trial that fails once the camera is stopped names its step, leaves both
// lists empty and the camera stopped: it doesn't start it again.
TEST_F(CompressorTest, AFailedTrialNamesItsStepLeavesTheListsEmptyAndTheCameraStopped)
{
    struct Case {
        const char* what;
        const wchar_t* line;
        std::function<std::function<void()>(VideoSourceInfo*)> spoil;  // gives the undo
    } cases[] = {
        {"the format index beyond the rate's formats",
         L"Logic error: getting codecs for an out-of-range video format\r\n",
         [](VideoSourceInfo* source) -> std::function<void()> {
             VideoFormatsByFrameRate* rate = source->frameRates[source->currentFrameRateIndex];
             const uint32_t kept = rate->currentFormatIndex;
             rate->currentFormatIndex = static_cast<uint32_t>(rate->formats.size());
             return [rate, kept] { rate->currentFormatIndex = kept; };
         }},
        {"a format the device refuses",
         L"WARNING: cannot set video format using stream configuration interface in GetCodecsForSourceDevice\r\n",
         [](VideoSourceInfo* source) -> std::function<void()> {
             VideoFormatsByFrameRate* rate = source->frameRates[source->currentFrameRateIndex];
             auto* info = reinterpret_cast<VIDEOINFOHEADER*>(rate->formats[rate->currentFormatIndex]->mediaType->pbFormat);
             const LONG kept = info->bmiHeader.biWidth;
             info->bmiHeader.biWidth = 123;
             return [info, kept] { info->bmiHeader.biWidth = kept; };
         }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ASSERT_TRUE(SelectFormat(videoSources[0], SubtypeYUY2, 640, 480));
        ASSERT_EQ(player->StartCamera(false, L""), S_OK);
        ASSERT_EQ(Trial(SubtypeYUY2).size(), 3u);
        std::function<void()> undo = c.spoil(videoSources[0]);
        TakeMessages();
        EXPECT_EQ(player->GetCodecsForSourceDevice(RestartPreview), E_FAIL);
        undo();
        EXPECT_NE(TakeMessages().find(c.line), std::wstring::npos);
        EXPECT_TRUE(usableCodecs.empty());
        EXPECT_TRUE(usableCodecIndexes.empty());
        // Stopped as the trial's stop left it: a start, even one that
        // fails, would have built the graph anew.
        EXPECT_EQ(player->graphState, GraphBuilt) << "the camera was started again";
    }
}

TEST_F(CompressorTest, ARecordingThroughThePairedCompressorIsWrittenInItsCodecAndTheReportNamesIt)
{
    ASSERT_EQ(Trial(SubtypeYUY2).size(), 3u);
    EXPECT_EQ(SelectUsableCodec(1, CurrentSubtype(), false), S_OK);
    EXPECT_EQ(player->StopCamera(false, L"", RecordingNotes{}), S_OK);

    std::string avi = devicetest::WorkFolder("engine-codec") + "/compressed.avi";
    std::string report = RecordFor(std::wstring(avi.begin(), avi.end()), 3000);
    EXPECT_NE(report.find("\nFormat subtype: YUY2\nCodec: MAVU Test Compressor\n"), std::string::npos) << report;
    testsupport::ProbedVideo video = testsupport::ProbeVideo(avi);
    ASSERT_TRUE(video.ok) << video.raw;
    EXPECT_EQ(video.codecTag, "Y800");
    EXPECT_EQ(video.pixelFormat, "gray");
    EXPECT_EQ(video.width, 640);
    EXPECT_EQ(video.height, 480);
    EXPECT_NEAR(video.frames, 90, 10);
    // The picture went through: the camera's stamps count up frame by frame,
    // but for frames the camera itself dropped.
    std::vector<synthcam::FrameStamp> stamps = testsupport::ReadRecordedStamps(avi, 640);
    ASSERT_GT(stamps.size(), 60u);
    long missing = testsupport::MissingStampedFrames(stamps);
    EXPECT_GE(missing, 0);
    EXPECT_LE(missing, testsupport::ReportedDroppedFrames(report)) << report;
    // The record beside it holds the same frames' times.
    testsupport::ExpectRecordMatchesTheStamps(avi, stamps, 1000.0 / 30);
}

TEST_F(CompressorTest, ACompressorPairedWithASubtypeItRefusesStopsTheRecordingStart)
{
    ASSERT_TRUE(SelectFormat(videoSources[0], SubtypeRGB24, 640, 480));
    PairCodec(subtypeCodecPairs, SubtypeRGB24, installedCodecs[1]);
    std::string folder = devicetest::WorkFolder("engine-codec-refused");
    std::wstring path(folder.begin(), folder.end());
    path += L"/refused.avi";
    EXPECT_EQ(player->StartCamera(false, path.c_str()), E_FAIL);
    EXPECT_NE(TakeMessages().find(L"\r\nSelected codec does not work for this camera.\r\n"), std::wstring::npos);
    // A pair naming "NONE" records without any codec.
    PairCodec(subtypeCodecPairs, SubtypeRGB24, installedCodecs[0]);
    EXPECT_EQ(player->StartCamera(false, path.c_str()), S_OK) << testing::PrintToString(TakeMessages());
    EXPECT_EQ(player->StopCamera(false, L"", RecordingNotes{}), S_OK);
    player->RemoveGraphFilters();
}
