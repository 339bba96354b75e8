// The VideoPlayer's construction and its two graphs.
#include "video/video_player.h"

#include "app/app_state.h"
#include "persistence/options.h"
#include "ui/user_messages.h"

namespace {

VideoPlayer* currentPlayer = nullptr;

void Report(const wchar_t* text)
{
    ReportUserMessage(text, false);
}

template <class T>
void ReleaseInto(T*& pointer)
{
    if (pointer) {
        pointer->Release();
        pointer = nullptr;
    }
}

}  // namespace

VideoPlayer* CurrentVideoPlayer()
{
    return currentPlayer;
}

VideoPlayer::VideoPlayer()
{
    currentPlayer = this;
    transformFilter = new MavuVideoTransformFilter;
    magnifyFilter = new MavuVideoMagnifyFilter;
    transformFilter->NonDelegatingAddRef();
    magnifyFilter->NonDelegatingAddRef();
    if (FAILED(transformFilter->NonDelegatingQueryInterface(IID_IBaseFilter,
                                                             reinterpret_cast<void**>(&transformBaseFilter))))
        return;
    if (FAILED(magnifyFilter->NonDelegatingQueryInterface(IID_IBaseFilter,
                                                           reinterpret_cast<void**>(&magnifyBaseFilter))))
        return;
    if (FAILED(CreateGraph()))
        Report(L"ERROR: Cannot create video filter graph - video display and recording inoperative\r\n");
}

VideoPlayer::~VideoPlayer()
{
    if (graph && mediaControl && graphState == GraphRunning)
        mediaControl->Stop();
    if (graph)
        RemoveGraphFilters();
    DestroyCodecGraph();
    ReleaseInto(droppedFrames);
    ReleaseInto(mux);
    ReleaseInto(fileSink);
    ReleaseInto(mediaControl);
    ReleaseInto(captureBuilder);
    ReleaseInto(graph);
    ReleaseInto(evrControl);
    ReleaseInto(evr);
    ReleaseInto(vmr9Control);
    ReleaseInto(vmr9Config);
    ReleaseInto(vmr9);
    ReleaseInto(vmr7Quality);
    ReleaseInto(vmr7Control);
    ReleaseInto(vmr7Config);
    ReleaseInto(vmr7);
    ReleaseInto(nullRenderer);
    ReleaseInto(transformBaseFilter);
    ReleaseInto(magnifyBaseFilter);
    transformFilter->NonDelegatingRelease();
    magnifyFilter->NonDelegatingRelease();
    if (currentPlayer == this)
        currentPlayer = nullptr;
}

HRESULT VideoPlayer::CreateGraph()
{
    if (FAILED(CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IGraphBuilder,
                                reinterpret_cast<void**>(&graph)))) {
        Report(L"WARNING: Cannot create filter graph builder\r\n");
        return E_FAIL;
    }
    if (FAILED(CoCreateInstance(CLSID_CaptureGraphBuilder2, nullptr, CLSCTX_INPROC_SERVER,
                                IID_ICaptureGraphBuilder2, reinterpret_cast<void**>(&captureBuilder)))) {
        Report(L"WARNING: Cannot create Type 2 filter graph builder\r\n");
        return E_FAIL;
    }
    if (FAILED(captureBuilder->SetFiltergraph(graph))) {
        Report(L"WARNING: Type 2 filter graph builder cannot set filter graph builder\r\n");
        return E_FAIL;
    }
    if (FAILED(graph->QueryInterface(IID_IMediaControl, reinterpret_cast<void**>(&mediaControl)))) {
        Report(L"WARNING: IID_IMediaControl interface is missing\r\n");
        return E_FAIL;
    }
    graphState = GraphCreated;
    return S_OK;
}

HRESULT VideoPlayer::CreateCodecGraph()
{
    if (FAILED(CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IGraphBuilder,
                                reinterpret_cast<void**>(&codecGraph)))) {
        Report(L"WARNING: Cannot create codec filter graph builder\r\n");
        return E_FAIL;
    }
    if (FAILED(CoCreateInstance(CLSID_CaptureGraphBuilder2, nullptr, CLSCTX_INPROC_SERVER,
                                IID_ICaptureGraphBuilder2, reinterpret_cast<void**>(&codecBuilder)))) {
        Report(L"WARNING: Cannot create Type 2 codec filter graph builder\r\n");
        return E_FAIL;
    }
    if (FAILED(codecBuilder->SetFiltergraph(codecGraph))) {
        Report(L"WARNING: Type 2 codec filter graph builder cannot set filter graph builder\r\n");
        return E_FAIL;
    }
    return S_OK;
}

void VideoPlayer::DestroyCodecGraph()
{
    ReleaseInto(codecBuilder);
    ReleaseInto(codecGraph);
    ReleaseInto(codecMux);
}

void VideoPlayer::ConfigureTransformFilter(uint32_t accumulatorBytes)
{
    TransformToolSettings settings;
    settings.frameIntegrationOn = frameIntegrationOn != 0;
    settings.frameIntegrationCount = static_cast<uint32_t>(frameIntegrationCount.load());
    settings.pixelSaturationOn = pixelSaturationOn != 0;
    settings.pixelSaturationValue = options.PixelSaturationValue;
    transformFilter->ConfigureTransformFilter(accumulatorBytes, settings);
}
