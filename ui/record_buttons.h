// The Record Controls window's handle and its Start and Stop buttons, and
// the rule that enables them.
#pragma once

#include <windows.h>

extern HWND recordControlsWindow;
extern HWND startButton;
extern HWND stopButton;

// Enables Start and Stop as the record-button rule says.
void SetRecordButtons(bool startEnabled, bool stopEnabled);
