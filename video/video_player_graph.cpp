// VideoPlayer: building the capture graph: emptying it, rendering the
// preview and the file branch, splicing the program's own filters into the
// preview, and the source's stream format.
#include "video/video_player.h"

#include "base/program_version.h"
#include "base/report.h"
#include "gps/clock_check.h"
#include "video/codecs.h"
#include "video/file_branch.h"
#include "video/filter_categories.h"
#include "video/graph_pins.h"
#include "video/avi_header.h"
#include "filters/file_sink_filter.h"

#include <vector>

namespace {

// Whether the renderer takes the camera's format on its input as it is.
bool RendererTakesFormat(IBaseFilter* renderer, const VideoFormat* format)
{
    if (!format || !format->mediaType)
        return false;
    ComPtr<IPin> input(GetFilterPin(renderer, PINDIR_INPUT, nullptr));
    return input && input->QueryAccept(format->mediaType) == S_OK;
}

// The file branch's queue holds up to this many frames, and no more than
// this many bytes of them: a few seconds of a busy disk at the sizes of
// analog grabbers and webcams, two at full HD.
constexpr long kCaptureQueueFrames = 150;
constexpr uint64_t kCaptureQueueBytes = 256ull << 20;
// The preview's queue holds one frame: a frame that comes while the
// renderer still draws the last one is not shown.
constexpr long kPreviewQueueFrames = 1;
constexpr uint64_t kPreviewQueueBytes = 1ull << 30;
// How long a stop waits for the disk to take what the file branch holds.
constexpr DWORD kCaptureDrainMs = 20000;

void Report(const wchar_t* text)
{
    ReportUserMessage(text, false);
}

}  // namespace

HRESULT VideoPlayer::JoinQueueToMux()
{
    ComPtr<IPin> queueOutput(GetFilterPin(captureQueue.Get(), PINDIR_OUTPUT, nullptr));
    ComPtr<IPin> muxInput(GetFilterPin(mux.Get(), PINDIR_INPUT, nullptr));
    if (!queueOutput || !muxInput)
        return E_FAIL;
    HRESULT hr = graph->ConnectDirect(queueOutput.Get(), muxInput.Get(), nullptr);
    if (FAILED(hr) || !fileBranchAssembled)
        return hr;
    // The mux writes the file's header only when it finishes the file; until
    // then the file starts with one of the program's own, so that a
    // recording cut short by a crash or a power cut still says what its
    // frames are.
    AM_MEDIA_TYPE type = {};
    if (SUCCEEDED(muxInput->ConnectionMediaType(&type))) {
        if (type.formattype == FORMAT_VideoInfo && type.pbFormat && type.cbFormat >= sizeof(VIDEOINFOHEADER)) {
            const auto* info = reinterpret_cast<const VIDEOINFOHEADER*>(type.pbFormat);
            const auto* bitmap = reinterpret_cast<const uint8_t*>(&info->bmiHeader);
            std::vector<uint8_t> format(bitmap, static_cast<const uint8_t*>(type.pbFormat) + type.cbFormat);
            static_cast<FileSinkFilter*>(fileSink.Get())
                ->SetLeadingBytes(BuildProvisionalAviHeader(format, info->AvgTimePerFrame));
        }
        FreeMediaType(type);
    }
    return S_OK;
}

HRESULT VideoPlayer::StopGraph()
{
    if (captureQueue && graphState == GraphRunning) {
        // Every frame the file branch took goes to the file before the mux
        // finishes it; frames that come later are not part of the recording.
        // Nothing reaches the mux after this, which it wouldn't take once
        // stopped.
        if (!captureQueue->Seal(kCaptureDrainMs))
            Report(L"WARNING: the disk did not take the last frames of the recording in time\r\n");
    }
    HRESULT hr = mediaControl->Stop();
    // The mux has finished the file once the graph stopped: the program's
    // sink lets it go at once, so that it can be copied, moved or deleted
    // while the camera waits for its next start.
    if (SUCCEEDED(hr) && fileBranchAssembled && fileSink)
        static_cast<FileSinkFilter*>(fileSink.Get())->CloseFile();
    return hr;
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
    WaitForVmr9Drawing();
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
    fileSink.Reset();
    mux.Reset();
    fileBranchAssembled = false;
    if (captureQueue)
        captureQueue->Observe(nullptr, nullptr);
    frameTimeRecord.reset();
    captureQueue.Reset();
    previewQueue.Reset();
    return result;
}

