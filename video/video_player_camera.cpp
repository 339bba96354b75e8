// VideoPlayer: starting and stopping the camera, and the report of a
// recording.
#include "video/video_player.h"

#include "base/report.h"
#include "base/time_text.h"
#include "video/codecs.h"
#include "video/device_list.h"
#include "video/frame_size.h"

#include <string>

namespace {

constexpr wchar_t kBadCharacterNote[] = L"\r\n\r\nNOTE -- wide character buffer has unexpected bad character.\r\n";

HRESULT Fail(const wchar_t* text)
{
    ReportUserMessage(text, true);
    return E_FAIL;
}

bool IsPixelToolSubtype(VideoSubtype subtype)
{
    return subtype == SubtypeYUY2 || subtype == SubtypeRGB24 || subtype == SubtypeARGB32;
}

}  // namespace

std::wstring CurrentDirectory()
{
    wchar_t folder[MAX_PATH] = L"";
    GetCurrentDirectoryW(MAX_PATH, folder);
    return folder;
}

HRESULT VideoPlayer::StartCamera(bool useCurrentDirectoryFlag, const wchar_t* recordingFilePath)
{
    if (!graph)
        return Fail(L"Logic error: attempt to start camera without a filter graph builder\r\n");
    recording = 0;
    if (videoSources.empty())
        return Fail(L"Logic error: attempt to start camera with no video source devices\r\n");
    const VideoFormat* format = CurrentVideoFormat();
    if (!format)
        return Fail(L"WARNING: attempt to start camera without a valid video format\r\n");
    videoWidth = format->width;
    videoHeight = format->height;
    if (currentSourceIndex >= videoSources.size())
        return Fail(L"Logic error: attempt to start camera with invalid source index\r\n");
    VideoSourceInfo* source = videoSources[currentSourceIndex];
    if (!source)
        return Fail(L"Logic error: attempt to start camera with NULL video source information\r\n");
    useCurrentDirectory = useCurrentDirectoryFlag ? 1 : 0;

    if (pixelSaturationOn || frameIntegrationOn || magnifyOn) {
        if (!IsPixelToolSubtype(format->subtype)) {
            std::wstring line = L"Pixel analysis not supported for selected device and format with name \"";
            line += source->name;
            line += L"\"\r\nExpecting an analog video device with a supported format\r\n";
            ReportUserMessage(line.c_str(), true);
            return E_NOTIMPL;
        }
        uint32_t bytes = frameIntegrationCount > 1
            ? static_cast<uint32_t>(format->width) * static_cast<uint32_t>(std::abs(format->height)) * 4
            : 0;
        if (pixelSaturationOn || frameIntegrationOn) {
            ConfigureTransformFilter(bytes);
            frameIntegrationCounter = 0;
            darkValueY = 0;
            darkAnalysisRequested = 1;
        }
    }

    if (FAILED(RemoveGraphFilters()))
        return Fail(L"WARNING: cannot remove graph filters while attempting to start camera\r\n");
    // Made again at each start while the tool is on and they are missing,
    // so a failure is told again each time.
    if (brightnessContrastOn && !renderColorFilter)
        CreateColorControlFilters();
    if (FAILED(GetVideoSourceBaseFilter(source)))
        return Fail(L"WARNING: cannot get source base filter while attempting to start camera\r\n");
    if (FAILED(graph->AddFilter(source->baseFilter, source->name)))
        return Fail(L"WARNING: Cannot add video source filter to filter graph\r\n");
    graphState = GraphSourceAdded;

    ComPtr<IEnumPins> pins;
    if (FAILED(source->baseFilter->EnumPins(pins.Put())))
        return Fail(L"ERROR: Cannot enumerate pins on source filter\r\n");
    if (!pins)
        return Fail(L"ERROR: NULL source filter pin enumerater\r\n");
    ComPtr<IPin> pin;
    while (pins->Next(1, pin.Put(), nullptr) == S_OK) {
        PIN_DIRECTION direction;
        if (FAILED(pin->QueryDirection(&direction)) || direction != PINDIR_OUTPUT)
            continue;
        ComPtr<IPin> peer;
        if (pin->ConnectedTo(peer.Put()) != VFW_E_NOT_CONNECTED) {
            ReportUserMessage(L"Logic error: source filter output pin is unexpectedly connected\r\n", true);
            graph->Disconnect(pin.Get());
        }
    }
    pins.Reset();

    if (FAILED(SetStreamFormat(source->baseFilter, format, PIN_CATEGORY_CAPTURE)))
        return Fail(L"WARNING: cannot set capture stream format\r\n");
    if (FAILED(CreateVideoRenderer(rendererChoice, nullptr, recordingFilePath)))
        return Fail(L"WARNING: cannot add video rendering filter to filter graph while attempting to start "
                    L"camera\r\n");
    if (!currentRenderer)
        return Fail(L"ERROR: pointer to current renderer is NULL while attempting to start the camera\r\n");
    ComPtr<IEnumPins> rendererPins;
    if (FAILED(currentRenderer->EnumPins(rendererPins.Put())) || !rendererPins)
        return Fail(L"ERROR: unable to enumerate renderer pins\r\n");
    while (rendererPins->Next(1, pin.Put(), nullptr) == S_OK) {
        PIN_DIRECTION direction;
        if (SUCCEEDED(pin->QueryDirection(&direction)) && direction == PINDIR_INPUT)
            graph->Disconnect(pin.Get());
    }
    rendererPins.Reset();

    if (FAILED(RenderVideoStream(recordingFilePath, brightnessContrastOn != 0, source->baseFilter)))
        return Fail(L"WARNING: cannot render video stream\r\n");
    if (FAILED(RunGraph()))
        return Fail(L"WARNING: cannot run filter graph video stream\r\n");
    if (droppedFrames) {
        long notDropped = 0, dropped = 0;
        HRESULT first = droppedFrames->GetNumNotDropped(&notDropped);
        HRESULT second = droppedFrames->GetNumDropped(&dropped);
        startNotDropped = notDropped;
        startDropped = dropped;
        if (FAILED(first) || FAILED(second))
            ReportUserMessage(L"WARNING: dropped frames value may be incorrect\r\n", true);
    }
    return S_OK;
}

