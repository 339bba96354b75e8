// The main window's answer to WM_DEVICECHANGE: a scan of the attached
// devices (video/device_hot_plug.h), then what its result asks of the
// windows, the menus and the camera. A recording whose device goes away
// stops with its file and report, and goes on in a continuation file when
// the same device comes back.
#pragma once

#include <windows.h>

// Whether a notification is taken: DBT_DEVNODES_CHANGED alone, and only
// while no start-up, camera start or earlier change is under way. Any other
// is answered 0 and lost; the next scan compares whole lists and finds what
// it told of.
bool DeviceChangeTaken(WPARAM wParam, bool startingUp, bool cameraStarting, bool deviceChangeBusy);

// WM_DEVICECHANGE: 1 when the change was handled, 0 when it was dropped.
LRESULT OnDeviceChange(WPARAM wParam);
