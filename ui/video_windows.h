// The windows the picture is drawn in: the clipping window, which the
// renderers draw into, and the scroll window that holds it when the picture
// doesn't fit the main window.
#pragma once

#include <windows.h>

extern HWND clippingWindow;
extern HWND scrollWindow;

// Creates the clipping window as a child of the main window. Reports, and
// goes on, when the window has a border the renderers would draw over.
// Each creator sets its handle above.
HWND CreateClippingWindow(HINSTANCE instance, HWND parent);
HWND CreateScrollWindow(HINSTANCE instance, HWND parent);

// New scroll position for a scroll-bar code, or -1 when the code doesn't move
// the picture (a dragged thumb moves it only on release).
int ScrollTarget(int code, int position, int thumbPosition, int maximum);
