#include "ui/device_dialogs.h"

#include "ui/menus.h"

void RefreshSelectDeviceDialog()
{
    // No Select Input Device window, no list to refill.
}

void CloseDeviceFormatDialog()
{
    // With no Device Properties window there is nothing to hide; the flag
    // and the menu greying are the main window's and go back all the same.
    deviceFormatOpen = 0;
    SetDeviceDialogGreying(false);
}
