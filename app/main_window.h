// The MainWindow object: its constructor carries out the whole start-up, and
// it holds the handles of every window of the program. One object, made by
// the entry and never freed.
#pragma once

#include <windows.h>

#include "app/app_state.h"

class VideoPlayer;

constexpr const wchar_t* kMainWindowClass = L"MAVU_VideoCapture";
constexpr const wchar_t* kMainWindowTitle = L"MAVU Video Capture Version 2.1";

class MainWindow {
public:
    explicit MainWindow(HINSTANCE instance);

    HMENU mainMenu = nullptr;
    HMENU fileMenu = nullptr;
    HMENU eventsMenu = nullptr;
    HMENU displayMenu = nullptr;
    HMENU optionsMenu = nullptr;
    HMENU helpMenu = nullptr;
    HMENU userMessagesMenu = nullptr;
    HMENU userMessagesFileMenu = nullptr;
    unsigned nextCommandId = 0;
    HINSTANCE instance = nullptr;
    Flag deviceAvailable{0};
    VideoPlayer* videoPlayer = nullptr;

    HWND mainWindow = nullptr;
    HWND userMessagesWindow = nullptr;
    HWND richEdit = nullptr;
    HWND clippingWindow = nullptr;
    HWND scrollWindow = nullptr;
    HWND recordControlsWindow = nullptr;
    HWND startButton = nullptr;
    HWND stopButton = nullptr;
    HWND unresponsiveWindow = nullptr;

    // Dialog windows; each dialog's own controls live with its code.
    HWND selectDeviceWindow = nullptr;
    HWND miscellaneousWindow = nullptr;
    HWND deviceFormatWindow = nullptr;
    HWND codecSelectorWindow = nullptr;
    HWND fileOptionsWindow = nullptr;
    HWND defaultDurationWindow = nullptr;
    HWND eventPendingWindow = nullptr;
    HWND performanceWindow = nullptr;
    HWND hibernateWindow = nullptr;
    HWND magnifyWindow = nullptr;
    HWND gpsWindow = nullptr;
    HWND pixelSaturationWindow = nullptr;
    HWND frameIntegrationWindow = nullptr;
    HWND scheduleEventWindow = nullptr;
    HWND viewEventsWindow = nullptr;
    HWND countdownWindow = nullptr;
    HWND brightnessContrastWindow = nullptr;

    // Timer queues and their timers: countdown tick, event end, GPS refresh.
    HANDLE gpsTimer = nullptr;
    HANDLE gpsTimerQueue = nullptr;
    HANDLE tickTimer = nullptr;
    HANDLE tickTimerQueue = nullptr;
    HANDLE endTimer = nullptr;
    HANDLE endTimerQueue = nullptr;

private:
    bool CreateMainWindow();
    bool CreateDialogWindows();
};

// The main window's procedure and its command dispatch.
LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Applies the choice of device: windows, menus, record buttons. Returns a
// negative result when the current source index is out of range.
HRESULT ActivateCurrentDevice();

// Close and Exit: no question, even during a recording.
void CloseApplication();
