// The USB GPS Receiver window: the last position the receiver gave, two
// buttons that stay disabled, and Close, which ends the link. The refresh
// tick fills and shows it from a timer thread; its controls get their texts
// by messages to the user-interface thread.
#pragma once

#include <windows.h>

#include "video/run_report.h"

extern HWND gpsWindow;

// Makes the window, hidden, and sets its handle above.
HWND CreateGpsWindow(HINSTANCE instance);

// One refresh: a reading with up to 101 attempts. Each text the reading
// holds goes into its control and, without its leading blank, into the last
// reading. Returns 1 if the window got fresh values; a failed refresh leaves
// the old ones.
int RefreshGpsWindow(GpsSnapshot& lastReading);

// What each tick does after its refresh: shows and updates the window and
// sends it the tick's command (1024, parameter 32779), which it ignores.
void ShowGpsWindowAtTick();
