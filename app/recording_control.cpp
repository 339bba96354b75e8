#include "app/recording_control.h"

#include "app/app_state.h"
#include "app/commands.h"
#include "app/file_names.h"
#include "app/main_window.h"
#include "events/event_queue.h"
#include "filters/mavu_video_transform_filter.h"
#include "persistence/options.h"
#include "ui/menus.h"
#include "ui/record_controls.h"
#include "ui/user_messages.h"
#include "video/video_player.h"
#include "video/video_sources.h"

#include <shlwapi.h>

#include <string>

namespace {

// "Start recording at HH:mm:ss (UTC)" of the present UTC clock.
std::wstring StartRecordingLine()
{
    SYSTEMTIME now;
    GetSystemTime(&now);
    wchar_t clock[32] = L"";
    GetTimeFormatEx(nullptr, TIME_NOTIMEMARKER | TIME_FORCE24HOURFORMAT, &now, L"HH':'mm':'ss", clock, 32);
    return std::wstring(L"Start recording at ") + clock + L" (UTC)";
}

bool CurrentDeviceRecording()
{
    VideoSourceInfo* source = CurrentSource();
    return source && (source->isManualRecording || source->isEventRecording);
}

// Pixel saturation off, as its menu toggle turns it off; the check mark and
// the tool's window come with the tool dialogs.
void SwitchPixelSaturationOff(VideoPlayer& player)
{
    pixelSaturationOn = 0;
    player.transformFilter->saturationValue = -1;
}

}  // namespace

HRESULT StopVideo()
{
    MainWindow& app = *mainWindowObject;
    VideoSourceInfo* source = CurrentSource();
    bool wasRecording = source && (source->isManualRecording || source->isEventRecording);

    // The marks are still on the device here: the report's heading follows them.
    HRESULT result = app.videoPlayer->StopCamera(wasRecording);
    if (FAILED(result)) {
        ReportUserMessage(L"WARNING: command to stop camera failed\r\n", true);
        return result;
    }
    // The GPS link that a recording closed comes back.
    if (source && wasRecording && !appClosing && options.AutostartGPS)
        SendMessageW(app.mainWindow, WM_COMMAND, IDM_USB_GPS_RECEIVER, 0);
    return S_OK;
}

HRESULT StartVideo()
{
    MainWindow& app = *mainWindowObject;
    VideoPlayer& player = *app.videoPlayer;
    player.startRecordingLine[0] = 0;
    bool useCurrentDirectory = options.VideoDirectory[0] == 0;
    bool recording = CurrentDeviceRecording();
    if (recording) {
        // The GPS reading for the report comes with the GPS link; without
        // one the report carries no position.
        gpsSnapshotValid = 0;
        // No recording runs with frame integration.
        frameIntegrationCount = 1;
        frameIntegrationOn = 0;
        if (removeFiltersWhileRecording)
            SwitchPixelSaturationOff(player);
    }
    cameraStarting = 1;
    HRESULT result = player.StartCamera(useCurrentDirectory);
    if (result == E_NOTIMPL) {
        // A format the pixel tools can't work on: tools off, one more try.
        options.PixelSaturationValue = -1;
        SwitchPixelSaturationOff(player);
        frameIntegrationOn = 0;
        frameIntegrationCount = 1;
        if (SUCCEEDED(StopVideo()))
            result = player.StartCamera(useCurrentDirectory);
    }
    cameraStarting = 0;
    if (FAILED(result))
        return result;
    if (recording) {
        std::wstring line = StartRecordingLine();
        lstrcpynW(player.startRecordingLine, line.c_str(), static_cast<int>(std::size(player.startRecordingLine)));
        ReportUserMessage(player.startRecordingLine, true);
    }
    if (magnifyOn)
        player.UpdateRendererFrameSize();
    return S_OK;
}

