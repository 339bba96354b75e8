// Recording graphs from the platform's pieces and the program's file sink:
// a synthetic camera through the Smart Tee into the AVI Mux, read back by
// ffprobe and ffmpeg.
#include "device/graph_helpers.h"
#include "support/ffprobe.h"
#include "video/file_branch.h"

#include <gtest/gtest.h>

using namespace devicetest;

namespace {

constexpr DWORD kRecordMs = 5000;
constexpr double kRate = 10000000.0 / 333333.0;

struct Recording {
    ComPtr<IGraphBuilder> graph;
    ComPtr<IBaseFilter> device;
    ComPtr<IBaseFilter> mux;
    ComPtr<IFileSinkFilter> fileSink;
};

// The program's own file branch, as a recording start assembles it: the
// platform's mux joined to the program's sink before any stream reaches it.
// Its names and its join: EngineTest.EachModeBuildsTheChainOfItsRow.
HRESULT AddFileBranch(Recording& recording, const std::string& path)
{
    std::wstring widePath(path.begin(), path.end());
    HRESULT hr = AssembleFileBranch(recording.graph.Get(), widePath.c_str(), recording.mux.Put(),
                                    recording.fileSink.Put());
    if (FAILED(hr))
        return hr;
    // The sink says where it writes.
    LPOLESTR fileName = nullptr;
    EXPECT_EQ(recording.fileSink->GetCurFile(&fileName, nullptr), S_OK);
    if (fileName) {
        EXPECT_EQ(std::wstring(fileName), widePath);
        CoTaskMemFree(fileName);
    }
    return hr;
}

struct RunResult {
    long notDropped = 0;
    long dropped = 0;
    uint64_t runUtcMs = 0;
};

RunResult RunRecording(Recording& recording)
{
    RunResult result;
    ComPtr<IMediaControl> control;
    recording.graph->QueryInterface(IID_IMediaControl, control.PutVoid());
    ComPtr<IAMDroppedFrames> frames;
    FindPin(recording.device.Get(), L"Capture")->QueryInterface(IID_IAMDroppedFrames, frames.PutVoid());
    result.runUtcMs = synthcam::UtcMsSince2020Now();
    EXPECT_TRUE(SUCCEEDED(control->Run()));
    Sleep(kRecordMs);
    // Read before the stop, as a recorder does: the graph stops the mux
    // before the camera, and frames of that moment never reach the file.
    if (frames) {
        frames->GetNumNotDropped(&result.notDropped);
        frames->GetNumDropped(&result.dropped);
    }
    // The platform's mux stops before the camera and fails on a frame that
    // reaches it after that (Stop then fails and tearing the graph down can
    // hang): a pause first ends the camera's delivery, as the program does.
    EXPECT_TRUE(SUCCEEDED(control->Pause()));
    Sleep(100);
    EXPECT_TRUE(SUCCEEDED(control->Stop()));
    return result;
}

void TearDownGraph(Recording& recording)
{
    ComPtr<IEnumFilters> filters;
    recording.graph->EnumFilters(filters.Put());
    std::vector<ComPtr<IBaseFilter>> all;
    ComPtr<IBaseFilter> filter;
    while (filters->Next(1, filter.Put(), nullptr) == S_OK)
        all.push_back(filter);
    filters.Reset();
    for (auto& each : all)
        recording.graph->RemoveFilter(each.Get());
}

// What the file must show: the size and packing, a frame count that fits
// the time its stamps span, a start close to Run, and the device's count.
void CheckRecordedFile(const std::string& path, const RunResult& run, int width, int height, const char* tag)
{
    testsupport::ProbedVideo video = testsupport::ProbeVideo(path);
    ASSERT_TRUE(video.ok) << video.raw;
    EXPECT_EQ(video.width, width);
    EXPECT_EQ(video.height, height);
    EXPECT_EQ(video.codecTag, tag);
    EXPECT_NEAR(video.frames, kRate * kRecordMs / 1000.0, kRate * 0.6) << "the stream starts a moment after Run";
    EXPECT_NEAR(video.frames, run.notDropped, 2);

    std::vector<synthcam::FrameStamp> stamps = testsupport::ReadRecordedStamps(path, width);
    ASSERT_EQ(static_cast<int>(stamps.size()), video.frames);
    double spanSeconds = (stamps.back().utcMs - stamps.front().utcMs) / 1000.0;
    EXPECT_NEAR(video.frames, spanSeconds * kRate + 1, 2);
    EXPECT_EQ(stamps.back().counter - stamps.front().counter + 1, static_cast<uint32_t>(video.frames) + run.dropped);
    EXPECT_GE(stamps.front().utcMs + 50, run.runUtcMs);
    EXPECT_LE(stamps.front().utcMs, run.runUtcMs + 1000);
}

}  // namespace

