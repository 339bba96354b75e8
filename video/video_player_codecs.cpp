// VideoPlayer: the video compressors installed on the computer, and the
// trial that tells which of them connect to the current device and format.
#include "video/video_player.h"

#include "base/report.h"
#include "video/codecs.h"
#include "video/device_list.h"
#include "video/device_names.h"
#include "video/file_branch.h"
#include "video/filter_categories.h"
#include "video/graph_pins.h"

namespace {

HRESULT Fail(const wchar_t* text)
{
    ReportUserMessage(text, true);
    return E_FAIL;
}

CodecRecord* MakeCodecRecord(IBaseFilter* filter, const wchar_t* name)
{
    auto* record = new CodecRecord{};
    record->filter = filter;
    lstrcpynW(record->name, name, kCodecNameCapacity);
    return record;
}

// The camera, the compressor and the mux joined pin to pin, with nothing put
// between; what joined is undone when a link fails.
bool ConnectPinToPin(IGraphBuilder* graph, IPin* sourcePin, IPin* codecInput, IPin* codecOutput, IPin* muxPin)
{
    if (FAILED(graph->ConnectDirect(sourcePin, codecInput, nullptr)))
        return false;
    if (SUCCEEDED(graph->ConnectDirect(codecOutput, muxPin, nullptr)))
        return true;
    graph->Disconnect(sourcePin);
    graph->Disconnect(codecInput);
    return false;
}

// The friendly name and the filter of one compressor; false where either
// can't be had.
bool BindCodec(IMoniker* moniker, std::wstring& name, ComPtr<IBaseFilter>& filter)
{
    ComPtr<IPropertyBag> bag;
    if (FAILED(moniker->BindToStorage(nullptr, nullptr, IID_IPropertyBag, bag.PutVoid())) || !bag)
        return false;
    VARIANT value;
    VariantInit(&value);
    bool named = SUCCEEDED(bag->Read(L"FriendlyName", &value, nullptr)) && value.vt == VT_BSTR && value.bstrVal;
    if (named)
        name = value.bstrVal;
    VariantClear(&value);
    if (!named)
        return false;
    return SUCCEEDED(moniker->BindToObject(nullptr, nullptr, IID_IBaseFilter, filter.PutVoid())) && filter;
}

}  // namespace

void VideoPlayer::GetCodecList()
{
    // Start-up makes the colour filters here; the two have no other tie.
    CreateColorControlFilters();
    installedCodecs.push_back(MakeCodecRecord(nullptr, L"NONE"));

    ComPtr<ICreateDevEnum> devices;
    if (FAILED(CoCreateInstance(CLSID_SystemDeviceEnum, nullptr, CLSCTX_INPROC_SERVER, IID_ICreateDevEnum,
                                devices.PutVoid())) ||
        !devices) {
        ReportUserMessage(L"\r\n\r\nERROR -- Unable to create a system device enumerator to search for codecs.  Report "
                          L"this issue.\r\n",
                          false);
        return;
    }
    ComPtr<IEnumMoniker> monikers;
    // S_FALSE: the category is empty.
    if (devices->CreateClassEnumerator(CLSID_VideoCompressorCategory, monikers.Put(), 0) != S_OK || !monikers) {
        ReportUserMessage(L"\r\n\r\nERROR -- Unable to create a video compressor enumerator to search for codecs.  "
                          L"Report this issue.\r\n",
                          false);
        return;
    }
    ComPtr<IMoniker> moniker;
    while (monikers->Next(1, moniker.Put(), nullptr) == S_OK) {
        std::wstring name;
        ComPtr<IBaseFilter> filter;
        if (!moniker || !BindCodec(moniker.Get(), name, filter))
            continue;
        CodecRecord* record = MakeCodecRecord(filter.Detach(), name.c_str());
        if (NeedsCleaning(record->name))
            CleanDeviceName(record->name);
        installedCodecs.push_back(record);
    }
}

