#include "ui/event_pending_window.h"

#include <cwchar>

#include "base/report.h"
#include "persistence/options.h"
#include "persistence/options_file.h"
#include "ui/control_ids.h"
#include "ui/countdown_window.h"
#include "ui/dialog_common.h"

HWND eventPendingWindow = nullptr;

namespace {

HWND countdownRadio = nullptr;
HWND utcRadio = nullptr;
HWND saveBox = nullptr;
HWND okButton = nullptr;

// The radios act at once: the countdown shows the new kind at its next tick.
void ShowUtcClock(bool utc)
{
    showUtcClock = utc;
    SetCountdownHeading();
}

void OnOk()
{
    if (IsButtonChecked(saveBox)) {
        wcscpy(options.EventPendingDisplay, showUtcClock ? L"UTC" : L"COUNTDOWN");
        ReportUserMessage(L"Event Option saved in options file\r\n", true);
        SaveOptionsOrWarn();
    }
    ShowWindow(eventPendingWindow, SW_HIDE);
}

void OnCancel()
{
    // Back to what the options hold, not to the state at opening.
    ShowUtcClock(wcscmp(options.EventPendingDisplay, L"UTC") == 0);
    ShowWindow(eventPendingWindow, SW_HIDE);
}

LRESULT CALLBACK EventPendingWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND:
        if (HIWORD(wParam) != BN_CLICKED)
            return 0;
        switch (LOWORD(wParam)) {
        case kPendingCountdownRadio:
            ShowUtcClock(false);
            break;
        case kPendingUtcRadio:
            ShowUtcClock(true);
            break;
        case kPendingSaveBox:
            SetWindowTextW(okButton, IsButtonChecked(saveBox) ? L"Save" : L"OK");
            break;
        case kPendingOkButton:
            OnOk();
            break;
        case kPendingCancelButton:
            OnCancel();
            break;
        }
        return 0;
    }
    // The close box only hides, unlike Cancel: the radio's effect stays.
    LRESULT result = 0;
    if (HandleCommonDialogMessage(window, message, wParam, EventPendingOptionsWindowKey, &result))
        return result;
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

HWND CreateEventPendingWindow(HINSTANCE instance)
{
    HWND window = CreateToolWindow(instance, L"EventPending", EventPendingWindowProc, L"Event Pending Options",
                                   kPlainWindowStyle, 405, 250, EventPendingOptionsWindowKey);
    if (!window)
        return nullptr;
    countdownRadio = CreateRadioButton(window, L"Display countdown to start of Event recording", 25, 20, 350,
                                       kPendingCountdownRadio, true);
    utcRadio = CreateRadioButton(window, L"Display current UTC time", 25, 50, 350, kPendingUtcRadio, false);
    saveBox = CreateCheckBox(window, L"Save selection as application default", 25, 100, 350, kPendingSaveBox);
    okButton = CreatePushButton(window, L"OK", 70, 150, 100, 30, kPendingOkButton);
    CreatePushButton(window, L"Cancel", 220, 150, 100, 30, kPendingCancelButton);
    eventPendingWindow = window;
    return window;
}

void OpenEventPendingWindow()
{
    if (!eventPendingWindow)
        return;
    SetButtonChecked(countdownRadio, !showUtcClock);
    SetButtonChecked(utcRadio, showUtcClock != 0);
    SetButtonChecked(saveBox, false);
    SetWindowTextW(okButton, L"OK");
    ShowPlacedDialog(eventPendingWindow);
}
