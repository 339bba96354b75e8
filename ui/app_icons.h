// The program's icons, loaded from "MavuVideoIcons\" relative to the
// working directory; a missing file leaves its handle null and the window or
// button goes without it.
#pragma once

#include <windows.h>

struct AppIcons {
    HICON logoLarge;
    HICON logoSmall;
    HICON stop;
    HICON record;
    HICON folder;
    HICON folderClear;
};
extern AppIcons appIcons;

void LoadAppIcons();
