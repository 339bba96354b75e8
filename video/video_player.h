// The VideoPlayer owns the capture graph and everything built into it: one
// object for the life of the main window. Its methods stand in the files
// named after it: video_player.cpp (construction and the two graphs),
// video_player_graph.cpp (building the graph), video_player_renderers.cpp
// (renderers and the picture's size), video_player_camera.cpp (camera start
// and stop, and the run report), video_player_color.cpp (the brightness
// tool's colour filters), video_player_codecs.cpp (the installed codecs and
// their trial), video_player_analog.cpp (the analog
// standard).
#pragma once

#include <windows.h>
#include <dshow.h>
#include <evr.h>
#include <d3d9.h>
#include <vmr9.h>
#include <dmodshow.h>
#include <propsys.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "base/com_ptr.h"
#include "filters/mavu_video_magnify_filter.h"
#include "filters/mavu_video_transform_filter.h"
#include "video/capture_settings.h"
#include "video/frame_time_record.h"
#include "video/graph_frame_queue.h"
#include "video/run_report.h"
#include "video/video_sources.h"

enum GraphState : int32_t {
    GraphNone = 0,
    GraphCreated = 1,
    GraphSourceAdded = 2,
    GraphRunning = 3,
    GraphBuilt = 4,
};

// One reference on an object of the filter base layer, taken through its
// non-delegating count and given back when the holder goes. The graphs only
// borrow the object; this reference keeps a graph's release from deleting it.
template <class Filter>
class OwnedFilter {
public:
    explicit OwnedFilter(Filter* adopted) : filter_(adopted) { filter_->NonDelegatingAddRef(); }
    OwnedFilter(const OwnedFilter&) = delete;
    OwnedFilter& operator=(const OwnedFilter&) = delete;
    ~OwnedFilter() { filter_->NonDelegatingRelease(); }
    Filter* operator->() const { return filter_; }
    Filter* Get() const { return filter_; }

private:
    Filter* filter_;
};

class VideoPlayer {
public:
    VideoPlayer();
    ~VideoPlayer();
    VideoPlayer(const VideoPlayer&) = delete;
    VideoPlayer& operator=(const VideoPlayer&) = delete;

    // The transform filter's settings for the next run, from the tools.
    void ConfigureTransformFilter(uint32_t accumulatorBytes);

    // Graph construction.
    HRESULT CreateGraph();
    HRESULT CreateCodecGraph();
    void DestroyCodecGraph();
    HRESULT RemoveGraphFilters();
    HRESULT RenderVideoStream(const wchar_t* filePath, bool useColor, IBaseFilter* sourceFilter);
    // IMediaControl::Stop, after draining a hand-assembled file branch.
    HRESULT StopGraph();

    // Stream format of the source, while it stands alone in the graph.
    HRESULT SetStreamFormat(IBaseFilter* filter, const VideoFormat* format, GUID category);

    // Camera start and stop. A start records when the file path isn't empty;
    // a stop of a recording writes its report, with what the application
    // knows of the recording in `notes`.
    HRESULT StartCamera(bool useCurrentDirectory, const wchar_t* recordingFilePath);
    HRESULT StopCamera(bool wasRecording, const wchar_t* recordingFilePath, const RecordingNotes& notes);
    HRESULT RunGraph();
    // The stop line, with the time of the last frame when there was one.
    void LogStopRecordingLine(const wchar_t* recordingFilePath, uint64_t lastFrameUtc = 0);

    // The brightness tool: its two colour filters, made where the "Color
    // Control" effect is installed, and their values from two sliders of 0
    // to 100 (a negative one is left alone).
    HRESULT CreateColorControlFilters();
    void SetColorControls(int32_t brightness, int32_t contrast);

    // Codecs: the compressors installed, and those of them that connect to
    // the current device and format, tried in the second graph with the
    // camera stopped; `startVideo` brings the camera back afterwards.
    void GetCodecList();
    HRESULT GetCodecsForSourceDevice(HRESULT (*startVideo)());

    // The analog standard of a grabber, found by a trial in the main graph,
    // which the trial takes over: the camera must be stopped. The standard
    // set by hand is that of the current device.
    HRESULT TestAnalogDeviceFormat(VideoSourceInfo* source, int32_t* outChanged);
    void AutoSetAnalogDeviceFormat(VideoSourceInfo* source);
    HRESULT SetAnalogDeviceFormat(int32_t standard);

    // Renderers and the size of the picture.
    HRESULT CreateVideoRenderer(int32_t choice, const VideoFormat* format, const wchar_t* filePath);
    // Waits until the VMR9 has drawn every frame it was given; called while
    // it is still joined, before it is let go.
    void WaitForVmr9Drawing();
    HRESULT UpdateFrameSizeEvr(const RECT& rectangle);
    HRESULT UpdateFrameSizeVmr9(const RECT& rectangle);
    HRESULT UpdateFrameSizeVmr7(const RECT& rectangle);
    void UpdateRendererFrameSize();

