// The Record Controls window: its making and its procedure, which hands the
// two buttons' clicks to the recording.
#pragma once

#include <windows.h>

// Builds the window and its two buttons; false when any of them failed.
// The layout follows RecordButtonsSpace as it stood at start-up.
bool CreateRecordControls(HINSTANCE instance);
