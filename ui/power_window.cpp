#include "ui/power_window.h"

#include "app/power_actions.h"
#include "ui/control_ids.h"
#include "ui/dialog_common.h"
#include "ui/fonts.h"

#include <cstdio>

HWND hibernateWindow = nullptr;

namespace {

HWND inLabel = nullptr;
HWND secondsLabel = nullptr;
HWND unlessLabel = nullptr;
HWND cancelButton = nullptr;
UINT_PTR timerId = 0;

LRESULT CALLBACK PowerWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (IsCloseRequest(message, wParam))
        return 0;
    switch (message) {
    case WM_TIMER: {
        // Any timer, and on after the count's end: each further second
        // repeats the action while a request stands.
        int left = --powerActionCountdown;
        if (left > 0) {
            wchar_t text[16];
            std::swprintf(text, 16, L"%2.2d", left);
            SetWindowTextW(secondsLabel, text);
        } else {
            ShowWindow(window, SW_HIDE);
            PerformPowerAction();
        }
        return 0;
    }
    case WM_COMMAND:
        if (LOWORD(wParam) == kCancelPowerActionButton && HIWORD(wParam) == BN_CLICKED) {
            KillTimer(window, timerId);
            ShowWindow(window, SW_HIDE);
        }
        return 0;
    case WM_MOVE:
        // Kept on the screen; its position isn't recorded.
        TrackWindowPosition(window, -1);
        break;
    case WM_CTLCOLORSTATIC:
        return StaticTextColour(reinterpret_cast<HDC>(wParam));
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

HWND CreatePowerWindow(HINSTANCE instance)
{
    // Its position record is kept but never applied: no key here.
    HWND window = CreateToolWindow(instance, L"Hibernate", PowerWindowProc, L"Hibernate",
                                   WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU, 300, 200, -1);
    if (!window)
        return nullptr;
    HFONT text = appFonts[DialogStaticFont];
    inLabel = CreateControl(window, L"STATIC", L"", SS_LEFT, 45, 30, 80, 20, 0, text);
    secondsLabel = CreateControl(window, L"STATIC", L"", SS_LEFT, 135, 25, 40, 25, 0, appFonts[PowerCountdownFont]);
    CreateControl(window, L"STATIC", L"seconds", SS_LEFT, 175, 30, 70, 20, 0, text);
    unlessLabel = CreateControl(window, L"STATIC", L"", SS_LEFT, 30, 60, 230, 20, 0, text);
    cancelButton = CreateControl(window, L"BUTTON", L"", BS_PUSHBUTTON, 75, 120, 135, 28, kCancelPowerActionButton,
                                 appFonts[DialogButtonFont]);
    hibernateWindow = window;
    return window;
}

void StartPowerCountdown()
{
    HWND window = hibernateWindow;
    if (!window)
        return;
    timerId = SetTimer(window, kPowerTimerId, 1000, nullptr);
    powerActionCountdown = 30;
    SetWindowTextW(secondsLabel, L"30");
    bool hibernate = hibernateAfterEvent != 0;
    SetWindowTextW(window, hibernate ? L"Hibernate" : L"Shutdown");
    SetWindowTextW(inLabel, hibernate ? L"Hibernate in" : L"Shutdown in");
    SetWindowTextW(cancelButton, hibernate ? L"Cancel Hibernate" : L"Cancel Shutdown");
    SetWindowTextW(unlessLabel,
                   hibernate ? L"unless you select Cancel Hibernate" : L"unless you select Cancel Shutdown");
    ShowWindow(window, SW_SHOW);
}
