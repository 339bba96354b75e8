// The Miscellaneous Options window: spacing around the record buttons, the
// GPS receiver at start-up, and the brightness tool's file box.
#pragma once

#include <windows.h>

extern HWND miscellaneousWindow;

// Makes the window, hidden, and sets miscellaneousWindow.
HWND CreateMiscellaneousWindow(HINSTANCE instance);
// The menu command "Miscellaneous...".
void OpenMiscellaneousWindow();
