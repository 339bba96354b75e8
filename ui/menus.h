// The two menu bars, built in code, and the rules that grey their items.
#pragma once

// Destroys both menu bars and builds them anew, all items enabled and
// unchecked; then greys what needs a device when none is active.
void BuildMenus(bool deviceAvailable);

// Greys or enables the popups that a recording (or a missing default folder)
// takes away: "Events", "Display", "Options", "Help" and the User Messages
// "File". The main "File" popup stays, so Exit remains possible.
void SetRecordingMenuGreying(bool grey);
