// The Countdown window: a heading, the big value (time left or the UTC
// clock), and the event's start, event and end lines.
#pragma once

#include <windows.h>

#include "base/flag.h"

// The window shows the computer's UTC clock instead of the time left.
extern Flag showUtcClock;

extern HWND countdownWindow;

// Makes the window, hidden, and sets its handle above.
HWND CreateCountdownWindow(HINSTANCE instance);
// The heading that goes with showUtcClock.
void SetCountdownHeading();
void SetCountdownValue(const wchar_t* text);
void SetCountdownLines(const wchar_t* start, const wchar_t* event, const wchar_t* end);
