// The program looked at from inside: a menu's state and a control's text
// extent can't be read across processes here, so a small probe DLL is loaded
// into the program and asked from a thread of its own.
#pragma once

#include <windows.h>

#include <string>

namespace e2e {

// GetMenuState of a main menu item by command number, as the program's own
// thread sees it; 0xFFFFFFFF when the item or the probe can't be reached.
UINT RemoteMenuState(DWORD processId, unsigned command);
// The item is there and greyed.
bool IsMenuItemGrey(DWORD processId, unsigned command);
// The popup of the menu bar at that position (0 is File) is there and greyed.
bool IsMenuBarPopupGrey(DWORD processId, unsigned position);

// How many visible controls of the window show a text that doesn't fit
// them in their own font (static texts, buttons, check boxes, date pickers),
// with one line for each in report; -1 when the probe can't be reached.
int ClippedTexts(DWORD processId, HWND window, std::wstring* report);

}  // namespace e2e