HRESULT VideoPlayer::RunGraph()
{
    if (graphState != GraphBuilt)
        return static_cast<HRESULT>(0x00040257);
    if (!mediaControl) {
        ReportUserMessage(L"Logic error: attempt to run filter graph with a NULL media control interface\r\n", true);
        return E_FAIL;
    }
    // Every filter runs on the graph's clock, which stamps the frames and
    // times the file. This platform's graph gives its clock only to the
    // filters it holds when the clock is chosen, not to those added to a
    // later build; setting the same clock again hands it to each one.
    ComPtr<IMediaFilter> graphFilter;
    ComPtr<IReferenceClock> clock;
    if (SUCCEEDED(graph->QueryInterface(IID_IMediaFilter, graphFilter.PutVoid())) &&
        SUCCEEDED(graphFilter->GetSyncSource(clock.Put())) && clock)
        graphFilter->SetSyncSource(clock.Get());
    graphFilter.Reset();
    clock.Reset();
    HRESULT hr = mediaControl->Run();
    if (FAILED(hr)) {
        ReportUserMessage(L"WARNING: attempt to run filter graph failed\r\n", true);
        return hr;
    }
    graphState = GraphRunning;
    return S_OK;
}

HRESULT VideoPlayer::StopCamera(bool wasRecording, const wchar_t* recordingFilePath, const RecordingNotes& notes)
{
    if (currentSourceIndex >= videoSources.size() || !videoSources[currentSourceIndex])
        return S_OK;
    // Counts first: stopping comes before anything slow, and the counts
    // belong to the frames the run let through. A device gone from the bus
    // may refuse them.
    long notDropped = 0, dropped = 0;
    bool countsRead = droppedFrames && droppedFrames->GetNumNotDropped(&notDropped) == S_OK &&
                      droppedFrames->GetNumDropped(&dropped) == S_OK;
    bool wasRunning = graphState == GraphRunning;
    if (!mediaControl)
        return Fail(L"Logic error: attempt to stop camera without a filter graph builder\r\n");
    if (FAILED(StopGraph())) {
        ReportUserMessage(L"WARNING: Cannot stop recording camera\r\n", true);
        return E_ABORT;
    }
    graphState = GraphBuilt;
    if (transformFilter->HasAccumulator())
        transformFilter->FreeAccumulator();
    if (!recordingFilePath || recordingFilePath[0] == 0 || !wasRecording)
        return S_OK;
    // A piece of a recording ends once: when its device went away the stop
    // then wrote its report, and a later stop finds nothing running.
    if (!wasRunning)
        return S_OK;
    RecordedCounts counts;
    counts.available = countsRead;
    counts.recorded = notDropped - startNotDropped;
    counts.dropped = dropped - startDropped;
    if (captureQueue) {
        // What reached the file, and what the file branch couldn't take on
        // top of what the camera lost.
        FrameQueueCounts queued = captureQueue->Counts();
        counts.recorded = queued.delivered;
        counts.dropped += queued.dropped;
        counts.lastFrameUtc = queued.lastArrival;
    }
    if (counts.recorded < 0 || counts.dropped < 0)
        counts.available = false;
    LogStopRecordingLine(recordingFilePath, counts.lastFrameUtc);
    WriteRunReportFile(recordingFilePath, notes, counts);
    startDropped = 0;
    startNotDropped = 0;
    return S_OK;
}

