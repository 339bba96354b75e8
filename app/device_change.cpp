#include "app/device_change.h"

#include <cwchar>
#include <string>

#include "app/continuation_file.h"
#include "app/main_window.h"
#include "app/recording_control.h"
#include "app/startup_state.h"
#include "base/report.h"
#include "persistence/options.h"
#include "ui/device_format_window.h"
#include "ui/select_device_window.h"
#include "ui/menus.h"
#include "ui/window_layout.h"
#include "video/device_hot_plug.h"
#include "video/video_configuration.h"
#include "video/video_sources.h"

namespace {

// The notification the system sends when a device node was added or
// removed (DBT_DEVNODES_CHANGED); it names no device.
constexpr WPARAM kDevNodesChanged = 7;

void Report(const std::wstring& line)
{
    ReportUserMessage(line.c_str(), true);
}

std::wstring DeviceLine(const wchar_t* head, const VideoSourceInfo& source, const wchar_t* tail)
{
    return std::wstring(head) + source.name + tail;
}

// The device a result is about, or null after the line that says its index
// is out of range.
VideoSourceInfo* DeviceOfResult(int32_t index, const wchar_t* outOfRangeLine)
{
    if (index < 0 || static_cast<size_t>(index) >= videoSources.size() || !videoSources[index]) {
        ReportUserMessage(outOfRangeLine, true);
        return nullptr;
    }
    return videoSources[index];
}

constexpr wchar_t kRemovedOutOfRange[] = L"Device disconnect logic error - device index out of range\r\n";
constexpr wchar_t kConnectedOutOfRange[] = L"Device connect logic error - device index out of range\r\n";

// Its recording stops with its file and report. The marks stay on the
// device, which still counts as the recording's, and the end timer of an
// event runs on.
void OnRecordingDeviceRemoved(VideoSourceInfo& source)
{
    StopVideo();
    Report(DeviceLine(L"Active video capture device \"", source, L"\" disconnected while recording\r\n"));
}

// The next device takes over, if there is one.
void OnActiveDeviceRemoved(VideoSourceInfo& source)
{
    source.isActive = 0;
    Report(DeviceLine(L"Active video capture device \"", source, L"\" disconnected\r\n"));
    ChooseCurrentDevice();
    StopVideo();
    ActivateCurrentDevice();
    if (currentSourceIndex != kNoSource)
        StartVideo();
}

// The recording goes on in the next continuation file, named from the
// first file's name, with a report of its own.
void OnRecordingDeviceReturned(VideoSourceInfo& source)
{
    wchar_t path[kRecordingFilePathCapacity];
    if (!ContinuationFilePath(source.manualFilePath, source.continuationCount + 1, path, kRecordingFilePathCapacity)) {
        ReportUserMessage(L"Device connect / disconnect logic error - manual file pathname does not end with .avi\r\n",
                          true);
        return;
    }
    ++source.continuationCount;
    wcscpy(RecordingFilePath, path);
    Report(DeviceLine(L"Active video capture device \"", source, L"\" reconnected for recording\r\n"));
    MarkRecordingStarted(false);
    StartVideo();
}

// A known device back, or a new one: it becomes current if none is, or if it
// is the default device and no recording runs on the current one (the
// recording keeps its device and goes on in its next file). The camera
// restarts either way.
void OnDeviceConnected(VideoSourceInfo& source, int32_t index, bool isNew)
{
    std::wstring line = DeviceLine(L"Video capture device \"", source, L"\" connected");
    bool recording = CurrentSourceRecording();
    if (currentSourceIndex == kNoSource) {
        currentSourceIndex = static_cast<uint32_t>(index);
        line += L"\r\n";
    } else if (!recording && wcscmp(source.name, options.DefaultVideoSource) == 0) {
        if (deviceFormatOpen)
            CloseDeviceFormatDialog();
        if (VideoSourceInfo* previous = CurrentSource())
            previous->isActive = 0;
        source.isActive = 1;
        currentSourceIndex = static_cast<uint32_t>(index);
        if (selectDeviceOpen)
            RefreshSelectDeviceDialog();
        line += L" as the default\r\n";
    } else {
        line += L"\r\n";
    }
    Report(line);
    if (isNew)
        ApplySavedConfigurations();
    StopVideo();
    ActivateCurrentDevice();
    StartVideo();
    useDeviceSize = 1;
    UpdateMainWindowLayout();
    useDeviceSize = 0;
}

void ActOnConnectResult(ConnectResult result, int32_t index)
{
    if (result == NothingToDo)
        return;
    if (result < RecordingDeviceRemoved || result > NothingToDo) {
        ReportUserMessage(L"Logic error: default reached for connect / disconnect\r\n", false);
        return;
    }
    bool removal = result <= IgnoredDeviceRemoved;
    VideoSourceInfo* source = DeviceOfResult(index, removal ? kRemovedOutOfRange : kConnectedOutOfRange);
    if (!source)
        return;
    switch (result) {
    case RecordingDeviceRemoved:
        OnRecordingDeviceRemoved(*source);
        break;
    case ActiveDeviceRemoved:
        OnActiveDeviceRemoved(*source);
        break;
    case InactiveDeviceRemoved:
        Report(DeviceLine(L"Inactive video capture device \"", *source, L"\" disconnected\r\n"));
        break;
    case IgnoredDeviceRemoved:
        Report(DeviceLine(L"Ignored video capture device \"", *source, L"\" disconnected\r\n"));
        break;
    case RecordingDeviceReturned:
        OnRecordingDeviceReturned(*source);
        break;
    case KnownDeviceReturned:
    case NewDeviceAppended:
        OnDeviceConnected(*source, index, result == NewDeviceAppended);
        break;
    case IgnoredDeviceReturned:
        Report(DeviceLine(L"Ignored video capture device \"", *source, L"\" connected\r\n"));
        break;
    case NothingToDo:
        break;
    }
}

}  // namespace

bool DeviceChangeTaken(WPARAM wParam, bool startingUpNow, bool cameraStartingNow, bool deviceChangeBusyNow)
{
    return wParam == kDevNodesChanged && !startingUpNow && !cameraStartingNow && !deviceChangeBusyNow;
}

LRESULT OnDeviceChange(WPARAM wParam)
{
    if (!DeviceChangeTaken(wParam, startingUp != 0, cameraStarting != 0, deviceChangeBusy != 0))
        return 0;
    // The handling calls into window operations that dispatch messages; a
    // notification that comes meanwhile is dropped.
    deviceChangeBusy = 1;
    int32_t index = -1;
    ConnectResult result = UpdateSourceVideoInfoList(&index);
    ActOnConnectResult(result, index);
    // An open Video Input Device window follows every device that came or
    // went, not only a default that took over.
    if (selectDeviceOpen && result != NothingToDo)
        RefreshSelectDeviceDialog();
    deviceChangeBusy = 0;
    return 1;
}
