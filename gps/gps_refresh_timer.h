// The five-second refresh of the GPS display, on a timer queue of its own.
// What a tick does belongs to the caller: the window and the state of the
// recordings live above this layer.
#pragma once

#include <windows.h>

constexpr DWORD kGpsRefreshMilliseconds = 5000;

// First tick after 5 s, then every 5 s. A late tick doesn't hold back the
// next, so with a silent receiver several may be reading at once. A timer
// still running from an earlier connection is deleted first, so that no tick
// goes on out of reach.
void StartGpsRefreshTimer(WAITORTIMERCALLBACK tick);

// Deletes the timer and its queue if there are any, without waiting for a
// tick in progress.
void StopGpsRefreshTimer();
