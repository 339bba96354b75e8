// The program looked at from inside: a menu's state and a control's text
// extent can't be read across processes here, so a small probe DLL is loaded
// into the program and asked from a thread of its own.
#pragma once

#include <windows.h>

#include <string>

namespace e2e {

// A main menu item, by command number, is greyed as the program's own
// thread sees it; a test failure when the item or the probe can't be reached.
bool IsMenuItemGrey(DWORD processId, unsigned command);
// The same for the popup of the menu bar at that position (0 is File).
bool IsMenuBarPopupGrey(DWORD processId, unsigned position);

// How many visible controls of the window show a text that doesn't fit
// them in their own font (static texts, buttons, check boxes, date pickers),
// with one line for each in report; -1 when the probe can't be reached.
int ClippedTexts(DWORD processId, HWND window, std::wstring* report);

}  // namespace e2e
