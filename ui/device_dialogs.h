// The device dialogs' operations that a device change calls: the Select
// Input Device lists refilled when a device comes or goes, and the Device
// Properties window closed when the default device takes over.
#pragma once

// Refills the device and ignored lists of the Select Input Device window.
void RefreshSelectDeviceDialog();
// Hides the Device Properties window, lowers its open flag and enables
// "Magnify...", "Select Input Device..." and "Device Properties..." again.
void CloseDeviceFormatDialog();
