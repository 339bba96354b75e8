// The VideoPlayer owns the capture graph and everything built into it: one
// object for the life of the main window. Its operations stand in the files
// of this folder: construction and graph building (graph_builder.cpp),
// renderers (renderers.cpp), camera start and stop (camera.cpp), stream
// format (device_formats.cpp).
#pragma once

#include <windows.h>
#include <dshow.h>
#include <evr.h>
#include <d3d9.h>
#include <vmr9.h>

#include <cstdint>

#include "filters/mavu_video_magnify_filter.h"
#include "filters/mavu_video_transform_filter.h"
#include "video/video_sources.h"

enum GraphState : int32_t {
    GraphNone = 0,
    GraphCreated = 1,
    GraphSourceAdded = 2,
    GraphRunning = 3,
    GraphBuilt = 4,
};

// Renderer choices: the option's three, and the Null Renderer.
enum RendererChoice : int32_t { RendererEvr = 0, RendererVmr9 = 1, RendererVmr7 = 2, RendererNull = 3 };

class VideoPlayer {
public:
    VideoPlayer();
    ~VideoPlayer();
    VideoPlayer(const VideoPlayer&) = delete;
    VideoPlayer& operator=(const VideoPlayer&) = delete;

    // The two frame filters live as long as the player; graphs only borrow
    // them. The player's own reference keeps them from being deleted by a
    // graph's release.
    MavuVideoTransformFilter* transformFilter = nullptr;
    MavuVideoMagnifyFilter* magnifyFilter = nullptr;
    // The transform filter's settings for the next run, from the tools.
    void ConfigureTransformFilter(uint32_t accumulatorBytes);

    // Graph construction.
    HRESULT CreateGraph();
    HRESULT CreateCodecGraph();
    void DestroyCodecGraph();
    HRESULT RemoveGraphFilters();
    HRESULT RenderVideoStream(const wchar_t* filePath, bool useColor, IBaseFilter* sourceFilter);

    // Stream format of the source, while it stands alone in the graph.
    HRESULT SetStreamFormat(IBaseFilter* filter, const VideoFormat* format, GUID category);

    // Camera start and stop.
    HRESULT StartCamera(bool useCurrentDirectory);
    HRESULT StopCamera(bool wasRecording);
    HRESULT RunGraph();
    void LogStopRecordingLine();

    // Renderers and the size of the picture.
    HRESULT CreateVideoRenderer(int32_t choice, const VideoFormat* format, const wchar_t* filePath);
    HRESULT UpdateFrameSizeEvr(const RECT& rectangle);
    HRESULT UpdateFrameSizeVmr9(const RECT& rectangle);
    HRESULT UpdateFrameSizeVmr7(const RECT& rectangle);
    void UpdateRendererFrameSize();

    HWND clippingWindow = nullptr;
    IAMDroppedFrames* droppedFrames = nullptr;
    IBaseFilter* renderColorFilter = nullptr;
    IBaseFilter* captureColorFilter = nullptr;
    IBaseFilter* transformBaseFilter = nullptr;
    IBaseFilter* magnifyBaseFilter = nullptr;
    GraphState graphState = GraphNone;
    int32_t useCurrentDirectory = 0;
    int32_t recording = 0;
    int32_t startDropped = 0;
    int32_t startNotDropped = 0;

    // The main graph.
    IGraphBuilder* graph = nullptr;
    ICaptureGraphBuilder2* captureBuilder = nullptr;
    IMediaControl* mediaControl = nullptr;
    IBaseFilter* mux = nullptr;
    IFileSinkFilter* fileSink = nullptr;

    // The second graph, for codec trials.
    IGraphBuilder* codecGraph = nullptr;
    ICaptureGraphBuilder2* codecBuilder = nullptr;
    IBaseFilter* codecMux = nullptr;

    // Renderers, each made once and reused.
    IBaseFilter* evr = nullptr;
    IMFVideoDisplayControl* evrControl = nullptr;
    IBaseFilter* vmr9 = nullptr;
    IVMRFilterConfig9* vmr9Config = nullptr;
    IVMRWindowlessControl9* vmr9Control = nullptr;
    IBaseFilter* vmr7 = nullptr;
    IVMRFilterConfig* vmr7Config = nullptr;
    IVMRWindowlessControl* vmr7Control = nullptr;
    IQualProp* vmr7Quality = nullptr;
    IBaseFilter* nullRenderer = nullptr;
    IBaseFilter* currentRenderer = nullptr;
    wchar_t currentRendererName[32] = L"";

    // The lines of the run report that the recording's start and stop make.
    wchar_t startRecordingLine[128] = L"";
    wchar_t stopRecordingLine[128] = L"";

    // The file branch was assembled from the platform's mux and the
    // program's sink, because the platform's builder wouldn't.
    bool fileBranchAssembled = false;
    // IMediaControl::Stop, after draining a hand-assembled file branch.
    HRESULT StopGraph();

private:
    HRESULT AddFileBranch(const wchar_t* filePath, IBaseFilter* sourceFilter, const VideoFormat* format);
    void WriteRunReportFile(long notDropped, long dropped);
};

// The first pin of a direction whose name doesn't begin with '~', or of that
// exact name; the caller owns the reference.
IPin* GetFilterPin(IBaseFilter* filter, PIN_DIRECTION direction, const wchar_t* name);

// The one VideoPlayer of the process, once constructed.
VideoPlayer* CurrentVideoPlayer();

// Size of the picture for a magnify choice (0 to 4): the video size, a half,
// three quarters, one and a half, or double; integer division.
int32_t MagnifiedSize(int32_t videoSize, int32_t magnifyChoice);

// The Magnify tool's choice; 0 is the video size.
extern int32_t magnifyChoice;
