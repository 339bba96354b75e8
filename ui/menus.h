// The two menu bars, built in code, and the rules that grey their items.
#pragma once

#include <windows.h>

#include "base/flag.h"

// The main menu bar and its popups, and the User Messages window's bar and
// its one popup; rebuilt by BuildMenus.
extern HMENU mainMenu;
extern HMENU fileMenu;
extern HMENU eventsMenu;
extern HMENU displayMenu;
extern HMENU optionsMenu;
extern HMENU helpMenu;
extern HMENU userMessagesMenu;
extern HMENU userMessagesFileMenu;

// The Select Input Device and Device Properties windows are open.
extern Flag selectDeviceOpen;
extern Flag deviceFormatOpen;

// Destroys both menu bars and builds them anew, all items enabled and
// unchecked; then greys what needs a device when none is active.
void BuildMenus(bool deviceAvailable);

// Greys or enables the popups that a recording (or a missing default folder)
// takes away: "Events", "Display", "Options", "Help" and the User Messages
// "File". The main "File" popup stays, so Exit remains possible.
void SetRecordingMenuGreying(bool grey);

// Sets or clears the check mark of an item; only the four Display items
// ever carry one, together with their tool's flag.
void SetMenuCheck(unsigned command, bool checked);

// While Select Input Device or Device Properties is open, "Magnify...",
// "Select Input Device..." and "Device Properties..." are grey.
void SetDeviceDialogGreying(bool grey);
