// The main window's procedure: the platform's messages and the menu commands.
#include <windows.h>
#include <commctrl.h>

#include "app/disk_space.h"
#include "app/device_change.h"
#include "app/display_commands.h"
#include "app/gps_command.h"
#include "app/main_window.h"
#include "app/recording_control.h"
#include "app/startup_state.h"
#include "base/program_version.h"
#include "base/report.h"
#include "events/event_list_window.h"
#include "events/schedule_window.h"
#include "persistence/options.h"
#include "ui/codec_selector_window.h"
#include "ui/commands.h"
#include "ui/device_format_window.h"
#include "ui/duration_window.h"
#include "ui/event_pending_window.h"
#include "ui/file_options_window.h"
#include "ui/menus.h"
#include "ui/misc_options_window.h"
#include "ui/performance_window.h"
#include "ui/select_device_window.h"
#include "ui/window_layout.h"
#include "ui/window_set.h"
#include "video/video_sources.h"

#ifndef MAVU_SUPPORT_ADDRESS
#define MAVU_SUPPORT_ADDRESS L"mavu-support@example.org"
#endif

namespace {

void OnAbout()
{
    ReportUserMessage(kProgramVersionWideText, true);
    ReportUserMessage(L"Report errors to \"" MAVU_SUPPORT_ADDRESS L"\".  Please describe", false);
    ReportUserMessage(L"how to duplicate the error and attach a saved user message log file.\n", false);
}

void OnMove(HWND window)
{
    if (startingUp || repositioning)
        return;
    KeepWindowOnScreen(window);
    // The device dialogs and magnify can move the main window; their Cancel
    // puts it back where it was remembered.
    if (magnifyChanging || selectDeviceOpen || deviceFormatOpen)
        return;
    RECT rect{};
    GetWindowRect(window, &rect);
    if (rect.left < -10000 || rect.top < -10000)
        return;  // minimised
    options.windows[MainWindowKey].currentLeft = rect.left;
    options.windows[MainWindowKey].currentTop = rect.top;
}

void OnOptionsCommand(unsigned command)
{
    switch (command) {
    case IDM_SELECT_INPUT_DEVICE:
        OpenSelectDeviceWindow();
        break;
    case IDM_DEVICE_PROPERTIES:
        OpenDeviceFormatWindow();
        break;
    case IDM_CODEC:
        OpenCodecSelectorWindow();
        break;
    case IDM_FILE_OPTIONS:
        OpenFileOptionsWindow();
        break;
    case IDM_DURATION_DEFAULT:
        OpenDurationWindow();
        break;
    case IDM_EVENT_PENDING:
        OpenEventPendingWindow();
        break;
    case IDM_PERFORMANCE:
        OpenPerformanceWindow();
        break;
    case IDM_MISCELLANEOUS:
        OpenMiscellaneousWindow();
        break;
    case IDM_USB_GPS_RECEIVER:
        OnUsbGpsReceiverCommand();
        break;
    case IDM_SET_WINDOW_POSITIONS:
        // Reported whether or not the save worked: a failed save has
        // already said so.
        SaveWindowPositions();
        ReportUserMessage(L"Default window positions are saved in options file\r\n", true);
        break;
    }
}

LRESULT OnCommand(HWND window, unsigned command)
{
    if (command == IDM_EXIT) {
        CloseApplication();
        return 1;
    }
    if (command >= kFirstEventsCommand && command <= kLastEventsCommand) {
        if (command == IDM_SCHEDULE)
            OpenScheduleWindow();
        else
            OpenEventListWindow();
        return 0;
    }
    if (command >= kFirstDisplayCommand && command <= kLastDisplayCommand) {
        OnDisplayCommand(command);
        return 0;
    }
    if (command >= kFirstOptionsCommand && command <= kLastOptionsCommand) {
        OnOptionsCommand(command);
        return 0;
    }
    if (command == IDM_ABOUT) {
        OnAbout();
        return 0;
    }
    return 0;
}

}  // namespace

void CloseApplication()
{
    appClosing = 1;
    StopVideo();
    DestroyWindow(mainWindow);
}

LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CREATE: {
        INITCOMMONCONTROLSEX controls{sizeof controls, ICC_DATE_CLASSES};
        InitCommonControlsEx(&controls);
        controls.dwICC = ICC_LISTVIEW_CLASSES;
        InitCommonControlsEx(&controls);
        if (!videoSources.empty())
            currentSourceIndex = 0;
        return 0;
    }
    case WM_DESTROY:
        PostQuitMessage(0);
        break;
    case WM_CLOSE:
        CloseApplication();
        return 0;
    case WM_MOVE:
        OnMove(window);
        break;
    case WM_SIZE: {
        if (startingUp || layoutSettingSize)
            break;
        RECT rect{};
        GetWindowRect(window, &rect);
        if (rect.left < -10000 || rect.top < -10000)
            return 0;
        UpdateMainWindowLayout();
        return 0;
    }
    case WM_COMMAND:
        return OnCommand(window, LOWORD(wParam));
    case WM_TIMER:
        return 0;
    case WM_DEVICECHANGE:
        return OnDeviceChange(wParam);
    case kDiskFullMessage:
        OnDiskFull();
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}
