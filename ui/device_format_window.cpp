#include "ui/device_format_window.h"

#include "ui/device_dialogs.h"
#include "ui/menus.h"

bool CreateDeviceFormatWindow(HINSTANCE)
{
    return true;
}

void OpenDeviceFormatWindow() {}

void FillDeviceFormatDialog() {}

void CloseDeviceFormatDialog()
{
    EndDeviceDialog(deviceFormatWindow, deviceFormatOpen);
}
