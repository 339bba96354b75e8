// The Default Recording Duration window: the duration that a new event in
// the Schedule Event window starts with.
#pragma once

#include <windows.h>

extern HWND defaultDurationWindow;

// Makes the window, hidden, and sets defaultDurationWindow.
HWND CreateDurationWindow(HINSTANCE instance);
// The menu command "Duration Default...".
void OpenDurationWindow();