void MakeVideoPathname(bool isEvent, const EventRecord* event)
{
    RecordingFilePath[0] = 0;
    std::wstring folder = options.VideoDirectory;
    if (folder.empty()) {
        folder = L"VideoFiles\\";
        if (!PathFileExistsW(L"VideoFiles") && !CreateDirectoryW(L"VideoFiles", nullptr)) {
            ReportUserMessage(L"\r\nUnable to create \"VideoFiles\" directory under the process directory.  Check "
                              L"security settings.\r\n",
                              true);
            return;
        }
    }
    std::wstring path;
    if (isEvent && event) {
        path = VideoFilePath(folder, event->text.asteroidName, event->text.starName, options.EventFileGlobalPrefix,
                             options.VideoNamePrefix, TicksToSystemTime(event->startTicks));
    } else {
        SYSTEMTIME local;
        GetLocalTime(&local);
        path = VideoFilePath(folder, nullptr, nullptr, nullptr, options.VideoNamePrefix,
                             UtcFromLocal(local, utcOffsetMinutes));
    }
    lstrcpynW(RecordingFilePath, path.c_str(), kRecordingFilePathCapacity);
}

void ApplyRecordingState(bool recording)
{
    MainWindow& app = *mainWindowObject;
    if (recording) {
        SetWindowTextW(app.mainWindow, L"MAVU Video Capture -- Recording in progress");
        if (app.countdownWindow)
            SetWindowTextW(app.countdownWindow, L"Recording Event");
    } else {
        SetWindowTextW(app.mainWindow, kMainWindowTitle);
        if (app.countdownWindow)
            ShowWindow(app.countdownWindow, SW_HIDE);
    }
    SetRecordButtons(!recording, recording);
    SetRecordingMenuGreying(recording);
    // With "remove display filters while recording" a recording never runs
    // with the brightness tool on. Its sliders and window come with the tool
    // dialogs.
    if (recording && brightnessContrastOn && removeFiltersWhileRecording)
        brightnessContrastOn = 0;
}

void MarkRecordingStarted(bool newRecording)
{
    if (RecordingFilePath[0] == 0) {
        ReportUserMessage(L"Logic error: attempting to record to a NULL file pathname\r\n", true);
        return;
    }
    VideoSourceInfo* source = CurrentSource();
    if (!source)
        return;
    source->isActive = 0;
    source->isEventRecording = eventRecording ? 1 : 0;
    source->isManualRecording = eventRecording ? 0 : 1;
    if (newRecording) {
        source->continuationCount = 0;
        lstrcpynW(source->manualFilePath, RecordingFilePath, kSourceNameCapacity);
    }
    ApplyRecordingState(true);
}

void MarkRecordingStopped()
{
    if (VideoSourceInfo* source = CurrentSource()) {
        source->isManualRecording = 0;
        source->isEventRecording = 0;
        source->isActive = source->isDisconnected ? 0 : 1;
        source->continuationCount = 0;
        source->manualFilePath[0] = 0;
    }
    ApplyRecordingState(false);
}

void OnStartRecordingButton()
{
    resumeEventsAfterManual = 0;
    if (eventPending) {
        resumeEventsAfterManual = 1;
        CancelCountdown();
    }
    StopVideo();
    MakeVideoPathname(false, nullptr);
    MarkRecordingStarted(true);
    StartVideo();
}

void OnStopRecordingButton()
{
    MainWindow& app = *mainWindowObject;
    if (eventRecording) {
        if (MessageBoxW(nullptr, L"Event recording in progress.  Stop now?", L"Attention",
                        MB_YESNO | MB_ICONEXCLAMATION) != IDYES)
            return;
        eventRecording = 0;
        if (app.endTimerQueue) {
            DeleteTimerQueueTimer(app.endTimerQueue, app.endTimer, nullptr);
            DeleteTimerQueueEx(app.endTimerQueue, nullptr);
            app.endTimerQueue = nullptr;
        }
        stoppedEvents.push_back(StoppedEventKey{currentEventTime, currentEventDuration});
        ReportUserMessage(L"Event recording is manually stopped", true);
        if (app.countdownWindow)
            ShowWindow(app.countdownWindow, SW_HIDE);
        SetRecordButtons(false, false);
        SetWindowTextW(app.mainWindow, kMainWindowTitle);
    }
    StopVideo();
    MarkRecordingStopped();
    RecordingFilePath[0] = 0;
    eventDurationMs = 0;
    eventRecordingName[0] = 0;
    if (resumeEventsAfterManual) {
        resumeEventsAfterManual = 0;
        LoadEvents();
    }
    StartVideo();
}
