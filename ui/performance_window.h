// The Performance Options window: the display off and the display filters
// off while recording, and the renderer.
#pragma once

#include <windows.h>

extern HWND performanceWindow;

// Makes the window, hidden, and sets performanceWindow.
HWND CreatePerformanceWindow(HINSTANCE instance);
// The menu command "Performance...".
void OpenPerformanceWindow();
