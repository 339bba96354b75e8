#include "ui/device_dialogs.h"

#include "ui/display_tools.h"
#include "ui/menus.h"
#include "video/capture_settings.h"

HWND selectDeviceWindow = nullptr;
HWND deviceFormatWindow = nullptr;

void BeginDeviceDialog(Flag& openFlag)
{
    openFlag = 1;
    if (magnifyOn)
        CloseMagnify();
    SetDeviceDialogGreying(true);
}

void EndDeviceDialog(HWND window, Flag& openFlag)
{
    openFlag = 0;
    if (window)
        ShowWindow(window, SW_HIDE);
    SetDeviceDialogGreying(false);
}