void VideoPlayer::LogStopRecordingLine(const wchar_t* recordingFilePath, uint64_t lastFrameUtc)
{
    // The stop is when the last frame came: a device that went away stopped
    // sending before anybody noticed.
    std::wstring clock = UtcClockText();
    if (lastFrameUtc) {
        FILETIME last{static_cast<DWORD>(lastFrameUtc), static_cast<DWORD>(lastFrameUtc >> 32)};
        SYSTEMTIME time;
        if (FileTimeToSystemTime(&last, &time))
            clock = FormatTimeOfDay(time);
    }
    std::wstring line = L"Stop recording at " + clock + L" (UTC)";
    lstrcpynW(stopRecordingLine, line.c_str(), static_cast<int>(std::size(stopRecordingLine)));
    ReportUserMessage(stopRecordingLine, false);
    std::wstring file = L"Video file:  ";
    if (useCurrentDirectory)
        file += CurrentDirectory() + L"\\";
    file += recordingFilePath;
    file += L"\r\n";
    ReportUserMessage(file.c_str(), false);
}

void VideoPlayer::WriteRunReportFile(const wchar_t* recordingFilePath, const RecordingNotes& notes,
                                     const RecordedCounts& counts)
{
    VideoSourceInfo* source = CurrentSource();
    const VideoFormat* format = CurrentVideoFormat();
    RunReportInput input;
    input.eventRecording = source && source->isEventRecording;
    input.eventName = notes.eventName ? notes.eventName : L"";
    input.startLine = startRecordingLine;
    input.stopLine = stopRecordingLine;
    input.useCurrentDirectory = useCurrentDirectory != 0;
    if (input.useCurrentDirectory)
        input.currentDirectory = CurrentDirectory();
    input.filePath = recordingFilePath;
    input.hasFrameCounts = droppedFrames != nullptr && counts.available;
    input.recordedFrames = counts.recorded;
    input.droppedFrames = counts.dropped;
    if (const GpsSnapshot* gps = notes.gps) {
        input.gpsSnapshotValid = gps->valid != 0;
        input.latitude = gps->latitude;
        input.longitude = gps->longitude;
        input.altitude = gps->altitude;
        input.satellites = gps->satellites;
    }
    if (source) {
        input.deviceName = source->name;
        input.deviceStandard = source->deviceStandard;
        if (source->currentFrameRateIndex < source->frameRates.size() &&
            source->frameRates[source->currentFrameRateIndex])
            input.frameRateText = source->frameRates[source->currentFrameRateIndex]->frameRateText;
    }
    input.codecName = L"NONE";
    if (format) {
        input.formatName = format->videoFormatName;
        input.subtypeName = SubtypeName(format->subtype);
        if (const CodecRecord* codec = PairedCodec(format->subtype))
            input.codecName = codec->name;
    }
    input.rendererChoice = rendererChoice;

    std::wstring path = RunReportPath(recordingFilePath);
    if (path.empty())
        return;
    // Each conversion that had to use the default character says so, before
    // the file is written all the same.
    bool defaulted = false;
    std::string narrowPath = NarrowReportText(path, &defaulted);
    if (defaulted)
        ReportUserMessage(kBadCharacterNote, true);
    std::string narrowText = NarrowReportText(BuildRunReport(input), &defaulted);
    if (defaulted)
        ReportUserMessage(kBadCharacterNote, true);
    WriteRunReportText(narrowPath, narrowText);
}
