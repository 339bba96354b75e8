// The Select Input Device window ("Video Input Device"): the present and
// the ignored devices, the default, and OK keeping or Cancel restoring.
#pragma once

#include <windows.h>

// Makes the window, hidden, and sets selectDeviceWindow. False on failure.
// `activate` applies the choice of device to the windows, menus and record
// buttons (the application's ActivateCurrentDevice); the window calls it
// after each change of the current device.
bool CreateSelectDeviceWindow(HINSTANCE instance, HRESULT (*activate)());
// The menu command "Select Input Device...".
void OpenSelectDeviceWindow();
// Refills the device and ignored lists; also called when a device comes or
// goes while the window is open.
void RefreshSelectDeviceDialog();
void CloseSelectDeviceDialog();
