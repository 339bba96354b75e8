// The Record Controls window with its Start and Stop buttons.
#pragma once

#include <windows.h>

// Builds the window and its two buttons; false when any of them failed.
// The layout follows RecordButtonsSpace as it stood at start-up.
bool CreateRecordControls(HINSTANCE instance);

// Enables Start and Stop as the record-button rule says.
void SetRecordButtons(bool startEnabled, bool stopEnabled);
