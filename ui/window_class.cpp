#include "ui/window_class.h"

#include "ui/app_icons.h"

bool RegisterWindowClass(HINSTANCE instance, const wchar_t* className, WNDPROC procedure, int stockBrush,
                         bool withIcons)
{
    WNDCLASSEXW windowClass{sizeof windowClass};
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(stockBrush));
    windowClass.lpszClassName = className;
    if (withIcons) {
        windowClass.hIcon = appIcons.logoLarge;
        windowClass.hIconSm = appIcons.logoSmall;
    }
    return RegisterClassExW(&windowClass) != 0;
}
