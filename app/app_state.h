// The application state shared by the main window, the dialogs, the timer
// callbacks and the video engine. One process-wide copy; no locks. Fields that
// other threads touch are 32-bit atomics so that a plain store on one thread is
// seen by a plain load on another.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <vector>

class MainWindow;

using Flag = std::atomic<int32_t>;

// The one MainWindow, reached from every window procedure and callback.
extern MainWindow* mainWindowObject;

// Start-up and shutdown.
extern Flag startingUp;
extern Flag fatalStartupError;
extern Flag leaveMessageLoop;
extern Flag userMessagesWindowReady;
extern Flag appClosing;

// Camera and devices.
extern Flag cameraStarting;
extern Flag deviceChangeBusy;

// Recording. RecordingFilePath is empty while the camera only previews.
constexpr int kRecordingFilePathCapacity = 256;
extern wchar_t RecordingFilePath[kRecordingFilePathCapacity];
extern Flag resumeEventsAfterManual;

// Event display and power.
extern Flag showUtcClock;
extern Flag hibernateSupported;
extern Flag hibernateAfterEvent;
extern Flag shutdownAfterEvent;
extern Flag powerActionCountdown;

// Minutes that turn local time into UTC, read once at start-up.
extern int32_t utcOffsetMinutes;

// Runtime copies of performance options.
extern Flag displayOffWhileRecording;
extern Flag removeFiltersWhileRecording;
extern Flag rendererChoice;

// The four display tools.
extern Flag brightnessContrastOn;
extern Flag pixelSaturationOn;
extern Flag frameIntegrationOn;
extern Flag magnifyOn;
extern Flag frameIntegrationCount;
// The brightness tool's "Insert into video file when recording" box.
extern Flag colorInCaptureFile;

// The name an event recording's report would carry; each recording's end
// empties it and nothing fills it.
constexpr int kEventRecordingNameCapacity = 38;
extern wchar_t eventRecordingName[kEventRecordingNameCapacity];

// What the GPS receiver gave when the recording began; an empty text is a
// value not available.
constexpr int kGpsSnapshotTextCapacity = 32;
extern Flag gpsSnapshotValid;
extern wchar_t gpsSnapshotLatitude[kGpsSnapshotTextCapacity];
extern wchar_t gpsSnapshotLongitude[kGpsSnapshotTextCapacity];
extern wchar_t gpsSnapshotAltitude[kGpsSnapshotTextCapacity];
extern wchar_t gpsSnapshotSatellites[kGpsSnapshotTextCapacity];

// Dialog state.
extern Flag selectDeviceOpen;
extern Flag deviceFormatOpen;
extern Flag scheduleEditMode;
extern uint64_t scheduleMinimumTicks;
extern Flag showExpiredEvents;
extern Flag ascendingEventTimes;

// The default recording duration; its date part only makes it a valid value
// for a date-time picker.
extern SYSTEMTIME defaultDuration;

// Threads to be lowered below the video streaming threads after start-up.
// Nothing adds to it yet: telling streaming threads from others is open.
extern std::vector<DWORD> nonVideoThreadIds;

// Icons, loaded from "MavuVideoIcons\" relative to the working directory; a
// missing file leaves its handle null.
struct AppIcons {
    HICON logoLarge;
    HICON logoSmall;
    HICON stop;
    HICON record;
    HICON folder;
    HICON folderClear;
};
extern AppIcons appIcons;

void LoadAppIcons();

// Clears the display-tool switches, frameIntegrationCount back to 1.
void ClearRuntimeSwitches();
