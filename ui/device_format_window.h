// The Device Properties window (NAME + " Properties"): the current device's
// frame rates and sizes, its standard, and a slider per picture property.
// Every change acts on the device at once; OK keeps it (and may save it),
// Cancel puts back what was there when the window opened.
#pragma once

#include <windows.h>

// Makes the window, hidden, and sets deviceFormatWindow. False on failure.
bool CreateDeviceFormatWindow(HINSTANCE instance);
// The menu command "Device Properties...".
void OpenDeviceFormatWindow();
// Shows and fills the controls for the current device.
void FillDeviceFormatDialog();
// The frame-rate list: the enabled groups, with the current one selected;
// then the frame-size list of that group.
void FillFrameRateList();
void FillFrameSizeList();
// A row of the frame-size list chosen: the camera restarts at that size.
void SelectFrameSize(int row);
// Hides the window, lowers its open flag and enables "Magnify...", "Select
// Input Device..." and "Device Properties..." again.
void CloseDeviceFormatDialog();
