// The Codec Selector window: the compressors that take the current device's
// format, and the codec paired with that format for the recordings.
#pragma once

#include <windows.h>

// Makes the window, hidden. False on failure.
bool CreateCodecSelectorWindow(HINSTANCE instance);
// The menu command "Codec...": fills the list for the current device and
// shows the window.
void OpenCodecSelectorWindow();
