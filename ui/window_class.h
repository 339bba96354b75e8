// Window classes of the program's own windows.
#pragma once

#include <windows.h>

// Registers a window class with an arrow cursor and a stock brush as its
// background, and the program's icons when asked for.
bool RegisterWindowClass(HINSTANCE instance, const wchar_t* className, WNDPROC procedure, int stockBrush,
                         bool withIcons);
