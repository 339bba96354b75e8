// The VideoPlayer's construction and its two graphs.
#include "video/video_player.h"

#include "base/report.h"
#include "persistence/options.h"

namespace {

VideoPlayer* currentPlayer = nullptr;

void Report(const wchar_t* text)
{
    ReportUserMessage(text, false);
}

}  // namespace

VideoPlayer* CurrentVideoPlayer()
{
    return currentPlayer;
}

VideoPlayer::VideoPlayer()
{
    currentPlayer = this;
    GetCodecList();
    if (FAILED(transformFilter->NonDelegatingQueryInterface(IID_IBaseFilter, transformBaseFilter.PutVoid())))
        return;
    if (FAILED(magnifyFilter->NonDelegatingQueryInterface(IID_IBaseFilter, magnifyBaseFilter.PutVoid())))
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
    // The members release the rest, in the order of their declaration's
    // reverse.
    if (currentPlayer == this)
        currentPlayer = nullptr;
}

HRESULT VideoPlayer::CreateGraph()
{
    if (FAILED(
            CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IGraphBuilder, graph.PutVoid()))) {
        Report(L"WARNING: Cannot create filter graph builder\r\n");
        return E_FAIL;
    }
    if (FAILED(CoCreateInstance(CLSID_CaptureGraphBuilder2, nullptr, CLSCTX_INPROC_SERVER, IID_ICaptureGraphBuilder2,
                                captureBuilder.PutVoid()))) {
        Report(L"WARNING: Cannot create Type 2 filter graph builder\r\n");
        return E_FAIL;
    }
    if (FAILED(captureBuilder->SetFiltergraph(graph.Get()))) {
        Report(L"WARNING: Type 2 filter graph builder cannot set filter graph builder\r\n");
        return E_FAIL;
    }
    if (FAILED(graph->QueryInterface(IID_IMediaControl, mediaControl.PutVoid()))) {
        Report(L"WARNING: IID_IMediaControl interface is missing\r\n");
        return E_FAIL;
    }
    graphState = GraphCreated;
    return S_OK;
}

HRESULT VideoPlayer::CreateCodecGraph()
{
    if (FAILED(CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IGraphBuilder,
                                codecGraph.PutVoid()))) {
        Report(L"WARNING: Cannot create codec filter graph builder\r\n");
        return E_FAIL;
    }
    if (FAILED(CoCreateInstance(CLSID_CaptureGraphBuilder2, nullptr, CLSCTX_INPROC_SERVER, IID_ICaptureGraphBuilder2,
                                codecBuilder.PutVoid()))) {
        Report(L"WARNING: Cannot create Type 2 codec filter graph builder\r\n");
        return E_FAIL;
    }
    if (FAILED(codecBuilder->SetFiltergraph(codecGraph.Get()))) {
        Report(L"WARNING: Type 2 codec filter graph builder cannot set filter graph builder\r\n");
        return E_FAIL;
    }
    return S_OK;
}

void VideoPlayer::DestroyCodecGraph()
{
    codecBuilder.Reset();
    codecGraph.Reset();
    codecMux.Reset();
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
