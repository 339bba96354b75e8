// The windows of the Display tools Brightness and Contrast, Magnify, Pixel Saturation and Frame
// Integration: their making, and what their controls do. Turning a tool on
// and off is in display_tools.h.
#pragma once

#include <windows.h>

// Each makes its window, hidden, and sets its handle in display_tools.h.
HWND CreateBrightnessContrastWindow(HINSTANCE instance);
HWND CreateMagnifyWindow(HINSTANCE instance);
HWND CreatePixelSaturationWindow(HINSTANCE instance);
HWND CreateFrameIntegrationWindow(HINSTANCE instance);
