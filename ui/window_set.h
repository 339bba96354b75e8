// The main window, which the application makes and whose handle the menus,
// the layout and the recording state reach here, with its class and title.
#pragma once

#include <windows.h>

#include "base/program_version.h"

// The class name is also the single-instance key.
constexpr const wchar_t* kMainWindowClass = L"MAVU_VideoCapture";
constexpr const wchar_t* kMainWindowTitle = kProgramVersionWideText;
constexpr const wchar_t* kRecordingWindowTitle = L"MAVU Video Capture -- Recording in progress";

extern HWND mainWindow;
