#include "ui/countdown_window.h"

#include "persistence/options.h"
#include "ui/dialog_common.h"
#include "ui/fonts.h"

HWND countdownWindow = nullptr;
Flag showUtcClock{0};

namespace {

HWND heading = nullptr;
HWND value = nullptr;
HWND lines[3] = {};

LRESULT CALLBACK CountdownProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    // The close box does nothing: the window goes with its countdown.
    if (IsCloseRequest(message, wParam))
        return 0;
    if (message == WM_CTLCOLORSTATIC)
        return StaticTextColour(reinterpret_cast<HDC>(wParam));
    if (message == WM_MOVE)
        TrackWindowPosition(window, CountdownWindowKey);
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

HWND CreateCountdownWindow(HINSTANCE instance)
{
    HWND window = CreateToolWindow(instance, L"CountdownWindow", CountdownProc, L"Event Pending", kPlainWindowStyle,
                                   345, 257, CountdownWindowKey);
    if (!window)
        return nullptr;
    RECT client{};
    GetClientRect(window, &client);
    int width = client.right;
    heading = CreateControl(window, L"STATIC", L"", SS_LEFT, 10, 8, width - 20, 24, 0, appFonts[DialogStaticFont]);
    value = CreateControl(window, L"STATIC", L"", SS_CENTER, 0, 36, width, 60, 0, appFonts[CountdownDigitsFont]);
    for (int i = 0; i < 3; ++i)
        lines[i] = CreateControl(window, L"STATIC", L"", SS_LEFT | SS_CENTERIMAGE | WS_BORDER, 0, 104 + i * 30, width,
                                 28, 0, appFonts[DialogStaticFont]);
    countdownWindow = window;
    return window;
}

void SetCountdownHeading()
{
    SetWindowTextW(heading, showUtcClock ? L"         Computer time (UTC):" : L"Countdown to recording start time:");
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
