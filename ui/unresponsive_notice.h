// The "Stand by..." notice, shown while the user interface can't respond
// (the GPS port scan).
#pragma once

#include <windows.h>

extern HWND unresponsiveWindow;

// Makes the notice, hidden, and sets its handle above.
HWND CreateUnresponsiveNotice(HINSTANCE instance);

// Shows the notice, painted at once since the thread that would paint it is
// about to be busy, or hides it.
void ShowUnresponsiveNotice(bool show);
