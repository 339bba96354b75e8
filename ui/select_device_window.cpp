#include "ui/select_device_window.h"

#include "ui/device_dialogs.h"
#include "ui/menus.h"

bool CreateSelectDeviceWindow(HINSTANCE)
{
    return true;
}

void OpenSelectDeviceWindow() {}

void RefreshSelectDeviceDialog() {}

void CloseSelectDeviceDialog()
{
    EndDeviceDialog(selectDeviceWindow, selectDeviceOpen);
}
