// Building the capture graph: emptying it, rendering the preview and the
// file branch, and splicing the program's own filters into the preview.
#include "video/video_player.h"

#include "app/app_state.h"
#include "app/com_ptr.h"
#include "filters/file_sink_filter.h"
#include "filters/mavu_video_transform_filter.h"
#include "ui/user_messages.h"
#include "video/codecs.h"

#include <cwchar>
#include <vector>

namespace {

void Report(const wchar_t* text)
{
    ReportUserMessage(text, false);
}

// The platform's capture graph builder may not write files itself: the file
// branch is then assembled from the platform's AVI Mux and the program's own
// file sink, joined before any stream reaches the mux.
HRESULT AssembleFileBranch(IGraphBuilder* graph, const wchar_t* filePath, IBaseFilter** mux, IFileSinkFilter** sink)
{
    ComPtr<IBaseFilter> muxFilter;
    HRESULT hr = CoCreateInstance(CLSID_AviDest, nullptr, CLSCTX_INPROC_SERVER, IID_IBaseFilter,
                                  muxFilter.PutVoid());
    if (FAILED(hr))
        return hr;
    ComPtr<IBaseFilter> sinkFilter;
    hr = FileSinkFilter::Create(sinkFilter.Put());
    if (FAILED(hr))
        return hr;
    ComPtr<IFileSinkFilter> fileSink;
    hr = sinkFilter->QueryInterface(IID_IFileSinkFilter, fileSink.PutVoid());
    if (FAILED(hr))
        return hr;
    hr = fileSink->SetFileName(filePath, nullptr);
    if (FAILED(hr))
        return hr;
    hr = graph->AddFilter(muxFilter.Get(), L"AVI Mux");
    if (FAILED(hr))
        return hr;
    hr = graph->AddFilter(sinkFilter.Get(), L"File Writer");
    if (FAILED(hr))
        return hr;
    // This platform's mux runs only with full interleaving.
    ComPtr<IConfigInterleaving> interleaving;
    if (SUCCEEDED(muxFilter->QueryInterface(IID_IConfigInterleaving, interleaving.PutVoid())))
        interleaving->put_Mode(INTERLEAVE_FULL);
    ComPtr<IPin> muxOutput(GetFilterPin(muxFilter.Get(), PINDIR_OUTPUT, nullptr));
    ComPtr<IPin> sinkInput(GetFilterPin(sinkFilter.Get(), PINDIR_INPUT, nullptr));
    if (!muxOutput || !sinkInput)
        return E_FAIL;
    hr = graph->ConnectDirect(muxOutput.Get(), sinkInput.Get(), nullptr);
    if (FAILED(hr))
        return hr;
    *mux = muxFilter.Detach();
    *sink = fileSink.Detach();
    return S_OK;
}

// The Smart Tee the capture graph builder put in. Its name is "Smart Tee"
// where the builder names it so; this platform's builder gives it a number,
// so it is then known by its class.
HRESULT FindSmartTee(IGraphBuilder* graph, IBaseFilter** tee)
{
    if (SUCCEEDED(graph->FindFilterByName(L"Smart Tee", tee)) && *tee)
        return S_OK;
    ComPtr<IEnumFilters> filters;
    if (FAILED(graph->EnumFilters(filters.Put())) || !filters)
        return VFW_E_NOT_FOUND;
    ComPtr<IBaseFilter> filter;
    while (filters->Next(1, filter.Put(), nullptr) == S_OK) {
        CLSID clsid = GUID_NULL;
        if (SUCCEEDED(filter->GetClassID(&clsid)) && clsid == CLSID_SmartTee) {
            *tee = filter.Detach();
            return S_OK;
        }
    }
    return VFW_E_NOT_FOUND;
}

}  // namespace

IPin* GetFilterPin(IBaseFilter* filter, PIN_DIRECTION direction, const wchar_t* name)
{
    if (!filter)
        return nullptr;
    ComPtr<IEnumPins> pins;
    if (FAILED(filter->EnumPins(pins.Put())) || !pins) {
        ReportUserMessage(L"SEVERE: cannot enumerate pins on filter", false);
        return nullptr;
    }
    ComPtr<IPin> pin;
    while (pins->Next(1, pin.Put(), nullptr) == S_OK) {
        PIN_INFO info;
        if (FAILED(pin->QueryPinInfo(&info)))
            continue;
        if (info.pFilter)
            info.pFilter->Release();
        if (info.dir != direction || info.achName[0] == L'~')
            continue;
        if (!name || std::wcscmp(info.achName, name) == 0)
            return pin.Detach();
    }
    return nullptr;
}

