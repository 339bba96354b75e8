// The MainWindow object: its constructor carries out the whole start-up.
// One object, made by the entry and never freed; the handles of the windows
// it makes are kept by the module of each window.
#pragma once

#include <windows.h>

#include "base/flag.h"

class VideoPlayer;

class MainWindow {
public:
    explicit MainWindow(HINSTANCE instance);

    HINSTANCE instance = nullptr;
    // There is a current device.
    Flag deviceAvailable{0};
    VideoPlayer* videoPlayer = nullptr;

private:
    bool CreateMainWindow();
    bool CreateDialogWindows();
};

// The one MainWindow, reached from every window procedure and callback.
extern MainWindow* mainWindowObject;

// A device change is being handled; further notifications are dropped.
extern Flag deviceChangeBusy;

// The main window's procedure and its command dispatch.
LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Applies the choice of device: windows, menus, record buttons. Returns a
// negative result when the current source index is out of range.
HRESULT ActivateCurrentDevice();

// Close and Exit: no question, even during a recording.
void CloseApplication();
