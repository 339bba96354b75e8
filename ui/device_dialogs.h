// What the Select Input Device and Device Properties windows share: their
// handles, and the rule they open and close under. While either is open,
// Magnify is off and "Magnify...", "Select Input Device..." and "Device
// Properties..." are grey, so that a frame size can't change under them.
#pragma once

#include <windows.h>

#include "base/flag.h"

// Null until made; both live, hidden, between uses.
extern HWND selectDeviceWindow;
extern HWND deviceFormatWindow;

// Raises the window's open flag, turns Magnify off if it is on and greys
// the three items.
void BeginDeviceDialog(Flag& openFlag);
// Lowers the open flag, hides the window and enables the three items again.
void EndDeviceDialog(HWND window, Flag& openFlag);
