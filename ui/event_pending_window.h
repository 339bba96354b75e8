// The Event Pending Options window: whether the Countdown window shows the
// time left to the recording or the computer's UTC clock.
#pragma once

#include <windows.h>

extern HWND eventPendingWindow;

// Makes the window, hidden, and sets eventPendingWindow.
HWND CreateEventPendingWindow(HINSTANCE instance);
// The menu command "Event Pending...".
void OpenEventPendingWindow();
