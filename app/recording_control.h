// Starting and stopping the camera, and the marks of a recording on the
// device. StartVideo and StopVideo are the only way the program starts or
// stops the camera; the Start and Stop buttons and the event queue both
// come down here.
#pragma once

#include <windows.h>

#include "base/flag.h"
#include "video/run_report.h"

struct EventRecord;

// The file of the present recording; empty while the camera only previews.
constexpr int kRecordingFilePathCapacity = 256;
extern wchar_t RecordingFilePath[kRecordingFilePathCapacity];

// StartCamera runs: device changes are let alone meanwhile.
extern Flag cameraStarting;
// Close or Exit came: StopVideo doesn't bring the GPS link back.
extern Flag appClosing;

// The name an event recording's report would carry; each recording's end
// empties it and nothing fills it.
extern wchar_t eventRecordingName[kEventRecordingNameCapacity];
// What the GPS receiver gave when the recording began.
extern GpsSnapshot gpsSnapshot;

HRESULT StartVideo();
HRESULT StopVideo();
// StopVideo, and StartVideo if the stop succeeded: a change of tool or
// renderer builds the graph anew.
void RestartVideo();

// Fills RecordingFilePath: the manual pattern with the moment of the call,
// or the event pattern with the event's nominal start.
void MakeVideoPathname(bool isEvent, const EventRecord* event);
void MarkRecordingStarted(bool newRecording);
void MarkRecordingStopped();

// The title, buttons and menus of the recording state.
void ApplyRecordingState(bool recording);

// The main window's handling of the disk watch's message: the recording
// stops as if its device had gone; the event's end and the next events go
// on as usual.
void OnDiskFull();
