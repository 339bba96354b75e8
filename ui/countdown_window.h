// The Countdown window: a heading, the big value (time left or the UTC
// clock), and the event's start, event and end lines.
#pragma once

#include <windows.h>

extern HWND countdownWindow;

// Makes the window, hidden, and sets its handle above.
HWND CreateCountdownWindow(HINSTANCE instance);
void SetCountdownHeading(const wchar_t* text);
void SetCountdownValue(const wchar_t* text);
void SetCountdownLines(const wchar_t* start, const wchar_t* event, const wchar_t* end);
