#include "ui/dialog_common.h"

#include <commctrl.h>

#include "persistence/options.h"
#include "ui/app_icons.h"
#include "ui/fonts.h"
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

bool HandleCommonDialogMessage(HWND window, UINT message, WPARAM wParam, int windowKey, LRESULT* result)
{
    switch (message) {
    case WM_CLOSE:
        ShowWindow(window, SW_HIDE);
        *result = 0;
        return true;
    case WM_CTLCOLORSTATIC:
        *result = StaticTextColour(reinterpret_cast<HDC>(wParam));
        return true;
    case WM_MOVE:
        TrackWindowPosition(window, windowKey);
        return false;
    }
    return false;
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

HWND CreateLabel(HWND parent, const wchar_t* text, int x, int y, int width, int height, int id)
{
    return CreateControl(parent, L"STATIC", text, SS_LEFT, x, y, width, height, id, appFonts[DialogStaticFont]);
}

HWND CreatePushButton(HWND parent, const wchar_t* text, int x, int y, int width, int height, int id)
{
    return CreateControl(parent, L"BUTTON", text, BS_PUSHBUTTON | WS_TABSTOP, x, y, width, height, id,
                         appFonts[DialogButtonFont]);
}

HWND CreateCheckBox(HWND parent, const wchar_t* text, int x, int y, int width, int id)
{
    return CreateControl(parent, L"BUTTON", text, BS_AUTOCHECKBOX | WS_TABSTOP, x, y, width, 25, id,
                         appFonts[DialogStaticFont]);
}

HWND CreateRadioButton(HWND parent, const wchar_t* text, int x, int y, int width, int id, bool firstOfGroup)
{
    return CreateControl(parent, L"BUTTON", text, BS_AUTORADIOBUTTON | (firstOfGroup ? WS_GROUP | WS_TABSTOP : 0), x,
                         y, width, 25, id, appFonts[DialogStaticFont]);
}

bool IsButtonChecked(HWND button)
{
    return SendMessageW(button, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void SetButtonChecked(HWND button, bool checked)
{
    SendMessageW(button, BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
}

bool SliderMovedTo(HWND slider, WPARAM wParam, int* position)
{
    switch (LOWORD(wParam)) {
    case TB_THUMBTRACK:
        *position = static_cast<short>(HIWORD(wParam));
        return true;
    case TB_LINEUP:
    case TB_LINEDOWN:
    case TB_PAGEUP:
    case TB_PAGEDOWN:
        *position = static_cast<int>(SendMessageW(slider, TBM_GETPOS, 0, 0));
        return true;
    default:
        return false;
    }
}