void VideoPlayer::StartFrameTimeRecord(const wchar_t* filePath, const VideoFormat* format)
{
    FrameTimeHeader header;
    header.program = kProgramVersionText;
    const VideoSourceInfo* source = CurrentSource();
    header.device = source ? source->name : L"";
    header.format = format->videoFormatName;
    const AM_MEDIA_TYPE* type = format->mediaType;
    if (type && type->formattype == FORMAT_VideoInfo && type->pbFormat && type->cbFormat >= sizeof(VIDEOINFOHEADER)) {
        REFERENCE_TIME period = reinterpret_cast<const VIDEOINFOHEADER*>(type->pbFormat)->AvgTimePerFrame;
        if (period > 0)
            header.framesPerSecond = 1e7 / static_cast<double>(period);
    }
    if (header.framesPerSecond <= 0)
        header.framesPerSecond = format->frameRate;
    GpsClockOffset offset = LastGpsClockOffset();
    header.gpsOffsetKnown = offset.known;
    header.gpsOffsetSeconds = offset.seconds;
    frameTimeRecord = std::make_unique<FrameTimeRecord>(filePath, header);
    captureQueue->Observe(frameTimeRecord.get(), droppedFrames.Get());
}

HRESULT VideoPlayer::AddFileBranch(const wchar_t* filePath, IBaseFilter* sourceFilter, const VideoFormat* format)
{
    HRESULT hr = captureBuilder->SetOutputFileName(&MEDIASUBTYPE_Avi, filePath, mux.Put(), fileSink.Put());
    fileBranchAssembled = false;
    if (hr == E_NOTIMPL) {
        hr = AssembleFileBranch(graph.Get(), filePath, mux.Put(), fileSink.Put());
        fileBranchAssembled = SUCCEEDED(hr);
    }
    if (FAILED(hr)) {
        Report(L"SEVERE: SetOutputFileName method has failed\r\n");
        return E_ABORT;
    }

    // A pair that names the "NONE" entry has no filter: no codec at all.
    const CodecRecord* codec = PairedCodec(format->subtype);
    IBaseFilter* codecFilter = codec ? codec->filter : nullptr;
    if (codecFilter) {
        if (FAILED(graph->AddFilter(codecFilter, codec->name))) {
            Report(L"\r\nUnable to add elected codec to filter graph\r\n");
            return E_ABORT;
        }
        ComPtr<IPin> codecInput, codecOutput;
        if (!GetFilterPinPair(codecFilter, codecInput, codecOutput)) {
            Report(L"\r\nUnable to find codec filter input or output pin\r\n");
            return E_ABORT;
        }
        graph->Disconnect(codecInput.Get());
        graph->Disconnect(codecOutput.Get());
    }
    // The capture stream ends in the queue, and the queue feeds the mux:
    // the camera's thread never waits for the disk.
    if (FAILED(captureQueue.Add(graph.Get(), L"Capture Queue", kCaptureQueueFrames, kCaptureQueueBytes)) ||
        FAILED(captureBuilder->RenderStream(&PIN_CATEGORY_CAPTURE, &MEDIATYPE_Video, sourceFilter, codecFilter,
                                            captureQueue.Get())) ||
        FAILED(JoinQueueToMux())) {
        Report(L"\r\nSelected codec does not work for this camera.\r\n");
        return E_ABORT;
    }
    captureBuilder->FindInterface(&PIN_CATEGORY_CAPTURE, &MEDIATYPE_Video, sourceFilter, IID_IAMDroppedFrames,
                                  droppedFrames.PutVoid());
    StartFrameTimeRecord(filePath, format);

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
    if (filePath && filePath[0])
        recording = 1;
    // A recording's preview goes through a queue of its own, so that a
    // screen that can't keep up never holds the camera back. It stands in
    // the preview from the start: this platform's VMR9 makes a new Direct3D
    // device at each connection and keeps the old one, so the renderer is
    // joined once per build and never spliced.
    if (recording && FAILED(previewQueue.Add(graph.Get(), L"Preview Queue", kPreviewQueueFrames, kPreviewQueueBytes)))
        Report(L"NOTE: the preview could not be given a thread of its own; a slow display may cost recorded frames\r\n");
    // Where the platform lists no filter category, its search for a filter
    // between two pins that don't join reads a null enumerator and crashes:
    // a renderer that doesn't take the camera's format as it is fails here,
    // as that search, finding nothing, would have.
    if ((!FilterCategoriesListed() && !RendererTakesFormat(currentRenderer, CurrentVideoFormat())) ||
        FAILED(captureBuilder->RenderStream(&PIN_CATEGORY_PREVIEW, &MEDIATYPE_Video, sourceFilter,
                                            previewQueue ? previewQueue.Get() : nullptr, currentRenderer))) {
        Report(L"SEVERE: cannot render preview stream\r\n");
        return E_FAIL;
    }
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
    if (SUCCEEDED(FindSmartTee(graph.Get(), tee.Put())) && tee) {
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
        if (FAILED(graph->AddFilter(transformBaseFilter.Get(), L"MAVU Transform Filter Preview"))) {
            Report(L"SEVERE: cannot add transform filter to filter graph\r\n");
            return E_ABORT;
        }
        ComPtr<IPin> input(GetFilterPin(transformBaseFilter.Get(), PINDIR_INPUT, nullptr));
        if (!input) {
            Report(L"SEVERE: transform filter input pin is NULL\r\n");
            return E_ABORT;
        }
        graph->Disconnect(input.Get());
        if (FAILED(graph->ConnectDirect(previewPin.Get(), input.Get(), nullptr))) {
            Report(L"SEVERE: cannot connect preview output pin with transform filter input pin\r\n");
            return E_ABORT;
        }
        transformOutput = ComPtr<IPin>(GetFilterPin(transformBaseFilter.Get(), PINDIR_OUTPUT, nullptr));
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
        if (FAILED(graph->AddFilter(renderColorFilter.Get(), L"Color Control Render"))) {
            Report(L"\r\nCannot add color control filter to filter graph - no brightness/contrast\r\n");
        } else {
            ComPtr<IPin> input, output;
            if (!GetFilterPinPair(renderColorFilter.Get(), input, output)) {
                Report(L"\r\nCannot get IPins for preview color control filter - no brightness/contrast\r\n");
            } else {
                IPin* upstream = transformOutput ? transformOutput.Get() : previewPin.Get();
                SpliceFilterPins(graph.Get(), {input.Get(), output.Get(), downstream.Get(), upstream}, upstream,
                                 input.Get(), output.Get(), downstream.Get());
            }
        }
    }

    if (colorInCaptureFile && recording) {
        graph->AddFilter(captureColorFilter.Get(), L"Color Control Capture");
        ComPtr<IPin> captureDownstream;
        if (capturePin)
            capturePin->ConnectedTo(captureDownstream.Put());
        ComPtr<IPin> input, output;
        bool pinsFound = GetFilterPinPair(captureColorFilter.Get(), input, output);
        if (!pinsFound || !capturePin || !captureDownstream) {
            Report(L"\r\nCannot get IPins for capture color control filter - no brightness/contrast in capture "
                   L"file\r\n");
        } else {
            SpliceFilterPins(graph.Get(), {input.Get(), output.Get(), capturePin.Get(), captureDownstream.Get()},
                             capturePin.Get(), input.Get(), output.Get(), captureDownstream.Get());
        }
    }
    graphState = GraphBuilt;
    return S_OK;
}

HRESULT VideoPlayer::SetStreamFormat(IBaseFilter* filter, const VideoFormat* format, GUID category)
{
    if (!captureBuilder) {
        ReportUserMessage(L"Logic error: attempt to set video stream format without a filter graph\r\n", true);
        return E_FAIL;
    }
    if (graphState != GraphSourceAdded) {
        ReportUserMessage(L"SEVERE: attempting to set video stream format with no source filter\r\n", true);
        return E_FAIL;
    }
    ComPtr<IAMStreamConfig> config;
    if (FAILED(captureBuilder->FindInterface(&category, &MEDIATYPE_Video, filter, IID_IAMStreamConfig,
                                             config.PutVoid()))) {
        ReportUserMessage(L"SEVERE: IAMStreamConfig interface is missing\r\n", true);
        return E_FAIL;
    }
    if (!config) {
        ReportUserMessage(L"WARNING: attempt to set video stream format with NULL stream configuration interface\r\n",
                          true);
        return E_FAIL;
    }
    // The media type goes as the pin offered it, never altered.
    return config->SetFormat(format->mediaType);
}