HRESULT VideoPlayer::GetCodecsForSourceDevice(HRESULT (*startVideo)())
{
    // The lists tell the last trial only; a failure below leaves them empty.
    usableCodecs.clear();
    usableCodecIndexes.clear();
    VideoSourceInfo* source = CurrentSource();
    if (!source)
        return Fail(L"Logic error: getting codecs for an invalid video source index\r\n");
    if (FAILED(CreateCodecGraph()))
        return Fail(L"WARNING: failed to create codec filter graph\r\n");
    if (FAILED(StopCamera(false, L"", RecordingNotes{})))
        return Fail(L"WARNING: could not stop camera in GetCodecsForSourceDevice\r\n");
    const VideoFormat* format = CurrentVideoFormat();
    if (!format)
        return Fail(L"Logic error: getting codecs for an out-of-range video format\r\n");
    if (FAILED(GetVideoSourceBaseFilter(source)))
        return Fail(L"WARNING: cannot get source base filter while attempting to get codecs for video format\r\n");
    // A filter stands in one graph at a time, and the stopped main graph
    // still holds the source with its pins joined to the tee: it lets the
    // source go before the trial graph takes it. The camera's restart
    // builds the main graph anew in any case.
    if (graph)
        graph->RemoveFilter(source->baseFilter);
    if (FAILED(codecGraph->AddFilter(source->baseFilter, source->name)))
        return Fail(L"WARNING: cannot add source base filter to codec filter graph in GetCodecsForSourceDevice\r\n");

    // The trial connects in the format the camera will record in.
    ComPtr<IAMStreamConfig> config;
    if (FAILED(codecBuilder->FindInterface(&PIN_CATEGORY_CAPTURE, &MEDIATYPE_Video, source->baseFilter,
                                           IID_IAMStreamConfig, config.PutVoid())) ||
        !config)
        return Fail(L"WARNING: cannot get stream configuration interface in GetCodecsForSourceDevice\r\n");
    HRESULT hr = config->SetFormat(format->mediaType);
    config.Reset();
    if (FAILED(hr))
        return Fail(L"WARNING: cannot set video format using stream configuration interface in "
                    L"GetCodecsForSourceDevice\r\n");

    // The graph never runs, so the file gets no content. Where the
    // platform's builder won't make the file branch, it is assembled as for
    // a recording.
    std::wstring scratchPath = CurrentDirectory() + L"\\bogus.avi";
    ComPtr<IFileSinkFilter> sink;
    hr = codecBuilder->SetOutputFileName(&MEDIASUBTYPE_Avi, scratchPath.c_str(), codecMux.Put(), sink.Put());
    bool assembled = hr == E_NOTIMPL;
    if (assembled)
        hr = AssembleFileBranch(codecGraph.Get(), scratchPath.c_str(), codecMux.Put(), sink.Put());
    if (FAILED(hr))
        return Fail(L"WARNING: failed in call to SetOutputFileName in GetCodecsForSourceDevice\r\n");
    ComPtr<IPin> sourcePin(GetFilterPin(source->baseFilter, PINDIR_OUTPUT, nullptr));
    if (!sourcePin)
        return Fail(
            L"WARNING: failed to get source output pin in call to GetFilterPin in GetCodecsForSourceDevice\r\n");
    ComPtr<IPin> muxPin(GetFilterPin(codecMux.Get(), PINDIR_INPUT, nullptr));
    if (!muxPin)
        return Fail(L"WARNING: failed to get mux input pin in call to GetFilterPin in GetCodecsForSourceDevice\r\n");

    // Where the platform lists no filter category, the builder's search for a
    // filter to put between two pins has nothing to find, and this
    // platform's search then reads a null enumerator and crashes: the trial
    // joins the pins directly instead, which gives the same answer.
    const bool categoriesListed = FilterCategoriesListed();
    bool muxTried = false;
    for (uint32_t index = 0; index < installedCodecs.size(); ++index) {
        // Each trial starts clean: a link of the last one may hold on
        // either side.
        codecGraph->Disconnect(sourcePin.Get());
        codecGraph->Disconnect(muxPin.Get());
        CodecRecord* codec = installedCodecs[index];
        if (!codec)
            continue;
        if (codec->filter) {
            // Pins taken by direction: only the filter's shape counts.
            ComPtr<IPin> codecInput, codecOutput;
            if (!GetFilterPinPair(codec->filter, codecInput, codecOutput))
                continue;
            // This platform's mux fails (a null read) when an input that
            // was joined and let go is joined again: an assembled branch
            // is made anew for each trial after the first.
            if (assembled && muxTried &&
                FAILED(RenewFileBranch(codecGraph.Get(), scratchPath.c_str(), codecMux, sink, muxPin)))
                break;
            if (FAILED(codecGraph->AddFilter(codec->filter, codec->name)))
                continue;
            muxTried = true;
            bool connected =
                categoriesListed
                    ? SUCCEEDED(codecBuilder->RenderStream(&PIN_CATEGORY_CAPTURE, &MEDIATYPE_Video, source->baseFilter,
                                                           codec->filter, codecMux.Get()))
                    : ConnectPinToPin(codecGraph.Get(), sourcePin.Get(), codecInput.Get(), codecOutput.Get(),
                                      muxPin.Get());
            if (connected) {
                codecGraph->Disconnect(codecInput.Get());
                codecGraph->Disconnect(codecOutput.Get());
            }
            codecInput.Reset();
            codecOutput.Reset();
            codecGraph->RemoveFilter(codec->filter);
            if (!connected)
                continue;
        }
        usableCodecs.push_back(codec);
        usableCodecIndexes.push_back(index);
    }

    sourcePin.Reset();
    muxPin.Reset();
    DestroyCodecGraph();
    sink.Reset();
    if (startVideo)
        startVideo();
    return S_OK;
}