// A webcam in a fresh graph; each test adds its way to the mux, then
// records into its own folder and checks the file.
class RecordingGraph : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(devices.Add(L"Cam", L"webcam"));
        ASSERT_EQ(CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IGraphBuilder,
                                   recording.graph.PutVoid()),
                  S_OK);
        recording.device = BindDevice(L"Cam");
        ASSERT_TRUE(recording.device);
        path = WorkFolder(testing::UnitTest::GetInstance()->current_test_info()->name()) + "/recording.avi";
        DeleteFileA(path.c_str());
    }

    void RecordAndCheck(const char* tag)
    {
        RunResult run = RunRecording(recording);
        TearDownGraph(recording);
        recording.graph.Reset();
        recording.fileSink.Reset();
        CheckRecordedFile(path, run, 640, 480, tag);
        EXPECT_EQ(ReferenceCount(recording.device.Get()), 1u);
    }

    SyntheticDevices devices;
    Recording recording;
    std::string path;
};

TEST_F(RecordingGraph, SmartTeeNullRendererAndMuxIntoTheFileSink)
{
    ComPtr<IBaseFilter> tee = CreateFilter(CLSID_SmartTee);
    ComPtr<IBaseFilter> nullRenderer = CreateFilter(CLSID_NullRenderer);
    ASSERT_TRUE(tee && nullRenderer);
    recording.graph->AddFilter(recording.device.Get(), L"Camera");
    recording.graph->AddFilter(tee.Get(), L"Smart Tee");
    recording.graph->AddFilter(nullRenderer.Get(), L"Null Renderer");
    ASSERT_EQ(AddFileBranch(recording, path), S_OK);
    ASSERT_EQ(recording.graph->ConnectDirect(FindPin(recording.device.Get(), L"Capture").Get(),
                                             FindPin(tee.Get(), L"Input").Get(), nullptr),
              S_OK);
    ASSERT_EQ(recording.graph->ConnectDirect(FindPin(tee.Get(), L"Preview").Get(),
                                             FindPin(nullRenderer.Get(), L"In").Get(), nullptr),
              S_OK);
    ASSERT_TRUE(SUCCEEDED(recording.graph->Connect(FindPin(tee.Get(), L"Capture").Get(),
                                                   FindPin(recording.mux.Get(), L"Input 01").Get())));
    RecordAndCheck("YUY2");
}

TEST_F(RecordingGraph, RenderStreamOfTheCapturePinIntoTheMux)
{
    ComPtr<ICaptureGraphBuilder2> builder;
    ASSERT_EQ(CoCreateInstance(CLSID_CaptureGraphBuilder2, nullptr, CLSCTX_INPROC_SERVER, IID_ICaptureGraphBuilder2,
                               builder.PutVoid()),
              S_OK);
    ASSERT_EQ(builder->SetFiltergraph(recording.graph.Get()), S_OK);
    ASSERT_EQ(SelectFormat(recording.device.Get(), MEDIASUBTYPE_RGB24, 640, 480), S_OK);
    recording.graph->AddFilter(recording.device.Get(), L"Camera");
    ASSERT_EQ(AddFileBranch(recording, path), S_OK);
    ASSERT_TRUE(SUCCEEDED(builder->RenderStream(&PIN_CATEGORY_CAPTURE, &MEDIATYPE_Video, recording.device.Get(),
                                                nullptr, recording.mux.Get())));
    builder.Reset();
    // Raw RGB carries no four-character code.
    RecordAndCheck("[0][0][0][0]");
}