    // Members are released in the reverse order of their declaration: the
    // frame counts and the file branch first, then the colour filters (their
    // store and wrapper before the filter itself), the graph, the renderers,
    // and last the program's own filters, which the graph and the renderers
    // may still have referred to.

    // The two frame filters live as long as the player.
    OwnedFilter<MavuVideoMagnifyFilter> magnifyFilter{new MavuVideoMagnifyFilter};
    OwnedFilter<MavuVideoTransformFilter> transformFilter{new MavuVideoTransformFilter};
    ComPtr<IBaseFilter> magnifyBaseFilter;
    ComPtr<IBaseFilter> transformBaseFilter;

    // Renderers, each made once and reused, but for the VMR9, which is made
    // anew for each build (video_player_renderers.cpp says why).
    ComPtr<IBaseFilter> nullRenderer;
    ComPtr<IBaseFilter> vmr7;
    ComPtr<IVMRFilterConfig> vmr7Config;
    ComPtr<IVMRWindowlessControl> vmr7Control;
    ComPtr<IQualProp> vmr7Quality;
    ComPtr<IBaseFilter> vmr9;
    ComPtr<IVMRFilterConfig9> vmr9Config;
    ComPtr<IVMRWindowlessControl9> vmr9Control;
    ComPtr<IBaseFilter> evr;
    ComPtr<IMFVideoDisplayControl> evrControl;
    // The renderer in the graph: one of the above, not a reference of its own.
    IBaseFilter* currentRenderer = nullptr;
    wchar_t currentRendererName[32] = L"";

    // The main graph.
    ComPtr<IGraphBuilder> graph;
    ComPtr<ICaptureGraphBuilder2> captureBuilder;
    ComPtr<IMediaControl> mediaControl;

    // The second graph, for codec trials.
    ComPtr<IGraphBuilder> codecGraph;
    ComPtr<ICaptureGraphBuilder2> codecBuilder;
    ComPtr<IBaseFilter> codecMux;

    // The colour filters of the brightness tool, each a DMO wrapper around
    // the effect, and the wrapper's and the effect's interfaces on them.
    ComPtr<IBaseFilter> renderColorFilter;
    ComPtr<IBaseFilter> captureColorFilter;
    ComPtr<IDMOWrapperFilter> renderColorWrapper;
    ComPtr<IDMOWrapperFilter> captureColorWrapper;
    ComPtr<IPropertyStore> renderColorStore;
    ComPtr<IPropertyStore> captureColorStore;

    // The file branch of a recording.
    ComPtr<IFileSinkFilter> fileSink;
    ComPtr<IBaseFilter> mux;
    // The file branch was assembled from the platform's mux and the
    // program's sink, because the platform's builder wouldn't.
    bool fileBranchAssembled = false;
    // A recording's two queues, each taking frames off the camera's thread:
    // in front of the mux, and in front of the renderer.
    GraphFrameQueue captureQueue;
    // The frame-time record of the recording the capture queue feeds.
    std::unique_ptr<FrameTimeRecord> frameTimeRecord;
    GraphFrameQueue previewQueue;

    // The source's frame counts, and their values when the run began.
    ComPtr<IAMDroppedFrames> droppedFrames;
    int32_t startDropped = 0;
    int32_t startNotDropped = 0;

    HWND clippingWindow = nullptr;
    GraphState graphState = GraphNone;
    int32_t useCurrentDirectory = 0;
    int32_t recording = 0;

    // The lines of the run report that the recording's start and stop make.
    wchar_t startRecordingLine[128] = L"";
    wchar_t stopRecordingLine[128] = L"";

private:
    HRESULT AddFileBranch(const wchar_t* filePath, IBaseFilter* sourceFilter, const VideoFormat* format);
    HRESULT JoinQueueToMux();
    // Makes the frame-time record of the recording into `filePath` and has
    // the capture queue tell it of each frame it hands to the mux.
    void StartFrameTimeRecord(const wchar_t* filePath, const VideoFormat* format);
    // What a recording's report counts: frames in the file and frames lost,
    // or neither where they can't be had.
    struct RecordedCounts {
        bool available = false;
        long recorded = 0;
        long dropped = 0;
        uint64_t lastFrameUtc = 0;  // 100 ns since 1601; 0 for none
    };
    void WriteRunReportFile(const wchar_t* recordingFilePath, const RecordingNotes& notes,
                            const RecordedCounts& counts);
};

// The one VideoPlayer of the process, once constructed.
VideoPlayer* CurrentVideoPlayer();

// The process's current directory, without a closing backslash.
std::wstring CurrentDirectory();
