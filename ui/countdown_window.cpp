#include "ui/countdown_window.h"

#include "app/main_window.h"
#include "ui/fonts.h"

namespace {

HWND heading = nullptr;
HWND value = nullptr;
HWND lines[3] = {};

LRESULT CALLBACK CountdownProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    // The close box does nothing: the window goes with its countdown.
    if (message == WM_SYSCOMMAND && (wParam & 0xFFF0) == SC_CLOSE)
        return 0;
    if (message == WM_CLOSE)
        return 0;
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND Static(HWND parent, DWORD style, int x, int y, int width, int height, AppFont font)
{
    HWND control = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE | style, x, y, width, height, parent,
                                   nullptr, GetModuleHandleW(nullptr), nullptr);
    if (control && appFonts[font])
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(appFonts[font]), FALSE);
    return control;
}

}  // namespace

HWND CreateCountdownWindow(HINSTANCE instance)
{
    WNDCLASSEXW windowClass{sizeof windowClass};
    windowClass.lpfnWndProc = CountdownProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = L"CountdownWindow";
    RegisterClassExW(&windowClass);
    HWND window = CreateWindowExW(0, L"CountdownWindow", L"Event Pending",
                                  WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX, CW_USEDEFAULT,
                                  CW_USEDEFAULT, 345, 257, nullptr, nullptr, instance, nullptr);
    if (!window)
        return nullptr;
    RECT client{};
    GetClientRect(window, &client);
    int width = client.right;
    heading = Static(window, SS_LEFT, 10, 8, width - 20, 24, DialogStaticFont);
    value = Static(window, SS_CENTER, 0, 36, width, 60, CountdownDigitsFont);
    for (int i = 0; i < 3; ++i)
        lines[i] = Static(window, SS_LEFT | SS_CENTERIMAGE | WS_BORDER, 0, 104 + i * 30, width, 28, DialogStaticFont);
    return window;
}

void SetCountdownHeading(const wchar_t* text)
{
    SetWindowTextW(heading, text);
}

void SetCountdownValue(const wchar_t* text)
{
    SetWindowTextW(value, text);
}

void SetCountdownLines(const wchar_t* start, const wchar_t* event, const wchar_t* end)
{
    SetWindowTextW(lines[0], start);
    SetWindowTextW(lines[1], event);
    SetWindowTextW(lines[2], end);
}
