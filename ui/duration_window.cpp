#include "ui/duration_window.h"

#include <commctrl.h>

#include <cwchar>

#include "base/report.h"
#include "persistence/options.h"
#include "persistence/options_file.h"
#include "ui/control_ids.h"
#include "ui/dialog_common.h"
#include "ui/fonts.h"

HWND defaultDurationWindow = nullptr;

namespace {

HWND picker = nullptr;

void OnSave()
{
    SYSTEMTIME duration{};
    if (SendMessageW(picker, DTM_GETSYSTEMTIME, 0, reinterpret_cast<LPARAM>(&duration)) == GDT_VALID) {
        swprintf(options.DefaultDuration, kSmallTextCapacity, L"%2.2d:%2.2d:%2.2d", duration.wHour, duration.wMinute,
                 duration.wSecond);
        // The next new event starts with it, as with a duration read from
        // the options file.
        defaultDuration.wHour = duration.wHour;
        defaultDuration.wMinute = duration.wMinute;
        defaultDuration.wSecond = duration.wSecond;
    } else {
        wcscpy(options.DefaultDuration, L"00:00:00");
    }
    ShowWindow(defaultDurationWindow, SW_HIDE);
    SaveOptionsOrWarn();
    ReportUserMessage(L"Default recording duration saved in options file\r\n", true);
}

LRESULT CALLBACK DurationWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND:
        if (HIWORD(wParam) == BN_CLICKED && LOWORD(wParam) == kDurationSaveButton)
            OnSave();
        else if (HIWORD(wParam) == BN_CLICKED && LOWORD(wParam) == kDurationCancelButton)
            ShowWindow(window, SW_HIDE);
        return 0;
    }
    LRESULT result = 0;
    if (HandleCommonDialogMessage(window, message, wParam, EventDurationWindowKey, &result))
        return result;
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

HWND CreateDurationWindow(HINSTANCE instance)
{
    HWND window = CreateToolWindow(instance, L"DefaultDuration", DurationWindowProc, L"Default Recording Duration",
                                   kPlainWindowStyle, 350, 230, EventDurationWindowKey);
    if (!window)
        return nullptr;
    CreateLabel(window, L"Default Recording Duration (hh:mm:ss):", 20, 20, 300);
    picker = CreateControl(window, DATETIMEPICK_CLASSW, L"", DTS_TIMEFORMAT | WS_TABSTOP, 110, 60, 110, 30,
                           kDurationPicker, appFonts[ListFont]);
    SendMessageW(picker, DTM_SETFORMATW, 0, reinterpret_cast<LPARAM>(L"HH':'mm':'ss"));
    CreatePushButton(window, L"Save", 50, 130, 90, 30, kDurationSaveButton);
    CreatePushButton(window, L"Cancel", 195, 130, 90, 30, kDurationCancelButton);
    defaultDurationWindow = window;
    return window;
}

void OpenDurationWindow()
{
    if (!defaultDurationWindow)
        return;
    SendMessageW(picker, DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(&defaultDuration));
    ShowPlacedDialog(defaultDurationWindow);
}
