// The program's main menu read from the test process. A menu's state can't
// be read across processes here, so a small probe DLL is loaded into the
// program and asked from a thread of its own.
#pragma once

#include <windows.h>

namespace e2e {

// GetMenuState of a main menu item by command number, as the program's own
// thread sees it; 0xFFFFFFFF when the item or the probe can't be reached.
UINT RemoteMenuState(DWORD processId, unsigned command);
// The item is there and greyed.
bool IsMenuItemGrey(DWORD processId, unsigned command);
// The popup of the menu bar at that position (0 is File) is there and greyed.
bool IsMenuBarPopupGrey(DWORD processId, unsigned position);

}  // namespace e2e
