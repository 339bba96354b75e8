#include "ui/dialog_common.h"

#include "persistence/options.h"
#include "ui/app_icons.h"
#include "ui/window_class.h"
#include "ui/window_layout.h"

bool RegisterToolWindowClass(HINSTANCE instance, const wchar_t* className, WNDPROC procedure)
{
    return RegisterWindowClass(instance, className, procedure, LTGRAY_BRUSH, true);
}

bool IsCloseRequest(UINT message, WPARAM wParam)
{
    return message == WM_CLOSE || (message == WM_SYSCOMMAND && (wParam & 0xFFF0) == SC_CLOSE);
}

HWND CreateToolWindow(HINSTANCE instance, const wchar_t* className, WNDPROC procedure, const wchar_t* title,
                      DWORD style, int width, int height, int windowKey)
{
    if (!RegisterToolWindowClass(instance, className, procedure))
        return nullptr;
    HWND window = CreateWindowExW(0, className, title, style, 0, 0, width, height, nullptr, nullptr, instance,
                                  nullptr);
    if (!window)
        return nullptr;
    SetWindowIcons(window);
    if (windowKey >= 0)
        SetDialogWindowKey(window, windowKey);
    return window;
}

LRESULT StaticTextColour(HDC deviceContext)
{
    static HBRUSH background = CreateSolidBrush(RGB(192, 192, 192));
    SetTextColor(deviceContext, RGB(0, 0, 0));
    SetBkColor(deviceContext, RGB(192, 192, 192));
    return reinterpret_cast<LRESULT>(background);
}

void TrackWindowPosition(HWND window, int windowKey)
{
    if (!repositioning)
        KeepWindowOnScreen(window);
    RECT rect{};
    GetWindowRect(window, &rect);
    if (rect.left < -10000 || rect.top < -10000 || windowKey < 0)
        return;
    options.windows[windowKey].currentLeft = rect.left;
    options.windows[windowKey].currentTop = rect.top;
}

void ShowPlacedDialog(HWND window)
{
    PlaceDialog(window);
    ShowWindow(window, SW_SHOW);
    UpdateWindow(window);
    BringWindowToTop(window);
}

void SetWindowIcons(HWND window)
{
    if (appIcons.logoLarge)
        SendMessageW(window, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(appIcons.logoLarge));
    if (appIcons.logoSmall)
        SendMessageW(window, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(appIcons.logoSmall));
}

void SetControlFont(HWND control, HFONT font)
{
    if (control && font)
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

HWND CreateControl(HWND parent, const wchar_t* className, const wchar_t* text, DWORD style, int x, int y, int width,
                   int height, int id, HFONT font)
{
    HWND control = CreateWindowExW(0, className, text, WS_CHILD | WS_VISIBLE | style, x, y, width, height, parent,
                                   reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr),
                                   nullptr);
    SetControlFont(control, font);
    return control;
}
