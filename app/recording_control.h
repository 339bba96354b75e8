// Starting and stopping the camera, and recordings by hand. StartVideo and
// StopVideo are the only way the program starts or stops the camera.
#pragma once

#include <windows.h>

struct EventRecord;

HRESULT StartVideo();
HRESULT StopVideo();

// Fills RecordingFilePath: the manual pattern with the moment of the call,
// or the event pattern with the event's nominal start.
void MakeVideoPathname(bool isEvent, const EventRecord* event);
void MarkRecordingStarted(bool newRecording);
void MarkRecordingStopped();

// BN_CLICKED of the two buttons of the Record Controls window.
void OnStartRecordingButton();
void OnStopRecordingButton();

// The title and buttons of the recording state (the menus follow the same
// rule once they exist).
void ApplyRecordingState(bool recording);