HRESULT VideoPlayer::StopGraph()
{
    if (fileBranchAssembled && graphState == GraphRunning) {
        // The platform's mux stops before the filters upstream of it and
        // fails on a sample that reaches it after that. Pausing first ends
        // the live source's delivery; the frame already on its way gets its
        // moment to land while the mux still runs. Only a running graph is
        // paused: a pause from stopped would open the finished file anew.
        mediaControl->Pause();
        Sleep(100);
    }
    return mediaControl->Stop();
}

HRESULT VideoPlayer::RemoveGraphFilters()
{
    if (!graph) {
        Report(L"Logic error: attempt to remove filters from a NULL filter graph\r\n");
        return E_FAIL;
    }
    if (!mediaControl) {
        Report(L"Logic error: media control is NULL in a built filter graph\r\n");
        return E_FAIL;
    }
    if (graphState == GraphRunning) {
        StopGraph();
        graphState = GraphBuilt;
    }
    ComPtr<IEnumFilters> filters;
    HRESULT hr = graph->EnumFilters(filters.Put());
    if (FAILED(hr)) {
        Report(L"WARNING: Failure to enumerate filter graph filters\r\n");
        return E_FAIL;
    }
    if (!filters) {
        Report(L"WARNING: Filter graph filters enumerator is NULL\r\n");
        return E_FAIL;
    }
    // Removal while enumerating would spoil the enumeration.
    std::vector<ComPtr<IBaseFilter>> all;
    ComPtr<IBaseFilter> filter;
    while (filters->Next(1, filter.Put(), nullptr) == S_OK)
        all.push_back(filter);
    HRESULT result = S_OK;
    for (auto& each : all) {
        if (FAILED(graph->RemoveFilter(each.Get()))) {
            Report(L"WARNING: Failure to remove filter from filter graph\r\n");
            result = E_FAIL;
            break;
        }
    }
    if (fileSink) {
        fileSink->Release();
        fileSink = nullptr;
    }
    if (mux) {
        mux->Release();
        mux = nullptr;
    }
    fileBranchAssembled = false;
    return result;
}

