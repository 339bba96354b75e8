// The Hibernate window: thirty seconds to refuse the power action that an
// event asked for.
#pragma once

#include <windows.h>

constexpr UINT_PTR kPowerTimerId = 32772;

extern HWND hibernateWindow;

// Makes the window, hidden, and sets its handle above.
HWND CreatePowerWindow(HINSTANCE instance);
// Sets the count to 30, the texts by the armed request, starts the
// one-second timer and shows the window.
void StartPowerCountdown();
