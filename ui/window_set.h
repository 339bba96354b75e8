// The main window, which the application makes and whose handle the menus,
// the layout and the recording state reach here, with its class and title.
#pragma once

#include <windows.h>

// The class name is also the single-instance key.
constexpr const wchar_t* kMainWindowClass = L"MAVU_VideoCapture";
constexpr const wchar_t* kMainWindowTitle = L"MAVU Video Capture Version 2.1";

extern HWND mainWindow;