HRESULT VideoPlayer::AddFileBranch(const wchar_t* filePath, IBaseFilter* sourceFilter, const VideoFormat* format)
{
    if (mux) {
        mux->Release();
        mux = nullptr;
    }
    if (fileSink) {
        fileSink->Release();
        fileSink = nullptr;
    }
    HRESULT hr = captureBuilder->SetOutputFileName(&MEDIASUBTYPE_Avi, filePath, &mux, &fileSink);
    fileBranchAssembled = false;
    if (hr == E_NOTIMPL) {
        hr = AssembleFileBranch(graph, filePath, &mux, &fileSink);
        fileBranchAssembled = SUCCEEDED(hr);
    }
    if (FAILED(hr)) {
        Report(L"SEVERE: SetOutputFileName method has failed\r\n");
        return E_ABORT;
    }

    const CodecRecord* codec = nullptr;
    for (SubtypeCodecPair* pair : subtypeCodecPairs) {
        if (!pair || pair->subtype != format->subtype)
            continue;
        if (pair->codec && pair->codec->filter)
            codec = pair->codec;
        break;
    }
    IBaseFilter* codecFilter = codec ? codec->filter : nullptr;
    if (codecFilter) {
        if (FAILED(graph->AddFilter(codecFilter, codec->name))) {
            Report(L"\r\nUnable to add elected codec to filter graph\r\n");
            return E_ABORT;
        }
        ComPtr<IPin> codecInput(GetFilterPin(codecFilter, PINDIR_INPUT, nullptr));
        ComPtr<IPin> codecOutput(GetFilterPin(codecFilter, PINDIR_OUTPUT, nullptr));
        if (!codecInput || !codecOutput) {
            Report(L"\r\nUnable to find codec filter input or output pin\r\n");
            return E_ABORT;
        }
        graph->Disconnect(codecInput.Get());
        graph->Disconnect(codecOutput.Get());
    }
    if (FAILED(captureBuilder->RenderStream(&PIN_CATEGORY_CAPTURE, &MEDIATYPE_Video, sourceFilter, codecFilter,
                                            mux))) {
        Report(L"\r\nSelected codec does not work for this camera.\r\n");
        return E_ABORT;
    }
    if (droppedFrames) {
        droppedFrames->Release();
        droppedFrames = nullptr;
    }
    captureBuilder->FindInterface(&PIN_CATEGORY_CAPTURE, &MEDIATYPE_Video, sourceFilter, IID_IAMDroppedFrames,
                                  reinterpret_cast<void**>(&droppedFrames));

    ComPtr<IConfigAviMux> muxConfig;
    if (FAILED(mux->QueryInterface(IID_IConfigAviMux, muxConfig.PutVoid())) ||
        FAILED(muxConfig->SetOutputCompatibilityIndex(FALSE)))
        Report(L"Cannot configure the AVI Mux filter.  Report this message (see Help->About)\r\n");

    bool tagged = false;
    ComPtr<IMediaPropertyBag> bag;
    ComPtr<IPersistMediaPropertyBag> persist;
    if (SUCCEEDED(CoCreateInstance(CLSID_MediaPropertyBag, nullptr, CLSCTX_INPROC_SERVER, IID_IMediaPropertyBag,
                                   bag.PutVoid())) &&
        SUCCEEDED(mux->QueryInterface(IID_IPersistMediaPropertyBag, persist.PutVoid()))) {
        VARIANT value;
        VariantInit(&value);
        value.vt = VT_BSTR;
        value.bstrVal = SysAllocString(L"MAVU Video Capture");
        HRESULT written = bag->Write(L"INFO/IART", &value);
        VariantClear(&value);
        tagged = SUCCEEDED(written) && SUCCEEDED(persist->Load(bag.Get(), nullptr));
    }
    if (!tagged)
        Report(L"Cannot add MAVU Video Capture INFO to AVI file.\r\nMAVU Video Playback will not report dropped "
               L"frames\r\n");
    return S_OK;
}

