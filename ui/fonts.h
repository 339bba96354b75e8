// The fonts of the dialogs, made once after the User Messages window exists.
// A font that can't be made stays null and its controls use the system font.
#pragma once

#include <windows.h>

enum AppFont : int {
    ListFont,               // dialog lists and edit boxes, Consolas 18
    ScheduleEntryFont,      // Schedule Event entry fields, Consolas 20
    LargeTahomaFont,        // Tahoma 72, made and not used
    EventListFont,          // event list and the unresponsive notice, Consolas 16
    PowerCountdownFont,     // hibernate and shutdown seconds, Consolas 28
    LargeConsolasFont,      // Consolas 48, made and not used
    CountdownDigitsFont,    // Lucida Console 48
    DialogButtonFont,       // Tahoma 20
    DialogStaticFont,       // Tahoma 18
    SmallDialogFont,        // Tahoma 16
    AppFontCount
};

extern HFONT appFonts[AppFontCount];

void CreateAppFonts();
