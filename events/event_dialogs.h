// What the Schedule Event and the View, Edit, Delete windows keep between
// their uses.
#pragma once

#include <windows.h>

#include <cstdint>

#include "base/flag.h"

// The Schedule Event window: the one window with dialog-style keyboard
// handling in the message loop; null until it exists.
extern HWND scheduleEventWindow;
// The window edits an existing event rather than making a new one.
extern Flag scheduleEditMode;
// UTC, as ticks, when the Schedule Event window opened; all ones when it
// hasn't.
extern uint64_t scheduleMinimumTicks;
// The two check boxes of the event list.
extern Flag showExpiredEvents;
extern Flag ascendingEventTimes;