HRESULT VideoPlayer::RenderVideoStream(const wchar_t* filePath, bool useColor, IBaseFilter* sourceFilter)
{
    if (!graph || !captureBuilder || !mediaControl || !currentRenderer) {
        Report(L"Logic error: attempt to render video stream with invalid filter graph\r\n");
        return E_FAIL;
    }
    if (FAILED(captureBuilder->RenderStream(&PIN_CATEGORY_PREVIEW, &MEDIATYPE_Video, sourceFilter, nullptr,
                                            currentRenderer))) {
        Report(L"SEVERE: cannot render preview stream\r\n");
        return E_FAIL;
    }
    if (filePath && filePath[0])
        recording = 1;
    const VideoFormat* format = CurrentVideoFormat();
    if (!format) {
        Report(L"SEVERE: current video format is NULL\r\n");
        return E_FAIL;
    }
    if (recording) {
        HRESULT hr = AddFileBranch(filePath, sourceFilter, format);
        if (FAILED(hr))
            return hr;
    }

    bool wanted = pixelSaturationOn || frameIntegrationOn || useColor;
    if ((recording && (removeFiltersWhileRecording || displayOffWhileRecording)) || !wanted) {
        graphState = GraphBuilt;
        return S_OK;
    }

    ComPtr<IPin> previewPin, capturePin;
    ComPtr<IBaseFilter> tee;
    if (SUCCEEDED(FindSmartTee(graph, tee.Put())) && tee) {
        previewPin = ComPtr<IPin>(GetFilterPin(tee.Get(), PINDIR_OUTPUT, L"Preview"));
        capturePin = ComPtr<IPin>(GetFilterPin(tee.Get(), PINDIR_OUTPUT, L"Capture"));
        tee.Reset();
        if (!previewPin) {
            Report(L"SEVERE: Smart Tee preview pin is NULL\r\n");
            return E_ABORT;
        }
        if (!capturePin)
            Report(L"INFO: Smart Tee capture pin is NULL - no brightness/contrast\r\n");
    } else {
        previewPin = ComPtr<IPin>(GetFilterPin(sourceFilter, PINDIR_OUTPUT, L"Preview"));
        capturePin = ComPtr<IPin>(GetFilterPin(sourceFilter, PINDIR_OUTPUT, L"Capture"));
        if (!previewPin) {
            Report(L"SEVERE: source filter preview pin is NULL\r\n");
            return E_ABORT;
        }
    }
    ComPtr<IPin> downstream;
    if (FAILED(previewPin->ConnectedTo(downstream.Put())) || !downstream) {
        Report(L"SEVERE: preview connected to pin is NULL\r\n");
        return E_ABORT;
    }

    ComPtr<IPin> transformOutput;
    if (pixelSaturationOn || frameIntegrationOn) {
        graph->Disconnect(previewPin.Get());
        graph->Disconnect(downstream.Get());
        if (FAILED(graph->AddFilter(transformBaseFilter, L"MAVU Transform Filter Preview"))) {
            Report(L"SEVERE: cannot add transform filter to filter graph\r\n");
            return E_ABORT;
        }
        ComPtr<IPin> input(GetFilterPin(transformBaseFilter, PINDIR_INPUT, nullptr));
        if (!input) {
            Report(L"SEVERE: transform filter input pin is NULL\r\n");
            return E_ABORT;
        }
        graph->Disconnect(input.Get());
        if (FAILED(graph->ConnectDirect(previewPin.Get(), input.Get(), nullptr))) {
            Report(L"SEVERE: cannot connect preview output pin with transform filter input pin\r\n");
            return E_ABORT;
        }
        transformOutput = ComPtr<IPin>(GetFilterPin(transformBaseFilter, PINDIR_OUTPUT, nullptr));
        if (!transformOutput) {
            Report(L"SEVERE: transform filter output pin is NULL\r\n");
            return E_ABORT;
        }
        graph->Disconnect(transformOutput.Get());
        if (FAILED(graph->ConnectDirect(transformOutput.Get(), downstream.Get(), nullptr)) &&
            FAILED(graph->Connect(transformOutput.Get(), downstream.Get()))) {
            Report(L"SEVERE: cannot connect transform filter output pin with preview connected to pin\r\n");
            return E_ABORT;
        }
        input.Reset();
        HRESULT hr = transformFilter->SetMediaInfo();
        if (FAILED(hr)) {
            Report(L"SEVERE: cannot set media information on transform filter\r\n");
            return hr;
        }
    }

    if (useColor && renderColorFilter) {
        if (FAILED(graph->AddFilter(renderColorFilter, L"Color Control Render"))) {
            Report(L"\r\nCannot add color control filter to filter graph - no brightness/contrast\r\n");
        } else {
            ComPtr<IPin> input(GetFilterPin(renderColorFilter, PINDIR_INPUT, nullptr));
            ComPtr<IPin> output(GetFilterPin(renderColorFilter, PINDIR_OUTPUT, nullptr));
            if (!input || !output) {
                Report(L"\r\nCannot get IPins for preview color control filter - no brightness/contrast\r\n");
            } else {
                IPin* upstream = transformOutput ? transformOutput.Get() : previewPin.Get();
                graph->Disconnect(input.Get());
                graph->Disconnect(output.Get());
                graph->Disconnect(downstream.Get());
                graph->Disconnect(upstream);
                graph->ConnectDirect(upstream, input.Get(), nullptr);
                graph->ConnectDirect(output.Get(), downstream.Get(), nullptr);
            }
        }
    }

    if (colorInCaptureFile && recording) {
        graph->AddFilter(captureColorFilter, L"Color Control Capture");
        ComPtr<IPin> captureDownstream;
        if (capturePin)
            capturePin->ConnectedTo(captureDownstream.Put());
        ComPtr<IPin> input(GetFilterPin(captureColorFilter, PINDIR_INPUT, nullptr));
        ComPtr<IPin> output(GetFilterPin(captureColorFilter, PINDIR_OUTPUT, nullptr));
        if (!input || !output || !capturePin || !captureDownstream) {
            Report(L"\r\nCannot get IPins for capture color control filter - no brightness/contrast in capture "
                   L"file\r\n");
        } else {
            graph->Disconnect(input.Get());
            graph->Disconnect(output.Get());
            graph->Disconnect(capturePin.Get());
            graph->Disconnect(captureDownstream.Get());
            graph->ConnectDirect(capturePin.Get(), input.Get(), nullptr);
            graph->ConnectDirect(output.Get(), captureDownstream.Get(), nullptr);
        }
    }
    graphState = GraphBuilt;
    return S_OK;
}
