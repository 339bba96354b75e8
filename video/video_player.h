// The VideoPlayer owns the capture graph and everything built into it. One
// object for the life of the main window.
#pragma once

#include <windows.h>

#include <cstdint>

enum GraphState : int32_t {
    GraphNone = 0,
    GraphCreated = 1,
    GraphSourceAdded = 2,
    GraphRunning = 3,
    GraphBuilt = 4,
};

class VideoPlayer {
public:
    VideoPlayer();

    // Starts the camera: preview, or a recording when the current device is
    // marked as recording.
    HRESULT StartCamera(bool useCurrentDirectory);
    // Stops the camera; at the end of a recording writes its report.
    HRESULT StopCamera(bool wasRecording);

    HWND clippingWindow = nullptr;
    GraphState graphState = GraphNone;
    int32_t useCurrentDirectory = 0;
    int32_t recording = 0;
};
