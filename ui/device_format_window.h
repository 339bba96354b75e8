// The Device Properties window (NAME + " Properties"): the current device's
// frame rates and sizes, its standard, and a slider per picture property.
#pragma once

#include <windows.h>

// Makes the window, hidden, and sets deviceFormatWindow. False on failure.
bool CreateDeviceFormatWindow(HINSTANCE instance);
// The menu command "Device Properties...".
void OpenDeviceFormatWindow();
// Shows and fills the controls for the current device.
void FillDeviceFormatDialog();
// Hides the window, lowers its open flag and enables "Magnify...", "Select
// Input Device..." and "Device Properties..." again.
void CloseDeviceFormatDialog();
