#include "app/recording_control.h"

#include <shlwapi.h>

#include <string>

#include "app/continuation_file.h"
#include "app/disk_space.h"
#include "app/time_zone.h"
#include "base/report.h"
#include "base/ticks.h"
#include "base/time_text.h"
#include "events/event_rules.h"
#include "events/event_state.h"
#include "gps/gps_link.h"
#include "gps/gps_reader.h"
#include "gps/gps_refresh_timer.h"
#include "persistence/options.h"
#include "ui/commands.h"
#include "ui/countdown_window.h"
#include "ui/display_tools.h"
#include "ui/gps_window.h"
#include "ui/menus.h"
#include "ui/record_buttons.h"
#include "ui/window_layout.h"
#include "ui/window_set.h"
#include "video/capture_settings.h"
#include "video/video_player.h"
#include "video/video_sources.h"

wchar_t RecordingFilePath[kRecordingFilePathCapacity];
Flag cameraStarting{0};
Flag appClosing{0};
wchar_t eventRecordingName[kEventRecordingNameCapacity] = L"";
GpsSnapshot gpsSnapshot;

namespace {

// The position for the report, read once as the recording begins; then
// the port closes, since no recording runs with the serial port in use. The
// link comes back after the recording only under AutostartGPS.
void TakeGpsSnapshotAndCloseLink()
{
    if (!GpsLinkOpen())
        return;
    StopGpsRefreshTimer();
    GpsReading reading;
    if (ReadGpsWithRetry(reading)) {
        lstrcpynW(gpsSnapshot.latitude, GpsReadingValue(reading.latitudeText), kGpsSnapshotTextCapacity);
        lstrcpynW(gpsSnapshot.longitude, GpsReadingValue(reading.longitudeText), kGpsSnapshotTextCapacity);
        lstrcpynW(gpsSnapshot.altitude, GpsReadingValue(reading.altitudeText), kGpsSnapshotTextCapacity);
        lstrcpynW(gpsSnapshot.satellites, GpsReadingValue(reading.satellitesText), kGpsSnapshotTextCapacity);
        gpsSnapshot.valid = 1;
    }
    CloseGps();
    ShowWindow(gpsWindow, SW_HIDE);
}

// A restart of a recording (a second device plugged in, a device chosen, a
// standard found again, an event taken up after a crash) would open its
// file anew and lose what it holds: the recording goes on in the next free
// continuation file instead, with a report of its own.
void KeepRecordedFile()
{
    VideoSourceInfo* source = CurrentSource();
    if (!source || !FileHoldsData(RecordingFilePath))
        return;
    uint32_t count = source->continuationCount;
    wchar_t next[kRecordingFilePathCapacity];
    if (NextFreeContinuation(source->manualFilePath, count, FileHoldsData, next, kRecordingFilePathCapacity)) {
        source->continuationCount = count;
        lstrcpynW(RecordingFilePath, next, kRecordingFilePathCapacity);
    }
}

}  // namespace

HRESULT StopVideo()
{
    StopDiskWatch();
    bool wasRecording = CurrentSourceRecording();
    // The marks are still on the device here: the report's heading follows them.
    HRESULT result = CurrentVideoPlayer()->StopCamera(wasRecording, RecordingFilePath,
                                                      RecordingNotes{eventRecordingName, &gpsSnapshot});
    if (FAILED(result)) {
        ReportUserMessage(L"WARNING: command to stop camera failed\r\n", true);
        return result;
    }
    // The GPS link that a recording closed comes back.
    if (wasRecording && !appClosing && options.AutostartGPS)
        SendMessageW(mainWindow, WM_COMMAND, IDM_USB_GPS_RECEIVER, 0);
    return S_OK;
}

HRESULT StartVideo()
{
    VideoPlayer& player = *CurrentVideoPlayer();
    player.startRecordingLine[0] = 0;
    bool useCurrentDirectory = options.VideoDirectory[0] == 0;
    bool recording = CurrentSourceRecording();
    if (recording) {
        KeepRecordedFile();
        gpsSnapshot.valid = 0;
        TakeGpsSnapshotAndCloseLink();
        // No recording runs with frame integration: the file has none.
        CloseFrameIntegration();
        if (removeFiltersWhileRecording)
            ClosePixelSaturation();
    }
    cameraStarting = 1;
    HRESULT result = player.StartCamera(useCurrentDirectory, RecordingFilePath);
    if (result == E_NOTIMPL) {
        // A format the pixel tools can't work on: tools off, one more try.
        ClosePixelSaturation();
        CloseFrameIntegration();
        if (SUCCEEDED(StopVideo()))
            result = player.StartCamera(useCurrentDirectory, RecordingFilePath);
    }
    cameraStarting = 0;
    if (FAILED(result))
        return result;
    if (recording) {
        std::wstring line = L"Start recording at " + UtcClockText() + L" (UTC)";
        lstrcpynW(player.startRecordingLine, line.c_str(), static_cast<int>(std::size(player.startRecordingLine)));
        ReportUserMessage(player.startRecordingLine, true);
        // An event's recording for its duration; one by hand for the default
        // duration of an event.
        uint64_t durationMs = eventRecording ? eventDurationMs.load()
                                             : (defaultDuration.wHour * 3600ull + defaultDuration.wMinute * 60ull +
                                                defaultDuration.wSecond) *
                                                 1000;
        WarnIfRecordingWontFit(durationMs);
        StartDiskWatch();
    }
    if (magnifyOn) {
        // The new graph's renderer takes the magnified size, and the main
        // window follows it.
        magnifyChanging = 1;
        player.UpdateRendererFrameSize();
        UpdateMainWindowLayout();
        magnifyChanging = 0;
    }
    return S_OK;
}

void RestartVideo()
{
    if (SUCCEEDED(StopVideo()))
        StartVideo();
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
        path = VideoFilePath(folder, nullptr, nullptr, nullptr, options.VideoNamePrefix, PresentUtcFromLocalClock());
    }
    lstrcpynW(RecordingFilePath, path.c_str(), kRecordingFilePathCapacity);
}

void ApplyRecordingState(bool recording)
{
    if (recording) {
        SetWindowTextW(mainWindow, kRecordingWindowTitle);
        if (countdownWindow)
            SetWindowTextW(countdownWindow, L"Recording Event");
    } else {
        SetWindowTextW(mainWindow, kMainWindowTitle);
        if (countdownWindow)
            ShowWindow(countdownWindow, SW_HIDE);
    }
    SetRecordButtons(!recording, recording);
    SetRecordingMenuGreying(recording);
    // With "remove display filters while recording" a recording never runs
    // with the brightness tool on.
    if (recording && brightnessContrastOn && removeFiltersWhileRecording)
        CloseBrightnessContrast();
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

void OnDiskFull()
{
    StopDiskWatch();
    VideoSourceInfo* source = CurrentSource();
    bool recording = source && (source->isManualRecording || source->isEventRecording) && RecordingFilePath[0];
    if (!recording || CurrentVideoPlayer()->graphState != GraphRunning)
        return;
    // As when the device goes: the file so far is finished with its report,
    // the marks stay, and the event's end or the Stop button ends the rest.
    StopVideo();
    ReportUserMessage((L"WARNING: the disk of the video folder \"" + VideoFolder() +
                       L"\" is full: the recording was stopped\r\n")
                          .c_str(),
                      true);
}
